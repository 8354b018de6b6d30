// SPDX-License-Identifier: MIT
#include "Viewer/Tools/CameraController.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using viewer::CameraController;
using viewer::Matrix4;
using viewer::Vector4;

class CameraControllerTest : public ::testing::Test {
protected:
    CameraControllerTest()
        : m_camera([this] { ++m_changes; })
    {
        m_camera.setViewportSize(400, 200);
        m_camera.setSceneBounds(osg::Pnt3f(-1, -2, -3), osg::Pnt3f(3, 2, 1));
    }

    // Pixel of a place in the world, z: depth from -1 to 1.
    Vector4 project(const osg::Pnt3f& place) const
    {
        const Vector4 clip = Matrix4(m_camera.getWorldToClip()).transform(place);
        return {(clip[0] / clip[3] + 1) * 200, (1 - clip[1] / clip[3]) * 100, clip[2] / clip[3], clip[3]};
    }

    // What the near and the far plane show at a place of the viewport, by the inverse of the camera.
    std::pair<std::array<double, 3>, std::array<double, 3>> rayAt(const double x, const double y) const
    {
        const Matrix4 inverse = (m_camera.getProjection() * m_camera.getView()).inverted();
        std::array<double, 3> points[2];
        for (std::size_t i = 0; i < 2; ++i) {
            const Vector4 point = inverse * Vector4{x / 200 - 1, 1 - y / 100, i == 0 ? -1.0 : 1.0, 1};
            points[i] = {point[0] / point[3], point[1] / point[3], point[2] / point[3]};
        }
        return {points[0], points[1]};
    }

    // Without rounding the place to single precision first.
    std::array<double, 2> projectExactly(const std::array<double, 3>& place) const
    {
        const Vector4 clip = m_camera.getProjection() * m_camera.getView() * Vector4{place[0], place[1], place[2], 1};
        return {(clip[0] / clip[3] + 1) * 200, (1 - clip[1] / clip[3]) * 100};
    }

    int m_changes = 0;
    CameraController m_camera;
};

TEST_F(CameraControllerTest, EveryStandardViewFitsTheSceneIntoTheViewport)
{
    for (const char* view : {"iso", "front", "back", "left", "right", "top", "bottom"}) {
        ASSERT_TRUE(m_camera.setStandardView(view));

        double left = 1e9;
        double right = -1e9;
        double top = 1e9;
        double bottom = -1e9;
        for (int corner = 0; corner < 8; ++corner) {
            const Vector4 pixel = project(osg::Pnt3f((corner & 1) != 0 ? 3.0F : -1.0F, (corner & 2) != 0 ? 2.0F : -2.0F,
                                                     (corner & 4) != 0 ? 1.0F : -3.0F));
            left = std::min(left, pixel[0]);
            right = std::max(right, pixel[0]);
            top = std::min(top, pixel[1]);
            bottom = std::max(bottom, pixel[1]);
            EXPECT_GT(pixel[2], -1) << view;
            EXPECT_LT(pixel[2], 1) << view;
        }
        EXPECT_GT(left, 0) << view;
        EXPECT_LT(right, 400) << view;
        EXPECT_GT(top, 0) << view;
        EXPECT_LT(bottom, 200) << view;
        // Neither small nor off the middle.
        EXPECT_GT(std::max((right - left) / 400, (bottom - top) / 200), 0.7) << view;
        EXPECT_NEAR(left + right, 400, 20) << view;
        EXPECT_NEAR(top + bottom, 200, 20) << view;
    }
}

TEST_F(CameraControllerTest, StandardViewsLookFromWhereTheySay)
{
    const osg::Pnt3f centre(1, 0, -1);
    m_camera.setStandardView("front");
    EXPECT_LT(project(osg::Pnt3f(1, 0, 1))[2], project(centre)[2]);
    EXPECT_GT(project(osg::Pnt3f(2, 0, -1))[0], 200);
    m_camera.setStandardView("right");
    EXPECT_LT(project(osg::Pnt3f(3, 0, -1))[2], project(centre)[2]);
    m_camera.setStandardView("top");
    EXPECT_LT(project(osg::Pnt3f(1, 2, -1))[2], project(centre)[2]);
}

