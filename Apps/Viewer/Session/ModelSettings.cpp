// SPDX-License-Identifier: MIT
#include "Viewer/Session/ModelSettings.h"

#include "Viewer/Session/ViewerSession.h"

#include <QFileInfo>
#include <QSettings>
#include <QVariant>

#include <cmath>

namespace quon::viewer {

namespace {

const QString LengthUnitKey = QStringLiteral("lengthUnit");
const char* const UpAxisKey = "upAxis";
const char* const MetresKey = "metresPerUnit";

QString nameOf(const UpAxis axis)
{
    return axis == UpAxis::X ? QStringLiteral("x") : axis == UpAxis::Z ? QStringLiteral("z") : QStringLiteral("y");
}

UpAxis axisOf(const QString& name)
{
    return name == QLatin1String("x") ? UpAxis::X : name == QLatin1String("z") ? UpAxis::Z : UpAxis::Y;
}

QString nameOf(const LengthUnit unit)
{
    return unit == LengthUnit::Millimetre ? QStringLiteral("mm")
           : unit == LengthUnit::Inch     ? QStringLiteral("in")
                                          : QStringLiteral("m");
}

LengthUnit unitOf(const QString& name)
{
    return name == QLatin1String("mm")   ? LengthUnit::Millimetre
           : name == QLatin1String("in") ? LengthUnit::Inch
                                         : LengthUnit::Metre;
}

} // namespace

ModelSettings::ModelSettings(ViewerSession& session, QObject* parent)
    : QObject(parent)
    , m_session(session)
{}

void ModelSettings::useSettings(QSettings* settings)
{
    m_settings = settings;
    if (m_settings != nullptr) {
        m_lengthUnit = unitOf(m_settings->value(LengthUnitKey).toString());
        tellChanged();
    }
}

void ModelSettings::show(const LoadedModel& model)
{
    m_extension = QFileInfo(QString::fromStdString(model.file)).suffix().toLower();
    m_isPlaceable = true;
    m_isUpAxisStated = model.isUpAxisStated;
    m_isUnitStated = model.isUnitStated;
    m_placement = model.placement;
    if (m_settings != nullptr && !m_isUpAxisStated) {
        m_placement.upAxis = axisOf(m_settings->value(keyOf(UpAxisKey)).toString());
    }
    if (m_settings != nullptr && !m_isUnitStated) {
        const double metres = m_settings->value(keyOf(MetresKey)).toDouble();
        m_placement.metresPerUnit = std::isfinite(metres) && metres > 0 ? metres : 0;
    }
    if (m_placement != model.placement) {
        m_placement.applyTo(model.root.get());
    }
    m_session.setModel(model.root.get(), model.prepared);
    tellChanged();
}

void ModelSettings::show(const osg::NodePtr& model)
{
    m_extension.clear();
    m_isPlaceable = false;
    m_isUpAxisStated = true;
    m_isUnitStated = true;
    m_placement = {UpAxis::Y, 1};
    m_session.setModel(model);
    tellChanged();
}

void ModelSettings::setUpAxis(const UpAxis upAxis)
{
    if (!m_isPlaceable) {
        return;
    }
    if (!m_isUpAxisStated) {
        remember(UpAxisKey, nameOf(upAxis));
    }
    ModelPlacement placement = m_placement;
    placement.upAxis = upAxis;
    place(placement);
}

void ModelSettings::setMetresPerUnit(const double metresPerUnit)
{
    if (!m_isPlaceable) {
        return;
    }
    if (!m_isUnitStated) {
        remember(MetresKey, metresPerUnit);
    }
    ModelPlacement placement = m_placement;
    placement.metresPerUnit = metresPerUnit;
    place(placement);
}

void ModelSettings::setLengthUnit(const LengthUnit unit)
{
    if (unit == m_lengthUnit) {
        return;
    }
    m_lengthUnit = unit;
    if (m_settings != nullptr) {
        m_settings->setValue(LengthUnitKey, nameOf(unit));
    }
    tellChanged();
}

LengthFormat ModelSettings::getLengthFormat() const
{
    return LengthFormat(m_lengthUnit, m_placement.metresPerUnit > 0);
}

QString ModelSettings::describeSize() const
{
    if (m_session.getModel() == osg::NullFC) {
        return {};
    }
    return getLengthFormat().formatSize(m_session.getModelMaximum() - m_session.getModelMinimum());
}

void ModelSettings::tellChanged()
{
    m_session.getMeasureTool().setLengthFormat(getLengthFormat());
    emit changed();
}

void ModelSettings::place(const ModelPlacement& placement)
{
    if (placement == m_placement) {
        return;
    }
    m_placement = placement;
    m_placement.applyTo(m_session.getModel());
    m_session.modelMoved();
    tellChanged();
}

QString ModelSettings::keyOf(const char* what) const
{
    return QStringLiteral("formats/%1/%2").arg(m_extension, QLatin1String(what));
}

void ModelSettings::remember(const char* what, const QVariant& value)
{
    if (m_settings != nullptr && !m_extension.isEmpty()) {
        m_settings->setValue(keyOf(what), value);
    }
}

} // namespace quon::viewer
