// SPDX-License-Identifier: MIT
#pragma once

#include <Notification/NotificationManager.h>

#include <QWindow>

/** Shows what contexts and tools have to say in the title of a window. */
class StatusLine : public quon::notification::NotificationListener {
public:
    explicit StatusLine(QWindow& window)
        : m_window(window)
    {
        quon::notification::NotificationManager::getInstance()->addListener(this);
        show();
    }

    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    ~StatusLine() override { quon::notification::NotificationManager::getInstance()->removeListener(this); }

    void notificationAdded(quon::notification::Notification*) override { show(); }
    void notificationChanged(quon::notification::Notification*) override { show(); }
    void notificationRemoved(quon::notification::Notification*) override { show(); }

private:
    // The one that came last counts.
    void show()
    {
        const auto& all = quon::notification::NotificationManager::getInstance()->getNotifications();
        const auto* last = all.empty() ? nullptr : dynamic_cast<quon::notification::TextNotification*>(all.back());
        m_window.setTitle(last == nullptr ? QString() : QString::fromStdString(last->getText()));
    }

    QWindow& m_window;
};
