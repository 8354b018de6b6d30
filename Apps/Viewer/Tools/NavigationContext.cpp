// SPDX-License-Identifier: MIT
#include "Viewer/Tools/NavigationContext.h"

#include "Viewer/Tools/CameraController.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/Picker.h>
#include <Interaction/QtEventMapper.h>

#include <OpenSG/OSGNode.h>

#include <QString>
#include <QStringList>
#include <Qt>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace quon::viewer {

namespace {

const char* const Category = "navigate";
const char* const OrbitBy = "orbit-by";
const char* const PanBy = "pan-by";
const char* const ZoomBy = "zoom-by";

constexpr double ZoomStep = 1.15;
constexpr double DragZoomPerPixel = 1.006;

/** A step that a key makes: either an angle, a share of the viewport, or a factor. */
struct Step {
    const char* hint;
    double turnX; ///< degrees
    double turnY;
    double moveX; ///< share of the viewport's shorter side
    double moveY;
    double zoom;
};

constexpr Step Steps[] = {
    {"orbit-left", -5, 0, 0, 0, 1},         {"orbit-right", 5, 0, 0, 0, 1},  {"orbit-up", 0, -5, 0, 0, 1},
    {"orbit-down", 0, 5, 0, 0, 1},          {"pan-left", 0, 0, -0.05, 0, 1}, {"pan-right", 0, 0, 0.05, 0, 1},
    {"pan-up", 0, 0, 0, -0.05, 1},          {"pan-down", 0, 0, 0, 0.05, 1},  {"zoom-in", 0, 0, 0, 0, ZoomStep},
    {"zoom-out", 0, 0, 0, 0, 1 / ZoomStep},
};

struct FreeKey {
    int key;
    const char* hint;
};

// The plus sign of some keyboards needs the shift key; the key alone is meant, too.
constexpr FreeKey FreeKeys[] = {{Qt::Key_Left, "orbit-left"},
                                {Qt::Key_Right, "orbit-right"},
                                {Qt::Key_Up, "orbit-up"},
                                {Qt::Key_Down, "orbit-down"},
                                {Qt::Key_Equal, "zoom-in"}};

std::string makeCategory(const char* hint, const std::initializer_list<double> values)
{
    QStringList texts;
    for (const double value : values) {
        texts << QString::number(value, 'g', 9);
    }
    return QStringLiteral("%1:%2:%3").arg(QLatin1String(Category), QLatin1String(hint), texts.join(',')).toStdString();
}

// The numbers behind the colon of a hint; none when it is another hint, or not that many numbers.
std::vector<double> readValues(const std::string& hint, const std::string& name, const int count)
{
    std::vector<double> values;
    if (hint.compare(0, name.size() + 1, name + ":") != 0) {
        return values;
    }
    for (const QString& text : QString::fromStdString(hint.substr(name.size() + 1)).split(',')) {
        bool isNumber = false;
        values.push_back(text.toDouble(&isNumber));
        if (!isNumber) {
            return {};
        }
    }
    return static_cast<int>(values.size()) == count ? values : std::vector<double>();
}

const Step* findStep(const std::string& hint)
{
    const auto step = std::find_if(std::begin(Steps), std::end(Steps), [&](const Step& s) { return hint == s.hint; });
    return step == std::end(Steps) ? nullptr : step;
}

// The step that an unbound key without modifiers makes, null for another key.
const char* findFreeKey(const std::string& keyText)
{
    for (const FreeKey& entry : FreeKeys) {
        if (keyText == interaction::QtEventMapper::qtKeyEventToString(entry.key, Qt::NoModifier)) {
            return entry.hint;
        }
    }
    return nullptr;
}

} // namespace

NavigationContext::NavigationContext(CameraController* camera, interaction::Picker* picker)
    : AbstractInteractionContext(Navigation)
    , m_camera(camera)
    , m_picker(picker)
{}

void NavigationContext::setSelectionExtent(std::function<std::vector<osg::Pnt3f>()> extent)
{
    m_selectionExtent = std::move(extent);
}

std::string NavigationContext::getOrbitCategory(const double deltaX, const double deltaY)
{
    return makeCategory(OrbitBy, {deltaX, deltaY});
}

std::string NavigationContext::getPanCategory(const double deltaX, const double deltaY)
{
    return makeCategory(PanBy, {deltaX, deltaY});
}

std::string NavigationContext::getZoomCategory(const double factor)
{
    return makeCategory(ZoomBy, {factor});
}

bool NavigationContext::repeatSteps()
{
    interaction::InteractionManager* manager = getInteractionManager();
    // In presenter mode the release of a key does not arrive.
    if (manager == nullptr || manager->getPresenterMode()) {
        m_heldSteps.clear();
        return false;
    }
    // A copy: a context above may end what is repeated.
    const std::set<std::string> steps = m_heldSteps;
    bool consumed = false;
    for (const std::string& step : steps) {
        const interaction::InteractionEvent event(std::string(Category) + ":" + step, "process");
        consumed = manager->triggerEvent(event) || consumed;
    }
    return consumed;
}

