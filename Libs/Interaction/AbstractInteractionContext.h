// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionContext.h>
#include <Interaction/InteractionExport.h>

#include <string>

namespace quon::notification {
class NotificationManager;
class TextNotification;
} // namespace quon::notification

namespace quon::interaction {

/**
 * Keeps the books that nearly every context needs, and shows a description in the notification area while on top.
 *
 * @par Life
 * The owner creates the context and adds it to a manager: contextAdded(), contextRaised() when it is on top, then
 * enabled() or disabled(). Other contexts that come and go raise and lower it. Removed from the manager it hears
 * contextLowered() when it was on top, then contextRemoved(); then it may be added again or destroyed.
 * @par Ownership
 * The interaction manager and the notification manager are borrowed. A notification belongs to the notification
 * manager; the context removes the one that it shows. Managers passed to the operations may be null.
 * @par Exceptions
 * What shows the description may throw std::bad_alloc; all but the notification is then as without it, and
 * setDescription() with the same text shows it while raised. What hides it needs no memory.
 */
class INTERACTION_EXPORT AbstractInteractionContext : public InteractionContext {
public:
    /** Creates a context that is neither raised nor active, is enabled, has no description and shows nothing. */
    explicit AbstractInteractionContext(PreferredPosition position);

    AbstractInteractionContext(const AbstractInteractionContext&) = delete;
    AbstractInteractionContext& operator=(const AbstractInteractionContext&) = delete;

    /**
     * Removes the notification when one is shown. Not virtual: destroy a context through its concrete type.
     *
     * The context is not taken out of its manager: remove it there first.
     */
    ~AbstractInteractionContext();

    /**
     * Changes the text shown in the notification area.
     *
     * A notification that is shown changes its text, or is removed when @p text is empty. When none is shown, one is
     * created if the context is raised and @p text is not empty, also while the manager is disabled.
     */
    void setDescription(const std::string& text);

    /** Returns the text shown in the notification area, shown or not. */
    std::string getDescription() const;

    /** Changes the stacking key for later additions; a context already in a stack stays where it is. */
    void setPreferredPosition(PreferredPosition position);

    InteractionManager* getInteractionManager() const override;

    /**
     * Marks the context enabled and, when it is active and has a description, shows it, on top or not.
     *
     * Does nothing when the context is enabled already. A notification that is still shown stays, no longer tracked.
     */
    void enabled(InteractionManager* manager) override;

    /** Marks the context disabled and removes the notification. Does nothing when it is disabled already. */
    void disabled(InteractionManager* manager) override;

    /** Remembers @p manager and marks the context active. */
    void contextAdded(InteractionManager* manager) override;

    /** Removes the notification while enabled, forgets the manager and marks the context inactive; raised stays. */
    void contextRemoved(InteractionManager* manager) override;

    /**
     * Marks the context raised and, while enabled, shows the description unless it is empty.
     *
     * A notification that is still shown stays, no longer tracked.
     */
    void contextRaised(InteractionManager* manager) override;

    /** Marks the context not raised and removes the notification while enabled. */
    void contextLowered(InteractionManager* manager) override;

    /** Does nothing. */
    void pointerMoved(const osg::Pnt2f& position) override;

    /** Does nothing. */
    void cameraMoved(const osg::Matrix& camera) override;

    /** Returns false: nothing is consumed. */
    bool triggerEvent(InteractionManager* manager, const InteractionEvent& event) override;

    bool isRaised() const override;
    bool isActive() const override;
    bool isEnabled() const override;
    PreferredPosition getPreferredPosition() const override;

private:
    void createNotification();
    void removeNotification();

    bool m_raised;
    bool m_active;
    bool m_enabled;
    PreferredPosition m_preferredPosition;
    std::string m_description;
    std::string m_notificationName;
    notification::TextNotification* m_notification;
    notification::NotificationManager* m_notificationManager;
    InteractionManager* m_interactionManager;
};

} // namespace quon::interaction
