// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/NodeIds.h"
#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Session/SelectionDisplay.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <QObject>
#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

class SceneEditor;
class SelectionKeeper;

/**
 * Named sets of nodes that the user keeps, each drawn in its own way beside the selection.
 *
 * A set is a selection model of the library's manager, called "set:ID", with visualisations of its own below a group of
 * the scene. Making, renaming, changing and deleting sets are steps of the editor's history; how a set looks is not.
 * Nodes that the scene destroys leave their sets, and a set that loses its last node so goes, too.
 *
 * Names are unique without regard to case, not empty and have no blanks around them.
 */
class SelectionSets : public QObject {
    Q_OBJECT

public:
    /** Names a set for as long as the sets exist; never given twice. */
    using Id = int;

    /** No set, or the selection where a set is combined with something. */
    static constexpr Id None = 0;

    enum class Combination { Union, Intersection, Difference };

    /** What there is to know about a set. */
    struct Info {
        Id id;
        QString name;
        std::size_t size;
        SelectionLook look;
    };

    /**
     * @param editor its history has the steps; borrowed, must outlive the sets
     * @param selection the user's selection; borrowed, must outlive the sets
     * @param visualisations group that the roots of the visualisations are added to; without transformation
     */
    SelectionSets(SceneEditor& editor, interaction::NodeSelectionModel& selection, const osg::NodePtr& visualisations);

    /** Deletes all sets with their models. */
    ~SelectionSets() override;

    SelectionSets(const SelectionSets&) = delete;
    SelectionSets& operator=(const SelectionSets&) = delete;

    /** All sets in the order in which they were made. */
    std::vector<Info> getAll() const;

    /** Returns nothing for an unknown set. */
    std::optional<Info> find(Id id) const;

    /** Returns the model of a set, null for an unknown one. It is changed through the operations here alone. */
    interaction::NodeSelectionModel* getModel(Id id) const;

    /**
     * Makes a set of the selection, with the next default name and the next colour.
     *
     * @return None when nothing is selected
     */
    Id create();

    /** Says in the user's language why a set cannot have this name; empty when it can. */
    QString getNameProblem(Id id, const QString& name) const;

    /** Renames a set; blanks around the name are dropped. Returns false when it cannot have that name. */
    bool rename(Id id, const QString& name);

    /** Makes a set the selection, or adds its nodes to the selection. */
    void recall(Id id);
    void addToSelection(Id id);

    /** Makes the selection what a set holds. */
    void replaceBySelection(Id id);

    /** Combines a set with another one, or with the selection; the result is what the set holds afterwards. */
    void combine(Id id, Combination combination, Id other = None);

    /** Deletes a set. */
    void remove(Id id);

    /** Draws a set another way. */
    void setLook(Id id, const SelectionLook& look);

    /** Sets the marker size of sets made from now on, in world units. */
    void setDefaultMarkerSize(float size) { m_defaultMarkerSize = size; }

    /** Deletes all sets without a step, before their nodes go; the history, which knows them, is to be forgotten. */
    void clear();

    /** Takes destroyed nodes out of the sets. */
    void sceneChanged(const SceneChanges& changes);

signals:
    /** Sets came, went or got another name, content or look. */
    void changed();

private:
    class Edit;
    struct Set;

    /** A set as a step of the history has it. */
    struct Record {
        Id id;
        std::size_t place;
        QString name;
        SelectionLook look;
        std::shared_ptr<const NodeIds> nodes;
    };

    Set* get(Id id) const;
    QString makeDefaultName() const;
    Record makeRecord(const Set& set) const;
    void change(Id id, const std::vector<osg::NodePtr>& nodes);
    std::vector<osg::NodePtr> getNodes(Id id) const;
    void apply(std::optional<Record>& from, const std::optional<Record>& to);
    void insert(const Record& record);
    void erase(Id id);
    bool isAnyLeft(const Record& record) const;
    bool isApplicable(const std::optional<Record>& before, const std::optional<Record>& after) const;

    SceneEditor& m_editor;
    interaction::NodeSelectionModel& m_selection;
    osg::RefPtr<osg::NodePtr> m_visualisations;
    std::vector<std::unique_ptr<Set>> m_sets;
    // The materials of a visualisation outlive it: what a deleted set leaves is used again.
    std::vector<std::unique_ptr<SelectionDisplay>> m_spareDisplays;
    Id m_lastId = None;
    std::size_t m_nextColour = 0;
    float m_defaultMarkerSize = 1;
};

} // namespace quon::viewer
