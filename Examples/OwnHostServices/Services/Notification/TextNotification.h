// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quon::notification {

/** What the library hands back to NotificationManager::removeNotification(). */
class Notification {};

class TextNotification : public Notification {
public:
    explicit TextNotification(const std::string& text)
        : m_text(text)
    {}

    void setText(const std::string& text);
    const std::string& getText() const { return m_text; }

private:
    std::string m_text;
};

} // namespace quon::notification
