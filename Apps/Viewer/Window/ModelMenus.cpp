// SPDX-License-Identifier: MIT
#include "Viewer/Window/ModelMenus.h"

#include "Viewer/Session/ModelSettings.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>

#include <array>
#include <cmath>
#include <cstddef>

namespace quon::viewer {

namespace {

constexpr std::array<UpAxis, 2> UpAxes{UpAxis::Y, UpAxis::Z};

// Metres; 0 stands for a unit that is not known.
constexpr std::array<double, 5> ModelUnits{0, 1, 0.01, 0.001, 0.0254};

constexpr std::array<LengthUnit, 3> LengthUnits{LengthUnit::Metre, LengthUnit::Millimetre, LengthUnit::Inch};

bool isSameUnit(const double left, const double right)
{
    return std::abs(left - right) <= 1e-6 * std::abs(right);
}

// Choices of which one is true.
template <std::size_t Count, class Choose>
std::vector<QAction*> addChoices(QMenu& menu, const Choose& choose)
{
    auto* group = new QActionGroup(&menu);
    std::vector<QAction*> actions;
    for (std::size_t i = 0; i < Count; ++i) {
        QAction* action = menu.addAction(QString());
        action->setCheckable(true);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, &menu, [choose, i] { choose(i); });
        actions.push_back(action);
    }
    return actions;
}

} // namespace

ModelMenus::ModelMenus(ModelSettings& settings, QMenu& menu)
    : QObject(&menu)
    , m_settings(settings)
    , m_upAxisMenu(nullptr)
    , m_modelUnitMenu(nullptr)
    , m_lengthUnitMenu(nullptr)
{
    menu.addSeparator();
    m_upAxisMenu = addMenu(menu, "upAxisMenu");
    m_modelUnitMenu = addMenu(menu, "modelUnitMenu");
    m_lengthUnitMenu = addMenu(menu, "lengthUnitMenu");
    ModelSettings* target = &m_settings;
    m_upAxes =
        addChoices<UpAxes.size()>(*m_upAxisMenu, [target](const std::size_t i) { target->setUpAxis(UpAxes[i]); });
    m_modelUnits = addChoices<ModelUnits.size()>(
        *m_modelUnitMenu, [target](const std::size_t i) { target->setMetresPerUnit(ModelUnits[i]); });
    m_lengthUnits = addChoices<LengthUnits.size()>(
        *m_lengthUnitMenu, [target](const std::size_t i) { target->setLengthUnit(LengthUnits[i]); });
    connect(&m_settings, &ModelSettings::changed, this, &ModelMenus::update);
    retranslate();
    update();
}

void ModelMenus::retranslate()
{
    m_upAxisMenu->setTitle(tr("Up axis"));
    m_upAxes[0]->setText(tr("&y up"));
    m_upAxes[1]->setText(tr("&z up"));
    m_modelUnitMenu->setTitle(tr("Unit of the model"));
    m_modelUnits[0]->setText(tr("Not known"));
    m_modelUnits[1]->setText(tr("Metres"));
    m_modelUnits[2]->setText(tr("Centimetres"));
    m_modelUnits[3]->setText(tr("Millimetres"));
    m_modelUnits[4]->setText(tr("Inches"));
    m_lengthUnitMenu->setTitle(tr("Show lengths in"));
    for (std::size_t i = 0; i < m_lengthUnits.size(); ++i) {
        m_lengthUnits[i]->setText(LengthFormat::getName(LengthUnits[i]));
    }
}

QMenu* ModelMenus::addMenu(QMenu& menu, const char* objectName)
{
    QMenu* added = menu.addMenu(QString());
    added->setObjectName(QLatin1String(objectName));
    return added;
}

void ModelMenus::update()
{
    const ModelPlacement& placement = m_settings.getPlacement();
    m_upAxisMenu->setEnabled(m_settings.isPlaceable());
    m_modelUnitMenu->setEnabled(m_settings.isPlaceable());
    for (std::size_t i = 0; i < m_upAxes.size(); ++i) {
        m_upAxes[i]->setChecked(UpAxes[i] == placement.upAxis);
    }
    for (std::size_t i = 0; i < m_modelUnits.size(); ++i) {
        m_modelUnits[i]->setChecked(isSameUnit(placement.metresPerUnit, ModelUnits[i]));
    }
    for (std::size_t i = 0; i < m_lengthUnits.size(); ++i) {
        m_lengthUnits[i]->setChecked(LengthUnits[i] == m_settings.getLengthUnit());
    }
}

} // namespace quon::viewer
