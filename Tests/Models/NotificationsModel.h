// SPDX-License-Identifier: MIT
#pragma once

#include <InteractionTesting/CallLog.h>

#include <string>
#include <vector>

namespace quon::testing {

/** What a notification area shows; writes the entries of a RecordingNotificationListener. */
class NotificationsModel {
public:
    explicit NotificationsModel(CallLog& log)
        : m_log(log)
    {}

    /** Returns the number of the new notification, never 0. */
    int create(const std::string& name, const std::string& text)
    {
        m_shown.push_back({++m_last, name, text});
        m_log.call("notifications", "added", name, text);
        return m_last;
    }

    /** The text that it has already is no change. */
    void setText(int notification, const std::string& text)
    {
        for (Shown& each : m_shown) {
            if (each.number == notification && each.text != text) {
                each.text = text;
                m_log.call("notifications", "changed", each.name, text);
            }
        }
    }

    void remove(int notification)
    {
        std::vector<Shown> others;
        for (const Shown& each : m_shown) {
            if (each.number == notification) {
                m_log.call("notifications", "removed", each.name, each.text);
            } else {
                others.push_back(each);
            }
        }
        m_shown = others;
    }

    /** In order of creation, as RecordingNotificationListener::getShown() has them. */
    std::vector<std::string> getShown() const
    {
        std::vector<std::string> shown;
        for (const Shown& each : m_shown) {
            shown.push_back(each.name + ": " + each.text);
        }
        return shown;
    }

private:
    struct Shown {
        int number;
        std::string name;
        std::string text;
    };

    CallLog& m_log;
    std::vector<Shown> m_shown;
    int m_last = 0;
};

} // namespace quon::testing
