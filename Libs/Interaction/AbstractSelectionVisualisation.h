// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>
#include <Interaction/SelectionVisualisation.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <map>

namespace quon::interaction {

/**
 * Keeps one visualisation node per selected scene node under a root node of its own.
 *
 * The base decides when a visualisation node is created, refreshed, shown, hidden and removed; what it looks like is
 * left to the hooks createVisualisation(), removeVisualisation(), updateVisualisation() and
 * shouldHaveVisualization(). The host places the root, obtained with getVisualisation(), in its rendered scene.
 *
 * A node is tracked from addNode() until removeNode() or removeAllNodes(). A tracked node has a shown visualisation
 * node, a hidden one, or none: none when it was added while the whole was hidden or while it was filtered out, until an
 * addNode() or updateNode() creates one.
 *
 * @par Shown and hidden
 * A node is shown when its `TravMask` is exactly 0xFFFFFFFF; partial masks count as hidden. The class itself writes
 * only 0xFFFFFFFF and 0.
 *
 * @par Root
 * A subclass and a host may give the root another core and more children: this class looks only at its children and its
 * `TravMask`. removeAllNodes() takes all children out.
 *
 * @par Ownership
 * Selected nodes are tracked by container id, without a reference: a scene may destroy them while they are selected.
 * The instance holds one reference to the root and one to every visualisation node; the root, as the parent, holds a
 * second one to each. Both are dropped when the node is removed, always after removeVisualisation() where that runs.
 * A reference that the result of createVisualisation() already carries belongs to the subclass and is neither adopted
 * nor released.
 *
 * @par Hooks
 * All calls to own operations and hooks go through the virtual table. A hook may ask this object (hasNode(),
 * isVisible()) and may add other nodes. createVisualisation() and updateVisualisation() may remove nodes, too, their
 * own among them; the other hooks must not (not checked). What is created for a node that createVisualisation() removes
 * goes again through removeVisualisation() when updateNode() asked for it; addNode() adds the node all the same. Nodes
 * that a hook adds during removeAllNodes() go with the rest, those with smaller ids without removeVisualisation().
 *
 * @par Exceptions
 * Without memory, and after an exception of createVisualisation(), addNode() and updateNode() leave the node without a
 * visualisation node, and untracked where addNode() was to track it. setVisible() and updateAllNodes() stop there:
 * updateAllNodes() goes through all again. Removing and hiding need no memory; let removeVisualisation() throw nothing.
 *
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT AbstractSelectionVisualisation : public SelectionVisualisation {
public:
    /** Creates the root: a visible node with a group core and no children. */
    AbstractSelectionVisualisation();

    AbstractSelectionVisualisation(const AbstractSelectionVisualisation&) = delete;
    AbstractSelectionVisualisation& operator=(const AbstractSelectionVisualisation&) = delete;

    /**
     * Releases the visualisation nodes, then the root.
     *
     * Calls no hook and detaches nothing: where the host still holds the root in its scene, the root and the
     * visualisation nodes under it stay there.
     */
    ~AbstractSelectionVisualisation() override;

    /**
     * Shows or hides the whole visualisation through the root's `TravMask`.
     *
     * Nothing changes and nothing is refreshed when it already is as wanted. Hiding leaves the visualisation nodes'
     * own masks alone. Showing then calls updateNode() for every tracked node in ascending id order; for each one that
     * no longer exists, with or without a visualisation node, it writes
     * "AbstractSelectionVisualisation::setVisible: invalid node pointer!" and a line end to standard error instead and
     * keeps the entry.
     */
    void setVisible(bool visible) override;

    /** Returns whether the root is shown. */
    bool isVisible() const override;

    /** Returns the root; no reference is added. */
    osg::NodePtr getVisualisation() override;

    /**
     * Tracks @p node and gives it a visualisation node, or refreshes the one it has.
     *
     * Asks isVisible() in every case, and shouldHaveVisualization() only when that is true. While the whole
     * visualisation is hidden or shouldHaveVisualization() is false, the node is only tracked; one that is tracked
     * already is left as it is. Otherwise an existing visualisation node is passed to updateVisualisation() with its
     * mask untouched; a missing one is made by createVisualisation(), added to the root unless the hook put it there
     * already, and shown or hidden as the node itself is.
     *
     * @param node null is ignored
     */
    void addNode(const osg::NodePtr& node) override;

