// SPDX-License-Identifier: MIT
#include "Support/CallLog.h"
#include "Support/DrawnScene.h"
#include "Support/RecordingTool.h"
#include "Support/UserInput.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/ToolInteractionContext.h>
#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>
#include <Shortcut/koShortcut.h>

#include <OpenSG/OSGThread.h>

#include <QKeySequence>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/** Notes what the manager reports and consumes nothing. */
class ListeningContext : public interaction::AbstractInteractionContext {
public:
    explicit ListeningContext(CallLog& log)
        : AbstractInteractionContext(Overlay)
        , m_log(log)
    {}

    void pointerMoved(const osg::Pnt2f& position) override
    {
        m_log.call("context", "pointerMoved", position[0], position[1]);
    }

    void cameraMoved(const osg::Matrix& camera) override
    {
        m_log.call("context", "cameraMoved");
        lastCamera = camera;
    }

    bool triggerEvent(interaction::InteractionManager*, const interaction::InteractionEvent& event) override
    {
        m_log.call("context", "triggerEvent", event.getCategory(), event.getEvent());
        return false;
    }

    osg::Matrix lastCamera;

private:
    CallLog& m_log;
};

class ViewportTest : public ::testing::Test {
protected:
    ViewportTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
        , m_listener(m_log)
    {
        m_viewport.resize(200, 100);
        m_viewport.show();
        m_session.getInteractionManager().addContext(&m_listener);
        m_log.clear();
    }

    ~ViewportTest() override { m_session.getInteractionManager().removeContext(&m_listener); }

    CallLog m_log;
    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;
    ListeningContext m_listener;
};

TEST_F(ViewportTest, APressAndItsReleaseReachTheContexts)
{
    m_user.press(QPoint(10, 20));
    m_user.release(QPoint(10, 20));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.pointerMoved(10, 20)", "context.triggerEvent(tool:select, start)",
                            "context.triggerEvent(tool:select, stop)", "context.triggerEvent(tool:select, trigger)"));
}

TEST_F(ViewportTest, ControlMakesAClickToggle)
{
    m_user.click(QPoint(10, 20), Qt::ControlModifier);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.pointerMoved(10, 20)", "context.triggerEvent(tool:toggle, hover)",
                            "context.triggerEvent(navigate:zoom, hover)", "context.triggerEvent(tool:toggle, start)",
                            "context.triggerEvent(tool:toggle, stop)", "context.triggerEvent(tool:toggle, trigger)"));
}

TEST_F(ViewportTest, AMoveWithAButtonHeldIsADragAndOneWithoutHovers)
{
    m_user.press(QPoint(10, 20), Qt::MiddleButton);
    m_log.clear();

    m_user.move(QPoint(15, 20));
    EXPECT_THAT(m_log.take(), ElementsAre("context.pointerMoved(15, 20)", "context.triggerEvent(navigate:pan, process)",
                                          "context.cameraMoved()"));

    m_user.release(QPoint(15, 20), Qt::MiddleButton);
    m_log.clear();
    m_user.move(QPoint(16, 20));

    EXPECT_THAT(m_log.take(), ElementsAre("context.pointerMoved(16, 20)", "context.triggerEvent(tool:select, hover)",
                                          "context.triggerEvent(navigate:orbit, hover)",
                                          "context.triggerEvent(navigate:pan, hover)"));
}

TEST_F(ViewportTest, TheEndOfHoveringReachesEveryMouseBinding)
{
    m_user.leave();

    EXPECT_EQ(m_log.calls().size(), 8U);
    EXPECT_THAT(m_log.calls(), ::testing::Each(::testing::EndsWith(", stopHover)")));
}

TEST_F(ViewportTest, TheSecondPressOfADoubleClickIsAPress)
{
    m_user.doubleClick(QPoint(3, 4));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.pointerMoved(3, 4)", "context.triggerEvent(tool:select, start)"));
}

TEST_F(ViewportTest, AWheelStepBecomesAZoomAndPartsOfAStepAddUp)
{
    m_user.turnWheel(QPoint(5, 5), 80);
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_user.turnWheel(QPoint(5, 5), 80);
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(navigate:zoom-in, trigger)", "context.cameraMoved()"));

    m_user.turnWheel(QPoint(5, 5), -280);
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(navigate:zoom-out, trigger)", "context.cameraMoved()",
                                          "context.triggerEvent(navigate:zoom-out, trigger)", "context.cameraMoved()"));
}

