// SPDX-License-Identifier: MIT
#include "Viewer/Script/ScriptRunner.h"

#include "Viewer/Model/NodePath.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Script/OutputFolder.h"
#include "Viewer/Script/ProcessReport.h"
#include "Viewer/Session/QtVersions.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <utility>

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

ScriptRunner::ScriptRunner(ViewerSession& session, Viewport& viewport, OutputFolder* output)
    : m_session(session)
    , m_viewport(viewport)
    , m_output(output)
{}

ScriptRunner::~ScriptRunner()
{
    if (m_windowSize.isValid()) {
        m_viewport.setMinimumSize(0, 0);
        m_viewport.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        m_viewport.window()->resize(m_windowSize);
    }
}

void ScriptRunner::setOpener(std::function<void(const std::string& file, int partCount)> opener)
{
    m_opener = std::move(opener);
}

void ScriptRunner::run(const Script& script)
{
    for (const ScriptCommand& command : script.getCommands()) {
        run(script, command);
    }
}

void ScriptRunner::run(const Script& script, const ScriptCommand& command)
{
    const std::string place = script.getFile() + ":" + std::to_string(command.line);
    try {
        run(command);
    } catch (const DivergenceError& error) {
        if (!command.optional) {
            throw DivergenceError(place, error.what());
        }
    } catch (const ViewerError& error) {
        if (!command.optional) {
            throw ViewerError(place, error.what());
        }
    }
    // What the events left behind in the queue is carried out before the next one, as between a user's.
    QApplication::processEvents();
}

void ScriptRunner::run(const ScriptCommand& command)
{
    using Kind = ScriptCommand::Kind;
    const auto point = [&](const std::size_t index) {
        return QPoint(static_cast<int>(command.numbers[index]), static_cast<int>(command.numbers[index + 1]));
    };
    switch (command.kind) {
    case Kind::Exact:
        m_exact = true;
        break;
    case Kind::Size:
        resize(QSize(point(0).x(), point(0).y()));
        break;
    case Kind::View:
        // The commands of these names.
        m_session.sendCommand(command.text);
        break;
    case Kind::Fit:
        m_session.sendCommand("fit");
        break;
    case Kind::Camera: {
        const std::vector<double>& numbers = command.numbers;
        m_session.getCamera().setPose(
            {{numbers[0], numbers[1], numbers[2]}, numbers[3], numbers[4], numbers[5], command.on});
        break;
    }
    case Kind::Move:
        if (m_exact) {
            sendMove(point(0), command.modifiers);
        } else {
            moveTo(point(0), command.modifiers);
        }
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
    case Kind::DoubleClick:
        doubleClick(point(0), command.button, command.modifiers);
        break;
    case Kind::DoublePress:
        moveTo(point(0), command.modifiers);
        sendMouse(QEvent::MouseButtonDblClick, point(0), command.button, command.modifiers);
        break;
    case Kind::Drag:
        drag(command);
        break;
    case Kind::Held:
        m_buttons = command.buttons;
        break;
    case Kind::Wheel:
        sendWheel(command);
        break;
    case Kind::Scroll:
        sendScroll(command);
        break;
    case Kind::Gesture:
        sendGesture(command);
        break;
    case Kind::Touch:
        sendTouch(command);
        break;
    case Kind::Leave: {
        QEvent event(QEvent::Leave);
        send(event);
        break;
    }
    case Kind::FocusOut: {
        QFocusEvent event(QEvent::FocusOut);
        send(event);
        break;
    }
    case Kind::Key:
        sendKey(QEvent::KeyPress, command);
        sendKey(QEvent::KeyRelease, command);
        break;
    case Kind::KeyPress:
        sendKey(QEvent::KeyPress, command);
        break;
    case Kind::KeyRelease:
        sendKey(QEvent::KeyRelease, command);
        break;
    case Kind::Command:
        m_session.sendCommand(command.text);
        break;
    case Kind::Switch:
        // One that is not there, because its window is not, has nothing to switch.
        if (m_session.getCommands().isSwitch(command.text) &&
            m_session.getCommands().isChecked(command.text) != command.on) {
            m_session.sendCommand(command.text);
        }
        break;
    case Kind::Event:
        m_session.processSceneChanges();
        m_session.getInteractionManager().triggerEvent({command.text, command.words.front()});
        m_session.processSceneChanges();
        break;
    case Kind::Presenter:
        m_session.getInteractionManager().setPresenterMode(command.on);
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
    case Kind::Select:
    case Kind::SelectMore:
    case Kind::Deselect:
    case Kind::Hide:
    case Kind::Show:
    case Kind::Isolate:
    case Kind::ShowAll:
    case Kind::ForgetHistory:
    case Kind::Lock:
    case Kind::Unlock:
        edit(command);
        break;
    case Kind::Set:
        changeSet(command);
        break;
    case Kind::Open:
        open(command.text, 0);
        break;
    case Kind::Generate:
        open({}, static_cast<int>(command.numbers[0]));
        break;
    case Kind::ExpectModel:
    case Kind::ExpectSelection:
    case Kind::ExpectHidden:
    case Kind::ExpectLocked:
        expect(command);
        break;
    case Kind::Shot:
        if (m_output == nullptr) {
            throw ViewerError("there is no folder for pictures");
        }
        m_output->write(m_viewport.grabPicture(), command.text);
        break;
    case Kind::Report:
        report(command.text);
        break;
    }
}

