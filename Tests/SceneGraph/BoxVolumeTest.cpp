// SPDX-License-Identifier: MIT
#include "Support/RapidCheckConfiguration.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGQuaternion.h>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace osg;

Pnt3f minimumOf(const Volume& volume)
{
    Pnt3f minimum;
    Pnt3f maximum;
    volume.getBounds(minimum, maximum);
    return minimum;
}

Pnt3f maximumOf(const Volume& volume)
{
    Pnt3f minimum;
    Pnt3f maximum;
    volume.getBounds(minimum, maximum);
    return maximum;
}

TEST(BoxVolumeTest, AFreshBoxIsValidEmptyAndAtTheOrigin)
{
    const BoxVolume box;

    EXPECT_TRUE(box.isValid());
    EXPECT_TRUE(box.isEmpty());
    EXPECT_FALSE(box.isStatic());
    EXPECT_FALSE(box.isInfinite());
    for (UInt32 i = 0; i < 3; ++i) {
        EXPECT_EQ(box.getMin()[i], 0.0F);
        EXPECT_EQ(box.getMax()[i], 0.0F);
    }
}

TEST(BoxVolumeTest, ABoxWithCornersIsNotEmpty)
{
    const BoxVolume fromNumbers(1, 2, 3, 4, 5, 6);
    const BoxVolume fromPoints(Pnt3f(1, 2, 3), Pnt3f(4, 5, 6));

    EXPECT_FALSE(fromNumbers.isEmpty());
    EXPECT_FALSE(fromPoints.isEmpty());
    EXPECT_EQ(fromNumbers.getMin(), Pnt3f(1, 2, 3));
    EXPECT_EQ(fromPoints.getMax(), Pnt3f(4, 5, 6));
}

TEST(BoxVolumeTest, BoundsReadAsSixNumbers)
{
    const BoxVolume box(1, 2, 3, 4, 5, 6);
    Real32 values[6] = {};

    box.getBounds(values[0], values[1], values[2], values[3], values[4], values[5]);

    EXPECT_EQ(std::vector<Real32>(values, values + 6), (std::vector<Real32>{1, 2, 3, 4, 5, 6}));
}

TEST(BoxVolumeTest, TheFirstPointSetsBothCorners)
{
    BoxVolume box;

    box.extendBy(Pnt3f(5, 6, 7));

    EXPECT_FALSE(box.isEmpty());
    EXPECT_EQ(box.getMin(), Pnt3f(5, 6, 7));
    EXPECT_EQ(box.getMax(), Pnt3f(5, 6, 7));
}

TEST(BoxVolumeTest, FurtherPointsPushTheCornersApart)
{
    BoxVolume box;

    box.extendBy(Pnt3f(1, 1, 1));
    box.extendBy(Pnt3f(-1, 2, 1));
    box.extendBy(Pnt3f(0, 0, 5));

    EXPECT_EQ(box.getMin(), Pnt3f(-1, 0, 1));
    EXPECT_EQ(box.getMax(), Pnt3f(1, 2, 5));
}

TEST(BoxVolumeTest, EmptyingKeepsTheCorners)
{
    BoxVolume box(1, 2, 3, 4, 5, 6);

    box.setEmpty();

    EXPECT_TRUE(box.isEmpty());
    EXPECT_EQ(minimumOf(box), Pnt3f(1, 2, 3));
    EXPECT_EQ(maximumOf(box), Pnt3f(4, 5, 6));
}

TEST(BoxVolumeTest, EmptyingAnExtendedBoxKeepsTheCorners)
{
    BoxVolume box;
    box.extendBy(Pnt3f(1, 2, 3));

    box.setEmpty(true);

    EXPECT_TRUE(box.isEmpty());
    EXPECT_EQ(minimumOf(box), Pnt3f(1, 2, 3));
}

TEST(BoxVolumeTest, EmptyingMakesValidAndFinite)
{
    BoxVolume box(1, 2, 3, 4, 5, 6);
    box.setInfinite();
    box.setValid(false);

    box.setEmpty();

    EXPECT_TRUE(box.isValid());
    EXPECT_FALSE(box.isInfinite());
}

