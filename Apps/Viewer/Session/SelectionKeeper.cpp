// SPDX-License-Identifier: MIT
#include "Viewer/Session/SelectionKeeper.h"

#include <Interaction/NodeSelectionModel.h>

#include <cstdint>

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
    if (m_ids.empty()) {
        return false;
    }
    bool any = false;
    for (const osg::UInt32 id : changes.getDestroyed()) {
        any = forget(id) || any;
    }
    if (any) {
        // Ends the tracking of all without passing on a handle.
        m_model.setSelection(findNodes(m_ids, osg::NullFC));
    }
    return any;
}

void SelectionKeeper::addNode(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return;
    }
    const osg::UInt32 id = osg::getContainerId(node);
    if (m_places.find(id) == IdTable::None) {
        m_places.set(id, static_cast<std::uint32_t>(m_ids.size()));
        m_ids.push_back(id);
    }
}

void SelectionKeeper::removeNode(const osg::NodePtr& node)
{
    if (node != osg::NullFC) {
        forget(osg::getContainerId(node));
    }
}

bool SelectionKeeper::hasNode(const osg::NodePtr& node) const
{
    return node != osg::NullFC && m_places.find(osg::getContainerId(node)) != IdTable::None;
}

void SelectionKeeper::removeAllNodes()
{
    m_ids.clear();
    m_places.clear();
}

bool SelectionKeeper::forget(const osg::UInt32 id)
{
    const std::uint32_t place = m_places.find(id);
    if (place == IdTable::None) {
        return false;
    }
    m_ids[place] = m_ids.back();
    m_places.set(m_ids[place], place);
    m_ids.pop_back();
    m_places.erase(id);
    return true;
}

} // namespace quon::viewer
