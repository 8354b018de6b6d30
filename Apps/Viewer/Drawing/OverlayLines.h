// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/LineCover.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quon::viewer {

class Matrix4;
class WorkerPool;
struct DrawUnit;
struct MaterialState;

/**
 * The lines that are drawn last and over everything, as those of selection boxes are, where they are so many that most
 * of them add nothing to the others.
 */
class OverlayLines {
public:
    /**
     * Finds the units that consist of such lines: those of the last sort key, when all of them have one colour.
     *
     * @return their material, null when there are none
     */
    const MaterialState* collect(std::vector<DrawUnit>& units);

    /**
     * Leaves out of the units that collect() found what adds nothing.
     *
     * @param map has the size of the picture in which the units have their boxes
     * @param style as the lines of their material are drawn; LineCover has to be able to follow them
     */
    void thin(const CoverMap& map, const Matrix4& worldToClip, const LineStyle& style, WorkerPool& workers);

    /** The pixels that have the colour of the lines in the end. */
    const LineCover& getCover() const { return m_cover; }

private:
    struct Item {
        std::uint32_t unit;
        std::uint32_t item;
        float size; ///< in the picture
    };

    void sortByBand();
    void add(std::vector<Item>& items, const CoverMap& map, const Matrix4& worldToClip);

    const MaterialState* m_state = nullptr;
    std::vector<DrawUnit*> m_units;
    std::vector<std::vector<Item>> m_bands; ///< by band; kept for their memory
    std::vector<Item> m_others;             ///< in more than one band
    LineCover m_cover;
};

} // namespace quon::viewer
