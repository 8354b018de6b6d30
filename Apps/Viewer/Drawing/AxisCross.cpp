// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/AxisCross.h"

#include "Viewer/Model/Matrix4.h"
#include "Viewer/Tools/CameraController.h"

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>

#include <algorithm>
#include <array>

namespace quon::viewer {

namespace {

// All in viewport pixels.
constexpr double Length = 30;
constexpr double LetterDistance = 40;
constexpr double Margin = 56;
constexpr int LetterSize = 12;
constexpr int SmallestViewport = 4 * static_cast<int>(Margin);

struct Axis {
    int column; ///< of the matrix from world to eye
    QString letter;
    QColor colour;
    double towardsEye = 0;
};

} // namespace

AxisCross::AxisCross(const CameraController& camera)
    : m_camera(camera)
{}

void AxisCross::paint(QPainter& painter, const QSize& size)
{
    if (std::min(size.width(), size.height()) < SmallestViewport) {
        return;
    }
    const Matrix4 view = m_camera.getView();
    std::array<Axis, 3> axes{Axis{0, QStringLiteral("x"), QColor(214, 64, 69)},
                             Axis{1, QStringLiteral("y"), QColor(92, 158, 62)},
                             Axis{2, QStringLiteral("z"), QColor(52, 116, 205)}};
    for (Axis& axis : axes) {
        axis.towardsEye = view(2, axis.column);
    }
    std::sort(axes.begin(), axes.end(), [](const Axis& a, const Axis& b) { return a.towardsEye < b.towardsEye; });

    painter.setRenderHint(QPainter::Antialiasing);
    QFont font = painter.font();
    font.setPixelSize(LetterSize);
    font.setBold(true);
    painter.setFont(font);
    painter.translate(size.width() - Margin, size.height() - Margin);
    for (const Axis& axis : axes) {
        // The eye looks along its negative z axis, and y points up there.
        const QPointF direction(view(0, axis.column), -view(1, axis.column));
        painter.setPen(QPen(axis.colour, 2.5, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(), direction * Length);
        const QRectF letter(direction * LetterDistance - QPointF(LetterSize, LetterSize),
                            QSizeF(2 * LetterSize, 2 * LetterSize));
        painter.drawText(letter, Qt::AlignCenter, axis.letter);
    }
}

} // namespace quon::viewer
