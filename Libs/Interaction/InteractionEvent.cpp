// SPDX-License-Identifier: MIT
#include <Interaction/InteractionEvent.h>

#include <algorithm>

namespace quon::interaction {

namespace {

// The first part of a category; all of it where there is no colon. Names are short: looking is cheaper than a call.
std::string::size_type toolLength(const std::string& category)
{
    return static_cast<std::string::size_type>(std::find(category.begin(), category.end(), ':') - category.begin());
}

} // namespace

// Each part is made in its place: filling empty strings afterwards costs more.
InteractionEvent::InteractionEvent(const std::string& category, const std::string& event)
    : m_category(category)
    , m_event(event)
    , m_tool(m_category, 0, toolLength(category))
    , m_hint(m_category, std::min(m_tool.size() + 1, m_category.size()))
{}

} // namespace quon::interaction
