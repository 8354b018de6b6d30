// SPDX-License-Identifier: MIT
#include "Viewer/Script/InputRecorder.h"

#include "Viewer/Model/NodeWalk.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/Script.h"
#include "Viewer/Session/Commands.h"
#include "Viewer/Session/QtVersions.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cstdio>

namespace quon::viewer {

namespace {

// Names of nodes that a comment lists before it says that there are more.
constexpr std::size_t NamesInComment = 4;

// The command that begins and ends recordings.
const char* const OwnCommand = "record";

bool isInput(const QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::NativeGesture:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Leave:
    case QEvent::FocusOut:
    case QEvent::Resize:
        return true;
    default:
        return false;
    }
}

std::string describe(const TracedEvent& event)
{
    std::string consumer = event.consumer;
    if (event.outcome != TracedEvent::Outcome::Consumed) {
        consumer = event.outcome == TracedEvent::Outcome::Ignored ? "nobody" : "unknown";
    }
    return (event.depth > 0 ? "> " : "") + event.category + " " + event.verb + " (" + consumer + ")";
}

// A viewport that panels have squeezed out has no size that a script could give it.
std::string describeSize(const Viewport& viewport)
{
    return "size " + std::to_string(std::max(1, viewport.width())) + " " +
           std::to_string(std::max(1, viewport.height()));
}

template <class Nodes>
std::string describeNodes(const Nodes& nodes)
{
    std::string names;
    std::size_t count = 0;
    for (const osg::NodePtr& node : nodes) {
        if (++count > NamesInComment) {
            return names + ", ...";
        }
        const std::string name = NodeUtils::getName(node);
        names += (names.empty() ? "" : ", ") + (name.empty() ? "unnamed" : name);
    }
    return names;
}

const char* getCommandOf(const SceneEditor::Edit edit)
{
    switch (edit) {
    case SceneEditor::Edit::Select:
        return "select";
    case SceneEditor::Edit::Add:
        return "select-more";
    case SceneEditor::Edit::Remove:
        return "deselect";
    case SceneEditor::Edit::Hide:
        return "hide";
    case SceneEditor::Edit::Show:
        return "show";
    case SceneEditor::Edit::Isolate:
        return "isolate";
    case SceneEditor::Edit::ShowAll:
        return "show-all";
    case SceneEditor::Edit::Lock:
        return "lock";
    default:
        return "unlock";
    }
}

} // namespace

InputRecorder::InputRecorder(const std::string& file)
    : m_name(file)
    , m_file(QFile::decodeName(file.c_str()))
{
    // Without a buffer: what was written is there, whatever happens to the program.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        throw ViewerError(file, "cannot be written: " + m_file.errorString().toStdString());
    }
}

InputRecorder::~InputRecorder()
{
    stop();
}

void InputRecorder::start(ViewerSession& session, Viewport& viewport, const std::string& model)
{
    stop();
    m_session = &session;
    m_viewport = &viewport;
    m_inputs = 0;
    m_command.clear();
    m_buttons = Qt::NoButton;
    writeBeginning(model);
    viewport.setInputObserver(this);
    session.getTrace().addListener(this);
    session.getEditor().setEditListener(
        [this](const SceneEditor::Edit edit, const std::vector<osg::NodePtr>& nodes) { sceneEdited(edit, nodes); });
    connect(&session, &ViewerSession::selectionChanged, this, &InputRecorder::selectionChanged);
    connect(&session, &ViewerSession::stateChanged, this, &InputRecorder::stateChanged);
    connect(&session, &ViewerSession::groupAboutToBeAdded, this, &InputRecorder::groupAdded);
    connect(&session, &ViewerSession::modelAboutToChange, this, [this] {
        expectChanges();
        beginLine("# another model is opened: the recording ends");
        end();
    });
}

void InputRecorder::stop()
{
    if (!isRecording()) {
        return;
    }
    expectChanges();
    endLine();
    m_session->getTrace().removeListener(this);
    m_session->getEditor().setEditListener({});
    disconnect(m_session, nullptr, this, nullptr);
    m_viewport->setInputObserver(nullptr);
    m_session = nullptr;
    m_viewport = nullptr;
    m_file.close();
}

void InputRecorder::end()
{
    if (isRecording()) {
        stop();
        emit ended();
    }
}