TEST(BoxVolumeTest, APointAfterEmptyingStartsAfresh)
{
    BoxVolume box(1, 2, 3, 4, 5, 6);
    box.setEmpty();

    box.extendBy(Pnt3f(9, 9, 9));

    EXPECT_EQ(box.getMin(), Pnt3f(9, 9, 9));
    EXPECT_EQ(box.getMax(), Pnt3f(9, 9, 9));
}

TEST(BoxVolumeTest, UntouchableBoxesDoNotExtend)
{
    BoxVolume invalid(0, 0, 0, 1, 1, 1);
    invalid.setValid(false);
    BoxVolume fixed(0, 0, 0, 1, 1, 1);
    fixed.setStatic();
    BoxVolume infinite(0, 0, 0, 1, 1, 1);
    infinite.setInfinite();

    for (BoxVolume* box : {&invalid, &fixed, &infinite}) {
        EXPECT_TRUE(box->isUntouchable());
        box->extendBy(Pnt3f(9, 9, 9));
        box->extendBy(BoxVolume(-9, -9, -9, 9, 9, 9));
        EXPECT_EQ(minimumOf(*box), Pnt3f(0, 0, 0));
        EXPECT_EQ(maximumOf(*box), Pnt3f(1, 1, 1));
    }
}

TEST(BoxVolumeTest, ExtendingByABoxTakesBothCorners)
{
    BoxVolume box(0, 0, 0, 1, 1, 1);

    box.extendBy(BoxVolume(-2, 0.5F, 0, 0, 3, 1));

    EXPECT_EQ(box.getMin(), Pnt3f(-2, 0, 0));
    EXPECT_EQ(box.getMax(), Pnt3f(1, 3, 1));
}

TEST(BoxVolumeTest, ExtendingByAnEmptyBoxChangesNothing)
{
    BoxVolume stale(-9, -9, -9, 9, 9, 9);
    stale.setEmpty();
    BoxVolume box(0, 0, 0, 1, 1, 1);
    BoxVolume empty;

    box.extendBy(stale);
    empty.extendBy(stale);

    EXPECT_EQ(box.getMax(), Pnt3f(1, 1, 1));
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(empty.getMax(), Pnt3f(0, 0, 0));
}

TEST(BoxVolumeTest, SettingBoundsMakesNotEmpty)
{
    BoxVolume bySize;
    BoxVolume byNumbers;
    BoxVolume byPoints;

    bySize.setBounds(2, 4, 6);
    byNumbers.setBounds(1, 2, 3, 4, 5, 6);
    byPoints.setBounds(Pnt3f(1, 2, 3), Pnt3f(4, 5, 6));

    EXPECT_FALSE(bySize.isEmpty());
    EXPECT_EQ(bySize.getMin(), Pnt3f(-1, -2, -3));
    EXPECT_EQ(bySize.getMax(), Pnt3f(1, 2, 3));
    EXPECT_FALSE(byNumbers.isEmpty());
    EXPECT_EQ(byNumbers, byPoints);
}

TEST(BoxVolumeTest, SizeAndCenterAndVolumeFollowTheCorners)
{
    const BoxVolume box(1, 2, 3, 4, 6, 8);
    Real32 width = 0.0F;
    Real32 height = 0.0F;
    Real32 depth = 0.0F;
    Pnt3f center;

    box.getSize(width, height, depth);
    box.getCenter(center);

    EXPECT_EQ(width, 3.0F);
    EXPECT_EQ(height, 4.0F);
    EXPECT_EQ(depth, 5.0F);
    EXPECT_EQ(center, Pnt3f(2.5F, 4, 5.5F));
    EXPECT_EQ(box.getScalarVolume(), 60.0F);
}

TEST(BoxVolumeTest, TranslationMovesBothCorners)
{
    BoxVolume box(-1, -1, -1, 1, 1, 1);
    Matrix matrix;
    matrix.setTranslate(10, 20, 30);

    box.transform(matrix);

    EXPECT_EQ(box.getMin(), Pnt3f(9, 19, 29));
    EXPECT_EQ(box.getMax(), Pnt3f(11, 21, 31));
}

