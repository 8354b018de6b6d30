// SPDX-License-Identifier: MIT
#pragma once

#include <Notification/Notification.h>
#include <Notification/TextNotification.h>
#include <Utilities/ListenerList.h>

#include <string>
#include <vector>

namespace quon::notification {

/**
 * Hears about the notifications of a NotificationManager. Every operation does nothing unless overridden.
 *
 * A listener may create and change notifications, remove those that it created, and add and remove listeners, itself
 * included, while it is being told.
 */
class NotificationListener {
public:
    virtual ~NotificationListener() = default;

    /** Called after @p notification joined the manager's notifications. */
    virtual void notificationAdded(Notification* notification);

    /** Called after @p notification took over what it shows now. */
    virtual void notificationChanged(Notification* notification);

    /** Called after @p notification left the manager's notifications, while it still exists; forget it here. */
    virtual void notificationRemoved(Notification* notification);
};

/**
 * The notification area as a model: owns the notifications and tells listeners about them.
 *
 * A view listens and draws; whoever has something to say creates a notification and removes it when it is over.
 *
 * @par Threading
 * User-interface thread only, no locks.
 */
class NotificationManager {
public:
    /**
     * Returns the manager that the whole process shares.
     *
     * Created on the first call and never destroyed, so that objects with static storage may remove their
     * notifications at the end of the process.
     */
    static NotificationManager* getInstance();

    NotificationManager();
    NotificationManager(const NotificationManager&) = delete;
    NotificationManager& operator=(const NotificationManager&) = delete;

    /** Destroys the notifications that are left; the listeners are not told. */
    ~NotificationManager();

    /**
     * Creates a notification behind all others and calls NotificationListener::notificationAdded().
     *
     * Equal names and texts are no obstacle: every call makes a notification of its own.
     *
     * @return the new notification, owned by the manager; null when a listener removed it at once
     */
    TextNotification* createTextNotification(const std::string& name, const std::string& text);

    /**
     * Takes @p notification out, calls NotificationListener::notificationRemoved() and then destroys it.
     *
     * Null is ignored, and so is a notification that the manager does not have (any more); it is compared by address
     * only. Remove what you created: others keep the address of theirs, and nobody tells them.
     */
    void removeNotification(Notification* notification);

    /** Returns the notifications in order of creation; the manager owns them. */
    const std::vector<Notification*>& getNotifications() const { return m_notifications; }

    /**
     * Adds @p listener behind the others; it hears of what happens from now on.
     *
     * Null is ignored, and so is a listener that is there already.
     *
     * @param listener borrowed: remove it before destroying it
     */
    void addListener(NotificationListener* listener);

    /** Removes @p listener, which is not called again. Null is ignored, and so is an unknown listener. */
    void removeListener(NotificationListener* listener);

private:
    friend class Notification;

    bool has(const Notification* notification) const;
    void reportChanged(Notification* notification);

    std::vector<Notification*> m_notifications;
    ListenerList<NotificationListener> m_listeners;
};

} // namespace quon::notification
