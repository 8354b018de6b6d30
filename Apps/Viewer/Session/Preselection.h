// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/HighlightSelectionVisualisation.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <vector>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

/**
 * Shows what a click, or the end of a rectangle, would select: in blue, lit like the part itself.
 *
 * A selection model of the library's manager, called "preselection", with a visualisation of its own. Nodes that are
 * selected already look selected and not preselected. The nodes are referenced as long as they are preselected.
 */
class Preselection {
public:
    /** Name of the selection model in the selection manager. */
    static const char* const ModelName;

    /**
     * Adds the root of the visualisation to @p parent, which must have no transformation.
     *
     * @param selection the user's selection; borrowed, must outlive the preselection
     */
    Preselection(const interaction::NodeSelectionModel& selection, const osg::NodePtr& parent);

    /** Removes the model and takes the root out again. */
    ~Preselection();

    Preselection(const Preselection&) = delete;
    Preselection& operator=(const Preselection&) = delete;

    interaction::NodeSelectionModel& getModel() { return *m_model; }

    /**
     * Preselects @p nodes that are not selected, and nothing else.
     *
     * To be called again when the selection may have changed. Null handles are left out; nothing is preselected while
     * it is switched off.
     */
    void show(const std::vector<osg::NodePtr>& nodes);

    /** Preselects nothing. */
    void clear() { show({}); }

    /** Switches preselection on or off; switched off, it clears at once. On at first. */
    void setEnabled(bool enabled);
    bool isEnabled() const { return m_enabled; }

private:
    const interaction::NodeSelectionModel& m_selection;
    interaction::NodeSelectionModel* m_model;
    osg::RefPtr<osg::NodePtr> m_parent;
    interaction::HighlightSelectionVisualisation m_highlight;
    std::vector<osg::RefPtr<osg::NodePtr>> m_held; ///< keeps the nodes of the model alive
    bool m_enabled = true;
};

} // namespace quon::viewer
