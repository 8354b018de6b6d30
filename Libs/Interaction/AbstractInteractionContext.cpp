// SPDX-License-Identifier: MIT
#include <Interaction/AbstractInteractionContext.h>

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

namespace quon::interaction {

AbstractInteractionContext::AbstractInteractionContext(PreferredPosition position)
    : m_raised(false)
    , m_active(false)
    , m_enabled(true)
    , m_preferredPosition(position)
    , m_notificationName("context")
    , m_notification(nullptr)
    , m_notificationManager(notification::NotificationManager::getInstance())
    , m_interactionManager(nullptr)
{}

AbstractInteractionContext::~AbstractInteractionContext()
{
    // Only a known manager can have made one.
    if (m_notification != nullptr) {
        removeNotification();
    }
    m_interactionManager = nullptr;
}

void AbstractInteractionContext::setDescription(const std::string& text)
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
    // Enabled or not: a text that is set while the manager is disabled is shown at once.
    if (m_raised && !m_description.empty()) {
        createNotification();
    }
}

std::string AbstractInteractionContext::getDescription() const
{
    return m_description;
}

void AbstractInteractionContext::setPreferredPosition(PreferredPosition position)
{
    m_preferredPosition = position;
}

InteractionManager* AbstractInteractionContext::getInteractionManager() const
{
    return m_interactionManager;
}

void AbstractInteractionContext::enabled(InteractionManager* /*manager*/)
{
    if (m_enabled) {
        return;
    }
    m_enabled = true;
    // Active, not raised: every context of the stack shows its description again, not only the one on top.
    if (!m_description.empty() && m_active) {
        createNotification();
    }
}

void AbstractInteractionContext::disabled(InteractionManager* /*manager*/)
{
    if (!m_enabled) {
        return;
    }
    m_enabled = false;
    if (m_notification != nullptr) {
        removeNotification();
    }
}

void AbstractInteractionContext::contextAdded(InteractionManager* manager)
{
    m_interactionManager = manager;
    m_active = true;
}

void AbstractInteractionContext::contextRemoved(InteractionManager* /*manager*/)
{
    if (m_notification != nullptr && m_enabled) {
        removeNotification();
    }
    m_interactionManager = nullptr;
    // The raised flag is contextLowered()'s to clear.
    m_active = false;
}

void AbstractInteractionContext::contextRaised(InteractionManager* /*manager*/)
{
    m_raised = true;
    // A notification that is still shown is not taken back first: it stays, no longer tracked.
    if (!m_description.empty() && m_enabled) {
        createNotification();
    }
}

void AbstractInteractionContext::contextLowered(InteractionManager* /*manager*/)
{
    m_raised = false;
    if (m_notification != nullptr && m_enabled) {
        removeNotification();
    }
}

void AbstractInteractionContext::pointerMoved(const osg::Pnt2f& /*position*/) {}

void AbstractInteractionContext::cameraMoved(const osg::Matrix& /*camera*/) {}

bool AbstractInteractionContext::triggerEvent(InteractionManager* /*manager*/, const InteractionEvent& /*event*/)
{
    return false;
}

bool AbstractInteractionContext::isRaised() const
{
    return m_raised;
}

bool AbstractInteractionContext::isActive() const
{
    return m_active;
}

bool AbstractInteractionContext::isEnabled() const
{
    return m_enabled;
}

InteractionContext::PreferredPosition AbstractInteractionContext::getPreferredPosition() const
{
    return m_preferredPosition;
}

void AbstractInteractionContext::createNotification()
{
    m_notification = m_notificationManager->createTextNotification(m_notificationName, m_description);
}

void AbstractInteractionContext::removeNotification()
{
    m_notificationManager->removeNotification(m_notification);
    m_notification = nullptr;
}

} // namespace quon::interaction
