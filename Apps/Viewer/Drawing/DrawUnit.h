// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/BatchList.h"
#include "Viewer/Drawing/CoverMap.h"
#include "Viewer/Drawing/MaterialState.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quon::viewer {

/** What is drawn with one pair of buffers in one picture: a batch, or a geometry by itself. */
struct DrawUnit {
    const DrawGroup* group = nullptr;
    const MaterialState* state = nullptr;
    Batch* batch = nullptr;         ///< null for a single geometry
    const DrawItem* item = nullptr; ///< null for a batch
    double pixels = 0;              ///< on the screen for one unit of length
    double depth = 0;               ///< of the middle, in front of the eye
    std::size_t itemCount = 0;      ///< how many are drawn: the first ones, which are the largest
    std::size_t markedCount = 0;    ///< how many are drawn, as they are or as markers
    bool isBeyondNear = false;      ///< nothing of it is cut off by the near plane

    std::vector<PictureBox> boxes;        ///< of the first items, as far as somebody asked for them; see findBoxes()
    bool isSifted = false;                ///< of its items only those count that are seen
    std::vector<std::uint32_t> seen;      ///< items, ascending
    std::vector<std::size_t> seenCounted; ///< primitives of the seen ones, up to the end of each

    std::vector<std::uint16_t> lineBits; ///< by item, see thin(); empty: whole items are drawn

    bool isStale() const { return batch != nullptr ? batch->stale : item->mesh->buffersStale; }

    /** Whether its geometries have colours of their own that count. */
    bool isColoured() const { return group->format.hasColours && state->coloursCount; }

    const VertexBuffers& getBuffers() const { return batch != nullptr ? batch->buffers : item->mesh->buffers; }

    std::size_t getAllItems() const { return batch != nullptr ? batch->items.size() : 1; }

    /** The indices up to the end of so many items. */
    IndexCounts getEnd(std::size_t count) const;

    std::size_t getPrimitives(const std::size_t index) const
    {
        return getEnd(index + 1).getPrimitives() - getEnd(index).getPrimitives();
    }

    /** How many items have at least this size on the screen. */
    std::size_t countLarger(double size) const;

    /** How many of the first items are seen, as far as that is known. */
    std::size_t countSeen(std::size_t count) const;

    /** How many primitives those of the first items have that are seen. */
    std::size_t countPrimitives(std::size_t count) const;

    /** The item that is the n-th one seen. */
    std::uint32_t getSeen(const std::size_t place) const
    {
        return isSifted ? seen[place] : static_cast<std::uint32_t>(place);
    }

    /** Finds out where the first items are in a picture. */
    void findBoxes(const CoverMap& map, const Matrix4& worldToClip, std::size_t count);

    /** Where an item is; not known where nobody asked for it. */
    PictureBox getBox(const std::size_t index) const { return index < boxes.size() ? boxes[index] : PictureBox(); }

    /** Leaves out what a map hides, as far as there are boxes. */
    void sift(const CoverMap& map, float pixelRatio);

    /**
     * Leaves lines out that add nothing to others of the same colour, as the bits of the items say: AllLines, or one
     * for each line. Items without any are not seen.
     */
    void thin();

    /** How many pixels what is drawn of an item reaches beyond its box. */
    float getBorder(float pixelRatio) const;
};

/** Indices of some items of a batch, to be drawn from its vertices. */
class ItemIndices {
public:
    void clear();

    void add(const Batch& batch, std::uint32_t item);
    void addTriangles(const Batch& batch, std::uint32_t item);

    /** Adds some lines of an item that consists of lines. */
    void addLines(const Batch& batch, std::uint32_t item, std::uint16_t lineBits);

    /**
     * Adds an item without those lines that a map hides.
     *
     * @param map its numbers are those of colours; grown by what lines reach to their sides
     */
    void addUncovered(const Batch& batch, std::uint32_t item, const CoverMap& map, const Matrix4& worldToClip);

    /** Puts the indices into the buffers of a batch, to be drawn from there. */
    void fill(VertexBuffers& buffers) const { buffers.fillIndices(m_triangles, m_lines, m_points); }

    /** Draws with the bound vertices; VertexBuffers::bind() is to be called before anything else is drawn. */
    void draw() const;

    std::size_t countPrimitives() const { return m_triangles.size() / 3 + m_lines.size() / 2 + m_points.size(); }

    /** How many calls draw() takes. */
    std::size_t countCalls() const;

private:
    std::vector<GLushort> m_triangles;
    std::vector<GLushort> m_lines;
    std::vector<GLushort> m_points;
};

/** The most lines of an item that can be left out one by one, and the bits of an item of which none are. */
constexpr std::size_t MostLineBits = 15;
constexpr std::uint16_t AllLines = 0xFFFF;

/** Where numbers of colours and depths part: a pixel that has its colour hides whatever is drawn in this depth. */
constexpr float ColourDepth = 0.5F;

} // namespace quon::viewer
