// SPDX-License-Identifier: MIT
//
// The examples of README.md. The regions between the markers stand there word for word; this file builds them into a
// program that runs as a test.

//! [includes]
#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/SelectionManager.h>
#include <Interaction/ToolInteractionContext.h>
//! [includes]

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include <QMouseEvent>

#include <cstdio>

using namespace quon::interaction;

//! [tool]
// Selects the part under the pointer when the bound button is released.
class SelectTool : public AbstractInteractionTool {
public:
    SelectTool(NodeSelectionModel* selection, osg::NodePtr part)
        : m_selection(selection)
        , m_part(part)
    {
        setDescription("Click a part to select it");
    }

    bool triggerTool(ToolInteractionContext*, const std::string& hint) override
    {
        if (!isPickHint(hint)) {
            return false;
        }
        m_selection->setSelection(m_part); // a real tool asks context->getPicker()
        return true;
    }

private:
    NodeSelectionModel* m_selection;
    osg::NodePtr m_part;
};
//! [tool]

int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    const osg::RefPtr<osg::NodePtr> scene(osg::Node::create());
    osg::beginEditCP(scene);
    scene->setCore(osg::Group::create());
    const osg::NodePtr part = osg::makeBox(1, 2, 3, 1, 1, 1);
    scene->addChild(part);
    osg::endEditCP(scene);
    bool allAsExpected = true;
    {
        //! [set-up]
        // A named set of selected nodes, shown as boxes; the boxes become part of the rendered scene.
        NodeSelectionModel* selection = SelectionManager::getInstance()->createSelectionModel("selection");
        BoxSelectionVisualisation boxes;
        selection->addVisualisation(&boxes);
        scene->addChild(boxes.getVisualisation());

        // A context that drives the tool, on the manager's stack.
        SelectTool tool(selection, part);
        ToolInteractionContext context(InteractionContext::Tool);
        context.setTool(&tool);
        InteractionManager::getInstance()->addContext(&context);

        // The left button stands for the tool's "select", Ctrl and the left button for its "toggle".
        QtEventMapper mapper;
        mapper.setInteractionManager(InteractionManager::getInstance());
        mapper.addMouseMapping(Qt::LeftButton, Qt::NoModifier, "tool:select", "Select");
        mapper.addMouseMapping(Qt::LeftButton, Qt::ControlModifier, "tool:toggle", "Add or remove");
        //! [set-up]

        const auto mouseEvent = [](QEvent::Type type, Qt::MouseButtons held) {
            return QMouseEvent(type, QPointF(10, 20), QPointF(10, 20), Qt::LeftButton, held, Qt::NoModifier);
        };
        const QMouseEvent press = mouseEvent(QEvent::MouseButtonPress, Qt::LeftButton);
        const QMouseEvent release = mouseEvent(QEvent::MouseButtonRelease, Qt::NoButton);
        allAsExpected = mapper.mousePressed(&press) && allAsExpected;
        allAsExpected = mapper.mouseReleased(&release) && allAsExpected;
        allAsExpected = selection->getSelection().count(part) == 1 && allAsExpected;
        allAsExpected = boxes.getVisualisation()->getNChildren() == 1 && allAsExpected;

        //! [tear-down]
        // Borrowed pointers go first: nothing in the library keeps a context, tool or visualisation alive.
        InteractionManager::getInstance()->removeContext(&context);
        selection->removeVisualisation(&boxes);
        scene->subChild(boxes.getVisualisation());
        //! [tear-down]
    }
    std::puts(allAsExpected ? "the part is selected and has its box" : "the example does not do what it says");
    return allAsExpected ? 0 : 1;
}