void ScriptRunner::send(QEvent& event)
{
    m_sent = &event;
    QApplication::sendEvent(&m_viewport, &event);
    m_sent = nullptr;
}

void ScriptRunner::sendMouse(const QEvent::Type type, const QPoint& position, const Qt::MouseButton button,
                             const Qt::KeyboardModifiers modifiers)
{
    // A press reports its own button among those held, a release no longer does.
    m_buttons.setFlag(button, type != QEvent::MouseButtonRelease);
    QMouseEvent event(type, position, m_viewport.mapToGlobal(position), button, m_buttons, modifiers);
    send(event);
}

void ScriptRunner::moveTo(const QPoint& position, const Qt::KeyboardModifiers modifiers)
{
    if (!m_exact && position != m_position) {
        sendMove(position, modifiers);
    }
}

void ScriptRunner::sendMove(const QPoint& position, const Qt::KeyboardModifiers modifiers)
{
    m_position = position;
    QMouseEvent event(QEvent::MouseMove, position, m_viewport.mapToGlobal(position), Qt::NoButton, m_buttons,
                      modifiers);
    send(event);
}

void ScriptRunner::click(const QPoint& position, const Qt::MouseButton button, const Qt::KeyboardModifiers modifiers)
{
    moveTo(position, modifiers);
    sendMouse(QEvent::MouseButtonPress, position, button, modifiers);
    sendMouse(QEvent::MouseButtonRelease, position, button, modifiers);
}

void ScriptRunner::doubleClick(const QPoint& position, const Qt::MouseButton button,
                               const Qt::KeyboardModifiers modifiers)
{
    click(position, button, modifiers);
    // The second press of two quick ones is an event of its own.
    sendMouse(QEvent::MouseButtonDblClick, position, button, modifiers);
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
    send(event);
}

void ScriptRunner::sendScroll(const ScriptCommand& command)
{
    const auto& numbers = command.numbers;
    const QPointF position(numbers[0], numbers[1]);
    const QPoint angle(static_cast<int>(numbers[2]), static_cast<int>(numbers[3]));
    const QPoint pixels(static_cast<int>(numbers[4]), static_cast<int>(numbers[5]));
    QWheelEvent event(position, m_viewport.mapToGlobal(QPoint()) + position, pixels, angle, m_buttons,
                      command.modifiers, command.phase, command.inverted);
    send(event);
}

void ScriptRunner::sendGesture(const ScriptCommand& command)
{
    const QPointF position(command.numbers[0], command.numbers[1]);
    const QPointF global = m_viewport.mapToGlobal(QPoint()) + position;
    QNativeGestureEvent event =
        QtVersions::makeGesture(Script::readGesture(command.text), position, position, global, command.numbers[2]);
    event.setModifiers(command.modifiers);
    send(event);
}

void ScriptRunner::sendTouch(const ScriptCommand& command)
{
    std::vector<QPointF> now;
    for (std::size_t i = 0; i + 1 < command.numbers.size(); i += 2) {
        now.emplace_back(command.numbers[i], command.numbers[i + 1]);
    }
    const std::vector<QPointF> before = std::exchange(m_fingers, now);
    QList<QtVersions::Finger> fingers;
    for (std::size_t i = 0; i < std::max(before.size(), now.size()); ++i) {
        const QPointF position = i < now.size() ? now[i] : before[i];
        const Qt::TouchPointState state = i >= before.size() ? Qt::TouchPointPressed
                                          : i >= now.size()  ? Qt::TouchPointReleased
                                                             : Qt::TouchPointMoved;
        fingers.append(
            QtVersions::makeFinger(static_cast<int>(i), state, position, m_viewport.mapToGlobal(QPoint()) + position));
    }
    if (fingers.isEmpty()) {
        return;
    }
    const QEvent::Type type = before.empty() ? QEvent::TouchBegin
                              : now.empty()  ? QEvent::TouchEnd
                                             : QEvent::TouchUpdate;
    QTouchEvent event = QtVersions::makeTouch(type, fingers);
    send(event);
}

void ScriptRunner::sendKey(const QEvent::Type type, const ScriptCommand& command)
{
    QKeyEvent event(type, command.key, command.modifiers, QString(), command.repeated);
    send(event);
}

void ScriptRunner::resize(const QSize& size)
{
    if (m_viewport.isWindow()) {
        m_viewport.resize(size);
        return;
    }
    // What is around it gives way, whatever panels come and go; the window grows only where it must.
    QWidget* const window = m_viewport.window();
    if (!m_windowSize.isValid()) {
        m_windowSize = window->size();
    }
    m_viewport.setFixedSize(size);
    window->resize(m_windowSize);
    QApplication::processEvents();
    if (m_viewport.size() != size) {
        const auto text = [](const QSize& value) {
            return std::to_string(value.width()) + " x " + std::to_string(value.height());
        };
        throw DivergenceError("the view is " + text(m_viewport.size()) + " pixels where the recording had " +
                              text(size));
    }
}

