// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <ios>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * The calls that the doubles of one fixture received, in order.
 *
 * All doubles of a fixture write to one log, so that order across objects is asserted whole and a surplus call fails
 * as loudly as a missing one. An entry reads `object.operation(argument, argument)`. Doubles borrow the log: it is
 * declared before them.
 *
 * Compare a log with the matchers of CallMatchers.h, in whose messages it is a numbered list.
 */
class CallLog {
public:
    /** Appends one entry as it stands. */
    void add(const std::string& entry) { m_calls.push_back(entry); }

    /** Appends `object.operation(argument, ...)`; the arguments are streamed, which must not log anything itself. */
    template <typename... Arguments>
    void call(const std::string& object, const std::string& operation, const Arguments&... arguments)
    {
        [[maybe_unused]] const char* separator = "";
        if constexpr (((std::is_convertible_v<const Arguments&, std::string_view> &&
                        !std::is_pointer_v<Arguments>)&&...)) {
            // What a stream would write, in less time. Pointers may be null.
            std::string entry = object;
            ((entry += '.') += operation) += '(';
            (((entry += separator) += std::string_view(arguments), separator = ", "), ...);
            m_calls.push_back(std::move(entry += ')'));
        } else {
            std::ostringstream& entry = emptyStream();
            entry << object << '.' << operation << '(';
            ((entry << separator << arguments, separator = ", "), ...);
            entry << ')';
            add(entry.str());
        }
    }

    /** Returns the entries since the start or the last take() or clear(). */
    const std::vector<std::string>& calls() const { return m_calls; }

    /** Returns the entries so far and starts afresh. */
    std::vector<std::string> take()
    {
        std::vector<std::string> calls;
        calls.swap(m_calls);
        return calls;
    }

    /** Forgets all entries. */
    void clear() { m_calls.clear(); }

    /** Writes the entries for a message of GoogleTest, one to a line. */
    friend void PrintTo(const CallLog& log, std::ostream* stream)
    {
        if (log.m_calls.empty()) {
            *stream << "no calls";
            return;
        }
        for (std::size_t index = 0; index < log.m_calls.size(); ++index) {
            *stream << "\n    " << index + 1 << ". " << log.m_calls[index];
        }
        // What GoogleTest adds is no part of the last entry.
        *stream << "\n   ";
    }

private:
    // One for all entries of a thread: making a stream takes longer than writing an entry.
    static std::ostringstream& emptyStream()
    {
        static thread_local std::ostringstream stream;
        stream.str(std::string());
        stream.clear();
        stream.flags(std::ios_base::dec | std::ios_base::skipws | std::ios_base::boolalpha);
        stream.precision(6);
        stream.width(0);
        stream.fill(' ');
        return stream;
    }

    std::vector<std::string> m_calls;
};

} // namespace quon::testing