TEST_F(ViewportTest, ABoundKeyReachesTheContextsOnceHoweverLongItIsHeld)
{
    m_user.pressKey(Qt::Key_O);
    m_user.pressKey(Qt::Key_O, Qt::NoModifier, true);
    m_user.releaseKey(Qt::Key_O);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.triggerEvent(view:overlay, start)", "context.triggerEvent(view:overlay, stop)",
                            "context.triggerEvent(view:overlay, trigger)"));
}

TEST_F(ViewportTest, AnUnboundKeyArrivesUnderItsCode)
{
    m_user.pressKey(Qt::Key_Tab, Qt::ControlModifier);
    m_user.releaseKey(Qt::Key_Tab);

    EXPECT_THAT(m_log.calls(), ElementsAre("context.triggerEvent(qt-key:ctrl+16777217, press)",
                                           "context.triggerEvent(qt-key:ctrl+16777217, release)"));
}

TEST_F(ViewportTest, AQtEventIsAcceptedExactlyWhenItWasConsumed)
{
    EXPECT_TRUE(m_user.press(QPoint(10, 20)));
    EXPECT_TRUE(m_user.release(QPoint(10, 20)));
    EXPECT_FALSE(m_user.press(QPoint(10, 20), Qt::BackButton));
    EXPECT_FALSE(m_user.release(QPoint(10, 20), Qt::BackButton));
    EXPECT_TRUE(m_user.pressKey(Qt::Key_F));
    EXPECT_TRUE(m_user.releaseKey(Qt::Key_F));
    EXPECT_FALSE(m_user.pressKey(Qt::Key_Z));
    EXPECT_FALSE(m_user.releaseKey(Qt::Key_Z));
    EXPECT_TRUE(m_user.turnWheel(QPoint(1, 1), 120));
    EXPECT_FALSE(m_user.turnWheel(QPoint(1, 1), 10));
    EXPECT_TRUE(m_user.leave());
}

TEST_F(ViewportTest, NothingIsConsumedWhileTheManagerIsDisabled)
{
    m_session.getInteractionManager().disable();

    EXPECT_FALSE(m_user.press(QPoint(10, 20)));
    EXPECT_FALSE(m_user.pressKey(Qt::Key_L));
    EXPECT_FALSE(m_user.turnWheel(QPoint(1, 1), 120));

    m_session.getInteractionManager().enable();
    m_user.loseFocus();
}

