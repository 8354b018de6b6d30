// SPDX-License-Identifier: MIT
#include "Viewer/Tools/InteractionTrace.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <algorithm>
#include <iterator>
#include <limits>

namespace quon::viewer {

namespace {

double millisecondsBetween(const std::chrono::steady_clock::time_point from,
                           const std::chrono::steady_clock::time_point to)
{
    return std::chrono::duration<double, std::milli>(to - from).count();
}

} // namespace

InteractionTrace::ListeningContext::ListeningContext(InteractionTrace& trace, const int position, const char* name,
                                                     const bool last)
    : AbstractInteractionContext(static_cast<PreferredPosition>(position))
    , m_trace(trace)
    , m_name(name)
    , m_last(last)
{}

void InteractionTrace::ListeningContext::contextAdded(interaction::InteractionManager* manager)
{
    AbstractInteractionContext::contextAdded(manager);
    m_trace.contextAdded(*this, m_name);
}

void InteractionTrace::ListeningContext::contextRemoved(interaction::InteractionManager* manager)
{
    m_trace.contextRemoved(*this);
    AbstractInteractionContext::contextRemoved(manager);
}

void InteractionTrace::ListeningContext::contextRaised(interaction::InteractionManager* manager)
{
    AbstractInteractionContext::contextRaised(manager);
    m_trace.contextRaised(*this);
}

void InteractionTrace::ListeningContext::pointerMoved(const osg::Pnt2f&)
{
    m_trace.movementReported(*this);
}

void InteractionTrace::ListeningContext::cameraMoved(const osg::Matrix&)
{
    m_trace.movementReported(*this);
}

bool InteractionTrace::ListeningContext::triggerEvent(interaction::InteractionManager*,
                                                      const interaction::InteractionEvent& event)
{
    m_trace.noteOffer(*this, event);
    if (m_last) {
        m_trace.end(m_trace.m_levels[m_trace.m_depth], TracedEvent::Outcome::Ignored, {});
    }
    return false;
}

InteractionTrace::InteractionTrace(interaction::InteractionManager& manager)
    : m_manager(manager)
    , m_top(*this, interaction::InteractionContext::Overlay, "trace, top", false)
    , m_bottom(*this, std::numeric_limits<int>::max(), "trace, bottom", true)
{}

InteractionTrace::~InteractionTrace()
{
    if (m_listening) {
        stop();
    }
}

void InteractionTrace::addListener(InteractionTraceListener* listener)
{
    if (listener == nullptr || std::count(m_present.begin(), m_present.end(), listener) != 0) {
        return;
    }
    m_listeners.add(listener);
    m_present.push_back(listener);
    if (!m_listening) {
        start();
    }
}

void InteractionTrace::removeListener(InteractionTraceListener* listener)
{
    m_listeners.remove(listener);
    m_present.erase(std::remove(m_present.begin(), m_present.end(), listener), m_present.end());
    if (m_listening && m_present.empty()) {
        stop();
    }
}

void InteractionTrace::start()
{
    m_listening = true;
    ++m_run;
    m_lastNumber = 0;
    m_start = Clock::now();
    m_depth = 0;
    m_manager.addContext(&m_top);
    m_manager.addContext(&m_bottom);
}

void InteractionTrace::stop()
{
    m_listening = false;
    m_depth = 0;
    m_manager.removeContext(&m_top);
    m_manager.removeContext(&m_bottom);
    m_levels.clear();
    m_pending.clear();
    m_walk.clear();
}

void InteractionTrace::finish()
{
    if (m_depth == 0 && !m_levels.empty() && m_levels.front().open) {
        end(m_levels.front(), TracedEvent::Outcome::Unknown, {});
    }
}

std::uint64_t InteractionTrace::eventOffered(const interaction::InteractionContext& context,
                                             const interaction::InteractionEvent& event)
{
    noteOffer(context, event);
    ++m_depth;
    return m_run;
}

void InteractionTrace::eventAnswered(const std::uint64_t offer, const std::string& name, const bool consumed)
{
    // The trace may have ended, or ended and begun anew, while the event was handled.
    if (!m_listening || offer != m_run) {
        return;
    }
    --m_depth;
    leaveDeeperLevels();
    if (consumed) {
        end(m_levels[m_depth], TracedEvent::Outcome::Consumed, name);
    }
}

void InteractionTrace::noteOffer(const interaction::InteractionContext& context,
                                 const interaction::InteractionEvent& event)
{
    if (m_levels.size() <= m_depth) {
        m_levels.resize(m_depth + 1);
    }
    Level& level = m_levels[m_depth];
    if (!isUnderWay(level, context, event)) {
        end(level, TracedEvent::Outcome::Unknown, {});
        begin(level, event);
    }
    level.told.push_back(&context);
}

bool InteractionTrace::isUnderWay(const Level& level, const interaction::InteractionContext& context,
                                  const interaction::InteractionEvent& event) const
{
    if (!level.open || level.event != &event) {
        return false;
    }
    // The next event often lies where the last one lay, and may say the same: but nobody is told twice of one event.
    const TracedEvent& known = m_pending[level.pending];
    return known.category == event.getCategory() && known.verb == event.getEvent() &&
           std::find(level.told.begin(), level.told.end(), &context) == level.told.end();
}

void InteractionTrace::begin(Level& level, const interaction::InteractionEvent& event)
{
    TracedEvent traced;
    traced.number = ++m_lastNumber;
    traced.category = event.getCategory();
    traced.verb = event.getEvent();
    traced.depth = static_cast<int>(m_depth);
    traced.time = millisecondsBetween(m_start, Clock::now());
    level.event = &event;
    level.pending = m_pending.size();
    level.open = true;
    level.told.clear();
    m_pending.push_back(std::move(traced));
}

void InteractionTrace::end(Level& level, const TracedEvent::Outcome outcome, const std::string& consumer)
{
    if (!level.open) {
        return;
    }
    level.open = false;
    TracedEvent& event = m_pending[level.pending];
    event.outcome = outcome;
    event.consumer = consumer;
    event.duration = millisecondsBetween(m_start, Clock::now()) - event.time;
    if (event.depth == 0) {
        deliver();
    }
}

void InteractionTrace::leaveDeeperLevels()
{
    while (m_levels.size() > m_depth + 1) {
        end(m_levels.back(), TracedEvent::Outcome::Unknown, {});
        m_levels.pop_back();
    }
}

void InteractionTrace::deliver()
{
    // Taken out first: a listener may end the trace.
    std::vector<TracedEvent> events;
    events.swap(m_pending);
    for (const TracedEvent& event : events) {
        m_listeners.callWhile([&](InteractionTraceListener& listener) {
            listener.eventTraced(event);
            return true;
        });
    }
}

void InteractionTrace::movementReported(const interaction::InteractionContext& context)
{
    // Nobody is told twice of one movement. A walk from inside a walk mixes both up, and completes no stack.
    if (std::find(m_walk.begin(), m_walk.end(), &context) != m_walk.end()) {
        m_walk.clear();
    }
    m_walk.push_back(&context);
    if (m_walk.size() != m_stack.size()) {
        return;
    }
    std::vector<StackEntry> stack;
    for (const interaction::InteractionContext* told : m_walk) {
        const auto entry = find(*told);
        if (entry == m_stack.end()) {
            return;
        }
        stack.push_back(*entry);
    }
    m_stack.swap(stack);
    m_walk.clear();
}

void InteractionTrace::contextAdded(const interaction::InteractionContext& context, const std::string& name)
{
    // The place that the manager gives it, as far as its contexts report; movements tell whether that is true.
    const int position = context.getPreferredPosition();
    const auto smaller = std::find_if(m_stack.rbegin(), m_stack.rend(), [&](const StackEntry& entry) {
        return entry.context->getPreferredPosition() < position;
    });
    m_stack.insert(smaller.base(), {&context, name});
    m_walk.clear();
}

void InteractionTrace::contextRemoved(const interaction::InteractionContext& context)
{
    const auto entry = find(context);
    if (entry != m_stack.end()) {
        m_stack.erase(entry);
    }
    m_walk.clear();
}

void InteractionTrace::contextRaised(const interaction::InteractionContext& context)
{
    const auto entry = find(context);
    if (entry != m_stack.end()) {
        std::rotate(m_stack.begin(), entry, std::next(entry));
    }
    m_walk.clear();
}

std::vector<InteractionTrace::StackEntry>::iterator
InteractionTrace::find(const interaction::InteractionContext& context)
{
    return std::find_if(m_stack.begin(), m_stack.end(),
                        [&](const StackEntry& entry) { return entry.context == &context; });
}

} // namespace quon::viewer
