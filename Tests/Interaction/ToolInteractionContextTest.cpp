// SPDX-License-Identifier: MIT
#include <Interaction/ToolInteractionContext.h>

#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>
#include <InteractionTesting/RecordingNotificationListener.h>
#include <InteractionTesting/RecordingTool.h>

#include "Support/VirtualSlot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

using quon::interaction::AbstractInteractionTool;
using quon::interaction::InteractionContext;
using quon::interaction::InteractionEvent;
using quon::interaction::InteractionManager;
using quon::interaction::Picker;
using quon::interaction::ToolInteractionContext;
using quon::testing::CallLog;
using quon::testing::RecordingContext;
using quon::testing::RecordingNotificationListener;
using quon::testing::RecordingTool;
using quon::testing::virtualSlot;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

/** Final, so that a standard class may destroy it: the base has no virtual destructor. */
class FinalContext final : public ToolInteractionContext {
public:
    using ToolInteractionContext::ToolInteractionContext;
};

class ToolInteractionContextTest : public ::testing::Test {
protected:
    bool trigger(const std::string& category, const std::string& event)
    {
        return m_context.triggerEvent(&m_manager, InteractionEvent(category, event));
    }

    CallLog m_log;
    InteractionManager m_manager;
    RecordingTool m_tool{m_log, "tool"};
    RecordingTool m_other{m_log, "other"};
    ToolInteractionContext m_context{InteractionContext::Tool};
};

TEST_F(ToolInteractionContextTest, AddsSetPickerBehindTheOperationsOfTheBase)
{
    EXPECT_EQ(virtualSlot(&ToolInteractionContext::contextAdded), 3);
    EXPECT_EQ(virtualSlot(&ToolInteractionContext::contextRemoved), 4);
    EXPECT_EQ(virtualSlot(&ToolInteractionContext::contextRaised), 5);
    EXPECT_EQ(virtualSlot(&ToolInteractionContext::contextLowered), 6);
    EXPECT_EQ(virtualSlot(&ToolInteractionContext::triggerEvent), 9);
    EXPECT_EQ(virtualSlot(&ToolInteractionContext::selectMode), 14);
    EXPECT_EQ(virtualSlot(&ToolInteractionContext::setPicker), 15);
    class Next : public ToolInteractionContext {
    public:
        using ToolInteractionContext::ToolInteractionContext;
        virtual void next() {}
    };
    EXPECT_EQ(virtualSlot(&Next::next), 16);
    static_assert(!std::is_abstract_v<ToolInteractionContext>);
    static_assert(!std::has_virtual_destructor_v<ToolInteractionContext>);
}

TEST_F(ToolInteractionContextTest, StartsWithoutToolAndPickerAndWithTheCategoryTool)
{
    EXPECT_EQ(m_context.getTool(), nullptr);
    EXPECT_EQ(m_context.getPicker(), nullptr);
    EXPECT_EQ(m_context.getToolCategory(), "tool");
    EXPECT_EQ(m_context.getModeCategory(), "mode");
    EXPECT_EQ(m_context.getPreferredPosition(), InteractionContext::Tool);
    static_assert(std::is_same_v<decltype(m_context.getToolCategory()), const std::string&>);
}

// Activation

TEST_F(ToolInteractionContextTest, AToolSetOutsideAManagerIsStoredAndActivatedWhenTheContextIsAdded)
{
    m_context.setTool(&m_tool);
    EXPECT_EQ(m_context.getTool(), &m_tool);
    EXPECT_THAT(m_log.calls(), IsEmpty());

    m_manager.addContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.activateTool()"));
    EXPECT_THAT(m_tool.getContexts(), ElementsAre(&m_context));
}

TEST_F(ToolInteractionContextTest, TheToolIsActivatedBelowTheTopAsWell)
{
    RecordingContext top(m_log, "top", InteractionContext::Overlay);
    m_manager.addContext(&top);
    m_context.setTool(&m_tool);
    m_log.clear();

    m_manager.addContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.activateTool()"));
    EXPECT_FALSE(m_context.isRaised());
}

