// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Script/Script.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <QEvent>
#include <QPoint>

#include <vector>

namespace quon::viewer {

class OutputFolder;
class ViewerSession;
class Viewport;

/**
 * Carries out a script: sends real Qt events to the viewport and writes pictures.
 *
 * The events go through QApplication::sendEvent() to the widget's own handlers, as those of the window system would. A
 * click moves the pointer there first, a drag moves it in several steps.
 */
class ScriptRunner {
public:
    /** All three are borrowed. */
    ScriptRunner(ViewerSession& session, Viewport& viewport, OutputFolder& output);

    /**
     * Runs the whole script.
     *
     * @throws ViewerError with the script's name, the line's number and the reason, for example a part that is not to
     *         be seen; pictures written before stay
     */
    void run(const Script& script);

private:
    struct VisiblePart {
        osg::NodePtr node;
        std::vector<QPoint> pixels;
    };

    void run(const ScriptCommand& command);
    void sendMouse(QEvent::Type type, const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void moveTo(const QPoint& position, Qt::KeyboardModifiers modifiers);
    void click(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void drag(const ScriptCommand& command);
    void sendWheel(const ScriptCommand& command);
    void sendKey(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers);
    void addEmptyGroup(const ScriptCommand& command);
    std::vector<VisiblePart> findVisibleParts(int step);
    QPoint locatePart(const std::string& name);
    QPoint locateVisible(std::size_t rank);

    ViewerSession& m_session;
    Viewport& m_viewport;
    OutputFolder& m_output;
    QPoint m_position;
    Qt::MouseButtons m_buttons = Qt::NoButton;
};

} // namespace quon::viewer
