// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/DrawUnit.h"

#include <algorithm>
#include <bitset>

namespace quon::viewer {

namespace {

// What surfaces reach beyond their box for lack of precision, in pixels, and how much nearer they may be.
constexpr float SurfaceBorder = 0.05F;
constexpr float DepthError = 1e-6F;

void append(std::vector<GLushort>& target, const std::vector<GLushort>& source, const std::uint32_t first)
{
    const std::size_t before = target.size();
    target.resize(before + source.size());
    for (std::size_t i = 0; i < source.size(); ++i) {
        target[before + i] = static_cast<GLushort>(source[i] + first);
    }
}

} // namespace

IndexCounts DrawUnit::getEnd(const std::size_t count) const
{
    if (count == 0) {
        return {};
    }
    return batch != nullptr ? batch->ends[count - 1] : item->mesh->counts;
}

std::size_t DrawUnit::countLarger(const double size) const
{
    if (batch == nullptr) {
        return static_cast<double>(item->radius) * pixels < size ? 0 : 1;
    }
    const auto end = std::partition_point(batch->radii.begin(), batch->radii.end(), [&](const float radius) {
        return !(static_cast<double>(radius) * pixels < size);
    });
    return static_cast<std::size_t>(end - batch->radii.begin());
}

std::size_t DrawUnit::countSeen(const std::size_t count) const
{
    return isSifted ? static_cast<std::size_t>(std::lower_bound(seen.begin(), seen.end(), count) - seen.begin())
                    : count;
}

std::size_t DrawUnit::countPrimitives(const std::size_t count) const
{
    if (!isSifted) {
        return getEnd(count).getPrimitives();
    }
    const std::size_t seenCount = countSeen(count);
    return seenCount == 0 ? 0 : seenCounted[seenCount - 1];
}

void DrawUnit::findBoxes(const CoverMap& map, const Matrix4& worldToClip, const std::size_t count)
{
    boxes.resize(count);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const WorldBox box = batch != nullptr ? batch->boxes[i] : WorldBox{item->minimum, item->maximum};
        if (!map.project(worldToClip, box, boxes[i])) {
            boxes[i] = PictureBox();
        }
    }
}

void DrawUnit::sift(const CoverMap& map, const float pixelRatio)
{
    const float border = getBorder(pixelRatio);
    std::size_t counted = 0;
    seen.clear();
    seenCounted.clear();
    for (std::size_t i = 0; i < getAllItems(); ++i) {
        const PictureBox box = getBox(i);
        // The ends of wide lines may reach nearer than the lines themselves, by a part of their length.
        const float nearest = box.nearest - DepthError - (border > 1 ? box.farthest - box.nearest : 0.0F);
        if (box.isKnown() && map.hides(box, border, nearest)) {
            continue;
        }
        counted += getPrimitives(i);
        seen.push_back(static_cast<std::uint32_t>(i));
        seenCounted.push_back(counted);
    }
    isSifted = seen.size() < getAllItems();
}

void DrawUnit::thin()
{
    std::size_t counted = 0;
    for (std::size_t i = 0; i < lineBits.size(); ++i) {
        if (lineBits[i] != 0) {
            counted += lineBits[i] == AllLines ? getPrimitives(i) : std::bitset<MostLineBits>(lineBits[i]).count();
            seen.push_back(static_cast<std::uint32_t>(i));
            seenCounted.push_back(counted);
        }
    }
    isSifted = true;
}

float DrawUnit::getBorder(const float pixelRatio) const
{
    const IndexCounts all = getEnd(getAllItems());
    const bool hasLines = all.lines > 0 || state->frontMode != GL_FILL || state->backMode != GL_FILL;
    const float lines = hasLines ? 1 + pixelRatio * state->lineWidth / 2 : 0;
    const float points = all.points > 0 ? 1 + pixelRatio * MaterialState::PointSize / 2 : 0;
    return std::max({lines, points, SurfaceBorder});
}

void ItemIndices::clear()
{
    m_triangles.clear();
    m_lines.clear();
    m_points.clear();
}

void ItemIndices::add(const Batch& batch, const std::uint32_t item)
{
    const IndexPattern& pattern = batch.getPattern(item);
    addTriangles(batch, item);
    append(m_lines, pattern.lines, batch.firstVertices[item]);
    append(m_points, pattern.points, batch.firstVertices[item]);
}

void ItemIndices::addTriangles(const Batch& batch, const std::uint32_t item)
{
    append(m_triangles, batch.getPattern(item).triangles, batch.firstVertices[item]);
}

void ItemIndices::addLines(const Batch& batch, const std::uint32_t item, const std::uint16_t lineBits)
{
    if (lineBits == AllLines) {
        add(batch, item);
        return;
    }
    const IndexPattern& pattern = batch.getPattern(item);
    const std::uint32_t first = batch.firstVertices[item];
    for (std::size_t i = 0; 2 * i + 1 < pattern.lines.size(); ++i) {
        if ((lineBits >> i & 1U) != 0) {
            m_lines.push_back(static_cast<GLushort>(pattern.lines[2 * i] + first));
            m_lines.push_back(static_cast<GLushort>(pattern.lines[2 * i + 1] + first));
        }
    }
}

void ItemIndices::addUncovered(const Batch& batch, const std::uint32_t item, const CoverMap& map,
                               const Matrix4& worldToClip)
{
    const IndexPattern& pattern = batch.getPattern(item);
    PictureCorners corners;
    if (pattern.corners.empty() || !map.project(worldToClip, batch.boxes[item], corners)) {
        add(batch, item);
        return;
    }
    const std::uint32_t first = batch.firstVertices[item];
    for (std::size_t i = 0; i + 1 < pattern.lines.size(); i += 2) {
        const GLushort from = pattern.lines[i];
        const GLushort to = pattern.lines[i + 1];
        if (!map.hides(corners.at(pattern.corners[from]), corners.at(pattern.corners[to]), ColourDepth)) {
            m_lines.push_back(static_cast<GLushort>(from + first));
            m_lines.push_back(static_cast<GLushort>(to + first));
        }
    }
}

void ItemIndices::draw() const
{
    VertexBuffers::draw(GL_TRIANGLES, m_triangles);
    VertexBuffers::draw(GL_LINES, m_lines);
    VertexBuffers::draw(GL_POINTS, m_points);
}

std::size_t ItemIndices::countCalls() const
{
    return (m_triangles.empty() ? 0U : 1U) + (m_lines.empty() ? 0U : 1U) + (m_points.empty() ? 0U : 1U);
}

} // namespace quon::viewer
