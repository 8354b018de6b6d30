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

TEST(ScriptTest, AMarkOfTheEncodingAtTheBeginningIsNoPartOfTheFirstLine)
{
    const Script script = Script::parse("\xEF\xBB\xBF"
                                        "size 80 60\nfit\n",
                                        "script.txt");

    ASSERT_EQ(script.getCommands().size(), 2U);
    EXPECT_EQ(script.getCommands()[0].kind, Kind::Size);
    EXPECT_EQ(script.getCommands()[0].line, 1);
    EXPECT_THROW(Script::parse("fit\n\xEF\xBB\xBF"
                               "fit\n",
                               "script.txt"),
                 ViewerError);
}

TEST(ScriptTest, TryBeforeACommandMakesItOptional)
{
    EXPECT_FALSE(parseLine("click-visible 3").optional);
    EXPECT_TRUE(parseLine("try click-visible 3").optional);
    EXPECT_EQ(parseLine("try click-visible 3").kind, Kind::ClickVisible);
}

TEST(ScriptTest, RawInputIsReadAsItIsWritten)
{
    const ScriptCommand scroll = parseLine("scroll 1.5 -2 3 -120 4 5 update inverted ctrl");
    EXPECT_EQ(scroll.kind, Kind::Scroll);
    EXPECT_THAT(scroll.numbers, ElementsAre(1.5, -2, 3, -120, 4, 5));
    EXPECT_EQ(scroll.phase, Qt::ScrollUpdate);
    EXPECT_TRUE(scroll.inverted);
    EXPECT_EQ(scroll.modifiers, Qt::ControlModifier);

    const ScriptCommand gesture = parseLine("gesture zoom 1 2 -0.25");
    EXPECT_EQ(Script::readGesture(gesture.text), Qt::ZoomNativeGesture);
    EXPECT_THAT(gesture.numbers, ElementsAre(1, 2, -0.25));

    EXPECT_EQ(parseLine("held").buttons, Qt::NoButton);
    EXPECT_EQ(parseLine("held left back").buttons, Qt::LeftButton | Qt::BackButton);
    EXPECT_EQ(parseLine("doublepress 1 2 extra12").button, Qt::ExtraButton12);
    EXPECT_TRUE(parseLine("keypress A repeat shift").repeated);
    EXPECT_EQ(parseLine("keypress 0x01ffffff").key, Qt::Key_unknown);
}

TEST(ScriptTest, FingersAreAnyNumberOfPlaces)
{
    EXPECT_THAT(parseLine("touch").numbers, ::testing::IsEmpty());
    EXPECT_THAT(parseLine("touch 1 -2 3 4").numbers, ElementsAre(1, -2, 3, 4));
}

TEST(ScriptTest, WhatHappensToASetSaysWhetherAnotherNameBelongsToIt)
{
    const ScriptCommand recall = parseLine("set recall \"Set 1\"");
    EXPECT_EQ(recall.kind, Kind::Set);
    EXPECT_EQ(recall.text, "recall");
    EXPECT_THAT(recall.words, ElementsAre("Set 1"));

    EXPECT_THAT(parseLine("set rename a b").words, ElementsAre("a", "b"));
    EXPECT_THAT(parseLine("set union a").words, ElementsAre("a"));
    EXPECT_THAT(parseLine("set difference a b").words, ElementsAre("a", "b"));
}

TEST(ScriptTest, OtherModelsAreFilesAndAssemblies)
{
    EXPECT_EQ(parseLine("open \"a model.glb\"").text, "a model.glb");
    EXPECT_THAT(parseLine("generate 5000000").numbers, ElementsAre(5000000));
    EXPECT_EQ(parseLine("report here").text, "here");
}

TEST(ScriptTest, LinesAreCountedFromTheOneThatIsSaidToBeTheFirst)
{
    EXPECT_EQ(Script::parse("fit\n\nfit", "script", 41).getCommands().back().line, 43);
}

TEST(ScriptTest, EditsNameNodesAndExpectationsCountThem)
{
    EXPECT_THAT(parseLine("select").words, ::testing::IsEmpty());
    EXPECT_THAT(parseLine("hide /0/1 \"a name\"").words, ElementsAre("/0/1", "a name"));

    const ScriptCommand exact = parseLine("expect-selection 3 00000000deadBEEF");
    EXPECT_EQ(exact.digest.count, 3U);
    EXPECT_EQ(exact.digest.checksum, 0xdeadbeefU);
    EXPECT_TRUE(exact.hasChecksum);
    EXPECT_FALSE(parseLine("expect-hidden 0").hasChecksum);
    EXPECT_EQ(parseLine("command fit").text, "fit");
    EXPECT_TRUE(parseLine("switch dark on").on);
    EXPECT_THAT(parseLine("event mode:measure start").words, ElementsAre("start"));
}

