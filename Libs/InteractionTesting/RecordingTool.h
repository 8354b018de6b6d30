// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionTool.h>

#include <InteractionTesting/CallLog.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/** A tool that writes every call of its context to a log, except isActive(), and answers what the test wants. */
class RecordingTool final : public interaction::InteractionTool {
public:
    /** Called with the name of the operation from inside each recorded call, after it was recorded. */
    using Hook = std::function<void(const std::string& operation)>;

    /** Inactive. @p log is borrowed; @p name starts the entries. */
    RecordingTool(CallLog& log, std::string name)
        : m_log(log)
        , m_name(std::move(name))
    {}

    /** Sets the answer of the event operations; true at first. */
    void setConsuming(bool consuming) { m_consuming = consuming; }

    /** Sets the answer of setToolMode(); true at first. */
    void setAcceptingModes(bool accepting) { m_acceptingModes = accepting; }

    /** Has @p hook called from the next call on, in place of the one so far; empty: none, as at first. */
    void setHook(Hook hook) { m_hook = std::move(hook); }

    /** The contexts passed to the calls so far, in order. */
    const std::vector<interaction::ToolInteractionContext*>& getContexts() const { return m_contexts; }

    bool setToolMode(interaction::ToolInteractionContext* context, const std::string& mode) override
    {
        record(context, "setToolMode", mode);
        return m_acceptingModes;
    }

    void activateTool(interaction::ToolInteractionContext* context) override
    {
        m_active = true;
        record(context, "activateTool");
    }

    void deactivateTool(interaction::ToolInteractionContext* context) override
    {
        m_active = false;
        record(context, "deactivateTool");
    }

    bool isActive() const override { return m_active; }

    bool startTool(interaction::ToolInteractionContext* context, const std::string& hint) override
    {
        record(context, "startTool", hint);
        return m_consuming;
    }

    bool processTool(interaction::ToolInteractionContext* context, const std::string& hint) override
    {
        record(context, "processTool", hint);
        return m_consuming;
    }

    bool stopTool(interaction::ToolInteractionContext* context, const std::string& hint) override
    {
        record(context, "stopTool", hint);
        return m_consuming;
    }

    bool triggerTool(interaction::ToolInteractionContext* context, const std::string& hint) override
    {
        record(context, "triggerTool", hint);
        return m_consuming;
    }

    bool hoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override
    {
        record(context, "hoverTool", hint);
        return m_consuming;
    }

    bool stopHoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override
    {
        record(context, "stopHoverTool", hint);
        return m_consuming;
    }

    bool isPickHint(const std::string& hint) const override
    {
        m_log.call(m_name, "isPickHint", hint);
        return false;
    }

private:
    template <typename... Arguments>
    void record(interaction::ToolInteractionContext* context, const std::string& operation,
                const Arguments&... arguments)
    {
        m_contexts.push_back(context);
        m_log.call(m_name, operation, arguments...);
        // A copy: the hook may replace itself.
        if (const Hook hook = m_hook) {
            hook(operation);
        }
    }

    CallLog& m_log;
    std::string m_name;
    bool m_consuming = true;
    bool m_acceptingModes = true;
    bool m_active = false;
    std::vector<interaction::ToolInteractionContext*> m_contexts;
    Hook m_hook;
};

} // namespace quon::testing
