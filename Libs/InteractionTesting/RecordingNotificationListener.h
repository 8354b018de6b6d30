// SPDX-License-Identifier: MIT
#pragma once

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <InteractionTesting/CallLog.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/**
 * Writes what happens in the process-wide notification area to a log, as `notifications.added(name, text)`.
 *
 * Clears the area at the end: tests may leave notifications behind that nobody tracks.
 */
class RecordingNotificationListener final : public notification::NotificationListener {
public:
    /** Called with "added", "changed" or "removed" from inside each call, after it was recorded. */
    using Hook = std::function<void(const std::string& operation)>;

    /** Listens until it is destroyed. @p log is borrowed. */
    explicit RecordingNotificationListener(CallLog& log)
        : m_log(log)
    {
        notification::NotificationManager::getInstance()->addListener(this);
    }

    ~RecordingNotificationListener() override
    {
        notification::NotificationManager* manager = notification::NotificationManager::getInstance();
        manager->removeListener(this);
        while (!manager->getNotifications().empty()) {
            manager->removeNotification(manager->getNotifications().back());
        }
    }

    RecordingNotificationListener(const RecordingNotificationListener&) = delete;
    RecordingNotificationListener& operator=(const RecordingNotificationListener&) = delete;

    /** Has @p hook called from the next call on, in place of the one so far; empty: none, as at first. */
    void setHook(Hook hook) { m_hook = std::move(hook); }

    /** The notifications shown at the moment in order of creation, each as `name: text`. */
    static std::vector<std::string> getShown()
    {
        std::vector<std::string> shown;
        for (notification::Notification* each : notification::NotificationManager::getInstance()->getNotifications()) {
            shown.push_back(each->getName() + ": " + getText(each));
        }
        return shown;
    }

    void notificationAdded(notification::Notification* notification) override { record("added", notification); }
    void notificationChanged(notification::Notification* notification) override { record("changed", notification); }
    void notificationRemoved(notification::Notification* notification) override { record("removed", notification); }

private:
    static std::string getText(notification::Notification* notification)
    {
        const auto* text = dynamic_cast<const notification::TextNotification*>(notification);
        return text != nullptr ? text->getText() : std::string();
    }

    void record(const std::string& operation, notification::Notification* notification)
    {
        m_log.call("notifications", operation, notification->getName(), getText(notification));
        // A copy: the hook may replace itself.
        if (const Hook hook = m_hook) {
            hook(operation);
        }
    }

    CallLog& m_log;
    Hook m_hook;
};

} // namespace quon::testing
