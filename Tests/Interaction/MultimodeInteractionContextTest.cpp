// SPDX-License-Identifier: MIT
#include <Interaction/MultimodeInteractionContext.h>

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>
#include <InteractionTesting/RecordingMultimodeContext.h>

#include "Support/VirtualSlot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <type_traits>

using quon::interaction::InteractionContext;
using quon::interaction::InteractionEvent;
using quon::interaction::InteractionManager;
using quon::interaction::MultimodeInteractionContext;
using quon::testing::CallLog;
using quon::testing::RecordingContext;
using quon::testing::RecordingMultimodeContext;
using quon::testing::virtualSlot;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class MultimodeInteractionContextTest : public ::testing::Test {
protected:
    bool trigger(const std::string& category, const std::string& event)
    {
        return m_context.triggerEvent(&m_manager, InteractionEvent(category, event));
    }

    CallLog m_log;
    InteractionManager m_manager;
    RecordingMultimodeContext m_context{m_log, "context"};
};

TEST_F(MultimodeInteractionContextTest, AddsSelectModeBehindTheOperationsOfTheBase)
{
    EXPECT_EQ(virtualSlot(&MultimodeInteractionContext::selectMode), 14);
    EXPECT_EQ(virtualSlot(&MultimodeInteractionContext::contextAdded), 3);
    EXPECT_EQ(virtualSlot(&MultimodeInteractionContext::contextRemoved), 4);
    EXPECT_EQ(virtualSlot(&MultimodeInteractionContext::triggerEvent), 9);
    class Next : public MultimodeInteractionContext {
    public:
        virtual void next() = 0;
    };
    EXPECT_EQ(virtualSlot(&Next::next), 15);
    static_assert(std::is_abstract_v<MultimodeInteractionContext>);
    static_assert(!std::has_virtual_destructor_v<MultimodeInteractionContext>);
}

TEST_F(MultimodeInteractionContextTest, StartsWithoutModesAndWithTheCategoryMode)
{
    EXPECT_EQ(m_context.getModeCategory(), "mode");
    EXPECT_EQ(m_context.getPreferredPosition(), InteractionContext::Tool);
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, TakesItsPreferredPositionFromTheConstructor)
{
    const RecordingMultimodeContext context(m_log, "context", InteractionContext::Navigation);

    EXPECT_EQ(context.getPreferredPosition(), InteractionContext::Navigation);
}

// Starting

