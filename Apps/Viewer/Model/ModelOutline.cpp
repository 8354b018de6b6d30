// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelOutline.h"

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/SceneTraversal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <unordered_map>

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
    explicit OutlineVisitor(ModelOutline& outline)
        : m_outline(outline)
        , m_directions(makeDirections())
    {
        m_reach.fill(-std::numeric_limits<float>::infinity());
    }

    bool enterNode(const osg::NodePtr&) override { return true; }

    void visitGeometry(const GeometryInstance& instance) override
    {
        const osg::UInt32 id = osg::getContainerId(instance.geometry);
        const auto [found, isNew] = m_data.try_emplace(id);
        Data& data = found->second;
        if (isNew) {
            data = usedPositions(instance.geometry);
        }
        const Matrix4 toWorld(instance.toWorld);
        if (isWithin(data, toWorld)) {
            return;
        }
        for (const osg::Pnt3f& position : data.positions) {
            const Vector4 place = toWorld.transform(position);
            if (std::isfinite(place[0] + place[1] + place[2])) {
                include(osg::Pnt3f(static_cast<float>(place[0]), static_cast<float>(place[1]),
                                   static_cast<float>(place[2])));
            }
        }
    }

private:
    struct Data {
        std::vector<osg::Pnt3f> positions;
        osg::Pnt3f minimum;
        osg::Pnt3f maximum;
    };

    static Data usedPositions(const osg::GeometryPtr& geometry)
    {
        const GeometryData data = GeometryData::read(geometry);
        std::vector<bool> used(data.positions.size(), false);
        for (const std::vector<osg::UInt32>* indices : {&data.triangles, &data.lines, &data.points}) {
            for (const osg::UInt32 index : *indices) {
                used[index] = true;
            }
        }
        Data result;
        data.getBounds(result.minimum, result.maximum);
        for (std::size_t i = 0; i < used.size(); ++i) {
            if (used[i]) {
                result.positions.push_back(data.positions[i]);
            }
        }
        return result;
    }

    // Whether nothing of a geometry can reach further than what is known: most parts of a large model are inside.
    bool isWithin(const Data& data, const Matrix4& toWorld) const
    {
        if (m_outline.points.empty()) {
            return false;
        }
        double centre[3];
        double extent[3];
        for (int axis = 0; axis < 3; ++axis) {
            centre[axis] = toWorld(axis, 3);
            extent[axis] = 0;
            for (int i = 0; i < 3; ++i) {
                const auto minimum = static_cast<double>(data.minimum[static_cast<osg::UInt32>(i)]);
                const auto maximum = static_cast<double>(data.maximum[static_cast<osg::UInt32>(i)]);
                centre[axis] += toWorld(axis, i) * (minimum + maximum) / 2;
                extent[axis] += std::abs(toWorld(axis, i)) * (maximum - minimum) / 2;
            }
            // A little more, for what single precision makes of it. Written so that a NaN fails.
            extent[axis] += Slack * (std::abs(centre[axis]) + extent[axis]);
            const auto index = static_cast<osg::UInt32>(axis);
            if (!(centre[axis] - extent[axis] >= static_cast<double>(m_outline.minimum[index]) &&
                  centre[axis] + extent[axis] <= static_cast<double>(m_outline.maximum[index]))) {
                return false;
            }
        }
        for (std::size_t i = 0; i < DirectionCount; ++i) {
            double reach = 0;
            for (int axis = 0; axis < 3; ++axis) {
                const auto share = static_cast<double>(m_directions[i][static_cast<osg::UInt32>(axis)]);
                reach += share * centre[axis] + std::abs(share) * extent[axis];
            }
            if (!(reach <= static_cast<double>(m_reach[i]))) {
                return false;
            }
        }
        return true;
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
        for (std::size_t i = 0; i < DirectionCount; ++i) {
            const float reach = m_directions[i].dot(place.subZero());
            if (reach > m_reach[i]) {
                m_reach[i] = reach;
                m_outline.points[i] = place;
            }
        }
    }

    ModelOutline& m_outline;
    std::array<osg::Vec3f, DirectionCount> m_directions;
    std::array<float, DirectionCount> m_reach{};
    std::unordered_map<osg::UInt32, Data> m_data; ///< by id of the geometry
};

} // namespace

ModelOutline ModelOutline::find(const osg::NodePtr& model)
{
    ModelOutline outline;
    OutlineVisitor visitor(outline);
    traverseScene(model, 0xFFFFFFFF, visitor);
    return outline;
}

} // namespace quon::viewer
