// SPDX-License-Identifier: MIT
#include "Viewer/Model/SurfaceFacing.h"

#include "Viewer/Model/GeometryData.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace quon::viewer {

namespace {

// Larger ones are hardly ever seen as a whole from their middle.
constexpr std::size_t MostTriangles = 20000;

using Corners = std::array<std::uint32_t, 3>;

/** For each position the first one in the same place. */
std::vector<std::uint32_t> findSamePlaces(const std::vector<osg::Pnt3f>& positions)
{
    std::vector<std::uint32_t> order(positions.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto compare = [&](const std::uint32_t a, const std::uint32_t b) {
        return std::lexicographical_compare(positions[a].getValues(), positions[a].getValues() + 3,
                                            positions[b].getValues(), positions[b].getValues() + 3);
    };
    std::stable_sort(order.begin(), order.end(), compare);
    std::vector<std::uint32_t> places(positions.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const bool isSame = i > 0 && !compare(order[i - 1], order[i]);
        places[order[i]] = isSame ? places[order[i - 1]] : order[i];
    }
    return places;
}

/** The triangles between different places; what is flat to a line encloses nothing. */
std::vector<Corners> findTriangles(const GeometryData& data)
{
    const std::vector<std::uint32_t> places = findSamePlaces(data.positions);
    std::vector<Corners> triangles;
    for (std::size_t i = 0; i + 2 < data.triangles.size(); i += 3) {
        const Corners corners{places[data.triangles[i]], places[data.triangles[i + 1]], places[data.triangles[i + 2]]};
        if (corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0]) {
            triangles.push_back(corners);
        }
    }
    return triangles;
}

/** Whether there is exactly one triangle on each side of each edge, and both run the same way round. */
bool isClosed(const std::vector<Corners>& triangles)
{
    const auto makeEdge = [](const std::uint64_t from, const std::uint64_t to) { return from << 32U | to; };
    std::vector<std::uint64_t> edges;
    edges.reserve(triangles.size() * 3);
    for (const Corners& corners : triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            edges.push_back(makeEdge(corners.at(i), corners.at((i + 1) % 3)));
        }
    }
    std::sort(edges.begin(), edges.end());
    return std::adjacent_find(edges.begin(), edges.end()) == edges.end() &&
           std::all_of(edges.begin(), edges.end(), [&](const std::uint64_t edge) {
               return std::binary_search(edges.begin(), edges.end(), makeEdge(edge & 0xFFFFFFFFU, edge >> 32U));
           });
}

/** Places by the body that they belong to: bodies share no corner. */
class Bodies {
public:
    Bodies(const std::vector<Corners>& triangles, const std::size_t placeCount)
        : m_parents(placeCount)
    {
        std::iota(m_parents.begin(), m_parents.end(), 0U);
        for (const Corners& corners : triangles) {
            m_parents[find(corners[1])] = find(corners[0]);
            m_parents[find(corners[2])] = find(corners[0]);
        }
    }

    std::uint32_t find(std::uint32_t place)
    {
        while (m_parents[place] != place) {
            m_parents[place] = m_parents[m_parents[place]];
            place = m_parents[place];
        }
        return place;
    }

private:
    std::vector<std::uint32_t> m_parents;
};

using Vector = std::array<double, 3>;

struct Middle {
    Vector sum{};
    double count = 0;
};

std::vector<Middle> findMiddles(const std::vector<Corners>& triangles, Bodies& bodies,
                                const std::vector<osg::Pnt3f>& positions)
{
    std::vector<Middle> middles(positions.size());
    for (const Corners& corners : triangles) {
        Middle& middle = middles[bodies.find(corners[0])];
        for (const std::uint32_t corner : corners) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                middle.sum.at(axis) += static_cast<double>(positions[corner][static_cast<osg::UInt32>(axis)]);
            }
        }
        middle.count += 3;
    }
    return middles;
}

} // namespace

SurfaceFacing findSurfaceFacing(const GeometryData& data)
{
    if (data.triangles.empty() || data.triangles.size() > 3 * MostTriangles) {
        return SurfaceFacing::Any;
    }
    const std::vector<Corners> triangles = findTriangles(data);
    if (triangles.empty() || !isClosed(triangles)) {
        return SurfaceFacing::Any;
    }
    Bodies bodies(triangles, data.positions.size());
    const std::vector<Middle> middles = findMiddles(triangles, bodies, data.positions);
    bool isOutward = true;
    bool isInward = true;
    for (const Corners& corners : triangles) {
        const Middle& middle = middles[bodies.find(corners[0])];
        std::array<Vector, 3> arms{};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                arms.at(i).at(axis) =
                    static_cast<double>(data.positions[corners.at(i)][static_cast<osg::UInt32>(axis)]) -
                    middle.sum.at(axis) / middle.count;
            }
        }
        const auto& [a, b, c] = arms;
        const double volume = a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
                              a[2] * (b[0] * c[1] - b[1] * c[0]);
        isOutward = isOutward && volume > 0;
        isInward = isInward && volume < 0;
    }
    if (isOutward) {
        return SurfaceFacing::Outward;
    }
    return isInward ? SurfaceFacing::Inward : SurfaceFacing::Any;
}

} // namespace quon::viewer
