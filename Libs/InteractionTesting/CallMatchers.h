// SPDX-License-Identifier: MIT
#pragma once

#include <InteractionTesting/CallLog.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace quon::testing {

/** A call that a log is expected to have: what the matchers below make of each of their arguments. */
class ExpectedCall {
public:
    /** @param expected a text, or a matcher for texts such as `StartsWith("picker.computePicked(")` */
    template <typename Expected>
    explicit ExpectedCall(const Expected& expected)
        : m_matcher(::testing::SafeMatcherCast<const std::string&>(expected))
    {
        if constexpr (std::is_convertible_v<const Expected&, std::string>) {
            m_text = expected;
        } else {
            m_text = "a call that " + ::testing::DescribeMatcher<const std::string&>(m_matcher);
        }
    }

    /** Returns whether @p call is the one that is expected. */
    bool matches(const std::string& call) const { return m_matcher.Matches(call); }

    /** Returns how messages name it: a text as it stands, a matcher by what it says of itself. */
    const std::string& getText() const { return m_text; }

private:
    ::testing::Matcher<const std::string&> m_matcher;
    std::string m_text;
};

/** The whole of a log, or of what one object received: made by Calls(), CallsOf() and NoCalls(). */
class WholeCallsMatcher {
public:
    /** @param object whose calls count, named without it then; none: all calls count */
    WholeCallsMatcher(std::optional<std::string> object, std::vector<ExpectedCall> expected)
        : m_object(std::move(object))
        , m_expected(std::move(expected))
    {}

    /** Returns whether the log matches, and tells @p listener the first difference. */
    bool MatchAndExplain(const CallLog& log, ::testing::MatchResultListener* listener) const
    {
        return MatchAndExplain(log.calls(), listener);
    }

    /** The same for entries that were taken from a log. */
    bool MatchAndExplain(const std::vector<std::string>& log, ::testing::MatchResultListener* listener) const
    {
        const std::vector<Call> calls = select(log);
        const std::size_t common = std::min(calls.size(), m_expected.size());
        for (std::size_t index = 0; index < common; ++index) {
            if (!m_expected[index].matches(calls[index].text)) {
                *listener << "whose call " << calls[index].number << " is " << calls[index].text << " instead of "
                          << m_expected[index].getText();
                return false;
            }
        }
        if (common < calls.size()) {
            *listener << "whose call " << calls[common].number << " is one too many: " << calls[common].text;
        } else if (common < m_expected.size()) {
            *listener << "which ends too early: " << m_expected[common].getText() << " is missing";
        }
        return calls.size() == m_expected.size();
    }

    /** Writes what is expected. */
    void DescribeTo(std::ostream* stream) const { describe("", *stream); }
    /** Writes what is expected where the matcher stands in `Not`. */
    void DescribeNegationTo(std::ostream* stream) const { describe("anything but ", *stream); }

private:
    struct Call {
        std::size_t number; ///< in the whole log, from 1
        std::string text;   ///< without the object when that is asked for
    };

    // An entry reads object.operation(arguments): dots may stand in the object and in the arguments.
    static std::size_t findEndOfObject(const std::string& entry) { return entry.rfind('.', entry.find('(')); }

    std::vector<Call> select(const std::vector<std::string>& log) const
    {
        std::vector<Call> calls;
        for (std::size_t index = 0; index < log.size(); ++index) {
            if (!m_object) {
                calls.push_back({index + 1, log[index]});
            } else if (log[index].substr(0, findEndOfObject(log[index])) == *m_object) {
                calls.push_back({index + 1, log[index].substr(std::min(m_object->size() + 1, log[index].size()))});
            }
        }
        return calls;
    }

    void describe(const char* start, std::ostream& stream) const
    {
        stream << start << (m_expected.empty() ? "no calls" : "exactly these calls");
        if (m_object) {
            stream << " of " << *m_object;
        }
        for (std::size_t index = 0; index < m_expected.size(); ++index) {
            stream << "\n    " << index + 1 << ". " << m_expected[index].getText();
        }
    }

    std::optional<std::string> m_object;
    std::vector<ExpectedCall> m_expected;
};

