// SPDX-License-Identifier: MIT
#include <InteractionTesting/RecordingMultimodeContext.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(RecordingMultimodeContextTest, WritesTheModesThatAreSelected)
{
    CallLog log;
    RecordingMultimodeContext context(log, "context");

    context.startMode("measure");
    context.startMode("cut");
    context.stopMode("cut");

    EXPECT_THAT(log, Calls("context.selectMode(measure)", "context.selectMode(cut)", "context.selectMode(measure)"));
}

TEST(RecordingMultimodeContextTest, RefusesWhatItIsToldTo)
{
    CallLog log;
    RecordingMultimodeContext context(log, "context");
    context.refuse("cut");

    EXPECT_TRUE(context.selectMode("measure"));
    EXPECT_FALSE(context.selectMode("cut"));
}

TEST(RecordingMultimodeContextTest, TakesTheStackOfModesApart)
{
    CallLog log;
    RecordingMultimodeContext context(log, "context");
    context.startMode("measure");
    context.startMode("cut");

    EXPECT_THAT(context.takeModes(), ElementsAre("cut", "measure"));

    EXPECT_THAT(context.takeModes(), IsEmpty());
    EXPECT_THAT(log, NoCalls());
}

TEST(RecordingMultimodeContextTest, HookRunsAfterTheEntryWasWritten)
{
    CallLog log;
    RecordingMultimodeContext context(log, "context");
    std::vector<std::string> seen;
    context.setHook([&](const std::string& mode) {
        seen.push_back(mode + " behind " + log.calls().back());
        context.setHook(nullptr);
    });

    context.startMode("measure");
    context.startMode("cut");

    EXPECT_THAT(seen, ElementsAre("measure behind context.selectMode(measure)"));
}

} // namespace

} // namespace quon::testing
