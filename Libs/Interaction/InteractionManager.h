// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGVector.h>

#include <cstdint>
#include <list>

namespace quon::interaction {

class InteractionContext;
class InteractionEvent;

/**
 * Routes interaction events, pointer movements and camera movements to a stack of contexts.
 *
 * The front of the stack is the top, the raised context; an event goes down the stack until a context consumes it.
 *
 * @par Ownership
 * Contexts are borrowed, never deleted: remove a context before destroying it. The manager keeps a reference on the
 * visualisation root.
 * @par Changes from inside a call
 * Each walk over the stack steps to the next context after the call on the current one has returned. A context must
 * therefore not remove itself inside enabled(), disabled(), pointerMoved(), cameraMoved() or triggerEvent(). A walk
 * under way goes on while a context disables the manager or sends something else, which reaches everybody first. One
 * that removes itself inside contextAdded() or contextRaised() hears the calls that addContext() still has to make.
 * contextLowered() may change the stack, and the operation that lowers its context goes on as it began: what displaces
 * the front becomes the front, even before a context with a smaller preferred position that was added meanwhile, and
 * one that was raised meanwhile is not lowered. A context that removes itself there while it is being removed hears
 * contextRemoved() twice and must not be destroyed there.
 * @par Exceptions
 * Without memory addContext() throws std::bad_alloc before anybody is told, and nothing has changed; no other operation
 * needs memory. What a context throws passes through and ends the operation: what was done stays done, the calls that
 * would follow are left out. Remove and add such a context; after enable(), call disable() and enable().
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT InteractionManager {
public:
    /**
     * Returns the process-wide manager, created on the first call and never destroyed.
     *
     * Concurrent first calls are not supported: the host makes the first call before it starts threads that use it.
     */
    static InteractionManager* getInstance();

    /** Creates an enabled manager with an empty stack, without visualisation root, presenter mode off. */
    InteractionManager();

    InteractionManager(const InteractionManager&) = delete;
    InteractionManager& operator=(const InteractionManager&) = delete;

    /**
     * Adds one to the enable balance; the manager is enabled while the balance is not negative.
     *
     * When the balance becomes exactly 0, enabled() is called on every context, top first. Calls nest: two disable()
     * need two enable(). An enable() on an enabled manager tells nobody, and the next disable() only takes it back.
     */
    void enable();

    /**
     * Takes one from the enable balance. When it leaves 0 for -1, disabled() is called on every context, top first.
     */
    void disable();

    /**
     * Stores the node under which the host hangs selection visualisations; the manager itself attaches nothing.
     *
     * @param root gains a reference, the node stored before loses its own; null is allowed and releases
     */
    void setVisualisationRoot(const osg::NodePtr& root);

    /** Returns the visualisation root as a plain handle; no reference is added. */
    osg::NodePtr getVisualisationRoot() const;

    /**
     * Inserts @p context right behind the last context in the stack with a smaller preferred position.
     *
     * When no context has a smaller one, the new context becomes the front; so it does among equals in a stack that was
     * ordered by additions alone. Calls, in order: contextLowered() on a front that is about to be displaced,
     * contextAdded(), contextRaised() when the new context is the front, then enabled() or disabled() as the manager
     * is. A context already present is raised instead, as by raiseContext().
     *
     * @param context borrowed, must not be null (not checked)
     */
    void addContext(InteractionContext* context);

    /**
     * Puts @p context at the very front, whatever its preferred position.
     *
     * Calls contextLowered() on the front displaced, then contextRaised(). An unknown context and one that is the
     * front already are ignored.
     */
    void raiseContext(InteractionContext* context);

    /**
     * Takes @p context out of the stack; an unknown context is ignored.
     *
     * Calls, in order: contextLowered() on the context when it is the front, contextRemoved() on it, contextRaised() on
     * the new front when that is another one than before. disabled() is not called.
     */
    void removeContext(InteractionContext* context);

    /**
     * Tells every context, top first, whether or not the manager is enabled.
     *
     * @param position in viewport pixels, origin top left
     */
    void pointerMoved(const osg::Pnt2f& position);

    /** Tells every context, top first, whether or not the manager is enabled. */
    void cameraMoved(const osg::Matrix& camera);

    /**
     * Offers @p event to the contexts, top first, until one consumes it.
     *
     * The flags of the contexts (raised, active, enabled) are not consulted.
     *
     * @return true when a context consumed the event; false when none did, the stack is empty or the manager is
     * disabled, in which case nobody is asked
     */
    bool triggerEvent(const InteractionEvent& event);

    /** Stores the presenter mode, which the translation of key events consults; nobody is told. */
    void setPresenterMode(bool on);

    /** Returns what setPresenterMode() stored last, false at first. */
    bool getPresenterMode();

private:
    std::list<InteractionContext*> m_contexts;
    osg::RefPtr<osg::NodePtr> m_visualisationRoot;
    std::int32_t m_enableCount;
    bool m_presenterMode;
};

} // namespace quon::interaction
