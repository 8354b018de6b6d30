// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallMatchers.h>

#include <InteractionTesting/CallLog.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::_;
using ::testing::DescribeMatcher;
using ::testing::EndsWith;
using ::testing::ExplainMatchResult;
using ::testing::Not;
using ::testing::StartsWith;
using ::testing::StringMatchResultListener;

CallLog makeLog(const std::initializer_list<const char*> calls)
{
    CallLog log;
    for (const char* call : calls) {
        log.add(call);
    }
    return log;
}

/** What a failure says of the log, empty when the log matches. */
template <typename Matcher>
std::string explain(const Matcher& matcher, const CallLog& log)
{
    StringMatchResultListener listener;
    const bool matches = ExplainMatchResult(matcher, log, &listener);
    EXPECT_EQ(matches, listener.str().empty());
    return listener.str();
}

TEST(CallMatchersTest, CallsMatchesTheWholeLogInItsOrder)
{
    const CallLog log = makeLog({"tool.startTool(select)", "tool.stopTool(select)"});

    EXPECT_THAT(log, Calls("tool.startTool(select)", "tool.stopTool(select)"));
    EXPECT_THAT(log, Not(Calls("tool.stopTool(select)", "tool.startTool(select)")));
    EXPECT_THAT(log, Not(Calls("tool.startTool(select)")));
    EXPECT_THAT(log, Not(Calls()));
}

TEST(CallMatchersTest, CallsNamesTheFirstCallThatIsAnother)
{
    const CallLog log = makeLog({"tool.startTool(select)", "tool.stopTool(select)", "tool.hoverTool()"});

    EXPECT_EQ(explain(Calls("tool.startTool(select)", "tool.processTool(select)", "tool.stopTool()"), log),
              "whose call 2 is tool.stopTool(select) instead of tool.processTool(select)");
}

TEST(CallMatchersTest, CallsNamesTheFirstCallThatIsOneTooMany)
{
    const CallLog log = makeLog({"tool.startTool(select)", "tool.stopTool(select)", "tool.hoverTool()"});

    EXPECT_EQ(explain(Calls("tool.startTool(select)"), log), "whose call 2 is one too many: tool.stopTool(select)");
}

TEST(CallMatchersTest, CallsNamesTheFirstCallThatIsMissing)
{
    const CallLog log = makeLog({"tool.startTool(select)"});

    EXPECT_EQ(explain(Calls("tool.startTool(select)", "tool.stopTool()", "tool.triggerTool()"), log),
              "which ends too early: tool.stopTool() is missing");
}

TEST(CallMatchersTest, TakesWhatWasTakenFromALog)
{
    CallLog log = makeLog({"tool.startTool(select)"});
    const std::vector<std::string> taken = log.take();

    EXPECT_THAT(taken, Calls("tool.startTool(select)"));
    EXPECT_THAT(taken, CallsOf("tool", "startTool(select)"));
    EXPECT_THAT(taken, CallsInOrder("tool.startTool(select)"));
    EXPECT_THAT(log, NoCalls());
}

TEST(CallMatchersTest, TakesMatchersInPlaceOfTexts)
{
    const CallLog log = makeLog({"picker.computePicked(null)", "tool.stopTool(select)"});

    EXPECT_THAT(log, Calls(StartsWith("picker.computePicked("), _));
    EXPECT_THAT(log, CallsInOrder(EndsWith("(select)")));
    EXPECT_THAT(log, CallsOf("tool", std::string("stopTool(select)")));
    EXPECT_EQ(explain(Calls(_, StartsWith("tool.startTool(")), log),
              "whose call 2 is tool.stopTool(select) instead of a call that starts with \"tool.startTool(\"");
}

TEST(CallMatchersTest, CallsOfLooksAtOneObjectAlone)
{
    const CallLog log = makeLog({"tool.startTool(select)", "picker.isCacheValid()", "tool.stopTool(select)"});

    EXPECT_THAT(log, CallsOf("tool", "startTool(select)", "stopTool(select)"));
    EXPECT_THAT(log, CallsOf("picker", "isCacheValid()"));
    EXPECT_THAT(log, CallsOf("nobody"));
    EXPECT_THAT(log, Not(CallsOf("tool")));
    EXPECT_EQ(explain(CallsOf("tool", "startTool(select)", "triggerTool(select)"), log),
              "whose call 3 is stopTool(select) instead of triggerTool(select)");
}

TEST(CallMatchersTest, CallsOfKnowsNamesAndArgumentsWithDots)
{
    const CallLog log = makeLog({"set.1.addNode(wheel.left)", "set.addNode(axle)", "settings.addNode(rim)"});

    EXPECT_THAT(log, CallsOf("set", "addNode(axle)"));
    EXPECT_THAT(log, CallsOf("set.1", "addNode(wheel.left)"));
}

TEST(CallMatchersTest, CallsInOrderSkipsWhatLiesBetween)
{
    const CallLog log = makeLog({"a.one()", "b.two()", "a.three()", "a.one()"});

    EXPECT_THAT(log, CallsInOrder("a.one()", "a.three()"));
    EXPECT_THAT(log, CallsInOrder("a.one()", "a.one()"));
    EXPECT_THAT(log, CallsInOrder());
    EXPECT_THAT(log, Not(CallsInOrder("a.one()", "a.one()", "a.one()")));
}

TEST(CallMatchersTest, CallsInOrderNamesTheFirstCallThatIsMissing)
{
    const CallLog log = makeLog({"a.one()", "b.two()", "a.three()"});

    EXPECT_EQ(explain(CallsInOrder("b.four()", "a.one()"), log), "in which b.four() is missing");
    EXPECT_EQ(explain(CallsInOrder("b.two()", "b.four()"), log), "in which b.four() is missing after call 2, b.two()");
}

TEST(CallMatchersTest, CallsInOrderTellsWhatComesTooEarly)
{
    const CallLog log = makeLog({"a.one()", "b.two()", "a.three()"});

    EXPECT_EQ(explain(CallsInOrder("b.two()", "a.one()"), log),
              "in which a.one() is missing after call 2, b.two(); call 1 comes too early");
}

TEST(CallMatchersTest, NoCallsMatchesAnEmptyLog)
{
    EXPECT_THAT(CallLog(), NoCalls());
    EXPECT_EQ(explain(NoCalls(), makeLog({"a.one()"})), "whose call 1 is one too many: a.one()");
}

TEST(CallMatchersTest, DescribesItselfAsANumberedList)
{
    const auto describe = [](const auto& matcher) { return DescribeMatcher<const CallLog&>(matcher); };

    EXPECT_EQ(describe(Calls("a.one()", StartsWith("b."))),
              "exactly these calls\n    1. a.one()\n    2. a call that starts with \"b.\"");
    EXPECT_EQ(describe(CallsOf("a", "one()")), "exactly these calls of a\n    1. one()");
    EXPECT_EQ(describe(CallsOf("a")), "no calls of a");
    EXPECT_EQ(describe(NoCalls()), "no calls");
    EXPECT_EQ(describe(CallsInOrder("a.one()")),
              "has these calls in this order, whatever comes between them\n    1. a.one()");
    EXPECT_EQ(describe(Not(Calls("a.one()"))), "anything but exactly these calls\n    1. a.one()");
    EXPECT_EQ(describe(Not(CallsInOrder("a.one()"))),
              "has not these calls in this order, whatever comes between them\n    1. a.one()");
}

} // namespace

} // namespace quon::testing
