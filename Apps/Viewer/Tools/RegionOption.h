// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGSelectionOption.h>

#include <functional>

namespace quon::viewer {

/** A rectangle of the viewport in pixels, origin top left; the pixel in the corner reaches from (0, 0) to (1, 1). */
struct PixelRectangle {
    double left = 0;
    double top = 0;
    double right = 0;  ///< not less than left
    double bottom = 0; ///< not less than top

    /** Exact. */
    bool operator==(const PixelRectangle& other) const
    {
        return std::equal_to<>()(left, other.left) && std::equal_to<>()(top, other.top) &&
               std::equal_to<>()(right, other.right) && std::equal_to<>()(bottom, other.bottom);
    }
};

/** Asks EmbreePicker::getPickedNodes() for the parts in a rectangle, in place of the nodes around the pointer. */
class RegionOption : public osg::SelectionOption {
public:
    explicit RegionOption(const PixelRectangle& rectangle)
        : m_rectangle(rectangle)
    {}

    const PixelRectangle& getRectangle() const { return m_rectangle; }

private:
    PixelRectangle m_rectangle;
};

} // namespace quon::viewer
