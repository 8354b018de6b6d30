// SPDX-License-Identifier: MIT
//
// The examples of the manual's pages. The regions between the markers stand there word for word; this file builds them
// into a program that runs as a test.

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/AbstractSelectionVisualisation.h>
#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/LazyPicker.h>
#include <Interaction/MultimodeInteractionContext.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/SelectionManager.h>
#include <Interaction/ToolInteractionContext.h>

#include <Extensions/SceneExtensions.h>
#include <Notification/NotificationManager.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGTransform.h>

#include <QMouseEvent>

#include <cstdio>
#include <string>
#include <vector>

using namespace quon::interaction;

namespace {

bool s_good = true;

void expect(const bool condition, const char* what)
{
    if (!condition) {
        std::printf("not so: %s\n", what);
        s_good = false;
    }
}

using Log = std::vector<std::string>;

//! [consume]
// Answers one event; leaves all others to the contexts below.
class FitContext : public AbstractInteractionContext {
public:
    FitContext()
        : AbstractInteractionContext(Background)
    {}

    bool triggerEvent(InteractionManager*, const InteractionEvent& event) override
    {
        if (event.getTool() != "view" || event.getHint() != "fit" || event.getEvent() != "trigger") {
            return false;
        }
        ++m_fits;
        return true;
    }

    int getFits() const { return m_fits; }

private:
    int m_fits = 0;
};
//! [consume]

void showEvents()
{
    InteractionManager manager;
    FitContext context;
    manager.addContext(&context);
    //! [send]
    // A menu entry sends the same event as a key.
    const bool consumed = manager.triggerEvent(InteractionEvent("view:fit", "trigger"));
    //! [send]
    expect(consumed && context.getFits() == 1, "a menu entry fits");
    expect(!manager.triggerEvent(InteractionEvent("view:fit", "start")), "other verbs go on");
    manager.removeContext(&context);
}

//! [modes]
// A ruler that works while its mode is current.
class RulerContext : public MultimodeInteractionContext {
public:
    RulerContext()
        : MultimodeInteractionContext(Tool)
    {}

    bool selectMode(const std::string& mode) override
    {
        if (!mode.empty() && mode != "ruler" && mode != "angle") {
            return false; // not one of ours: the modes stay as they are
        }
        m_current = mode;
        setDescription(mode.empty() ? "" : "Click two points: " + mode);
        return true;
    }

    const std::string& getCurrent() const { return m_current; }

private:
    std::string m_current;
};
//! [modes]

void showModes()
{
    InteractionManager manager;
    RulerContext context;
    manager.addContext(&context);
    //! [mode-events]
    manager.triggerEvent(InteractionEvent("mode:ruler", "start")); // current: ruler
    manager.triggerEvent(InteractionEvent("mode:angle", "start")); // current: angle, ruler waits below
    manager.triggerEvent(InteractionEvent("mode:angle", "stop"));  // current: ruler again
    //! [mode-events]
    expect(context.getCurrent() == "ruler", "the mode below is current again");
    expect(!context.startMode("weight") && context.getCurrent() == "ruler", "an unknown mode is refused");
    manager.removeContext(&context);
    expect(context.getCurrent().empty(), "removal ends the modes");
}

//! [drag]
// A press, a drag and a release, or a click: the tool tells them apart.
class DragTool : public AbstractInteractionTool {
public:
    bool startTool(ToolInteractionContext*, const std::string&) override
    {
        m_dragged = false;
        return true;
    }

    bool processTool(ToolInteractionContext*, const std::string&) override
    {
        m_dragged = true;
        return true;
    }

    // Comes after stopTool(), and after a drag, too.
    bool triggerTool(ToolInteractionContext*, const std::string& hint) override
    {
        m_log.push_back((m_dragged ? "dropped: " : "clicked: ") + hint);
        return true;
    }

