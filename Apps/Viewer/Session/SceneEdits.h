// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/NodeIds.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGNode.h>

#include <QCoreApplication>
#include <QString>
#include <QUndoCommand>

#include <cstddef>
#include <functional>
#include <vector>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

/**
 * What the steps of the history work on; made and kept by the editor.
 *
 * Everything is borrowed. The root changes only together with the history.
 */
class EditedScene {
public:
    osg::NodePtr root;                                       ///< of the model; null when there is none
    std::vector<interaction::NodeSelectionModel*> followers; ///< whose visualisations show the state of nodes
    std::function<void()> stateChanged; ///< after every change of visibility or locks; may be empty

    /**
     * Refreshes what the followers show after the masks of @p nodes changed.
     *
     * That is the nodes themselves and those above them, whose extent may be another one now.
     */
    void refreshMasks(const std::vector<osg::NodePtr>& nodes) const;

    /** Refreshes what the followers show after the locks of @p nodes changed: the nodes and those below them. */
    void refreshLocks(const std::vector<osg::NodePtr>& nodes) const;

private:
    void notify() const;
};

/**
 * A step of the history.
 *
 * Steps know nodes by their ids and leave out, in both directions, nodes that were destroyed or taken out of the model
 * meanwhile: the rest is still taken back. Carrying out a step that stands already changes nothing.
 */
class SceneEdit : public QUndoCommand {
public:
    /** Says what the step does in the user's language, asked anew at every call: "Hide 3 parts". */
    virtual QString describe() const = 0;

    /** Returns whether any of its nodes is left, so that taking it back or doing it again has an effect. */
    virtual bool isApplicable() const = 0;
};

/** Nodes were selected and deselected. */
class SelectionEdit : public SceneEdit {
    Q_DECLARE_TR_FUNCTIONS(quon::viewer::SelectionEdit)

public:
    /**
     * @param model borrowed, must outlive the step
     * @param selected nodes that were not selected before and are afterwards
     * @param deselected nodes that were selected before and are not afterwards
     * @param countBefore the number of selected nodes before
     */
    SelectionEdit(const EditedScene& scene, interaction::NodeSelectionModel& model, NodeIds selected,
                  NodeIds deselected, std::size_t countBefore);

    void undo() override;
    void redo() override;
    QString describe() const override;
    bool isApplicable() const override;

private:
    const EditedScene& m_scene;
    interaction::NodeSelectionModel& m_model;
    NodeIds m_selected;
    NodeIds m_deselected;
    std::size_t m_countBefore;
};

/** Nodes were hidden or shown. */
class VisibilityEdit : public SceneEdit {
    Q_DECLARE_TR_FUNCTIONS(quon::viewer::VisibilityEdit)

public:
    /** What the user asked for. */
    enum class Kind { Hide, Show, Isolate, ShowAll };

    /** The traversal mask of a node. */
    struct Change {
        osg::UInt32 id;
        osg::UInt32 before;
        osg::UInt32 after;
    };

    /** @param asked the number of nodes that the user asked to hide, show or isolate */
    VisibilityEdit(const EditedScene& scene, Kind kind, std::size_t asked, std::vector<Change> changes);

    void undo() override { setMasks(&Change::before); }
    void redo() override { setMasks(&Change::after); }
    QString describe() const override;
    bool isApplicable() const override;

private:
    void setMasks(osg::UInt32 Change::*mask);

    const EditedScene& m_scene;
    Kind m_kind;
    std::size_t m_asked;
    std::vector<Change> m_changes;
};

/** Nodes got a lock of their own, or lost it. */
class LockEdit : public SceneEdit {
    Q_DECLARE_TR_FUNCTIONS(quon::viewer::LockEdit)

public:
    /** @param nodes none of which had its lock as wanted before */
    LockEdit(const EditedScene& scene, NodeIds nodes, bool locked);

    void undo() override { setLocked(!m_locked); }
    void redo() override { setLocked(m_locked); }
    QString describe() const override;
    bool isApplicable() const override;

private:
    void setLocked(bool locked);

    const EditedScene& m_scene;
    NodeIds m_nodes;
    bool m_locked;
};

/**
 * Takes nodes out of the selection of a model and selects others, in the way that is cheapest for its visualisations.
 *
 * Where most of the selection leaves, it is set anew instead of taken apart. Nodes that are not selected are not taken
 * out, selected ones not added again. Nothing is called when nothing changes.
 */
void changeSelection(interaction::NodeSelectionModel& model, const std::vector<osg::NodePtr>& deselected,
                     const std::vector<osg::NodePtr>& selected);

} // namespace quon::viewer