TEST_F(ViewportTest, TheEndOfTheFocusEndsEverythingPending)
{
    m_user.press(QPoint(10, 20));
    m_user.pressKey(Qt::Key_H);
    m_user.pressKey(Qt::Key_Z);
    m_log.clear();

    m_user.loseFocus();

    EXPECT_THAT(m_log.take(),
                ElementsAre("context.triggerEvent(view:hide, stop)", "context.triggerEvent(view:hide, trigger)",
                            "context.triggerEvent(tool:select, stop)", "context.triggerEvent(tool:select, trigger)",
                            "context.triggerEvent(qt-key:90, release)"));
    m_user.release(QPoint(10, 20));
    m_user.releaseKey(Qt::Key_H);
    m_user.releaseKey(Qt::Key_Z);
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(ViewportTest, ATwoButtonDragReachesOnlyWhatIsBoundToBoth)
{
    m_user.press(QPoint(10, 20), Qt::RightButton);
    m_user.press(QPoint(10, 20), Qt::MiddleButton);
    m_log.clear();

    m_user.move(QPoint(30, 20));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.pointerMoved(30, 20)"));
}

TEST_F(ViewportTest, OrbitingReportsTheCameraFromWorldToClipSpace)
{
    m_user.drag(QPoint(50, 50), QPoint(80, 50), Qt::RightButton);

    EXPECT_THAT(m_log.calls(), ::testing::Contains("context.cameraMoved()").Times(2));
    EXPECT_EQ(m_listener.lastCamera, m_session.getCamera().getWorldToClip());
    EXPECT_EQ(m_session.getPicker().getCamera(), m_session.getCamera().getWorldToClip());
}

TEST_F(ViewportTest, AnotherSizeIsAnotherCamera)
{
    m_viewport.resize(300, 100);

    EXPECT_THAT(m_log.calls(), ElementsAre("context.cameraMoved()"));
    EXPECT_EQ(m_session.getCamera().getViewportWidth(), 300);
}

TEST_F(ViewportTest, AToolIsActiveWhileItsContextIsInTheStackAndHearsEverythingWithItsHint)
{
    CallLog log;
    RecordingTool tool(log, "tool");
    interaction::ToolInteractionContext context(interaction::InteractionContext::Modal);
    context.setTool(&tool);

    m_session.getInteractionManager().addContext(&context);
    EXPECT_THAT(log.take(), ElementsAre("tool.activateTool()"));

    m_user.move(QPoint(1, 2));
    EXPECT_THAT(log.take(), ElementsAre("tool.hoverTool(select)"));

    m_user.drag(QPoint(10, 10), QPoint(30, 10), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_THAT(log.take(),
                ElementsAre("tool.hoverTool(toggle)", "tool.startTool(toggle)", "tool.processTool(toggle)",
                            "tool.processTool(toggle)", "tool.stopTool(toggle)", "tool.triggerTool(toggle)"));

    m_user.leave();
    EXPECT_THAT(log.take(), ElementsAre("tool.stopHoverTool(select)", "tool.stopHoverTool(toggle)",
                                        "tool.stopHoverTool(box)", "tool.stopHoverTool(box-add)"));

    m_user.press(QPoint(5, 5));
    m_user.loseFocus();
    EXPECT_THAT(log.take(), ElementsAre("tool.startTool(select)", "tool.stopTool(select)", "tool.triggerTool(select)"));

    m_session.getInteractionManager().removeContext(&context);
    EXPECT_THAT(log.take(), ElementsAre("tool.deactivateTool()"));
    m_user.move(QPoint(7, 7));
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(ViewportTest, EveryBindingIsInTheRegistryUntilTheSessionEnds)
{
    std::vector<std::string> entries;
    for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
        EXPECT_THAT(entry.group, ::testing::AnyOf(QStringLiteral("Interaction"), QStringLiteral("Fixed keys")));
        EXPECT_FALSE(entry.description.isEmpty());
        entries.push_back(koShortcut::toText(entry).toStdString());
    }

    std::vector<std::string> expected;
    for (const viewer::Command& command : viewer::Command::getAll()) {
        if (command.key != 0) {
            expected.push_back(
                QKeySequence(command.key | command.modifiers).toString(QKeySequence::NativeText).toStdString());
        }
    }
    expected.insert(expected.end(),
                    {"Left button", "Ctrl+Left button", "Shift+Left button", "Ctrl+Shift+Left button", "Right button",
                     "Middle button", "Shift+Right button", "Ctrl+Right button", "Esc"});
    EXPECT_EQ(entries, expected);
}

TEST(ViewportLifetimeTest, ASessionTakesItsBindingsContextsAndNotificationsAlong)
{
    {
        viewer::ViewerSession session;
        EXPECT_FALSE(koShortcut::getEntries().empty());
        EXPECT_NE(interaction::InteractionManager::getInstance()->getVisualisationRoot(), osg::NullFC);
    }

    EXPECT_TRUE(koShortcut::getEntries().empty());
    EXPECT_EQ(interaction::InteractionManager::getInstance()->getVisualisationRoot(), osg::NullFC);
    EXPECT_TRUE(notification::NotificationManager::getInstance()->getNotifications().empty());
    EXPECT_FALSE(interaction::InteractionManager::getInstance()->triggerEvent({"view:select-none", "start"}));
}

TEST_F(ViewportTest, TheChangeListDoesNotGrow)
{
    m_session.setModel(makeGroup({makeNode(makeBox(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::NullFC))}));

    for (int i = 0; i < 3; ++i) {
        m_user.click(QPoint(100, 50));
        EXPECT_TRUE(osg::Thread::getCurrentChangeList()->empty());
        m_user.pressKey(Qt::Key_B);
        EXPECT_TRUE(osg::Thread::getCurrentChangeList()->empty());
        m_user.releaseKey(Qt::Key_B);
    }
}

TEST_F(ViewportTest, NotificationsLieOverTheLowerLeftCorner)
{
    m_viewport.resize(500, 300);
    const QImage plain = m_viewport.grabScene();
    const QImage picture = m_viewport.grabPicture();

    const auto lightness = [](const QImage& image, const QPoint& place) { return qGray(image.pixel(place)); };
    EXPECT_GT(lightness(plain, QPoint(16, 270)), 200);
    EXPECT_LT(lightness(picture, QPoint(16, 270)), 110);
    EXPECT_NEAR(lightness(picture, QPoint(490, 20)), lightness(plain, QPoint(490, 20)), 3);
}

TEST_F(ViewportTest, ANotificationThatComesAndGoesIsPainted)
{
    m_viewport.resize(500, 300);
    const QImage before = m_viewport.grabPicture();

    auto* const manager = notification::NotificationManager::getInstance();
    notification::TextNotification* const text = manager->createTextNotification("test", "Here I am");
    const QImage during = m_viewport.grabPicture();
    manager->removeNotification(text);
    const QImage after = m_viewport.grabPicture();

    EXPECT_NE(before, during);
    EXPECT_EQ(before, after);
}

} // namespace

} // namespace quon::testing
