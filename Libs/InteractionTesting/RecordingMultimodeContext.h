// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/MultimodeInteractionContext.h>

#include <InteractionTesting/CallLog.h>

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/** A multimode context that writes the calls of selectMode() to a log and refuses the modes that it is told to. */
class RecordingMultimodeContext final : public interaction::MultimodeInteractionContext {
public:
    /** Called with the mode from inside each call of selectMode(), after it was recorded. */
    using Hook = std::function<void(const std::string& mode)>;

    /** Accepts every mode. @p log is borrowed; @p name starts the entries. */
    RecordingMultimodeContext(CallLog& log, std::string name, PreferredPosition position = Tool)
        : MultimodeInteractionContext(position)
        , m_log(log)
        , m_name(std::move(name))
    {}

    /** Lets selectMode() answer false for @p mode from now on. */
    void refuse(const std::string& mode) { m_refusedModes.insert(mode); }

    /** Has @p hook called from the next call on, in place of the one so far; empty: none, as at first. */
    void setHook(Hook hook) { m_hook = std::move(hook); }

    bool selectMode(const std::string& mode) override
    {
        m_log.call(m_name, "selectMode", mode);
        m_selectedMode = mode;
        const bool accepted = m_refusedModes.count(mode) == 0;
        // A copy: the hook may replace itself.
        if (const Hook hook = m_hook) {
            hook(mode);
        }
        return accepted;
    }

    /**
     * Returns the modes from the current one down, and stops them all.
     *
     * The stack has no query: each stop of the current mode tells which one comes next. Clears the log, the hook and
     * the refusals.
     */
    std::vector<std::string> takeModes()
    {
        m_hook = nullptr;
        m_refusedModes.clear();

        // Any name does; stopping it again leaves the others as they were.
        startMode("takeModes");
        stopMode("takeModes");

        std::vector<std::string> modes;
        for (std::string mode = m_selectedMode; stopMode(mode); mode = m_selectedMode) {
            modes.push_back(mode);
        }
        m_log.clear();
        return modes;
    }

private:
    CallLog& m_log;
    std::string m_name;
    std::set<std::string> m_refusedModes;
    std::string m_selectedMode;
    Hook m_hook;
};

} // namespace quon::testing
