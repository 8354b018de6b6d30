// SPDX-License-Identifier: MIT
#include "Viewer/Session/SelectionKeeper.h"

#include <Interaction/NodeSelectionModel.h>

#include <vector>

namespace quon::viewer {

SelectionKeeper::SelectionKeeper(interaction::NodeSelectionModel& model)
    : m_model(model)
{
    m_model.addVisualisation(this);
}

SelectionKeeper::~SelectionKeeper()
{
    m_model.removeVisualisation(this);
}

bool SelectionKeeper::sceneChanged(const SceneChanges& changes)
{
    if (m_nodes.empty()) {
        return false;
    }
    bool any = false;
    for (const osg::UInt32 id : changes.getDestroyed()) {
        any = m_nodes.erase(id) > 0 || any;
    }
    if (any) {
        std::vector<osg::NodePtr> left;
        left.reserve(m_nodes.size());
        for (const auto& entry : m_nodes) {
            left.push_back(entry.second);
        }
        // Ends the tracking of all without passing on a handle.
        m_model.setSelection(left);
    }
    return any;
}

void SelectionKeeper::addNode(const osg::NodePtr& node)
{
    if (node != osg::NullFC) {
        m_nodes[osg::getContainerId(node)] = node;
    }
}

void SelectionKeeper::removeNode(const osg::NodePtr& node)
{
    if (node != osg::NullFC) {
        m_nodes.erase(osg::getContainerId(node));
    }
}

bool SelectionKeeper::hasNode(const osg::NodePtr& node) const
{
    return node != osg::NullFC && m_nodes.count(osg::getContainerId(node)) != 0;
}

} // namespace quon::viewer
