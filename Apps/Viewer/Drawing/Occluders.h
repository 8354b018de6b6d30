// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quon::viewer {

struct DrawUnit;

/**
 * Which geometries to draw first to learn what they hide: all over the picture those in front, as far as they cover
 * much for the triangles that they have.
 *
 * Each part of the picture has its own order from front to back. Every round takes the next ones of all parts, so that
 * what the rounds before hide can be left out.
 */
class Occluders {
public:
    /** A geometry, by the place of its unit and by its number in it. */
    struct Item {
        std::uint32_t unit = 0;
        std::uint32_t item = 0;
        float depth = 0;
    };

    static constexpr std::size_t RoundCount = 6;

    /** @param units with the boxes of their items; those of a batch that cover what is behind them count */
    void collect(const std::vector<DrawUnit>& units, int width, int height);

    /** The geometries of a round, unit by unit. */
    std::vector<Item> getRound(std::size_t round) const;

private:
    std::vector<std::size_t> m_tileEnds; ///< by part of the picture, in what follows
    std::vector<Item> m_items;           ///< those of a part from front to back
};

} // namespace quon::viewer