TEST_F(CameraControllerTest, AnUnknownViewChangesNothing)
{
    m_changes = 0;

    EXPECT_FALSE(m_camera.setStandardView("Front"));

    EXPECT_EQ(m_changes, 0);
}

TEST_F(CameraControllerTest, PanningTakesTheSceneAlongWithThePointer)
{
    m_camera.setStandardView("front");
    const Vector4 before = project(osg::Pnt3f(1, 0, -1));

    m_camera.pan(30, -20);

    const Vector4 after = project(osg::Pnt3f(1, 0, -1));
    EXPECT_NEAR(after[0] - before[0], 30, 0.5);
    EXPECT_NEAR(after[1] - before[1], -20, 0.5);
}

TEST_F(CameraControllerTest, WhatWouldLeadBeyondAllNumbersMovesNothing)
{
    m_camera.setPose({{1, 2, 3}, 1e30, 10, 20, false});
    const viewer::CameraController::Pose before = m_camera.getPose();

    m_camera.pan(1e300, 1e300);

    EXPECT_EQ(m_camera.getPose(), before);
    EXPECT_TRUE(m_camera.getView().isFinite());
}

TEST_F(CameraControllerTest, OrbitingTurnsNearThingsWithThePointer)
{
    m_camera.setStandardView("front");
    const Vector4 before = project(osg::Pnt3f(1, 0, 1));

    m_camera.orbit(10, 0);

    EXPECT_GT(project(osg::Pnt3f(1, 0, 1))[0], before[0] + 1);
    EXPECT_NEAR(project(osg::Pnt3f(1, 0, -1))[0], 200, 1);
}

TEST_F(CameraControllerTest, StandardViewsLookExactlyAlongTheAxes)
{
    struct Expected {
        const char* view;
        int right[3];
        int up[3];
    };
    const Expected all[] = {{"front", {1, 0, 0}, {0, 1, 0}}, {"back", {-1, 0, 0}, {0, 1, 0}},
                            {"left", {0, 0, 1}, {0, 1, 0}},  {"right", {0, 0, -1}, {0, 1, 0}},
                            {"top", {1, 0, 0}, {0, 0, -1}},  {"bottom", {1, 0, 0}, {0, 0, 1}}};
    for (const Expected& expected : all) {
        m_camera.setStandardView(expected.view);

        const Matrix4 view = m_camera.getView();
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(view(0, axis), expected.right[axis]) << expected.view;
            EXPECT_EQ(view(1, axis), expected.up[axis]) << expected.view;
        }
    }
}

TEST_F(CameraControllerTest, OrbitingStopsAtThePolesAndComesBack)
{
    m_camera.setStandardView("front");
    m_camera.orbit(0, 1e6);

    // Straight from above, as the standard view does, and still free to turn sideways.
    EXPECT_EQ(m_camera.getView()(2, 1), 1);
    m_camera.orbit(100, 0);
    EXPECT_EQ(m_camera.getView()(2, 1), 1);
    EXPECT_NEAR(m_camera.getView()(0, 0), 0, 1e-12);

    m_camera.orbit(-100, -100);
    EXPECT_NEAR(m_camera.getView()(1, 1), 1, 1e-12);
    EXPECT_NEAR(m_camera.getView()(0, 0), 1, 1e-12);
}

TEST_F(CameraControllerTest, UpIsNeverDown)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> movement(-300, 300);
    for (int i = 0; i < 1000; ++i) {
        m_camera.orbit(movement(random), movement(random), osg::Pnt3f(1, 2, 3));

        ASSERT_GE(m_camera.getView()(1, 1), 0);
        ASSERT_NEAR(m_camera.getView()(0, 1), 0, 1e-12) << "the horizon is level";
    }
}