TEST(ScriptTest, EveryKeyIsReadAsItWasWritten)
{
    for (const int key : {int(Qt::Key_A), int(Qt::Key_1), int(Qt::Key_Escape), int(Qt::Key_Shift), int(Qt::Key_Space),
                          int(Qt::Key_QuoteDbl), int(Qt::Key_NumberSign), int(Qt::Key_F12), int(Qt::Key_PageUp),
                          int(Qt::Key_Plus), int(Qt::Key_unknown), int(Qt::Key_Meta), int(Qt::Key_Adiaeresis), 0, 7}) {
        EXPECT_EQ(parseLine("key " + Script::writeKey(key)).key, key) << Script::writeKey(key);
    }
    EXPECT_EQ(Script::writeKey(Qt::Key_L), "L");
    EXPECT_EQ(Script::writeKey(Qt::Key_Plus), "0x0000002b");
}

TEST(ScriptTest, WordsAndNumbersAreReadAsTheyWereWritten)
{
    EXPECT_EQ(parseLine("toggle-node " + Script::writeWord("a # b")).text, "a # b");
    EXPECT_EQ(parseLine("toggle-node " + Script::writeWord(" a  b\t")).text, " a  b\t");
    EXPECT_EQ(parseLine("toggle-node " + Script::writeWord("a \"b\"\r\n")).text, "a  b   ");
    for (const double number : {0.1, -1.0 / 3, 123456.789, 1e-17}) {
        EXPECT_EQ(parseLine("gesture zoom 0 0 " + Script::writeNumber(number)).numbers[2], number);
    }
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
        BadLine{"CameraAtItsPoint", "camera 0 0 0 0 10 20", "'0' is out of range"},
        BadLine{"CameraTurnedOver", "camera 0 0 0 1 10 90.5", "'90.5' is out of range"},
        BadLine{"RankZero", "click-visible 0", "'0' is out of range"},
        BadLine{"UnknownView", "view upside",
                "unknown view 'upside', usage: view iso|front|back|left|right|top|bottom"},
        BadLine{"UnknownKey", "key Banana", "unknown key 'Banana'"},
        BadLine{"KeyWithModifier", "key Ctrl+L", "unknown key 'Ctrl+L'"},
        BadLine{"UnknownModifier", "click 1 2 meta", "unexpected 'meta', usage: click X Y [BUTTON] [MODIFIER...]"},
        BadLine{"ButtonOfAKey", "key L left", "unexpected 'left', usage: key KEY [MODIFIER...]"},
        BadLine{"UnknownCommandOfTheViewer", "command explode", "unknown command 'explode' of the viewer"},
        BadLine{"NeitherOnNorOff", "switch dark maybe", "unexpected 'maybe', usage: switch NAME on|off"},
        BadLine{"UnknownPhase", "scroll 0 0 0 0 0 0 middle",
                "unexpected 'middle', usage: scroll X Y ANGLE-X ANGLE-Y PIXEL-X PIXEL-Y "
                "none|begin|update|end|momentum [inverted] [MODIFIER...]"},
        BadLine{"UnknownGesture", "gesture wave 0 0 1",
                "unexpected 'wave', usage: gesture begin|end|pan|zoom|smart-zoom|rotate|swipe X Y VALUE "
                "[MODIFIER...]"},
        BadLine{"HeldKey", "held shift", "unexpected 'shift', usage: held [BUTTON...]"},
        BadLine{"KeyNumberWithRest", "key 0x12x", "unknown key '0x12x'"},
        BadLine{"KeyNumberTooLarge", "key 0xffffffff", "unknown key '0xffffffff'"},
        BadLine{"NoChecksum", "expect-hidden 1 green", "'green' is no checksum"},
        BadLine{"LongChecksum", "expect-hidden 1 12345678901234567", "'12345678901234567' is no checksum"},
        BadLine{"NegativeCount", "expect-hidden -1", "'-1' is out of range"},
        BadLine{"RepeatOfAClick", "click 1 2 repeat", "unexpected 'repeat', usage: click X Y [BUTTON] [MODIFIER...]"},
        BadLine{"EventWithoutVerb", "event tool:select", "argument missing, usage: event CATEGORY VERB"},
        BadLine{"FingerWithoutHeight", "touch 1 2 3", "argument missing, usage: touch [X Y]..."},
        BadLine{"UnknownActionOnASet", "set burn a",
                "unexpected 'burn', usage: set recall|add|replace|delete NAME, rename NAME NEW-NAME, "
                "union|intersection|difference NAME [NAME]"},
        BadLine{"SetWithoutName", "set recall",
                "argument missing, usage: set recall|add|replace|delete NAME, rename NAME NEW-NAME, "
                "union|intersection|difference NAME [NAME]"},
        BadLine{"SetWithoutNewName", "set rename a",
                "argument missing, usage: set recall|add|replace|delete NAME, rename NAME NEW-NAME, "
                "union|intersection|difference NAME [NAME]"},
        BadLine{"SetWithASurplusName", "set recall a b",
                "unexpected 'b', usage: set recall|add|replace|delete NAME, rename NAME NEW-NAME, "
                "union|intersection|difference NAME [NAME]"},
        BadLine{"AssemblyOfNothing", "generate 0", "'0' is out of range"},
        BadLine{"AssemblyTooLarge", "generate 5000001", "'5000001' is out of range"},
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
