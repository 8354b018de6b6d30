// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>

#include <QKeyEvent>
#include <QMouseEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>

namespace quon::testing {

/** A mapper bound to a manager with one recording context, and Qt events to feed it with. */
class QtEventMapperFixture : public ::testing::Test {
protected:
    static constexpr int none = 0;
    static constexpr int shift = static_cast<int>(Qt::ShiftModifier);
    static constexpr int control = static_cast<int>(Qt::ControlModifier);
    static constexpr int alt = static_cast<int>(Qt::AltModifier);
    static constexpr int meta = static_cast<int>(Qt::MetaModifier);
    static constexpr int keypad = static_cast<int>(Qt::KeypadModifier);
    static constexpr int groupSwitch = static_cast<int>(Qt::GroupSwitchModifier);

    QtEventMapperFixture()
    {
        m_context.setHook([this](const std::string& operation) { answer(operation); });
        m_manager.addContext(&m_context);
        m_mapper.setInteractionManager(&m_manager);
        m_log.clear();
    }

    ~QtEventMapperFixture() override { m_manager.removeContext(&m_context); }

    // The entries of the log.

    static std::string sent(const std::string& category, const std::string& verb)
    {
        return "context.triggerEvent(" + category + ", " + verb + ")";
    }

    static std::string pointer(int x, int y)
    {
        return "context.pointerMoved(" + std::to_string(x) + ", " + std::to_string(y) + ")";
    }

    // The answers of the context.

    void consumeEverything() { m_consumingEverything = true; }
    void consumeNothing()
    {
        m_consumingEverything = false;
        m_consumed.clear();
    }
    void consume(const std::string& category, const std::string& verb) { m_consumed.insert(sent(category, verb)); }

    /** Lets the context run @p action, once, from inside the next call that is logged as @p call. */
    void during(const std::string& call, std::function<void()> action) { m_actions[call] = std::move(action); }

    // Input. The position differs from the positions in the window and on the screen.

    static QMouseEvent mouseEvent(QEvent::Type type, const QPointF& position, Qt::MouseButton button, int buttons,
                                  int modifiers)
    {
        return QMouseEvent(type, position, position + QPointF(100, 200), position + QPointF(1000, 2000), button,
                           Qt::MouseButtons(buttons), Qt::KeyboardModifiers(modifiers));
    }

    bool press(Qt::MouseButton button, int modifiers = none, const QPointF& position = QPointF())
    {
        const QMouseEvent event =
            mouseEvent(QEvent::MouseButtonPress, position, button, static_cast<int>(button), modifiers);
        return m_mapper.mousePressed(&event);
    }

    bool release(Qt::MouseButton button, int modifiers = none, const QPointF& position = QPointF())
    {
        const QMouseEvent event = mouseEvent(QEvent::MouseButtonRelease, position, button, Qt::NoButton, modifiers);
        return m_mapper.mouseReleased(&event);
    }

    bool drag(int buttons, int modifiers = none, const QPointF& position = QPointF())
    {
        const QMouseEvent event = mouseEvent(QEvent::MouseMove, position, Qt::NoButton, buttons, modifiers);
        return m_mapper.mouseMoved(&event, true);
    }

    bool hover(int modifiers = none, const QPointF& position = QPointF())
    {
        const QMouseEvent event = mouseEvent(QEvent::MouseMove, position, Qt::NoButton, Qt::NoButton, modifiers);
        return m_mapper.mouseMoved(&event, false);
    }

    bool leave()
    {
        const QEvent event(QEvent::Leave);
        return m_mapper.hoverStopped(&event);
    }

    /** An event that reports @p modifiers: of a modifier key itself Qt reports the opposite of the flag it is given. */
    static QKeyEvent keyEvent(QEvent::Type type, int key, int modifiers, bool isAutoRepeat)
    {
        const int own = key == Qt::Key_Shift     ? shift
                        : key == Qt::Key_Control ? control
                        : key == Qt::Key_Alt     ? alt
                                                 : none;
        return QKeyEvent(type, key, Qt::KeyboardModifiers(modifiers ^ own), QString(), isAutoRepeat);
    }

    static void expectReported(const QKeyEvent& event, int modifiers)
    {
        EXPECT_EQ(static_cast<int>(event.modifiers()) & ~meta, modifiers & ~meta);
    }

    bool pressKey(int key, int modifiers = none, bool isAutoRepeat = false)
    {
        const QKeyEvent event = keyEvent(QEvent::KeyPress, key, modifiers, isAutoRepeat);
        expectReported(event, modifiers);
        return m_mapper.keyPressed(&event);
    }

    bool releaseKey(int key, int modifiers = none, bool isAutoRepeat = false)
    {
        const QKeyEvent event = keyEvent(QEvent::KeyRelease, key, modifiers, isAutoRepeat);
        expectReported(event, modifiers);
        return m_mapper.keyReleased(&event);
    }

    CallLog m_log;
    interaction::InteractionManager m_manager;
    RecordingContext m_context{m_log, "context"};
    interaction::QtEventMapper m_mapper;

private:
    void answer(const std::string& operation)
    {
        if (operation != "triggerEvent" && operation != "pointerMoved") {
            return;
        }
        const std::string call = m_log.calls().back();
        const auto found = m_actions.find(call);
        if (found != m_actions.end()) {
            const std::function<void()> action = found->second;
            m_actions.erase(found);
            action();
        }
        m_context.setConsuming(m_consumingEverything || m_consumed.count(call) > 0);
    }

    bool m_consumingEverything = false;
    std::set<std::string> m_consumed;
    std::map<std::string, std::function<void()>> m_actions;
};

/** Reads, for example, "ControlAlt"; "None" without any. Good as the name of a row. */
inline std::string nameOfModifiers(int modifiers)
{
    static const std::pair<Qt::KeyboardModifier, const char*> names[] = {
        {Qt::ControlModifier, "Control"}, {Qt::AltModifier, "Alt"},       {Qt::ShiftModifier, "Shift"},
        {Qt::MetaModifier, "Meta"},       {Qt::KeypadModifier, "Keypad"}, {Qt::GroupSwitchModifier, "GroupSwitch"}};
    std::string text;
    for (const auto& [modifier, name] : names) {
        if ((modifiers & static_cast<int>(modifier)) != 0) {
            text += name;
        }
    }
    return text.empty() ? "None" : text;
}

} // namespace quon::testing
