// SPDX-License-Identifier: MIT
#include <Interaction/AbstractInteractionTool.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingNotificationListener.h>

#include "Support/VirtualSlot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

using quon::interaction::AbstractInteractionTool;
using quon::interaction::InteractionTool;
using quon::testing::CallLog;
using quon::testing::RecordingNotificationListener;
using quon::testing::virtualSlot;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> shown()
{
    return RecordingNotificationListener::getShown();
}

/** Final, so that a standard class may destroy it: the base has no virtual destructor. */
class FinalTool final : public AbstractInteractionTool {};

class AbstractInteractionToolTest : public ::testing::Test {
protected:
    CallLog m_log;
    RecordingNotificationListener m_notifications{m_log};
    AbstractInteractionTool m_tool;
};

// The interface

TEST(InteractionToolTest, DeclaresItsOperationsInTheirOrderWithoutAVirtualDestructor)
{
    EXPECT_EQ(virtualSlot(&InteractionTool::setToolMode), 0);
    EXPECT_EQ(virtualSlot(&InteractionTool::activateTool), 1);
    EXPECT_EQ(virtualSlot(&InteractionTool::deactivateTool), 2);
    EXPECT_EQ(virtualSlot(&InteractionTool::isActive), 3);
    EXPECT_EQ(virtualSlot(&InteractionTool::startTool), 4);
    EXPECT_EQ(virtualSlot(&InteractionTool::processTool), 5);
    EXPECT_EQ(virtualSlot(&InteractionTool::stopTool), 6);
    EXPECT_EQ(virtualSlot(&InteractionTool::triggerTool), 7);
    EXPECT_EQ(virtualSlot(&InteractionTool::hoverTool), 8);
    EXPECT_EQ(virtualSlot(&InteractionTool::stopHoverTool), 9);
    EXPECT_EQ(virtualSlot(&InteractionTool::isPickHint), 10);
    static_assert(!std::has_virtual_destructor_v<InteractionTool>);
    static_assert(std::is_abstract_v<InteractionTool>);
    static_assert(sizeof(InteractionTool) == sizeof(void*));
}

TEST_F(AbstractInteractionToolTest, ImplementsTheWholeInterfaceAndAddsNoVirtualOperation)
{
    static_assert(!std::is_abstract_v<AbstractInteractionTool>);
    static_assert(!std::has_virtual_destructor_v<AbstractInteractionTool>);
    class Next : public AbstractInteractionTool {
    public:
        virtual void next() {}
    };

    EXPECT_EQ(virtualSlot(&Next::next), 11);
}

// The defaults

TEST_F(AbstractInteractionToolTest, AFreshToolIsInactiveAndShowsNothing)
{
    EXPECT_FALSE(m_tool.isActive());
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionToolTest, EventOperationsThatAreNotOverriddenConsumeTheEvent)
{
    EXPECT_TRUE(m_tool.startTool(nullptr, "select"));
    EXPECT_TRUE(m_tool.processTool(nullptr, "select"));
    EXPECT_TRUE(m_tool.stopTool(nullptr, "select"));
    EXPECT_TRUE(m_tool.triggerTool(nullptr, "select"));
    EXPECT_TRUE(m_tool.hoverTool(nullptr, "select"));
    EXPECT_TRUE(m_tool.stopHoverTool(nullptr, ""));

    EXPECT_FALSE(m_tool.isActive());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractInteractionToolTest, EveryModeIsRefusedUnlessOverridden)
{
    EXPECT_FALSE(m_tool.setToolMode(nullptr, "measure"));
    EXPECT_FALSE(m_tool.setToolMode(nullptr, ""));
    m_tool.activateTool(nullptr);
    EXPECT_FALSE(m_tool.setToolMode(nullptr, "measure"));
}

struct PickHintRow {
    const char* name;
    std::string hint;
    bool isPickHint;
};

void PrintTo(const PickHintRow& row, std::ostream* stream)
{
    *stream << '"' << row.hint << '"';
}

class PickHintTest : public ::testing::TestWithParam<PickHintRow> {};

TEST_P(PickHintTest, IsExactlySelectOrToggle)
{
    const AbstractInteractionTool tool;

    EXPECT_EQ(tool.isPickHint(GetParam().hint), GetParam().isPickHint);
}

