// SPDX-License-Identifier: MIT
#include "Viewer/Script/ScriptRunner.h"

#include "Viewer/Model/Part.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/OutputFolder.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <SceneUtilities/NodeUtils.h>

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <map>
#include <string>

namespace quon::viewer {

namespace {

constexpr int DragSteps = 8;

// Pixels between two looks for visible parts.
constexpr int CoarseStep = 4;
constexpr int FineStep = 1;

// The one that lies deepest inside, as far as being next to the middle of all tells.
QPoint findInnermost(const std::vector<QPoint>& pixels)
{
    double sumX = 0;
    double sumY = 0;
    for (const QPoint& pixel : pixels) {
        sumX += pixel.x();
        sumY += pixel.y();
    }
    const double count = static_cast<double>(pixels.size());
    const auto distance = [&](const QPoint& pixel) {
        const double x = pixel.x() - sumX / count;
        const double y = pixel.y() - sumY / count;
        return x * x + y * y;
    };
    return *std::min_element(pixels.begin(), pixels.end(),
                             [&](const QPoint& a, const QPoint& b) { return distance(a) < distance(b); });
}

} // namespace

ScriptRunner::ScriptRunner(ViewerSession& session, Viewport& viewport, OutputFolder& output)
    : m_session(session)
    , m_viewport(viewport)
    , m_output(output)
{}

void ScriptRunner::run(const Script& script)
{
    for (const ScriptCommand& command : script.getCommands()) {
        try {
            run(command);
        } catch (const ViewerError& error) {
            if (!command.optional) {
                throw ViewerError(script.getFile() + ":" + std::to_string(command.line), error.what());
            }
        }
        // What the events left behind in the queue is carried out before the next one, as between a user's.
        QApplication::processEvents();
    }
}

void ScriptRunner::run(const ScriptCommand& command)
{
    using Kind = ScriptCommand::Kind;
    const auto point = [&](const std::size_t index) {
        return QPoint(static_cast<int>(command.numbers[index]), static_cast<int>(command.numbers[index + 1]));
    };
    switch (command.kind) {
    case Kind::Size:
        m_viewport.resize(point(0).x(), point(0).y());
        break;
    case Kind::View:
        m_session.getCamera().setStandardView(command.text);
        break;
    case Kind::Fit:
        m_session.getCamera().fit();
        break;
    case Kind::Move:
        moveTo(point(0), command.modifiers);
        break;
    case Kind::Press:
        moveTo(point(0), command.modifiers);
        sendMouse(QEvent::MouseButtonPress, point(0), command.button, command.modifiers);
        break;
    case Kind::Release:
        moveTo(point(0), command.modifiers);
        sendMouse(QEvent::MouseButtonRelease, point(0), command.button, command.modifiers);
        break;
    case Kind::Click:
        click(point(0), command.button, command.modifiers);
        break;
    case Kind::Drag:
        drag(command);
        break;
    case Kind::Wheel:
        sendWheel(command);
        break;
    case Kind::Leave: {
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(&m_viewport, &event);
        break;
    }
    case Kind::FocusOut: {
        QFocusEvent event(QEvent::FocusOut);
        QApplication::sendEvent(&m_viewport, &event);
        break;
    }
    case Kind::Key:
        sendKey(QEvent::KeyPress, command.key, command.modifiers);
        sendKey(QEvent::KeyRelease, command.key, command.modifiers);
        break;
    case Kind::KeyPress:
        sendKey(QEvent::KeyPress, command.key, command.modifiers);
        break;
    case Kind::KeyRelease:
        sendKey(QEvent::KeyRelease, command.key, command.modifiers);
        break;
    case Kind::ClickPart:
        click(locatePart(command.text), command.button, command.modifiers);
        break;
    case Kind::ClickVisible:
        click(locateVisible(static_cast<std::size_t>(command.numbers[0])), command.button, command.modifiers);
        break;
    case Kind::AddEmptyGroup:
        addEmptyGroup(command);
        break;
    case Kind::ToggleNode: {
        const osg::NodePtr node = m_session.findNode(command.text);
        if (node == osg::NullFC) {
            throw ViewerError("no node is named '" + command.text + "'");
        }
        m_session.toggleNode(node);
        break;
    }
    case Kind::Shot:
        m_output.write(m_viewport.grabPicture(), command.text);
        break;
    }
}

void ScriptRunner::sendMouse(const QEvent::Type type, const QPoint& position, const Qt::MouseButton button,
                             const Qt::KeyboardModifiers modifiers)
{
    // A press reports its own button among those held, a release no longer does.
    m_buttons.setFlag(button, type == QEvent::MouseButtonPress);
    QMouseEvent event(type, position, m_viewport.mapToGlobal(position), button, m_buttons, modifiers);
    QApplication::sendEvent(&m_viewport, &event);
}

void ScriptRunner::moveTo(const QPoint& position, const Qt::KeyboardModifiers modifiers)
{
    if (position == m_position) {
        return;
    }
    m_position = position;
    QMouseEvent event(QEvent::MouseMove, position, m_viewport.mapToGlobal(position), Qt::NoButton, m_buttons,
                      modifiers);
    QApplication::sendEvent(&m_viewport, &event);
}

void ScriptRunner::click(const QPoint& position, const Qt::MouseButton button, const Qt::KeyboardModifiers modifiers)
{
    moveTo(position, modifiers);
    sendMouse(QEvent::MouseButtonPress, position, button, modifiers);
    sendMouse(QEvent::MouseButtonRelease, position, button, modifiers);
}

void ScriptRunner::drag(const ScriptCommand& command)
{
    const QPointF from(command.numbers[0], command.numbers[1]);
    const QPointF to(command.numbers[2], command.numbers[3]);
    moveTo(from.toPoint(), command.modifiers);
    sendMouse(QEvent::MouseButtonPress, from.toPoint(), command.button, command.modifiers);
    for (int step = 1; step <= DragSteps; ++step) {
        moveTo((from + (to - from) * step / DragSteps).toPoint(), command.modifiers);
    }
    sendMouse(QEvent::MouseButtonRelease, to.toPoint(), command.button, command.modifiers);
}

void ScriptRunner::sendWheel(const ScriptCommand& command)
{
    const QPoint position(static_cast<int>(command.numbers[0]), static_cast<int>(command.numbers[1]));
    const QPoint delta(0, static_cast<int>(command.numbers[2]) * QWheelEvent::DefaultDeltasPerStep);
    QWheelEvent event(position, m_viewport.mapToGlobal(position), QPoint(), delta, m_buttons, command.modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_viewport, &event);
}

void ScriptRunner::sendKey(const QEvent::Type type, const int key, const Qt::KeyboardModifiers modifiers)
{
    QKeyEvent event(type, key, modifiers);
    QApplication::sendEvent(&m_viewport, &event);
}

void ScriptRunner::addEmptyGroup(const ScriptCommand& command)
{
    const osg::Pnt3f& minimum = m_session.getModelMinimum();
    const osg::Pnt3f& maximum = m_session.getModelMaximum();
    osg::Pnt3f place;
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        const double low = static_cast<double>(minimum[axis]);
        const double high = static_cast<double>(maximum[axis]);
        place[axis] = static_cast<float>(low + (high - low) * command.numbers[axis]);
    }
    m_session.addEmptyGroup(command.text, place);
}

