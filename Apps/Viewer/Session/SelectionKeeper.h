// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/IdTable.h"
#include "Viewer/Model/NodeIds.h"
#include "Viewer/Model/SceneChanges.h"

#include <Interaction/SelectionVisualisation.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGNode.h>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

/**
 * Takes nodes out of a selection that the scene destroyed, as a visualisation of its model that draws nothing.
 *
 * A model keeps the handle of a destroyed node, which nobody may look behind any more. The library writes a line to
 * standard error for each such node that has a box or a wireframe; deselecting nodes before destroying them avoids it.
 */
class SelectionKeeper : public interaction::SelectionVisualisation {
public:
    /** @param model borrowed, must outlive the keeper */
    explicit SelectionKeeper(interaction::NodeSelectionModel& model);
    ~SelectionKeeper() override;

    SelectionKeeper(const SelectionKeeper&) = delete;
    SelectionKeeper& operator=(const SelectionKeeper&) = delete;

    /**
     * Takes the destroyed nodes out.
     *
     * @return whether there were any
     */
    bool sceneChanged(const SceneChanges& changes);

    void setVisible(bool) override {}
    bool isVisible() const override { return true; }
    osg::NodePtr getVisualisation() override { return osg::NullFC; }
    void addNode(const osg::NodePtr& node) override;
    void removeNode(const osg::NodePtr& node) override;
    void updateNode(const osg::NodePtr&) override {}
    bool hasNode(const osg::NodePtr& node) const override;
    void updateAllNodes() override {}
    void removeAllNodes() override;

private:
    bool forget(osg::UInt32 id);

    interaction::NodeSelectionModel& m_model;
    NodeIds m_ids;
    IdTable m_places; ///< among the ids
};

} // namespace quon::viewer
