// SPDX-License-Identifier: MIT
#include <Notification/TextNotification.h>

namespace quon::notification {

TextNotification::TextNotification(NotificationManager& manager, const std::string& name, const std::string& text)
    : Notification(manager, name)
    , m_text(text)
{}

TextNotification::~TextNotification() = default;

void TextNotification::setText(const std::string& text)
{
    if (text == m_text) {
        return;
    }
    m_text = text;
    // A listener may remove this notification: nothing may follow.
    reportChanged();
}

} // namespace quon::notification
