// SPDX-License-Identifier: MIT
#include <Interaction/MultimodeInteractionContext.h>

#include <Interaction/InteractionEvent.h>

#include <algorithm>
#include <iterator>

namespace quon::interaction {

MultimodeInteractionContext::MultimodeInteractionContext(PreferredPosition position)
    : AbstractInteractionContext(position)
    , m_modeCategory("mode")
{}

void MultimodeInteractionContext::setModeCategory(const std::string& category)
{
    m_modeCategory = category;
}

const std::string& MultimodeInteractionContext::getModeCategory() const
{
    return m_modeCategory;
}

bool MultimodeInteractionContext::startMode(const std::string& mode)
{
    // A copy, as selectMode() may change the string that the caller refers to, and one that can go on the stack without
    // more memory: a mode that was accepted gets there.
    std::list<std::string> started(1, mode);
    if (!selectMode(started.front())) {
        return false;
    }
    m_modes.remove(started.front());
    m_modes.splice(m_modes.begin(), started);
    return true;
}

bool MultimodeInteractionContext::stopMode(const std::string& mode)
{
    const auto position = std::find(m_modes.begin(), m_modes.end(), mode);
    if (position == m_modes.end()) {
        return false;
    }
    if (position != m_modes.begin()) {
        m_modes.erase(position);
        return true;
    }
    // A copy, as selectMode() may start and stop modes itself, made while nothing has changed.
    const auto next = std::next(position);
    const std::string currentMode = next == m_modes.end() ? std::string() : *next;
    m_modes.erase(position);
    selectMode(currentMode);
    return true;
}

void MultimodeInteractionContext::contextAdded(InteractionManager* manager)
{
    AbstractInteractionContext::contextAdded(manager);
}

void MultimodeInteractionContext::contextRemoved(InteractionManager* manager)
{
    if (!m_modes.empty()) {
        selectMode(std::string());
        m_modes.clear();
    }
    AbstractInteractionContext::contextRemoved(manager);
}

bool MultimodeInteractionContext::triggerEvent(InteractionManager* /*manager*/, const InteractionEvent& event)
{
    if (event.getTool() != m_modeCategory) {
        return false;
    }
    if (event.getEvent() == "start") {
        return startMode(event.getHint());
    }
    if (event.getEvent() == "stop") {
        return stopMode(event.getHint());
    }
    return false;
}

} // namespace quon::interaction
