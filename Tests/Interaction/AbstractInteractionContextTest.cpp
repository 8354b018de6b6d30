// SPDX-License-Identifier: MIT
#include <Interaction/AbstractInteractionContext.h>

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>
#include <InteractionTesting/RecordingNotificationListener.h>

#include "Support/VirtualSlot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

using quon::interaction::AbstractInteractionContext;
using quon::interaction::InteractionContext;
using quon::interaction::InteractionEvent;
using quon::interaction::InteractionManager;
using quon::testing::CallLog;
using quon::testing::RecordingContext;
using quon::testing::RecordingNotificationListener;
using quon::testing::virtualSlot;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> shown()
{
    return RecordingNotificationListener::getShown();
}

/** The flags and the manager of a context as one readable word each. */
std::vector<std::string> flags(const InteractionContext& context)
{
    std::vector<std::string> words;
    words.emplace_back(context.isRaised() ? "raised" : "lowered");
    words.emplace_back(context.isActive() ? "active" : "inactive");
    words.emplace_back(context.isEnabled() ? "enabled" : "disabled");
    words.emplace_back(context.getInteractionManager() != nullptr ? "managed" : "unmanaged");
    return words;
}

/** Final, so that a standard class may destroy it: the base has no virtual destructor. */
class FinalContext final : public AbstractInteractionContext {
public:
    using AbstractInteractionContext::AbstractInteractionContext;
};

class AbstractInteractionContextTest : public ::testing::Test {
protected:
    /** Lets the notification area show the flags of the context from inside each of its calls. */
    void showFlagsInsideNotifications()
    {
        m_notifications.setHook([this](const std::string&) {
            std::string entry;
            for (const std::string& word : flags(m_context)) {
                entry += (entry.empty() ? "" : " ") + word;
            }
            m_log.add(entry);
        });
    }

    CallLog m_log;
    RecordingNotificationListener m_notifications{m_log};
    InteractionManager m_manager;
    AbstractInteractionContext m_context{InteractionContext::Tool};
};

// The interface

TEST(InteractionContextTest, DeclaresItsOperationsInTheirOrderWithoutAVirtualDestructor)
{
    EXPECT_EQ(virtualSlot(&InteractionContext::getInteractionManager), 0);
    EXPECT_EQ(virtualSlot(&InteractionContext::enabled), 1);
    EXPECT_EQ(virtualSlot(&InteractionContext::disabled), 2);
    EXPECT_EQ(virtualSlot(&InteractionContext::contextAdded), 3);
    EXPECT_EQ(virtualSlot(&InteractionContext::contextRemoved), 4);
    EXPECT_EQ(virtualSlot(&InteractionContext::contextRaised), 5);
    EXPECT_EQ(virtualSlot(&InteractionContext::contextLowered), 6);
    EXPECT_EQ(virtualSlot(&InteractionContext::pointerMoved), 7);
    EXPECT_EQ(virtualSlot(&InteractionContext::cameraMoved), 8);
    EXPECT_EQ(virtualSlot(&InteractionContext::triggerEvent), 9);
    EXPECT_EQ(virtualSlot(&InteractionContext::isRaised), 10);
    EXPECT_EQ(virtualSlot(&InteractionContext::isActive), 11);
    EXPECT_EQ(virtualSlot(&InteractionContext::isEnabled), 12);
    EXPECT_EQ(virtualSlot(&InteractionContext::getPreferredPosition), 13);
    static_assert(!std::has_virtual_destructor_v<InteractionContext>);
    static_assert(std::is_abstract_v<InteractionContext>);
    static_assert(sizeof(InteractionContext) == sizeof(void*));
}

TEST(InteractionContextTest, PositionsAreSignedIntegersAndSmallerMeansNearerTheTop)
{
    static_assert(std::is_same_v<std::underlying_type_t<InteractionContext::PreferredPosition>, int>);
    EXPECT_EQ(InteractionContext::Overlay, -200);
    EXPECT_EQ(InteractionContext::Modal, -100);
    EXPECT_EQ(InteractionContext::Tool, 0);
    EXPECT_EQ(InteractionContext::Navigation, 100);
    EXPECT_EQ(InteractionContext::Background, 200);
}

TEST_F(AbstractInteractionContextTest, ImplementsTheWholeInterfaceAndAddsNoVirtualOperation)
{
    static_assert(!std::is_abstract_v<AbstractInteractionContext>);
    static_assert(!std::has_virtual_destructor_v<AbstractInteractionContext>);
    class Next : public AbstractInteractionContext {
    public:
        using AbstractInteractionContext::AbstractInteractionContext;
        virtual void next() {}
    };

    EXPECT_EQ(virtualSlot(&Next::next), 14);
}

