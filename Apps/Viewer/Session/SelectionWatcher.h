// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/SelectionVisualisation.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

namespace quon::viewer {

/**
 * Notes that a selection changed, by listening to its model as a visualisation that draws nothing.
 *
 * Whoever changes the selection, and however often within one operation: asking once afterwards is enough. While very
 * many nodes are selected or deselected, it gathers the changes of the scene now and then.
 */
class SelectionWatcher : public interaction::SelectionVisualisation {
public:
    /** Returns whether nodes were selected or deselected since the last call. */
    bool takeChanged();

    void setVisible(bool) override {}
    bool isVisible() const override { return true; }
    osg::NodePtr getVisualisation() override { return osg::NullFC; }
    void addNode(const osg::NodePtr&) override { noteChange(); }
    void removeNode(const osg::NodePtr&) override { noteChange(); }
    void updateNode(const osg::NodePtr&) override {}
    bool hasNode(const osg::NodePtr&) const override { return false; }
    void updateAllNodes() override {}
    void removeAllNodes() override { m_changed = true; }

private:
    void noteChange();

    bool m_changed = false;
    int m_changesSinceGathering = 0;
};

} // namespace quon::viewer
