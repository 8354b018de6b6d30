// SPDX-License-Identifier: MIT
#include "Viewer/Session/ShortcutConflicts.h"
#include "Viewer/Session/InputBindings.h"

#include <Interaction/QtEventMapper.h>

#include <gtest/gtest.h>

#include <ostream>

namespace quon::testing {

namespace {

struct Case {
    const char* name;
    const char* firstGroup;
    koShortcut::Kind firstKind;
    int firstCode;
    int firstModifiers;
    const char* secondGroup;
    koShortcut::Kind secondKind;
    int secondCode;
    int secondModifiers;
    bool conflict;
};

std::ostream& operator<<(std::ostream& stream, const Case& each)
{
    return stream << each.name;
}

constexpr auto Key = koShortcut::Key;
constexpr auto Button = koShortcut::MouseButton;
constexpr int Control = Qt::ControlModifier;
constexpr int Shift = Qt::ShiftModifier;
const char* const Mapper = "Interaction";

const Case Cases[] = {
    {"equal keys", Mapper, Key, Qt::Key_H, Control, Mapper, Key, Qt::Key_H, Control, true},
    {"a key without modifiers fires with any", Mapper, Key, Qt::Key_H, 0, Mapper, Key, Qt::Key_H, Control, true},
    {"the same, the other way round", Mapper, Key, Qt::Key_H, Shift, Mapper, Key, Qt::Key_H, 0, true},
    {"other modifiers", Mapper, Key, Qt::Key_H, Shift, Mapper, Key, Qt::Key_H, Control, false},
    {"other keys", Mapper, Key, Qt::Key_H, 0, Mapper, Key, Qt::Key_I, 0, false},
    {"equal buttons", Mapper, Button, Qt::LeftButton, Shift, Mapper, Button, Qt::LeftButton, Shift, true},
    {"a button needs exactly its modifiers", Mapper, Button, Qt::LeftButton, 0, Mapper, Button, Qt::LeftButton, Shift,
     false},
    {"a key and a button of the same number", Mapper, Key, 4, 0, Mapper, Button, 4, 0, false},
    {"a key of a window that a mapper has too", Mapper, Key, Qt::Key_O, Control, "File", Key, Qt::Key_O, Control, true},
    {"a key of a window is not passed on", Mapper, Key, Qt::Key_O, 0, "File", Key, Qt::Key_O, Control, false},
    {"a free key that a command has", "Fixed keys", Key, Qt::Key_Up, 0, Mapper, Key, Qt::Key_Up, 0, true},
    {"a free key whose modifiers a command has", "Fixed keys", Key, Qt::Key_Up, 0, Mapper, Key, Qt::Key_Up, Shift,
     false},
    {"a key of a window needs exactly its modifiers", "File", Key, Qt::Key_O, 0, Mapper, Key, Qt::Key_O, Control,
     false},
};

class ShortcutConflictsCaseTest : public ::testing::TestWithParam<Case> {};

TEST_P(ShortcutConflictsCaseTest, TheSamePressFiresBothOrNot)
{
    const Case& each = GetParam();
    const koShortcut::Entry first{each.firstGroup, each.firstKind, each.firstCode, each.firstModifiers, {}};
    const koShortcut::Entry second{each.secondGroup, each.secondKind, each.secondCode, each.secondModifiers, {}};

    EXPECT_EQ(viewer::areConflicting(first, second), each.conflict);
    EXPECT_EQ(viewer::areConflicting(second, first), each.conflict);
}

INSTANTIATE_TEST_SUITE_P(Pairs, ShortcutConflictsCaseTest, ::testing::ValuesIn(Cases));

TEST(ShortcutConflictsTest, AnEntryConflictsWithTheOthersAndNotWithItself)
{
    koShortcut::addKey(Mapper, Qt::Key_H, 0, "hide");
    koShortcut::addKey(Mapper, Qt::Key_I, 0, "isolate");
    koShortcut::addKey(Mapper, Qt::Key_H, Control, "help");

    const auto conflicts = viewer::findConflicts(0);

    ASSERT_EQ(conflicts.size(), 1U);
    EXPECT_EQ(conflicts[0].description, QStringLiteral("help"));
    EXPECT_TRUE(viewer::findConflicts(1).empty());
    EXPECT_TRUE(viewer::findConflicts(7).empty());
    koShortcut::clear();
}

TEST(ShortcutConflictsTest, TheDefaultBindingsDoNotConflict)
{
    interaction::QtEventMapper mapper;
    const viewer::InputBindings bindings(mapper);

    for (std::size_t i = 0; i < koShortcut::getEntries().size(); ++i) {
        EXPECT_TRUE(viewer::findConflicts(i).empty()) << koShortcut::toText(koShortcut::getEntries()[i]).toStdString();
    }
}

} // namespace

} // namespace quon::testing