TEST_F(MultimodeInteractionContextTest, AStartedModeBecomesTheCurrentOne)
{
    EXPECT_TRUE(m_context.startMode("A"));
    EXPECT_TRUE(m_context.startMode("B"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(A)", "context.selectMode(B)"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("B", "A"));
}

TEST_F(MultimodeInteractionContextTest, StartingAModeAgainMovesItToTheFront)
{
    m_context.startMode("A");
    m_context.startMode("B");

    EXPECT_TRUE(m_context.startMode("A"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(A)", "context.selectMode(B)", "context.selectMode(A)"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A", "B"));
}

TEST_F(MultimodeInteractionContextTest, StartingTheCurrentModeSelectsItOnceMore)
{
    m_context.startMode("A");

    EXPECT_TRUE(m_context.startMode("A"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(A)", "context.selectMode(A)"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, ARefusedModeLeavesTheStackUnchanged)
{
    m_context.startMode("A");
    m_context.refuse("B");
    m_log.clear();

    EXPECT_FALSE(m_context.startMode("B"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(B)"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, ARefusedModeThatRunsBelowStaysWhereItIs)
{
    m_context.startMode("A");
    m_context.startMode("B");
    m_context.refuse("A");

    EXPECT_FALSE(m_context.startMode("A"));

    EXPECT_THAT(m_context.takeModes(), ElementsAre("B", "A"));
}

TEST_F(MultimodeInteractionContextTest, AModeIsNotInTheStackYetWhileItIsSelected)
{
    bool wasRunning = true;
    m_context.setHook([&](const std::string& mode) { wasRunning = m_context.stopMode(mode); });

    EXPECT_TRUE(m_context.startMode("A"));

    EXPECT_FALSE(wasRunning);
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, AModeNamedByAStringThatSelectModeChangesIsStartedAsItWas)
{
    std::string name = "A";
    m_context.setHook([&](const std::string& mode) {
        name = "changed";
        EXPECT_EQ(mode, "A");
    });

    EXPECT_TRUE(m_context.startMode(name));

    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, ModeNamesAreComparedCaseSensitively)
{
    m_context.startMode("A");
    m_context.startMode("a");

    EXPECT_FALSE(m_context.stopMode("A "));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("a", "A"));
}

// Stopping

TEST_F(MultimodeInteractionContextTest, StoppingTheCurrentModeSelectsTheOneBelow)
{
    m_context.startMode("A");
    m_context.startMode("B");

    EXPECT_TRUE(m_context.stopMode("B"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(A)", "context.selectMode(B)", "context.selectMode(A)"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, StoppingAModeThatIsNotCurrentChangesTheStackOnly)
{
    m_context.startMode("A");
    m_context.startMode("B");

    EXPECT_TRUE(m_context.stopMode("A"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(A)", "context.selectMode(B)"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("B"));
}

TEST_F(MultimodeInteractionContextTest, StoppingTheLastModeSelectsTheEmptyName)
{
    m_context.startMode("A");
    m_log.clear();

    EXPECT_TRUE(m_context.stopMode("A"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode()"));
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, StoppingAnUnknownModeCallsNothing)
{
    EXPECT_FALSE(m_context.stopMode("A"));
    EXPECT_FALSE(m_context.stopMode(""));
    m_context.startMode("B");
    m_log.clear();

    EXPECT_FALSE(m_context.stopMode("A"));

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(m_context.takeModes(), ElementsAre("B"));
}

TEST_F(MultimodeInteractionContextTest, StoppingIgnoresWhetherTheModeBelowIsAccepted)
{
    m_context.startMode("A");
    m_context.startMode("B");
    m_context.refuse("A");
    m_context.refuse("");
    m_log.clear();

    EXPECT_TRUE(m_context.stopMode("B"));
    EXPECT_TRUE(m_context.stopMode("A"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(A)", "context.selectMode()"));
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, AStoppedModeHasLeftTheStackWhenTheNextOneIsSelected)
{
    m_context.startMode("A");
    m_context.startMode("B");
    bool wasRunning = true;
    m_context.setHook([&](const std::string&) { wasRunning = m_context.stopMode("B"); });

    m_context.stopMode("B");

    EXPECT_FALSE(wasRunning);
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, ASelectedModeMayStopItselfThroughTheNameItWasGiven)
{
    const std::string longName(100, 'A');
    m_context.startMode(longName);
    m_context.startMode("B");
    m_context.setHook([&](const std::string& mode) {
        if (mode == longName) {
            m_context.stopMode(mode);
            EXPECT_EQ(mode, longName);
        }
    });
    m_log.clear();

    EXPECT_TRUE(m_context.stopMode("B"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode(" + longName + ")", "context.selectMode()"));
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, ASelectedModeMayStartAnotherThroughTheNameItWasGiven)
{
    m_context.startMode("A");
    m_context.startMode("B");
    m_context.setHook([&](const std::string& mode) {
        m_context.setHook(nullptr);
        m_context.startMode(mode);
    });

    m_context.stopMode("B");

    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

// Events

struct EventRow {
    const char* name;
    const char* category;
    const char* event;
    bool consumed;
    const char* expectedCall;
};

void PrintTo(const EventRow& row, std::ostream* stream)
{
    *stream << row.category << ' ' << row.event;
}

class MultimodeEventTest : public MultimodeInteractionContextTest, public ::testing::WithParamInterface<EventRow> {};

TEST_P(MultimodeEventTest, StartsAndStopsTheModesOfItsCategoryOnly)
{
    const EventRow& row = GetParam();
    m_context.startMode("running");
    m_log.clear();

    EXPECT_EQ(trigger(row.category, row.event), row.consumed);

    if (row.expectedCall == nullptr) {
        EXPECT_THAT(m_log.calls(), IsEmpty());
    } else {
        EXPECT_THAT(m_log.calls(), ElementsAre(row.expectedCall));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Events, MultimodeEventTest,
    ::testing::Values(EventRow{"Start", "mode:measure", "start", true, "context.selectMode(measure)"},
                      EventRow{"StartKeepsFurtherColons", "mode:a:b", "start", true, "context.selectMode(a:b)"},
                      EventRow{"StartWithoutHint", "mode", "start", true, "context.selectMode()"},
                      EventRow{"StopRunning", "mode:running", "stop", true, "context.selectMode()"},
                      EventRow{"StopUnknown", "mode:measure", "stop", false, nullptr},
                      EventRow{"StopWithoutHint", "mode", "stop", false, nullptr},
                      EventRow{"Process", "mode:measure", "process", false, nullptr},
                      EventRow{"Trigger", "mode:measure", "trigger", false, nullptr},
                      EventRow{"Hover", "mode:measure", "hover", false, nullptr},
                      EventRow{"Press", "mode:measure", "press", false, nullptr},
                      EventRow{"CapitalStart", "mode:measure", "Start", false, nullptr},
                      EventRow{"LongerThanStart", "mode:measure", "start ", false, nullptr},
                      EventRow{"NoEventName", "mode:measure", "", false, nullptr},
                      EventRow{"TriggerOfARunningMode", "mode:running", "trigger", false, nullptr},
                      EventRow{"CapitalStopOfARunningMode", "mode:running", "Stop", false, nullptr},
                      EventRow{"NoEventNameForARunningMode", "mode:running", "", false, nullptr},
                      EventRow{"OtherCategoryStart", "tool:measure", "start", false, nullptr},
                      EventRow{"OtherCategoryStop", "tool:running", "stop", false, nullptr},
                      EventRow{"CapitalCategory", "Mode:measure", "start", false, nullptr},
                      EventRow{"CategoryThatBeginsAlike", "model:measure", "start", false, nullptr},
                      EventRow{"CategoryThatIsABeginning", "mod:measure", "start", false, nullptr},
                      EventRow{"EmptyCategory", "", "start", false, nullptr},
                      EventRow{"EmptyTool", ":mode", "start", false, nullptr}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(MultimodeInteractionContextTest, ACategoryWithoutHintStartsTheModeWithTheEmptyName)
{
    m_context.startMode("A");
    m_log.clear();

    EXPECT_TRUE(trigger("mode", "start"));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode()"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("", "A"));
}

TEST_F(MultimodeInteractionContextTest, ARefusedEmptyNameIsNotPushed)
{
    m_context.refuse("");

    EXPECT_FALSE(trigger("mode:", "start"));

    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, ARefusedStartEventIsNotConsumed)
{
    m_context.refuse("measure");

    EXPECT_FALSE(trigger("mode:measure", "start"));
}

TEST_F(MultimodeInteractionContextTest, TheModeCategoryCanBeChanged)
{
    m_context.setModeCategory("view");

    EXPECT_EQ(m_context.getModeCategory(), "view");
    EXPECT_FALSE(trigger("mode:A", "start"));
    EXPECT_TRUE(trigger("view:A", "start"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
    static_assert(std::is_same_v<decltype(m_context.getModeCategory()), const std::string&>);
}

TEST_F(MultimodeInteractionContextTest, AnEmptyModeCategoryIsAddressedByAnEmptyTool)
{
    m_context.setModeCategory("");

    EXPECT_TRUE(trigger(":A", "start"));
    EXPECT_FALSE(trigger("mode:A", "start"));
}

TEST_F(MultimodeInteractionContextTest, AConsumedEventDoesNotReachTheContextBelow)
{
    RecordingContext below(m_log, "below", InteractionContext::Background);
    m_manager.addContext(&m_context);
    m_manager.addContext(&below);
    m_context.refuse("B");
    m_log.clear();

    EXPECT_TRUE(m_manager.triggerEvent(InteractionEvent("mode:A", "start")));
    EXPECT_FALSE(m_manager.triggerEvent(InteractionEvent("mode:B", "start")));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.selectMode(A)", "context.selectMode(B)", "below.triggerEvent(mode:B, start)"));
}

// The manager

TEST_F(MultimodeInteractionContextTest, BeingAddedSelectsNothing)
{
    m_context.startMode("A");
    m_log.clear();

    m_context.contextAdded(&m_manager);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_TRUE(m_context.isActive());
    EXPECT_EQ(m_context.getInteractionManager(), &m_manager);
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, ModesCanBeStartedWithoutAManager)
{
    EXPECT_TRUE(m_context.startMode("A"));

    EXPECT_EQ(m_context.getInteractionManager(), nullptr);
    EXPECT_TRUE(m_context.stopMode("A"));
}

TEST_F(MultimodeInteractionContextTest, ModesSurviveRaisingLoweringAndDisabling)
{
    RecordingContext other(m_log, "other", InteractionContext::Overlay);
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_log.clear();

    m_manager.addContext(&other);
    m_manager.raiseContext(&m_context);
    m_manager.disable();
    m_manager.enable();

    EXPECT_THAT(m_log.calls(), ElementsAre("other.contextAdded()", "other.contextRaised()", "other.enabled()",
                                           "other.contextLowered()", "other.disabled()", "other.enabled()"));
    EXPECT_THAT(m_context.takeModes(), ElementsAre("A"));
}

TEST_F(MultimodeInteractionContextTest, BeingRemovedEndsAllModesWithOneCall)
{
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_context.startMode("B");
    m_log.clear();

    m_manager.removeContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode()"));
    EXPECT_FALSE(m_context.isActive());
    EXPECT_EQ(m_context.getInteractionManager(), nullptr);
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, BeingRemovedWithoutModesSelectsNothing)
{
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_context.stopMode("A");
    m_log.clear();

    m_manager.removeContext(&m_context);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_FALSE(m_context.isActive());
}

TEST_F(MultimodeInteractionContextTest, BeingRemovedEndsTheModesEvenWhenTheEmptyNameIsRefused)
{
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_context.refuse("");

    m_manager.removeContext(&m_context);

    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, TheModesStillRunAndTheManagerIsKnownWhileTheyEnd)
{
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_context.startMode("B");
    bool wasRunning = false;
    bool wasActive = false;
    InteractionManager* manager = nullptr;
    m_context.setHook([&](const std::string&) {
        wasRunning = m_context.stopMode("A");
        wasActive = m_context.isActive();
        manager = m_context.getInteractionManager();
    });

    m_manager.removeContext(&m_context);

    EXPECT_TRUE(wasRunning);
    EXPECT_TRUE(wasActive);
    EXPECT_EQ(manager, &m_manager);
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, AModeStartedWhileTheModesEndIsEndedToo)
{
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_context.setHook([&](const std::string&) {
        m_context.setHook(nullptr);
        m_context.startMode("late");
    });
    m_log.clear();

    m_manager.removeContext(&m_context);

    EXPECT_THAT(m_log.calls(), ElementsAre("context.selectMode()", "context.selectMode(late)"));
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, ModesMayAllBeStoppedWhileTheyEnd)
{
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_context.setHook([&](const std::string&) {
        m_context.setHook(nullptr);
        m_context.stopMode("A");
    });

    m_manager.removeContext(&m_context);

    EXPECT_FALSE(m_context.isActive());
    EXPECT_THAT(m_context.takeModes(), IsEmpty());
}

TEST_F(MultimodeInteractionContextTest, RunsModesAgainAfterItWasAddedAgain)
{
    m_manager.addContext(&m_context);
    m_context.startMode("A");
    m_manager.removeContext(&m_context);
    m_manager.addContext(&m_context);

    EXPECT_TRUE(m_manager.triggerEvent(InteractionEvent("mode:B", "start")));

    EXPECT_THAT(m_context.takeModes(), ElementsAre("B"));
}

} // namespace
