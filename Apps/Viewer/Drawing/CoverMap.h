// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <array>
#include <cstddef>
#include <vector>

namespace quon::viewer {

/** A box in the world, along its axes. */
struct WorldBox {
    osg::Pnt3f minimum;
    osg::Pnt3f maximum;
};

/** What a box in the world can touch in a picture; pixels count from the lower left. */
struct PictureBox {
    float left = 0;
    float bottom = 0;
    float right = -1;
    float top = 0;
    float nearest = 0;  ///< depth from 0 to 1
    float farthest = 0; ///< depth from 0 to 1

    /** False as it is made: where it is cannot be said. */
    bool isKnown() const { return left <= right; }
};

/** A place in a picture; pixels count from the lower left. */
struct PicturePoint {
    float x = 0;
    float y = 0;
};

/** The corners of a box in a picture: the bits of the place take x, y and z from the maximum. */
using PictureCorners = std::array<PicturePoint, 8>;

/**
 * What is drawn already in each pixel of a picture, to tell quickly what would add nothing to it.
 *
 * A pixel has one number: from which depth on nothing is seen any more in it. What counts as covered without a depth,
 * because it already has its final colour, has the number 0; what shows everything has 1.
 */
class CoverMap {
public:
    /** Makes room for a picture of this size; what the pixels hold is undefined until they are written. */
    void setSize(int width, int height);

    int getWidth() const { return m_levels.empty() ? 0 : m_levels.front().width; }
    int getHeight() const { return m_levels.empty() ? 0 : m_levels.front().height; }

    /** The numbers, row by row from below; finish() has to be called after writing them. */
    float* getPixels() { return m_levels.front().values.data(); }

    /** Lets every pixel show as much as the one that shows most within a distance along both axes; before finish(). */
    void grow(int distance);

    /** Gathers the pixels, so that large boxes are answered as fast as small ones. */
    void finish();

    /**
     * Where a box is to be seen.
     *
     * @return false when that is not known: a corner is behind the eye or beyond the near plane, or no number
     */
    bool project(const Matrix4& worldToClip, const WorldBox& box, PictureBox& result) const;
    bool project(const Matrix4& worldToClip, const WorldBox& box, PictureCorners& result) const;

    /**
     * Whether nothing of a box is to be seen: it lies beside the picture, or behind what covers all of its pixels.
     *
     * @param border how many pixels it reaches beyond its box
     * @param depth of the nearest that is drawn of it; what is as deep as that covers nothing
     */
    bool hides(const PictureBox& box, float border, float depth) const;

    /** The same of a line without width: what is beside it by less than a pixel may be looked at in place of it. */
    bool hides(const PicturePoint& from, const PicturePoint& to, float depth) const;

private:
    /** A quarter of the pixels of the level before: the largest of four numbers each. */
    struct Level {
        int width = 0;
        int height = 0;
        std::vector<float> values;
    };

    std::vector<Level> m_levels;
    std::vector<float> m_row; ///< kept for its memory
};

} // namespace quon::viewer
