// SPDX-License-Identifier: MIT
#include <Interaction/InteractionEvent.h>

#include "Support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <type_traits>

using quon::interaction::InteractionEvent;
using quon::testing::getAllocationCount;

namespace {

struct SplitRow {
    const char* name;
    std::string category;
    std::string tool;
    std::string hint;
};

void PrintTo(const SplitRow& row, std::ostream* stream)
{
    *stream << row.category;
}

class InteractionEventSplitTest : public ::testing::TestWithParam<SplitRow> {};

TEST_P(InteractionEventSplitTest, SplitsTheCategoryAtItsFirstColon)
{
    const InteractionEvent event(GetParam().category, "start");

    EXPECT_EQ(event.getCategory(), GetParam().category);
    EXPECT_EQ(event.getTool(), GetParam().tool);
    EXPECT_EQ(event.getHint(), GetParam().hint);
    EXPECT_EQ(event.getEvent(), "start");
}

INSTANTIATE_TEST_SUITE_P(
    Categories, InteractionEventSplitTest,
    ::testing::Values(
        SplitRow{"ToolAndHint", "select:toggle", "select", "toggle"}, SplitRow{"ToolAlone", "tool", "tool", ""},
        SplitRow{"SecondColonStaysInTheHint", "a:b:c", "a", "b:c"}, SplitRow{"EmptyTool", ":x", "", "x"},
        SplitRow{"EmptyHint", "x:", "x", ""}, SplitRow{"ColonAlone", ":", "", ""}, SplitRow{"TwoColons", "::", "", ":"},
        SplitRow{"Empty", "", "", ""}, SplitRow{"Key", "qt-key:ctrl+65", "qt-key", "ctrl+65"},
        SplitRow{"BlanksAreKept", " a : b ", " a ", " b "},
        SplitRow{"ZeroBytesAreKept", std::string("a\0b:c\0d", 7), std::string("a\0b", 3), std::string("c\0d", 3)},
        SplitRow{"LongerThanAShortString", std::string(100, 't') + ":" + std::string(200, 'h'), std::string(100, 't'),
                 std::string(200, 'h')}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(InteractionEventTest, TheEventNameIsNeverSplit)
{
    const InteractionEvent event("tool", "start:now");

    EXPECT_EQ(event.getEvent(), "start:now");
    EXPECT_EQ(event.getTool(), "tool");
    EXPECT_EQ(event.getHint(), "");
}

TEST(InteractionEventTest, TheEventNameMayBeEmpty)
{
    const InteractionEvent event("tool:select", "");

    EXPECT_EQ(event.getEvent(), "");
    EXPECT_EQ(event.getHint(), "select");
}

TEST(InteractionEventTest, KeepsCopiesOfItsArguments)
{
    std::string category = "mode:measure";
    std::string name = "start";
    const InteractionEvent event(category, name);

    category = "other:thing";
    name = "stop";

    EXPECT_EQ(event.getCategory(), "mode:measure");
    EXPECT_EQ(event.getEvent(), "start");
    EXPECT_EQ(event.getTool(), "mode");
    EXPECT_EQ(event.getHint(), "measure");
}

TEST(InteractionEventTest, GettersReturnReferencesToTheStoredStrings)
{
    const InteractionEvent event("tool:select", "start");

    static_assert(std::is_same_v<decltype(event.getCategory()), const std::string&>);
    static_assert(std::is_same_v<decltype(event.getEvent()), const std::string&>);
    static_assert(std::is_same_v<decltype(event.getTool()), const std::string&>);
    static_assert(std::is_same_v<decltype(event.getHint()), const std::string&>);
    EXPECT_EQ(&event.getCategory(), &event.getCategory());
    EXPECT_EQ(&event.getHint(), &event.getHint());
}

TEST(InteractionEventTest, StoresCategoryEventToolAndHintInThisOrder)
{
    const InteractionEvent event("tool:select", "start");

    const auto* first = reinterpret_cast<const std::byte*>(&event);
    const auto place = [first](const std::string& field) { return reinterpret_cast<const std::byte*>(&field) - first; };
    constexpr std::ptrdiff_t size = sizeof(std::string);
    EXPECT_EQ(place(event.getCategory()), 0 * size);
    EXPECT_EQ(place(event.getEvent()), 1 * size);
    EXPECT_EQ(place(event.getTool()), 2 * size);
    EXPECT_EQ(place(event.getHint()), 3 * size);
    EXPECT_EQ(sizeof event, 4 * sizeof(std::string));
    static_assert(!std::is_polymorphic_v<InteractionEvent>);
}

TEST(InteractionEventTest, CopiesByValue)
{
    InteractionEvent copy("a:b", "stop");
    {
        const InteractionEvent original("tool:select", "start");
        copy = original;
    }

    EXPECT_EQ(copy.getCategory(), "tool:select");
    EXPECT_EQ(copy.getEvent(), "start");
    EXPECT_EQ(copy.getTool(), "tool");
    EXPECT_EQ(copy.getHint(), "select");
}

TEST(InteractionEventTest, ShortNamesAreNotAllocated)
{
    const std::string category = "tool:selection";
    const std::string longCategory = "tool:" + std::string(100, 'h');
    const std::string name = "stopHover";

    const std::size_t before = getAllocationCount();
    const InteractionEvent event(category, name);
    const std::size_t afterShort = getAllocationCount();
    const InteractionEvent longEvent(longCategory, name);
    const std::size_t afterLong = getAllocationCount();

    EXPECT_EQ(afterShort - before, 0u);
    // The category and the hint, nothing in between; and proof that the count counts.
    EXPECT_EQ(afterLong - afterShort, 2u);
    EXPECT_EQ(event.getHint() + longEvent.getTool(), "selectiontool");
}

} // namespace
