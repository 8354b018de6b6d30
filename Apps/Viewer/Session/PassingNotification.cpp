// SPDX-License-Identifier: MIT
#include "Viewer/Session/PassingNotification.h"

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <utility>

namespace quon::viewer {

PassingNotification::PassingNotification(std::string name, QObject* parent)
    : QObject(parent)
    , m_name(std::move(name))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PassingNotification::hide);
}

PassingNotification::~PassingNotification()
{
    hide();
}

void PassingNotification::show(const QString& text, const std::chrono::milliseconds duration)
{
    if (text.isEmpty()) {
        hide();
        return;
    }
    if (m_notification == nullptr) {
        m_notification =
            notification::NotificationManager::getInstance()->createTextNotification(m_name, text.toStdString());
    }
    setText(text);
    m_timer.start(duration);
}

void PassingNotification::setText(const QString& text)
{
    if (m_notification != nullptr) {
        m_notification->setText(text.toStdString());
    }
}

void PassingNotification::hide()
{
    m_timer.stop();
    // First forgotten: listeners may ask for another one from inside.
    notification::NotificationManager::getInstance()->removeNotification(std::exchange(m_notification, nullptr));
}

} // namespace quon::viewer
