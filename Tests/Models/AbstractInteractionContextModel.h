// SPDX-License-Identifier: MIT
#pragma once

#include "ModelRun.h"
#include "NotificationsModel.h"

#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/** An event, as it reaches a context: the category is split at its first colon. */
struct EventModel {
    EventModel(std::string eventCategory, std::string eventName)
        : category(std::move(eventCategory))
        , name(std::move(eventName))
    {
        bool isHint = false;
        for (const char each : category) {
            if (each == ':' && !isHint) {
                isHint = true;
            } else {
                (isHint ? hint : tool) += each;
            }
        }
    }

    std::string category;
    std::string name;
    std::string tool;
    std::string hint;
};

/** What a manager knows of a context. Managers are numbers, 0 for null. */
class InteractionContextModel {
public:
    virtual ~InteractionContextModel() = default;

    virtual void enabled(int manager) = 0;
    virtual void disabled(int manager) = 0;
    virtual void contextAdded(int manager) = 0;
    virtual void contextRemoved(int manager) = 0;
    virtual void contextRaised(int manager) = 0;
    virtual void contextLowered(int manager) = 0;
    virtual void pointerMoved(int x, int y) = 0;
    virtual void cameraMoved(int x, int y, int z) = 0;
    virtual bool triggerEvent(int manager, const EventModel& event) = 0;
    virtual int getPreferredPosition() = 0;
};

/** The books of an AbstractInteractionContext. */
class AbstractInteractionContextModel : public InteractionContextModel {
public:
    static std::vector<std::string> branches()
    {
        return {"raised with description",
                "raised while one is shown",
                "lowered while disabled with a notification",
                "notification removed by lowering",
                "removed while disabled with a notification",
                "removed with a notification that is no longer raised",
                "enabled again shows below the top",
                "enabled already",
                "disabled takes the notification away",
                "disabled already",
                "description changed while shown",
                "description emptied while shown",
                "description set while raised and disabled",
                "description set while raised",
                "description set while not raised",
                "destroyed with a notification"};
    }

    AbstractInteractionContextModel(NotificationsModel& notifications, int position, ModelCoverage& coverage)
        : m_notifications(notifications)
        , m_position(position)
        , m_coverage(coverage)
    {}

    void setDescription(const std::string& text)
    {
        m_description = text;
        if (m_notification != 0) {
            m_coverage.see(text.empty() ? "description emptied while shown" : "description changed while shown");
            if (text.empty()) {
                removeNotification();
            } else {
                m_notifications.setText(m_notification, text);
            }
        } else if (m_raised && !text.empty()) {
            m_coverage.see(m_enabled ? "description set while raised" : "description set while raised and disabled");
            createNotification();
        } else if (!m_raised) {
            m_coverage.see("description set while not raised");
        }
    }

    const std::string& getDescription() const { return m_description; }
    void setPreferredPosition(int position) { m_position = position; }
    int getPosition() const { return m_position; }
    bool isRaised() const { return m_raised; }
    bool isActive() const { return m_active; }
    bool isEnabled() const { return m_enabled; }
    int getInteractionManager() const { return m_manager; }

    void enabled(int) override
    {
        if (m_enabled) {
            m_coverage.see("enabled already");
            return;
        }
        m_enabled = true;
        if (!m_description.empty() && m_active) {
            if (!m_raised) {
                m_coverage.see("enabled again shows below the top");
            }
            createNotification();
        }
    }

    void disabled(int) override
    {
        if (!m_enabled) {
            m_coverage.see("disabled already");
            return;
        }
        m_enabled = false;
        if (m_notification != 0) {
            m_coverage.see("disabled takes the notification away");
            removeNotification();
        }
    }

    void contextAdded(int manager) override
    {
        m_manager = manager;
        m_active = true;
    }

    void contextRemoved(int) override
    {
        if (m_notification != 0) {
            m_coverage.see(m_enabled ? "removed with a notification that is no longer raised"
                                     : "removed while disabled with a notification");
            if (m_enabled) {
                removeNotification();
            }
        }
        m_manager = 0;
        m_active = false;
    }

    void contextRaised(int) override
    {
        m_raised = true;
        if (!m_description.empty() && m_enabled) {
            m_coverage.see(m_notification != 0 ? "raised while one is shown" : "raised with description");
            createNotification();
        }
    }

    void contextLowered(int) override
    {
        m_raised = false;
        if (m_notification != 0) {
            m_coverage.see(m_enabled ? "notification removed by lowering"
                                     : "lowered while disabled with a notification");
            if (m_enabled) {
                removeNotification();
            }
        }
    }

    void pointerMoved(int, int) override {}
    void cameraMoved(int, int, int) override {}
    bool triggerEvent(int, const EventModel&) override { return false; }
    int getPreferredPosition() override { return m_position; }

    /** The end of the object. */
    void destroy()
    {
        if (m_notification != 0) {
            m_coverage.see("destroyed with a notification");
            removeNotification();
        }
    }

private:
    void createNotification() { m_notification = m_notifications.create("context", m_description); }

    void removeNotification()
    {
        m_notifications.remove(m_notification);
        m_notification = 0;
    }

    NotificationsModel& m_notifications;
    int m_position;
    ModelCoverage& m_coverage;
    bool m_raised = false;
    bool m_active = false;
    bool m_enabled = true;
    std::string m_description;
    int m_notification = 0;
    int m_manager = 0;
};

} // namespace quon::testing
