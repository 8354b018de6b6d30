// SPDX-License-Identifier: MIT
#include <Notification/NotificationManager.h>

#include <algorithm>
#include <memory>

namespace quon::notification {

void NotificationListener::notificationAdded(Notification*) {}

void NotificationListener::notificationChanged(Notification*) {}

void NotificationListener::notificationRemoved(Notification*) {}

NotificationManager* NotificationManager::getInstance()
{
    static NotificationManager* const instance = new NotificationManager;
    return instance;
}

NotificationManager::NotificationManager() = default;

NotificationManager::~NotificationManager()
{
    for (Notification* notification : m_notifications) {
        delete notification;
    }
}

TextNotification* NotificationManager::createTextNotification(const std::string& name, const std::string& text)
{
    std::unique_ptr<TextNotification> created(new TextNotification(*this, name, text));
    m_notifications.push_back(created.get());
    TextNotification* notification = created.release();

    bool alive = true;
    m_listeners.callWhile([&](NotificationListener& listener) {
        listener.notificationAdded(notification);
        alive = has(notification);
        return alive;
    });
    return alive ? notification : nullptr;
}

void NotificationManager::removeNotification(Notification* notification)
{
    const auto found = std::find(m_notifications.begin(), m_notifications.end(), notification);
    if (found == m_notifications.end()) {
        return;
    }
    const std::unique_ptr<Notification> removed(*found);
    // Out of the list first: a listener that removes it once more, or changes its text, finds it unknown.
    m_notifications.erase(found);
    m_listeners.callWhile([&](NotificationListener& listener) {
        listener.notificationRemoved(removed.get());
        return true;
    });
}

void NotificationManager::addListener(NotificationListener* listener)
{
    m_listeners.add(listener);
}

void NotificationManager::removeListener(NotificationListener* listener)
{
    m_listeners.remove(listener);
}

bool NotificationManager::has(const Notification* notification) const
{
    return std::find(m_notifications.begin(), m_notifications.end(), notification) != m_notifications.end();
}

void NotificationManager::reportChanged(Notification* notification)
{
    if (!has(notification)) {
        return;
    }
    m_listeners.callWhile([&](NotificationListener& listener) {
        listener.notificationChanged(notification);
        return has(notification);
    });
}

} // namespace quon::notification
