// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quon::notification {

class NotificationManager;

/**
 * One entry of the notification area.
 *
 * @par Ownership
 * Owned by the NotificationManager that created it, from its creation until NotificationManager::removeNotification().
 */
class Notification {
public:
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;
    virtual ~Notification();

    /** Returns the name that says what kind of thing speaks, for example "tool"; names need not be unique. */
    const std::string& getName() const { return m_name; }

protected:
    /** @param manager told about every change; must outlive the notification */
    Notification(NotificationManager& manager, const std::string& name);

    /** Tells the manager's listeners that what the notification shows is another now. */
    void reportChanged();

private:
    NotificationManager& m_manager;
    std::string m_name;
};

} // namespace quon::notification