    const std::vector<std::string>& getLog() const { return m_log; }

private:
    bool m_dragged = false;
    std::vector<std::string> m_log;
};
//! [drag]

QMouseEvent makeMouseEvent(const QEvent::Type type, const Qt::MouseButton button, const Qt::MouseButtons held)
{
    const QPointF place(10, 20);
    return QMouseEvent(type, place, place, button, held, Qt::NoModifier);
}

void showTools()
{
    DragTool tool;
    ToolInteractionContext context(InteractionContext::Tool);
    context.setTool(&tool);
    InteractionManager manager;
    manager.addContext(&context);
    QtEventMapper mapper;
    mapper.setInteractionManager(&manager);
    //! [bind]
    mapper.addMouseMapping(Qt::LeftButton, Qt::NoModifier, "tool:move", "Move");
    mapper.addKeyboardMapping(Qt::Key_F, Qt::NoModifier, "view:fit", "Fit all");
    //! [bind]
    const QMouseEvent press = makeMouseEvent(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    const QMouseEvent move = makeMouseEvent(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
    const QMouseEvent release = makeMouseEvent(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    mapper.mousePressed(&press);
    mapper.mouseReleased(&release);
    mapper.mousePressed(&press);
    mapper.mouseMoved(&move, true);
    mapper.mouseReleased(&release);
    expect(tool.getLog() == Log{"clicked: move", "dropped: move"}, "clicks and drags are told apart");
    mapper.removeMouseMapping(Qt::LeftButton, Qt::NoModifier);
    mapper.removeKeyboardMapping(Qt::Key_F, Qt::NoModifier);
    manager.removeContext(&context);
}

osg::NodePtr makeGroup()
{
    const osg::NodePtr group = osg::Node::create();
    const osg::CPEditor edit(group, osg::Node::CoreFieldMask);
    group->setCore(osg::Group::create());
    return group;
}

void addChild(const osg::NodePtr& parent, const osg::NodePtr& child)
{
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
}

//! [visualisation]
// Marks each selected node with a small cube above its world box.
class PinVisualisation : public AbstractSelectionVisualisation {
public:
    osg::NodePtr createVisualisation(const osg::NodePtr& node) override
    {
        const osg::NodePtr pin = osg::Node::create();
        {
            const osg::CPEditor edit(pin);
            pin->setCore(osg::Transform::create());
            pin->addChild(osg::makeBox(0.2F, 0.2F, 0.2F, 1, 1, 1));
        }
        updateVisualisation(node, pin); // the base does not call it for a new one
        return pin;
    }

    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& pin) override
    {
        osg::Pnt3f minimum;
        osg::Pnt3f maximum;
        quon::extensions::getWorldBounds(node, minimum, maximum);
        osg::Matrix matrix;
        matrix.setTranslate((minimum[0] + maximum[0]) / 2, maximum[1] + 0.2F, (minimum[2] + maximum[2]) / 2);
        const osg::TransformPtr place = osg::TransformPtr::dcast(pin->getCore());
        const osg::CPEditor edit(place);
        place->setMatrix(matrix);
    }

    void removeVisualisation(const osg::NodePtr&, const osg::NodePtr&) override {} // the base lets go of it
};
//! [visualisation]

void showSelections()
{
    const osg::RefPtr<osg::NodePtr> scene(makeGroup());
    const osg::NodePtr model = makeGroup();
    const osg::NodePtr overlays = makeGroup();
    addChild(scene.get(), model);
    addChild(scene.get(), overlays);
    const osg::NodePtr part = osg::makeBox(1, 2, 3, 1, 1, 1);
    const osg::NodePtr otherPart = osg::makeBox(1, 1, 1, 1, 1, 1);
    addChild(model, part);
    addChild(model, otherPart);

    //! [selection]
    NodeSelectionModel* selection = SelectionManager::getInstance()->createSelectionModel("selection");
    BoxSelectionVisualisation boxes;
    PinVisualisation pins;
    addChild(overlays, boxes.getVisualisation()); // the host places the roots in its scene
    addChild(overlays, pins.getVisualisation());
    selection->addVisualisation(&boxes);
    selection->addVisualisation(&pins);

    selection->setSelection(part); // one box, one pin
    selection->addNode(otherPart); // two of each
    selection->removeNode(part);   // one of each
    //! [selection]
    expect(selection->getSelection().size() == 1 && selection->getSelection().count(otherPart) == 1, "one is left");
    expect(boxes.getVisualisation()->getNChildren() == 1, "one box");
    expect(pins.getVisualisation()->getNChildren() == 1, "one pin");
    const osg::NodePtr pin = pins.getVisualisation()->getChild(0);
    osg::Pnt3f minimum;
    osg::Pnt3f maximum;
    quon::extensions::getWorldBounds(pin, minimum, maximum);
    expect(minimum[1] > 0.5F && minimum[1] < 0.7F, "the pin stands above the part");

    //! [lock]
    koNodeUtils::setIsEditable(otherPart, false); // locked: its box gets the second colour
    selection->updateNode(otherPart);             // selections hear of a change from whoever made it
    //! [lock]
    const osg::GeometryPtr box = osg::GeometryPtr::dcast(boxes.getVisualisation()->getChild(0)->getCore());
    expect(quon::extensions::getOverwriteMaterial(box), "the box of a locked part has a material of its own");

    //! [edit]
    // A change of the scene is bracketed; the selection hears of it afterwards.
    {
        const osg::CPEditor edit(model, osg::Node::ChildrenFieldMask);
        model->subChild(part); // not selected: nobody needs to be told
    }
    selection->removeNode(otherPart); // selected: taken out before the scene destroys it
    {
        const osg::CPEditor edit(model, osg::Node::ChildrenFieldMask);
        model->subChild(otherPart);
    }
    //! [edit]
    expect(selection->getSelection().empty() && boxes.getVisualisation()->getNChildren() == 0, "nothing is left");

    selection->removeVisualisation(&pins);
    selection->removeVisualisation(&boxes);
    SelectionManager::getInstance()->removeSelectionModel(selection);
}

//! [notifications]
// The notification area of a host: here, a list of lines.
class Area : public quon::notification::NotificationListener {
public:
    Area() { quon::notification::NotificationManager::getInstance()->addListener(this); }
    ~Area() override { quon::notification::NotificationManager::getInstance()->removeListener(this); }
    Area(const Area&) = delete;
    Area& operator=(const Area&) = delete;

    void notificationAdded(quon::notification::Notification*) override { read(); }
    void notificationChanged(quon::notification::Notification*) override { read(); }
    void notificationRemoved(quon::notification::Notification*) override { read(); }

    const std::vector<std::string>& getLines() const { return m_lines; }

private:
    void read()
    {
        m_lines.clear();
        for (auto* each : quon::notification::NotificationManager::getInstance()->getNotifications()) {
            if (const auto* text = dynamic_cast<quon::notification::TextNotification*>(each)) {
                m_lines.push_back(text->getName() + ": " + text->getText());
            }
        }
    }

    std::vector<std::string> m_lines;
};
//! [notifications]

void showNotifications()
{
    Area area;
    InteractionManager manager;
    AbstractInteractionContext context(InteractionContext::Tool);
    context.setDescription("Click two points");
    manager.addContext(&context);
    expect(area.getLines() == Log{"context: Click two points"}, "the area shows the description");
    manager.removeContext(&context);
    expect(area.getLines().empty(), "the area is empty again");
}

} // namespace

int main(int argc, char** argv)
{
    osg::osgInit(argc, argv);
    showEvents();
    showModes();
    showTools();
    showSelections();
    showNotifications();
    return s_good ? 0 : 1;
}
