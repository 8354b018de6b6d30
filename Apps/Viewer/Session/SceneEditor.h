// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <functional>
#include <vector>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

/**
 * Every change of selection, visibility and locks that the user can make.
 *
 * Tools, panels and commands call the operations here and nothing else, so that each change is one step of the same
 * history. Null handles among the nodes are ignored, and so are changes that change nothing.
 */
class SceneEditor {
public:
    /** @param selection borrowed, must outlive the editor */
    explicit SceneEditor(interaction::NodeSelectionModel& selection);

    SceneEditor(const SceneEditor&) = delete;
    SceneEditor& operator=(const SceneEditor&) = delete;

    /** Sets the root that isolate() and showAll() work below, and forgets the history. Null is none. */
    void setRoot(const osg::NodePtr& root);

    /** @param changed called after every change of visibility or locks */
    void setStateChanged(std::function<void()> changed);

    /** Makes @p nodes the selection; an empty list clears it. */
    void select(const std::vector<osg::NodePtr>& nodes);

    /** Selects @p nodes as well. */
    void add(const std::vector<osg::NodePtr>& nodes);

    /** Takes @p nodes out of the selection. */
    void remove(const std::vector<osg::NodePtr>& nodes);

    /** Selects @p node as well, or takes it out when it is selected. */
    void toggle(const osg::NodePtr& node);

    /** Hides @p nodes with all that is below them. */
    void hide(const std::vector<osg::NodePtr>& nodes);

    /** Hides everything but @p nodes, what is below them and the way to them; shows these where they were hidden. */
    void isolate(const std::vector<osg::NodePtr>& nodes);

    /** Shows every hidden node below the root again. */
    void showAll();

    /** Locks or unlocks @p nodes. */
    void setLocked(const std::vector<osg::NodePtr>& nodes, bool locked);

private:
    void stateChanged();

    interaction::NodeSelectionModel& m_selection;
    osg::NodePtr m_root;
    std::function<void()> m_stateChanged;
};

} // namespace quon::viewer
