// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/Picker.h>
#include <Interaction/ToolInteractionContext.h>

#include <SceneUtilities/NodeUtils.h>

#include <string>

/** Names the machine under the pointer, and selects it when it is clicked. */
class SelectTool : public quon::interaction::AbstractInteractionTool {
public:
    SelectTool() { setDescription("Point at a machine"); }

    /** Changes @p selection from now on; borrowed. */
    void setSelectionModel(quon::interaction::NodeSelectionModel* selection) { m_selection = selection; }

    bool hoverTool(quon::interaction::ToolInteractionContext* context, const std::string&) override
    {
        const osg::NodePtr machine = context->getPicker()->getPickedNode(nullptr);
        setDescription(machine == osg::NullFC ? "Point at a machine" : "Click: " + NodeUtils::getName(machine));
        return true;
    }

    bool stopHoverTool(quon::interaction::ToolInteractionContext*, const std::string&) override
    {
        setDescription("Point at a machine");
        return true;
    }

    bool triggerTool(quon::interaction::ToolInteractionContext* context, const std::string& hint) override
    {
        if (!isPickHint(hint)) {
            return false;
        }
        const osg::NodePtr machine = context->getPicker()->getPickedNode(nullptr);
        if (machine == osg::NullFC) {
            m_selection->clearSelection();
        } else if (hint == "select") {
            m_selection->setSelection(machine);
        } else if (m_selection->getSelection().count(machine) == 0) {
            m_selection->addNode(machine);
        } else {
            m_selection->removeNode(machine);
        }
        return true;
    }

private:
    quon::interaction::NodeSelectionModel* m_selection = nullptr;
};
