// SPDX-License-Identifier: MIT
#include <Interaction/InteractionManager.h>

#include <Interaction/InteractionContext.h>
#include <Interaction/InteractionEvent.h>

#include <algorithm>
#include <iterator>

namespace quon::interaction {

InteractionManager* InteractionManager::getInstance()
{
    // A pointer that is never deleted: contexts with static storage may still talk to the manager at process exit.
    static InteractionManager* instance = nullptr;
    if (instance == nullptr) {
        instance = new InteractionManager;
    }
    return instance;
}

InteractionManager::InteractionManager()
    : m_enableCount(0)
    , m_presenterMode(false)
{}

void InteractionManager::enable()
{
    ++m_enableCount;
    // Only the way back from -1 is news. A surplus enable() is remembered, and it takes a disable() to use it up.
    if (m_enableCount == 0) {
        for (InteractionContext* context : m_contexts) {
            context->enabled(this);
        }
    }
}

void InteractionManager::disable()
{
    --m_enableCount;
    if (m_enableCount == -1) {
        for (InteractionContext* context : m_contexts) {
            context->disabled(this);
        }
    }
}

void InteractionManager::setVisualisationRoot(const osg::NodePtr& root)
{
    // The new root may live by the old one alone: it gains its reference before the old one loses its own.
    const osg::RefPtr<osg::NodePtr> newRoot(root);
    m_visualisationRoot = newRoot;
}

osg::NodePtr InteractionManager::getVisualisationRoot() const
{
    return m_visualisationRoot.get();
}

void InteractionManager::addContext(InteractionContext* context)
{
    if (std::find(m_contexts.begin(), m_contexts.end(), context) != m_contexts.end()) {
        raiseContext(context);
        return;
    }

    // Before anybody is told: without memory nothing happens.
    std::list<InteractionContext*> added(1, context);

    const int preferredPosition = context->getPreferredPosition();
    auto position = m_contexts.begin();
    for (auto it = m_contexts.begin(); it != m_contexts.end(); ++it) {
        // The last smaller one counts, not the first larger one: raising may have put larger values in front.
        if ((*it)->getPreferredPosition() < preferredPosition) {
            position = std::next(it);
        }
    }

    const bool becomesFront = position == m_contexts.begin();
    if (becomesFront) {
        if (!m_contexts.empty()) {
            m_contexts.front()->contextLowered(this);
        }
        // Asked afresh, in case the lowered context has changed the stack.
        if (std::find(m_contexts.begin(), m_contexts.end(), context) != m_contexts.end()) {
            raiseContext(context);
            return;
        }
        position = m_contexts.begin();
    }
    m_contexts.splice(position, added);

    context->contextAdded(this);
    if (becomesFront) {
        context->contextRaised(this);
    }
    if (m_enableCount < 0) {
        context->disabled(this);
    } else {
        context->enabled(this);
    }
}

void InteractionManager::raiseContext(InteractionContext* context)
{
    if (std::find(m_contexts.begin(), m_contexts.end(), context) == m_contexts.end() || m_contexts.front() == context) {
        return;
    }

    m_contexts.front()->contextLowered(this);

    // Asked afresh, in case the lowered context has changed the stack.
    const auto position = std::find(m_contexts.begin(), m_contexts.end(), context);
    if (position == m_contexts.end()) {
        return;
    }
    // Moved rather than removed and inserted: a walk that stands on the context stays valid. The preferred position
    // does not count here.
    m_contexts.splice(m_contexts.begin(), m_contexts, position);
    context->contextRaised(this);
}

void InteractionManager::removeContext(InteractionContext* context)
{
    const InteractionContext* oldFront = m_contexts.empty() ? nullptr : m_contexts.front();

    if (std::find(m_contexts.begin(), m_contexts.end(), context) != m_contexts.end()) {
        if (context == oldFront) {
            context->contextLowered(this);
        }
        m_contexts.remove(context);
        context->contextRemoved(this);
    }

    if (m_contexts.empty()) {
        return;
    }
    InteractionContext* newFront = m_contexts.front();
    if (newFront != oldFront) {
        newFront->contextRaised(this);
    }
}

void InteractionManager::pointerMoved(const osg::Pnt2f& position)
{
    for (InteractionContext* context : m_contexts) {
        context->pointerMoved(position);
    }
}

void InteractionManager::cameraMoved(const osg::Matrix& camera)
{
    for (InteractionContext* context : m_contexts) {
        context->cameraMoved(camera);
    }
}

bool InteractionManager::triggerEvent(const InteractionEvent& event)
{
    if (m_enableCount < 0) {
        return false;
    }
    for (InteractionContext* context : m_contexts) {
        if (context->triggerEvent(this, event)) {
            return true;
        }
    }
    return false;
}

void InteractionManager::setPresenterMode(bool on)
{
    m_presenterMode = on;
}

bool InteractionManager::getPresenterMode()
{
    return m_presenterMode;
}

} // namespace quon::interaction
