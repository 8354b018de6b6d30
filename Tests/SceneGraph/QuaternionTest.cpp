// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;

Vec3f turned(const Quaternion& rotation, const Vec3f& vector)
{
    Vec3f result;
    rotation.multVec(vector, result);
    return result;
}

TEST(QuaternionTest, AFreshQuaternionTurnsNothing)
{
    EXPECT_EQ(turned(Quaternion(), Vec3f(1, 2, 3)), Vec3f(1, 2, 3));
    EXPECT_EQ(Quaternion(), Quaternion::identity());
}

TEST(QuaternionTest, AxisAndAngleTurnCounterClockwise)
{
    const Quaternion rotation(Vec3f(0, 0, 1), Pi / 2);

    EXPECT_TRUE(turned(rotation, Vec3f(1, 0, 0)).equals(Vec3f(0, 1, 0), 1e-6F));
}

TEST(QuaternionTest, TheLengthOfTheAxisDoesNotMatter)
{
    const Quaternion rotation(Vec3f(0, 0, 17), Pi / 2);

    EXPECT_TRUE(turned(rotation, Vec3f(1, 0, 0)).equals(Vec3f(0, 1, 0), 1e-6F));
}

TEST(QuaternionTest, AxisAndAngleReadBack)
{
    Quaternion rotation;
    rotation.setValueAsAxisRad(Vec3f(0, 1, 0), 1.25F);

    Vec3f axis;
    Real32 angle = 0.0F;
    rotation.getValueAsAxisRad(axis, angle);

    EXPECT_TRUE(axis.equals(Vec3f(0, 1, 0), 1e-6F));
    EXPECT_NEAR(angle, 1.25F, 1e-5F);
}

TEST(QuaternionTest, DegreesAreRadiansTimesOneHundredAndEightyByPi)
{
    Quaternion degrees;

    degrees.setValueAsAxisDeg(Vec3f(1, 0, 0), 90.0F);

    EXPECT_TRUE(degrees.equals(Quaternion(Vec3f(1, 0, 0), Pi / 2), 1e-6F));
}

TEST(QuaternionTest, TurnsOneDirectionIntoAnother)
{
    const Quaternion rotation(Vec3f(1, 0, 0), Vec3f(0, 3, 0));

    EXPECT_TRUE(turned(rotation, Vec3f(1, 0, 0)).equals(Vec3f(0, 1, 0), 1e-5F));
}

TEST(QuaternionTest, TurnsOppositeDirectionsIntoEachOther)
{
    const Quaternion rotation(Vec3f(0, 1, 0), Vec3f(0, -1, 0));

    EXPECT_TRUE(turned(rotation, Vec3f(0, 1, 0)).equals(Vec3f(0, -1, 0), 1e-5F));
}

TEST(QuaternionTest, MultAppliesItsArgumentFirst)
{
    Quaternion rotation(Vec3f(0, 0, 1), Pi / 2);

    rotation.mult(Quaternion(Vec3f(1, 0, 0), Pi / 2));

    EXPECT_TRUE(turned(rotation, Vec3f(0, 1, 0)).equals(Vec3f(0, 0, 1), 1e-5F));
    EXPECT_TRUE(turned(rotation, Vec3f(1, 0, 0)).equals(Vec3f(0, 1, 0), 1e-5F));
}

TEST(QuaternionTest, InvertTurnsBack)
{
    const Quaternion rotation(Vec3f(1, 2, 3), 1.0F);
    Quaternion back(rotation);

    back.invert();

    EXPECT_TRUE(turned(back, turned(rotation, Vec3f(1, 2, 3))).equals(Vec3f(1, 2, 3), 1e-5F));
    EXPECT_TRUE(turned(back, turned(rotation, Vec3f(3, 0, 0))).equals(Vec3f(3, 0, 0), 1e-5F));
}

TEST(QuaternionTest, AgreesWithItsMatrix)
{
    const Quaternion rotation(Vec3f(1, 2, 3), 1.0F);
    Matrix matrix;
    Vec3f byMatrix;

    rotation.getValue(matrix);
    matrix.mult(Vec3f(4, 5, 6), byMatrix);

    EXPECT_TRUE(byMatrix.equals(turned(rotation, Vec3f(4, 5, 6)), 1e-5F));
    EXPECT_TRUE(Quaternion(matrix).equals(rotation, 1e-5F));
}

TEST(QuaternionTest, ReadsHalfTurnsOutOfAMatrix)
{
    for (UInt32 i = 0; i < 3; ++i) {
        Vec3f axis;
        axis[i] = 1.0F;
        const Quaternion rotation(axis, Pi);
        Matrix matrix;
        rotation.getValue(matrix);

        const Quaternion read(matrix);

        EXPECT_TRUE(turned(read, Vec3f(1, 2, 3)).equals(turned(rotation, Vec3f(1, 2, 3)), 1e-4F)) << "axis " << i;
    }
}

TEST(QuaternionTest, HalfWayIsHalfTheAngle)
{
    const Quaternion end(Vec3f(0, 0, 1), 1.0F);

    const Quaternion middle = Quaternion::slerp(Quaternion(), end, 0.5F);

    EXPECT_TRUE(middle.equals(Quaternion(Vec3f(0, 0, 1), 0.5F), 1e-5F));
}

TEST(QuaternionTest, AnAxisWithoutLengthTurnsNothing)
{
    EXPECT_EQ(Quaternion(Vec3f(0, 0, 0), 1.0F), Quaternion::identity());
}

TEST(QuaternionTest, SetIdentityForgetsTheRotation)
{
    Quaternion rotation(Vec3f(1, 2, 3), 1.0F);

    rotation.setIdentity();

    EXPECT_EQ(rotation, Quaternion::identity());
    EXPECT_EQ(rotation, Quaternion(0, 0, 0, 1));
}

TEST(QuaternionTest, TheIdentityReadsAsNoAngle)
{
    Vec3f axis;
    Real32 angle = 1.0F;

    Quaternion().getValueAsAxisRad(axis, angle);

    EXPECT_EQ(axis, Vec3f(0, 0, 1));
    EXPECT_EQ(angle, 0.0F);
}

TEST(QuaternionTest, NormalizingScalesToLengthOne)
{
    Quaternion rotation(0, 0, 3, 4);

    rotation.normalize();

    EXPECT_TRUE(rotation.equals(Quaternion(0, 0, 0.6F, 0.8F), 1e-6F));
    EXPECT_NEAR(rotation.length(), 1.0F, 1e-6F);
}

} // namespace
