// SPDX-License-Identifier: MIT
#include "Viewer/Tools/RegionIndex.h"

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Tools/RegionOption.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace quon::viewer {

namespace {

using Region = RegionIndex::Region;

constexpr std::size_t PlaneCount = Region::PlaneCount;

// A triangle gains at most one corner at every plane.
constexpr std::size_t LargestPolygon = 3 + PlaneCount;

double product(const Vector4& plane, const Vector4& point)
{
    return plane[0] * point[0] + plane[1] * point[1] + plane[2] * point[2] + plane[3] * point[3];
}

/** The positions of a geometry in clip space, each with one bit for every plane that it lies outside of. */
class ClippedPositions {
public:
    ClippedPositions(const GeometryData& data, const Matrix4& toWorld, const Region& region)
        : m_region(region)
    {
        const Matrix4 toClip = region.getWorldToClip() * toWorld;
        m_positions.reserve(data.positions.size());
        m_codes.reserve(data.positions.size());
        for (const osg::Pnt3f& position : data.positions) {
            m_positions.push_back(toClip.transform(position));
            std::uint8_t code = 0;
            for (std::size_t plane = 0; plane < PlaneCount; ++plane) {
                // Written so that a NaN is outside.
                if (!(product(region.getClipPlanes()[plane], m_positions.back()) >= 0)) {
                    code = static_cast<std::uint8_t>(code | (1U << plane));
                }
            }
            m_codes.push_back(code);
        }
    }

    bool areAllInside(const std::vector<osg::UInt32>& indices) const
    {
        return std::all_of(indices.begin(), indices.end(),
                           [this](const osg::UInt32 index) { return m_codes[index] == 0; });
    }

    /** Whether a triangle, line or point reaches into the region. */
    bool reachesInside(const osg::UInt32* corners, const std::size_t count) const
    {
        unsigned common = ~0U;
        for (std::size_t i = 0; i < count; ++i) {
            if (m_codes[corners[i]] == 0) {
                return true;
            }
            common &= m_codes[corners[i]];
        }
        return common == 0 && count > 1 && isAnythingLeft(corners, count);
    }

private:
    struct Polygon {
        std::array<Vector4, LargestPolygon> corners;
        std::size_t size = 0;

        void push(const Vector4& corner) { corners[size++] = corner; }
    };

    // Cuts off what is outside of one plane after the other.
    bool isAnythingLeft(const osg::UInt32* corners, const std::size_t count) const
    {
        Polygon polygon;
        for (std::size_t i = 0; i < count; ++i) {
            polygon.push(m_positions[corners[i]]);
        }
        for (const Vector4& plane : m_region.getClipPlanes()) {
            Polygon rest;
            for (std::size_t i = 0; i < polygon.size; ++i) {
                const Vector4& from = polygon.corners[i];
                const Vector4& to = polygon.corners[(i + 1) % polygon.size];
                const double fromSide = product(plane, from);
                const double toSide = product(plane, to);
                if (fromSide >= 0) {
                    rest.push(from);
                }
                if ((fromSide >= 0) != (toSide >= 0)) {
                    const double share = fromSide / (fromSide - toSide);
                    Vector4 crossing;
                    for (std::size_t axis = 0; axis < crossing.size(); ++axis) {
                        crossing[axis] = from[axis] + share * (to[axis] - from[axis]);
                    }
                    rest.push(crossing);
                }
                if (rest.size == LargestPolygon) {
                    // Rounding made a corner too many of an edge along the plane.
                    break;
                }
            }
            if (rest.size == 0) {
                return false;
            }
            polygon = rest;
        }
        return true;
    }

    const Region& m_region;
    std::vector<Vector4> m_positions;
    std::vector<std::uint8_t> m_codes;
};

bool isEnclosed(const GeometryData& data, const ClippedPositions& positions)
{
    return positions.areAllInside(data.triangles) && positions.areAllInside(data.lines) &&
           positions.areAllInside(data.points);
}

bool isTouched(const GeometryData& data, const ClippedPositions& positions)
{
    const auto isAnyTouched = [&](const std::vector<osg::UInt32>& indices, const std::size_t count) {
        for (std::size_t i = 0; i + count <= indices.size(); i += count) {
            if (positions.reachesInside(&indices[i], count)) {
                return true;
            }
        }
        return false;
    };
    return isAnyTouched(data.triangles, 3) || isAnyTouched(data.lines, 2) || isAnyTouched(data.points, 1);
}

bool isAffine(const Matrix4& matrix)
{
    return !(std::abs(matrix(3, 0)) > 0) && !(std::abs(matrix(3, 1)) > 0) && !(std::abs(matrix(3, 2)) > 0) &&
           !(std::abs(matrix(3, 3) - 1) > 0);
}

} // namespace

RegionIndex::Region::Region(const PixelRectangle& rectangle, const Matrix4& worldToClip, const int width,
                            const int height)
    : m_worldToClip(worldToClip)
{
    const double left = rectangle.left / width * 2 - 1;
    const double right = rectangle.right / width * 2 - 1;
    const double top = 1 - rectangle.top / height * 2;
    const double bottom = 1 - rectangle.bottom / height * 2;
    m_clipPlanes = {Vector4{1, 0, 0, -left}, Vector4{-1, 0, 0, right}, Vector4{0, 1, 0, -bottom},
                    Vector4{0, -1, 0, top},  Vector4{0, 0, 1, 1},      Vector4{0, 0, -1, 1}};
    for (std::size_t plane = 0; plane < PlaneCount; ++plane) {
        m_worldPlanes[plane] = Vector4{};
        for (int column = 0; column < 4; ++column) {
            for (int row = 0; row < 4; ++row) {
                m_worldPlanes[plane][static_cast<std::size_t>(column)] +=
                    m_clipPlanes[plane][static_cast<std::size_t>(row)] * worldToClip(row, column);
            }
        }
    }
}

void RegionIndex::clear()
{
    m_parts.clear();
    m_items.clear();
    m_partIndices.clear();
    m_localBoxes.clear();
}

void RegionIndex::add(const osg::NodePtr& node, const Matrix4& toWorld, const GeometryData& data)
{
    if (data.triangles.empty() && data.lines.empty() && data.points.empty()) {
        return;
    }
    const osg::NodePtr part = findPart(node);
    const auto [index, isNew] = m_partIndices.try_emplace(osg::getContainerId(part), m_parts.size());
    if (isNew) {
        m_parts.push_back(part);
    }

    Item item;
    item.toWorld = toWorld;
    item.data = &data;
    item.part = index->second;
    item.isBoxed = isAffine(toWorld);
    if (item.isBoxed) {
        const Box& local = getLocalBox(data);
        for (int row = 0; row < 3; ++row) {
            const auto axis = static_cast<std::size_t>(row);
            item.box.centre[axis] = toWorld(row, 3);
            for (int column = 0; column < 3; ++column) {
                const auto from = static_cast<std::size_t>(column);
                item.box.centre[axis] += toWorld(row, column) * local.centre[from];
                item.box.extent[axis] += std::abs(toWorld(row, column)) * local.extent[from];
            }
        }
    }
    m_items.push_back(item);
}

std::vector<osg::NodePtr> RegionIndex::find(const Region& region, const bool fullyEnclosed)
{
    enum class Verdict : std::uint8_t { Open, In, Out };

    m_exactTestCount = 0;
    std::vector<Verdict> verdicts(m_parts.size(), Verdict::Open);
    for (const Item& item : m_items) {
        Verdict& verdict = verdicts[item.part];
        // One piece inside is enough to be touched, one outside not to be enclosed.
        if (verdict == (fullyEnclosed ? Verdict::Out : Verdict::In)) {
            continue;
        }
        Place place = item.isBoxed ? classify(item.box, region) : Place::Across;
        if (place == Place::Across) {
            ++m_exactTestCount;
            const ClippedPositions positions(*item.data, item.toWorld, region);
            const bool isIn = fullyEnclosed ? isEnclosed(*item.data, positions) : isTouched(*item.data, positions);
            place = isIn ? Place::Inside : Place::Outside;
        }
        if (place == Place::Inside) {
            verdict = Verdict::In;
        } else if (fullyEnclosed) {
            verdict = Verdict::Out;
        }
    }

    std::vector<osg::NodePtr> found;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        if (verdicts[i] == Verdict::In) {
            found.push_back(m_parts[i]);
        }
    }
    return found;
}

RegionIndex::Place RegionIndex::classify(const Box& box, const Region& region)
{
    Place place = Place::Inside;
    for (const Vector4& plane : region.getWorldPlanes()) {
        double distance = plane[3];
        double reach = 0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            distance += plane[axis] * box.centre[axis];
            reach += std::abs(plane[axis]) * box.extent[axis];
        }
        if (distance + reach < 0) {
            return Place::Outside;
        }
        // Written so that a NaN leaves the question open.
        if (!(distance - reach >= 0)) {
            place = Place::Across;
        }
    }
    return place;
}

const RegionIndex::Box& RegionIndex::getLocalBox(const GeometryData& data)
{
    const auto [entry, isNew] = m_localBoxes.try_emplace(&data);
    osg::Pnt3f minimum;
    osg::Pnt3f maximum;
    if (isNew && data.getBounds(minimum, maximum)) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double low = static_cast<double>(minimum[static_cast<osg::UInt32>(axis)]);
            const double high = static_cast<double>(maximum[static_cast<osg::UInt32>(axis)]);
            entry->second.centre[axis] = (low + high) / 2;
            entry->second.extent[axis] = (high - low) / 2;
        }
    }
    return entry->second;
}

} // namespace quon::viewer