INSTANTIATE_TEST_SUITE_P(
    Hints, PickHintTest,
    ::testing::Values(PickHintRow{"Select", "select", true}, PickHintRow{"Toggle", "toggle", true},
                      PickHintRow{"CapitalSelect", "Select", false}, PickHintRow{"ShoutedToggle", "TOGGLE", false},
                      PickHintRow{"Empty", "", false}, PickHintRow{"SelectAndABlank", "select ", false},
                      PickHintRow{"ABlankAndSelect", " select", false}, PickHintRow{"PartOfSelect", "selec", false},
                      PickHintRow{"SelectAndMore", "select:all", false},
                      PickHintRow{"ToggleAndAZeroByte", std::string("toggle\0", 7), false},
                      PickHintRow{"Measure", "measure", false}),
    [](const auto& row) { return std::string(row.param.name); });

// Activation

TEST_F(AbstractInteractionToolTest, ActivatingShowsTheDescriptionAndDeactivatingTakesItAway)
{
    m_tool.setDescription("text");
    std::vector<bool> activeInside;
    m_notifications.setHook([&](const std::string&) { activeInside.push_back(m_tool.isActive()); });

    m_tool.activateTool(nullptr);
    EXPECT_TRUE(m_tool.isActive());
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.added(tool, text)"));

    m_tool.deactivateTool(nullptr);
    EXPECT_FALSE(m_tool.isActive());
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.removed(tool, text)"));

    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_THAT(activeInside, ElementsAre(true, false));
}

TEST_F(AbstractInteractionToolTest, ActivatingWithoutDescriptionShowsNothing)
{
    m_tool.activateTool(nullptr);

    EXPECT_TRUE(m_tool.isActive());
    m_tool.deactivateTool(nullptr);
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractInteractionToolTest, ActivatingTwiceCreatesOneNotification)
{
    m_tool.setDescription("text");

    m_tool.activateTool(nullptr);
    m_tool.activateTool(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.added(tool, text)"));
}

TEST_F(AbstractInteractionToolTest, DeactivatingAnInactiveToolDoesNothing)
{
    m_tool.displayDescription("text");
    m_log.clear();

    m_tool.deactivateTool(nullptr);

    EXPECT_FALSE(m_tool.isActive());
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("tool: text"));
}

TEST_F(AbstractInteractionToolTest, ActivatingAfterDisplayingShowsASecondNotificationAndForgetsTheFirst)
{
    m_tool.displayDescription("text");

    m_tool.activateTool(nullptr);
    EXPECT_THAT(shown(), ElementsAre("tool: text", "tool: text"));

    m_tool.setDescription("changed");
    EXPECT_THAT(shown(), ElementsAre("tool: text", "tool: changed"));

    m_tool.deactivateTool(nullptr);
    EXPECT_THAT(shown(), ElementsAre("tool: text"));
}

TEST_F(AbstractInteractionToolTest, CanBeActivatedAgain)
{
    m_tool.setDescription("text");
    m_tool.activateTool(nullptr);
    m_tool.deactivateTool(nullptr);
    m_log.clear();

    m_tool.activateTool(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre("notifications.added(tool, text)"));
}

// The description: every state it can be changed in

enum class Change { Set, Display };

struct DescriptionRow {
    const char* name;
    Change change;
    bool isShown;
    bool isActive;
    const char* text;
    const char* expectedCall;
};

