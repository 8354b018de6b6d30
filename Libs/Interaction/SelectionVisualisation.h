// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

namespace quon::interaction {

/**
 * What a NodeSelectionModel tells about its selection, and what shows that selection in the viewport.
 *
 * The model calls addNode(), removeNode(), updateNode(), updateAllNodes() and removeAllNodes(); the host places the
 * node of getVisualisation() in its rendered scene and switches the whole with setVisible().
 *
 * @par Ownership
 * The host owns a visualisation. A model borrows the pointer: remove the visualisation from every model before
 * destroying it.
 * @par Nodes
 * A node is null or exists (not checked): the handle of a destroyed node must not be passed. A model whose selected
 * node was destroyed still has such a handle; clearSelection() and setSelection() of the model end the tracking without
 * passing it on.
 * @par Reentrancy
 * An implementation must not attach a visualisation to the calling model, nor detach one, from inside a call.
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT SelectionVisualisation {
public:
    /** Shows or hides the whole visualisation; the tracked nodes stay tracked while it is hidden. */
    virtual void setVisible(bool visible) = 0;

    /** Returns true when the visualisation as a whole is shown, whatever it tracks. */
    virtual bool isVisible() const = 0;

    /**
     * Returns the root node of everything that the visualisation draws.
     *
     * Nothing in the library attaches it: the host adds it to its rendered scene, below a node without transformation.
     * No reference is added for the caller; the visualisation keeps its own.
     */
    virtual osg::NodePtr getVisualisation() = 0;

    /**
     * Tracks @p node and shows it; a node that is tracked already is refreshed.
     *
     * @param node node of the scene; null is ignored
     */
    virtual void addNode(const osg::NodePtr& node) = 0;

    /**
     * Stops tracking @p node and no longer shows it.
     *
     * A model calls it while the node is still part of its selection.
     *
     * @param node null is ignored, a node that is not tracked is ignored
     */
    virtual void removeNode(const osg::NodePtr& node) = 0;

    /**
     * Follows a change of @p node: its shape, its place or its state.
     *
     * A model passes on what the host reports, also for nodes outside its selection.
     *
     * @param node null is ignored, a node that is not tracked is ignored
     */
    virtual void updateNode(const osg::NodePtr& node) = 0;

    /** Returns true when @p node is tracked, shown or not; false for null. */
    virtual bool hasNode(const osg::NodePtr& node) const = 0;

    /** Follows changes of every tracked node, as updateNode() does for one. */
    virtual void updateAllNodes() = 0;

    /** Stops tracking all nodes and shows none. */
    virtual void removeAllNodes() = 0;

    virtual ~SelectionVisualisation() = default;
};

} // namespace quon::interaction
