// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>
#include <Interaction/InteractionTool.h>

#include <string>

namespace quon::notification {
class NotificationManager;
class TextNotification;
} // namespace quon::notification

namespace quon::interaction {

/**
 * Keeps a tool's activation, shows a description in the notification area while the tool is active, and consumes
 * events.
 *
 * The defaults differ on purpose: an event operation that is not overridden still consumes the event, while
 * setToolMode() refuses every mode. The defaults do not use the context, which may be null.
 *
 * @par Ownership
 * The notification manager is borrowed. A notification belongs to it; the tool removes the one that it shows.
 * @par Exceptions
 * What shows the description may throw std::bad_alloc; all but the notification is then as without it, and
 * setDescription() with the same text shows it while active. What hides it needs no memory.
 */
class INTERACTION_EXPORT AbstractInteractionTool : public InteractionTool {
public:
    /** Creates an inactive tool that has no description and shows nothing. */
    AbstractInteractionTool();

    AbstractInteractionTool(const AbstractInteractionTool&) = delete;
    AbstractInteractionTool& operator=(const AbstractInteractionTool&) = delete;

    /** Removes the notification when one is shown. Not virtual: destroy a tool through its concrete type. */
    ~AbstractInteractionTool();

    /**
     * Changes the text shown while the tool is active.
     *
     * A notification that is shown changes its text, or is removed when @p text is empty. When none is shown, one is
     * created if the tool is active and @p text is not empty.
     */
    void setDescription(const std::string& text);

    /**
     * Changes the text and shows it at once, whether or not the tool is active.
     *
     * A notification that is shown changes its text, or is removed when @p text is empty. When none is shown, one is
     * created unless @p text is empty. Activating the tool afterwards shows the text a second time; the first
     * notification then stays.
     */
    void displayDescription(const std::string& text);

    /** Returns false: every mode is refused. */
    bool setToolMode(ToolInteractionContext* context, const std::string& mode) override;

    /** Marks the tool active and shows its description unless that is empty. Does nothing when active already. */
    void activateTool(ToolInteractionContext* context) override;

    /** Marks the tool inactive and removes the notification. Does nothing when the tool is not active. */
    void deactivateTool(ToolInteractionContext* context) override;

    bool isActive() const override;

    /** Returns true: consumed. */
    bool startTool(ToolInteractionContext* context, const std::string& hint) override;

    /** Returns true: consumed. */
    bool processTool(ToolInteractionContext* context, const std::string& hint) override;

    /** Returns true: consumed. */
    bool stopTool(ToolInteractionContext* context, const std::string& hint) override;

    /** Returns true: consumed. */
    bool triggerTool(ToolInteractionContext* context, const std::string& hint) override;

    /** Returns true: consumed. */
    bool hoverTool(ToolInteractionContext* context, const std::string& hint) override;

    /** Returns true: consumed. */
    bool stopHoverTool(ToolInteractionContext* context, const std::string& hint) override;

    /** Returns whether @p hint is exactly "select" or "toggle". */
    bool isPickHint(const std::string& hint) const override;

private:
    void createNotification();
    void removeNotification();
    void changeDescription(const std::string& text, bool showWhenHidden);

    bool m_active;
    std::string m_description;
    std::string m_notificationName;
    notification::TextNotification* m_notification;
    notification::NotificationManager* m_notificationManager;
};

} // namespace quon::interaction
