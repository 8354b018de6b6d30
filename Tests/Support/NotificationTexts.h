// SPDX-License-Identifier: MIT
#pragma once

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <string>
#include <vector>

namespace quon::testing {

/**
 * The texts in the process-wide notification area in order of creation.
 *
 * @param name only those of notifications with this name; all when it is left out
 */
inline std::vector<std::string> getNotificationTexts(const std::string& name = std::string())
{
    std::vector<std::string> texts;
    for (const notification::Notification* each :
         notification::NotificationManager::getInstance()->getNotifications()) {
        if (name.empty() || each->getName() == name) {
            texts.push_back(dynamic_cast<const notification::TextNotification&>(*each).getText());
        }
    }
    return texts;
}

} // namespace quon::testing
