// SPDX-License-Identifier: MIT
#include <InteractionTesting/RecordingContext.h>

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

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
using ::testing::Each;
using ::testing::ElementsAre;

TEST(RecordingContextTest, WritesWhatTheManagerTellsIt)
{
    CallLog log;
    RecordingContext context(log, "context");
    InteractionManager manager;

    manager.addContext(&context);
    manager.pointerMoved(osg::Pnt2f(10, 20));
    osg::Matrix camera;
    camera.setTranslate(1, 2, 3);
    manager.cameraMoved(camera);
    manager.triggerEvent(InteractionEvent("tool:select", "start"));
    manager.disable();
    manager.enable();
    manager.removeContext(&context);

    EXPECT_THAT(log, Calls("context.contextAdded()", "context.contextRaised()", "context.enabled()",
                           "context.pointerMoved(10, 20)", "context.cameraMoved(1, 2, 3)",
                           "context.triggerEvent(tool:select, start)", "context.disabled()", "context.enabled()",
                           "context.contextLowered()", "context.contextRemoved()"));
    EXPECT_THAT(context.getManagers(), Each(&manager));
}

TEST(RecordingContextTest, FlagsFollowTheCalls)
{
    CallLog log;
    RecordingContext context(log, "context", InteractionContext::Navigation);
    RecordingContext top(log, "top", InteractionContext::Overlay);
    InteractionManager manager;
    EXPECT_FALSE(context.isActive());
    EXPECT_TRUE(context.isEnabled());

    manager.addContext(&context);
    EXPECT_TRUE(context.isActive());
    EXPECT_TRUE(context.isRaised());
    EXPECT_EQ(context.getInteractionManager(), &manager);

    manager.addContext(&top);
    manager.disable();
    EXPECT_FALSE(context.isRaised());
    EXPECT_FALSE(context.isEnabled());

    manager.removeContext(&top);
    manager.removeContext(&context);
    EXPECT_FALSE(context.isActive());
    EXPECT_EQ(context.getInteractionManager(), nullptr);
}

TEST(RecordingContextTest, ConsumesWhenItIsToldTo)
{
    CallLog log;
    RecordingContext context(log, "context");
    InteractionManager manager;

    EXPECT_FALSE(context.triggerEvent(&manager, InteractionEvent("tool", "start")));
    context.setConsuming(true);
    EXPECT_TRUE(context.triggerEvent(&manager, InteractionEvent("tool", "start")));
}

TEST(RecordingContextTest, StandsWhereItIsMovedTo)
{
    CallLog log;
    RecordingContext context(log, "context", 42);

    EXPECT_EQ(static_cast<int>(context.getPreferredPosition()), 42);
    context.moveTo(InteractionContext::Modal);
    EXPECT_EQ(context.getPreferredPosition(), InteractionContext::Modal);
    EXPECT_EQ(context.getName(), "context");
}

TEST(RecordingContextTest, HookRunsAfterTheEntryWasWritten)
{
    CallLog log;
    RecordingContext context(log, "context");
    std::vector<std::string> seen;
    context.setHook([&](const std::string& operation) {
        seen.push_back(operation + " behind " + log.calls().back());
        context.setHook(nullptr);
    });

    context.enabled(nullptr);
    context.disabled(nullptr);

    EXPECT_THAT(seen, ElementsAre("enabled behind context.enabled()"));
}

} // namespace

} // namespace quon::testing
