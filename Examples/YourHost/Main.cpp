// SPDX-License-Identifier: MIT
//
// Without arguments a window; otherwise the arguments say what the user does.
#include "PlanPicker.h"
#include "Replay.h"
#include "Scene.h"
#include "SelectContext.h"
#include "SelectTool.h"
#include "StatusLine.h"
#include "ViewContext.h"
#include "Viewport.h"

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/SelectionManager.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>

#include <QGuiApplication>

using namespace quon::interaction;

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    osg::osgInit(argc, argv);
    Scene scene;
    InteractionManager* manager = InteractionManager::getInstance();
    QtEventMapper mapper;
    mapper.setInteractionManager(manager);
    Viewport viewport(scene, mapper);

    // The tool, the context that drives it, and the line that says what it does.
    SelectTool tool;
    SelectContext context;
    context.setTool(&tool);
    manager->addContext(&context);
    mapper.addMouseMapping(Qt::LeftButton, Qt::NoModifier, "tool:select", "Select");
    mapper.addMouseMapping(Qt::LeftButton, Qt::ControlModifier, "tool:toggle", "Add or remove");
    StatusLine statusLine(viewport);

    // What lies under the pointer.
    PlanPicker picker;
    picker.setRoot(scene.getMachines());
    context.setPicker(&picker);

    // The selection, and the boxes that show it.
    NodeSelectionModel* selection = SelectionManager::getInstance()->createSelectionModel("selection");
    BoxSelectionVisualisation boxes;
    selection->addVisualisation(&boxes);
    Scene::addChild(scene.getOverlays(), boxes.getVisualisation());
    tool.setSelectionModel(selection);

    // Commands.
    ViewContext view(scene, selection);
    manager->addContext(&view);
    mapper.addKeyboardMapping(Qt::Key_A, Qt::NoModifier, "view:all", "Select all");
    mapper.addMouseMapping(Qt::MiddleButton, Qt::NoModifier, "view:present", "Presenter mode");

    const QStringList words = application.arguments().mid(1);
    int result = 0;
    if (words.isEmpty()) {
        viewport.show();
        result = application.exec();
    } else {
        result = replay(viewport, scene, words) ? 0 : 1;
    }

    // Borrowed pointers go first.
    manager->removeContext(&view);
    selection->removeVisualisation(&boxes);
    Scene::removeChild(scene.getOverlays(), boxes.getVisualisation());
    manager->removeContext(&context);
    return result;
}