TEST_F(CameraControllerTest, ZoomingEnlarges)
{
    m_camera.setStandardView("front");
    const double before = project(osg::Pnt3f(2, 0, -1))[0];

    m_camera.zoom(2);

    EXPECT_NEAR(project(osg::Pnt3f(2, 0, -1))[0] - 200, 2 * (before - 200), 1);
}

TEST_F(CameraControllerTest, SenselessMovementsAreIgnored)
{
    const Matrix4 before = m_camera.getView();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    m_changes = 0;

    for (const double factor : {0.0, -1.0, nan, infinity}) {
        m_camera.zoom(factor);
    }
    m_camera.zoom(2, nan, 0);
    m_camera.zoom(2, 0, infinity);
    for (const double delta : {nan, infinity}) {
        m_camera.orbit(delta, 0);
        m_camera.turn(0, delta);
        m_camera.pan(0, delta);
    }

    EXPECT_TRUE(m_camera.getView() == before);
    EXPECT_EQ(m_changes, 0);
}

TEST_F(CameraControllerTest, ZoomingKeepsEverythingOnTheRayThroughThePointerUnderIt)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> share(0, 1);
    for (const bool parallel : {false, true}) {
        m_camera.setParallel(parallel);
        m_camera.setStandardView("iso");
        // Ten zooms in and out at one place, with surfaces at various depths and with none.
        const double x = 50 + 300 * share(random);
        const double y = 20 + 160 * share(random);
        const auto [nearPoint, farPoint] = rayAt(x, y);
        for (int i = 0; i < 10; ++i) {
            const double depth = 0.2 + 0.6 * share(random);
            std::optional<osg::Pnt3f> surface;
            if (i % 3 != 0) {
                surface = osg::Pnt3f(static_cast<float>(nearPoint[0] + (farPoint[0] - nearPoint[0]) * depth),
                                     static_cast<float>(nearPoint[1] + (farPoint[1] - nearPoint[1]) * depth),
                                     static_cast<float>(nearPoint[2] + (farPoint[2] - nearPoint[2]) * depth));
            }
            m_camera.zoom(0.8 + 0.5 * share(random), x, y, surface);

            for (const std::array<double, 3>& point : {nearPoint, farPoint}) {
                const std::array<double, 2> place = projectExactly(point);
                EXPECT_NEAR(place[0], x, 1e-4);
                EXPECT_NEAR(place[1], y, 1e-4);
            }
        }
    }
}

TEST_F(CameraControllerTest, ZoomingEnlargesTheSurfaceByTheFactor)
{
    for (const bool parallel : {false, true}) {
        m_camera.setParallel(parallel);
        m_camera.setStandardView("front");
        // Both in a plane before the point of interest.
        const osg::Pnt3f a(0.5F, 0.25F, 0.75F);
        const osg::Pnt3f b(1, -0.5F, 0.75F);
        const Vector4 beforeA = project(a);
        const Vector4 beforeB = project(b);

        m_camera.zoom(1.7, 300, 150, a);

        EXPECT_NEAR(project(b)[0] - project(a)[0], 1.7 * (beforeB[0] - beforeA[0]), 1e-3);
        EXPECT_NEAR(project(b)[1] - project(a)[1], 1.7 * (beforeB[1] - beforeA[1]), 1e-3);
    }
}

TEST_F(CameraControllerTest, ZoomingInEndsBeforeTheSurfaceAndZoomingOutSomewhere)
{
    const osg::Pnt3f surface(1, 0, 1);
    for (const bool parallel : {false, true}) {
        m_camera.setParallel(parallel);
        m_camera.setStandardView("front");
        for (int i = 0; i < 200; ++i) {
            m_camera.zoom(1.5, 200, 100, surface);
        }
        // Still in front of the eye and not cut away.
        EXPECT_GT(project(surface)[2], -1);
        EXPECT_LT(project(surface)[2], 1);
        m_changes = 0;
        m_camera.zoom(1.5);
        EXPECT_EQ(m_changes, 0) << "at the limit nothing moves any more";

        for (int i = 0; i < 100; ++i) {
            m_camera.zoom(0.5);
        }
        EXPECT_TRUE(Matrix4(m_camera.getWorldToClip()).isFinite());
        m_changes = 0;
        m_camera.zoom(0.5);
        EXPECT_EQ(m_changes, 0) << "nor at the other one";
        m_camera.zoom(2);
        EXPECT_EQ(m_changes, 1) << "but there is a way back";
    }
}

