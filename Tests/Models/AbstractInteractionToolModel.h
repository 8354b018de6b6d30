// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"
#include "NotificationsModel.h"

#include <string>
#include <vector>

namespace quon::testing {

/** The books of an AbstractInteractionTool. Contexts are numbers, 0 for null. */
class AbstractInteractionToolModel {
public:
    static std::vector<std::string> branches()
    {
        return {"activated with description",
                "activated while one is shown",
                "activated already",
                "deactivated",
                "deactivated with a notification",
                "deactivated already",
                "tool description changed while shown",
                "tool description emptied while shown",
                "tool description set while active",
                "tool description set while inactive",
                "tool description displayed while inactive",
                "tool destroyed with a notification"};
    }

    AbstractInteractionToolModel(NotificationsModel& notifications, ModelCoverage& coverage)
        : m_notifications(notifications)
        , m_coverage(coverage)
    {}

    virtual ~AbstractInteractionToolModel() = default;

    void setDescription(const std::string& text)
    {
        m_description = text;
        if (!changeShown() && !text.empty()) {
            m_coverage.see(m_active ? "tool description set while active" : "tool description set while inactive");
            if (m_active) {
                createNotification();
            }
        }
    }

    void displayDescription(const std::string& text)
    {
        m_description = text;
        if (!changeShown() && !text.empty()) {
            if (!m_active) {
                m_coverage.see("tool description displayed while inactive");
            }
            createNotification();
        }
    }

    virtual bool setToolMode(int, const std::string&) { return false; }

    virtual void activateTool(int)
    {
        if (m_active) {
            m_coverage.see("activated already");
            return;
        }
        m_active = true;
        if (!m_description.empty()) {
            m_coverage.see(m_notification != 0 ? "activated while one is shown" : "activated with description");
            createNotification();
        }
    }

    virtual void deactivateTool(int)
    {
        if (!m_active) {
            m_coverage.see("deactivated already");
            return;
        }
        m_active = false;
        m_coverage.see(m_notification != 0 ? "deactivated with a notification" : "deactivated");
        if (m_notification != 0) {
            removeNotification();
        }
    }

    bool isActive() const { return m_active; }

    /** One of startTool() to stopHoverTool(). */
    virtual bool carryOut(const std::string&, int, const std::string&) { return true; }

    bool isPickHint(const std::string& hint) const { return hint == "select" || hint == "toggle"; }

    /** The end of the object. */
    void destroy()
    {
        if (m_notification != 0) {
            m_coverage.see("tool destroyed with a notification");
            removeNotification();
        }
    }

private:
    bool changeShown()
    {
        if (m_notification == 0) {
            return false;
        }
        m_coverage.see(m_description.empty() ? "tool description emptied while shown"
                                             : "tool description changed while shown");
        if (m_description.empty()) {
            removeNotification();
        } else {
            m_notifications.setText(m_notification, m_description);
        }
        return true;
    }

    void createNotification() { m_notification = m_notifications.create("tool", m_description); }

    void removeNotification()
    {
        m_notifications.remove(m_notification);
        m_notification = 0;
    }

    NotificationsModel& m_notifications;
    ModelCoverage& m_coverage;
    bool m_active = false;
    std::string m_description;
    int m_notification = 0;
};

} // namespace quon::testing
