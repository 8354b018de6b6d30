// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <utility>

namespace quon::testing {

/**
 * Actions that are carried out from inside calls, on both sides at the same call.
 *
 * The model goes first: it decides at which of its calls something happens; the library does the same at the call of
 * the same number.
 */
class ModelReactions {
public:
    /** Something to do with the library or with the model. */
    using Action = std::function<void(bool isLibrary)>;

    /** Returns what shall happen at the call that just came to the model; empty for nothing. */
    using Decide = std::function<Action()>;

    /** Carries @p action out with the model, then with the library. */
    void carryOut(const Action& action)
    {
        m_modelCalls = 0;
        m_libraryCalls = 0;
        m_schedule.clear();
        action(false);
        action(true);
    }

    /** To be called from inside each call that the model makes. */
    void onModelCall(const Decide& decide)
    {
        const int call = ++m_modelCalls;
        if (const Action action = decide()) {
            m_schedule[call] = action;
            action(false);
        }
    }

    /** To be called from inside each call that the library makes. */
    void onLibraryCall()
    {
        const auto scheduled = m_schedule.find(++m_libraryCalls);
        if (scheduled != m_schedule.end()) {
            scheduled->second(true);
        }
    }

private:
    std::map<int, Action> m_schedule;
    int m_modelCalls = 0;
    int m_libraryCalls = 0;
};

} // namespace quon::testing
