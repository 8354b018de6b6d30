// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <ios>
#include <string>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(CallLogTest, WritesObjectOperationAndArguments)
{
    CallLog log;
    log.call("tool", "activateTool");
    log.call("tool", "startTool", std::string("select"));
    log.call("picker", "setPointer", 10, 20.5F, true);
    log.add("anything");

    EXPECT_THAT(log.calls(), ElementsAre("tool.activateTool()", "tool.startTool(select)",
                                         "picker.setPointer(10, 20.5, true)", "anything"));
}

TEST(CallLogTest, AManipulatorOfOneEntryDoesNotReachTheNext)
{
    CallLog log;
    log.call("tool", "setNumber", std::hex, std::setprecision(2), std::setfill('.'), std::showbase, 255, 0.125);
    log.call("tool", "setNumber", 255, 0.125, true);

    EXPECT_EQ(log.calls().at(1), "tool.setNumber(255, 0.125, true)");
}

TEST(CallLogTest, StartsAfreshWhenItIsTakenOrCleared)
{
    CallLog log;
    log.add("first");
    EXPECT_THAT(log.take(), ElementsAre("first"));
    EXPECT_THAT(log.calls(), IsEmpty());

    log.add("second");
    log.clear();
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST(CallLogTest, IsANumberedListInMessages)
{
    CallLog log;
    EXPECT_EQ(::testing::PrintToString(log), "no calls");
    log.add("tool.activateTool()");
    log.add("tool.startTool(select)");

    EXPECT_EQ(::testing::PrintToString(log), "\n    1. tool.activateTool()\n    2. tool.startTool(select)\n   ");
}

} // namespace

} // namespace quon::testing
