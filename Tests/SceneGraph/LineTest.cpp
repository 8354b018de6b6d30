// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGLine.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;

const BoxVolume unitBox(-1, -1, -1, 1, 1, 1);

TEST(LineTest, TheDirectionHasLengthOne)
{
    const Line line(Pnt3f(1, 2, 3), Vec3f(0, 3, 4));

    EXPECT_EQ(line.getPosition(), Pnt3f(1, 2, 3));
    EXPECT_EQ(line.getDirection(), Vec3f(0, 0.6F, 0.8F));
}

TEST(LineTest, TwoPointsGiveTheDirectionFromTheFirstToTheSecond)
{
    const Line line(Pnt3f(1, 0, 0), Pnt3f(5, 0, 0));

    EXPECT_EQ(line.getPosition(), Pnt3f(1, 0, 0));
    EXPECT_EQ(line.getDirection(), Vec3f(1, 0, 0));
}

TEST(LineTest, MeetsABoxWhereItEntersAndLeaves)
{
    const Line line(Pnt3f(0, 0, 5), Vec3f(0, 0, -1));
    Real32 enter = 0.0F;
    Real32 exit = 0.0F;

    EXPECT_TRUE(line.intersect(unitBox, enter, exit));

    EXPECT_FLOAT_EQ(enter, 4.0F);
    EXPECT_FLOAT_EQ(exit, 6.0F);
}

TEST(LineTest, EntersAtZeroWhenItStartsInsideTheBox)
{
    const Line line(Pnt3f(0, 0, 0), Vec3f(0, 0, -1));
    Real32 enter = -1.0F;
    Real32 exit = 0.0F;

    EXPECT_TRUE(line.intersect(unitBox, enter, exit));

    EXPECT_EQ(enter, 0.0F);
    EXPECT_FLOAT_EQ(exit, 1.0F);
}

TEST(LineTest, MissesABoxBehindOrBesideIt)
{
    Real32 enter = 0.0F;
    Real32 exit = 0.0F;

    EXPECT_FALSE(Line(Pnt3f(0, 0, 5), Vec3f(0, 0, 1)).intersect(unitBox, enter, exit));
    EXPECT_FALSE(Line(Pnt3f(3, 0, 5), Vec3f(0, 0, -1)).intersect(unitBox, enter, exit));
    EXPECT_FALSE(Line(Pnt3f(0, 5, 5), Vec3f(1, 0, -1)).intersect(unitBox, enter, exit));
}

TEST(LineTest, MeetsABoxAlongTheDiagonal)
{
    const Line line(Pnt3f(-2, -2, -2), Vec3f(1, 1, 1));
    Real32 enter = 0.0F;
    Real32 exit = 0.0F;

    EXPECT_TRUE(line.intersect(unitBox, enter, exit));

    EXPECT_NEAR(enter, 1.7320508F, 1e-5F);
    EXPECT_NEAR(exit, 5.1961524F, 1e-5F);
}

TEST(LineTest, MeetsATriangleAtItsDistanceWithItsNormal)
{
    const Line line(Pnt3f(0.25F, 0.25F, 3), Vec3f(0, 0, -1));
    Real32 distance = 0.0F;
    Vec3f normal;

    EXPECT_TRUE(line.intersect(Pnt3f(0, 0, 0), Pnt3f(1, 0, 0), Pnt3f(0, 1, 0), distance, &normal));

    EXPECT_FLOAT_EQ(distance, 3.0F);
    EXPECT_EQ(normal, Vec3f(0, 0, 1));
}

TEST(LineTest, MeetsATriangleFromBehindAsWell)
{
    const Line line(Pnt3f(0.25F, 0.25F, -3), Vec3f(0, 0, 1));
    Real32 distance = 0.0F;

    EXPECT_TRUE(line.intersect(Pnt3f(0, 0, 0), Pnt3f(1, 0, 0), Pnt3f(0, 1, 0), distance));

    EXPECT_FLOAT_EQ(distance, 3.0F);
}

TEST(LineTest, MissesATriangleBesideOrParallelToIt)
{
    const Pnt3f a(0, 0, 0);
    const Pnt3f b(1, 0, 0);
    const Pnt3f c(0, 1, 0);
    Real32 distance = 0.0F;

    EXPECT_FALSE(Line(Pnt3f(0.75F, 0.75F, 3), Vec3f(0, 0, -1)).intersect(a, b, c, distance));
    EXPECT_FALSE(Line(Pnt3f(-0.1F, 0.5F, 3), Vec3f(0, 0, -1)).intersect(a, b, c, distance));
    EXPECT_FALSE(Line(Pnt3f(0, 0, 1), Vec3f(1, 0, 0)).intersect(a, b, c, distance));
}

TEST(LineTest, MeetsATriangleOnlyInFrontOfItsPosition)
{
    Real32 distance = -1.0F;

    EXPECT_FALSE(Line(Pnt3f(0.25F, 0.25F, -1), Vec3f(0, 0, -1))
                     .intersect(Pnt3f(0, 0, 0), Pnt3f(1, 0, 0), Pnt3f(0, 1, 0), distance));

    EXPECT_EQ(distance, -1.0F);
}

TEST(LineTest, SetValueReplacesPositionAndDirection)
{
    Line line(Pnt3f(1, 2, 3), Vec3f(0, 0, 1));

    line.setValue(Pnt3f(4, 0, 0), Pnt3f(4, 0, -7));

    EXPECT_EQ(line.getPosition(), Pnt3f(4, 0, 0));
    EXPECT_EQ(line.getDirection(), Vec3f(0, 0, -1));
}

TEST(LineTest, TheClosestPointIsTheFootOnTheLine)
{
    const Line line(Pnt3f(1, 1, 0), Vec3f(2, 0, 0));

    EXPECT_EQ(line.getClosestPoint(Pnt3f(5, 4, 4)), Pnt3f(5, 1, 0));
    EXPECT_FLOAT_EQ(line.distance(Pnt3f(5, 4, 4)), 5.0F);
}

TEST(LineTest, TheFootMayLieBehindThePosition)
{
    const Line line(Pnt3f(1, 1, 0), Vec3f(2, 0, 0));

    EXPECT_EQ(line.getClosestPoint(Pnt3f(-5, 4, 0)), Pnt3f(-5, 1, 0));
    EXPECT_FLOAT_EQ(line.distance(Pnt3f(-5, 4, 0)), 3.0F);
}

TEST(LineTest, MeetsNoEmptyBox)
{
    BoxVolume box(unitBox);
    box.setEmpty();

    EXPECT_FALSE(Line(Pnt3f(0, 0, 5), Vec3f(0, 0, -1)).intersect(box));
}

} // namespace
