// SPDX-License-Identifier: MIT
//
// A tool of a host and its tests, with nothing but the test kit: what Docs/Testing.md shows. The regions between the
// markers stand there word for word. Built with the library, and as a project of its own against the installed package.

//! [tool]
#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/Picker.h>
#include <Interaction/ToolInteractionContext.h>

#include <InteractionTools/ClickOrDrag.h>

using namespace quon::interaction;

// Marks the part under the pointer with a click, and takes the mark away with the next one.
// A drag does nothing.
class MarkTool : public AbstractInteractionTool {
public:
    explicit MarkTool(NodeSelectionModel& marks)
        : m_marks(marks)
    {
        setDescription("Click a part to mark it");
    }

    bool startTool(ToolInteractionContext* context, const std::string&) override
    {
        m_press.press(context->getPicker()->getPointer());
        return true;
    }

    bool processTool(ToolInteractionContext* context, const std::string&) override
    {
        m_press.move(context->getPicker()->getPointer());
        return true;
    }

    bool triggerTool(ToolInteractionContext* context, const std::string&) override
    {
        if (!m_press.release()) {
            return true;
        }
        const osg::NodePtr part = context->getPicker()->getPickedNode(nullptr);
        if (m_marks.getSelection().count(part) != 0) {
            m_marks.removeNode(part);
        } else if (part != osg::NullFC) {
            m_marks.addNode(part);
        }
        return true;
    }

private:
    NodeSelectionModel& m_marks;
    ClickOrDrag m_press;
};
//! [tool]

//! [fixture]
#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>
#include <InteractionTesting/InputDriver.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingPicker.h>
#include <InteractionTesting/RecordingVisualisation.h>
#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGGroup.h>

#include <gmock/gmock.h>

using namespace quon::testing;
using ::testing::ElementsAre;

// The tool in its surroundings: a real mapper, manager, context and selection between a driver
// that stands for the user, a picker that hits what the test wants, and a visualisation that
// writes down what it is told.
class MarkToolTest : public SceneFixture {
protected:
    MarkToolTest()
    {
        m_names.add(m_wheel.get(), "wheel");
        m_picker.setCacheValid(false); // each pick is asked for anew
        m_marks.addVisualisation(&m_visualisation);
        m_context.setPicker(&m_picker);
        m_context.setTool(&m_tool);
        m_manager.addContext(&m_context);
        m_mapper.setInteractionManager(&m_manager);
        m_mapper.addMouseMapping(Qt::LeftButton, Qt::NoModifier, "tool:mark", QString());
        m_driver.setPicker(&m_picker);
        m_log.clear();
    }

    ~MarkToolTest() override
    {
        m_manager.removeContext(&m_context);
        m_marks.removeVisualisation(&m_visualisation);
    }

    // What is under the pointer from now on; null: nothing.
    void putUnderPointer(const osg::NodePtr& part)
    {
        RecordingPicker::Hit hit;
        hit.node = part;
        m_picker.setHit(hit);
    }

    NodeRef m_wheel = makeNode(osg::Group::create());
    CallLog m_log;
    ObjectNames m_names;
    RecordingPicker m_picker{m_log, m_names, "picker"};
    RecordingVisualisation m_visualisation{m_log, m_names, "visualisation"};
    NodeSelectionModel m_marks{"marks"};
    MarkTool m_tool{m_marks};
    ToolInteractionContext m_context{InteractionContext::Tool};
    InteractionManager m_manager;
    QtEventMapper m_mapper;
    InputDriver m_driver{m_mapper};
};
//! [fixture]

//! [tests]
TEST_F(MarkToolTest, ClickMarksThePartUnderThePointer)
{
    putUnderPointer(m_wheel.get());

    m_driver.play("move 100 80; click");

    EXPECT_THAT(m_log, CallsOf("visualisation", "addNode(wheel)"));
}

TEST_F(MarkToolTest, SecondClickTakesTheMarkAway)
{
    putUnderPointer(m_wheel.get());

    m_driver.play("move 100 80; click; click");

    EXPECT_THAT(m_log, CallsOf("visualisation", "addNode(wheel)", "removeNode(wheel)"));
}

TEST_F(MarkToolTest, ClickBesideAllPartsMarksNothing)
{
    putUnderPointer(osg::NullFC);

    m_driver.play("move 100 80; click");

    EXPECT_THAT(m_log, CallsInOrder("picker.computePicked(null)"));
    EXPECT_THAT(m_log, CallsOf("visualisation"));
}

TEST_F(MarkToolTest, PressThatMovedThreePixelsMarksNothing)
{
    putUnderPointer(m_wheel.get());

    EXPECT_THAT(m_driver.play("move 100 80; press; move 103 80; release"), ElementsAre(true, true, true, true));

    EXPECT_THAT(m_log, NoCalls());
}

TEST_F(MarkToolTest, UnsteadyClickIsAClick)
{
    putUnderPointer(m_wheel.get());

    m_driver.play("move 100 80; press; move 102 80; release");

    EXPECT_THAT(m_log, CallsOf("visualisation", "addNode(wheel)"));
}
//! [tests]

//! [main]
int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    osg::ChangeList::setReadWriteDefault(); // the fixtures look at the list of changes
    osg::osgInit(argc, argv);
    const int result = RUN_ALL_TESTS();
    osg::osgExit();
    return result;
}
//! [main]
