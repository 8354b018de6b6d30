// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/SceneEdits.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <QString>
#include <QUndoStack>

#include <functional>
#include <memory>
#include <vector>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

/**
 * Every change of selection, visibility and locks that the user can make, and the history of these changes.
 *
 * Tools, panels and commands call the operations here and nothing else, so that each change is one step of the same
 * history. Null handles among the nodes are ignored, and so are changes that change nothing: they make no step.
 *
 * @par Shown and hidden
 * A node is hidden when its `TravMask` is 0 and shown again with all bits; a mask with some bits is the host's and
 * counts as shown here. Hiding a node hides every node below it by its own mask, too: the selection's visualisations
 * look at a node's own mask only, and a box of a part in a hidden group would float in the air. Showing a node shows
 * those above it as well, where they were hidden, and nothing else that is in them. The visualisations of the selection
 * and of all followers are refreshed, those of groups around a changed node included.
 *
 * @par History
 * Holds the last 100 steps. A step knows its nodes by their ids and leaves out those that the scene destroyed or took
 * out of the model meanwhile; steps of which nothing is left are passed over. Another model forgets the history.
 *
 * @par Gestures
 * The changes of the selection between beginGesture() and endGesture(), for example while a rectangle is drawn, are one
 * step.
 */
class SceneEditor {
public:
    /** What is asked for. */
    enum class Edit { Select, Add, Remove, Hide, Show, Isolate, ShowAll, Lock, Unlock };

    /** The number of steps that are kept. */
    static constexpr int HistoryLimit = 100;

    /** @param selection borrowed, must outlive the editor; follows as the others do */
    explicit SceneEditor(interaction::NodeSelectionModel& selection);

    SceneEditor(const SceneEditor&) = delete;
    SceneEditor& operator=(const SceneEditor&) = delete;

    /** Sets the root that the operations work below, forgets the history and ends a gesture. Null is none. */
    void setRoot(const osg::NodePtr& root);

    /** @param changed called after every change of visibility or locks, taking back and doing again included */
    void setStateChanged(std::function<void()> changed);

    /** Refreshes the visualisations of @p model, too, after changes of visibility or locks; borrowed. */
    void addFollower(interaction::NodeSelectionModel* model);

    /** Does so no more; an unknown model is ignored. */
    void removeFollower(interaction::NodeSelectionModel* model);

    /**
     * Sets who is told of every operation on nodes before it is carried out, whether or not it will change anything.
     *
     * Taking back and doing again is none. An empty function is nobody.
     */
    void setEditListener(std::function<void(Edit, const std::vector<osg::NodePtr>&)> listener);

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

    /** Shows @p nodes with all that is below them, and with the way to them, where these were hidden. */
    void show(const std::vector<osg::NodePtr>& nodes);

    /**
     * Hides everything but @p nodes, what is below them and the way to them; shows these where they were hidden.
     *
     * Nodes that are not within the root are ignored; without any other nothing happens.
     */
    void isolate(const std::vector<osg::NodePtr>& nodes);

    /** Shows every hidden node below the root, and the root, again. */
    void showAll();

    /** Gives @p nodes a lock of their own, or takes it off. */
    void setLocked(const std::vector<osg::NodePtr>& nodes, bool locked);

    /** Returns whether @p node itself has a lock, whatever is above it; false for null. */
    static bool isLocked(const osg::NodePtr& node);

    /** Begins to gather the changes of the selection for one step. Gestures may be nested: the outermost counts. */
    void beginGesture();

    /** Makes the changes since beginGesture() one step; none when the selection is what it was. */
    void endGesture();

    /** Takes back the changes since beginGesture() without a step, and ends all gestures. */
    void cancelGesture();

    /** Whether a gesture is going on: nothing can be undone or redone meanwhile. */
    bool isInGesture() const { return m_gestureDepth > 0; }

    /** Carries out @p edit and puts it on the history; for changes that belong to other parts of the program. */
    void carryOut(std::unique_ptr<SceneEdit> edit);

    /** What the editor works on, as steps need it. */
    const EditedScene& getScene() const { return m_scene; }

    bool canUndo() const { return m_history.canUndo() && !isInGesture(); }
    bool canRedo() const { return m_history.canRedo() && !isInGesture(); }

    /** Takes the last step back. Without one, and within a gesture, nothing happens. */
    void undo();

    /** Does again what was taken back last. Without that, and within a gesture, nothing happens. */
    void redo();

    /** Says what undo() and redo() would take back and do again, in the user's language; empty when nothing. */
    QString getUndoText() const;
    QString getRedoText() const;

    /** Forgets all steps. */
    void clearHistory();

    /** The history, for its signals; steps come and go through the editor alone. */
    const QUndoStack& getHistory() const { return m_history; }

private:
    void report(Edit edit, const std::vector<osg::NodePtr>& nodes) const;
    void changeSelectionBy(const std::vector<osg::NodePtr>& selected, const std::vector<osg::NodePtr>& deselected);
    void changeVisibility(VisibilityEdit::Kind kind, std::size_t asked, std::vector<VisibilityEdit::Change> changes);
    void finishGestureSoFar();
    const SceneEdit& getStep(int index) const;

    interaction::NodeSelectionModel& m_selection;
    EditedScene m_scene;
    std::function<void(Edit, const std::vector<osg::NodePtr>&)> m_editListener;
    QUndoStack m_history;
    int m_gestureDepth = 0;
    NodeIds m_beforeGesture; ///< what was selected, ids in ascending order
};

} // namespace quon::viewer
