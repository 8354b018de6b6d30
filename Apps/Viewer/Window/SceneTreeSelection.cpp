// SPDX-License-Identifier: MIT
#include "Viewer/Window/SceneTreeSelection.h"

#include "Viewer/Session/SceneEditor.h"
#include "Viewer/Window/SceneTreeModel.h"

#include <Interaction/NodeSelectionModel.h>

#include <QScopedValueRollback>

#include <set>
#include <vector>

namespace quon::viewer {

namespace {

// Qt compares every old range with every new one.
constexpr int LargestComparison = 1000000;

} // namespace

SceneTreeSelection::SceneTreeSelection(SceneTreeModel& tree, SceneEditor& editor,
                                       interaction::NodeSelectionModel& scene, QObject* parent)
    : QItemSelectionModel(&tree, parent)
    , m_tree(tree)
    , m_editor(editor)
    , m_scene(scene)
{
    connect(this, &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected, const QItemSelection& deselected) {
                m_selected = selected;
                m_deselected = deselected;
            });
}

bool SceneTreeSelection::showScene()
{
    const QItemSelection shown = selection();
    const std::vector<int> rows = m_tree.getRows(m_scene.getSelection());
    if (rows == m_tree.getRows(shown)) {
        return false;
    }
    const QScopedValueRollback<bool> following(m_following, true);
    const QItemSelection ranges = m_tree.getRanges(rows);
    const qint64 count = ranges.size();
    if (count * shown.size() > LargestComparison) {
        select(QItemSelection(), Clear);
    }
    select(ranges, ClearAndSelect);
    return true;
}

void SceneTreeSelection::select(const QItemSelection& selection, const SelectionFlags command)
{
    QItemSelectionModel::select(selection, command);
    if (!m_following) {
        editScene((command & Clear) != 0);
    }
    // Ranges cost the tree model work as long as they exist.
    m_selected.clear();
    m_deselected.clear();
}

void SceneTreeSelection::reset()
{
    const QScopedValueRollback<bool> following(m_following, true);
    QItemSelectionModel::reset();
}

void SceneTreeSelection::editScene(const bool replace)
{
    const std::set<osg::NodePtr>& current = m_scene.getSelection();
    if (replace) {
        const std::vector<osg::NodePtr> nodes = getNodes(selection());
        if (current != std::set<osg::NodePtr>(nodes.begin(), nodes.end())) {
            m_editor.select(nodes);
            emit edited();
        }
        return;
    }
    const std::vector<osg::NodePtr> added = getNodes(m_selected);
    const std::vector<osg::NodePtr> removed = getNodes(m_deselected);
    if (added.empty() && removed.empty()) {
        return;
    }
    if (removed.empty()) {
        m_editor.add(added);
    } else if (added.empty()) {
        m_editor.remove(removed);
    } else {
        // Both at once, as one operation.
        std::set<osg::NodePtr> nodes = current;
        for (const osg::NodePtr& node : removed) {
            nodes.erase(node);
        }
        nodes.insert(added.begin(), added.end());
        m_editor.select({nodes.begin(), nodes.end()});
    }
    emit edited();
}

std::vector<osg::NodePtr> SceneTreeSelection::getNodes(const QItemSelection& ranges) const
{
    std::vector<osg::NodePtr> nodes;
    for (const int row : m_tree.getRows(ranges)) {
        nodes.push_back(m_tree.getNode(row));
    }
    return nodes;
}

} // namespace quon::viewer
