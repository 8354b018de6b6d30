// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using viewer::Script;
using viewer::ScriptCommand;
using viewer::ViewerError;
using Kind = ScriptCommand::Kind;

ScriptCommand parseLine(const std::string& line)
{
    const Script script = Script::parse(line, "script");
    return script.getCommands().at(0);
}

std::string parseAndFail(const std::string& text)
{
    try {
        Script::parse(text, "script");
        return {};
    } catch (const ViewerError& error) {
        return error.what();
    }
}

TEST(ScriptTest, BlankLinesAndCommentsAreNoCommands)
{
    const Script script = Script::parse("\n# nothing\n   \t\n fit # fits\r\n\n", "script");

    ASSERT_EQ(script.getCommands().size(), 1U);
    EXPECT_EQ(script.getCommands()[0].kind, Kind::Fit);
    EXPECT_EQ(script.getCommands()[0].line, 4);
}

TEST(ScriptTest, AClickIsALeftClickWithoutModifiersUnlessItSaysOtherwise)
{
    const ScriptCommand plain = parseLine("click 10 -20");
    const ScriptCommand other = parseLine("click 10 20 alt middle ctrl shift");

    EXPECT_EQ(plain.kind, Kind::Click);
    EXPECT_THAT(plain.numbers, ElementsAre(10, -20));
    EXPECT_EQ(plain.button, Qt::LeftButton);
    EXPECT_EQ(plain.modifiers, Qt::NoModifier);
    EXPECT_EQ(other.button, Qt::MiddleButton);
    EXPECT_EQ(other.modifiers, Qt::AltModifier | Qt::ControlModifier | Qt::ShiftModifier);
}

TEST(ScriptTest, ADragHasTwoPlaces)
{
    const ScriptCommand command = parseLine("drag 1 2 3 4 right shift");

    EXPECT_THAT(command.numbers, ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(command.button, Qt::RightButton);
    EXPECT_EQ(command.modifiers, Qt::ShiftModifier);
}

TEST(ScriptTest, KeysAreWrittenAsQtWritesThem)
{
    EXPECT_EQ(parseLine("key L").key, Qt::Key_L);
    EXPECT_EQ(parseLine("key l").key, Qt::Key_L);
    EXPECT_EQ(parseLine("key Escape").key, Qt::Key_Escape);
    EXPECT_EQ(parseLine("key Esc").key, Qt::Key_Escape);
    EXPECT_EQ(parseLine("keypress F5 ctrl").key, Qt::Key_F5);
    EXPECT_EQ(parseLine("keypress F5 ctrl").modifiers, Qt::ControlModifier);
    EXPECT_EQ(parseLine("keyrelease Shift").key, Qt::Key_Shift);
}

TEST(ScriptTest, AQuotedWordMayHoldBlanksAndHashes)
{
    const ScriptCommand command = parseLine("add-empty-group \"group # 1\" 0.5 -1e2 2");

    EXPECT_EQ(command.text, "group # 1");
    EXPECT_THAT(command.numbers, ElementsAre(0.5, -100, 2));
}

TEST(ScriptTest, TryBeforeACommandMakesItOptional)
{
    EXPECT_FALSE(parseLine("click-visible 3").optional);
    EXPECT_TRUE(parseLine("try click-visible 3").optional);
    EXPECT_EQ(parseLine("try click-visible 3").kind, Kind::ClickVisible);
}

/** A line and the reason why it is refused. */
struct BadLine {
    const char* name;
    const char* line;
    const char* reason;
};

std::ostream& operator<<(std::ostream& stream, const BadLine& row)
{
    return stream << row.line;
}

class ScriptBadLineTest : public ::testing::TestWithParam<BadLine> {};

TEST_P(ScriptBadLineTest, IsRefusedWithFileLineAndReason)
{
    EXPECT_EQ(parseAndFail(std::string("fit\n\n") + GetParam().line + "\nfit\n"),
              std::string("script:3: ") + GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ScriptBadLineTest,
    ::testing::Values(
        BadLine{"UnknownCommand", "explode 1 2", "unknown command 'explode'"},
        BadLine{"CommandInCapitals", "Fit", "unknown command 'Fit'"},
        BadLine{"TryAlone", "try", "argument missing, usage: try COMMAND"},
        BadLine{"TryTwice", "try try fit", "unknown command 'try'"},
        BadLine{"MissingArgument", "size 10", "argument missing, usage: size WIDTH HEIGHT"},
        BadLine{"SurplusArgument", "fit now", "unexpected 'now', usage: fit"},
        BadLine{"NoNumber", "move ten 5", "'ten' is not a whole number"},
        BadLine{"NoWholeNumber", "move 1.5 5", "'1.5' is not a whole number"},
        BadLine{"NumberWithRest", "move 1x 5", "'1x' is not a whole number"},
        BadLine{"NotANumber", "add-empty-group a nan 0 0", "'nan' is not a number"},
        BadLine{"TooSmall", "size 0 10", "'0' is out of range"},
        BadLine{"TooLarge", "size 10 8193", "'8193' is out of range"},
        BadLine{"RankZero", "click-visible 0", "'0' is out of range"},
        BadLine{"UnknownView", "view upside",
                "unknown view 'upside', usage: view iso|front|back|left|right|top|bottom"},
        BadLine{"UnknownKey", "key Banana", "unknown key 'Banana'"},
        BadLine{"KeyWithModifier", "key Ctrl+L", "unknown key 'Ctrl+L'"},
        BadLine{"UnknownModifier", "click 1 2 meta", "unexpected 'meta', usage: click X Y [BUTTON] [MODIFIER...]"},
        BadLine{"ButtonOfAKey", "key L left", "unexpected 'left', usage: key KEY [MODIFIER...]"},
        BadLine{"OpenQuote", "toggle-node \"half", "a quote is not closed"},
        BadLine{"PictureInAnotherFolder", "shot ../x", "'../x' is no name for a picture: letters, digits, - and _"},
        BadLine{"PictureWithoutName", "shot \"\"", "'' is no name for a picture: letters, digits, - and _"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(ScriptTest, AFileIsReadWhole)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("script.txt", "fit\nshot end");

    const Script script = Script::load(file);

    EXPECT_EQ(script.getFile(), file);
    EXPECT_EQ(script.getCommands().size(), 2U);
}

TEST(ScriptTest, AMissingFileAndAFolderAreNamed)
{
    const TemporaryFolder folder;
    const auto loadAndFail = [](const std::string& file) {
        try {
            Script::load(file);
            return std::string();
        } catch (const ViewerError& error) {
            return std::string(error.what());
        }
    };

    EXPECT_EQ(loadAndFail(folder.path("none.txt")), folder.path("none.txt") + ": no such file");
    EXPECT_EQ(loadAndFail(folder.path()), folder.path() + ": is a directory");
}

TEST(ScriptTest, ErrorsStayOnOneLineWhateverTheScriptHolds)
{
    EXPECT_EQ(parseAndFail("a\x01\x02\x1b[1mb"), "script:1: unknown command 'a [1mb'");
}

} // namespace

} // namespace quon::testing