// Construction and the plain answers

TEST_F(AbstractInteractionContextTest, AFreshContextIsLoweredInactiveEnabledUnmanagedAndShowsNothing)
{
    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "inactive", "enabled", "unmanaged"));
    EXPECT_EQ(m_context.getInteractionManager(), nullptr);
    EXPECT_EQ(m_context.getDescription(), "");
    EXPECT_EQ(m_context.getPreferredPosition(), InteractionContext::Tool);
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, ThePreferredPositionIsWhatWasSetLast)
{
    const AbstractInteractionContext background(InteractionContext::Background);
    EXPECT_EQ(background.getPreferredPosition(), InteractionContext::Background);

    m_context.setPreferredPosition(static_cast<InteractionContext::PreferredPosition>(-77));

    EXPECT_EQ(m_context.getPreferredPosition(), -77);
}

TEST_F(AbstractInteractionContextTest, AChangedPositionCountsForLaterAdditionsOnly)
{
    RecordingContext other(m_log, "other", 50);
    m_manager.addContext(&m_context);
    m_manager.addContext(&other);

    m_context.setPreferredPosition(InteractionContext::Background);
    EXPECT_TRUE(m_context.isRaised());

    m_manager.removeContext(&m_context);
    m_manager.addContext(&m_context);
    EXPECT_FALSE(m_context.isRaised());
    EXPECT_TRUE(other.isRaised());
}

TEST_F(AbstractInteractionContextTest, MovementsAndEventsDoNothing)
{
    m_context.setDescription("Pick a part");
    m_manager.addContext(&m_context);
    m_log.clear();

    m_manager.pointerMoved(osg::Pnt2f(1.f, 2.f));
    m_manager.cameraMoved(osg::Matrix::identity());
    EXPECT_FALSE(m_manager.triggerEvent(InteractionEvent("tool:select", "start")));
    EXPECT_FALSE(m_context.triggerEvent(nullptr, InteractionEvent("", "")));

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(flags(m_context), ElementsAre("raised", "active", "enabled", "managed"));
}

TEST_F(AbstractInteractionContextTest, GetDescriptionReturnsACopy)
{
    m_context.setDescription("before");

    std::string copy = m_context.getDescription();
    copy = "changed";

    static_assert(std::is_same_v<decltype(m_context.getDescription()), std::string>);
    EXPECT_EQ(m_context.getDescription(), "before");
}

// Each operation on its own

TEST_F(AbstractInteractionContextTest, BeingAddedRemembersTheManagerAndActivates)
{
    m_context.setDescription("text");

    m_context.contextAdded(&m_manager);

    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "active", "enabled", "managed"));
    EXPECT_EQ(m_context.getInteractionManager(), &m_manager);
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingRemovedForgetsTheManagerAndLeavesRaisedAsItIs)
{
    m_context.contextAdded(&m_manager);
    m_context.contextRaised(&m_manager);

    m_context.contextRemoved(&m_manager);

    EXPECT_THAT(flags(m_context), ElementsAre("raised", "inactive", "enabled", "unmanaged"));
    EXPECT_EQ(m_context.getInteractionManager(), nullptr);
}

TEST_F(AbstractInteractionContextTest, BeingRemovedTakesTheNotificationAwayBeforeTheManagerIsForgotten)
{
    m_context.setDescription("text");
    m_context.contextAdded(&m_manager);
    m_context.contextRaised(&m_manager);
    m_log.clear();
    showFlagsInsideNotifications();

    m_context.contextRemoved(&m_manager);

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.removed(context, text)", "raised active enabled managed"));
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingRemovedWhileDisabledLeavesTheNotification)
{
    m_context.contextAdded(&m_manager);
    m_context.contextRaised(&m_manager);
    m_context.disabled(&m_manager);
    m_context.setDescription("text");
    m_log.clear();

    m_context.contextRemoved(&m_manager);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("context: text"));
    EXPECT_THAT(flags(m_context), ElementsAre("raised", "inactive", "disabled", "unmanaged"));
}

