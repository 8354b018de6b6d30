// SPDX-License-Identifier: MIT
#include <Interaction/InteractionEvent.h>

namespace quon::interaction {

InteractionEvent::InteractionEvent(const std::string& category, const std::string& event)
    : m_category(category)
    , m_event(event)
{
    const std::string::size_type colon = m_category.find(':');
    if (colon == std::string::npos) {
        m_tool = m_category;
        return;
    }
    // Assigned in place: a temporary part would cost a second copy for every event.
    m_tool.assign(m_category, 0, colon);
    m_hint.assign(m_category, colon + 1, std::string::npos);
}

} // namespace quon::interaction
