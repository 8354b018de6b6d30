// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <QItemSelectionModel>

#include <vector>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

class SceneEditor;
class SceneTreeModel;

/**
 * Keeps the selected rows of a SceneTreeModel and the selected nodes of the scene the same.
 *
 * What a view selects becomes one operation of the editor: the rows replace the scene's selection, or are added and
 * taken out. Selected nodes without a row, because a filter leaves them out, stay selected unless they are replaced.
 * The other way round showScene() brings the scene's selection to the rows, as one change in ranges. Resets of the tree
 * model deselect rows and leave the scene alone.
 */
class SceneTreeSelection : public QItemSelectionModel {
    Q_OBJECT

public:
    /** All are borrowed and must outlive the selection. */
    SceneTreeSelection(SceneTreeModel& tree, SceneEditor& editor, interaction::NodeSelectionModel& scene,
                       QObject* parent = nullptr);

    /**
     * Selects the rows of the nodes that the scene has selected.
     *
     * Tells with one selectionChanged(), with none when the rows are the same. When both selections fall into very
     * many ranges, with two: comparing all with all takes longer than clearing.
     *
     * @return whether rows were selected or deselected
     */
    bool showScene();

    using QItemSelectionModel::select;
    void select(const QItemSelection& selection, SelectionFlags command) override;
    void reset() override;

signals:
    /** The scene's selection was changed from here. */
    void edited();

private:
    void editScene(bool replace);
    std::vector<osg::NodePtr> getNodes(const QItemSelection& ranges) const;

    SceneTreeModel& m_tree;
    SceneEditor& m_editor;
    interaction::NodeSelectionModel& m_scene;
    QItemSelection m_selected;   ///< by the last change
    QItemSelection m_deselected; ///< by the last change
    bool m_following = false;    ///< the change comes from the scene or the tree model, not from the user
};

} // namespace quon::viewer