TEST_F(AbstractInteractionContextTest, BeingRaisedShowsTheDescription)
{
    m_context.setDescription("text");
    showFlagsInsideNotifications();

    m_context.contextRaised(&m_manager);

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.added(context, text)", "raised inactive enabled unmanaged"));
    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, BeingRaisedWithoutDescriptionShowsNothing)
{
    m_context.contextRaised(&m_manager);

    EXPECT_TRUE(m_context.isRaised());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingRaisedWhileDisabledShowsNothing)
{
    m_context.setDescription("text");
    m_context.disabled(&m_manager);

    m_context.contextRaised(&m_manager);

    EXPECT_TRUE(m_context.isRaised());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingRaisedTwiceLeavesTheFirstNotificationUntracked)
{
    m_context.setDescription("first");
    m_context.contextRaised(&m_manager);

    m_context.contextRaised(&m_manager);
    EXPECT_THAT(shown(), ElementsAre("context: first", "context: first"));

    m_context.setDescription("second");
    EXPECT_THAT(shown(), ElementsAre("context: first", "context: second"));
    m_context.contextLowered(&m_manager);
    EXPECT_THAT(shown(), ElementsAre("context: first"));
}

TEST_F(AbstractInteractionContextTest, BeingLoweredTakesTheNotificationAway)
{
    m_context.setDescription("text");
    m_context.contextRaised(&m_manager);
    m_log.clear();
    showFlagsInsideNotifications();

    m_context.contextLowered(&m_manager);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("notifications.removed(context, text)", "lowered inactive enabled unmanaged"));
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingLoweredTwiceTakesTheNotificationAwayOnce)
{
    m_context.setDescription("text");
    m_context.contextRaised(&m_manager);
    m_log.clear();

    m_context.contextLowered(&m_manager);
    m_context.contextLowered(&m_manager);

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.removed(context, text)"));
}

TEST_F(AbstractInteractionContextTest, BeingLoweredWhileDisabledLeavesTheNotification)
{
    m_context.contextRaised(&m_manager);
    m_context.disabled(&m_manager);
    m_context.setDescription("text");
    m_log.clear();

    m_context.contextLowered(&m_manager);

    EXPECT_FALSE(m_context.isRaised());
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, BeingEnabledShowsTheDescriptionOfAnyActiveContextRaisedOrNot)
{
    m_context.setDescription("text");
    m_context.contextAdded(&m_manager);
    m_context.disabled(&m_manager);
    ASSERT_THAT(m_log.calls(), IsEmpty());
    showFlagsInsideNotifications();

    m_context.enabled(&m_manager);

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.added(context, text)", "lowered active enabled managed"));
}

TEST_F(AbstractInteractionContextTest, BeingEnabledShowsNothingForAnInactiveContext)
{
    m_context.setDescription("text");
    m_context.contextRaised(&m_manager);
    m_context.disabled(&m_manager);
    m_log.clear();

    m_context.enabled(&m_manager);

    EXPECT_TRUE(m_context.isEnabled());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingEnabledWithoutDescriptionShowsNothing)
{
    m_context.contextAdded(&m_manager);
    m_context.contextRaised(&m_manager);
    m_context.disabled(&m_manager);

    m_context.enabled(&m_manager);

    EXPECT_TRUE(m_context.isEnabled());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingEnabledWhileEnabledDoesNothing)
{
    m_context.setDescription("text");
    m_context.contextAdded(&m_manager);

    m_context.enabled(&m_manager);
    EXPECT_THAT(m_log.calls(), IsEmpty());

    m_context.contextRaised(&m_manager);
    m_context.enabled(&m_manager);
    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, BeingEnabledDoesNotLookForANotificationThatIsShown)
{
    m_context.contextAdded(&m_manager);
    m_context.contextRaised(&m_manager);
    m_context.disabled(&m_manager);
    m_context.setDescription("text");

    m_context.enabled(&m_manager);

    EXPECT_THAT(shown(), ElementsAre("context: text", "context: text"));
    m_context.contextLowered(&m_manager);
    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, BeingDisabledTakesTheNotificationAway)
{
    m_context.setDescription("text");
    m_context.contextRaised(&m_manager);
    m_log.clear();
    showFlagsInsideNotifications();

    m_context.disabled(&m_manager);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("notifications.removed(context, text)", "raised inactive disabled unmanaged"));
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, BeingDisabledWhileDisabledDoesNothing)
{
    m_context.contextRaised(&m_manager);
    m_context.disabled(&m_manager);
    m_context.setDescription("text");
    m_log.clear();

    m_context.disabled(&m_manager);

    EXPECT_FALSE(m_context.isEnabled());
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, TheManagerPassedToAnyOtherCallIsNotRemembered)
{
    InteractionManager other;
    m_context.contextAdded(&m_manager);

    m_context.contextRaised(&other);
    m_context.contextLowered(&other);
    m_context.disabled(&other);
    m_context.enabled(&other);
    EXPECT_EQ(m_context.getInteractionManager(), &m_manager);

    m_context.contextRemoved(&other);
    EXPECT_EQ(m_context.getInteractionManager(), nullptr);
}

