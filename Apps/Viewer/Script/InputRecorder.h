// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/NodePath.h"
#include "Viewer/Session/SceneEditor.h"
#include "Viewer/Tools/CameraController.h"
#include "Viewer/Tools/InteractionTrace.h"
#include "Viewer/Window/InputObserver.h"

#include <QFile>
#include <QObject>
#include <QString>

#include <string>
#include <vector>

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace quon::viewer {

class ViewerSession;
class Viewport;

/**
 * Writes what the user does into a file, as a script that does the same again.
 *
 * One line for each Qt event that reaches the viewport, behind it, as a comment, the interaction events that it became
 * and who consumed them. What comes from elsewhere (menus, panels, the program) is a line too: a command, an event, an
 * edit. After every change of the selection, of visibility or of locks follows a line that expects the outcome, so that
 * a replay notices where it goes another way. Each line goes to the file before what it names is carried out.
 *
 * The moments at which things happened are not recorded.
 *
 * @par The beginning
 * The size of the view, the number of parts and whatever is not as it is right after a model was opened: the recording
 * may begin at any time. What is half done at that time, such as a button that is held, is not part of it.
 * @par The end
 * The recording ends when the recorder is destroyed, when another model comes or when the file cannot be written to.
 */
class InputRecorder : public QObject, private InputObserver, private InteractionTraceListener {
    Q_OBJECT

public:
    /**
     * Opens the file, for one recording at a time; an existing one is replaced.
     *
     * @param file name in the encoding of the file system
     * @throws ViewerError with the file's name and the reason
     */
    explicit InputRecorder(const std::string& file);

    ~InputRecorder() override;

    InputRecorder(const InputRecorder&) = delete;
    InputRecorder& operator=(const InputRecorder&) = delete;

    /**
     * Begins to record.
     *
     * @param session, viewport borrowed, must outlive the recorder; the viewport may have no other observer
     * @param model what the recording calls the model
     */
    void start(ViewerSession& session, Viewport& viewport, const std::string& model);

    /** Ends the recording; without one nothing happens. */
    void stop();

    bool isRecording() const { return m_session != nullptr; }

    const std::string& getFile() const { return m_name; }

    /** What went wrong with the file, one line; empty when nothing did. */
    const std::string& getError() const { return m_error; }

signals:
    /** The recording has ended by itself: another model came, or the file could not be written to, see getError(). */
    void ended();

private:
    void inputBegins(const QEvent& event) override;
    void inputEnds(const QEvent& event) override;
    void eventTraced(const TracedEvent& event) override;
    void sceneEdited(SceneEditor::Edit edit, const std::vector<osg::NodePtr>& nodes);

    void groupAdded(const std::string& name, const osg::Pnt3f& place);

    void writeBeginning(const std::string& model);
    void writeInput(const QEvent& event);
    void writeMouse(const char* command, const QMouseEvent& event, bool moved);
    void writeWheel(const QWheelEvent& event);
    void writeKey(const char* command, const QKeyEvent& event);
    void noteButtons(Qt::MouseButtons held);
    void notePresenterMode();
    void noteCamera();
    void noteOutside(const TracedEvent& event);
    void writeEdit(const char* command, const std::vector<osg::NodePtr>& nodes);
    void selectionChanged();
    void stateChanged();
    void expectChanges();
    void expect(const char* what, const NodeDigest& digest, NodeDigest& last);

    void beginLine(const std::string& line);
    void addComment(const std::string& comment);
    void endLine();
    void write(const std::string& text);
    void end();
    bool isOutside() const;

    std::string m_name;
    QFile m_file;
    std::string m_error;
    ViewerSession* m_session = nullptr;
    Viewport* m_viewport = nullptr;
    int m_inputs = 0;         ///< events of input that are being handled
    bool m_lineOpen = false;  ///< comments may follow
    bool m_commented = false; ///< one has
    std::string m_command;    ///< category of a command that came from outside, until its last event
    bool m_explained = false; ///< a line says what changes the selection from outside
    bool m_selectionChanged = false;
    bool m_stateChanged = false;
    bool m_presenter = false;
    Qt::MouseButtons m_buttons;    ///< held, as far as a replay knows
    CameraController::Pose m_pose; ///< after the last line, as far as a replay knows
    NodeDigest m_selection;
    NodeDigest m_hidden;
    NodeDigest m_locked;
};

} // namespace quon::viewer
