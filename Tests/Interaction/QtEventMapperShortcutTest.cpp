// SPDX-License-Identifier: MIT
#include "QtEventMapperFixture.h"

#include <Shortcut/koShortcut.h>

#include <functional>
#include <string>

using quon::testing::CallLog;
using quon::testing::QtEventMapperFixture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A registry of our own in place of the host's, as a host with services of its own brings one: it shows every call of
// the mapper, also those of which the host's registry has nothing to tell.

namespace {

CallLog* registryLog = nullptr;
std::function<void()> duringAddition;
std::function<void()> duringRemoval;

void record(const std::string& operation, const QString& group, int code, int modifiers)
{
    if (registryLog != nullptr) {
        registryLog->call("koShortcut", operation, group.toStdString(), code,
                          quon::testing::nameOfModifiers(modifiers));
    }
}

void record(const std::string& operation, const QString& group, int code, int modifiers, const QString& description)
{
    if (registryLog != nullptr) {
        registryLog->call("koShortcut", operation, group.toStdString(), code, quon::testing::nameOfModifiers(modifiers),
                          description.toStdString());
    }
}

void callIfSet(const std::function<void()>& action)
{
    // A copy: the action may replace itself.
    if (const std::function<void()> copy = action) {
        copy();
    }
}

} // namespace

void koShortcut::addKey(const QString& group, int key, int modifiers, const QString& description)
{
    record("addKey", group, key, modifiers, description);
    callIfSet(duringAddition);
}

void koShortcut::subKey(const QString& group, int key, int modifiers)
{
    record("subKey", group, key, modifiers);
    callIfSet(duringRemoval);
}

void koShortcut::addMouseButton(const QString& group, int button, int modifiers, const QString& description)
{
    record("addMouseButton", group, button, modifiers, description);
    callIfSet(duringAddition);
}

void koShortcut::subMouseButton(const QString& group, int button, int modifiers)
{
    record("subMouseButton", group, button, modifiers);
    callIfSet(duringRemoval);
}

namespace {

class QtEventMapperShortcutTest : public QtEventMapperFixture {
protected:
    QtEventMapperShortcutTest() { registryLog = &m_log; }

    ~QtEventMapperShortcutTest() override
    {
        registryLog = nullptr;
        duringAddition = nullptr;
        duringRemoval = nullptr;
    }
};

TEST_F(QtEventMapperShortcutTest, AddingPassesGroupCodeModifiersAndDescription)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, shift | meta, "select", "Select");
    m_mapper.addMouseMapping(Qt::MiddleButton, control, "orbit", "Orbit");

    EXPECT_THAT(m_log.calls(), ElementsAre("koShortcut.addKey(Interaction, 65, ShiftMeta, Select)",
                                           "koShortcut.addMouseButton(Interaction, 4, Control, Orbit)"));
}

TEST_F(QtEventMapperShortcutTest, AddingWithoutDescriptionDoesNotCallTheRegistry)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", "");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", "");

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperShortcutTest, RemovingABindingThatWasAddedTwiceUnregistersTwice)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", "Select");
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", "Select");
    m_log.clear();

    m_mapper.removeKeyboardMapping(Qt::Key_A, none, "select");

    EXPECT_THAT(m_log.calls(),
                ElementsAre("koShortcut.subKey(Interaction, 65, None)", "koShortcut.subKey(Interaction, 65, None)"));
}

TEST_F(QtEventMapperShortcutTest, RemovingUnregistersOnceForEachBindingEvenIfItWasNeverRegistered)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "silent", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, alt, "silent", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, alt, "described", "Described");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "other modifiers", "Other");
    m_log.clear();

    m_mapper.removeKeyboardMapping(Qt::Key_A, none, "silent");
    EXPECT_THAT(m_log.take(), ElementsAre("koShortcut.subKey(Interaction, 65, None)"));

    m_mapper.removeMouseMapping(Qt::LeftButton, alt);
    EXPECT_THAT(m_log.calls(), ElementsAre("koShortcut.subMouseButton(Interaction, 1, Alt)",
                                           "koShortcut.subMouseButton(Interaction, 1, Alt)"));
}

TEST_F(QtEventMapperShortcutTest, RemovingAnUnknownBindingDoesNotCallTheRegistry)
{
    m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    m_mapper.addKeyboardMapping(Qt::Key_A, shift, "select", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());

    m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    m_mapper.removeKeyboardMapping(Qt::Key_A, shift, "Select");
    m_mapper.removeKeyboardMapping(Qt::Key_B, shift);
    m_mapper.removeMouseMapping(Qt::LeftButton, none, "zoom");
    m_mapper.removeMouseMapping(Qt::RightButton, none);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperShortcutTest, ABindingIsAlreadyThereWhenItIsRegistered)
{
    consumeEverything();
    duringAddition = [this] {
        leave();
        pressKey(Qt::Key_A);
    };

    m_mapper.addMouseMapping(Qt::LeftButton, none, "button", "Button");
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "key", "Key");

    EXPECT_THAT(m_log.calls(),
                ElementsAre("koShortcut.addMouseButton(Interaction, 1, None, Button)", sent("button", "stopHover"),
                            sent("qt-key:65", "press"), "koShortcut.addKey(Interaction, 65, None, Key)",
                            sent("button", "stopHover"), sent("key", "start")));
}

TEST_F(QtEventMapperShortcutTest, EachBindingIsStillThereWhileItIsUnregistered)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "a", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "b", QString());
    duringRemoval = [this] { leave(); };

    m_mapper.removeMouseMapping(Qt::LeftButton, none);

    EXPECT_THAT(m_log.calls(), ElementsAre("koShortcut.subMouseButton(Interaction, 1, None)", sent("a", "stopHover"),
                                           sent("b", "stopHover"), "koShortcut.subMouseButton(Interaction, 1, None)",
                                           sent("b", "stopHover")));
}

TEST_F(QtEventMapperShortcutTest, ABindingRemovedWhileItIsUnregisteredIsUnregisteredOnceMore)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "a", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "b", QString());
    m_mapper.addKeyboardMapping(Qt::Key_B, none, "other", QString());
    duringRemoval = [this] {
        duringRemoval = nullptr;
        m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    };
    consumeEverything();

    m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    pressKey(Qt::Key_B);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("koShortcut.subKey(Interaction, 65, None)", "koShortcut.subKey(Interaction, 65, None)",
                            "koShortcut.subKey(Interaction, 65, None)", sent("other", "start")));
}

TEST_F(QtEventMapperShortcutTest, InputAndResetsDoNotCallTheRegistry)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "a", "A");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "l", "L");
    consumeEverything();
    m_log.clear();

    pressKey(Qt::Key_A);
    press(Qt::LeftButton);
    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "start"), sent("l", "start"), sent("a", "stop"),
                                           sent("a", "trigger"), sent("l", "stop"), sent("l", "trigger")));
}

} // namespace