std::vector<ScriptRunner::VisiblePart> ScriptRunner::findVisibleParts(const int step)
{
    m_session.processSceneChanges();
    std::map<osg::UInt32, VisiblePart> parts; // by id: in order of creation, the same in every run
    for (int y = step / 2; y < m_viewport.height(); y += step) {
        for (int x = step / 2; x < m_viewport.width(); x += step) {
            const osg::NodePtr node =
                findPart(m_session.getPicker().findNodeAt(osg::Pnt2f(static_cast<float>(x), static_cast<float>(y))));
            if (node != osg::NullFC) {
                VisiblePart& part = parts[osg::getContainerId(node)];
                part.node = node;
                part.pixels.emplace_back(x, y);
            }
        }
    }
    std::vector<VisiblePart> result;
    for (auto& [id, part] : parts) {
        result.push_back(std::move(part));
    }
    return result;
}

QPoint ScriptRunner::locatePart(const std::string& name)
{
    for (const int step : {CoarseStep, FineStep}) {
        for (const VisiblePart& part : findVisibleParts(step)) {
            if (NodeUtils::getName(part.node) == name) {
                return findInnermost(part.pixels);
            }
        }
    }
    throw ViewerError(m_session.findNode(name) == osg::NullFC ? "no part is named '" + name + "'"
                                                              : "part '" + name + "' is not to be seen");
}

QPoint ScriptRunner::locateVisible(const std::size_t rank)
{
    std::vector<VisiblePart> parts = findVisibleParts(CoarseStep);
    if (parts.empty()) {
        throw ViewerError("no part is to be seen");
    }
    std::stable_sort(parts.begin(), parts.end(),
                     [](const VisiblePart& a, const VisiblePart& b) { return a.pixels.size() > b.pixels.size(); });
    if (rank > parts.size()) {
        throw ViewerError("only " + std::to_string(parts.size()) + " parts are to be seen");
    }
    return findInnermost(parts[rank - 1].pixels);
}

} // namespace quon::viewer
