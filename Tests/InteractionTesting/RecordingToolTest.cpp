// SPDX-License-Identifier: MIT
#include <InteractionTesting/RecordingTool.h>

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/ToolInteractionContext.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using interaction::InteractionContext;
using interaction::InteractionEvent;
using interaction::InteractionManager;
using interaction::ToolInteractionContext;
using ::testing::Each;
using ::testing::ElementsAre;

TEST(RecordingToolTest, WritesWhatItsContextTellsIt)
{
    CallLog log;
    RecordingTool tool(log, "tool");
    ToolInteractionContext context(InteractionContext::Tool);
    InteractionManager manager;
    context.setTool(&tool);

    manager.addContext(&context);
    EXPECT_TRUE(tool.isActive());
    for (const char* verb : {"hover", "stopHover", "start", "process", "stop", "trigger"}) {
        EXPECT_TRUE(manager.triggerEvent(InteractionEvent("tool:select", verb))) << verb;
    }
    manager.triggerEvent(InteractionEvent("mode:measure", "start"));
    manager.removeContext(&context);

    EXPECT_FALSE(tool.isActive());
    EXPECT_THAT(log, CallsOf("tool", "activateTool()", "hoverTool(select)", "stopHoverTool(select)",
                             "startTool(select)", "processTool(select)", "stopTool(select)", "triggerTool(select)",
                             "setToolMode(measure)", "deactivateTool()", "setToolMode()"));
    EXPECT_THAT(tool.getContexts(), Each(&context));
}

TEST(RecordingToolTest, AnswersWhatItIsToldTo)
{
    CallLog log;
    RecordingTool tool(log, "tool");
    EXPECT_TRUE(tool.startTool(nullptr, "select"));
    EXPECT_TRUE(tool.setToolMode(nullptr, "measure"));

    tool.setConsuming(false);
    tool.setAcceptingModes(false);

    EXPECT_FALSE(tool.startTool(nullptr, "select"));
    EXPECT_FALSE(tool.hoverTool(nullptr, "select"));
    EXPECT_FALSE(tool.setToolMode(nullptr, "measure"));
    EXPECT_FALSE(tool.isPickHint("select"));
    EXPECT_THAT(log, CallsInOrder("tool.isPickHint(select)"));
}

TEST(RecordingToolTest, HookRunsAfterTheEntryWasWritten)
{
    CallLog log;
    RecordingTool tool(log, "tool");
    std::vector<std::string> seen;
    tool.setHook([&](const std::string& operation) {
        seen.push_back(operation + " behind " + log.calls().back());
        tool.setHook(nullptr);
    });

    tool.startTool(nullptr, "select");
    tool.stopTool(nullptr, "select");

    EXPECT_THAT(seen, ElementsAre("startTool behind tool.startTool(select)"));
}

} // namespace

} // namespace quon::testing
