// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingTool.h>

#include "Support/DrawnScene.h"
#include "Support/UserInput.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/ToolInteractionContext.h>
#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>
#include <Shortcut/koShortcut.h>

#include <OpenSG/OSGThread.h>

#include <QKeySequence>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
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

    // Of the face z = 1 of a cube of two units, in pixels.
    double widthOfFront()
    {
        return (*m_session.getCamera().getPlace(osg::Pnt3f(1, 0, 1)))[0] -
               (*m_session.getCamera().getPlace(osg::Pnt3f(-1, 0, 1)))[0];
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

TEST_F(ViewportTest, TheWheelZoomsByEveryEighthOfADegreeAfterThePointerWasReported)
{
    m_user.turnWheel(QPoint(5, 6), 120);
    EXPECT_THAT(m_log.take(),
                ElementsAre("context.pointerMoved(5, 6)", "context.triggerEvent(tool:select, hover)",
                            "context.triggerEvent(navigate:orbit, hover)", "context.triggerEvent(navigate:pan, hover)",
                            "context.triggerEvent(navigate:zoom-by:1.15, trigger)", "context.cameraMoved()"));

    // 1.15 to the power of 15 / 120 and of -280 / 120.
    m_user.turnWheel(QPoint(5, 6), 15);
    EXPECT_THAT(m_log.take(),
                ElementsAre("context.triggerEvent(navigate:zoom-by:1.01762374, trigger)", "context.cameraMoved()"));
    m_user.turnWheel(QPoint(5, 6), -280);
    EXPECT_THAT(m_log.take(),
                ElementsAre("context.triggerEvent(navigate:zoom-by:0.721724928, trigger)", "context.cameraMoved()"));
}

TEST_F(ViewportTest, ShiftMakesTheWheelFinerWhicheverWayTheSystemThenTurnsIt)
{
    m_user.move(QPoint(5, 6), Qt::ShiftModifier);
    m_log.clear();

    m_user.turnWheel(QPoint(5, 6), 120, Qt::ShiftModifier);
    m_user.scroll(QPoint(5, 6), QPoint(), QPoint(120, 0), Qt::NoScrollPhase, Qt::ShiftModifier);

    // 1.15 to the power of one fifth.
    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.triggerEvent(navigate:zoom-by:1.02834672, trigger)", "context.cameraMoved()",
                            "context.triggerEvent(navigate:zoom-by:1.02834672, trigger)", "context.cameraMoved()"));
}

TEST_F(ViewportTest, AWheelThatTellsPixelsAloneZoomsToo)
{
    m_user.move(QPoint(5, 6));
    m_log.clear();

    m_user.scroll(QPoint(5, 6), QPoint(0, 40), QPoint(), Qt::NoScrollPhase);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.triggerEvent(navigate:zoom-by:1.15, trigger)", "context.cameraMoved()"));
}

TEST_F(ViewportTest, TwoFingersOnATouchpadTurnTheView)
{
    m_user.move(QPoint(50, 60));
    m_log.clear();

    EXPECT_TRUE(m_user.scroll(QPoint(50, 60), QPoint(), QPoint(), Qt::ScrollBegin));
    EXPECT_TRUE(m_user.scroll(QPoint(50, 60), QPoint(3, -4), QPoint(6, -8), Qt::ScrollUpdate));
    EXPECT_TRUE(m_user.scroll(QPoint(50, 60), QPoint(), QPoint(6, 0), Qt::ScrollMomentum));
    EXPECT_TRUE(m_user.scroll(QPoint(50, 60), QPoint(), QPoint(), Qt::ScrollEnd));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.triggerEvent(navigate:orbit-by:0,0, start)",
                            "context.triggerEvent(navigate:orbit-by:3,-4, process)", "context.cameraMoved()",
                            "context.triggerEvent(navigate:orbit-by:2,0, process)", "context.cameraMoved()",
                            "context.triggerEvent(navigate:orbit-by:0,0, stop)"));
}

