// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/ToolInteractionContext.h>

#include <string>
#include <vector>

/**
 * Paints or erases with a click, as its mode says; with the hint "toggle" one part more.
 *
 * The modes belong to its context, which keeps those that were started as a stack: erasing while a key is held goes
 * back to painting afterwards.
 */
class PaintTool : public quon::interaction::AbstractInteractionTool {
public:
    PaintTool() { setDescription("No mode"); }

    // Called for every change of the current mode; empty when none is left. False refuses it.
    bool setToolMode(quon::interaction::ToolInteractionContext*, const std::string& mode) override
    {
        if (!mode.empty() && mode != "paint" && mode != "erase") {
            return false;
        }
        m_mode = mode;
        setDescription(mode.empty() ? "No mode" : "Click to " + mode);
        return true;
    }

    // A click is the "trigger" that follows the release; "start" and "process" before it are the drag.
    bool triggerTool(quon::interaction::ToolInteractionContext*, const std::string& hint) override
    {
        if (m_mode.empty() || !isPickHint(hint)) {
            return false;
        }
        m_done.push_back(m_mode + (hint == "toggle" ? " one more" : ""));
        return true;
    }

    /** What was done so far, oldest first. */
    const std::vector<std::string>& getDone() const { return m_done; }

private:
    std::string m_mode;
    std::vector<std::string> m_done;
};
