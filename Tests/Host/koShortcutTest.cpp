// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>

#include <Shortcut/koShortcut.h>

#include <Qt>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

using quon::testing::CallLog;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const QString group = QStringLiteral("Interaction");
const int noModifiers = Qt::NoModifier;

std::string describe(const koShortcut::Entry& entry)
{
    return entry.group.toStdString() + (entry.kind == koShortcut::Key ? " key " : " button ") +
           std::to_string(entry.code) + " with " + std::to_string(entry.modifiers) + ": " +
           entry.description.toStdString();
}

std::vector<std::string> entries()
{
    std::vector<std::string> texts;
    for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
        texts.push_back(describe(entry));
    }
    return texts;
}

class RecordingListener : public koShortcut::Listener {
public:
    RecordingListener(CallLog& log, const std::string& name)
        : m_log(log)
        , m_name(name)
    {}

    ~RecordingListener() override { koShortcut::removeListener(this); }

    void entryAdded(const koShortcut::Entry& entry) override
    {
        m_log.call(m_name, "added", describe(entry));
        if (onAdded) {
            onAdded();
        }
    }

    void entryRemoved(const koShortcut::Entry& entry) override { m_log.call(m_name, "removed", describe(entry)); }

    std::function<void()> onAdded;

private:
    CallLog& m_log;
    std::string m_name;
};

// The registry is one for the process: each test leaves it empty and without listeners.
class koShortcutTest : public ::testing::Test {
protected:
    koShortcutTest() { koShortcut::clear(); }
    ~koShortcutTest() override { koShortcut::clear(); }

    CallLog m_log;
    RecordingListener m_first{m_log, "first"};
    RecordingListener m_second{m_log, "second"};
};

TEST_F(koShortcutTest, KeepsEntriesInOrderOfRegistration)
{
    koShortcut::addKey(group, Qt::Key_B, Qt::ShiftModifier, QStringLiteral("Box"));
    koShortcut::addMouseButton(group, Qt::LeftButton, Qt::ControlModifier, QStringLiteral("Toggle"));
    koShortcut::addKey(QStringLiteral("Camera"), Qt::Key_A, noModifiers, QStringLiteral("Show all"));

    EXPECT_THAT(entries(), ElementsAre("Interaction key 66 with 33554432: Box",
                                       "Interaction button 1 with 67108864: Toggle", "Camera key 65 with 0: Show all"));
}

TEST_F(koShortcutTest, KeepsEqualRegistrationsAsEntriesOfTheirOwn)
{
    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));
    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));

    EXPECT_THAT(entries(), ElementsAre("Interaction key 65 with 0: Select", "Interaction key 65 with 0: Select"));
}

TEST_F(koShortcutTest, SubtractingAKeyRemovesTheMostRecentlyAddedEntryOnly)
{
    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("older"));
    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("newer"));
    koShortcut::addKey(group, Qt::Key_B, noModifiers, QStringLiteral("other"));

    koShortcut::subKey(group, Qt::Key_A, noModifiers);

    EXPECT_THAT(entries(), ElementsAre("Interaction key 65 with 0: older", "Interaction key 66 with 0: other"));
}

TEST_F(koShortcutTest, SubtractingAButtonRemovesTheMostRecentlyAddedEntryOnly)
{
    koShortcut::addMouseButton(group, Qt::LeftButton, noModifiers, QStringLiteral("older"));
    koShortcut::addMouseButton(group, Qt::LeftButton, noModifiers, QStringLiteral("newer"));

    koShortcut::subMouseButton(group, Qt::LeftButton, noModifiers);

    EXPECT_THAT(entries(), ElementsAre("Interaction button 1 with 0: older"));
}

TEST_F(koShortcutTest, SubtractingComparesGroupCodeAndModifiers)
{
    koShortcut::addKey(group, Qt::Key_A, Qt::ShiftModifier, QStringLiteral("kept"));

    koShortcut::subKey(QStringLiteral("Camera"), Qt::Key_A, Qt::ShiftModifier);
    koShortcut::subKey(group, Qt::Key_B, Qt::ShiftModifier);
    koShortcut::subKey(group, Qt::Key_A, noModifiers);
    koShortcut::subKey(group, Qt::Key_A, Qt::ShiftModifier | Qt::AltModifier);

    EXPECT_THAT(entries(), ElementsAre("Interaction key 65 with 33554432: kept"));
}

TEST_F(koShortcutTest, TellsKeysAndButtonsOfTheSameNumberApart)
{
    koShortcut::addKey(group, 1, noModifiers, QStringLiteral("key"));
    koShortcut::addMouseButton(group, 1, noModifiers, QStringLiteral("button"));

    koShortcut::subKey(group, 1, noModifiers);
    koShortcut::subKey(group, 1, noModifiers);

    EXPECT_THAT(entries(), ElementsAre("Interaction button 1 with 0: button"));
}

TEST_F(koShortcutTest, IgnoresSubtractionOfUnknownEntries)
{
    koShortcut::addListener(&m_first);

    koShortcut::subKey(group, Qt::Key_A, noModifiers);
    koShortcut::subMouseButton(group, Qt::LeftButton, noModifiers);

    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(koShortcutTest, TellsListenersOfAdditionsAndRemovals)
{
    koShortcut::addListener(&m_second);
    koShortcut::addListener(&m_first);

    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));
    koShortcut::subKey(group, Qt::Key_A, noModifiers);

    EXPECT_THAT(m_log.calls(), ElementsAre("second.added(Interaction key 65 with 0: Select)",
                                           "first.added(Interaction key 65 with 0: Select)",
                                           "second.removed(Interaction key 65 with 0: Select)",
                                           "first.removed(Interaction key 65 with 0: Select)"));
}