TEST(BoxVolumeTest, RotationGivesTheBoxAroundTheTurnedBox)
{
    BoxVolume box(-1, -1, -1, 1, 1, 1);
    Matrix matrix;
    matrix.setTransform(Quaternion(Vec3f(0, 0, 1), Pi / 4));

    box.transform(matrix);

    EXPECT_TRUE(box.getMin().equals(Pnt3f(-1.4142135F, -1.4142135F, -1), 1e-5F));
    EXPECT_TRUE(box.getMax().equals(Pnt3f(1.4142135F, 1.4142135F, 1), 1e-5F));
}

TEST(BoxVolumeTest, MirroringKeepsTheCornersInOrder)
{
    BoxVolume box(1, 2, 3, 4, 5, 6);
    Matrix matrix;
    matrix.setScale(-1, 1, -2);

    box.transform(matrix);

    EXPECT_EQ(box.getMin(), Pnt3f(-4, 2, -12));
    EXPECT_EQ(box.getMax(), Pnt3f(-1, 5, -6));
}

TEST(BoxVolumeTest, TransformingAnEmptyBoxLeavesItsStaleCorners)
{
    BoxVolume box(1, 2, 3, 4, 5, 6);
    box.setEmpty();
    Matrix matrix;
    matrix.setTranslate(10, 20, 30);

    box.transform(matrix);

    EXPECT_TRUE(box.isEmpty());
    EXPECT_EQ(box.getMin(), Pnt3f(1, 2, 3));
    EXPECT_EQ(box.getMax(), Pnt3f(4, 5, 6));
}

TEST(BoxVolumeTest, AnEndlessBoxHasNoNumbersOnceItIsTransformed)
{
    constexpr Real32 infinity = std::numeric_limits<Real32>::infinity();
    BoxVolume box(-infinity, -infinity, -infinity, infinity, infinity, infinity);

    box.transform(Matrix());

    for (UInt32 i = 0; i < 3; ++i) {
        EXPECT_TRUE(std::isnan(box.getMin()[i]));
        EXPECT_TRUE(std::isnan(box.getMax()[i]));
    }
}

TEST(BoxVolumeTest, HitsPointsInsideButNotOnTheBorder)
{
    const BoxVolume box(-1, -1, -1, 1, 1, 1);

    EXPECT_TRUE(box.intersect(Pnt3f(0, 0, 0)));
    EXPECT_FALSE(box.intersect(Pnt3f(1, 0, 0)));
    EXPECT_FALSE(box.intersect(Pnt3f(0, 0, -1)));
    EXPECT_FALSE(box.intersect(Pnt3f(1.5F, 0, 0)));
    EXPECT_FALSE(BoxVolume().intersect(Pnt3f(0, 0, 0)));
}

TEST(BoxVolumeTest, HitsBoxesThatOverlap)
{
    const BoxVolume box(-1, -1, -1, 1, 1, 1);
    const Volume& overlapping = BoxVolume(0, 0, 0, 5, 5, 5);
    const Volume& apart = BoxVolume(0, 0, 2, 5, 5, 5);
    const Volume& empty = BoxVolume();

    EXPECT_TRUE(box.intersect(overlapping));
    EXPECT_FALSE(box.intersect(apart));
    EXPECT_FALSE(box.intersect(empty));
}

TEST(BoxVolumeTest, CopiesTakeFlagsAndCorners)
{
    BoxVolume box(1, 2, 3, 4, 5, 6);
    box.setEmpty();

    BoxVolume copy;
    copy = box;

    EXPECT_TRUE(copy.isEmpty());
    EXPECT_EQ(copy.getMax(), Pnt3f(4, 5, 6));
    EXPECT_EQ(copy, box);
}

TEST(BoxVolumeTest, NumbersThatAreNotFiniteDoNotCrash)
{
    constexpr Real32 infinity = std::numeric_limits<Real32>::infinity();
    constexpr Real32 notANumber = std::numeric_limits<Real32>::quiet_NaN();
    Matrix matrix;
    matrix.setTransform(Vec3f(1, notANumber, infinity), Quaternion(Vec3f(1, 1, 1), 1.0F));
    BoxVolume box(-infinity, 0, notANumber, infinity, 1, 2);

    box.extendBy(Pnt3f(notANumber, infinity, -infinity));
    box.transform(matrix);

    EXPECT_FALSE(box.isEmpty());
    EXPECT_FALSE(box.intersect(Pnt3f(notANumber, 0, 0)));
}