void NavigationContext::contextRemoved(interaction::InteractionManager* manager)
{
    m_heldSteps.clear();
    AbstractInteractionContext::contextRemoved(manager);
}

void NavigationContext::disabled(interaction::InteractionManager* manager)
{
    // The "stop" of a key that is held will not arrive.
    m_heldSteps.clear();
    AbstractInteractionContext::disabled(manager);
}

void NavigationContext::pointerMoved(const osg::Pnt2f& position)
{
    m_last = m_pointer;
    m_pointer = position;
}

bool NavigationContext::triggerEvent(interaction::InteractionManager*, const interaction::InteractionEvent& event)
{
    if (event.getTool() == Category) {
        return handle(event.getHint(), event.getEvent());
    }
    if (event.getTool() == "qt-key") {
        const char* step = findFreeKey(event.getHint());
        return step != nullptr && handleStep(step, event.getEvent() == "press" ? "start" : "stop");
    }
    return false;
}

bool NavigationContext::handle(const std::string& hint, const std::string& verb)
{
    if (hint == "orbit" || hint == "pan" || hint == "zoom") {
        return handleDrag(hint, verb);
    }
    if (findStep(hint) != nullptr) {
        return handleStep(hint, verb);
    }
    return (verb == "trigger" && handleView(hint)) || handleGesture(hint, verb);
}

bool NavigationContext::handleDrag(const std::string& hint, const std::string& verb)
{
    if (verb == "start") {
        m_last = m_pointer;
        m_start = m_pointer;
        m_surface = pickSurface();
        return true;
    }
    if (verb == "process") {
        drag(hint);
        return true;
    }
    return verb == "stop" || verb == "trigger";
}

bool NavigationContext::handleGesture(const std::string& hint, const std::string& verb)
{
    const std::vector<double> factor = readValues(hint, ZoomBy, 1);
    if (!factor.empty()) {
        if (verb != "trigger") {
            return false;
        }
        m_camera->zoom(factor[0], static_cast<double>(m_pointer[0]) + 0.5, static_cast<double>(m_pointer[1]) + 0.5,
                       pickSurface());
        return true;
    }
    const std::vector<double> turn = readValues(hint, OrbitBy, 2);
    const std::vector<double> move = readValues(hint, PanBy, 2);
    if (turn.empty() && move.empty()) {
        return false;
    }
    if (verb == "start") {
        m_surface = pickSurface();
        return true;
    }
    if (verb == "process") {
        if (!turn.empty()) {
            m_camera->orbit(turn[0], turn[1], m_surface);
        } else {
            m_camera->pan(move[0], move[1], m_surface);
        }
        return true;
    }
    return verb == "stop";
}

bool NavigationContext::handleStep(const std::string& hint, const std::string& verb)
{
    if (verb == "stop" || verb == "trigger") {
        m_heldSteps.erase(hint);
        return true;
    }
    if (verb != "start" && verb != "process") {
        return false;
    }
    const Step& step = *findStep(hint);
    if (step.turnX != 0 || step.turnY != 0) {
        m_camera->turn(step.turnX, step.turnY);
    } else if (step.moveX != 0 || step.moveY != 0) {
        const int side = std::min(m_camera->getViewportWidth(), m_camera->getViewportHeight());
        m_camera->pan(step.moveX * side, step.moveY * side);
    } else {
        m_camera->zoom(step.zoom);
    }
    if (verb == "start") {
        m_heldSteps.insert(hint);
    }
    return true;
}

bool NavigationContext::handleView(const std::string& hint)
{
    if (hint == "fit") {
        m_camera->fit();
    } else if (hint == "fit-selection") {
        fitSelection();
    } else if (hint == "parallel") {
        m_camera->setParallel(!m_camera->isParallel());
    } else {
        return m_camera->setStandardView(hint);
    }
    return true;
}

void NavigationContext::fitSelection()
{
    const std::vector<osg::Pnt3f> extent = m_selectionExtent ? m_selectionExtent() : std::vector<osg::Pnt3f>();
    if (extent.empty()) {
        m_camera->fit();
    } else {
        m_camera->fit(extent);
    }
}

std::optional<osg::Pnt3f> NavigationContext::pickSurface() const
{
    if (m_picker == nullptr || m_picker->getPickedNode(nullptr) == osg::NullFC) {
        return {};
    }
    return m_picker->getPickedPoint(nullptr);
}

void NavigationContext::drag(const std::string& hint)
{
    // By the last movement alone: while a second button pauses the drag, the pointer may have gone elsewhere.
    const double deltaX = static_cast<double>(m_pointer[0] - m_last[0]);
    const double deltaY = static_cast<double>(m_pointer[1] - m_last[1]);
    m_last = m_pointer;
    if (hint == "orbit") {
        m_camera->orbit(deltaX, deltaY, m_surface);
    } else if (hint == "pan") {
        m_camera->pan(deltaX, deltaY, m_surface);
    } else {
        m_camera->zoom(std::pow(DragZoomPerPixel, -deltaY), static_cast<double>(m_start[0]) + 0.5,
                       static_cast<double>(m_start[1]) + 0.5, m_surface);
    }
}

} // namespace quon::viewer
