// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QSize;

namespace quon::viewer {

/** Something painted flat over the scene: a rectangle being drawn, a measured length. */
class OverlayItem {
public:
    /**
     * Paints the item; below the notifications, above the items that were added before.
     *
     * @param painter in viewport pixels, origin top left; its state is restored afterwards
     * @param size of the viewport in these pixels
     */
    virtual void paint(QPainter& painter, const QSize& size) = 0;

protected:
    // Items are borrowed and destroyed through their own class.
    ~OverlayItem() = default;
};

} // namespace quon::viewer
