// SPDX-License-Identifier: MIT
//
// A tool with two modes and its tests. "paint" and "erase" are modes of the context, which a key starts and stops; the
// hints "select" and "toggle" say what a click means. The test kit plays the user; everything else is real.
#include "PaintTool.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/ToolInteractionContext.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>
#include <InteractionTesting/InputDriver.h>
#include <InteractionTesting/RecordingNotificationListener.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>

#include <gmock/gmock.h>

using namespace quon::interaction;
using namespace quon::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class PaintToolTest : public ::testing::Test {
protected:
    PaintToolTest()
    {
        m_context.setTool(&m_tool);
        m_manager.addContext(&m_context);
        m_mapper.setInteractionManager(&m_manager);
        m_mapper.addMouseMapping(Qt::LeftButton, Qt::NoModifier, "tool:select", "Paint or erase");
        m_mapper.addMouseMapping(Qt::LeftButton, Qt::ControlModifier, "tool:toggle", "Paint or erase one more");
        m_mapper.addKeyboardMapping(Qt::Key_E, Qt::NoModifier, "mode:erase", "Erase while held");
        m_log.clear();
    }

    ~PaintToolTest() override
    {
        m_manager.removeContext(&m_context);
        m_mapper.removeMouseMapping(Qt::LeftButton, Qt::NoModifier);
        m_mapper.removeMouseMapping(Qt::LeftButton, Qt::ControlModifier);
        m_mapper.removeKeyboardMapping(Qt::Key_E, Qt::NoModifier);
    }

    CallLog m_log;
    RecordingNotificationListener m_notifications{m_log};
    PaintTool m_tool;
    ToolInteractionContext m_context{InteractionContext::Tool};
    InteractionManager m_manager;
    QtEventMapper m_mapper;
    InputDriver m_driver{m_mapper};
};

TEST_F(PaintToolTest, DoesNothingWithoutAMode)
{
    m_driver.play("click");

    EXPECT_THAT(m_tool.getDone(), IsEmpty());
}

TEST_F(PaintToolTest, ErasesWhileTheKeyIsHeldAndPaintsAfterwards)
{
    m_context.startMode("paint");

    m_driver.play("click; keypress E; click; keyrelease E; click");

    EXPECT_THAT(m_tool.getDone(), ElementsAre("paint", "erase", "paint"));
}

TEST_F(PaintToolTest, ControlMeansOneMore)
{
    m_context.startMode("paint");

    m_driver.play("modifiers ctrl; click");

    EXPECT_THAT(m_tool.getDone(), ElementsAre("paint one more"));
}

TEST_F(PaintToolTest, SaysWhatAClickDoesInTheCurrentMode)
{
    m_context.startMode("paint");
    m_driver.play("keypress E; losefocus"); // which ends what the key began

    EXPECT_THAT(m_log,
                Calls("notifications.changed(tool, Click to paint)", "notifications.changed(tool, Click to erase)",
                      "notifications.changed(tool, Click to paint)"));
}

TEST_F(PaintToolTest, RefusesAModeThatItDoesNotKnow)
{
    m_context.startMode("paint");

    EXPECT_FALSE(m_context.startMode("polish"));

    m_driver.play("click");
    EXPECT_THAT(m_tool.getDone(), ElementsAre("paint"));
}

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    osg::osgInit(argc, argv);
    const int result = RUN_ALL_TESTS();
    osg::osgExit();
    return result;
}
