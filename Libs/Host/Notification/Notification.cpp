// SPDX-License-Identifier: MIT
#include <Notification/Notification.h>

#include <Notification/NotificationManager.h>

namespace quon::notification {

Notification::Notification(NotificationManager& manager, const std::string& name)
    : m_manager(manager)
    , m_name(name)
{}

Notification::~Notification() = default;

void Notification::reportChanged()
{
    m_manager.reportChanged(this);
}

} // namespace quon::notification
