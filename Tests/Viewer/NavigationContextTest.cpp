// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingPicker.h>

#include "Viewer/Tools/CameraController.h"
#include "Viewer/Tools/NavigationContext.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGVector.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using viewer::CameraController;
using viewer::Matrix4;
using viewer::NavigationContext;

/** A context in a manager of its own, over a picker that finds what the test says. */
class NavigationContextTest : public ::testing::Test {
protected:
    NavigationContextTest()
        : m_camera([this] { ++m_changes; })
        , m_picker(m_log, m_names, "picker")
        , m_context(&m_camera, &m_picker)
    {
        for (CameraController* camera : {&m_camera, &m_expected}) {
            camera->setViewportSize(400, 200);
            camera->setSceneBounds(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1));
            camera->setStandardView("front");
        }
        m_manager.addContext(&m_context);
        m_changes = 0;
    }

    ~NavigationContextTest() override { m_manager.removeContext(&m_context); }

    // Whether the event was consumed.
    bool send(const std::string& category, const char* verb)
    {
        return m_manager.triggerEvent(interaction::InteractionEvent(category, verb));
    }

    void move(const float x, const float y) { m_manager.pointerMoved(osg::Pnt2f(x, y)); }

    void find(const osg::Pnt3f& point)
    {
        RecordingPicker::Hit hit;
        hit.node = m_node.get();
        hit.point = point;
        m_picker.setHit(hit);
        m_picker.invalidate();
    }

    // Whether the camera is where the test has brought another one by calls.
    bool isAsExpected() const { return m_camera.getView() == m_expected.getView(); }

    int m_changes = 0;
    CallLog m_log;
    ObjectNames m_names;
    osg::RefPtr<osg::NodePtr> m_node{osg::Node::create()};
    interaction::InteractionManager m_manager;
    CameraController m_camera;
    CameraController m_expected;
    RecordingPicker m_picker;
    NavigationContext m_context;
};

TEST_F(NavigationContextTest, ADragFollowsThePointerFromItsStart)
{
    move(100, 100);
    EXPECT_TRUE(send("navigate:orbit", "start"));
    EXPECT_EQ(m_changes, 0);
    move(110, 95);
    EXPECT_TRUE(send("navigate:orbit", "process"));
    EXPECT_TRUE(send("navigate:orbit", "stop"));
    EXPECT_TRUE(send("navigate:orbit", "trigger"));
    move(50, 50);

    m_expected.orbit(10, -5);
    EXPECT_TRUE(isAsExpected());
    EXPECT_EQ(m_changes, 1);
}

TEST_F(NavigationContextTest, DragsGoByTheSurfaceThatWasUnderThePointerAtTheirStart)
{
    const osg::Pnt3f surface(0.5F, 0.5F, 1);
    for (const char* drag : {"navigate:orbit", "navigate:pan", "navigate:zoom"}) {
        find(surface);
        move(100, 100);
        send(drag, "start");
        find(osg::Pnt3f(-9, -9, -9));
        move(104, 103);
        send(drag, "process");
        send(drag, "stop");
    }

    m_expected.orbit(4, 3, surface);
    m_expected.pan(4, 3, surface);
    m_expected.zoom(std::pow(1.006, -3), 100.5, 100.5, surface);
    EXPECT_TRUE(isAsExpected());
}

TEST_F(NavigationContextTest, ADragThatWasPausedDoesNotJump)
{
    move(100, 100);
    send("navigate:orbit", "start");
    // Another button goes down: the pointer moves without the drag.
    move(300, 10);
    move(310, 10);
    send("navigate:orbit", "process");
    send("navigate:orbit", "process");

    m_expected.orbit(10, 0);
    EXPECT_TRUE(isAsExpected());
}

