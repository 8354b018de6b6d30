// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/Script.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <QEvent>
#include <QPoint>
#include <QPointF>
#include <QSize>

#include <functional>
#include <string>
#include <vector>

namespace quon::viewer {

class OutputFolder;
class ViewerSession;
class Viewport;

/** Something is not as the script expects it: most often the model is not the one that a recording was made with. */
class DivergenceError : public ViewerError {
public:
    using ViewerError::ViewerError;
};

/**
 * Carries out a script: sends real Qt events to the viewport and writes pictures.
 *
 * The events go through QApplication::sendEvent() to the widget's own handlers, as those of the window system would. A
 * click moves the pointer there first, a drag moves it in several steps. After the command "exact", as in recordings,
 * nothing is added: each move, press and release is the one event that the script names.
 */
class ScriptRunner {
public:
    /**
     * All are borrowed.
     *
     * @param output null where no pictures can be written: "shot" fails then
     */
    ScriptRunner(ViewerSession& session, Viewport& viewport, OutputFolder* output);

    /** Gives the window of the viewport the size that it had, where the script changed it. */
    ~ScriptRunner();

    ScriptRunner(const ScriptRunner&) = delete;
    ScriptRunner& operator=(const ScriptRunner&) = delete;

    /**
     * Sets what shows the models that the script names: that of a file or, where the name is empty, an assembly of so
     * many parts. Without it, "open" and "generate" fail; what it throws fails them as well.
     */
    void setOpener(std::function<void(const std::string& file, int partCount)> opener);

    /**
     * Runs the whole script.
     *
     * @throws ViewerError with the script's name, the line's number and the reason, for example a part that is not to
     *         be seen; pictures written before stay
     * @throws DivergenceError, with the same, when something is not as the script expects it
     */
    void run(const Script& script);

    /** Carries out one command of @p script, as run() does. */
    void run(const Script& script, const ScriptCommand& command);

    /** Whether @p event is the one that a command is sending now, and none of the window system or of the user. */
    bool isSending(const QEvent& event) const { return m_sent == &event; }

private:
    struct VisiblePart {
        osg::NodePtr node;
        std::vector<QPoint> pixels;
    };

    void run(const ScriptCommand& command);
    void send(QEvent& event);
    void resize(const QSize& size);
    void sendMouse(QEvent::Type type, const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void moveTo(const QPoint& position, Qt::KeyboardModifiers modifiers);
    void sendMove(const QPoint& position, Qt::KeyboardModifiers modifiers);
    void click(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void drag(const ScriptCommand& command);
    void doubleClick(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void sendWheel(const ScriptCommand& command);
    void sendScroll(const ScriptCommand& command);
    void sendGesture(const ScriptCommand& command);
    void sendTouch(const ScriptCommand& command);
    void sendKey(QEvent::Type type, const ScriptCommand& command);
    void edit(const ScriptCommand& command);
    void changeSet(const ScriptCommand& command);
    void open(const std::string& file, int partCount);
    void report(const std::string& name);
    std::vector<osg::NodePtr> findNodes(const std::vector<std::string>& words) const;
    void expect(const ScriptCommand& command);
    void addEmptyGroup(const ScriptCommand& command);
    std::vector<VisiblePart> findVisibleParts(int step);
    QPoint locatePart(const std::string& name);
    QPoint locateVisible(std::size_t rank);

    ViewerSession& m_session;
    Viewport& m_viewport;
    OutputFolder* m_output;
    std::function<void(const std::string&, int)> m_opener;
    bool m_exact = false; ///< send no moves but those that the script names
    QSize m_windowSize;   ///< before the script changed that of the viewport within
    const QEvent* m_sent = nullptr;
    QPoint m_position;
    Qt::MouseButtons m_buttons = Qt::NoButton;
    std::vector<QPointF> m_fingers; ///< on the touch screen
};

} // namespace quon::viewer