TEST_F(AbstractInteractionContextTest, NullManagersAreFine)
{
    m_context.setDescription("text");

    m_context.contextAdded(nullptr);
    m_context.contextRaised(nullptr);
    m_context.disabled(nullptr);
    m_context.enabled(nullptr);
    EXPECT_THAT(flags(m_context), ElementsAre("raised", "active", "enabled", "unmanaged"));

    m_context.contextLowered(nullptr);
    m_context.contextRemoved(nullptr);
    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "inactive", "enabled", "unmanaged"));
}

// The description: every state it can be changed in

struct DescriptionRow {
    const char* name;
    bool isShown;
    bool isRaised;
    bool isEnabled;
    const char* text;
    const char* expectedCall;
};

void PrintTo(const DescriptionRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class DescriptionTest : public AbstractInteractionContextTest, public ::testing::WithParamInterface<DescriptionRow> {};

TEST_P(DescriptionTest, ChangesTheNotificationAsTheStateDemands)
{
    const DescriptionRow& row = GetParam();
    if (row.isShown) {
        m_context.setDescription("old");
        m_context.contextAdded(&m_manager);
        // Shows it, raised or not.
        m_context.disabled(&m_manager);
        m_context.enabled(&m_manager);
        ASSERT_THAT(shown(), ElementsAre("context: old"));
    }
    if (row.isRaised && row.isShown) {
        // The notification for being raised takes the place of the other, which goes.
        m_context.disabled(&m_manager);
        m_context.enabled(&m_manager);
        m_context.contextLowered(&m_manager);
        m_context.contextRaised(&m_manager);
    } else if (row.isRaised) {
        m_context.contextRaised(&m_manager);
    }
    if (!row.isEnabled) {
        m_context.disabled(&m_manager);
    }
    m_log.clear();

    m_context.setDescription(row.text);

    EXPECT_EQ(m_context.getDescription(), row.text);
    if (row.expectedCall == nullptr) {
        EXPECT_THAT(m_log.calls(), IsEmpty());
    } else {
        EXPECT_THAT(m_log.calls(), ElementsAre(row.expectedCall));
    }
}

INSTANTIATE_TEST_SUITE_P(
    States, DescriptionTest,
    ::testing::Values(
        DescriptionRow{"ShownRaisedText", true, true, true, "new", "notifications.changed(context, new)"},
        DescriptionRow{"ShownRaisedEmpty", true, true, true, "", "notifications.removed(context, old)"},
        DescriptionRow{"ShownLoweredText", true, false, true, "new", "notifications.changed(context, new)"},
        DescriptionRow{"ShownLoweredEmpty", true, false, true, "", "notifications.removed(context, old)"},
        DescriptionRow{"HiddenRaisedText", false, true, true, "new", "notifications.added(context, new)"},
        DescriptionRow{"HiddenRaisedEmpty", false, true, true, "", nullptr},
        DescriptionRow{"HiddenLoweredText", false, false, true, "new", nullptr},
        DescriptionRow{"HiddenLoweredEmpty", false, false, true, "", nullptr},
        // Raised is tested, enabled is not.
        DescriptionRow{"HiddenRaisedDisabledText", false, true, false, "new", "notifications.added(context, new)"},
        DescriptionRow{"HiddenRaisedDisabledEmpty", false, true, false, "", nullptr},
        DescriptionRow{"HiddenLoweredDisabledText", false, false, false, "new", nullptr}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(AbstractInteractionContextTest, ADescriptionSetWhileLoweredIsShownOnceTheContextIsRaised)
{
    m_context.setDescription("text");
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_EQ(m_context.getDescription(), "text");

    m_context.contextRaised(&m_manager);

    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, AnEmptyDescriptionTakesAShownOneAwayForGood)
{
    m_context.setDescription("text");
    m_manager.addContext(&m_context);

    m_context.setDescription("");
    EXPECT_THAT(shown(), IsEmpty());

    m_manager.disable();
    m_manager.enable();
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, AChangedDescriptionDoesNotCreateASecondNotification)
{
    m_context.setDescription("text");
    m_manager.addContext(&m_context);
    m_log.clear();

    m_context.setDescription("other");

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.changed(context, other)"));
    EXPECT_THAT(shown(), ElementsAre("context: other"));
}

TEST_F(AbstractInteractionContextTest, ARaisedContextOfADisabledManagerShowsANewDescription)
{
    m_manager.addContext(&m_context);
    m_manager.disable();

    m_context.setDescription("text");

    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, ANotificationTakenAwayIsForgotten)
{
    m_context.setDescription("first");
    m_context.contextRaised(&m_manager);
    m_context.setDescription("");
    m_log.clear();

    m_context.setDescription("second");
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.added(context, second)"));
    m_context.disabled(&m_manager);
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.removed(context, second)"));
    m_context.setDescription("third");
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.added(context, third)"));
}

// In a manager

TEST_F(AbstractInteractionContextTest, ReenablingTheManagerShowsDescriptionsBelowTheTopAsWell)
{
    RecordingContext top(m_log, "top", InteractionContext::Overlay);
    m_manager.addContext(&top);
    m_context.setDescription("text");
    m_manager.addContext(&m_context);
    EXPECT_THAT(shown(), IsEmpty());

    m_manager.disable();
    EXPECT_THAT(shown(), IsEmpty());
    m_manager.enable();

    EXPECT_FALSE(m_context.isRaised());
    EXPECT_THAT(shown(), ElementsAre("context: text"));
}

TEST_F(AbstractInteractionContextTest, TheDescriptionFollowsTheTopOfTheStack)
{
    AbstractInteractionContext other(InteractionContext::Modal);
    m_context.setDescription("lower");
    other.setDescription("upper");

    m_manager.addContext(&m_context);
    EXPECT_THAT(shown(), ElementsAre("context: lower"));
    m_manager.addContext(&other);
    EXPECT_THAT(shown(), ElementsAre("context: upper"));
    m_manager.raiseContext(&m_context);
    EXPECT_THAT(shown(), ElementsAre("context: lower"));
    m_manager.removeContext(&m_context);
    EXPECT_THAT(shown(), ElementsAre("context: upper"));
    m_manager.removeContext(&other);
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, TheFlagsFollowTheManagerThroughAWholeLife)
{
    AbstractInteractionContext other(InteractionContext::Modal);

    m_manager.addContext(&m_context);
    EXPECT_THAT(flags(m_context), ElementsAre("raised", "active", "enabled", "managed"));
    m_manager.addContext(&other);
    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "active", "enabled", "managed"));
    m_manager.disable();
    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "active", "disabled", "managed"));
    m_manager.raiseContext(&m_context);
    EXPECT_THAT(flags(m_context), ElementsAre("raised", "active", "disabled", "managed"));
    m_manager.removeContext(&m_context);
    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "inactive", "disabled", "unmanaged"));
    m_manager.enable();
    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "inactive", "disabled", "unmanaged"));
    m_manager.addContext(&m_context);
    EXPECT_THAT(flags(m_context), ElementsAre("lowered", "active", "enabled", "managed"));
}

