// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <set>
#include <string>
#include <vector>

namespace quon::interaction {

class SelectionVisualisation;

/**
 * One named set of selected scene nodes, and the visualisations that mirror it.
 *
 * Every change reaches each attached visualisation before the operation returns, in the order of attachment; a
 * visualisation that is attached twice is called twice.
 *
 * @par Ownership
 * Visualisations are borrowed: remove one before destroying it. Destroying a model, copying or moving it calls no
 * visualisation; what they show stays. Nodes are held as plain handles, without a reference: a node that the scene
 * destroys while it is selected stays in the set as a stale handle until it is removed or the selection is cleared. The
 * model compares handles and never looks behind them. A null handle is selected like any other.
 * @par Arguments
 * A node may be a reference into getSelection(). A vector of nodes must not change during the call (not checked).
 * @par Reentrancy
 * A visualisation must not attach or detach visualisations of the same model from inside a call (not checked). It may
 * read the model, and it may change the selection; the visualisations after it then hear of the inner change first
 * and of the outer change, which goes on, afterwards.
 * @par Exceptions
 * Without memory for a node there is std::bad_alloc before anybody is told of it. What a visualisation throws passes
 * through: the set has changed already, or not yet where nodes are removed, and the visualisations behind it are not
 * told. Deselecting and selecting the node brings all into line, setSelection() the whole; a visualisation that
 * addVisualisation() could not fill is attached: detach and attach it. Deselecting needs no memory.
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT NodeSelectionModel {
public:
    /** Creates a model without nodes and visualisations. */
    explicit NodeSelectionModel(const std::string& name);

    /** Returns the name that the model was created with; the model does not use it. */
    const std::string& getName() const { return m_name; }

    /** Returns the selected nodes, ordered by handle: neither in order of selection nor of the scene. */
    const std::set<osg::NodePtr>& getSelection() const { return m_selection; }

    /**
     * Selects @p node.
     *
     * Inserts it, then calls addNode() on each visualisation; when it is selected already, calls updateNode() instead.
     */
    void addNode(const osg::NodePtr& node);

    /**
     * Selects @p nodes in their order, up to the first that is selected already.
     *
     * Does for each node what addNode() does, and returns after the first that is selected already, be it by an earlier
     * entry of @p nodes: that one is reported with updateNode(), the nodes behind it are neither selected nor reported.
     */
    void addNodes(const std::vector<osg::NodePtr>& nodes);

    /**
     * Deselects @p node.
     *
     * Calls removeNode() on each visualisation while the node is still selected, then erases it.
     *
     * @param node a node that is not selected is ignored
     */
    void removeNode(const osg::NodePtr& node);

    /** Does for each of @p nodes, in their order, what removeNode() does; nodes that are not selected are ignored. */
    void removeNodes(const std::vector<osg::NodePtr>& nodes);

    /**
     * Tells that @p node changed: its shape, its place or its state.
     *
     * Calls updateNode() on each visualisation, also when the node is not selected.
     */
    void updateNode(const osg::NodePtr& node);

    /** Deselects everything: empties the set, then calls removeAllNodes() on each visualisation. */
    void clearSelection();

    /**
     * Selects @p node and nothing else.
     *
     * Calls removeAllNodes() on each visualisation while the old selection is still there, replaces the selection, then
     * calls addNode() on each visualisation.
     */
    void setSelection(const osg::NodePtr& node);

    /**
     * Selects @p nodes and nothing else.
     *
     * Calls removeAllNodes() on each visualisation while the old selection is still there and empties the set; then for
     * each node in the order of the vector inserts it and calls addNode() on each visualisation. A node that occurs
     * twice is reported twice. An empty vector deselects everything.
     */
    void setSelection(const std::vector<osg::NodePtr>& nodes);

    /**
     * Attaches @p visualisation behind the others and makes it show the current selection.
     *
     * Calls removeAllNodes() on it, then addNode() for each selected node in the order of getSelection(). Attaching the
     * same visualisation again is legal and adds a second entry.
     *
     * @param visualisation borrowed, must not be null (not checked)
     */
    void addVisualisation(SelectionVisualisation* visualisation);

    /**
     * Detaches @p visualisation.
     *
     * Calls removeAllNodes() on it, also when it was never attached, then erases its first entry.
     *
     * @param visualisation must not be null (not checked)
     */
    void removeVisualisation(SelectionVisualisation* visualisation);

    /**
     * Calls updateAllNodes() on @p visualisation.
     *
     * @param visualisation need not be attached, must not be null (not checked)
     */
    void updateVisualisation(SelectionVisualisation* visualisation);

    /** Calls updateAllNodes() on each visualisation. */
    void updateVisualisations();

private:
    std::string m_name;
    std::set<osg::NodePtr> m_selection;
    std::vector<SelectionVisualisation*> m_visualisations;
};

} // namespace quon::interaction
