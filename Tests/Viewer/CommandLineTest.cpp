// SPDX-License-Identifier: MIT
#include "Viewer/Script/CommandLine.h"
#include "Viewer/Model/ViewerError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using viewer::CommandLine;
using viewer::ViewerError;

std::string parseAndFail(const std::vector<std::string>& arguments)
{
    try {
        CommandLine::parse(arguments);
        return {};
    } catch (const ViewerError& error) {
        return error.what();
    }
}

TEST(CommandLineTest, NothingAtAllOpensAnEmptyWindow)
{
    const CommandLine line = CommandLine::parse({});

    EXPECT_FALSE(line.headless);
    EXPECT_EQ(line.model, "");
}

TEST(CommandLineTest, HeadlessTakesScriptFolderAndModelInAnyOrder)
{
    const CommandLine line = CommandLine::parse({"model.glb", "--out", "folder", "--headless", "--script", "file"});

    EXPECT_TRUE(line.headless);
    EXPECT_EQ(line.model, "model.glb");
    EXPECT_EQ(line.script, "file");
    EXPECT_EQ(line.out, "folder");
}

TEST(CommandLineTest, AGeneratedAssemblyTakesThePlaceOfAModel)
{
    EXPECT_EQ(CommandLine::parse({}).partCount, 0);
    EXPECT_EQ(CommandLine::parse({"--generate", "1"}).partCount, 1);

    const CommandLine line =
        CommandLine::parse({"--headless", "--generate", "5000000", "--script", "file", "--out", "folder"});

    EXPECT_TRUE(line.headless);
    EXPECT_EQ(line.partCount, 5000000);
    EXPECT_EQ(line.model, "");
}

TEST(CommandLineTest, RecordingGoesWithAnythingAndReplayingWithAModelInAWindow)
{
    EXPECT_EQ(CommandLine::parse({"--record", "file"}).record, "file");
    EXPECT_EQ(CommandLine::parse({"a", "--headless", "--script", "s", "--out", "o", "--record", "r"}).record, "r");
    EXPECT_EQ(CommandLine::parse({"--replay", "file", "--generate", "3"}).replay, "file");
    EXPECT_EQ(CommandLine::parse({"--replay", "a", "--record", "b", "model"}).replay, "a");

    EXPECT_EQ(parseAndFail({"--replay", "file"}), "--replay: needs a model, see --help");
    EXPECT_EQ(parseAndFail({"a", "--headless", "--script", "s", "--out", "o", "--replay", "r"}),
              "--replay: goes with a window, --headless takes --script, see --help");
    EXPECT_EQ(parseAndFail({"--record"}), "--record: needs a value, see --help");
}

TEST(CommandLineTest, ALanguageIsOneThatTheViewerSpeaks)
{
    EXPECT_EQ(CommandLine::parse({}).language, "");
    EXPECT_EQ(CommandLine::parse({"--language", "de"}).language, "de");
    EXPECT_EQ(CommandLine::parse({"a", "--language", "en"}).language, "en");

    EXPECT_EQ(parseAndFail({"--language", "tlh"}), "--language: knows en and de, see --help");
    EXPECT_EQ(parseAndFail({"--language"}), "--language: needs a value, see --help");
}

TEST(CommandLineTest, APartCountIsANumberInItsRange)
{
    const char* const refusal = "--generate: needs a number of parts from 1 to 5000000, see --help";

    for (const char* count :
         {"0", "-1", "5000001", "99999999999999999999", "many", "12x", " 12", "1.5", "+1", "0x10"}) {
        EXPECT_EQ(parseAndFail({"--generate", count}), refusal) << count;
    }
    EXPECT_EQ(parseAndFail({"--generate"}), "--generate: needs a value, see --help");
    EXPECT_EQ(parseAndFail({"--generate", "5", "model.glb"}), "--generate: takes the place of a model, see --help");
    EXPECT_EQ(parseAndFail({"model.glb", "--generate", "5"}), "--generate: takes the place of a model, see --help");
}

TEST(CommandLineTest, ABenchmarkHasAModelOrAnAssembly)
{
    EXPECT_FALSE(CommandLine::parse({}).benchmark);
    EXPECT_TRUE(CommandLine::parse({"--benchmark"}).benchmark);
    EXPECT_EQ(CommandLine::parse({"--benchmark"}).partCount, 100000);
    EXPECT_EQ(CommandLine::parse({"--benchmark", "--generate", "7"}).partCount, 7);
    EXPECT_EQ(CommandLine::parse({"--benchmark", "model.glb"}).model, "model.glb");
    EXPECT_EQ(CommandLine::parse({"--benchmark", "model.glb"}).partCount, 0);
    EXPECT_EQ(parseAndFail({"--benchmark", "--headless", "a"}),
              "--benchmark: is without a display by itself, see --help");
    EXPECT_EQ(parseAndFail({"--benchmark", "--script", "s"}), "--script: goes with --headless only, see --help");
    EXPECT_EQ(parseAndFail({"--benchmark", "--record", "f"}), "--record: does not go with --benchmark, see --help");
    EXPECT_EQ(parseAndFail({"--benchmark", "--replay", "f"}), "--replay: does not go with --benchmark, see --help");
}

TEST(CommandLineTest, AfterTwoDashesEverythingIsAModel)
{
    EXPECT_EQ(CommandLine::parse({"--", "--help"}).model, "--help");
}

TEST(CommandLineTest, HelpAndVersionAskForNothingElse)
{
    EXPECT_TRUE(CommandLine::parse({"--headless", "--help"}).help);
    EXPECT_TRUE(CommandLine::parse({"-h"}).help);
    EXPECT_TRUE(CommandLine::parse({"--version"}).version);
}

TEST(CommandLineTest, WhatIsNotUnderstoodIsNamed)
{
    EXPECT_EQ(parseAndFail({"--fast"}), "--fast: unknown option, see --help");
    EXPECT_EQ(parseAndFail({"--out"}), "--out: needs a value, see --help");
    EXPECT_EQ(parseAndFail({"a", "b"}), "'b': one model at a time, see --help");
    EXPECT_EQ(parseAndFail({""}), "'': one model at a time, see --help");
    EXPECT_EQ(parseAndFail({"--headless", "a"}), "--headless: needs a model, --script and --out, see --help");
    EXPECT_EQ(parseAndFail({"--script", "s", "a"}), "--script: goes with --headless only, see --help");
    EXPECT_EQ(parseAndFail({"--out", "o", "a"}), "--out: goes with --headless only, see --help");
}

} // namespace

} // namespace quon::testing
