// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelOutline.h"

#include "Viewer/Model/GeometryContent.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/PreparedGeometries.h"
#include "Viewer/Model/SceneTraversal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quon::viewer {

namespace {

constexpr std::size_t DirectionCount = 96;

// Some ten steps of single precision.
constexpr double Slack = 1e-6;

// Directions spread evenly over the sphere along a spiral.
std::array<osg::Vec3f, DirectionCount> makeDirections()
{
    std::array<osg::Vec3f, DirectionCount> directions;
    const double goldenAngle = 2.39996322972865332;
    for (std::size_t i = 0; i < DirectionCount; ++i) {
        const double z = 1 - (2 * static_cast<double>(i) + 1) / DirectionCount;
        const double radius = std::sqrt(1 - z * z);
        const double angle = goldenAngle * static_cast<double>(i);
        directions[i] = osg::Vec3f(static_cast<float>(radius * std::cos(angle)),
                                   static_cast<float>(radius * std::sin(angle)), static_cast<float>(z));
    }
    return directions;
}

class OutlineVisitor : public SceneVisitor {
public:
    OutlineVisitor(ModelOutline& outline, const PreparedGeometries* prepared)
        : m_outline(outline)
        , m_prepared(prepared)
        , m_directions(makeDirections())
    {
        m_reach.fill(-std::numeric_limits<float>::infinity());
    }

    bool enterNode(const osg::NodePtr&) override { return true; }

    void visitGeometry(const GeometryInstance& instance) override
    {
        std::shared_ptr<const GeometryContent>& content = m_contents[osg::getContainerId(instance.geometry)];
        if (content == nullptr) {
            content = PreparedGeometries::read(m_prepared, instance.geometry);
        }
        const Matrix4 toWorld(instance.toWorld);
        if (isWithin(content->getMinimum(), content->getMaximum(), toWorld)) {
            return;
        }
        const std::vector<GeometryContent::Block>& blocks = content->getBlocks();
        // A few of all first: then most of the rest is known to be inside.
        for (const GeometryContent::Block& block : blocks) {
            include(*content, block.begin, block.begin + 1, toWorld);
        }
        for (const GeometryContent::Block& block : blocks) {
            if (!isWithin(block.minimum, block.maximum, toWorld)) {
                include(*content, block.begin, block.end, toWorld);
            }
        }
    }

private:
    // Whether nothing of a box can reach further than what is known: most parts of a large model are inside. Notes in
    // which directions it may.
    bool isWithin(const osg::Pnt3f& minimum, const osg::Pnt3f& maximum, const Matrix4& toWorld)
    {
        m_farther.clear();
        double centre[3];
        double extent[3];
        bool isInBox = !m_outline.points.empty();
        for (int axis = 0; axis < 3; ++axis) {
            centre[axis] = toWorld(axis, 3);
            extent[axis] = 0;
            for (int i = 0; i < 3; ++i) {
                const auto least = static_cast<double>(minimum[static_cast<osg::UInt32>(i)]);
                const auto most = static_cast<double>(maximum[static_cast<osg::UInt32>(i)]);
                centre[axis] += toWorld(axis, i) * (least + most) / 2;
                extent[axis] += std::abs(toWorld(axis, i)) * (most - least) / 2;
            }
            // A little more, for what single precision makes of it. Written so that a NaN fails.
            extent[axis] += Slack * (std::abs(centre[axis]) + extent[axis]);
            const auto index = static_cast<osg::UInt32>(axis);
            isInBox = isInBox && centre[axis] - extent[axis] >= static_cast<double>(m_outline.minimum[index]) &&
                      centre[axis] + extent[axis] <= static_cast<double>(m_outline.maximum[index]);
        }
        for (std::size_t i = 0; i < DirectionCount; ++i) {
            double reach = 0;
            for (int axis = 0; axis < 3; ++axis) {
                const auto share = static_cast<double>(m_directions[i][static_cast<osg::UInt32>(axis)]);
                reach += share * centre[axis] + std::abs(share) * extent[axis];
            }
            if (!(reach <= static_cast<double>(m_reach[i]))) {
                m_farther.push_back(i);
            }
        }
        return isInBox && m_farther.empty();
    }

    void include(const GeometryContent& content, const std::size_t begin, const std::size_t end, const Matrix4& toWorld)
    {
        for (std::size_t i = begin; i < end; ++i) {
            if (!content.isUsed(i)) {
                continue;
            }
            const Vector4 place = toWorld.transform(content.getData().positions[i]);
            if (std::isfinite(place[0] + place[1] + place[2])) {
                include(osg::Pnt3f(static_cast<float>(place[0]), static_cast<float>(place[1]),
                                   static_cast<float>(place[2])));
            }
        }
    }

    void include(const osg::Pnt3f& place)
    {
        if (m_outline.points.empty()) {
            m_outline.points.resize(DirectionCount);
            m_outline.minimum = m_outline.maximum = place;
        }
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            m_outline.minimum[axis] = std::min(m_outline.minimum[axis], place[axis]);
            m_outline.maximum[axis] = std::max(m_outline.maximum[axis], place[axis]);
        }
        for (const std::size_t i : m_farther) {
            const float reach = m_directions[i].dot(place.subZero());
            if (reach > m_reach[i]) {
                m_reach[i] = reach;
                m_outline.points[i] = place;
            }
        }
    }

    ModelOutline& m_outline;
    const PreparedGeometries* m_prepared;
    std::array<osg::Vec3f, DirectionCount> m_directions;
    std::array<float, DirectionCount> m_reach{};
    std::unordered_map<osg::UInt32, std::shared_ptr<const GeometryContent>> m_contents; ///< by id of the geometry
    std::vector<std::size_t> m_farther; ///< directions in which a box reaches farther than what is known
};

} // namespace

ModelOutline ModelOutline::find(const osg::NodePtr& model, const PreparedGeometries* prepared)
{
    ModelOutline outline;
    OutlineVisitor visitor(outline, prepared);
    traverseScene(model, 0xFFFFFFFF, visitor);
    return outline;
}

} // namespace quon::viewer