void PrintTo(const DescriptionRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class ToolDescriptionTest : public AbstractInteractionToolTest, public ::testing::WithParamInterface<DescriptionRow> {};

TEST_P(ToolDescriptionTest, ChangesTheNotificationAsTheStateDemands)
{
    const DescriptionRow& row = GetParam();
    if (row.isActive) {
        m_tool.activateTool(nullptr);
    }
    if (row.isShown) {
        m_tool.displayDescription("old");
        ASSERT_THAT(shown(), ElementsAre("tool: old"));
    }
    m_log.clear();

    if (row.change == Change::Set) {
        m_tool.setDescription(row.text);
    } else {
        m_tool.displayDescription(row.text);
    }

    if (row.expectedCall == nullptr) {
        EXPECT_THAT(m_log.calls(), IsEmpty());
    } else {
        EXPECT_THAT(m_log.calls(), ElementsAre(row.expectedCall));
    }
}

INSTANTIATE_TEST_SUITE_P(
    States, ToolDescriptionTest,
    ::testing::Values(
        DescriptionRow{"SetShownActiveText", Change::Set, true, true, "new", "notifications.changed(tool, new)"},
        DescriptionRow{"SetShownActiveEmpty", Change::Set, true, true, "", "notifications.removed(tool, old)"},
        DescriptionRow{"SetShownInactiveText", Change::Set, true, false, "new", "notifications.changed(tool, new)"},
        DescriptionRow{"SetShownInactiveEmpty", Change::Set, true, false, "", "notifications.removed(tool, old)"},
        DescriptionRow{"SetHiddenActiveText", Change::Set, false, true, "new", "notifications.added(tool, new)"},
        DescriptionRow{"SetHiddenActiveEmpty", Change::Set, false, true, "", nullptr},
        DescriptionRow{"SetHiddenInactiveText", Change::Set, false, false, "new", nullptr},
        DescriptionRow{"SetHiddenInactiveEmpty", Change::Set, false, false, "", nullptr},
        DescriptionRow{"DisplayShownActiveText", Change::Display, true, true, "new",
                       "notifications.changed(tool, new)"},
        DescriptionRow{"DisplayShownActiveEmpty", Change::Display, true, true, "", "notifications.removed(tool, old)"},
        DescriptionRow{"DisplayShownInactiveText", Change::Display, true, false, "new",
                       "notifications.changed(tool, new)"},
        DescriptionRow{"DisplayShownInactiveEmpty", Change::Display, true, false, "",
                       "notifications.removed(tool, old)"},
        DescriptionRow{"DisplayHiddenActiveText", Change::Display, false, true, "new",
                       "notifications.added(tool, new)"},
        DescriptionRow{"DisplayHiddenActiveEmpty", Change::Display, false, true, "", nullptr},
        DescriptionRow{"DisplayHiddenInactiveText", Change::Display, false, false, "new",
                       "notifications.added(tool, new)"},
        DescriptionRow{"DisplayHiddenInactiveEmpty", Change::Display, false, false, "", nullptr}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(AbstractInteractionToolTest, AnInactiveToolShowsWhatIsDisplayedButNotWhatIsSet)
{
    m_tool.setDescription("set");
    EXPECT_THAT(shown(), IsEmpty());

    m_tool.displayDescription("displayed");
    EXPECT_THAT(shown(), ElementsAre("tool: displayed"));
}

TEST_F(AbstractInteractionToolTest, ADescriptionSetWhileInactiveIsShownOnceActive)
{
    m_tool.setDescription("text");
    EXPECT_THAT(m_log.calls(), IsEmpty());

    m_tool.activateTool(nullptr);

    EXPECT_THAT(shown(), ElementsAre("tool: text"));
}

TEST_F(AbstractInteractionToolTest, AnEmptyDescriptionTakesAShownOneAwayForGood)
{
    m_tool.displayDescription("text");
    m_tool.displayDescription("");
    m_log.clear();

    m_tool.activateTool(nullptr);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionToolTest, ANotificationTakenAwayIsForgotten)
{
    m_tool.displayDescription("first");
    m_tool.setDescription("");
    m_log.clear();

    m_tool.displayDescription("second");
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.added(tool, second)"));
    m_tool.activateTool(nullptr);
    m_tool.deactivateTool(nullptr);
    m_log.clear();
    m_tool.displayDescription("third");
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.added(tool, third)"));
}

// Destruction

TEST_F(AbstractInteractionToolTest, DestroyingAToolTakesItsNotificationAway)
{
    std::optional<FinalTool> active(std::in_place);
    active->setDescription("active");
    active->activateTool(nullptr);
    std::optional<FinalTool> inactive(std::in_place);
    inactive->displayDescription("inactive");
    m_log.clear();

    active.reset();
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.removed(tool, active)"));
    inactive.reset();
    EXPECT_THAT(m_log.take(), ElementsAre("notifications.removed(tool, inactive)"));

    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(AbstractInteractionToolTest, DestroyingAToolThatShowsNothingTellsNobody)
{
    std::optional<FinalTool> tool(std::in_place);
    tool->setDescription("text");
    m_tool.displayDescription("other");
    m_log.clear();

    tool.reset();

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(shown(), ElementsAre("tool: other"));
}

} // namespace
