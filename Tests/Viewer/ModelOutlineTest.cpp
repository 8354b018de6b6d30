// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelOutline.h"

#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include <OpenSG/OSGRefPtr.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

namespace quon::testing {

namespace {

using viewer::ModelOutline;

class ModelOutlineTest : public SceneFixture {
protected:
    ModelOutlineTest()
        : m_cube(makeBox(osg::Pnt3f(-0.5F, -0.5F, -0.5F), osg::Pnt3f(0.5F, 0.5F, 0.5F), osg::NullFC))
        , m_root(makeGroup())
    {}

    ~ModelOutlineTest() override { m_root = osg::NullFC; }

    void addCube(const float x, const float y, const float z)
    {
        m_root->addChild(makeTransform(translation(x, y, z), {makeNode(m_cube.get())}));
    }

    static float reach(const ModelOutline& outline, const osg::Vec3f& direction)
    {
        float most = -std::numeric_limits<float>::infinity();
        for (const osg::Pnt3f& point : outline.points) {
            most = std::max(most, direction.dot(point.subZero()));
        }
        return most;
    }

    osg::RefPtr<osg::GeometryPtr> m_cube;
    osg::RefPtr<osg::NodePtr> m_root;
};

TEST_F(ModelOutlineTest, NothingHasNoOutline)
{
    EXPECT_TRUE(ModelOutline::find(osg::NullFC).points.empty());
    EXPECT_TRUE(ModelOutline::find(m_root.get()).points.empty());
}

TEST_F(ModelOutlineTest, TheBoxHoldsEveryPartWhateverTheOrder)
{
    addCube(0, 0, 0);
    addCube(10, 0, 0);
    addCube(0, -20, 0);
    addCube(1, 2, 0);
    addCube(0, 0, 30);

    const ModelOutline outline = ModelOutline::find(m_root.get());

    EXPECT_TRUE(outline.minimum == osg::Pnt3f(-0.5F, -20.5F, -0.5F));
    EXPECT_TRUE(outline.maximum == osg::Pnt3f(10.5F, 2.5F, 30.5F));
}

TEST_F(ModelOutlineTest, WhatIsWithinTheBoxCountsWhereItReachesFarther)
{
    for (const float side : {-10.0F, 10.0F}) {
        addCube(side, 0, 0);
        addCube(0, side, 0);
        addCube(0, 0, side);
    }
    addCube(9, 9, 9);
    addCube(9, -9, 9);

    const ModelOutline outline = ModelOutline::find(m_root.get());

    EXPECT_GT(reach(outline, osg::Vec3f(1, 1, 1)), 28.0F);
    EXPECT_GT(reach(outline, osg::Vec3f(1, -1, 1)), 28.0F);
    EXPECT_LT(reach(outline, osg::Vec3f(-1, -1, -1)), 12.0F);
}

TEST_F(ModelOutlineTest, TurnedPartsCountByTheirCornersAndNotByTheirBoxes)
{
    osg::Matrix turned;
    turned.setRotate(osg::Quaternion(osg::Vec3f(0, 0, 1), 0.78539816F));
    m_root->addChild(makeTransform(turned, {makeNode(m_cube.get())}));
    addCube(0.3F, 0, 0);

    const ModelOutline outline = ModelOutline::find(m_root.get());

    EXPECT_NEAR(outline.maximum[1], 0.70711F, 1e-4F);
    EXPECT_NEAR(outline.maximum[0], 0.8F, 1e-6F);
}

TEST_F(ModelOutlineTest, AmongVeryManyPositionsThoseFarthestOutAreFound)
{
    // A cloud within a ball, in no order, and one corner that reaches out of it.
    std::mt19937 random(1);
    std::uniform_real_distribution<float> coordinate(-1, 1);
    std::vector<osg::Pnt3f> corners;
    std::vector<osg::UInt32> indices;
    while (corners.size() < 20000) {
        const osg::Pnt3f corner(coordinate(random), coordinate(random), coordinate(random));
        if (corner.subZero().length() < 1) {
            indices.push_back(static_cast<osg::UInt32>(corners.size()));
            corners.push_back(corner);
        }
    }
    corners[12345] = osg::Pnt3f(1, 1, 1);
    m_root->addChild(makeNode(makeGeometry(GL_POINTS, corners, indices, osg::NullFC)));

    const ModelOutline outline = ModelOutline::find(m_root.get());

    osg::Pnt3f minimum = corners.front();
    osg::Pnt3f maximum = corners.front();
    for (const osg::Pnt3f& corner : corners) {
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            minimum[axis] = std::min(minimum[axis], corner[axis]);
            maximum[axis] = std::max(maximum[axis], corner[axis]);
        }
    }
    EXPECT_EQ(outline.minimum, minimum);
    EXPECT_EQ(outline.maximum, maximum);
    EXPECT_EQ(reach(outline, osg::Vec3f(1, 1, 1)), 3.0F);
    EXPECT_GT(reach(outline, osg::Vec3f(-1, -1, -1)), 1.6F);
}

TEST_F(ModelOutlineTest, WhatIsHiddenDoesNotCount)
{
    addCube(0, 0, 0);
    addCube(10, 0, 0);
    setTravMask(m_root->getChild(1), 0);

    EXPECT_EQ(ModelOutline::find(m_root.get()).maximum[0], 0.5F);
}

} // namespace

} // namespace quon::testing
