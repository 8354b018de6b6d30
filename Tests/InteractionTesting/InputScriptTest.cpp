// SPDX-License-Identifier: MIT
#include <InteractionTesting/InputScript.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::IsEmpty;
using Kind = InputCommand::Kind;

/** The only command of a script. */
InputCommand parseOne(const std::string& script)
{
    const std::vector<InputCommand> commands = InputScript::parse(script);
    EXPECT_EQ(commands.size(), 1U) << script;
    return commands.empty() ? InputCommand() : commands.front();
}

std::vector<Kind> parseKinds(const std::string& script)
{
    std::vector<Kind> kinds;
    for (const InputCommand& command : InputScript::parse(script)) {
        kinds.push_back(command.kind);
    }
    return kinds;
}

std::string getMistake(const std::string& script)
{
    try {
        InputScript::parse(script);
    } catch (const std::invalid_argument& mistake) {
        return mistake.what();
    }
    return "no mistake";
}

TEST(InputScriptTest, SemicolonsAndLineEndsPartCommands)
{
    EXPECT_THAT(parseKinds("press;release\nclick ; ; \n\n  leave;"),
                ::testing::ElementsAre(Kind::Press, Kind::Release, Kind::Click, Kind::Leave));
    EXPECT_THAT(parseKinds(""), IsEmpty());
    EXPECT_THAT(parseKinds(" ;\n"), IsEmpty());
}

TEST(InputScriptTest, KnowsEveryCommand)
{
    EXPECT_THAT(parseKinds("move 1 2; hover 1 2; leave; press; release; click; doubleclick; drag 1 2; key A; "
                           "keypress A; keyrelease A; repeat A; modifiers none; losefocus"),
                ::testing::ElementsAre(Kind::Move, Kind::Hover, Kind::Leave, Kind::Press, Kind::Release, Kind::Click,
                                       Kind::DoubleClick, Kind::Drag, Kind::TypeKey, Kind::PressKey, Kind::ReleaseKey,
                                       Kind::RepeatKey, Kind::Modifiers, Kind::LoseFocus));
}

TEST(InputScriptTest, ReadsPlaces)
{
    EXPECT_EQ(parseOne("move 10 20").position, QPointF(10, 20));
    EXPECT_EQ(parseOne("move -1.5 0.25").position, QPointF(-1.5, 0.25));
    EXPECT_EQ(parseOne("drag 3 4 middle").position, QPointF(3, 4));
}

TEST(InputScriptTest, ReadsButtons)
{
    EXPECT_EQ(parseOne("press").button, Qt::LeftButton);
    EXPECT_EQ(parseOne("drag 3 4").button, Qt::LeftButton);
    EXPECT_EQ(parseOne("press left").button, Qt::LeftButton);
    EXPECT_EQ(parseOne("release right").button, Qt::RightButton);
    EXPECT_EQ(parseOne("drag 3 4 middle").button, Qt::MiddleButton);
    EXPECT_EQ(parseOne("click back").button, Qt::BackButton);
    EXPECT_EQ(parseOne("doubleclick forward").button, Qt::ForwardButton);
}

TEST(InputScriptTest, ReadsKeysAsQtWritesThem)
{
    EXPECT_EQ(parseOne("key A").key, Qt::Key_A);
    EXPECT_EQ(parseOne("key a").key, Qt::Key_A);
    EXPECT_EQ(parseOne("key 7").key, Qt::Key_7);
    EXPECT_EQ(parseOne("key F11").key, Qt::Key_F11);
    EXPECT_EQ(parseOne("key Escape").key, Qt::Key_Escape);
    EXPECT_EQ(parseOne("keypress PgUp").key, Qt::Key_PageUp);
    EXPECT_EQ(parseOne("keyrelease Space").key, Qt::Key_Space);
    EXPECT_EQ(parseOne("repeat ,").key, Qt::Key_Comma);
    EXPECT_EQ(parseOne("key +").key, Qt::Key_Plus);
}

TEST(InputScriptTest, ReadsKeysOfModifiers)
{
    EXPECT_EQ(parseOne("keypress Shift").key, Qt::Key_Shift);
    EXPECT_EQ(parseOne("keypress Ctrl").key, Qt::Key_Control);
    EXPECT_EQ(parseOne("keypress Alt").key, Qt::Key_Alt);
    EXPECT_EQ(parseOne("keypress Meta").key, Qt::Key_Meta);
    const InputCommand chord = parseOne("key Ctrl+Shift");
    EXPECT_EQ(chord.key, Qt::Key_Shift);
    EXPECT_EQ(chord.modifiers, Qt::ControlModifier);
}