TEST_F(ViewportTest, TwoFingersMoveTheViewWithShiftAndZoomWithControl)
{
    m_user.move(QPoint(50, 60), Qt::ShiftModifier);
    m_log.clear();

    m_user.scroll(QPoint(50, 60), QPoint(), QPoint(), Qt::ScrollBegin, Qt::ShiftModifier);
    m_user.scroll(QPoint(50, 60), QPoint(3, -4), QPoint(), Qt::ScrollUpdate, Qt::ShiftModifier);
    EXPECT_TRUE(m_user.scroll(QPoint(50, 60), QPoint(0, 10), QPoint(), Qt::ScrollUpdate, Qt::ControlModifier));
    EXPECT_TRUE(m_user.scroll(QPoint(50, 60), QPoint(), QPoint(), Qt::ScrollEnd, Qt::ControlModifier));

    // 1.006 to the power of ten.
    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.triggerEvent(navigate:pan-by:0,0, start)",
                            "context.triggerEvent(navigate:pan-by:3,-4, process)", "context.cameraMoved()",
                            "context.triggerEvent(navigate:zoom-by:1.06164619, trigger)", "context.cameraMoved()"));
}

TEST_F(ViewportTest, APinchOnATouchpadZoomsAroundThePointer)
{
    m_user.move(QPoint(50, 60));
    m_log.clear();

    EXPECT_TRUE(m_user.pinch(QPoint(50, 60), 0.25));
    EXPECT_TRUE(m_user.pinch(QPoint(50, 60), -0.5));
    EXPECT_FALSE(m_user.pinch(QPoint(50, 60), -1)) << "nothing is zoomed to nothing";

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.triggerEvent(navigate:zoom-by:1.25, trigger)", "context.cameraMoved()",
                            "context.triggerEvent(navigate:zoom-by:0.5, trigger)", "context.cameraMoved()"));
}

TEST_F(ViewportTest, APinchOnATouchScreenZoomsAndMovesAndSelectsNothing)
{
    auto* const screen = QTest::createTouchDevice();
    m_session.setModel(makeGroup({makeNode(makeBox(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::NullFC))}));
    m_session.getCamera().setStandardView("front");
    // The point of the front face that is seen between the fingers.
    const osg::Pnt3f middle(0, 0, 1);
    const std::array<double, 2> place = *m_session.getCamera().getPlace(middle);
    const QPoint centre(static_cast<int>(place[0]), static_cast<int>(place[1]));
    const double sizeBefore = widthOfFront();

    QWidget* const widget = &m_viewport;
    QTest::touchEvent(widget, screen).press(0, centre - QPoint(20, 0), widget);
    QTest::touchEvent(widget, screen).move(0, centre - QPoint(20, 0), widget).press(1, centre + QPoint(20, 0), widget);
    for (int step = 1; step <= 10; ++step) {
        // Apart, and both to the right.
        QTest::touchEvent(widget, screen)
            .move(0, centre + QPoint(-20 - 2 * step + step, 0), widget)
            .move(1, centre + QPoint(20 + 2 * step + step, 0), widget);
    }
    QTest::touchEvent(widget, screen)
        .release(0, centre - QPoint(30, 0), widget)
        .release(1, centre + QPoint(50, 0), widget);

    // The fingers are twice as far apart and ten pixels farther right, and so is what was between them.
    EXPECT_NEAR(widthOfFront() / sizeBefore, 2, 0.01);
    const std::array<double, 2> after = *m_session.getCamera().getPlace(middle);
    EXPECT_NEAR(after[0] - place[0], 10, 0.6);
    EXPECT_NEAR(after[1] - place[1], 0, 0.6);
    EXPECT_TRUE(m_session.getSelection().getSelection().empty());
}

TEST_F(ViewportTest, AFingerOnATouchScreenIsTheLeftButton)
{
    auto* const screen = QTest::createTouchDevice();
    QWidget* const widget = &m_viewport;

    QTest::touchEvent(widget, screen).press(0, QPoint(10, 20), widget);
    QTest::touchEvent(widget, screen).move(0, QPoint(12, 20), widget);
    QTest::touchEvent(widget, screen).release(0, QPoint(12, 20), widget);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("context.pointerMoved(10, 20)", "context.triggerEvent(tool:select, start)",
                            "context.pointerMoved(12, 20)", "context.triggerEvent(tool:select, process)",
                            "context.triggerEvent(tool:select, stop)", "context.triggerEvent(tool:select, trigger)"));
}