TEST_F(CameraControllerTest, ASurfaceBehindTheEyeIsNoReasonToTurnAround)
{
    m_camera.setStandardView("front");
    CameraController other;
    other.setViewportSize(400, 200);
    other.setSceneBounds(osg::Pnt3f(-1, -2, -3), osg::Pnt3f(3, 2, 1));
    other.setStandardView("front");

    m_camera.zoom(1.5, 10, 20, osg::Pnt3f(0, 0, 1000));
    m_camera.pan(3, 4, osg::Pnt3f(0, 0, 1000));
    other.zoom(1.5, 10, 20);
    other.pan(3, 4);

    EXPECT_TRUE(m_camera.getView() == other.getView());
}

TEST_F(CameraControllerTest, OrbitingLeavesThePivotAtItsPixel)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> movement(-40, 40);
    for (const bool parallel : {false, true}) {
        m_camera.setParallel(parallel);
        m_camera.setStandardView("iso");
        const osg::Pnt3f pivot(2.5F, 1.5F, 0.25F);
        const std::array<double, 2> before = *m_camera.getPlace(pivot);
        const Vector4 inEye = m_camera.getView().transform(pivot);
        for (int i = 0; i < 50; ++i) {
            m_camera.orbit(movement(random), movement(random), pivot);
        }

        EXPECT_NEAR((*m_camera.getPlace(pivot))[0], before[0], 1e-6);
        EXPECT_NEAR((*m_camera.getPlace(pivot))[1], before[1], 1e-6);
        if (!parallel) {
            EXPECT_NEAR(m_camera.getView().transform(pivot)[2], inEye[2], 1e-9) << "and at its distance";
        }
    }
}

TEST_F(CameraControllerTest, PanningTakesTheGrabbedPointAlongExactly)
{
    for (const bool parallel : {false, true}) {
        m_camera.setParallel(parallel);
        m_camera.setStandardView("iso");
        const osg::Pnt3f grabbed(2.5F, 1.5F, 0.25F);
        const std::array<double, 2> before = *m_camera.getPlace(grabbed);

        m_camera.pan(31, -17, grabbed);

        EXPECT_NEAR((*m_camera.getPlace(grabbed))[0] - before[0], 31, 1e-6);
        EXPECT_NEAR((*m_camera.getPlace(grabbed))[1] - before[1], -17, 1e-6);
    }
}

TEST_F(CameraControllerTest, EveryFitTouchesTheMarginAndLeavesNothingOut)
{
    // A lopsided tetrahedron: its middle is not the middle of its box.
    const std::vector<osg::Pnt3f> points{osg::Pnt3f(-1, -2, -3), osg::Pnt3f(3, 2, -2), osg::Pnt3f(0, 2, 1),
                                         osg::Pnt3f(0.5F, -1, 0.5F)};
    for (const bool parallel : {false, true}) {
        m_camera.setParallel(parallel);
        for (const auto& [width, height] : {std::pair(400, 400), std::pair(1600, 200), std::pair(90, 900)}) {
            m_camera.setViewportSize(width, height);
            for (const char* view : {"iso", "left", "top", "bottom"}) {
                m_camera.setStandardView(view);
                m_camera.fit(points);

                // As a share of the half viewport: 0 in the middle, 1 at the border.
                double outermost = 0;
                for (const osg::Pnt3f& point : points) {
                    const std::array<double, 2> place = *m_camera.getPlace(point);
                    outermost =
                        std::max({outermost, std::abs(place[0] / width * 2 - 1), std::abs(place[1] / height * 2 - 1)});
                    const double depth = Matrix4(m_camera.getWorldToClip()).transform(point)[2];
                    EXPECT_LT(std::abs(depth / Matrix4(m_camera.getWorldToClip()).transform(point)[3]), 1);
                }
                EXPECT_NEAR(outermost, 1 / 1.275, 1e-6) << view << ' ' << width << " x " << height;
            }
        }
    }
}