std::vector<osg::NodePtr> ScriptRunner::findNodes(const std::vector<std::string>& words) const
{
    std::vector<osg::NodePtr> nodes;
    for (const std::string& word : words) {
        const bool path = NodePath::isPath(word);
        nodes.push_back(path ? NodePath::find(m_session.getModel(), word) : m_session.findNode(word));
        if (nodes.back() == osg::NullFC && path) {
            throw DivergenceError("the model has no node '" + word + "'");
        }
        if (nodes.back() == osg::NullFC) {
            throw ViewerError("no node is named '" + word + "'");
        }
    }
    return nodes;
}

void ScriptRunner::edit(const ScriptCommand& command)
{
    using Kind = ScriptCommand::Kind;
    const std::vector<osg::NodePtr> nodes = findNodes(command.words);
    SceneEditor& editor = m_session.getEditor();
    m_session.processSceneChanges();
    switch (command.kind) {
    case Kind::Select:
        editor.select(nodes);
        break;
    case Kind::SelectMore:
        editor.add(nodes);
        break;
    case Kind::Deselect:
        editor.remove(nodes);
        break;
    case Kind::Hide:
        editor.hide(nodes);
        break;
    case Kind::Show:
        editor.show(nodes);
        break;
    case Kind::Isolate:
        editor.isolate(nodes);
        break;
    case Kind::ShowAll:
        editor.showAll();
        break;
    case Kind::ForgetHistory:
        editor.clearHistory();
        break;
    default:
        editor.setLocked(nodes, command.kind == Kind::Lock);
        break;
    }
    m_session.processSceneChanges();
}

void ScriptRunner::changeSet(const ScriptCommand& command)
{
    SelectionSets& sets = m_session.getSets();
    const auto find = [&](const std::string& name) {
        const std::vector<SelectionSets::Info> all = sets.getAll();
        const auto found = std::find_if(all.begin(), all.end(), [&](const SelectionSets::Info& set) {
            return set.name.compare(QString::fromStdString(name), Qt::CaseInsensitive) == 0;
        });
        if (found == all.end()) {
            throw ViewerError("no set is named '" + name + "'");
        }
        return found->id;
    };
    const std::string& action = command.text;
    m_session.processSceneChanges();
    const SelectionSets::Id id = find(command.words.front());
    if (action == "recall") {
        sets.recall(id);
    } else if (action == "add") {
        sets.addToSelection(id);
    } else if (action == "replace") {
        sets.replaceBySelection(id);
    } else if (action == "delete") {
        sets.remove(id);
    } else if (action == "rename") {
        if (!sets.rename(id, QString::fromStdString(command.words[1]))) {
            throw ViewerError("a set cannot be named '" + command.words[1] + "'");
        }
    } else {
        using Combination = SelectionSets::Combination;
        const SelectionSets::Id other = command.words.size() > 1 ? find(command.words[1]) : SelectionSets::None;
        sets.combine(id,
                     action == "union"          ? Combination::Union
                     : action == "intersection" ? Combination::Intersection
                                                : Combination::Difference,
                     other);
    }
    m_session.processSceneChanges();
}

void ScriptRunner::open(const std::string& file, const int partCount)
{
    if (!m_opener) {
        throw ViewerError("another model cannot be opened here");
    }
    m_opener(file, partCount);
    m_session.processSceneChanges();
}

void ScriptRunner::report(const std::string& name)
{
    m_session.processSceneChanges();
    // Drivers keep more or less of what they had, as they like.
    m_viewport.releasePictures();
    // What was to be destroyed later is destroyed by now.
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    std::printf("%s %s\n", name.c_str(), ProcessReport::take().write().c_str());
    std::fflush(stdout);
}

void ScriptRunner::expect(const ScriptCommand& command)
{
    using Kind = ScriptCommand::Kind;
    const NodeDigest& expected = command.digest;
    const osg::NodePtr model = m_session.getModel();
    const auto compare = [&](const NodeDigest& found, const std::string& before, const std::string& thing) {
        const std::string things = thing + (found.count == 1 ? "" : "s");
        if (found.count != expected.count) {
            throw DivergenceError(before + std::to_string(found.count) + " " + things + " where the recording had " +
                                  std::to_string(expected.count));
        }
        if (command.hasChecksum && found.checksum != expected.checksum) {
            throw DivergenceError(before + std::to_string(found.count) + " other " + things + " than in the recording");
        }
    };
    switch (command.kind) {
    case Kind::ExpectModel:
        compare(NodeDigest::ofModel(model, m_session.countParts()), "the model has ", "part");
        break;
    case Kind::ExpectSelection:
        compare(NodeDigest::of(model, m_session.getSelection().getSelection()), "the selection is ", "part");
        break;
    case Kind::ExpectHidden:
        compare(NodeDigest::ofHidden(model), "the model has ", "hidden node");
        break;
    default:
        compare(NodeDigest::ofLocked(model), "the model has ", "locked node");
        break;
    }
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
