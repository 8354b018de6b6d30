// SPDX-License-Identifier: MIT
//
// A tool with two modes. "paint" and "erase" are modes of the context, which keys start and stop; the hints "select"
// and "toggle" say what a click means. The modes are a stack: E erases while it is held, and painting goes on
// afterwards.
#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/ToolInteractionContext.h>

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>

#include <QKeyEvent>
#include <QMouseEvent>

#include <cstdio>
#include <string>
#include <vector>

using namespace quon::interaction;

namespace {

class PaintTool : public AbstractInteractionTool {
public:
    PaintTool() { setDescription("No mode"); }

    // Called for every change of the current mode; empty when none is left. False refuses it.
    bool setToolMode(ToolInteractionContext*, const std::string& mode) override
    {
        if (!mode.empty() && mode != "paint" && mode != "erase") {
            return false;
        }
        m_mode = mode;
        setDescription(mode.empty() ? "No mode" : "Click to " + mode);
        return true;
    }

    // A click is the "trigger" that follows the release; "start" and "process" before it are the drag.
    bool triggerTool(ToolInteractionContext*, const std::string& hint) override
    {
        if (m_mode.empty() || !isPickHint(hint)) {
            return false;
        }
        m_done.push_back(m_mode + (hint == "toggle" ? " one more" : ""));
        return true;
    }

    const std::vector<std::string>& getDone() const { return m_done; }

private:
    std::string m_mode;
    std::vector<std::string> m_done;
};

/** What a viewport does with the events that it gets. */
class User {
public:
    explicit User(QtEventMapper& mapper)
        : m_mapper(mapper)
    {}

    void press(const int key)
    {
        const QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        m_mapper.keyPressed(&event);
    }

    void release(const int key)
    {
        const QKeyEvent event(QEvent::KeyRelease, key, Qt::NoModifier);
        m_mapper.keyReleased(&event);
    }

    void click(const Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QPointF place(10, 20);
        const QMouseEvent down(QEvent::MouseButtonPress, place, place, Qt::LeftButton, Qt::LeftButton, modifiers);
        const QMouseEvent up(QEvent::MouseButtonRelease, place, place, Qt::LeftButton, Qt::NoButton, modifiers);
        m_mapper.mousePressed(&down);
        m_mapper.mouseReleased(&up);
    }

private:
    QtEventMapper& m_mapper;
};

std::string getShownText()
{
    const auto& shown = quon::notification::NotificationManager::getInstance()->getNotifications();
    return shown.empty() ? "" : dynamic_cast<quon::notification::TextNotification&>(*shown.back()).getText();
}

} // namespace

int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    PaintTool tool;
    ToolInteractionContext context(InteractionContext::Tool);
    context.setTool(&tool);
    InteractionManager::getInstance()->addContext(&context);

    QtEventMapper mapper;
    mapper.setInteractionManager(InteractionManager::getInstance());
    mapper.addMouseMapping(Qt::LeftButton, Qt::NoModifier, "tool:select", "Paint or erase");
    mapper.addMouseMapping(Qt::LeftButton, Qt::ControlModifier, "tool:toggle", "Paint or erase one more");
    mapper.addKeyboardMapping(Qt::Key_E, Qt::NoModifier, "mode:erase", "Erase while held");
    User user(mapper);

    user.click(); // no mode yet: nobody consumes it
    context.startMode("paint");
    user.click();
    user.press(Qt::Key_E);
    const std::string whileHeld = getShownText();
    user.click();
    user.release(Qt::Key_E);
    user.click(Qt::ControlModifier);

    for (const std::string& done : tool.getDone()) {
        std::puts(done.c_str());
    }
    const bool good = tool.getDone() == std::vector<std::string>{"paint", "erase", "paint one more"} &&
                      whileHeld == "Click to erase" && getShownText() == "Click to paint";
    InteractionManager::getInstance()->removeContext(&context);
    return good ? 0 : 1;
}