void InputRecorder::writeBeginning(const std::string& model)
{
    const osg::NodePtr root = m_session->getModel();
    const CommandContext& commands = m_session->getCommands();
    beginLine("# Recorded by koviewer.");
    beginLine("# Model: " + ViewerError::oneLine(model));
    beginLine("exact");
    beginLine(describeSize(*m_viewport));
    NodeDigest none;
    expect("model", NodeDigest::ofModel(root, m_session->countParts()), none);
    for (const Command& command : Command::getAll()) {
        if (command.group != Command::Group::Window && commands.isSwitch(command.name)) {
            beginLine(std::string("switch ") + command.name + (commands.isChecked(command.name) ? " on" : " off"));
        }
    }
    m_presenter = false;
    notePresenterMode();
    // A distance that no camera has.
    m_pose.distance = -1;
    noteCamera();

    std::vector<osg::NodePtr> hidden;
    std::vector<osg::NodePtr> locked;
    walkNodes(root, [&](const osg::NodePtr& node) {
        const osg::NodePtr parent = node->getParent();
        if (node->getTravMask() == 0 && (node == root || parent->getTravMask() != 0)) {
            hidden.push_back(node);
        }
        if (SceneEditor::isLocked(node)) {
            locked.push_back(node);
        }
        return true;
    });
    const auto& selection = m_session->getSelection().getSelection();
    if (!hidden.empty()) {
        writeEdit("hide", hidden);
    }
    if (!locked.empty()) {
        writeEdit("lock", locked);
    }
    if (!selection.empty()) {
        writeEdit("select", {selection.begin(), selection.end()});
    }
    beginLine("forget-history");
    m_hidden = {};
    m_locked = {};
    m_selection = {};
    m_selectionChanged = !selection.empty();
    m_stateChanged = !hidden.empty() || !locked.empty();
    m_explained = false;
    expectChanges();
    endLine();
}

void InputRecorder::inputBegins(const QEvent& event)
{
    if (!isInput(event.type())) {
        return;
    }
    m_session->getTrace().finish();
    // What is left of a gesture that went on between two events.
    expectChanges();
    m_explained = false;
    notePresenterMode();
    if (m_inputs == 0) {
        noteCamera();
    }
    writeInput(event);
    ++m_inputs;
}

void InputRecorder::inputEnds(const QEvent& event)
{
    if (!isInput(event.type()) || m_inputs == 0) {
        return;
    }
    m_session->getTrace().finish();
    --m_inputs;
    m_pose = m_session->getCamera().getPose();
    endLine();
    expectChanges();
}

void InputRecorder::writeInput(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        writeMouse("press", static_cast<const QMouseEvent&>(event), false);
        break;
    case QEvent::MouseButtonRelease:
        writeMouse("release", static_cast<const QMouseEvent&>(event), false);
        break;
    case QEvent::MouseButtonDblClick:
        writeMouse("doublepress", static_cast<const QMouseEvent&>(event), false);
        break;
    case QEvent::MouseMove:
        writeMouse("move", static_cast<const QMouseEvent&>(event), true);
        break;
    case QEvent::Wheel:
        writeWheel(static_cast<const QWheelEvent&>(event));
        break;
    case QEvent::NativeGesture: {
        const auto& gesture = static_cast<const QNativeGestureEvent&>(event);
        const char* type = Script::writeGesture(gesture.gestureType());
        const QPointF position = QtVersions::getPosition(gesture);
        beginLine((type == nullptr ? "# an unknown gesture " : std::string("gesture ") + type + " ") +
                  Script::writeNumber(position.x()) + " " + Script::writeNumber(position.y()) + " " +
                  Script::writeNumber(gesture.value()) + Script::writeModifiers(gesture.modifiers()));
        break;
    }
    case QEvent::KeyPress:
        writeKey("keypress", static_cast<const QKeyEvent&>(event));
        break;
    case QEvent::KeyRelease:
        writeKey("keyrelease", static_cast<const QKeyEvent&>(event));
        break;
    case QEvent::Leave:
        beginLine("leave");
        break;
    case QEvent::FocusOut:
        beginLine("focusout");
        break;
    default:
        beginLine(describeSize(*m_viewport));
        break;
    }
}