TEST_F(ToolInteractionContextTest, TheToolIsActivatedInADisabledManagerAsWell)
{
    m_context.setTool(&m_tool);
    m_manager.disable();

    m_manager.addContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.activateTool()"));
    EXPECT_FALSE(m_context.isEnabled());
}

TEST_F(ToolInteractionContextTest, TheContextKnowsItsManagerWhenTheToolIsActivated)
{
    InteractionManager* manager = nullptr;
    bool wasActive = false;
    bool wasRaised = true;
    m_tool.setHook([&](const std::string&) {
        manager = m_context.getInteractionManager();
        wasActive = m_context.isActive();
        wasRaised = m_context.isRaised();
    });
    m_context.setTool(&m_tool);

    m_manager.addContext(&m_context);

    EXPECT_EQ(manager, &m_manager);
    EXPECT_TRUE(wasActive);
    EXPECT_FALSE(wasRaised);
}

TEST_F(ToolInteractionContextTest, BeingRaisedLoweredEnabledOrDisabledDoesNotTouchTheTool)
{
    RecordingContext other(m_log, "other", InteractionContext::Overlay);
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_log.clear();

    m_manager.addContext(&other);
    EXPECT_FALSE(m_context.isRaised());
    m_manager.raiseContext(&m_context);
    EXPECT_TRUE(m_context.isRaised());
    m_manager.disable();
    m_manager.enable();

    EXPECT_THAT(m_log.calls(), ElementsAre("other.contextAdded()", "other.contextRaised()", "other.enabled()",
                                           "other.contextLowered()", "other.disabled()", "other.enabled()"));
}

TEST_F(ToolInteractionContextTest, BeingRaisedAndLoweredShowsAndHidesTheDescription)
{
    RecordingNotificationListener notifications(m_log);
    m_context.setDescription("text");

    m_context.contextRaised(&m_manager);
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.added(context, text)"));
    m_context.contextLowered(&m_manager);
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.removed(context, text)"));
}

TEST_F(ToolInteractionContextTest, BeingRemovedDeactivatesTheTool)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_log.clear();

    m_manager.removeContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.deactivateTool()"));
    EXPECT_THAT(m_tool.getContexts(), ElementsAre(&m_context, &m_context));
    EXPECT_FALSE(m_context.isActive());
    EXPECT_EQ(m_context.getTool(), &m_tool);
}

TEST_F(ToolInteractionContextTest, BeingRemovedEndsTheModesAfterTheToolWasDeactivated)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_context.startMode("measure");
    m_log.clear();
    std::vector<bool> activeInside;
    m_tool.setHook([&](const std::string&) {
        activeInside.push_back(m_tool.isActive());
        EXPECT_TRUE(m_context.isActive());
        EXPECT_EQ(m_context.getInteractionManager(), &m_manager);
    });

    m_manager.removeContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.deactivateTool()", "tool.setToolMode()"));
    EXPECT_THAT(activeInside, ElementsAre(false, false));
    EXPECT_FALSE(m_context.stopMode("measure"));
}

TEST_F(ToolInteractionContextTest, AToolSetWhileTheOldOneIsDeactivatedByRemovalIsNotActivated)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_log.clear();
    m_tool.setHook([this](const std::string& operation) {
        if (operation == "deactivateTool") {
            m_tool.setHook(nullptr);
            m_context.setTool(&m_other);
        }
    });

    m_manager.removeContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.deactivateTool()"));
    EXPECT_EQ(m_context.getTool(), &m_other);
}

TEST_F(ToolInteractionContextTest, AddingAndRemovingWithoutAToolOnlyKeepsTheBooks)
{
    m_manager.addContext(&m_context);
    EXPECT_TRUE(m_context.isActive());
    m_manager.removeContext(&m_context);
    EXPECT_FALSE(m_context.isActive());

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// Replacing the tool

TEST_F(ToolInteractionContextTest, ReplacingTheToolInAManagerDeactivatesTheOldAndActivatesTheNewOne)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_log.clear();
    m_tool.setHook([this](const std::string&) { EXPECT_EQ(m_context.getTool(), &m_tool); });
    m_other.setHook([this](const std::string&) { EXPECT_EQ(m_context.getTool(), &m_other); });

    m_context.setTool(&m_other);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.deactivateTool()", "other.activateTool()"));
    EXPECT_THAT(m_other.getContexts(), ElementsAre(&m_context));
}

