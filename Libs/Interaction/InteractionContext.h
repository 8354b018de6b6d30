// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

namespace quon::interaction {

class InteractionEvent;
class InteractionManager;

/**
 * One layer of the interaction manager's stack: a state of the user interface that may consume events.
 *
 * The manager tells every context when it enters or leaves the stack, comes to the top or stops being there, and when
 * the manager is enabled or disabled. AbstractInteractionContext keeps the books that nearly every context needs.
 *
 * @par Ownership
 * Contexts are borrowed by the manager and destroyed by their creator through their concrete type, after they were
 * removed from the manager. There is no virtual destructor: never delete a context through this interface.
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT InteractionContext {
public:
    /**
     * Where a context wants to be in the stack: smaller values are nearer the top.
     *
     * Compared as a signed integer; any int in between is legal, only the order counts.
     */
    enum PreferredPosition : int {
        Overlay = -200,
        Modal = -100,
        Tool = 0,
        Navigation = 100,
        Background = 200,
    };

    /** Returns the manager that added the context, null when it is in no stack. */
    virtual InteractionManager* getInteractionManager() const = 0;

    /** Called when @p manager became enabled, and last of all calls when the context was added to an enabled manager.
     */
    virtual void enabled(InteractionManager* manager) = 0;

    /** Called when @p manager became disabled, and last of all calls when the context was added to a disabled manager.
     */
    virtual void disabled(InteractionManager* manager) = 0;

    /** Called when the context entered the stack of @p manager, before contextRaised(). */
    virtual void contextAdded(InteractionManager* manager) = 0;

    /** Called when the context left the stack of @p manager, after contextLowered() when it was on top. */
    virtual void contextRemoved(InteractionManager* manager) = 0;

    /** Called when the context became the top of the stack, after the context displaced from there was lowered. */
    virtual void contextRaised(InteractionManager* manager) = 0;

    /** Called while the context is still the top of the stack, before another one takes its place or it is removed. */
    virtual void contextLowered(InteractionManager* manager) = 0;

    /**
     * Called for every movement of the pointer, also while the manager is disabled or the context is not on top.
     *
     * @param position in viewport pixels, origin top left
     */
    virtual void pointerMoved(const osg::Pnt2f& position) = 0;

    /** Called for every change of the camera matrix, also while the manager is disabled or the context is not on top.
     */
    virtual void cameraMoved(const osg::Matrix& camera) = 0;

    /**
     * Offers an event that every context above has left alone.
     *
     * @return true when consumed; contexts below then do not see the event
     */
    virtual bool triggerEvent(InteractionManager* manager, const InteractionEvent& event) = 0;

    /** Returns whether the context is the top of the stack. */
    virtual bool isRaised() const = 0;

    /** Returns whether the context is in a manager's stack. */
    virtual bool isActive() const = 0;

    /**
     * Returns whether the manager that holds the context is enabled.
     *
     * Outside a stack it is what the last manager said, at first true.
     */
    virtual bool isEnabled() const = 0;

    /** Returns the stacking key that InteractionManager::addContext() compares. */
    virtual PreferredPosition getPreferredPosition() const = 0;
};

} // namespace quon::interaction