TEST_F(NavigationContextTest, GesturesMoveByWhatTheySay)
{
    const osg::Pnt3f surface(0.5F, 0.5F, 1);
    find(surface);
    EXPECT_TRUE(send(NavigationContext::getOrbitCategory(0, 0), "start"));
    find(osg::Pnt3f(-9, -9, -9));
    EXPECT_TRUE(send(NavigationContext::getOrbitCategory(1.5, -20), "process"));
    EXPECT_TRUE(send(NavigationContext::getOrbitCategory(0, 0), "stop"));
    find(surface);
    EXPECT_TRUE(send(NavigationContext::getPanCategory(0, 0), "start"));
    EXPECT_TRUE(send(NavigationContext::getPanCategory(-3, 0.25), "process"));
    move(30, 40);
    EXPECT_TRUE(send(NavigationContext::getZoomCategory(1.25), "trigger"));

    m_expected.orbit(1.5, -20, surface);
    m_expected.pan(-3, 0.25, surface);
    m_expected.zoom(1.25, 30.5, 40.5, surface);
    EXPECT_TRUE(isAsExpected());
}

TEST_F(NavigationContextTest, WhatIsNoEventOfNavigationIsLeftToOthers)
{
    for (const char* category : {"navigate:zoom-by", "navigate:zoom-by:", "navigate:zoom-by:x", "navigate:zoom-by:1,2",
                                 "navigate:pan-by:1", "navigate:orbit-by:1,2,3", "navigate:orbit-by:1;2",
                                 "navigate:orbits", "navigate", "tool:orbit", "qt-key:ctrl+16777234", "qt-key:65"}) {
        for (const char* verb : {"start", "process", "stop", "trigger", "press", "release"}) {
            EXPECT_FALSE(send(category, verb)) << category << ' ' << verb;
        }
    }
    for (const char* category : {"navigate:orbit", "navigate:zoom-in", "navigate:pan-by:1,1", "navigate:zoom-by:2"}) {
        EXPECT_FALSE(send(category, "hover")) << category;
        EXPECT_FALSE(send(category, "stopHover")) << category;
    }

    EXPECT_EQ(m_changes, 0);
}

TEST_F(NavigationContextTest, StepsComeInPairsThatTakeEachOtherBack)
{
    const Matrix4 before = m_camera.getView();
    for (const auto& [there, back] :
         {std::pair("orbit-left", "orbit-right"), std::pair("orbit-up", "orbit-down"),
          std::pair("pan-left", "pan-right"), std::pair("pan-up", "pan-down"), std::pair("zoom-in", "zoom-out")}) {
        for (const char* step : {there, back}) {
            m_changes = 0;
            EXPECT_TRUE(send(std::string("navigate:") + step, "start"));
            EXPECT_TRUE(send(std::string("navigate:") + step, "stop"));
            EXPECT_TRUE(send(std::string("navigate:") + step, "trigger"));
            EXPECT_EQ(m_changes, 1) << step;
        }
        for (int row = 0; row < 3; ++row) {
            EXPECT_NEAR(m_camera.getView()(row, 3), before(row, 3), 1e-9) << there;
            EXPECT_NEAR(m_camera.getView()(row, row), before(row, row), 1e-9) << there;
        }
    }
}

TEST_F(NavigationContextTest, StepsMoveTheModelWhereTheySay)
{
    const osg::Pnt3f front(0, 0, 1);
    const std::array<double, 2> before = *m_camera.getPlace(front);
    const auto moved = [&](const char* step) {
        send(std::string("navigate:") + step, "start");
        send(std::string("navigate:") + step, "stop");
        const std::array<double, 2> after = *m_camera.getPlace(front);
        m_camera.setStandardView("front");
        return std::array<double, 2>{after[0] - before[0], after[1] - before[1]};
    };

    for (const char* kind : {"orbit", "pan"}) {
        EXPECT_LT(moved((std::string(kind) + "-left").c_str())[0], -1) << kind;
        EXPECT_GT(moved((std::string(kind) + "-right").c_str())[0], 1) << kind;
        EXPECT_LT(moved((std::string(kind) + "-up").c_str())[1], -1) << kind;
        EXPECT_GT(moved((std::string(kind) + "-down").c_str())[1], 1) << kind;
    }
}

