// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/Occluders.h"

#include "Viewer/Drawing/DrawUnit.h"

#include <algorithm>
#include <array>

namespace quon::viewer {

namespace {

// The sides of a part of the picture, in pixels.
constexpr int TileSize = 16;

// How many geometries of each part are drawn up to the end of each round.
constexpr std::array<std::size_t, Occluders::RoundCount> RoundEnds{3, 6, 9, 12, 20, 40};

// What a geometry covers at least for each of its triangles, in pixels: with less it costs more than it saves.
constexpr float LeastArea = 1.5F;

/** Calls back for each geometry that counts, with its part of the picture. */
template <class Work>
void forEachItem(const std::vector<DrawUnit>& units, const int columns, const int rows, const Work& work)
{
    const auto findTile = [](const float from, const float to, const int count) {
        const float place = (from + to) / 2 / static_cast<float>(TileSize);
        return static_cast<std::size_t>(std::clamp(place, 0.0F, static_cast<float>(count - 1)));
    };
    for (std::uint32_t i = 0; i < units.size(); ++i) {
        const DrawUnit& unit = units[i];
        if (unit.batch == nullptr || !unit.state->isCovering()) {
            continue;
        }
        const std::size_t count = unit.countSeen(unit.boxes.size());
        for (std::size_t place = 0; place < count; ++place) {
            const std::uint32_t item = unit.getSeen(place);
            const PictureBox& box = unit.boxes[item];
            const std::size_t triangles = (unit.getEnd(item + 1).triangles - unit.getEnd(item).triangles) / 3;
            const float area = (box.right - box.left) * (box.top - box.bottom);
            if (box.isKnown() && triangles > 0 && area >= LeastArea * static_cast<float>(triangles)) {
                const std::size_t column = findTile(box.left, box.right, columns);
                const std::size_t row = findTile(box.bottom, box.top, rows);
                work(row * static_cast<std::size_t>(columns) + column,
                     Occluders::Item{i, item, (box.nearest + box.farthest) / 2});
            }
        }
    }
}

} // namespace

void Occluders::collect(const std::vector<DrawUnit>& units, const int width, const int height)
{
    const int columns = (width + TileSize - 1) / TileSize;
    const int rows = (height + TileSize - 1) / TileSize;
    const std::size_t tileCount = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    // Counted, then put in place: the ends begin as the beginnings.
    m_tileEnds.assign(tileCount + 1, 0);
    forEachItem(units, columns, rows, [&](const std::size_t tile, const Item&) { ++m_tileEnds[tile + 1]; });
    for (std::size_t i = 1; i <= tileCount; ++i) {
        m_tileEnds[i] += m_tileEnds[i - 1];
    }
    m_items.resize(m_tileEnds.back());
    m_tileEnds.pop_back();
    forEachItem(units, columns, rows,
                [&](const std::size_t tile, const Item& item) { m_items[m_tileEnds[tile]++] = item; });
    auto begin = m_items.begin();
    for (const std::size_t tileEnd : m_tileEnds) {
        const auto end = m_items.begin() + static_cast<std::ptrdiff_t>(tileEnd);
        const auto last = begin + std::min(end - begin, static_cast<std::ptrdiff_t>(RoundEnds.back()));
        std::partial_sort(begin, last, end, [](const Item& a, const Item& b) { return a.depth < b.depth; });
        begin = end;
    }
}

std::vector<Occluders::Item> Occluders::getRound(const std::size_t round) const
{
    std::vector<Item> items;
    std::size_t begin = 0;
    for (const std::size_t end : m_tileEnds) {
        const std::size_t from = std::min(end, begin + (round == 0 ? 0 : RoundEnds.at(round - 1)));
        const std::size_t to = std::min(end, begin + RoundEnds.at(round));
        items.insert(items.end(), m_items.begin() + static_cast<std::ptrdiff_t>(from),
                     m_items.begin() + static_cast<std::ptrdiff_t>(to));
        begin = end;
    }
    std::sort(items.begin(), items.end(),
              [](const Item& a, const Item& b) { return a.unit != b.unit ? a.unit < b.unit : a.item < b.item; });
    return items;
}

} // namespace quon::viewer
