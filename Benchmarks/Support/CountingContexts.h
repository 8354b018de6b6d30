// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionContext.h>
#include <Interaction/InteractionManager.h>

#include <cstddef>
#include <list>

namespace quon::benchmarks {

/** A context that counts what reaches it and does nothing else. */
class CountingContext final : public interaction::InteractionContext {
public:
    /** @param consuming the answer of triggerEvent() */
    explicit CountingContext(const bool consuming)
        : m_consuming(consuming)
    {}

    std::size_t events = 0;
    std::size_t movements = 0;

    interaction::InteractionManager* getInteractionManager() const override { return nullptr; }
    void enabled(interaction::InteractionManager* /*manager*/) override {}
    void disabled(interaction::InteractionManager* /*manager*/) override {}
    void contextAdded(interaction::InteractionManager* /*manager*/) override {}
    void contextRemoved(interaction::InteractionManager* /*manager*/) override {}
    void contextRaised(interaction::InteractionManager* /*manager*/) override {}
    void contextLowered(interaction::InteractionManager* /*manager*/) override {}
    void pointerMoved(const osg::Pnt2f& /*position*/) override { ++movements; }
    void cameraMoved(const osg::Matrix& /*camera*/) override { ++movements; }

    bool triggerEvent(interaction::InteractionManager* /*manager*/,
                      const interaction::InteractionEvent& /*event*/) override
    {
        ++events;
        return m_consuming;
    }

    bool isRaised() const override { return false; }
    bool isActive() const override { return true; }
    bool isEnabled() const override { return true; }
    PreferredPosition getPreferredPosition() const override { return Tool; }

private:
    bool m_consuming;
};

/** A manager with contexts, of which the one at the bottom alone consumes events. */
class ContextStack {
public:
    /** @param count at least 1 */
    explicit ContextStack(const std::size_t count)
    {
        // Among equals the newest is on top.
        for (std::size_t i = 0; i < count; ++i) {
            m_contexts.emplace_front(i == 0);
            m_manager.addContext(&m_contexts.front());
        }
    }

    interaction::InteractionManager& getManager() { return m_manager; }
    CountingContext& getTop() { return m_contexts.front(); }
    CountingContext& getBottom() { return m_contexts.back(); }

private:
    std::list<CountingContext> m_contexts;
    interaction::InteractionManager m_manager;
};

} // namespace quon::benchmarks