TEST_F(ViewportTest, TheSurfaceUnderTheWheelStaysUnderIt)
{
    m_session.setModel(makeGroup({makeNode(makeBox(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::NullFC))}));
    const QPoint pointer(120, 55);
    m_user.move(pointer);
    ASSERT_NE(m_session.getPicker().getPickedNode(nullptr), osg::NullFC);
    const osg::Pnt3f surface = m_session.getPicker().getPickedPoint(nullptr);

    for (const int delta : {120, 33, 240, -60, 7}) {
        m_user.turnWheel(pointer, delta);

        const std::array<double, 2> place = *m_session.getCamera().getPlace(surface);
        EXPECT_NEAR(place[0], 120.5, 1e-3);
        EXPECT_NEAR(place[1], 55.5, 1e-3);
    }
}

TEST_F(ViewportTest, ADragTurnsAroundAndMovesAndZoomsAtTheSurfaceOfThePress)
{
    m_session.setModel(makeGroup({makeNode(makeBox(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::NullFC))}));
    const auto dragAt = [&](const QPoint& from, const QPoint& to, const Qt::MouseButton button,
                            const Qt::KeyboardModifiers modifiers) {
        m_user.move(from, modifiers);
        const osg::Pnt3f surface = m_session.getPicker().getPickedPoint(nullptr);
        m_user.drag(from, to, button, modifiers);
        return *m_session.getCamera().getPlace(surface);
    };

    const std::array<double, 2> turned = dragAt({110, 50}, {150, 70}, Qt::RightButton, Qt::NoModifier);
    EXPECT_NEAR(turned[0], 110.5, 1e-3);
    EXPECT_NEAR(turned[1], 50.5, 1e-3);
    const std::array<double, 2> moved = dragAt({110, 50}, {125, 40}, Qt::MiddleButton, Qt::NoModifier);
    EXPECT_NEAR(moved[0], 125.5, 1e-3);
    EXPECT_NEAR(moved[1], 40.5, 1e-3);
    const std::array<double, 2> zoomed = dragAt({120, 45}, {120, 15}, Qt::RightButton, Qt::ControlModifier);
    EXPECT_NEAR(zoomed[0], 120.5, 1e-3);
    EXPECT_NEAR(zoomed[1], 45.5, 1e-3);
}

TEST_F(ViewportTest, AKeyStepsWhileItIsHeldAndStopsWithItsRelease)
{
    m_user.pressKey(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(view:pan-left, start)",
                                          "context.triggerEvent(navigate:pan-left, start)", "context.cameraMoved()"));

    EXPECT_TRUE(m_user.pressKey(Qt::Key_Left, Qt::ControlModifier, true));
    EXPECT_TRUE(m_user.pressKey(Qt::Key_Left, Qt::ControlModifier, true));
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(navigate:pan-left, process)", "context.cameraMoved()",
                                          "context.triggerEvent(navigate:pan-left, process)", "context.cameraMoved()"));

    m_user.releaseKey(Qt::Key_Left);
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(view:pan-left, stop)",
                                          "context.triggerEvent(navigate:pan-left, stop)",
                                          "context.triggerEvent(view:pan-left, trigger)"));
}

TEST_F(ViewportTest, ArrowKeysThatNobodyBoundTurnTheView)
{
    EXPECT_TRUE(m_user.pressKey(Qt::Key_Left));
    EXPECT_TRUE(m_user.releaseKey(Qt::Key_Left));
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(qt-key:16777234, press)", "context.cameraMoved()",
                                          "context.triggerEvent(qt-key:16777234, release)"));

    EXPECT_FALSE(m_user.pressKey(Qt::Key_Left, Qt::AltModifier));
    m_user.releaseKey(Qt::Key_Left);
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(qt-key:alt+16777234, press)",
                                          "context.triggerEvent(qt-key:alt+16777234, release)"));
}

