// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Tools/InteractionTrace.h"

#include <string>
#include <utility>

namespace quon::viewer {

/**
 * A context that reports to an InteractionTrace what it is told and what it answers, and otherwise is a @p Base.
 *
 * While nobody listens to the trace it passes calls on to the base and does nothing else.
 */
template <class Base>
class Traced final : public Base {
public:
    /**
     * @param trace borrowed, must outlive the context's time in the stack
     * @param name what the context is called in the trace; technical, not translated
     * @param arguments of the base's constructor
     */
    template <class... Arguments>
    Traced(InteractionTrace& trace, std::string name, Arguments&&... arguments)
        : Base(std::forward<Arguments>(arguments)...)
        , m_trace(trace)
        , m_name(std::move(name))
    {}

    bool triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event) override
    {
        if (!m_trace.isListening()) {
            return Base::triggerEvent(manager, event);
        }
        const std::uint64_t offer = m_trace.eventOffered(*this, event);
        const bool consumed = Base::triggerEvent(manager, event);
        m_trace.eventAnswered(offer, m_name, consumed);
        return consumed;
    }

    void pointerMoved(const osg::Pnt2f& position) override
    {
        if (m_trace.isListening()) {
            m_trace.movementReported(*this);
        }
        Base::pointerMoved(position);
    }

    void cameraMoved(const osg::Matrix& camera) override
    {
        if (m_trace.isListening()) {
            m_trace.movementReported(*this);
        }
        Base::cameraMoved(camera);
    }

    void contextAdded(interaction::InteractionManager* manager) override
    {
        m_trace.contextAdded(*this, m_name);
        Base::contextAdded(manager);
    }

    void contextRemoved(interaction::InteractionManager* manager) override
    {
        Base::contextRemoved(manager);
        m_trace.contextRemoved(*this);
    }

    void contextRaised(interaction::InteractionManager* manager) override
    {
        m_trace.contextRaised(*this);
        Base::contextRaised(manager);
    }

private:
    InteractionTrace& m_trace;
    std::string m_name;
};

} // namespace quon::viewer
