// SPDX-License-Identifier: MIT
#include "Viewer/Tools/MeasureTool.h"

#include <Interaction/Picker.h>
#include <Interaction/ToolInteractionContext.h>

#include <OpenSG/OSGNode.h>

#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace quon::viewer {

namespace {

constexpr double RoundingShare = 1e-6;
constexpr double DegreesPerRadian = 180 / 3.14159265358979323846;

double lengthOf(const osg::Vec3f& vector)
{
    return std::hypot(static_cast<double>(vector[0]), static_cast<double>(vector[1]), static_cast<double>(vector[2]));
}

} // namespace

MeasureTool::MeasureTool(const CameraController& camera)
    : m_format(LengthUnit::Metre, false)
    , m_line(camera)
{
    update();
}

void MeasureTool::setChanged(std::function<void()> changed)
{
    m_changed = std::move(changed);
}

void MeasureTool::setLengthFormat(const LengthFormat& format)
{
    m_format = format;
    update();
}

QString MeasureTool::getResult() const
{
    if (!isFinished()) {
        return QString();
    }
    QStringList lines{tr("Distance: %1").arg(formatDistance(*m_second)), tr("Along x: %1").arg(formatStep(0)),
                      tr("Along y: %1").arg(formatStep(1)), tr("Along z: %1").arg(formatStep(2))};
    if (const QString angle = formatAngle(); !angle.isEmpty()) {
        lines << tr("Angle between the normals: %1").arg(angle);
    }
    return lines.join(QLatin1Char('\n'));
}

void MeasureTool::clear()
{
    m_first.reset();
    m_second.reset();
    m_pointer.reset();
    update();
}

bool MeasureTool::leaveStep()
{
    if (!m_first) {
        return false;
    }
    m_first.reset();
    m_second.reset();
    update();
    return true;
}

void MeasureTool::cancel()
{
    m_press.cancel();
}

void MeasureTool::retranslate()
{
    update();
}

void MeasureTool::pointerMoved(interaction::ToolInteractionContext* context)
{
    // Unless a "hover" follows, a button is held.
    m_hovering = false;
    m_press.move(context->getPicker()->getPointer());
}

void MeasureTool::beginFrame(interaction::ToolInteractionContext* context)
{
    interaction::Picker* picker = context->getPicker();
    // The picker knows whether anything moved since it was asked last.
    setPointer(m_hovering && picker != nullptr ? pick(*picker) : std::nullopt);
}

void MeasureTool::deactivateTool(interaction::ToolInteractionContext* context)
{
    m_hovering = false;
    cancel();
    clear();
    AbstractInteractionTool::deactivateTool(context);
}

bool MeasureTool::startTool(interaction::ToolInteractionContext* context, const std::string&)
{
    if (context->getPicker() == nullptr) {
        return false;
    }
    m_press.press(context->getPicker()->getPointer());
    return true;
}

bool MeasureTool::triggerTool(interaction::ToolInteractionContext* context, const std::string&)
{
    if (!m_press.release() || context->getPicker() == nullptr) {
        return true;
    }
    const std::optional<SurfacePoint> point = pick(*context->getPicker());
    if (!point) {
        return true;
    }
    if (m_first && !m_second) {
        m_second = point;
    } else {
        m_first = point;
        m_second.reset();
    }
    update();
    return true;
}

bool MeasureTool::hoverTool(interaction::ToolInteractionContext* context, const std::string&)
{
    m_hovering = context->getPicker() != nullptr;
    return m_hovering;
}

bool MeasureTool::stopHoverTool(interaction::ToolInteractionContext*, const std::string&)
{
    m_hovering = false;
    setPointer({});
    return true;
}

std::optional<MeasureTool::SurfacePoint> MeasureTool::pick(interaction::Picker& picker)
{
    osg::NodePtr node;
    SurfacePoint point;
    picker.getPicked(node, point.place, point.normal, nullptr);
    return node == osg::NullFC ? std::nullopt : std::optional<SurfacePoint>(point);
}

void MeasureTool::setPointer(const std::optional<SurfacePoint>& pointer)
{
    m_pointer = pointer;
    update();
}

void MeasureTool::update()
{
    MeasureLine::Content content;
    if (m_pointer) {
        content.pointer = m_pointer->place;
    }
    if (m_first) {
        content.first = m_first->place;
    }
    if (isFinished()) {
        content.second = m_second->place;
        content.texts = {formatDistance(*m_second), formatAngle(), {formatStep(0), formatStep(1), formatStep(2)}};
        setDescription(tr("Distance %1, click to begin anew").arg(content.texts.distance).toStdString());
    } else if (m_first) {
        if (m_pointer) {
            content.second = m_pointer->place;
            content.isPreview = true;
            content.texts.distance = formatDistance(*m_pointer);
        }
        setDescription(tr("Click the second point, Escape takes the first one back").toStdString());
    } else {
        setDescription(tr("Click two points to measure between them").toStdString());
    }
    if (m_line.setContent(content) && m_changed) {
        m_changed();
    }
}

QString MeasureTool::formatDistance(const SurfacePoint& second) const
{
    return m_format.format(lengthOf(second.place - m_first->place));
}

QString MeasureTool::formatStep(const osg::UInt32 axis) const
{
    const double from = static_cast<double>(m_first->place[axis]);
    const double to = static_cast<double>(m_second->place[axis]);
    // Places are single precision: of a step that is nothing else than their rounding, no digit is right.
    const bool isRounding = std::abs(to - from) <
                            RoundingShare * (lengthOf(m_first->place.subZero()) + lengthOf(m_second->place.subZero()));
    return m_format.format(isRounding ? 0.0 : to - from);
}

QString MeasureTool::formatAngle() const
{
    const double lengths = lengthOf(m_first->normal) * lengthOf(m_second->normal);
    if (!(lengths > 0)) {
        return QString();
    }
    const double cosine = std::clamp(static_cast<double>(m_first->normal.dot(m_second->normal)) / lengths, -1.0, 1.0);
    return tr("%1°", "degrees").arg(QLocale().toString(std::acos(cosine) * DegreesPerRadian, 'f', 1));
}

} // namespace quon::viewer