TEST_F(ToolInteractionContextTest, SettingTheSameToolAgainDoesNothing)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_log.clear();

    m_context.setTool(&m_tool);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(ToolInteractionContextTest, ReplacingTheToolOutsideAManagerCallsNothing)
{
    m_context.setTool(&m_tool);
    m_context.setTool(&m_other);
    m_context.setTool(nullptr);
    m_context.setTool(nullptr);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_EQ(m_context.getTool(), nullptr);
}

TEST_F(ToolInteractionContextTest, ReplacingTheToolAfterRemovalCallsNothing)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_manager.removeContext(&m_context);
    m_log.clear();

    m_context.setTool(&m_other);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(ToolInteractionContextTest, SettingNullInAManagerDeactivatesTheTool)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_log.clear();

    m_context.setTool(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.deactivateTool()"));
}

TEST_F(ToolInteractionContextTest, SettingTheFirstToolInAManagerActivatesIt)
{
    m_manager.addContext(&m_context);

    m_context.setTool(&m_tool);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.activateTool()"));
}

TEST_F(ToolInteractionContextTest, SettingAToolBelowTheTopActivatesItAsWell)
{
    RecordingContext top(m_log, "top", InteractionContext::Overlay);
    m_manager.addContext(&top);
    m_manager.addContext(&m_context);
    m_manager.disable();
    m_log.clear();

    m_context.setTool(&m_tool);
    m_context.setTool(&m_other);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.activateTool()", "tool.deactivateTool()", "other.activateTool()"));
}

TEST_F(ToolInteractionContextTest, AToolMayHandOverToAnotherWhileItIsActivated)
{
    m_context.setTool(&m_tool);
    m_tool.setHook([this](const std::string& operation) {
        if (operation == "activateTool") {
            m_context.setTool(&m_other);
        }
    });

    m_manager.addContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.activateTool()", "tool.deactivateTool()", "other.activateTool()"));
    EXPECT_EQ(m_context.getTool(), &m_other);
}

TEST_F(ToolInteractionContextTest, ReplacingTheToolDoesNotHandTheModeOver)
{
    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_context.startMode("measure");
    m_log.clear();

    m_context.setTool(&m_other);
    EXPECT_THAT(m_log.take(), ElementsAre("tool.deactivateTool()", "other.activateTool()"));

    EXPECT_TRUE(m_context.stopMode("measure"));
    EXPECT_THAT(m_log.take(), ElementsAre("other.setToolMode()"));
}

// Events of the tool category

struct VerbRow {
    const char* verb;
    const char* operation;
};

void PrintTo(const VerbRow& row, std::ostream* stream)
{
    *stream << row.verb;
}

class ToolVerbTest : public ToolInteractionContextTest,
                     public ::testing::WithParamInterface<std::tuple<VerbRow, bool>> {};

TEST_P(ToolVerbTest, CallsItsToolOperationAndReturnsTheAnswer)
{
    const auto& [row, consuming] = GetParam();
    m_context.setTool(&m_tool);
    m_tool.setConsuming(consuming);

    EXPECT_EQ(trigger("tool:select", row.verb), consuming);
    EXPECT_EQ(trigger("tool", row.verb), consuming);
    EXPECT_EQ(trigger("tool:a:b", row.verb), consuming);

    const std::string call = std::string("tool.") + row.operation;
    EXPECT_THAT(m_log.calls(), ElementsAre(call + "(select)", call + "()", call + "(a:b)"));
    EXPECT_THAT(m_tool.getContexts(), Each(&m_context));
}

