// SPDX-License-Identifier: MIT
#include "Viewer/Tools/CameraController.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

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

TEST_F(CameraControllerTest, OrbitingTurnsNearThingsWithThePointer)
{
    m_camera.setStandardView("front");
    const Vector4 before = project(osg::Pnt3f(1, 0, 1));

    m_camera.orbit(10, 0);

    EXPECT_GT(project(osg::Pnt3f(1, 0, 1))[0], before[0] + 1);
    EXPECT_NEAR(project(osg::Pnt3f(1, 0, -1))[0], 200, 1);
}

TEST_F(CameraControllerTest, OrbitingStopsBeforeThePoles)
{
    m_camera.orbit(0, 1e6);

    EXPECT_GT(m_camera.getView()(1, 1), 0);
    EXPECT_TRUE(m_camera.getView().isFinite());
}

TEST_F(CameraControllerTest, ZoomingEnlarges)
{
    m_camera.setStandardView("front");
    const double before = project(osg::Pnt3f(2, 0, -1))[0];

    m_camera.zoom(2);

    EXPECT_NEAR(project(osg::Pnt3f(2, 0, -1))[0] - 200, 2 * (before - 200), 1);
}

TEST_F(CameraControllerTest, SenselessZoomsAreIgnored)
{
    const osg::Matrix before = m_camera.getWorldToClip();

    for (const double factor :
         {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        m_camera.zoom(factor);
    }

    EXPECT_EQ(m_camera.getWorldToClip(), before);
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

TEST_F(CameraControllerTest, EveryMovementReportsOneChange)
{
    m_changes = 0;

    m_camera.orbit(1, 1);
    m_camera.pan(1, 1);
    m_camera.zoom(1.1);
    m_camera.fit();
    m_camera.setStandardView("top");
    m_camera.setViewportSize(10, 10);

    EXPECT_EQ(m_changes, 6);
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

} // namespace

} // namespace quon::testing
