// SPDX-License-Identifier: MIT
#pragma once

#include <Notification/Notification.h>

#include <string>

namespace quon::notification {

/** A notification that shows one text. Created by NotificationManager::createTextNotification(). */
class TextNotification : public Notification {
public:
    ~TextNotification() override;

    /**
     * Replaces the text and tells the listeners that the notification changed.
     *
     * The text it has already changes nothing and tells nobody.
     */
    void setText(const std::string& text);

    /** Returns the text that is shown. */
    const std::string& getText() const { return m_text; }

private:
    friend class NotificationManager;

    TextNotification(NotificationManager& manager, const std::string& name, const std::string& text);

    std::string m_text;
};

} // namespace quon::notification