void InputRecorder::writeMouse(const char* command, const QMouseEvent& event, const bool moved)
{
    const Qt::MouseButton button = moved ? Qt::NoButton : event.button();
    const bool released = event.type() == QEvent::MouseButtonRelease;
    // A press is among the buttons that the event calls held, a release no longer is; a replay does the same.
    noteButtons(released ? event.buttons() | button : event.buttons() & ~Qt::MouseButtons(button));
    m_buttons.setFlag(button, !released && !moved);
    const std::string place = std::to_string(event.pos().x()) + " " + std::to_string(event.pos().y());
    const std::string words = button == Qt::LeftButton ? std::string() : Script::writeButtons(button);
    const bool known = moved || button == Qt::LeftButton || !words.empty();
    beginLine((known ? "" : "# an unknown button: ") + std::string(command) + " " + place + words +
              Script::writeModifiers(event.modifiers()));
}

void InputRecorder::writeWheel(const QWheelEvent& event)
{
    noteButtons(event.buttons());
    const auto text = [](const QPoint& delta) {
        return " " + std::to_string(delta.x()) + " " + std::to_string(delta.y());
    };
    beginLine("scroll " + Script::writeNumber(event.position().x()) + " " + Script::writeNumber(event.position().y()) +
              text(event.angleDelta()) + text(event.pixelDelta()) + " " + Script::writePhase(event.phase()) +
              (event.inverted() ? " inverted" : "") + Script::writeModifiers(event.modifiers()));
}

void InputRecorder::writeKey(const char* command, const QKeyEvent& event)
{
    beginLine(std::string(command) + " " + Script::writeKey(event.key()) + (event.isAutoRepeat() ? " repeat" : "") +
              Script::writeModifiers(event.modifiers()));
}

void InputRecorder::noteButtons(const Qt::MouseButtons held)
{
    // Releases may go elsewhere, for example to a menu that opened meanwhile.
    if (held != m_buttons) {
        m_buttons = held;
        beginLine("held" + Script::writeButtons(held));
    }
}

void InputRecorder::notePresenterMode()
{
    const bool presenter = m_session->getInteractionManager().getPresenterMode();
    if (presenter != m_presenter) {
        m_presenter = presenter;
        beginLine(presenter ? "presenter on" : "presenter off");
    }
}

void InputRecorder::noteCamera()
{
    const CameraController::Pose pose = m_session->getCamera().getPose();
    if (pose == m_pose) {
        return;
    }
    m_pose = pose;
    std::string line = "camera";
    for (const double number :
         {pose.interest[0], pose.interest[1], pose.interest[2], pose.distance, pose.yaw, pose.pitch}) {
        line += " " + Script::writeNumber(number);
    }
    beginLine(line + (pose.fitted ? " fitted" : ""));
}

void InputRecorder::eventTraced(const TracedEvent& event)
{
    if (m_inputs == 0 && event.depth == 0) {
        noteOutside(event);
        m_pose = m_session->getCamera().getPose();
    }
    addComment(describe(event));
    if (m_command == event.category && event.verb == "trigger") {
        m_command.clear();
        expectChanges();
    }
}

void InputRecorder::noteOutside(const TracedEvent& event)
{
    // A command is the three verbs of a key.
    if (!m_command.empty() && event.category == m_command && (event.verb == "stop" || event.verb == "trigger")) {
        return;
    }
    m_command.clear();
    m_explained = true;
    const std::string prefix = "view:";
    const std::string name =
        event.category.compare(0, prefix.size(), prefix) == 0 ? event.category.substr(prefix.size()) : std::string();
    if (name == OwnCommand) {
        // What begins and ends recordings is no part of them.
        beginLine("# " + event.category + " " + event.verb);
    } else if (event.verb == "start" && Command::find(name) != nullptr) {
        m_command = event.category;
        beginLine("command " + name);
    } else {
        beginLine("event " + Script::writeWord(event.category) + " " + Script::writeWord(event.verb));
    }
}

void InputRecorder::sceneEdited(const SceneEditor::Edit edit, const std::vector<osg::NodePtr>& nodes)
{
    // Everything else is the consequence of a line that is there already.
    if (isOutside() && !m_session->getEditor().isInGesture()) {
        writeEdit(getCommandOf(edit), nodes);
        m_explained = true;
    }
}