TEST_F(AbstractInteractionContextTest, AContextAddedToADisabledManagerShowsItsDescriptionWhenThatIsEnabled)
{
    m_context.setDescription("text");
    m_manager.disable();

    // Raised before it hears that the manager is disabled: shown and taken away again.
    m_manager.addContext(&m_context);
    EXPECT_THAT(m_log.take(),
                ElementsAre("notifications.added(context, text)", "notifications.removed(context, text)"));

    m_manager.enable();
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.added(context, text)"));
}

// Destruction

TEST_F(AbstractInteractionContextTest, DestroyingARaisedContextTakesItsNotificationAway)
{
    std::optional<FinalContext> context(InteractionContext::Tool);
    context->setDescription("text");
    context->contextRaised(&m_manager);
    ASSERT_THAT(shown(), ElementsAre("context: text"));
    m_log.clear();

    context.reset();

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.removed(context, text)"));
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, DestroyingADisabledContextTakesItsNotificationAwayToo)
{
    std::optional<FinalContext> context(InteractionContext::Tool);
    context->contextRaised(&m_manager);
    context->disabled(&m_manager);
    context->setDescription("text");
    ASSERT_THAT(shown(), ElementsAre("context: text"));

    context.reset();

    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionContextTest, DestroyingAContextThatShowsNothingTellsNobody)
{
    std::optional<FinalContext> context(InteractionContext::Tool);
    context->setDescription("text");
    m_context.setDescription("other");
    m_context.contextRaised(&m_manager);
    m_log.clear();

    context.reset();

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("context: other"));
}

} // namespace
