// SPDX-License-Identifier: MIT
#include <Interaction/MultimodeInteractionContext.h>

#include <Interaction/InteractionEvent.h>

#include <algorithm>

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
    // A copy: selectMode() may change the string that the caller refers to.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const std::string startedMode = mode;
    if (!selectMode(startedMode)) {
        return false;
    }
    m_modes.remove(startedMode);
    m_modes.push_front(startedMode);
    return true;
}

bool MultimodeInteractionContext::stopMode(const std::string& mode)
{
    const auto position = std::find(m_modes.begin(), m_modes.end(), mode);
    if (position == m_modes.end()) {
        return false;
    }
    const bool wasCurrent = position == m_modes.begin();
    m_modes.erase(position);
    if (wasCurrent) {
        // A copy: selectMode() may start and stop modes itself.
        const std::string currentMode = m_modes.empty() ? std::string() : m_modes.front();
        selectMode(currentMode);
    }
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
