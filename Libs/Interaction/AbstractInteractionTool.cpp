// SPDX-License-Identifier: MIT
#include <Interaction/AbstractInteractionTool.h>

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

namespace quon::interaction {

AbstractInteractionTool::AbstractInteractionTool()
    : m_active(false)
    , m_notificationName("tool")
    , m_notification(nullptr)
    , m_notificationManager(notification::NotificationManager::getInstance())
{}

AbstractInteractionTool::~AbstractInteractionTool()
{
    // Only a known manager can have made one.
    if (m_notification != nullptr) {
        removeNotification();
    }
}

void AbstractInteractionTool::setDescription(const std::string& text)
{
    changeDescription(text, m_active);
}

void AbstractInteractionTool::displayDescription(const std::string& text)
{
    changeDescription(text, true);
}

bool AbstractInteractionTool::setToolMode(ToolInteractionContext* /*context*/, const std::string& /*mode*/)
{
    // Unlike the events below: a tool has to know a mode before it can accept it.
    return false;
}

void AbstractInteractionTool::activateTool(ToolInteractionContext* /*context*/)
{
    if (m_active) {
        return;
    }
    m_active = true;
    // One that displayDescription() has put up is not looked at: it stays, no longer tracked.
    if (!m_description.empty()) {
        createNotification();
    }
}

void AbstractInteractionTool::deactivateTool(ToolInteractionContext* /*context*/)
{
    if (!m_active) {
        return;
    }
    m_active = false;
    if (m_notification != nullptr) {
        removeNotification();
    }
}

bool AbstractInteractionTool::isActive() const
{
    return m_active;
}

bool AbstractInteractionTool::startTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/)
{
    return true;
}

bool AbstractInteractionTool::processTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/)
{
    return true;
}

bool AbstractInteractionTool::stopTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/)
{
    return true;
}

bool AbstractInteractionTool::triggerTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/)
{
    return true;
}

bool AbstractInteractionTool::hoverTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/)
{
    return true;
}

bool AbstractInteractionTool::stopHoverTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/)
{
    return true;
}

bool AbstractInteractionTool::isPickHint(const std::string& hint) const
{
    return hint == "select" || hint == "toggle";
}

void AbstractInteractionTool::createNotification()
{
    m_notification = m_notificationManager->createTextNotification(m_notificationName, m_description);
}

void AbstractInteractionTool::removeNotification()
{
    m_notificationManager->removeNotification(m_notification);
    m_notification = nullptr;
}

void AbstractInteractionTool::changeDescription(const std::string& text, bool showWhenHidden)
{
    m_description = text;
    if (m_notification != nullptr) {
        if (m_description.empty()) {
            removeNotification();
        } else {
            m_notification->setText(m_description);
        }
        return;
    }
    if (showWhenHidden && !m_description.empty()) {
        createNotification();
    }
}

} // namespace quon::interaction
