// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/OverlayLines.h"

#include "Viewer/Drawing/DrawUnit.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/WorkerPool.h"

#include <algorithm>

namespace quon::viewer {

namespace {

// With fewer lines it takes no time to draw them.
constexpr std::size_t FewestLines = 50000;

bool isMadeOfLines(const DrawUnit& unit)
{
    if (unit.batch == nullptr || unit.batch->ends.empty()) {
        return false;
    }
    const IndexCounts& counts = unit.batch->ends.back();
    return counts.triangles == 0 && counts.points == 0;
}

/** The lines that have to be drawn, one bit for each. */
std::uint16_t addLines(LineCover& cover, const IndexPattern& pattern, const PictureCorners& corners)
{
    std::uint16_t bits = 0;
    for (std::size_t i = 0; 2 * i + 1 < pattern.lines.size(); ++i) {
        const PicturePoint& from = corners.at(pattern.corners[pattern.lines[2 * i]]);
        const PicturePoint& to = corners.at(pattern.corners[pattern.lines[2 * i + 1]]);
        bits = static_cast<std::uint16_t>(bits | (cover.add(from, to) ? 1U << i : 0U));
    }
    return bits;
}

} // namespace

const MaterialState* OverlayLines::collect(std::vector<DrawUnit>& units)
{
    m_units.clear();
    m_state = nullptr;
    for (const DrawUnit& unit : units) {
        const bool isLater = m_state == nullptr || unit.state->sortKey > m_state->sortKey;
        m_state = unit.state->transparent && isLater ? unit.state : m_state;
    }
    std::size_t lines = 0;
    for (DrawUnit& unit : units) {
        if (!unit.state->transparent || unit.state->sortKey != m_state->sortKey) {
            continue;
        }
        const bool isSame = m_units.empty() || unit.group->materialId == m_units.front()->group->materialId;
        if (!isSame || !isMadeOfLines(unit) || !unit.state->isOverlay() || !unit.state->isOrderless() ||
            unit.isColoured()) {
            return nullptr;
        }
        lines += unit.getEnd(unit.getAllItems()).lines / 2;
        m_units.push_back(&unit);
    }
    if (lines < FewestLines) {
        m_units.clear();
        return nullptr;
    }
    return m_state;
}

void OverlayLines::thin(const CoverMap& map, const Matrix4& worldToClip, const LineStyle& style, WorkerPool& workers)
{
    m_cover.begin(map.getWidth(), map.getHeight(), style);
    sortByBand();
    add(m_others, map, worldToClip);
    workers.forEach(m_bands.size(), [&](const std::size_t i) { add(m_bands[i], map, worldToClip); });
    workers.forEach(m_units.size(), [&](const std::size_t i) { m_units[i]->thin(); });
}

void OverlayLines::sortByBand()
{
    m_bands.resize(m_cover.getBandCount());
    for (std::vector<Item>& band : m_bands) {
        band.clear();
    }
    m_others.clear();
    for (std::uint32_t i = 0; i < m_units.size(); ++i) {
        DrawUnit& unit = *m_units[i];
        unit.lineBits.assign(unit.getAllItems(), AllLines);
        for (std::uint32_t item = 0; item < unit.boxes.size(); ++item) {
            const PictureBox& box = unit.boxes[item];
            // What is cut off far away covers less than it seems.
            if (box.isKnown() && box.farthest <= 1) {
                const std::size_t band = m_cover.findBand(box);
                (band == LineCover::NoBand ? m_others : m_bands[band])
                    .push_back({i, item, box.right - box.left + box.top - box.bottom});
            }
        }
    }
}

/// In several threads at once for different bands.
void OverlayLines::add(std::vector<Item>& items, const CoverMap& map, const Matrix4& worldToClip)
{
    // Large ones first: few long lines cover what many short ones need not be drawn for then.
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.size > b.size; });
    for (const Item& item : items) {
        DrawUnit& unit = *m_units[item.unit];
        std::uint16_t& bits = unit.lineBits[item.item];
        if (m_cover.hides(unit.boxes[item.item])) {
            bits = 0;
            continue;
        }
        const IndexPattern& pattern = unit.batch->getPattern(item.item);
        PictureCorners corners;
        if (!pattern.corners.empty() && pattern.lines.size() <= 2 * MostLineBits &&
            map.project(worldToClip, unit.batch->boxes[item.item], corners)) {
            bits = addLines(m_cover, pattern, corners);
        }
    }
}

} // namespace quon::viewer