TEST_F(koShortcutTest, ClearingRemovesTheMostRecentlyAddedEntryFirst)
{
    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));
    koShortcut::addMouseButton(group, Qt::RightButton, noModifiers, QStringLiteral("Menu"));
    koShortcut::addListener(&m_first);

    koShortcut::clear();

    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removed(Interaction button 2 with 0: Menu)",
                                           "first.removed(Interaction key 65 with 0: Select)"));
}

TEST_F(koShortcutTest, ARemovedListenerHearsNothing)
{
    koShortcut::addListener(&m_first);
    koShortcut::removeListener(&m_first);

    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(koShortcutTest, AListenerMayChangeListenersAndEntriesWhileItIsTold)
{
    m_first.onAdded = [this] {
        koShortcut::removeListener(&m_first);
        koShortcut::addListener(&m_second);
        koShortcut::addKey(group, Qt::Key_B, noModifiers, QStringLiteral("nested"));
    };
    koShortcut::addListener(&m_first);

    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));

    EXPECT_THAT(m_log.calls(), ElementsAre("first.added(Interaction key 65 with 0: Select)",
                                           "second.added(Interaction key 66 with 0: nested)"));
    EXPECT_THAT(entries(), ElementsAre("Interaction key 65 with 0: Select", "Interaction key 66 with 0: nested"));
}

TEST_F(koShortcutTest, TakesAnEntryOutOfTheRegistryAsArgument)
{
    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));

    for (int i = 0; i < 10; ++i) {
        koShortcut::addKey(koShortcut::getEntries().front().group, Qt::Key_A, noModifiers,
                           koShortcut::getEntries().front().description);
    }
    while (koShortcut::getEntries().size() > 1) {
        koShortcut::subKey(koShortcut::getEntries().back().group, Qt::Key_A, noModifiers);
    }

    EXPECT_EQ(describe(koShortcut::getEntries().front()), "Interaction key 65 with 0: Select");
}

TEST_F(koShortcutTest, AListenerNeedsToAnswerOnlyWhatItWantsToKnow)
{
    class IdleListener : public koShortcut::Listener {};
    IdleListener idle;
    koShortcut::addListener(&idle);
    koShortcut::addListener(&m_first);

    koShortcut::addKey(group, Qt::Key_A, noModifiers, QStringLiteral("Select"));
    koShortcut::subKey(group, Qt::Key_A, noModifiers);

    EXPECT_THAT(m_log.calls(), ElementsAre("first.added(Interaction key 65 with 0: Select)",
                                           "first.removed(Interaction key 65 with 0: Select)"));
    koShortcut::removeListener(&idle);
}

struct TextRow {
    const char* name;
    koShortcut::Kind kind;
    int code;
    int modifiers;
    const char* text;
};

std::ostream& operator<<(std::ostream& stream, const TextRow& row)
{
    return stream << row.name;
}

class koShortcutTextTest : public ::testing::TestWithParam<TextRow> {};

TEST_P(koShortcutTextTest, ShowsModifiersAndKeyOrButton)
{
    const TextRow& row = GetParam();

    const QString text = koShortcut::toText({group, row.kind, row.code, row.modifiers, QString()});

    EXPECT_EQ(text.toStdString(), row.text);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, koShortcutTextTest,
    ::testing::Values(
        TextRow{"Letter", koShortcut::Key, Qt::Key_A, Qt::NoModifier, "A"},
        TextRow{"CtrlLetter", koShortcut::Key, Qt::Key_A, Qt::ControlModifier, "Ctrl+A"},
        TextRow{"AllModifiersLetter", koShortcut::Key, Qt::Key_A,
                Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier, "Ctrl+Alt+Shift+A"},
        TextRow{"Escape", koShortcut::Key, Qt::Key_Escape, Qt::NoModifier, "Esc"},
        TextRow{"FunctionKey", koShortcut::Key, Qt::Key_F5, Qt::ShiftModifier, "Shift+F5"},
        TextRow{"NoKey", koShortcut::Key, 0, Qt::NoModifier, ""},
        TextRow{"LeftButton", koShortcut::MouseButton, Qt::LeftButton, Qt::NoModifier, "Left button"},
        TextRow{"CtrlLeftButton", koShortcut::MouseButton, Qt::LeftButton, Qt::ControlModifier, "Ctrl+Left button"},
        TextRow{"CtrlShiftRightButton", koShortcut::MouseButton, Qt::RightButton,
                Qt::ControlModifier | Qt::ShiftModifier, "Ctrl+Shift+Right button"},
        TextRow{"MiddleButton", koShortcut::MouseButton, Qt::MiddleButton, Qt::NoModifier, "Middle button"},
        TextRow{"BackButton", koShortcut::MouseButton, Qt::BackButton, Qt::NoModifier, "Back button"},
        TextRow{"ForwardButton", koShortcut::MouseButton, Qt::ForwardButton, Qt::NoModifier, "Forward button"},
        TextRow{"TaskButton", koShortcut::MouseButton, Qt::TaskButton, Qt::NoModifier, "Task button"},
        TextRow{"TwoButtons", koShortcut::MouseButton, Qt::LeftButton | Qt::RightButton, Qt::NoModifier, "Button 0x3"},
        TextRow{"NoButton", koShortcut::MouseButton, Qt::NoButton, Qt::NoModifier, "Button 0x0"}),
    [](const ::testing::TestParamInfo<TextRow>& row) { return row.param.name; });

} // namespace