TEST_F(CameraControllerTest, FittingOnePointLooksAtIt)
{
    for (const bool parallel : {false, true}) {
        m_camera.setParallel(parallel);
        m_camera.fit({osg::Pnt3f(2, 1, 0)});

        EXPECT_NEAR((*m_camera.getPlace(osg::Pnt3f(2, 1, 0)))[0], 200, 1e-6);
        EXPECT_NEAR((*m_camera.getPlace(osg::Pnt3f(2, 1, 0)))[1], 100, 1e-6);
        EXPECT_LT(std::abs(project(osg::Pnt3f(2, 1, 0))[2]), 1);
    }
}

TEST_F(CameraControllerTest, FittingNothingChangesNothing)
{
    m_camera.zoom(1.5);
    m_changes = 0;

    m_camera.fit(std::vector<osg::Pnt3f>());
    m_camera.fit({osg::Pnt3f(std::numeric_limits<float>::infinity(), 0, 0)});

    EXPECT_EQ(m_changes, 0);
}

TEST_F(CameraControllerTest, ParallelProjectionHasNoForeshortening)
{
    m_camera.setParallel(true);
    m_camera.setStandardView("front");
    m_camera.orbit(37, 21);

    // The same edge at the front and at the back of the scene, and one going away from the viewer.
    const auto edge = [&](const float z) {
        const std::array<double, 2> a = *m_camera.getPlace(osg::Pnt3f(-1, -2, z));
        const std::array<double, 2> b = *m_camera.getPlace(osg::Pnt3f(3, 2, z));
        return std::array<double, 2>{b[0] - a[0], b[1] - a[1]};
    };
    EXPECT_NEAR(edge(1)[0], edge(-3)[0], 1e-9);
    EXPECT_NEAR(edge(1)[1], edge(-3)[1], 1e-9);

    m_camera.setParallel(false);
    EXPECT_GT(std::abs(edge(1)[0] - edge(-3)[0]), 1) << "perspective has some";
}

TEST_F(CameraControllerTest, SwitchingTheProjectionKeepsTheSizeOfWhatIsLookedAt)
{
    m_camera.setStandardView("iso");
    const osg::Pnt3f surface(2.5F, 1.5F, 0.25F);
    const std::array<double, 2> place = *m_camera.getPlace(surface);
    m_camera.zoom(1.3, place[0], place[1], surface);
    // A step to the right in the picture, at the depth of the surface.
    const Matrix4 view = m_camera.getView();
    const osg::Pnt3f beside = surface + osg::Vec3f(static_cast<float>(view(0, 0)), static_cast<float>(view(0, 1)),
                                                   static_cast<float>(view(0, 2)));
    const double before = (*m_camera.getPlace(beside))[0] - (*m_camera.getPlace(surface))[0];

    m_camera.setParallel(true);

    EXPECT_TRUE(m_camera.isParallel());
    EXPECT_NEAR((*m_camera.getPlace(beside))[0] - (*m_camera.getPlace(surface))[0], before, 1e-4);
    EXPECT_NEAR((*m_camera.getPlace(surface))[0], place[0], 1e-4);
    EXPECT_NEAR((*m_camera.getPlace(surface))[1], place[1], 1e-4);

    m_camera.setParallel(false);
    EXPECT_TRUE(m_camera.getView() == view);
}