TEST_F(ViewportTest, FittingTheSelectionShowsItsBoxesAndTheMarkersOfEmptyGroups)
{
    const osg::NodePtr box = makeNode(makeBox(osg::Pnt3f(2, 2, 2), osg::Pnt3f(3, 3, 3), osg::NullFC));
    const osg::NodePtr empty = makeTransform(translation(0, 1, 3));
    m_session.setModel(
        makeGroup({box, empty, makeNode(makeBox(osg::Pnt3f(-9, -9, -9), osg::Pnt3f(9, 9, 9), osg::NullFC))}));
    m_session.getCamera().setStandardView("front");
    m_session.toggleNode(box);
    m_session.toggleNode(empty);

    m_user.type(Qt::Key_G);

    // From the marker of the group at the left to the right side of the box, where it is nearest.
    const float marker = m_session.getBoxes().getMarkerSize();
    const viewer::CameraController& camera = m_session.getCamera();
    const double top = (*camera.getPlace(osg::Pnt3f(2, 3, 3)))[1];
    const double bottom = (*camera.getPlace(osg::Pnt3f(0, 1 - marker, 3 + marker)))[1];
    EXPECT_NEAR(top, 50 - 50 / 1.275, 0.01);
    EXPECT_NEAR(bottom, 50 + 50 / 1.275, 0.01);
    EXPECT_GT((*camera.getPlace(osg::Pnt3f(0 - marker, 1, 3 + marker)))[0], 0);
    EXPECT_LT((*camera.getPlace(osg::Pnt3f(3, 2, 3)))[0], 200);

    const auto widthOfAll = [&] {
        return (*camera.getPlace(osg::Pnt3f(9, 0, 9)))[0] - (*camera.getPlace(osg::Pnt3f(-9, 0, 9)))[0];
    };
    EXPECT_GT(widthOfAll(), 200);
    m_user.type(Qt::Key_Escape);
    m_user.type(Qt::Key_G);
    EXPECT_LT(widthOfAll(), 200) << "with nothing selected it shows all";
}

TEST_F(ViewportTest, TheProjectionIsSwitchedByACommand)
{
    m_user.type(Qt::Key_P);

    EXPECT_TRUE(m_session.getCamera().isParallel());
    EXPECT_TRUE(m_session.getCommands().isChecked("parallel"));
    EXPECT_THAT(m_log.take(), ElementsAre("context.triggerEvent(view:parallel, start)",
                                          "context.triggerEvent(navigate:parallel, trigger)", "context.cameraMoved()",
                                          "context.triggerEvent(view:parallel, stop)",
                                          "context.triggerEvent(view:parallel, trigger)"));

    m_user.type(Qt::Key_P);
    EXPECT_FALSE(m_session.getCamera().isParallel());
}

TEST_F(ViewportTest, AnotherModelIsOneChangeOfTheCamera)
{
    m_session.setModel(makeGroup({makeNode(makeBox(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::NullFC))}));

    EXPECT_THAT(m_log.calls(), ElementsAre("context.cameraMoved()"));
}

TEST_F(ViewportTest, AFrontViewInParallelProjectionShowsTheFrontAlone)
{
    const osg::Color3f red(1, 0, 0);
    const osg::Color3f green(0, 1, 0);
    // The front and a larger plate far behind it that is hidden by it with perspective only if it seems smaller.
    m_session.setModel(makeGroup({makeNode(makeRectangle(-1, -1, 1, 1, 2, makePlainMaterial(red))),
                                  makeNode(makeRectangle(-1.1F, -1.1F, 1.1F, 1.1F, -2, makePlainMaterial(green)))}));
    m_session.getCamera().setStandardView("front");
    m_user.leave();
    const auto count = [&](const QRgb colour) {
        const QImage picture = m_viewport.grabScene();
        int found = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                found += picture.pixel(x, y) == colour ? 1 : 0;
            }
        }
        return found;
    };
    EXPECT_GT(count(qRgb(255, 0, 0)), 1000);
    EXPECT_EQ(count(qRgb(0, 255, 0)), 0) << "seems smaller with perspective";

    m_user.type(Qt::Key_P);

    // A frame of a twentieth of the width on each side.
    const int front = count(qRgb(255, 0, 0));
    EXPECT_NEAR(static_cast<double>(count(qRgb(0, 255, 0))) / front, 1.1 * 1.1 - 1, 0.06);
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
    EXPECT_TRUE(m_user.turnWheel(QPoint(1, 1), 10));
    EXPECT_FALSE(m_user.turnWheel(QPoint(1, 1), 0));
    EXPECT_FALSE(m_user.scroll(QPoint(1, 1), QPoint(), QPoint(120, 0), Qt::NoScrollPhase));
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
                     "Middle button", "Shift+Right button", "Ctrl+Right button", "Esc", "Left", "Right", "Up", "Down"});
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
