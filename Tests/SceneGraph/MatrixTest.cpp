// SPDX-License-Identifier: MIT
#include "Support/RapidCheckConfiguration.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace osg;

Matrix countingMatrix()
{
    return Matrix(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
}

Pnt3f transformed(const Matrix& matrix, const Pnt3f& point)
{
    Pnt3f result;
    matrix.mult(point, result);
    return result;
}

Matrix translation(const Real32 x, const Real32 y, const Real32 z)
{
    Matrix matrix;
    matrix.setTranslate(x, y, z);
    return matrix;
}

Matrix scaling(const Real32 factor)
{
    Matrix matrix;
    matrix.setScale(factor);
    return matrix;
}

TEST(MatrixTest, AFreshMatrixIsTheIdentity)
{
    const Matrix matrix;

    for (UInt32 i = 0; i < 4; ++i) {
        for (UInt32 j = 0; j < 4; ++j) {
            EXPECT_EQ(matrix[i][j], i == j ? 1.0F : 0.0F);
        }
    }
    EXPECT_EQ(matrix, Matrix::identity());
}

TEST(MatrixTest, NumbersAreGivenRowByRowAndReadColumnByColumn)
{
    const Matrix matrix = countingMatrix();

    EXPECT_EQ(matrix[0], Vec4f(1, 5, 9, 13));
    EXPECT_EQ(matrix[1], Vec4f(2, 6, 10, 14));
    EXPECT_EQ(matrix[3], Vec4f(4, 8, 12, 16));
}

TEST(MatrixTest, SetValueTakesTheOrderOfTheConstructor)
{
    Matrix matrix;

    matrix.setValue(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);

    EXPECT_EQ(matrix, countingMatrix());
}

TEST(MatrixTest, ValuesAreInTheOrderOfOpenGL)
{
    Matrix matrix = translation(10, 20, 30);

    const Real32* values = matrix.getValues();

    EXPECT_EQ(values[12], 10.0F);
    EXPECT_EQ(values[13], 20.0F);
    EXPECT_EQ(values[14], 30.0F);
    EXPECT_EQ(values[15], 1.0F);
}

TEST(MatrixTest, SetTranslateWritesTheFourthColumnOnly)
{
    Matrix matrix = countingMatrix();

    matrix.setTranslate(-1, -2, -3);

    EXPECT_EQ(matrix, Matrix(1, 2, 3, -1, 5, 6, 7, -2, 9, 10, 11, -3, 13, 14, 15, 16));
}

TEST(MatrixTest, SetTranslateTakesPointsAndVectors)
{
    Matrix fromPoint;
    Matrix fromVector;

    fromPoint.setTranslate(Pnt3f(1, 2, 3));
    fromVector.setTranslate(Vec3f(1, 2, 3));

    EXPECT_EQ(fromPoint, translation(1, 2, 3));
    EXPECT_EQ(fromVector, translation(1, 2, 3));
}

TEST(MatrixTest, SetScaleWritesTheDiagonalOnly)
{
    Matrix matrix = countingMatrix();

    matrix.setScale(-1, -2, -3);

    EXPECT_EQ(matrix, Matrix(-1, 2, 3, 4, 5, -2, 7, 8, 9, 10, -3, 12, 13, 14, 15, 16));
}

TEST(MatrixTest, SetScaleTakesOneFactorOrAVector)
{
    Matrix uniform;
    Matrix perAxis;

    uniform.setScale(2.0F);
    perAxis.setScale(Vec3f(2, 3, 4));

    EXPECT_EQ(uniform[0][0], 2.0F);
    EXPECT_EQ(uniform[2][2], 2.0F);
    EXPECT_EQ(uniform[3][3], 1.0F);
    EXPECT_EQ(perAxis[1][1], 3.0F);
    EXPECT_EQ(perAxis[2][2], 4.0F);
}

TEST(MatrixTest, SetRotateKeepsTheTranslation)
{
    Matrix matrix = translation(10, 20, 30);

    matrix.setRotate(Quaternion(Vec3f(0, 0, 1), Pi / 2));

    EXPECT_EQ(matrix[3], Vec4f(10, 20, 30, 1));
    EXPECT_TRUE(transformed(matrix, Pnt3f(1, 0, 0)).equals(Pnt3f(10, 21, 30), 1e-5F));
}

TEST(MatrixTest, SetTransformReplacesEverything)
{
    Matrix matrix = countingMatrix();

    matrix.setTransform(Vec3f(1, 2, 3));

    EXPECT_EQ(matrix, translation(1, 2, 3));
}

TEST(MatrixTest, SetTransformScalesThenTurnsThenMoves)
{
    Matrix matrix;

    matrix.setTransform(Vec3f(10, 0, 0), Quaternion(Vec3f(0, 0, 1), Pi / 2), Vec3f(2, 3, 4));

    EXPECT_TRUE(transformed(matrix, Pnt3f(1, 0, 0)).equals(Pnt3f(10, 2, 0), 1e-5F));
    EXPECT_TRUE(transformed(matrix, Pnt3f(0, 1, 0)).equals(Pnt3f(7, 0, 0), 1e-5F));
}

TEST(MatrixTest, MultAppliesItsArgumentFirst)
{
    Matrix matrix = translation(1, 0, 0);

    matrix.mult(scaling(2.0F));

    EXPECT_EQ(transformed(matrix, Pnt3f(1, 1, 1)), Pnt3f(3, 2, 2));
}

TEST(MatrixTest, MultLeftAppliesItsArgumentLast)
{
    Matrix matrix = translation(1, 0, 0);

    matrix.multLeft(scaling(2.0F));

    EXPECT_EQ(transformed(matrix, Pnt3f(1, 1, 1)), Pnt3f(4, 2, 2));
}

TEST(MatrixTest, MultWithItselfSquares)
{
    Matrix matrix = translation(1, 2, 3);

    matrix.mult(matrix);

    EXPECT_EQ(matrix, translation(2, 4, 6));
}

TEST(MatrixTest, PointsAreMovedAndVectorsAreNot)
{
    const Matrix matrix = translation(1, 2, 3);
    Pnt3f point;
    Vec3f vector;

    matrix.multMatrixPnt(Pnt3f(1, 1, 1), point);
    matrix.multMatrixVec(Vec3f(1, 1, 1), vector);

    EXPECT_EQ(point, Pnt3f(2, 3, 4));
    EXPECT_EQ(vector, Vec3f(1, 1, 1));
}

TEST(MatrixTest, APointMayBeTransformedIntoItself)
{
    Matrix matrix;
    matrix.setTransform(Quaternion(Vec3f(0, 0, 1), Pi / 2));
    Pnt3f point(1, 2, 3);

    matrix.mult(point, point);

    EXPECT_TRUE(point.equals(Pnt3f(-2, 1, 3), 1e-5F));
}

TEST(MatrixTest, OnlyTheFullProductDividesByTheFourthComponent)
{
    Matrix matrix;
    matrix[3][3] = 2.0F;
    Pnt3f affine;
    Pnt3f projective;

    matrix.multMatrixPnt(Pnt3f(2, 4, 6), affine);
    matrix.multFullMatrixPnt(Pnt3f(2, 4, 6), projective);

    EXPECT_EQ(affine, Pnt3f(2, 4, 6));
    EXPECT_EQ(projective, Pnt3f(1, 2, 3));
}

TEST(MatrixTest, TheFourthColumnConvertsToAPosition)
{
    Matrix matrix;
    matrix[3] = Vec4f(1, 2, 3, 1);

    const Vec4f column = matrix[3];
    const Vec3f vector(column);
    const Pnt3f point(vector);

    EXPECT_EQ(point, Pnt3f(1, 2, 3));
}

TEST(MatrixTest, InvertUndoesTheTransformation)
{
    Matrix matrix;
    matrix.setTransform(Vec3f(10, 20, 30), Quaternion(Vec3f(1, 1, 0), 1.0F), Vec3f(2, 3, 4));
    const Pnt3f moved = transformed(matrix, Pnt3f(1, 2, 3));

    EXPECT_TRUE(matrix.invert());

    EXPECT_TRUE(transformed(matrix, moved).equals(Pnt3f(1, 2, 3), 1e-4F));
}

TEST(MatrixTest, InverseLeavesTheMatrixAlone)
{
    const Matrix matrix = translation(1, 2, 3);
    Matrix inverse;

    EXPECT_TRUE(matrix.inverse(inverse));

    EXPECT_EQ(matrix, translation(1, 2, 3));
    EXPECT_EQ(inverse, translation(-1, -2, -3));
}

TEST(MatrixTest, InvertFromTakesAnotherMatrix)
{
    Matrix matrix;

    EXPECT_TRUE(matrix.invertFrom(scaling(4.0F)));

    EXPECT_EQ(matrix, scaling(0.25F));
}

TEST(MatrixTest, AMatrixWithoutInverseSaysSo)
{
    Matrix flat;
    flat.setScale(1, 1, 0);

    EXPECT_FALSE(flat.invert());
}

TEST(MatrixTest, TransposeSwapsRowsAndColumns)
{
    Matrix matrix = countingMatrix();

    matrix.transpose();

    EXPECT_EQ(matrix[3], Vec4f(13, 14, 15, 16));
    EXPECT_EQ(matrix[0], Vec4f(1, 2, 3, 4));
}

TEST(MatrixTest, DeterminantIsTheVolumeOfTheUnitCube)
{
    Matrix matrix = translation(1, 2, 3);
    matrix.setScale(2, 3, 4);

    EXPECT_FLOAT_EQ(matrix.det(), 24.0F);
}

TEST(MatrixTest, ComparesWithinOneMillionthPerNumber)
{
    Matrix near;
    near[2][1] = 1e-6F;
    Matrix far;
    far[2][1] = 1.1e-6F;

    EXPECT_TRUE(near == Matrix());
    EXPECT_FALSE(far == Matrix());
    EXPECT_TRUE(far != Matrix());
    EXPECT_TRUE(far.equals(Matrix(), 1e-5F));
}

TEST(MatrixTest, NumbersThatAreNotFiniteGoThrough)
{
    constexpr Real32 notANumber = std::numeric_limits<Real32>::quiet_NaN();
    Matrix matrix;
    matrix.setTranslate(notANumber, std::numeric_limits<Real32>::infinity(), 0);

    const Pnt3f point = transformed(matrix, Pnt3f(1, 1, 1));

    EXPECT_TRUE(std::isnan(point[0]));
    EXPECT_TRUE(std::isinf(point[1]));
    EXPECT_EQ(point[2], 1.0F);
    EXPECT_FALSE(matrix == Matrix());
}

RC_GTEST_PROP(MatrixPropertyTest, TakingApartAndPuttingTogetherGivesTheSameMatrix, ())
{
    const auto number = [](const int low, const int high) {
        return static_cast<Real32>(*rc::gen::inRange(low, high)) / 100.0F;
    };
    const auto factor = [&] { return number(20, 400) * (*rc::gen::arbitrary<bool>() ? 1.0F : -1.0F); };
    Quaternion turn(Vec3f(number(-100, 100), number(-100, 100), 0.5F), number(-300, 300));
    Quaternion axes(Vec3f(0.5F, number(-100, 100), number(-100, 100)), number(-300, 300));
    Matrix matrix;
    matrix.setTransform(Vec3f(number(-900, 900), number(-900, 900), number(-900, 900)), turn,
                        Vec3f(factor(), factor(), factor()), axes);

    Vec3f partTranslation;
    Quaternion partRotation;
    Vec3f partScale;
    Quaternion partOrientation;
    matrix.getTransform(partTranslation, partRotation, partScale, partOrientation);
    Matrix again;
    again.setTransform(partTranslation, partRotation, partScale, partOrientation);

    RC_ASSERT(again.equals(matrix, 1e-3F));
}

RC_GTEST_PROP(MatrixPropertyTest, TheInverseGivesTheIdentityFromBothSides, ())
{
    Matrix matrix;
    for (UInt32 i = 0; i < 4; ++i) {
        for (UInt32 j = 0; j < 4; ++j) {
            matrix[i][j] = static_cast<Real32>(*rc::gen::inRange(-8, 9));
        }
    }
    RC_PRE(std::abs(matrix.det()) > 0.5F);
    Matrix inverse;

    RC_ASSERT(matrix.inverse(inverse));
    Matrix left(matrix);
    left.mult(inverse);
    Matrix right(matrix);
    right.multLeft(inverse);

    // The numbers are integers: an inverse can be as large as a cofactor, that is a few thousand.
    RC_ASSERT(left.equals(Matrix(), 0.02F));
    RC_ASSERT(right.equals(Matrix(), 0.02F));
}

} // namespace