TEST_F(NavigationContextTest, StepsRepeatUntilTheirKeysGoUp)
{
    EXPECT_FALSE(m_context.repeatSteps());
    send("navigate:orbit-left", "start");
    send("navigate:zoom-in", "start");
    EXPECT_EQ(m_changes, 2);

    EXPECT_TRUE(m_context.repeatSteps());
    EXPECT_EQ(m_changes, 4);
    send("navigate:orbit-left", "stop");
    send("navigate:orbit-left", "trigger");
    EXPECT_TRUE(m_context.repeatSteps());
    EXPECT_EQ(m_changes, 5);
    send("navigate:zoom-in", "stop");
    EXPECT_FALSE(m_context.repeatSteps());

    // Two steps of five degrees and three of 1.15.
    m_expected.turn(-10, 0);
    m_expected.zoom(1.15 * 1.15 * 1.15);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_NEAR(m_camera.getView()(row, column), m_expected.getView()(row, column), 1e-12);
        }
    }
}

TEST_F(NavigationContextTest, NothingRepeatsOnceTheReleaseCannotArrive)
{
    send("navigate:orbit-left", "start");
    m_manager.disable();
    m_manager.enable();
    EXPECT_FALSE(m_context.repeatSteps());

    send("navigate:orbit-left", "start");
    m_manager.setPresenterMode(true);
    EXPECT_FALSE(m_context.repeatSteps());
    m_manager.setPresenterMode(false);
    EXPECT_FALSE(m_context.repeatSteps());

    send("navigate:orbit-left", "start");
    m_manager.removeContext(&m_context);
    EXPECT_FALSE(m_context.repeatSteps());
    m_manager.addContext(&m_context);
    EXPECT_FALSE(m_context.repeatSteps());
    EXPECT_EQ(m_changes, 3) << "the three presses";
}

TEST_F(NavigationContextTest, ViewsAreTakenUpOnce)
{
    for (const char* view : {"iso", "front", "back", "left", "right", "top", "bottom"}) {
        EXPECT_TRUE(send(std::string("navigate:") + view, "trigger"));
        m_expected.setStandardView(view);
        EXPECT_TRUE(isAsExpected()) << view;
    }
    EXPECT_EQ(m_changes, 7);

    for (const char* hint : {"iso", "fit", "fit-selection", "parallel"}) {
        for (const char* verb : {"start", "process", "stop"}) {
            EXPECT_FALSE(send(std::string("navigate:") + hint, verb)) << hint << ' ' << verb;
        }
    }
    EXPECT_EQ(m_changes, 7);
}

TEST_F(NavigationContextTest, TheSceneAndWhatIsSelectedAreFitted)
{
    std::vector<osg::Pnt3f> selected;
    EXPECT_TRUE(send("navigate:pan-left", "start"));
    EXPECT_FALSE(isAsExpected());
    EXPECT_TRUE(send("navigate:fit", "trigger"));
    EXPECT_TRUE(isAsExpected());

    EXPECT_TRUE(send("navigate:pan-left", "start"));
    EXPECT_TRUE(send("navigate:fit-selection", "trigger"));
    EXPECT_TRUE(isAsExpected()) << "nobody knows what is selected";
    m_context.setSelectionExtent([&] { return selected; });
    EXPECT_TRUE(send("navigate:pan-left", "start"));
    EXPECT_TRUE(send("navigate:fit-selection", "trigger"));
    EXPECT_TRUE(isAsExpected()) << "nothing is selected";
    selected = {osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 0.5F, 0.5F)};
    EXPECT_TRUE(send("navigate:fit-selection", "trigger"));
    m_expected.fit(selected);
    EXPECT_TRUE(isAsExpected());
}

TEST_F(NavigationContextTest, TheProjectionIsSwitched)
{
    EXPECT_TRUE(send("navigate:parallel", "trigger"));
    EXPECT_TRUE(m_camera.isParallel());
    EXPECT_TRUE(send("navigate:parallel", "trigger"));
    EXPECT_FALSE(m_camera.isParallel());
}

TEST_F(NavigationContextTest, WithoutAPickerThePointOfInterestStandsIn)
{
    NavigationContext context(&m_camera, nullptr);
    m_manager.removeContext(&m_context);
    m_manager.addContext(&context);

    move(10, 20);
    send("navigate:zoom-by:2", "trigger");
    send("navigate:orbit", "start");
    move(20, 20);
    send("navigate:orbit", "process");

    m_manager.removeContext(&context);
    m_expected.zoom(2, 10.5, 20.5);
    m_expected.orbit(10, 0);
    EXPECT_TRUE(isAsExpected());
}

} // namespace

} // namespace quon::testing
