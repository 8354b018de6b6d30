// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/NodeSelectionModel.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace quon::benchmarks {

/** What shows a selection. */
enum class Shown { Nothing, Box, Highlight, Both };

/** All of them, and what they are called in the names of benchmarks. */
constexpr Shown allShown[] = {Shown::Nothing, Shown::Box, Shown::Highlight, Shown::Both};
std::string getName(Shown shown);

/** A selection with fresh visualisations, which stand in the scene as a host would place them. */
class ShownSelection {
public:
    /** @param root root of the scene; gains a child for each visualisation, as long as the object lives */
    ShownSelection(Shown shown, const osg::NodePtr& root);

    ShownSelection(const ShownSelection&) = delete;
    ShownSelection& operator=(const ShownSelection&) = delete;

    /** Deselects everything and takes the visualisations out of the scene. */
    ~ShownSelection();

    interaction::NodeSelectionModel& getModel() { return m_model; }

    /** Returns all visualisations, in the order of attachment. */
    const std::vector<interaction::SelectionVisualisation*>& getVisualisations() const { return m_visualisations; }

    /** Returns whether @p count nodes are selected and each visualisation has a child for each of them. */
    bool shows(std::size_t count) const;

private:
    void attach(interaction::SelectionVisualisation* visualisation);

    interaction::NodeSelectionModel m_model;
    osg::NodePtr m_root;
    std::unique_ptr<interaction::BoxSelectionVisualisation> m_box;
    std::unique_ptr<interaction::HighlightSelectionVisualisation> m_highlight;
    std::vector<interaction::SelectionVisualisation*> m_visualisations;
};

} // namespace quon::benchmarks