RC_GTEST_PROP(BoxVolumePropertyTest, TheTransformedBoxIsTheBoxAroundTheEightTransformedCorners, ())
{
    const auto number = [] { return static_cast<Real32>(*rc::gen::inRange(-500, 501)) / 50.0F; };
    BoxVolume box;
    box.extendBy(Pnt3f(number(), number(), number()));
    box.extendBy(Pnt3f(number(), number(), number()));
    Matrix matrix(number(), number(), number(), number(), number(), number(), number(), number(), number(), number(),
                  number(), number(), 0, 0, 0, 1);
    BoxVolume expected;
    for (UInt32 corner = 0; corner < 8; ++corner) {
        Pnt3f point;
        for (UInt32 i = 0; i < 3; ++i) {
            point[i] = (corner >> i & 1U) != 0 ? box.getMax()[i] : box.getMin()[i];
        }
        matrix.mult(point, point);
        expected.extendBy(point);
    }

    box.transform(matrix);

    RC_ASSERT(box.getMin().equals(expected.getMin(), 1e-3F));
    RC_ASSERT(box.getMax().equals(expected.getMax(), 1e-3F));
}

RC_GTEST_PROP(BoxVolumePropertyTest, ABoxExtendedByPointsHoldsExactlyTheirExtremes, ())
{
    const auto numbers = *rc::gen::nonEmpty(rc::gen::container<std::vector<std::vector<int>>>(
        rc::gen::container<std::vector<int>>(3, rc::gen::inRange(-1000, 1000))));
    BoxVolume box;

    for (const auto& triple : numbers) {
        box.extendBy(
            Pnt3f(static_cast<Real32>(triple[0]), static_cast<Real32>(triple[1]), static_cast<Real32>(triple[2])));
    }

    for (UInt32 i = 0; i < 3; ++i) {
        const auto [low, high] = std::minmax_element(numbers.begin(), numbers.end(),
                                                     [i](const auto& a, const auto& b) { return a[i] < b[i]; });
        RC_ASSERT(box.getMin()[i] == static_cast<Real32>((*low)[i]));
        RC_ASSERT(box.getMax()[i] == static_cast<Real32>((*high)[i]));
    }
}

TEST(BoxVolumeTest, ReadsItsCornersOneByOne)
{
    const BoxVolume box(1, 2, 3, 4, 5, 6);
    const Volume& volume = box;

    EXPECT_EQ(box.getMin(), Pnt3f(1, 2, 3));
    EXPECT_EQ(box.getMax(), Pnt3f(4, 5, 6));
    EXPECT_EQ(volume.getMin(), Pnt3f(1, 2, 3));
    EXPECT_EQ(volume.getMax(), Pnt3f(4, 5, 6));
}

TEST(BoxVolumeTest, ASizeAloneLiesAroundTheOrigin)
{
    BoxVolume box;

    box.setBounds(2, 4, 6);

    EXPECT_FALSE(box.isEmpty());
    EXPECT_EQ(box, BoxVolume(-1, -2, -3, 1, 2, 3));
}

TEST(BoxVolumeTest, HitsLinesThatMeetIt)
{
    const BoxVolume box(-1, -1, -1, 1, 1, 1);
    Real32 enter = 0.0F;
    Real32 exit = 0.0F;

    EXPECT_TRUE(box.intersect(Line(Pnt3f(0, 0, 5), Vec3f(0, 0, -1))));
    EXPECT_FALSE(box.intersect(Line(Pnt3f(2, 0, 5), Vec3f(0, 0, -1))));
    EXPECT_TRUE(box.intersect(Line(Pnt3f(0, 0, 5), Vec3f(0, 0, -1)), enter, exit));

    EXPECT_FLOAT_EQ(enter, 4.0F);
    EXPECT_FLOAT_EQ(exit, 6.0F);
}

} // namespace
