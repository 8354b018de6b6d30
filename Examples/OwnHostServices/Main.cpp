// SPDX-License-Identifier: MIT
//
// The library calls the services of this program. Prints what reached them; ends with 0 when that is all as expected.
#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/SelectionManager.h>

#include <Notification/NotificationManager.h>
#include <SceneUtilities/NodeUtils.h>
#include <Shortcut/koShortcut.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <cstdio>

using namespace quon;

namespace {

osg::NodePtr makePart(const char* name)
{
    const osg::NodePtr part = osg::makeBox(1, 1, 1, 1, 1, 1);
    NodeUtils::setName(part, name, false);
    return part;
}

osg::Color3f getBoxColour(interaction::BoxSelectionVisualisation& boxes, const osg::UInt32 index)
{
    const osg::GeometryPtr box = osg::GeometryPtr::dcast(boxes.getVisualisation()->getChild(index)->getCore());
    return osg::SimpleMaterialPtr::dcast(box->getMaterial())->getDiffuse();
}

} // namespace

int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    bool good = true;
    {
        // The description of the context on top goes to the status bar.
        interaction::AbstractInteractionContext context(interaction::InteractionContext::Tool);
        context.setDescription("Click a part to select it");
        interaction::InteractionManager::getInstance()->addContext(&context);
        const std::string line = notification::NotificationManager::getInstance()->getStatusLine();
        std::printf("status bar: %s\n", line.c_str());
        good = good && line == "Click a part to select it";

        // What is bound to keys goes to the help page.
        interaction::QtEventMapper mapper;
        mapper.addKeyboardMapping(Qt::Key_F, Qt::NoModifier, "view:fit", "Fit all");
        for (const auto& [key, text] : koShortcut::getKeys()) {
            std::printf("help page: %s\n", text.toUtf8().constData());
        }
        good = good && koShortcut::getKeys().size() == 1;

        // Whether a part is locked is asked of the host: its box has the colour of locked parts.
        interaction::NodeSelectionModel* selection =
            interaction::SelectionManager::getInstance()->createSelectionModel("selection");
        interaction::BoxSelectionVisualisation boxes;
        boxes.setColor(osg::Color3f(1, 0, 0));
        boxes.setLockedColor(osg::Color3f(0, 0, 1));
        selection->addVisualisation(&boxes);
        const osg::RefPtr<osg::NodePtr> plate(makePart("plate"));
        const osg::RefPtr<osg::NodePtr> ground(makePart("fixed ground"));
        selection->addNode(plate.get());
        selection->addNode(ground.get());
        const bool locked = getBoxColour(boxes, 1) == osg::Color3f(0, 0, 1);
        std::printf("the box of the ground is %s\n", locked ? "blue: the ground is locked" : "not blue");
        good = good && locked && getBoxColour(boxes, 0) == osg::Color3f(1, 0, 0);

        selection->removeVisualisation(&boxes);
        interaction::InteractionManager::getInstance()->removeContext(&context);
    }
    good = good && notification::NotificationManager::getInstance()->getStatusLine().empty();
    return good ? 0 : 1;
}
