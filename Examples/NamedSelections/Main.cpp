// SPDX-License-Identifier: MIT
//
// Two named sets of nodes: one shown as boxes, the other as boxes and as a wireframe on top of the scene at once. A
// node may be in both.
#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include <cstdio>
#include <vector>

using namespace quon::interaction;

namespace {

osg::NodePtr makeGroup()
{
    const osg::NodePtr group = osg::Node::create();
    osg::beginEditCP(group);
    group->setCore(osg::Group::create());
    osg::endEditCP(group);
    return group;
}

} // namespace

int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    // The model, and beside it a place for what shows selections: no selection becomes part of the model.
    const osg::RefPtr<osg::NodePtr> scene(makeGroup());
    const osg::NodePtr model = makeGroup();
    const osg::NodePtr overlays = makeGroup();
    std::vector<osg::NodePtr> parts;
    osg::beginEditCP(scene);
    scene->addChild(model);
    scene->addChild(overlays);
    osg::endEditCP(scene);
    osg::beginEditCP(model);
    for (int i = 0; i < 4; ++i) {
        parts.push_back(osg::makeBox(1, 1, 1, 1, 1, 1));
        model->addChild(parts.back());
    }
    osg::endEditCP(model);

    bool good = true;
    {
        SelectionManager* selections = SelectionManager::getInstance();
        NodeSelectionModel* selected = selections->createSelectionModel("selection");
        NodeSelectionModel* critical = selections->createSelectionModel("critical");

        BoxSelectionVisualisation orange;
        orange.setColor(osg::Color3f(1, 0.6F, 0));
        orange.setOverlay(true); // over everything, however near it is
        BoxSelectionVisualisation red;
        red.setColor(osg::Color3f(1, 0, 0));
        HighlightSelectionVisualisation wireframe;
        wireframe.setColor(osg::Color3f(1, 0, 0));

        // What shows a set is made part of the scene by the host.
        osg::beginEditCP(overlays);
        for (SelectionVisualisation* each :
             {static_cast<SelectionVisualisation*>(&orange), static_cast<SelectionVisualisation*>(&red),
              static_cast<SelectionVisualisation*>(&wireframe)}) {
            overlays->addChild(each->getVisualisation());
        }
        osg::endEditCP(overlays);
        selected->addVisualisation(&orange);
        critical->addVisualisation(&red);
        critical->addVisualisation(&wireframe);

        selected->setSelection(parts);            // all four
        critical->addNodes({parts[1], parts[2]}); // two of them
        selected->removeNode(parts[0]);           // three are left
        std::printf("%u orange boxes, %u red ones, %u wireframes\n", orange.getVisualisation()->getNChildren(),
                    red.getVisualisation()->getNChildren(), wireframe.getVisualisation()->getNChildren());
        good = orange.getVisualisation()->getNChildren() == 3 && red.getVisualisation()->getNChildren() == 2 &&
               wireframe.getVisualisation()->getNChildren() == 2;

        // A part that moved: the boxes follow when the host says so.
        selected->updateVisualisations();

        // Hidden, a visualisation keeps its nodes.
        wireframe.setVisible(false);
        good = good && !wireframe.isVisible() && wireframe.hasNode(parts[1]);

        // Sets outlive nothing that is borrowed: visualisations are taken off before they go.
        selected->removeVisualisation(&orange);
        critical->removeVisualisation(&red);
        critical->removeVisualisation(&wireframe);
        selections->removeSelectionModel(critical);
        good = good && selections->getSelectionModel("selection") == selected;
        osg::beginEditCP(overlays);
        overlays->subChild(orange.getVisualisation());
        overlays->subChild(red.getVisualisation());
        overlays->subChild(wireframe.getVisualisation());
        osg::endEditCP(overlays);
    }
    return good ? 0 : 1;
}
