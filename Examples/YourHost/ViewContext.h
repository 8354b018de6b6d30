// SPDX-License-Identifier: MIT
#pragma once

#include "Scene.h"

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>

#include <string>
#include <vector>

/** Commands that no tool is needed for. */
class ViewContext : public quon::interaction::AbstractInteractionContext {
public:
    ViewContext(const Scene& scene, quon::interaction::NodeSelectionModel* selection)
        : AbstractInteractionContext(Background)
        , m_scene(scene)
        , m_selection(selection)
    {}

    bool triggerEvent(quon::interaction::InteractionManager* manager,
                      const quon::interaction::InteractionEvent& event) override
    {
        // A key that is bound to nothing arrives by its own name.
        static const std::string escape =
            "qt-key:" + quon::interaction::QtEventMapper::qtKeyEventToString(Qt::Key_Escape, Qt::NoModifier);
        if (event.getCategory() == escape && event.getEvent() == "press") {
            m_selection->clearSelection();
            return true;
        }
        if (event.getEvent() != "trigger") {
            return false;
        }
        if (event.getCategory() == "view:all") {
            const osg::NodePtr machines = m_scene.getMachines();
            std::vector<osg::NodePtr> all;
            for (osg::UInt32 i = 0; i < machines->getNChildren(); ++i) {
                all.push_back(machines->getChild(i));
            }
            m_selection->setSelection(all);
            return true;
        }
        if (event.getCategory() == "view:present") {
            manager->setPresenterMode(!manager->getPresenterMode());
            return true;
        }
        return false;
    }

private:
    const Scene& m_scene;
    quon::interaction::NodeSelectionModel* m_selection;
};
