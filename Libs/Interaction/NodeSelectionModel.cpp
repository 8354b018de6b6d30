// SPDX-License-Identifier: MIT
#include <Interaction/NodeSelectionModel.h>

#include <Interaction/SelectionVisualisation.h>

#include "SpareNodes.h"

#include <algorithm>

namespace quon::interaction {

namespace {

// What a hundred thousand nodes leave that are deselected: 5 MB.
using SpareElements = SpareNodes<std::set<osg::NodePtr>, 100000>;

// The node comes by value: the caller's reference may lead into the set, which a visualisation may change meanwhile.
void callEach(const std::vector<SelectionVisualisation*>& visualisations,
              void (SelectionVisualisation::*operation)(const osg::NodePtr&), osg::NodePtr node)
{
    for (SelectionVisualisation* visualisation : visualisations) {
        (visualisation->*operation)(node);
    }
}

void callEach(const std::vector<SelectionVisualisation*>& visualisations, void (SelectionVisualisation::*operation)())
{
    for (SelectionVisualisation* visualisation : visualisations) {
        (visualisation->*operation)();
    }
}

} // namespace

NodeSelectionModel::NodeSelectionModel(const std::string& name)
    : m_name(name)
{}

void NodeSelectionModel::addNode(const osg::NodePtr& node)
{
    const bool isNew = SpareElements::instance().insert(m_selection, node);
    callEach(m_visualisations, isNew ? &SelectionVisualisation::addNode : &SelectionVisualisation::updateNode, node);
}

void NodeSelectionModel::addNodes(const std::vector<osg::NodePtr>& nodes)
{
    for (const osg::NodePtr& node : nodes) {
        if (!SpareElements::instance().insert(m_selection, node)) {
            // The first node that is selected already ends the walk, on purpose.
            callEach(m_visualisations, &SelectionVisualisation::updateNode, node);
            return;
        }
        callEach(m_visualisations, &SelectionVisualisation::addNode, node);
    }
}

void NodeSelectionModel::removeNode(const osg::NodePtr& node)
{
    if (m_selection.find(node) == m_selection.end()) {
        return;
    }
    const osg::NodePtr removed = node;
    callEach(m_visualisations, &SelectionVisualisation::removeNode, removed);
    // Looked up again: a visualisation may have deselected the node itself.
    const auto position = m_selection.find(removed);
    if (position != m_selection.end()) {
        SpareElements::instance().erase(m_selection, position);
    }
}

void NodeSelectionModel::removeNodes(const std::vector<osg::NodePtr>& nodes)
{
    for (const osg::NodePtr& node : nodes) {
        removeNode(node);
    }
}

void NodeSelectionModel::updateNode(const osg::NodePtr& node)
{
    callEach(m_visualisations, &SelectionVisualisation::updateNode, node);
}

void NodeSelectionModel::clearSelection()
{
    // First the set, then the visualisations: the other way round than setSelection(), on purpose.
    SpareElements::clear(m_selection);
    callEach(m_visualisations, &SelectionVisualisation::removeAllNodes);
}

void NodeSelectionModel::setSelection(const osg::NodePtr& node)
{
    const osg::NodePtr selected = node;
    callEach(m_visualisations, &SelectionVisualisation::removeAllNodes);
    SpareElements::clear(m_selection);
    SpareElements::instance().insert(m_selection, selected);
    callEach(m_visualisations, &SelectionVisualisation::addNode, selected);
}

void NodeSelectionModel::setSelection(const std::vector<osg::NodePtr>& nodes)
{
    callEach(m_visualisations, &SelectionVisualisation::removeAllNodes);
    SpareElements::clear(m_selection);
    for (const osg::NodePtr& node : nodes) {
        SpareElements::instance().insert(m_selection, node);
        // Reported also when it was inserted before: the visualisation takes the second report for a refresh.
        callEach(m_visualisations, &SelectionVisualisation::addNode, node);
    }
}

void NodeSelectionModel::addVisualisation(SelectionVisualisation* visualisation)
{
    m_visualisations.push_back(visualisation);
    visualisation->removeAllNodes();
    // Looks up the next node after each call: the visualisation may change the selection.
    for (auto next = m_selection.begin(); next != m_selection.end();) {
        const osg::NodePtr node = *next;
        visualisation->addNode(node);
        next = m_selection.upper_bound(node);
    }
}

void NodeSelectionModel::removeVisualisation(SelectionVisualisation* visualisation)
{
    visualisation->removeAllNodes();
    const auto first = std::find(m_visualisations.begin(), m_visualisations.end(), visualisation);
    if (first != m_visualisations.end()) {
        m_visualisations.erase(first);
    }
}

void NodeSelectionModel::updateVisualisation(SelectionVisualisation* visualisation)
{
    visualisation->updateAllNodes();
}

void NodeSelectionModel::updateVisualisations()
{
    callEach(m_visualisations, &SelectionVisualisation::updateAllNodes);
}

} // namespace quon::interaction
