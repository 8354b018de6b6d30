// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>

namespace {

using namespace osg;

constexpr Real32 notANumber = std::numeric_limits<Real32>::quiet_NaN();
constexpr Real32 infinity = std::numeric_limits<Real32>::infinity();

template <class PointT>
class FreshPointTest : public ::testing::Test {};

using AllPoints =
    ::testing::Types<Pnt2f, Pnt3f, Pnt4f, Vec2f, Vec3f, Vec4f, Pnt3d, Vec3d, Vec4d, Pnt3ub, Vec4ub, Vec3s>;

struct PointName {
    template <class PointT>
    static std::string GetName(int)
    {
        constexpr bool isPoint = std::is_same_v<PointT, Point<typename PointT::ValueType, PointT::_iSize>>;
        return std::string(isPoint ? "PointOf" : "VectorOf") + std::to_string(PointT::_iSize) + "Times" +
               std::to_string(sizeof(typename PointT::ValueType)) + "Bytes";
    }
};

TYPED_TEST_SUITE(FreshPointTest, AllPoints, PointName);

TYPED_TEST(FreshPointTest, HasOnlyZeros)
{
    const TypeParam point;

    for (UInt32 i = 0; i < TypeParam::_iSize; ++i) {
        EXPECT_EQ(point[i], 0) << "component " << i;
    }
}

TEST(VectorTest, IntegersAreTakenAsComponents)
{
    const Pnt3f point(0, 0, 0);
    const Vec3f vector(1, -2, 3);

    EXPECT_EQ(point, Pnt3f());
    EXPECT_EQ(vector[0], 1.0F);
    EXPECT_EQ(vector[1], -2.0F);
    EXPECT_EQ(vector[2], 3.0F);
}

TEST(VectorTest, MissingComponentsAreZero)
{
    const Vec3f one(7.0F);
    const Pnt4f two(7.0F, 8.0F);
    const Vec4f three(7.0F, 8.0F, 9.0F);

    EXPECT_EQ(one, Vec3f(7, 0, 0));
    EXPECT_EQ(two, Pnt4f(7, 8, 0, 0));
    EXPECT_EQ(three, Vec4f(7, 8, 9, 0));
}

TEST(VectorTest, AnArrayGivesAllComponents)
{
    const Real32 values[] = {1.0F, 2.0F, 3.0F};

    const Pnt3f point(values);

    EXPECT_EQ(point, Pnt3f(1, 2, 3));
}

TEST(VectorTest, NamedAccessReadsTheComponents)
{
    const Vec4f vector(1, 2, 3, 4);

    EXPECT_EQ(vector.x(), 1.0F);
    EXPECT_EQ(vector.y(), 2.0F);
    EXPECT_EQ(vector.z(), 3.0F);
    EXPECT_EQ(vector.w(), 4.0F);
}

TEST(VectorTest, IndexedAccessWrites)
{
    Pnt3f point;

    point[1] = 5.0F;

    EXPECT_EQ(point, Pnt3f(0, 5, 0));
    EXPECT_EQ(point.getValues()[1], 5.0F);
}

TEST(VectorTest, SettingAndGettingComponentsAreInverse)
{
    Vec3f vector;
    vector.setValues(1.0F, 2.0F, 3.0F);

    Real32 x = 0.0F;
    Real32 y = 0.0F;
    Real32 z = 0.0F;
    vector.getSeparateValues(x, y, z);

    EXPECT_EQ(x, 1.0F);
    EXPECT_EQ(y, 2.0F);
    EXPECT_EQ(z, 3.0F);
}

TEST(VectorTest, SetNullWritesZeros)
{
    Pnt2f point(1, 2);

    point.setNull();

    EXPECT_EQ(point.x(), 0.0F);
    EXPECT_EQ(point.y(), 0.0F);
}

TEST(VectorTest, ALargerVectorConvertsToItsFirstComponents)
{
    const Vec4f column(1, 2, 3, 4);

    const Vec3f vector(column);
    const Pnt3f point(column);

    EXPECT_EQ(vector, Vec3f(1, 2, 3));
    EXPECT_EQ(point, Pnt3f(1, 2, 3));
}

TEST(VectorTest, ASmallerVectorConvertsWithZerosBehind)
{
    const Vec2f small(1, 2);

    const Vec4f large(small);

    EXPECT_EQ(large, Vec4f(1, 2, 0, 0));
}

TEST(VectorTest, DoublePrecisionConvertsComponentByComponent)
{
    const Vec3d precise(0.5, 1.5, 2.5);

    const Vec3f vector(precise);

    EXPECT_EQ(vector, Vec3f(0.5F, 1.5F, 2.5F));
}

TEST(VectorTest, TheDifferenceOfPointsIsAVector)
{
    const Pnt3f start(1, 2, 3);
    const Pnt3f end(4, 6, 8);

    const auto difference = end - start;

    static_assert(std::is_same_v<decltype(difference), const Vec3f>);
    EXPECT_EQ(difference, Vec3f(3, 4, 5));
}

TEST(VectorTest, PointsMoveByVectors)
{
    const Pnt3f point(1, 2, 3);
    const Vec3f vector(1, 1, 1);

    static_assert(std::is_same_v<decltype(point + vector), Pnt3f>);
    static_assert(std::is_same_v<decltype(point - vector), Pnt3f>);
    EXPECT_EQ(point + vector, Pnt3f(2, 3, 4));
    EXPECT_EQ(point - vector, Pnt3f(0, 1, 2));
}

TEST(VectorTest, PointsMoveByVectorsInPlace)
{
    Pnt3f point(1, 2, 3);

    point += Vec3f(1, 1, 1);
    EXPECT_EQ(point, Pnt3f(2, 3, 4));

    point -= Vec3f(2, 2, 2);
    EXPECT_EQ(point, Pnt3f(0, 1, 2));
}

TEST(VectorTest, PointsScaleAroundTheOrigin)
{
    const Pnt3f point(1, 2, 3);

    static_assert(std::is_same_v<decltype(point * 2.0F), Pnt3f>);
    EXPECT_EQ(point * 2.0F, Pnt3f(2, 4, 6));
}

TEST(VectorTest, VectorsAddSubtractAndScaleAsVectors)
{
    const Vec3f left(1, 2, 3);
    const Vec3f right(3, 2, 1);

    static_assert(std::is_same_v<decltype(left + right), Vec3f>);
    static_assert(std::is_same_v<decltype(left - right), Vec3f>);
    static_assert(std::is_same_v<decltype(left * 2.0F), Vec3f>);
    EXPECT_EQ(left + right, Vec3f(4, 4, 4));
    EXPECT_EQ(left - right, Vec3f(-2, 0, 2));
    EXPECT_EQ(left * 2.0F, Vec3f(2, 4, 6));
    EXPECT_EQ(-left, Vec3f(-1, -2, -3));
}

TEST(VectorTest, LengthIsEuclidean)
{
    EXPECT_FLOAT_EQ(Vec3f(2, 3, 6).length(), 7.0F);
    EXPECT_FLOAT_EQ(Vec3f(2, 3, 6).squareLength(), 49.0F);
}

TEST(VectorTest, NormalizingKeepsTheDirectionAndMakesTheLengthOne)
{
    Vec3f vector(0, 3, 4);

    vector.normalize();

    EXPECT_FLOAT_EQ(vector.y(), 0.6F);
    EXPECT_FLOAT_EQ(vector.z(), 0.8F);
}

TEST(VectorTest, ProductsOfTheAxesFollowTheRightHand)
{
    const Vec3f x(1, 0, 0);
    const Vec3f y(0, 1, 0);

    EXPECT_EQ(x.cross(y), Vec3f(0, 0, 1));
    EXPECT_EQ(y.cross(x), Vec3f(0, 0, -1));
    EXPECT_EQ(x.dot(y), 0.0F);
    EXPECT_EQ(Vec3f(1, 2, 3).dot(Vec3f(4, 5, 6)), 32.0F);
}

TEST(VectorTest, DistanceIsEuclidean)
{
    const Pnt3f start(1, 1, 1);
    const Pnt3f end(3, 4, 7);

    EXPECT_FLOAT_EQ(start.dist(end), 7.0F);
    EXPECT_FLOAT_EQ(start.dist2(end), 49.0F);
}

TEST(VectorTest, APointIsAVectorFromTheOriginAndBack)
{
    Pnt3f point(1, 2, 3);
    Vec3f vector(4, 5, 6);

    EXPECT_EQ(point.subZero(), Vec3f(1, 2, 3));
    EXPECT_EQ(vector.addToZero(), Pnt3f(4, 5, 6));
}

TEST(VectorTest, ComparesWithinOneMillionthInBothDirections)
{
    const Pnt3f origin(0, 0, 0);

    EXPECT_TRUE(origin == Pnt3f(1e-6F, 0, 0));
    EXPECT_TRUE(origin == Pnt3f(-1e-6F, 0, 0));
    EXPECT_FALSE(origin == Pnt3f(1.1e-6F, 0, 0));
    EXPECT_FALSE(origin == Pnt3f(-1.1e-6F, 0, 0));
    EXPECT_TRUE(origin != Pnt3f(0, 0, 1.1e-6F));
    EXPECT_FALSE(origin != Pnt3f(0, 0, 1e-6F));
}

TEST(VectorTest, ComparesPerComponentAndNotByDistance)
{
    EXPECT_TRUE(Pnt3f() == Pnt3f(1e-6F, 1e-6F, -1e-6F));
}

TEST(VectorTest, IsZeroHasTheToleranceToo)
{
    EXPECT_TRUE(Vec3f(1e-6F, 0, -1e-6F).isZero());
    EXPECT_FALSE(Vec3f(0, 1.1e-6F, 0).isZero());
}

TEST(VectorTest, EqualsTakesItsOwnTolerance)
{
    const Pnt3f point(1, 1, 1);

    EXPECT_TRUE(point.equals(Pnt3f(1.5F, 0.5F, 1), 0.5F));
    EXPECT_FALSE(point.equals(Pnt3f(1.75F, 1, 1), 0.5F));
}

TEST(VectorTest, NotANumberEqualsNothing)
{
    const Pnt3f point(notANumber, 0, 0);

    EXPECT_FALSE(point == point);
    EXPECT_FALSE(point == Pnt3f());
    EXPECT_TRUE(point != Pnt3f());
}

TEST(VectorTest, InfiniteComponentsDifferFromFiniteOnes)
{
    EXPECT_FALSE(Pnt3f(infinity, 0, 0) == Pnt3f());
    EXPECT_TRUE(Pnt3f(infinity, 0, 0) != Pnt3f(-infinity, 0, 0));
}

TEST(VectorTest, OrdersByTheFirstComponentThatDiffers)
{
    EXPECT_TRUE(Pnt3f(1, 9, 9) < Pnt3f(2, 0, 0));
    EXPECT_FALSE(Pnt3f(2, 0, 0) < Pnt3f(1, 9, 9));
    EXPECT_TRUE(Pnt3f(1, 2, 3) < Pnt3f(1, 2, 4));
    EXPECT_FALSE(Pnt3f(1, 2, 3) < Pnt3f(1, 2, 3));
}

TEST(VectorTest, ThePackedArrayIsAsLargeAsItsComponents)
{
    static_assert(sizeof(Pnt3f) == 12 && sizeof(Vec4f) == 16 && sizeof(Pnt3d) == 24 && sizeof(Vec4ub) == 4);
    const Pnt3f points[2] = {Pnt3f(1, 2, 3), Pnt3f(4, 5, 6)};

    EXPECT_EQ(points[0].getValues() + 3, points[1].getValues());
}

TEST(VectorTest, BytesWrapLikeBytes)
{
    Pnt3ub point(250, 1, 2);

    point += Vec3ub(10, 0, 0);

    EXPECT_EQ(point[0], 4);
}

} // namespace
