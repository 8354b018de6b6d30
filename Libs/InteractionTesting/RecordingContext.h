// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionContext.h>
#include <Interaction/InteractionEvent.h>

#include <InteractionTesting/CallLog.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * A context that writes every call of the manager to a log, except the queries, and consumes events on demand.
 *
 * The flags follow the calls, so that a test can compare them with those of a real context.
 */
class RecordingContext final : public interaction::InteractionContext {
public:
    /** Called with the name of the operation from inside each recorded call, after it was recorded. */
    using Hook = std::function<void(const std::string& operation)>;

    /**
     * Neither active nor raised, enabled, consumes nothing.
     *
     * @param log borrowed
     * @param name starts the entries
     * @param position any integer, the enumerators of PreferredPosition included
     */
    RecordingContext(CallLog& log, std::string name, int position = Tool)
        : m_log(log)
        , m_name(std::move(name))
        , m_position(static_cast<PreferredPosition>(position))
    {}

    /** Returns the name that starts the entries. */
    const std::string& getName() const { return m_name; }

    /** Sets the answer of triggerEvent(); false at first. */
    void setConsuming(bool consuming) { m_consuming = consuming; }

    /** Has @p hook called from the next call on, in place of the one so far; empty: none, as at first. */
    void setHook(Hook hook) { m_hook = std::move(hook); }

    /** Changes the stacking key; named apart from the interface, which has no such operation. */
    void moveTo(int position) { m_position = static_cast<PreferredPosition>(position); }

    /** The managers passed to the calls so far, in order. */
    const std::vector<interaction::InteractionManager*>& getManagers() const { return m_managers; }

    interaction::InteractionManager* getInteractionManager() const override { return m_manager; }

    void enabled(interaction::InteractionManager* manager) override
    {
        m_enabled = true;
        record("enabled", manager);
    }

    void disabled(interaction::InteractionManager* manager) override
    {
        m_enabled = false;
        record("disabled", manager);
    }

    void contextAdded(interaction::InteractionManager* manager) override
    {
        m_manager = manager;
        record("contextAdded", manager);
    }

    void contextRemoved(interaction::InteractionManager* manager) override
    {
        m_manager = nullptr;
        record("contextRemoved", manager);
    }

    void contextRaised(interaction::InteractionManager* manager) override
    {
        m_raised = true;
        record("contextRaised", manager);
    }

    void contextLowered(interaction::InteractionManager* manager) override
    {
        m_raised = false;
        record("contextLowered", manager);
    }

    void pointerMoved(const osg::Pnt2f& position) override
    {
        m_log.call(m_name, "pointerMoved", position[0], position[1]);
        callHook("pointerMoved");
    }

    /** Records the translation of @p camera. */
    void cameraMoved(const osg::Matrix& camera) override
    {
        m_log.call(m_name, "cameraMoved", camera[3][0], camera[3][1], camera[3][2]);
        callHook("cameraMoved");
    }

    bool triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event) override
    {
        m_managers.push_back(manager);
        m_log.call(m_name, "triggerEvent", event.getCategory(), event.getEvent());
        callHook("triggerEvent");
        return m_consuming;
    }

    bool isRaised() const override { return m_raised; }
    bool isActive() const override { return m_manager != nullptr; }
    bool isEnabled() const override { return m_enabled; }
    PreferredPosition getPreferredPosition() const override { return m_position; }

private:
    void record(const std::string& operation, interaction::InteractionManager* manager)
    {
        m_managers.push_back(manager);
        m_log.call(m_name, operation);
        callHook(operation);
    }

    void callHook(const std::string& operation)
    {
        // A copy: the hook may replace itself.
        if (const Hook hook = m_hook) {
            hook(operation);
        }
    }

    CallLog& m_log;
    std::string m_name;
    PreferredPosition m_position;
    bool m_consuming = false;
    bool m_raised = false;
    bool m_enabled = true;
    interaction::InteractionManager* m_manager = nullptr;
    std::vector<interaction::InteractionManager*> m_managers;
    Hook m_hook;
};

} // namespace quon::testing
