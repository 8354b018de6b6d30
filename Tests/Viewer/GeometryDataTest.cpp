// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "Viewer/Model/GeometryData.h"

#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::GeometryData;

class GeometryDataTest : public SceneFixture {
protected:
    // Corners 0 to 5 in a row.
    static osg::RefPtr<osg::GeometryPtr> make(const GLenum type, const std::vector<osg::UInt32>& indices)
    {
        std::vector<osg::Pnt3f> corners;
        for (int i = 0; i < 6; ++i) {
            corners.emplace_back(static_cast<float>(i), 0, 0);
        }
        return osg::RefPtr<osg::GeometryPtr>(makeGeometry(type, corners, indices, osg::NullFC));
    }

    static GeometryData read(const GLenum type, const std::vector<osg::UInt32>& indices)
    {
        const osg::RefPtr<osg::GeometryPtr> geometry = make(type, indices);
        return GeometryData::read(geometry.get());
    }
};

TEST_F(GeometryDataTest, NothingComesOfANullGeometryOrOneWithoutProperties)
{
    const osg::RefPtr<osg::GeometryPtr> empty(osg::Geometry::create());

    EXPECT_THAT(GeometryData::read(osg::NullFC).positions, IsEmpty());
    EXPECT_THAT(GeometryData::read(empty.get()).positions, IsEmpty());
}

TEST_F(GeometryDataTest, WithoutIndicesThePositionsFollowEachOther)
{
    EXPECT_THAT(read(GL_TRIANGLES, {}).triangles, ElementsAre(0, 1, 2, 3, 4, 5));
}

TEST_F(GeometryDataTest, EverySecondTriangleOfAStripIsTurnedRound)
{
    EXPECT_THAT(read(GL_TRIANGLE_STRIP, {0, 1, 2, 3, 4}).triangles, ElementsAre(0, 1, 2, 2, 1, 3, 2, 3, 4));
}

TEST_F(GeometryDataTest, FansAndPolygonsTurnAroundTheirFirstCorner)
{
    EXPECT_THAT(read(GL_TRIANGLE_FAN, {5, 1, 2, 3}).triangles, ElementsAre(5, 1, 2, 5, 2, 3));
    EXPECT_THAT(read(GL_POLYGON, {5, 1, 2, 3}).triangles, ElementsAre(5, 1, 2, 5, 2, 3));
}

TEST_F(GeometryDataTest, QuadsBecomeTwoTrianglesEach)
{
    EXPECT_THAT(read(GL_QUADS, {0, 1, 2, 3}).triangles, ElementsAre(0, 1, 2, 0, 2, 3));
    EXPECT_THAT(read(GL_QUAD_STRIP, {0, 1, 2, 3}).triangles, ElementsAre(0, 1, 3, 0, 3, 2));
}

TEST_F(GeometryDataTest, StripsAndLoopsBecomeSingleLines)
{
    EXPECT_THAT(read(GL_LINE_STRIP, {3, 1, 2}).lines, ElementsAre(3, 1, 1, 2));
    EXPECT_THAT(read(GL_LINE_LOOP, {3, 1, 2}).lines, ElementsAre(3, 1, 1, 2, 2, 3));
}

TEST_F(GeometryDataTest, AnUnfinishedPrimitiveIsLeftOut)
{
    EXPECT_THAT(read(GL_TRIANGLES, {0, 1, 2, 3, 4}).triangles, ElementsAre(0, 1, 2));
    EXPECT_THAT(read(GL_LINES, {0, 1, 2}).lines, ElementsAre(0, 1));
    EXPECT_THAT(read(GL_QUADS, {0, 1, 2}).triangles, IsEmpty());
    EXPECT_THAT(read(GL_TRIANGLE_FAN, {0}).triangles, IsEmpty());
}

TEST_F(GeometryDataTest, APrimitiveWithAnIndexOutOfRangeIsLeftOut)
{
    EXPECT_THAT(read(GL_TRIANGLES, {0, 1, 6, 3, 4, 5}).triangles, ElementsAre(3, 4, 5));
    EXPECT_THAT(read(GL_POINTS, {0, 1000000}).points, ElementsAre(0));
}

TEST_F(GeometryDataTest, AnUnknownKindOfPrimitiveIsLeftOut)
{
    EXPECT_THAT(read(77, {0, 1, 2}).triangles, IsEmpty());
}

TEST_F(GeometryDataTest, ALengthBeyondTheIndicesEndsWithThem)
{
    const osg::RefPtr<osg::GeometryPtr> geometry = make(GL_TRIANGLES, {0, 1, 2, 3});
    geometry->getLengths()->setValue(4000000000U, 0);
    geometry->getTypes()->push_back(GL_LINES);
    geometry->getLengths()->push_back(2);

    const GeometryData data = GeometryData::read(geometry.get());

    EXPECT_THAT(data.triangles, ElementsAre(0, 1, 2));
    EXPECT_THAT(data.lines, IsEmpty());
}

TEST_F(GeometryDataTest, SeveralPrimitivesTakeTheirSharesInOrder)
{
    const osg::RefPtr<osg::GeometryPtr> geometry = make(GL_LINE_STRIP, {0, 1, 2, 3, 4, 5});
    geometry->getLengths()->setValue(3, 0);
    geometry->getTypes()->push_back(GL_LINES);
    geometry->getLengths()->push_back(2);

    EXPECT_THAT(GeometryData::read(geometry.get()).lines, ElementsAre(0, 1, 1, 2, 3, 4));
}

TEST_F(GeometryDataTest, APropertyShorterThanThePositionsIsLeftOut)
{
    const osg::RefPtr<osg::GeometryPtr> geometry = make(GL_TRIANGLES, {});
    const osg::GeoNormals3fPtr normals = osg::GeoNormals3f::create();
    normals->push_back(osg::Vec3f(0, 0, 1));
    geometry->setNormals(normals);

    EXPECT_THAT(GeometryData::read(geometry.get()).normals, IsEmpty());
}

TEST_F(GeometryDataTest, ColoursWithAlphaKeepIt)
{
    const osg::RefPtr<osg::GeometryPtr> geometry = make(GL_TRIANGLES, {});
    const osg::GeoColors4fPtr colours = osg::GeoColors4f::create();
    for (int i = 0; i < 6; ++i) {
        colours->editFieldPtr()->push_back(osg::Color4f(1, 0, 0, 0.25F));
    }
    geometry->setColors(colours);

    EXPECT_EQ(GeometryData::read(geometry.get()).colours.at(5).alpha(), 0.25F);
}

TEST_F(GeometryDataTest, BoundsCountUsedAndUsablePositionsAlone)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const osg::RefPtr<osg::GeometryPtr> geometry(
        makeGeometry(GL_TRIANGLES,
                     {osg::Pnt3f(1, 2, 3), osg::Pnt3f(4, -2, 3), osg::Pnt3f(2, 2, 5), osg::Pnt3f(100, 100, 100),
                      osg::Pnt3f(nan, 0, 0), osg::Pnt3f(3e30F, 0, 0)},
                     {0, 1, 2, 0, 1, 4, 0, 1, 5}, osg::NullFC));
    osg::Pnt3f minimum;
    osg::Pnt3f maximum;

    EXPECT_TRUE(GeometryData::read(geometry.get()).getBounds(minimum, maximum));

    EXPECT_EQ(minimum, osg::Pnt3f(1, -2, 3));
    EXPECT_EQ(maximum, osg::Pnt3f(4, 2, 5));
    EXPECT_FALSE(GeometryData().getBounds(minimum, maximum));
}

} // namespace

} // namespace quon::testing
