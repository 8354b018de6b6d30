// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <array>

namespace quon::viewer {

/** A point or vector in homogeneous coordinates, in double precision. */
using Vector4 = std::array<double, 4>;

/**
 * A 4 x 4 matrix in double precision, stored by columns as OpenGL wants it.
 *
 * The scene is single precision; what is multiplied along the camera and inverted for rays is not.
 */
class Matrix4 {
public:
    /** The identity. */
    Matrix4();

    explicit Matrix4(const osg::Matrix& matrix);

    double operator()(int row, int column) const { return m_values[index(row, column)]; }
    double& operator()(int row, int column) { return m_values[index(row, column)]; }

    /** Compares element by element, without any tolerance. */
    bool operator==(const Matrix4& right) const { return m_values == right.m_values; }
    bool operator!=(const Matrix4& right) const { return !(*this == right); }

    /** The product that applies @p right first. */
    Matrix4 operator*(const Matrix4& right) const;

    Vector4 operator*(const Vector4& vector) const;

    /** @p point with w = 1. */
    Vector4 transform(const osg::Pnt3f& point) const;

    /**
     * The inverse.
     *
     * @param[out] invertible false when there is none (the result is the identity then)
     */
    Matrix4 inverted(bool* invertible = nullptr) const;

    /** False as soon as one element is infinite or not a number. */
    bool isFinite() const;

    osg::Matrix toMatrix() const;

private:
    static std::size_t index(int row, int column)
    {
        return static_cast<std::size_t>(column) * 4 + static_cast<std::size_t>(row);
    }

    std::array<double, 16> m_values;
};

} // namespace quon::viewer