TEST_F(CameraControllerTest, SwitchingTheProjectionOfAFittedSceneFitsItAgain)
{
    m_camera.setStandardView("iso");
    CameraController parallel;
    parallel.setViewportSize(400, 200);
    parallel.setSceneBounds(osg::Pnt3f(-1, -2, -3), osg::Pnt3f(3, 2, 1));
    parallel.setParallel(true);
    parallel.setStandardView("iso");

    m_camera.setParallel(true);

    EXPECT_TRUE(m_camera.getView() == parallel.getView());
    EXPECT_TRUE(m_camera.getProjection() == parallel.getProjection());
}

TEST_F(CameraControllerTest, WhatIsBehindTheEyeHasNoPlace)
{
    m_camera.setStandardView("front");

    EXPECT_FALSE(m_camera.getPlace(osg::Pnt3f(0, 0, 1000)).has_value());
    EXPECT_TRUE(m_camera.getPlace(osg::Pnt3f(0, 0, -1000)).has_value());
}

TEST_F(CameraControllerTest, AFittedSceneIsFittedAgainWhenTheViewportChanges)
{
    m_camera.setStandardView("front");
    m_camera.setViewportSize(50, 400);
    CameraController narrow;
    narrow.setViewportSize(50, 400);
    narrow.setSceneBounds(osg::Pnt3f(-1, -2, -3), osg::Pnt3f(3, 2, 1));
    narrow.setStandardView("front");

    EXPECT_EQ(m_camera.getWorldToClip(), narrow.getWorldToClip());
}

TEST_F(CameraControllerTest, AViewThatWasMovedIsKeptWhenTheViewportChanges)
{
    m_camera.setStandardView("front");
    m_camera.zoom(1.5);
    const Matrix4 view = m_camera.getView();

    m_camera.setViewportSize(50, 400);

    EXPECT_EQ(m_camera.getView().toMatrix(), view.toMatrix());
}

TEST_F(CameraControllerTest, BoundsThatAreNoBoxCountAsTheUnitBox)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    for (const auto& [minimum, maximum] :
         {std::pair(osg::Pnt3f(nan, 0, 0), osg::Pnt3f(1, 1, 1)), std::pair(osg::Pnt3f(0, 0, 0), osg::Pnt3f(0, 0, 0)),
          std::pair(osg::Pnt3f(1, 0, 0), osg::Pnt3f(0, 1, 1)),
          std::pair(osg::Pnt3f(-infinity, 0, 0), osg::Pnt3f(1, 1, 1))}) {
        m_camera.setSceneBounds(minimum, maximum);
        m_camera.fit();

        EXPECT_NEAR(m_camera.getSceneRadius(), std::sqrt(0.75), 1e-12);
        EXPECT_TRUE(Matrix4(m_camera.getWorldToClip()).isFinite());
    }
}

TEST_F(CameraControllerTest, AViewportWithoutSizeIsNoHarm)
{
    m_camera.setViewportSize(0, -5);
    m_camera.fit();

    EXPECT_TRUE(Matrix4(m_camera.getWorldToClip()).isFinite());
}

TEST_F(CameraControllerTest, AFittedSelectionIsFittedAgainWhenTheViewportChanges)
{
    const std::vector<osg::Pnt3f> part{osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 0.5F, 0)};
    m_camera.setStandardView("front");
    m_camera.fit(part);

    m_camera.setViewportSize(100, 100);

    EXPECT_NEAR((*m_camera.getPlace(part[0]))[0], 50 - 50 / 1.275, 1e-4);
    EXPECT_NEAR((*m_camera.getPlace(part[1]))[0], 50 + 50 / 1.275, 1e-4);
}