TEST(InputScriptTest, ReadsChords)
{
    const InputCommand chord = parseOne("key Ctrl+Shift+Alt+Meta+A");
    EXPECT_EQ(chord.key, Qt::Key_A);
    EXPECT_EQ(chord.modifiers, Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier);

    const InputCommand plus = parseOne("key Ctrl++");
    EXPECT_EQ(plus.key, Qt::Key_Plus);
    EXPECT_EQ(plus.modifiers, Qt::ControlModifier);
}

TEST(InputScriptTest, ReadsModifiers)
{
    EXPECT_EQ(parseOne("modifiers ctrl+shift").modifiers, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(parseOne("modifiers Alt").modifiers, Qt::AltModifier);
    EXPECT_EQ(parseOne("modifiers none").modifiers, Qt::NoModifier);
}

TEST(InputScriptTest, UpperAndLowerCaseMakeNoDifference)
{
    const InputCommand press = parseOne("Press RIGHT");
    EXPECT_EQ(press.kind, Kind::Press);
    EXPECT_EQ(press.button, Qt::RightButton);

    const InputCommand chord = parseOne("KEY ctrl+escape");
    EXPECT_EQ(chord.key, Qt::Key_Escape);
    EXPECT_EQ(chord.modifiers, Qt::ControlModifier);
}

TEST(InputScriptTest, NamesTheWordThatItDoesNotUnderstand)
{
    const std::string start = "InputDriver does not understand ";

    EXPECT_EQ(getMistake("flick 1 2"), start + "\"flick 1 2\": \"flick\" is no command");
    EXPECT_EQ(getMistake("move 1 2; press   lefft"), start + "\"press lefft\": \"lefft\" is no button");
    EXPECT_EQ(getMistake("move ten 2"), start + "\"move ten 2\": \"ten\" is no number");
    EXPECT_EQ(getMistake("move 1 nan"), start + "\"move 1 nan\": \"nan\" is no number");
    EXPECT_EQ(getMistake("move 1"), start + "\"move 1\": a number is missing");
    EXPECT_EQ(getMistake("move 1 2 left"), start + "\"move 1 2 left\": \"left\" is one word too many");
    EXPECT_EQ(getMistake("key"), start + "\"key\": a key is missing");
    EXPECT_EQ(getMistake("key Escpe"), start + "\"key Escpe\": \"Escpe\" is no key");
    EXPECT_EQ(getMistake("key Strg+A"), start + "\"key Strg+A\": \"Strg\" is no modifier");
    EXPECT_EQ(getMistake("key Ctrl+"), start + "\"key Ctrl+\": \"Ctrl+\" is no key");
    EXPECT_EQ(getMistake("key Ctrl+B,C"), start + "\"key Ctrl+B,C\": \"B,C\" is no key");
    EXPECT_EQ(getMistake("keypress Ctrl+A"), start + "\"keypress Ctrl+A\": \"Ctrl+A\" is no key");
    EXPECT_EQ(getMistake("modifiers"), start + "\"modifiers\": modifiers are missing");
    EXPECT_EQ(getMistake("modifiers ctrl+fn"), start + "\"modifiers ctrl+fn\": \"fn\" is no modifier");
}

TEST(InputScriptTest, NamesButtonsAndKeys)
{
    EXPECT_EQ(InputScript::getName(Qt::MiddleButton), "middle");
    EXPECT_EQ(InputScript::getName(Qt::ExtraButton5), "128");
    EXPECT_EQ(InputScript::getKeyName(Qt::Key_Meta), "Meta");
    EXPECT_EQ(InputScript::getKeyName(Qt::Key_PageUp), "PgUp");
}

TEST(InputScriptTest, KnowsTheKeysOfModifiers)
{
    EXPECT_EQ(InputScript::getModifier(Qt::Key_Shift), Qt::ShiftModifier);
    EXPECT_EQ(InputScript::getModifier(Qt::Key_Meta), Qt::MetaModifier);
    EXPECT_EQ(InputScript::getModifier(Qt::Key_A), Qt::NoModifier);
}

} // namespace

} // namespace quon::testing
