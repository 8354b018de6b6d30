// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/MeasureLine.h"

#include "Viewer/Tools/CameraController.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QRectF>
#include <QSize>

#include <algorithm>
#include <vector>

namespace quon::viewer {

namespace {

const QColor Halo(255, 255, 255, 215);
const QColor Ink(17, 62, 140);
const QColor BoxColour(24, 30, 38, 232);
const QColor BoxBorder(255, 255, 255, 96);
const QColor TextColour(245, 247, 250);
const QColor FaintColour(176, 186, 198);
// Of the axes, as in the corner of the view; lighter in the box.
const QColor StepColours[] = {QColor(196, 44, 50), QColor(58, 124, 34), QColor(34, 96, 196)};
const QColor LetterColours[] = {QColor(255, 130, 130), QColor(150, 214, 118), QColor(128, 178, 255)};

// All in logical pixels.
constexpr double LineWidth = 2;
constexpr double HaloWidth = 5;
constexpr double StepWidth = 1.5;
constexpr double PointRadius = 4;
constexpr double PointerRadius = 6;
constexpr double PaddingX = 10;
constexpr double PaddingY = 7;
constexpr double Radius = 8;
constexpr double Gap = 12;
constexpr double Border = 6;
constexpr int DistanceSize = 16;
constexpr int StepSize = 13;

// Element by element: the points' own comparison takes close ones for equal.
bool isSame(const std::optional<osg::Pnt3f>& a, const std::optional<osg::Pnt3f>& b)
{
    const auto equal = [](const osg::Pnt3f& left, const osg::Pnt3f& right) {
        return std::equal(left.getValues(), left.getValues() + 3, right.getValues());
    };
    return a.has_value() == b.has_value() && (!a || equal(*a, *b));
}

bool isSame(const MeasureLine::Content& a, const MeasureLine::Content& b)
{
    return isSame(a.pointer, b.pointer) && isSame(a.first, b.first) && isSame(a.second, b.second) &&
           a.isPreview == b.isPreview && a.texts.distance == b.texts.distance && a.texts.angle == b.texts.angle &&
           a.texts.steps == b.texts.steps;
}

/** A piece of a line of text. */
struct Piece {
    QString text;
    QColor colour;
    int size; ///< of the font
    bool bold;
};

using Line = std::vector<Piece>;

QFont makeFont(QFont font, const Piece& piece)
{
    font.setPixelSize(piece.size);
    font.setBold(piece.bold);
    return font;
}

QSizeF measure(const QFont& font, const Line& line)
{
    QSizeF size(0, 0);
    for (const Piece& piece : line) {
        const QFontMetricsF metrics(makeFont(font, piece));
        size.rwidth() += metrics.horizontalAdvance(piece.text);
        size.setHeight(std::max(size.height(), metrics.height()));
    }
    return size;
}

void paintLine(QPainter& painter, const Line& line, const QPointF& topLeft, const double height)
{
    const QFont font = painter.font();
    double x = topLeft.x();
    for (const Piece& piece : line) {
        painter.setFont(makeFont(font, piece));
        painter.setPen(piece.colour);
        const double width = QFontMetricsF(painter.font()).horizontalAdvance(piece.text);
        painter.drawText(QRectF(x, topLeft.y(), width + 1, height), Qt::AlignLeft | Qt::AlignVCenter, piece.text);
        x += width;
    }
    painter.setFont(font);
}

std::vector<Line> makeLines(const MeasureLine::Texts& texts)
{
    std::vector<Line> lines;
    Line first{{texts.distance, TextColour, DistanceSize, true}};
    if (!texts.angle.isEmpty()) {
        first.push_back({QStringLiteral("    ∠ "), FaintColour, DistanceSize, false});
        first.push_back({texts.angle, TextColour, DistanceSize, false});
    }
    lines.push_back(first);
    const QString letters[] = {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")};
    Line steps;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (!texts.steps[axis].isEmpty()) {
            const QString space = steps.empty() ? QString() : QStringLiteral("    ");
            steps.push_back({space + letters[axis] + QLatin1Char(' '), LetterColours[axis], StepSize, true});
            steps.push_back({texts.steps[axis], TextColour, StepSize, false});
        }
    }
    if (!steps.empty()) {
        lines.push_back(steps);
    }
    return lines;
}

void paintPoint(QPainter& painter, const QPointF& place)
{
    painter.setPen(QPen(Halo, 2));
    painter.setBrush(Ink);
    painter.drawEllipse(place, PointRadius, PointRadius);
}

void paintPointer(QPainter& painter, const QPointF& place)
{
    painter.setBrush(Qt::NoBrush);
    for (const QPen& pen : {QPen(Halo, 3.5), QPen(Ink, 1.5)}) {
        painter.setPen(pen);
        painter.drawEllipse(place, PointerRadius, PointerRadius);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(Ink);
    painter.drawEllipse(place, 1.5, 1.5);
}

// At the middle of the line, or beside the line where the box would cover one of its ends there.
QRectF placeBox(const QSizeF& box, const QPointF& first, const QPointF& second, const QSize& viewport)
{
    const QRectF ends = QRectF(first, second).normalized();
    const double reachX = (ends.width() + box.width()) / 2 + Gap;
    const double reachY = (ends.height() + box.height()) / 2 + Gap;
    QRectF rectangle(QPointF(), box);
    for (const QPointF& offset :
         {QPointF(0, 0), QPointF(0, -reachY), QPointF(0, reachY), QPointF(-reachX, 0), QPointF(reachX, 0)}) {
        rectangle.moveCenter(ends.center() + offset);
        rectangle.moveLeft(
            std::clamp(rectangle.left(), Border, std::max(Border, viewport.width() - Border - box.width())));
        rectangle.moveTop(
            std::clamp(rectangle.top(), Border, std::max(Border, viewport.height() - Border - box.height())));
        const QRectF covered = rectangle.adjusted(-PointRadius, -PointRadius, PointRadius, PointRadius);
        if (!covered.contains(first) && !covered.contains(second)) {
            break;
        }
    }
    return rectangle;
}

} // namespace

MeasureLine::MeasureLine(const CameraController& camera)
    : m_camera(camera)
{}

bool MeasureLine::setContent(const Content& content)
{
    if (isSame(content, m_content)) {
        return false;
    }
    m_content = content;
    return true;
}

void MeasureLine::paint(QPainter& painter, const QSize& size)
{
    painter.setRenderHint(QPainter::Antialiasing);
    const std::optional<QPointF> first = getPlace(m_content.first);
    const std::optional<QPointF> second = getPlace(m_content.second);
    if (first && second) {
        if (!m_content.isPreview) {
            paintSteps(painter);
        }
        painter.setPen(QPen(Halo, HaloWidth, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(*first, *second);
        painter.setPen(QPen(Ink, LineWidth, m_content.isPreview ? Qt::DashLine : Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(*first, *second);
    }
    if (const std::optional<QPointF> pointer = getPlace(m_content.pointer); pointer) {
        paintPointer(painter, *pointer);
    }
    if (first) {
        paintPoint(painter, *first);
    }
    if (second && !m_content.isPreview) {
        paintPoint(painter, *second);
    }
    if (first && second && !m_content.texts.distance.isEmpty()) {
        paintTexts(painter, size, *first, *second);
    }
}

std::optional<QPointF> MeasureLine::getPlace(const std::optional<osg::Pnt3f>& point) const
{
    const auto place = point ? m_camera.getPlace(*point) : std::nullopt;
    return place ? std::optional<QPointF>(QPointF((*place)[0], (*place)[1])) : std::nullopt;
}

void MeasureLine::paintSteps(QPainter& painter) const
{
    osg::Pnt3f from = *m_content.first;
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        osg::Pnt3f to = from;
        to[axis] = (*m_content.second)[axis];
        const std::optional<QPointF> start = getPlace(from);
        const std::optional<QPointF> end = getPlace(to);
        if (start && end) {
            painter.setPen(QPen(Halo, StepWidth + 2, Qt::SolidLine, Qt::RoundCap));
            painter.drawLine(*start, *end);
            painter.setPen(QPen(StepColours[axis], StepWidth, Qt::SolidLine, Qt::RoundCap));
            painter.drawLine(*start, *end);
        }
        from = to;
    }
}

void MeasureLine::paintTexts(QPainter& painter, const QSize& size, const QPointF& first, const QPointF& second) const
{
    const std::vector<Line> lines = makeLines(m_content.texts);
    QSizeF box(0, 2 * PaddingY);
    for (const Line& line : lines) {
        const QSizeF extent = measure(painter.font(), line);
        box = QSizeF(std::max(box.width(), extent.width()), box.height() + extent.height());
    }
    box.rwidth() += 2 * PaddingX;

    const QRectF rectangle = placeBox(box, first, second, size);
    painter.setPen(QPen(BoxBorder, 1));
    painter.setBrush(BoxColour);
    painter.drawRoundedRect(rectangle, Radius, Radius);
    QPointF place = rectangle.topLeft() + QPointF(PaddingX, PaddingY);
    for (const Line& line : lines) {
        const double height = measure(painter.font(), line).height();
        paintLine(painter, line, place, height);
        place.ry() += height;
    }
}

} // namespace quon::viewer