INSTANTIATE_TEST_SUITE_P(
    Verbs, ToolVerbTest,
    ::testing::Combine(::testing::Values(VerbRow{"trigger", "triggerTool"}, VerbRow{"start", "startTool"},
                                         VerbRow{"stop", "stopTool"}, VerbRow{"process", "processTool"},
                                         VerbRow{"hover", "hoverTool"}, VerbRow{"stopHover", "stopHoverTool"}),
                       ::testing::Bool()),
    [](const auto& row) {
        return std::string(std::get<0>(row.param).verb) + (std::get<1>(row.param) ? "Consumed" : "LeftAlone");
    });

TEST_F(ToolInteractionContextTest, OtherVerbsOfTheToolCategoryAreNotConsumed)
{
    m_context.setTool(&m_tool);

    EXPECT_FALSE(trigger("tool", "press"));
    EXPECT_FALSE(trigger("tool", "release"));
    EXPECT_FALSE(trigger("tool", "Start"));
    EXPECT_FALSE(trigger("tool", "stophover"));
    EXPECT_FALSE(trigger("tool", "start "));
    EXPECT_FALSE(trigger("tool", ""));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(ToolInteractionContextTest, WhenToolAndModeCategoryAreTheSameTheToolTakesTheEvents)
{
    m_context.setTool(&m_tool);
    m_context.setModeCategory("tool");
    m_tool.setConsuming(false);

    EXPECT_FALSE(trigger("tool:measure", "start"));
    EXPECT_FALSE(trigger("tool:measure", "stop"));
    EXPECT_FALSE(trigger("tool:measure", "press"));

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.startTool(measure)", "tool.stopTool(measure)"));
}

TEST_F(ToolInteractionContextTest, TheToolCategoryIsComparedWhole)
{
    m_context.setTool(&m_tool);

    EXPECT_FALSE(trigger("Tool:select", "start"));
    EXPECT_FALSE(trigger("tools:select", "start"));
    EXPECT_FALSE(trigger("too:select", "start"));
    EXPECT_FALSE(trigger(":tool", "start"));
    EXPECT_FALSE(trigger("", "start"));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(ToolInteractionContextTest, TheToolCategoryCanBeChanged)
{
    m_context.setTool(&m_tool);

    m_context.setToolCategory("measure");

    EXPECT_EQ(m_context.getToolCategory(), "measure");
    EXPECT_FALSE(trigger("tool:select", "start"));
    EXPECT_TRUE(trigger("measure:select", "start"));
    EXPECT_THAT(m_log.calls(), ElementsAre("tool.startTool(select)"));
}

TEST_F(ToolInteractionContextTest, EventsReachTheToolWhateverTheFlagsOfContextAndTool)
{
    m_context.setTool(&m_tool);
    m_context.disabled(&m_manager);
    ASSERT_FALSE(m_context.isRaised() || m_context.isActive() || m_context.isEnabled() || m_tool.isActive());

    EXPECT_TRUE(trigger("tool:select", "trigger"));

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.triggerTool(select)"));
}

TEST_F(ToolInteractionContextTest, HintsAreHandedOnWithoutAskingWhetherTheyPick)
{
    m_context.setTool(&m_tool);

    trigger("tool:toggle", "trigger");
    trigger("tool:no such hint", "trigger");

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.triggerTool(toggle)", "tool.triggerTool(no such hint)"));
}

// Modes

TEST_F(ToolInteractionContextTest, AModeEventReachesTheToolAsItsMode)
{
    m_context.setTool(&m_tool);

    EXPECT_TRUE(trigger("mode:x", "start"));
    EXPECT_TRUE(trigger("mode:y", "start"));
    EXPECT_TRUE(trigger("mode:y", "stop"));

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.setToolMode(x)", "tool.setToolMode(y)", "tool.setToolMode(x)"));
    EXPECT_THAT(m_tool.getContexts(), SizeIs(3));
    EXPECT_THAT(m_tool.getContexts(), Each(&m_context));
}

TEST_F(ToolInteractionContextTest, AModeThatTheToolRefusesIsNotStarted)
{
    m_context.setTool(&m_tool);
    m_tool.setAcceptingModes(false);

    EXPECT_FALSE(trigger("mode:x", "start"));

    EXPECT_THAT(m_log.take(), ElementsAre("tool.setToolMode(x)"));
    EXPECT_FALSE(m_context.stopMode("x"));
}

TEST_F(ToolInteractionContextTest, SelectModeReturnsTheAnswerOfTheTool)
{
    m_context.setTool(&m_tool);

    EXPECT_TRUE(m_context.selectMode("x"));
    m_tool.setAcceptingModes(false);
    EXPECT_FALSE(m_context.selectMode("x"));

    EXPECT_THAT(m_log.calls(), ElementsAre("tool.setToolMode(x)", "tool.setToolMode(x)"));
}

TEST_F(ToolInteractionContextTest, WithoutAToolEveryModeIsRefused)
{
    EXPECT_FALSE(m_context.selectMode("x"));
    EXPECT_FALSE(m_context.selectMode(""));
    EXPECT_FALSE(trigger("mode:x", "start"));
    EXPECT_FALSE(m_context.stopMode("x"));
}

TEST_F(ToolInteractionContextTest, WithoutAToolEventsOfTheToolCategoryFallThroughToTheModes)
{
    EXPECT_FALSE(trigger("tool:select", "start"));

    // A mode that was started while there was a tool shows that the event gets there.
    m_context.setTool(&m_tool);
    m_context.startMode("x");
    m_context.setTool(nullptr);
    m_context.setModeCategory("tool");
    m_log.clear();

    EXPECT_TRUE(trigger("tool:x", "stop"));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// The picker

TEST_F(ToolInteractionContextTest, ThePickerIsStoredAsItIs)
{
    // Never called by the context: any address will do.
    int place = 0;
    auto* picker = reinterpret_cast<Picker*>(&place);

    m_context.setPicker(picker);
    EXPECT_EQ(m_context.getPicker(), picker);

    m_context.setTool(&m_tool);
    m_manager.addContext(&m_context);
    m_manager.triggerEvent(InteractionEvent("tool:select", "trigger"));
    m_manager.removeContext(&m_context);
    EXPECT_EQ(m_context.getPicker(), picker);

    m_context.setPicker(nullptr);
    EXPECT_EQ(m_context.getPicker(), nullptr);
}

// With a real tool and a manager

TEST_F(ToolInteractionContextTest, AToolWithoutOverridesConsumesItsEventsAndRefusesModes)
{
    AbstractInteractionTool tool;
    m_context.setTool(&tool);
    m_manager.addContext(&m_context);

    EXPECT_TRUE(tool.isActive());
    EXPECT_TRUE(m_manager.triggerEvent(InteractionEvent("tool:select", "hover")));
    EXPECT_FALSE(m_manager.triggerEvent(InteractionEvent("mode:measure", "start")));

    m_manager.removeContext(&m_context);
    EXPECT_FALSE(tool.isActive());
}

TEST_F(ToolInteractionContextTest, ContextAndToolShowTheirDescriptionsSideBySide)
{
    RecordingNotificationListener notifications(m_log);
    AbstractInteractionTool tool;
    tool.setDescription("tool text");
    m_context.setDescription("context text");
    m_context.setTool(&tool);

    m_manager.addContext(&m_context);
    EXPECT_THAT(notifications.getShown(), ElementsAre("tool: tool text", "context: context text"));

    m_log.clear();
    m_manager.removeContext(&m_context);
    EXPECT_THAT(m_log.calls(),
                ElementsAre("notifications.removed(context, context text)", "notifications.removed(tool, tool text)"));
}

TEST_F(ToolInteractionContextTest, DestroyingTheContextDoesNotTouchTheTool)
{
    std::optional<FinalContext> context(InteractionContext::Tool);
    context->setTool(&m_tool);
    m_manager.addContext(&*context);
    m_manager.removeContext(&*context);
    m_log.clear();

    context.reset();

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

} // namespace
