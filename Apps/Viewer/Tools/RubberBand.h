// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/OverlayItem.h"
#include "Viewer/Tools/RegionOption.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <QCoreApplication>

#include <functional>

class QColor;
class QPen;

namespace quon::viewer {

/**
 * The rectangle that the user draws around parts, painted while it grows.
 *
 * Drawn to the right it encloses: solid and blue. Drawn to the left it touches: dashed and green. A label at the
 * pointer says so too, with the number of parts that it holds.
 */
class RubberBand : public OverlayItem {
    Q_DECLARE_TR_FUNCTIONS(RubberBand)

public:
    /** @param changed called whenever the rectangle looks different; may be empty */
    void setChanged(std::function<void()> changed);

    /** Begins at a pixel, with no part counted. */
    void start(const osg::Pnt2f& position);

    /** Draws on to a pixel; ignored unless active. */
    void moveTo(const osg::Pnt2f& position);

    /** Takes the rectangle away; ignored unless active. */
    void stop();

    /** Whether there is a rectangle, from start() to stop(). */
    bool isActive() const { return m_active; }

    /** Whether it is drawn to the left. */
    bool isTouching() const { return m_end[0] < m_start[0]; }

    /** Returns the rectangle, both pixels included. */
    PixelRectangle getRectangle() const;

    /** Sets how many parts the label tells. */
    void setCount(int count);
    int getCount() const { return m_count; }

    /** Paints the rectangle as far as it lies in the viewport; nothing unless active. */
    void paint(QPainter& painter, const QSize& size) override;

private:
    QPen makePen(const QColor& colour, int width) const;
    void paintLabel(QPainter& painter, const QSize& size) const;
    void changed() const;

    std::function<void()> m_changed;
    bool m_active = false;
    osg::Pnt2f m_start;
    osg::Pnt2f m_end;
    int m_count = 0;
};

} // namespace quon::viewer