void InputRecorder::groupAdded(const std::string& name, const osg::Pnt3f& place)
{
    const osg::Pnt3f& minimum = m_session->getModelMinimum();
    const osg::Pnt3f& maximum = m_session->getModelMaximum();
    std::string line = "add-empty-group " + Script::writeWord(name);
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        const double low = static_cast<double>(minimum[axis]);
        const double extent = static_cast<double>(maximum[axis]) - low;
        // In what has no extent, every share of it is the same place.
        line += ' ';
        line += Script::writeNumber(extent > 0 ? (static_cast<double>(place[axis]) - low) / extent : 0);
    }
    beginLine(line);
}

void InputRecorder::writeEdit(const char* command, const std::vector<osg::NodePtr>& nodes)
{
    std::string line = command;
    std::vector<osg::NodePtr> within;
    const std::vector<std::string> paths = NodePath::getAll(m_session->getModel(), nodes);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!paths[i].empty()) {
            line += " " + paths[i];
            within.push_back(nodes[i]);
        }
    }
    beginLine(line);
    if (!within.empty()) {
        addComment(describeNodes(within));
    }
}

void InputRecorder::selectionChanged()
{
    m_selectionChanged = true;
    if (!isOutside() || m_session->getEditor().isInGesture()) {
        return;
    }
    m_session->getTrace().finish();
    const auto& selection = m_session->getSelection().getSelection();
    if (!m_explained && NodeDigest::of(m_session->getModel(), selection) != m_selection) {
        writeEdit("select", {selection.begin(), selection.end()});
    }
    m_explained = false;
    expectChanges();
}

void InputRecorder::stateChanged()
{
    m_stateChanged = true;
    expectChanges();
}

void InputRecorder::expectChanges()
{
    // Within a gesture, and before an event is over, a replay may stand elsewhere.
    if (!isOutside() || m_session->getEditor().isInGesture()) {
        return;
    }
    const osg::NodePtr model = m_session->getModel();
    if (m_selectionChanged) {
        m_selectionChanged = false;
        const auto& selection = m_session->getSelection().getSelection();
        const NodeDigest before = m_selection;
        expect("selection", NodeDigest::of(model, selection), m_selection);
        if (m_selection != before && !selection.empty()) {
            addComment(describeNodes(selection));
        }
    }
    if (m_stateChanged) {
        m_stateChanged = false;
        expect("hidden", NodeDigest::ofHidden(model), m_hidden);
        expect("locked", NodeDigest::ofLocked(model), m_locked);
    }
}

void InputRecorder::expect(const char* what, const NodeDigest& digest, NodeDigest& last)
{
    if (digest == last) {
        return;
    }
    last = digest;
    char checksum[24];
    std::snprintf(checksum, sizeof checksum, "%016llx", static_cast<unsigned long long>(digest.checksum));
    endLine();
    write(std::string("expect-") + what + " " + std::to_string(digest.count) + " " + checksum);
    m_lineOpen = true;
}

bool InputRecorder::isOutside() const
{
    return isRecording() && m_inputs == 0 && !m_session->getTrace().isHandling();
}

void InputRecorder::beginLine(const std::string& line)
{
    endLine();
    write(line);
    m_lineOpen = true;
}

void InputRecorder::addComment(const std::string& comment)
{
    // The line may be over, because its event made others.
    const char* const before = !m_lineOpen ? "# " : m_commented ? ", " : "  # ";
    write(before + ViewerError::oneLine(comment));
    m_lineOpen = true;
    m_commented = true;
}

void InputRecorder::endLine()
{
    if (m_lineOpen) {
        m_lineOpen = false;
        m_commented = false;
        write("\n");
    }
}

void InputRecorder::write(const std::string& text)
{
    const auto size = static_cast<qint64>(text.size());
    if (!m_error.empty() || m_file.write(text.data(), size) == size) {
        return;
    }
    m_error = ViewerError(m_name, "cannot be written: " + m_file.errorString().toStdString()).what();
    // Later: whoever wrote this goes on with its work first.
    QMetaObject::invokeMethod(
        this, [this] { end(); }, Qt::QueuedConnection);
}

} // namespace quon::viewer
