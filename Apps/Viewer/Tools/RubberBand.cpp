// SPDX-License-Identifier: MIT
#include "Viewer/Tools/RubberBand.h"

#include <QColor>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>
#include <QRectF>
#include <QSize>

#include <algorithm>
#include <utility>

namespace quon::viewer {

namespace {

const QColor Enclosing(21, 101, 216);
const QColor Touching(16, 148, 78);

constexpr int FillOpacity = 38;
constexpr int HaloOpacity = 110;
constexpr int LineWidth = 2;
constexpr int HaloWidth = 4;
constexpr double DashLength = 10;
constexpr double DashGap = 6;

// The label: distance from the pointer, space around its text, roundness.
constexpr int LabelDistance = 16;
constexpr int PaddingX = 7;
constexpr int PaddingY = 3;
constexpr int Radius = 4;

} // namespace

void RubberBand::setChanged(std::function<void()> changed)
{
    m_changed = std::move(changed);
}

void RubberBand::start(const osg::Pnt2f& position)
{
    m_active = true;
    m_start = position;
    m_end = position;
    m_count = 0;
    changed();
}

void RubberBand::moveTo(const osg::Pnt2f& position)
{
    if (m_active && position != m_end) {
        m_end = position;
        changed();
    }
}

void RubberBand::stop()
{
    if (m_active) {
        m_active = false;
        changed();
    }
}

PixelRectangle RubberBand::getRectangle() const
{
    PixelRectangle rectangle;
    rectangle.left = static_cast<double>(std::min(m_start[0], m_end[0]));
    rectangle.top = static_cast<double>(std::min(m_start[1], m_end[1]));
    rectangle.right = static_cast<double>(std::max(m_start[0], m_end[0])) + 1;
    rectangle.bottom = static_cast<double>(std::max(m_start[1], m_end[1])) + 1;
    return rectangle;
}

void RubberBand::setCount(const int count)
{
    if (count != m_count) {
        m_count = count;
        changed();
    }
}

void RubberBand::paint(QPainter& painter, const QSize& size)
{
    if (!m_active) {
        return;
    }
    const PixelRectangle pixels = getRectangle();
    // A line of two pixels that lies on the outermost ones of the rectangle.
    const QRectF border(pixels.left + 1, pixels.top + 1, std::max(0.0, pixels.right - pixels.left - LineWidth),
                        std::max(0.0, pixels.bottom - pixels.top - LineWidth));
    const QColor colour = isTouching() ? Touching : Enclosing;

    painter.setRenderHint(QPainter::Antialiasing, true);
    QColor fill = colour;
    fill.setAlpha(FillOpacity);
    painter.fillRect(QRectF(pixels.left, pixels.top, pixels.right - pixels.left, pixels.bottom - pixels.top), fill);
    // With something light around it, the line stands out from dark backgrounds as well.
    painter.setBrush(Qt::NoBrush);
    painter.setPen(makePen(QColor(255, 255, 255, HaloOpacity), HaloWidth));
    painter.drawRect(border);
    painter.setPen(makePen(colour, LineWidth));
    painter.drawRect(border);
    paintLabel(painter, size);
}

QPen RubberBand::makePen(const QColor& colour, const int width) const
{
    QPen pen(colour, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    if (isTouching()) {
        // Qt counts dashes in widths of the line.
        pen.setDashPattern({DashLength / width, DashGap / width});
    }
    return pen;
}

void RubberBand::paintLabel(QPainter& painter, const QSize& size) const
{
    const QString text = isTouching() ? tr("Touched: %1").arg(m_count) : tr("Enclosed: %1").arg(m_count);
    const QFontMetrics metrics(painter.font());
    QRect box(0, 0, metrics.horizontalAdvance(text) + 2 * PaddingX, metrics.height() + 2 * PaddingY);
    // Beyond the corner that the pointer draws, in the viewport all the same.
    const int x = static_cast<int>(m_end[0]);
    const int y = static_cast<int>(m_end[1]);
    box.moveLeft(isTouching() ? x - LabelDistance - box.width() : x + LabelDistance);
    box.moveTop(m_end[1] < m_start[1] ? y - LabelDistance - box.height() : y + LabelDistance);
    box.moveLeft(std::max(0, std::min(box.left(), size.width() - box.width())));
    box.moveTop(std::max(0, std::min(box.top(), size.height() - box.height())));

    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isTouching() ? Touching : Enclosing);
    painter.drawRoundedRect(box, Radius, Radius);
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, text);
}

void RubberBand::changed() const
{
    if (m_changed) {
        m_changed();
    }
}

} // namespace quon::viewer
