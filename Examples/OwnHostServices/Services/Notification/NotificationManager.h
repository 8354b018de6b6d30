// SPDX-License-Identifier: MIT
#pragma once

#include <Notification/TextNotification.h>

#include <list>
#include <string>

namespace quon::notification {

/** One line of the status bar at a time: the newest notification. */
class NotificationManager {
public:
    static NotificationManager* getInstance();

    TextNotification* createTextNotification(const std::string& name, const std::string& text);
    void removeNotification(Notification* notification);

    /** Returns what the status bar shows; empty when there is nothing to say. */
    std::string getStatusLine() const;

private:
    std::list<TextNotification> m_notifications;
};

} // namespace quon::notification
