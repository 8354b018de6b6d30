// SPDX-License-Identifier: MIT
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/ToolInteractionContext.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>
#include <InteractionTesting/RecordingTool.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace quon::interaction {

namespace {

using quon::testing::CallLog;
using quon::testing::RecordingContext;
using quon::testing::RecordingTool;
using ::testing::ElementsAre;

// Two contexts in a stack, of which the top one does what a test says from inside one of its calls.
class MisbehavingContextTest : public ::testing::Test {
protected:
    MisbehavingContextTest()
    {
        m_manager.addContext(&m_below);
        m_manager.addContext(&m_top);
        m_log.clear();
    }

    /** Lets @p context carry out @p action, once, from inside its next call of @p operation. */
    static void during(RecordingContext& context, const std::string& operation, std::function<void()> action)
    {
        context.setHook([&context, operation, action = std::move(action)](const std::string& called) {
            if (called == operation) {
                context.setHook(nullptr);
                action();
            }
        });
    }

    CallLog m_log;
    InteractionManager m_manager;
    RecordingContext m_below{m_log, "below", InteractionContext::Navigation};
    RecordingContext m_top{m_log, "top", InteractionContext::Tool};
    RecordingContext m_third{m_log, "third", InteractionContext::Overlay};
    const InteractionEvent m_event{"tool:hint", "start"};
};

TEST_F(MisbehavingContextTest, AnEventUnderWayGoesOnWhileAContextDisablesTheManager)
{
    during(m_top, "triggerEvent", [this] { m_manager.disable(); });

    m_manager.triggerEvent(m_event);

    EXPECT_THAT(m_log.take(), ElementsAre("top.triggerEvent(tool:hint, start)", "top.disabled()", "below.disabled()",
                                          "below.triggerEvent(tool:hint, start)"));
    EXPECT_FALSE(m_manager.triggerEvent(m_event));
}

TEST_F(MisbehavingContextTest, AnEventFromInsideAnEventIsRoutedFirst)
{
    during(m_top, "triggerEvent", [this] { m_manager.triggerEvent(InteractionEvent("inner", "stop")); });

    m_manager.triggerEvent(m_event);

    EXPECT_THAT(m_log.take(), ElementsAre("top.triggerEvent(tool:hint, start)", "top.triggerEvent(inner, stop)",
                                          "below.triggerEvent(inner, stop)", "below.triggerEvent(tool:hint, start)"));
}

TEST_F(MisbehavingContextTest, AMovementFromInsideAMovementIsToldFirst)
{
    during(m_top, "pointerMoved", [this] { m_manager.cameraMoved(osg::Matrix()); });

    m_manager.pointerMoved(osg::Pnt2f(1.0F, 2.0F));

    EXPECT_THAT(m_log.take(), ElementsAre("top.pointerMoved(1, 2)", "top.cameraMoved(0, 0, 0)",
                                          "below.cameraMoved(0, 0, 0)", "below.pointerMoved(1, 2)"));
}

TEST_F(MisbehavingContextTest, EnablingFromInsideDisabledIsToldFirstAndTheRestHearsThatItIsDisabled)
{
    during(m_top, "disabled", [this] { m_manager.enable(); });

    m_manager.disable();

    EXPECT_THAT(m_log.take(), ElementsAre("top.disabled()", "top.enabled()", "below.enabled()", "below.disabled()"));
    m_manager.triggerEvent(m_event);
    EXPECT_THAT(m_log.take(),
                ElementsAre("top.triggerEvent(tool:hint, start)", "below.triggerEvent(tool:hint, start)"));
}

TEST_F(MisbehavingContextTest, AContextAddedOnTopFromInsideAnEventIsNotReachedByIt)
{
    during(m_top, "triggerEvent", [this] { m_manager.addContext(&m_third); });

    m_manager.triggerEvent(m_event);

    EXPECT_THAT(m_log.take(),
                ElementsAre("top.triggerEvent(tool:hint, start)", "top.contextLowered()", "third.contextAdded()",
                            "third.contextRaised()", "third.enabled()", "below.triggerEvent(tool:hint, start)"));
}

TEST_F(MisbehavingContextTest, AContextThatRemovesItselfWhenAddedHearsTheRestAllTheSame)
{
    during(m_third, "contextAdded", [this] { m_manager.removeContext(&m_third); });

    m_manager.addContext(&m_third);

    EXPECT_THAT(m_log.take(), ElementsAre("top.contextLowered()", "third.contextAdded()", "third.contextLowered()",
                                          "third.contextRemoved()", "top.contextRaised()", "third.contextRaised()",
                                          "third.enabled()"));
    m_manager.triggerEvent(m_event);
    EXPECT_THAT(m_log.take(),
                ElementsAre("top.triggerEvent(tool:hint, start)", "below.triggerEvent(tool:hint, start)"));
}

TEST_F(MisbehavingContextTest, AContextThatRemovesItselfWhenRaisedIsEnabledAllTheSame)
{
    during(m_third, "contextRaised", [this] { m_manager.removeContext(&m_third); });

    m_manager.addContext(&m_third);

    EXPECT_THAT(m_log.take(), ElementsAre("top.contextLowered()", "third.contextAdded()", "third.contextRaised()",
                                          "third.contextLowered()", "third.contextRemoved()", "top.contextRaised()",
                                          "third.enabled()"));
}

TEST_F(MisbehavingContextTest, AContextThatAddsItselfWhenRemovedIsInTheStackAgain)
{
    during(m_top, "contextRemoved", [this] { m_manager.addContext(&m_top); });

    m_manager.removeContext(&m_top);

    EXPECT_THAT(m_log.take(), ElementsAre("top.contextLowered()", "top.contextRemoved()", "below.contextLowered()",
                                          "top.contextAdded()", "top.contextRaised()", "top.enabled()"));
    m_manager.triggerEvent(m_event);
    EXPECT_THAT(m_log.take(),
                ElementsAre("top.triggerEvent(tool:hint, start)", "below.triggerEvent(tool:hint, start)"));
}

TEST_F(MisbehavingContextTest, AContextThatRemovesItselfWhenLoweredIsRemovedTwice)
{
    during(m_top, "contextLowered", [this] { m_manager.removeContext(&m_top); });

    m_manager.removeContext(&m_top);

    EXPECT_THAT(m_log.take(), ElementsAre("top.contextLowered()", "top.contextLowered()", "top.contextRemoved()",
                                          "below.contextRaised()", "top.contextRemoved()", "below.contextRaised()"));
    m_manager.triggerEvent(m_event);
    EXPECT_THAT(m_log.take(), ElementsAre("below.triggerEvent(tool:hint, start)"));
}

TEST_F(MisbehavingContextTest, ACallThatThrowsEndsTheOperationAndLeavesTheStackAsItWas)
{
    during(m_top, "triggerEvent", [] { throw std::runtime_error("from a context"); });

    EXPECT_THROW(m_manager.triggerEvent(m_event), std::runtime_error);

    EXPECT_THAT(m_log.take(), ElementsAre("top.triggerEvent(tool:hint, start)"));
    m_manager.triggerEvent(m_event);
    EXPECT_THAT(m_log.take(),
                ElementsAre("top.triggerEvent(tool:hint, start)", "below.triggerEvent(tool:hint, start)"));
}

TEST_F(MisbehavingContextTest, AContextThatThrowsWhenRaisedStaysInTheStackUntilItIsRemoved)
{
    during(m_third, "contextRaised", [] { throw std::runtime_error("from a context"); });

    EXPECT_THROW(m_manager.addContext(&m_third), std::runtime_error);
    EXPECT_THAT(m_log.take(), ElementsAre("top.contextLowered()", "third.contextAdded()", "third.contextRaised()"));
    m_manager.removeContext(&m_third);

    EXPECT_THAT(m_log.take(), ElementsAre("third.contextLowered()", "third.contextRemoved()", "top.contextRaised()"));
}

TEST_F(MisbehavingContextTest, AToolMayTakeItselfOutFromInsideItsEvent)
{
    ToolInteractionContext context(InteractionContext::Overlay);
    auto tool = std::make_unique<RecordingTool>(m_log, "tool");
    context.setTool(tool.get());
    m_manager.addContext(&context);
    m_log.clear();
    RecordingTool* const running = tool.get();
    running->setHook([&](const std::string& operation) {
        if (operation == "triggerTool") {
            context.setTool(nullptr);
        }
    });

    EXPECT_TRUE(m_manager.triggerEvent(InteractionEvent("tool:hint", "trigger")));
    tool.reset();

    EXPECT_THAT(m_log.take(), ElementsAre("tool.triggerTool(hint)", "tool.deactivateTool()"));
    m_manager.triggerEvent(InteractionEvent("tool:hint", "trigger"));
    EXPECT_THAT(m_log.take(),
                ElementsAre("top.triggerEvent(tool:hint, trigger)", "below.triggerEvent(tool:hint, trigger)"));
    m_manager.removeContext(&context);
}

TEST_F(MisbehavingContextTest, AToolMayRemoveTheOtherContextsFromInsideItsEvent)
{
    ToolInteractionContext context(InteractionContext::Overlay);
    RecordingTool tool(m_log, "tool");
    context.setTool(&tool);
    m_manager.addContext(&context);
    m_log.clear();
    tool.setConsuming(false);
    tool.setHook([&](const std::string& operation) {
        if (operation == "startTool") {
            m_manager.removeContext(&m_top);
            m_manager.removeContext(&m_below);
        }
    });

    EXPECT_FALSE(m_manager.triggerEvent(m_event));

    EXPECT_THAT(m_log.take(), ElementsAre("tool.startTool(hint)", "top.contextRemoved()", "below.contextRemoved()"));
    m_manager.removeContext(&context);
}

} // namespace

} // namespace quon::interaction