TEST_F(CameraControllerTest, EveryMovementReportsOneChange)
{
    m_camera.setStandardView("front");
    m_changes = 0;
    const auto expectOne = [&](const char* what) {
        EXPECT_EQ(m_changes, 1) << what;
        m_changes = 0;
    };

    m_camera.orbit(1, 1);
    expectOne("orbit");
    m_camera.turn(1, 1);
    expectOne("turn");
    m_camera.pan(1, 1);
    expectOne("pan");
    m_camera.zoom(1.1);
    expectOne("zoom");
    m_camera.zoom(1.1, 3, 4, osg::Pnt3f(0, 0, 1));
    expectOne("zoom at a place");
    m_camera.fit();
    expectOne("fit");
    m_camera.fit({osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 0)});
    expectOne("fit of points");
    m_camera.setStandardView("top");
    expectOne("standard view");
    m_camera.setParallel(true);
    expectOne("projection");
    m_camera.setViewportSize(10, 10);
    expectOne("size");
    m_camera.setSceneBounds(osg::Pnt3f(-1, -2, -3), osg::Pnt3f(4, 2, 1));
    expectOne("near and far plane");
}

TEST_F(CameraControllerTest, WhatChangesNothingReportsNothing)
{
    m_camera.setStandardView("top");
    m_changes = 0;

    m_camera.setStandardView("top");
    m_camera.fit();
    m_camera.setViewportSize(400, 200);
    m_camera.setParallel(false);
    m_camera.setSceneBounds(osg::Pnt3f(-1, -2, -3), osg::Pnt3f(3, 2, 1));
    m_camera.orbit(0, 0);
    m_camera.pan(0, 0);
    m_camera.zoom(1);
    m_camera.orbit(0, 50);

    EXPECT_EQ(m_changes, 0);
}

TEST_F(CameraControllerTest, SeveralOperationsAtOnceReportOneChange)
{
    m_changes = 0;

    m_camera.changeAtOnce([&] {
        m_camera.setSceneBounds(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 1));
        m_camera.changeAtOnce([&] { m_camera.setStandardView("left"); });
        EXPECT_EQ(m_changes, 0);
    });

    EXPECT_EQ(m_changes, 1);
}

TEST(Matrix4Test, AnInverseTakesBackWhatItsMatrixDoes)
{
    Matrix4 matrix;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            // The last rows first: the elimination has to look for its pivots.
            matrix(row, column) = row + column == 3 ? 7 * (row + 1) : std::sin(row * 4.7 + column * column * 1.3);
        }
    }
    bool invertible = false;

    const Matrix4 product = matrix * matrix.inverted(&invertible);

    EXPECT_TRUE(invertible);
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            EXPECT_NEAR(product(row, column), row == column ? 1 : 0, 1e-9);
        }
    }
}

TEST(Matrix4Test, AFlatMatrixHasNoInverse)
{
    Matrix4 matrix;
    matrix(2, 2) = 0;
    bool invertible = true;

    EXPECT_EQ(matrix.inverted(&invertible).toMatrix(), osg::Matrix());

    EXPECT_FALSE(invertible);
}

TEST_F(CameraControllerTest, APoseBringsTheViewBackExactly)
{
    m_camera.setStandardView("iso");
    m_camera.orbit(13, 7);
    m_camera.zoom(1.3);
    const CameraController::Pose moved = m_camera.getPose();
    const osg::Matrix before = m_camera.getWorldToClip();
    m_camera.setStandardView("top");
    EXPECT_NE(m_camera.getPose(), moved);

    m_camera.setPose(moved);

    EXPECT_EQ(m_camera.getPose(), moved);
    EXPECT_EQ(m_camera.getWorldToClip(), before);
    EXPECT_FALSE(moved.fitted);
}

TEST_F(CameraControllerTest, AFittedPoseIsFittedAgainInAnotherViewport)
{
    m_camera.setStandardView("iso");
    const CameraController::Pose fitted = m_camera.getPose();
    EXPECT_TRUE(fitted.fitted);
    m_camera.setViewportSize(300, 300);
    const osg::Matrix wanted = m_camera.getWorldToClip();
    m_camera.zoom(2);
    m_camera.setViewportSize(400, 200);

    m_camera.setPose(fitted);
    m_camera.setViewportSize(300, 300);

    EXPECT_EQ(m_camera.getWorldToClip(), wanted);
}

} // namespace

} // namespace quon::testing