    /**
     * Ends the tracking of @p node, visible or not.
     *
     * Calls removeVisualisation() while the visualisation node is still under the root and tracked, then removes it
     * from the root and releases it. A node tracked without a visualisation node is dropped without calling a hook.
     *
     * @param node null and unknown nodes are ignored
     */
    void removeNode(const osg::NodePtr& node) override;

    /**
     * Refreshes @p node after it changed.
     *
     * Ignored while the whole visualisation is hidden: setVisible(true) catches up. For a shown node that
     * shouldHaveVisualization() accepts, a missing visualisation node is made by createVisualisation(), added to the
     * root (one that is there already moves to the end, unlike with addNode()) and shown; an existing one is shown and
     * then passed to updateVisualisation(). For any other node an existing visualisation node is hidden and nothing
     * else is called.
     *
     * @param node null and unknown nodes are ignored
     */
    void updateNode(const osg::NodePtr& node) override;

    /**
     * Returns whether @p node is tracked, with or without a visualisation node.
     *
     * @param node false for null
     */
    bool hasNode(const osg::NodePtr& node) const override;

    /**
     * Calls updateNode() for every tracked node in ascending id order.
     *
     * Ignored while the whole visualisation is hidden. A node that no longer exists is skipped without a message and
     * stays tracked.
     */
    void updateAllNodes() override;

    /**
     * Ends the tracking of all nodes, visible or not.
     *
     * Calls removeVisualisation() for every visualisation node in ascending id order of the selected nodes, then
     * removes every child of the root, whoever put it there, and releases the visualisation nodes. For a visualisation
     * node whose selected node no longer exists it writes
     * "AbstractSelectionVisualisation::removeAllNodes: invalid node pointer (%u)!" with the id and a line end to
     * standard error instead of calling the hook; an entry without a visualisation node is dropped without a word.
     */
    void removeAllNodes() override;

    /**
     * Returns a visualisation node fitted to @p node, new or reused.
     *
     * Called from addNode() and updateNode() while the visualisation is visible and shouldHaveVisualization() is true;
     * the base then holds the result, adds it to the root (it may be there already) and sets its `TravMask`.
     * updateVisualisation() is not called for a result.
     *
     * @return must not be null (not checked)
     */
    virtual osg::NodePtr createVisualisation(const osg::NodePtr& node) = 0;

    /**
     * Says goodbye to @p visualisation, the visualisation node of @p node.
     *
     * Called from removeNode() and removeAllNodes() while it is still under the root and tracked; right afterwards the
     * base detaches and releases it. Called as well for a result of createVisualisation() that there was no memory to
     * put under the root. Left out where @p node no longer exists. A kind that keeps the visualisation node
     * for reuse holds a reference of its own. Doing nothing is a valid implementation.
     */
    virtual void removeVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) = 0;

    /**
     * Refits @p visualisation to the current state of @p node.
     *
     * Called from addNode() and updateNode() for a visualisation node that exists, only while the visualisation is
     * visible and shouldHaveVisualization() is true; by updateNode() for a shown node only.
     */
    virtual void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) = 0;

    /**
     * Returns whether @p node is to be drawn; the default is true for every node.
     *
     * False keeps a node tracked without a visualisation node, or hides the one it has at its next update. Asked by
     * addNode() while the visualisation is visible, and by updateNode() when the node itself is shown as well.
     */
    virtual bool shouldHaveVisualization(const osg::NodePtr& node) const;

private:
    void attach(const osg::NodePtr& visualisation);

    osg::RefPtr<osg::NodePtr> m_visualisation;
    // By container id of the selected node; null while it is tracked without a visualisation node.
    std::map<unsigned int, osg::RefPtr<osg::NodePtr>> m_nodeVisualisations;
};

} // namespace quon::interaction