/** Some calls of a log: made by CallsInOrder(). */
class CallsInOrderMatcher {
public:
    /** @param expected the calls in their order; none: every log matches */
    explicit CallsInOrderMatcher(std::vector<ExpectedCall> expected)
        : m_expected(std::move(expected))
    {}

    /** Returns whether the log matches, and tells @p listener the first difference. */
    bool MatchAndExplain(const CallLog& log, ::testing::MatchResultListener* listener) const
    {
        return MatchAndExplain(log.calls(), listener);
    }

    /** The same for entries that were taken from a log. */
    bool MatchAndExplain(const std::vector<std::string>& log, ::testing::MatchResultListener* listener) const
    {
        auto next = log.begin();
        for (const ExpectedCall& expected : m_expected) {
            const auto isExpected = [&](const std::string& call) { return expected.matches(call); };
            const auto found = std::find_if(next, log.end(), isExpected);
            if (found == log.end()) {
                explainMissing(expected, log, next, listener);
                return false;
            }
            next = found + 1;
        }
        return true;
    }

    /** Writes what is expected. */
    void DescribeTo(std::ostream* stream) const { describe("has", *stream); }
    /** Writes what is expected where the matcher stands in `Not`. */
    void DescribeNegationTo(std::ostream* stream) const { describe("has not", *stream); }

private:
    using Position = std::vector<std::string>::const_iterator;

    // Between the start of the log and @p end is all that was found already.
    static void explainMissing(const ExpectedCall& expected, const std::vector<std::string>& log, const Position end,
                               ::testing::MatchResultListener* listener)
    {
        *listener << "in which " << expected.getText() << " is missing";
        if (end != log.begin()) {
            *listener << " after call " << end - log.begin() << ", " << *(end - 1);
        }
        const auto isExpected = [&](const std::string& call) { return expected.matches(call); };
        const auto early = std::find_if(log.begin(), end, isExpected);
        if (early != end) {
            *listener << "; call " << early - log.begin() + 1 << " comes too early";
        }
    }

    void describe(const char* start, std::ostream& stream) const
    {
        stream << start << " these calls in this order, whatever comes between them";
        for (std::size_t index = 0; index < m_expected.size(); ++index) {
            stream << "\n    " << index + 1 << ". " << m_expected[index].getText();
        }
    }

    std::vector<ExpectedCall> m_expected;
};

/**
 * Matches a log that has these calls and no others, in this order.
 *
 * Like all matchers here it takes a CallLog, or what CallLog::take() returned, and each call as its text or as a
 * matcher for the text. A failure lists what was expected and what is there, and names the first difference.
 *
 *     EXPECT_THAT(log, Calls("tool.startTool(select)", "tool.stopTool(select)", "tool.triggerTool(select)"));
 */
template <typename... Expected>
::testing::PolymorphicMatcher<WholeCallsMatcher> Calls(const Expected&... expected)
{
    return ::testing::MakePolymorphicMatcher(WholeCallsMatcher(std::nullopt, {ExpectedCall(expected)...}));
}

/**
 * Matches a log that has these calls in this order, and maybe others before, between and behind them.
 *
 * An entry of the log counts for one call only: two equal calls are found in two entries.
 */
template <typename... Expected>
::testing::PolymorphicMatcher<CallsInOrderMatcher> CallsInOrder(const Expected&... expected)
{
    return ::testing::MakePolymorphicMatcher(CallsInOrderMatcher({ExpectedCall(expected)...}));
}

/**
 * Matches a log in which one object received these calls and no others, in this order.
 *
 *     EXPECT_THAT(log, CallsOf("tool", "startTool(select)", "stopTool(select)", "triggerTool(select)"));
 *
 * @param object the name that its double was given
 * @param expected calls without the name of the object; none: the object received no call
 */
template <typename... Expected>
::testing::PolymorphicMatcher<WholeCallsMatcher> CallsOf(const std::string& object, const Expected&... expected)
{
    return ::testing::MakePolymorphicMatcher(WholeCallsMatcher(object, {ExpectedCall(expected)...}));
}

/** Matches a log without any call. */
inline ::testing::PolymorphicMatcher<WholeCallsMatcher> NoCalls()
{
    return Calls();
}

} // namespace quon::testing
