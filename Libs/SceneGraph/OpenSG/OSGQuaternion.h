// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGVector.h>

#include <cmath>

namespace osg {

template <class ValueTypeT>
class TransformationMatrix;

/**
 * A rotation, stored as (x, y, z, w) with w the real part.
 *
 * A fresh quaternion is the identity. Angles are in radians unless the operation says degrees. Comparisons have the
 * tolerance Eps per component; a quaternion and its negative are the same rotation but do not compare equal.
 */
template <class ValueTypeT>
class QuaternionBase {
public:
    using ValueType = ValueTypeT;
    using VectorType = Vector<ValueTypeT, 3>;
    using MatrixType = TransformationMatrix<ValueTypeT>;

    static constexpr QuaternionBase identity() noexcept { return QuaternionBase(); }

    constexpr QuaternionBase() noexcept = default;

    /// @param axis need not be of length one; a null vector gives the identity
    QuaternionBase(const VectorType& axis, const ValueType angle) noexcept { setValueAsAxisRad(axis, angle); }

    /// The shortest rotation that turns @p from into the direction of @p to.
    QuaternionBase(const VectorType& from, const VectorType& to) noexcept { setValue(from, to); }

    explicit QuaternionBase(const MatrixType& matrix) noexcept { setValue(matrix); }

    constexpr QuaternionBase(const ValueType x, const ValueType y, const ValueType z, const ValueType w) noexcept
        : m_values(x, y, z, w)
    {}

    constexpr void setIdentity() noexcept { *this = QuaternionBase(); }

    void setValueAsAxisRad(const VectorType& axis, const ValueType angle) noexcept
    {
        const ValueType length = axis.length();
        if (!(length > ValueType(0))) {
            setIdentity();
            return;
        }
        const ValueType factor = std::sin(angle / 2) / length;
        m_values.setValues(axis[0] * factor, axis[1] * factor, axis[2] * factor, std::cos(angle / 2));
    }
    void setValueAsAxisRad(const ValueType x, const ValueType y, const ValueType z, const ValueType angle) noexcept
    {
        setValueAsAxisRad(VectorType(x, y, z), angle);
    }
    void setValueAsAxisDeg(const VectorType& axis, const ValueType degrees) noexcept
    {
        setValueAsAxisRad(axis, degrees * ValueType(3.14159265358979323846 / 180.0));
    }
    void setValueAsAxisDeg(const ValueType x, const ValueType y, const ValueType z, const ValueType degrees) noexcept
    {
        setValueAsAxisDeg(VectorType(x, y, z), degrees);
    }
    constexpr void setValueAsQuat(const ValueType x, const ValueType y, const ValueType z, const ValueType w) noexcept
    {
        m_values.setValues(x, y, z, w);
    }
    void setValue(const VectorType& from, const VectorType& to) noexcept;
    /// Takes the rotation out of @p matrix, which must not scale (not checked).
    void setValue(const MatrixType& matrix) noexcept;

    /// The identity reads as no rotation about z.
    void getValueAsAxisRad(VectorType& axis, ValueType& angle) const noexcept
    {
        const VectorType imaginary(m_values[0], m_values[1], m_values[2]);
        const ValueType length = imaginary.length();
        if (!(length > ValueType(0))) {
            axis = VectorType(ValueType(0), ValueType(0), ValueType(1));
            angle = ValueType(0);
            return;
        }
        axis = imaginary / length;
        angle = 2 * std::atan2(length, m_values[3]);
    }
    void getValueAsAxisDeg(VectorType& axis, ValueType& degrees) const noexcept
    {
        getValueAsAxisRad(axis, degrees);
        degrees *= ValueType(180.0 / 3.14159265358979323846);
    }
    /// Sets the whole of @p matrix to this rotation.
    void getValue(MatrixType& matrix) const noexcept;

    constexpr ValueType x() const noexcept { return m_values[0]; }
    constexpr ValueType y() const noexcept { return m_values[1]; }
    constexpr ValueType z() const noexcept { return m_values[2]; }
    constexpr ValueType w() const noexcept { return m_values[3]; }
    constexpr ValueType& operator[](const UInt32 index) noexcept { return m_values[index]; }
    constexpr const ValueType& operator[](const UInt32 index) const noexcept { return m_values[index]; }
    constexpr const ValueType* getValues() const noexcept { return m_values.getValues(); }

    ValueType length() const noexcept { return m_values.length(); }

    /// Scales to length one; only such quaternions are rotations. All zeros become the identity.
    void normalize() noexcept
    {
        const ValueType oldLength = length();
        if (oldLength > ValueType(0)) {
            m_values /= oldLength;
        } else {
            setIdentity();
        }
    }

    constexpr QuaternionBase conj() const noexcept
    {
        return QuaternionBase(-m_values[0], -m_values[1], -m_values[2], m_values[3]);
    }
    /// The opposite rotation; of all zeros the identity.
    constexpr QuaternionBase inverse() const noexcept
    {
        const ValueType squareLength = m_values.squareLength();
        if (!(squareLength > ValueType(0))) {
            return QuaternionBase();
        }
        QuaternionBase result = conj();
        result.m_values /= squareLength;
        return result;
    }
    constexpr void invert() noexcept { *this = inverse(); }

    /// Turns @p source; both may be the same object.
    constexpr void multVec(const VectorType& source, VectorType& result) const noexcept
    {
        const VectorType imaginary(m_values[0], m_values[1], m_values[2]);
        const VectorType twice = imaginary.cross(source) * ValueType(2);
        result = source + twice * m_values[3] + imaginary.cross(twice);
    }

    /// This becomes this x @p other: @p other turns first.
    constexpr void mult(const QuaternionBase& other) noexcept { *this = *this * other; }
    /// This becomes @p other x this.
    constexpr void multLeft(const QuaternionBase& other) noexcept { *this = other * *this; }
    constexpr QuaternionBase& operator*=(const QuaternionBase& other) noexcept
    {
        mult(other);
        return *this;
    }

    friend constexpr QuaternionBase operator*(const QuaternionBase& left, const QuaternionBase& right) noexcept
    {
        const auto& a = left.m_values;
        const auto& b = right.m_values;
        return QuaternionBase(a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
                              a[3] * b[1] + a[1] * b[3] + a[2] * b[0] - a[0] * b[2],
                              a[3] * b[2] + a[2] * b[3] + a[0] * b[1] - a[1] * b[0],
                              a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]);
    }

    /// The rotation at @p factor (0 to 1) of the way from @p start to @p end, along the shorter arc.
    static QuaternionBase slerp(const QuaternionBase& start, const QuaternionBase& end, const ValueType factor) noexcept
    {
        ValueType cosine = start.m_values.dot(end.m_values);
        const ValueType sign = cosine < ValueType(0) ? ValueType(-1) : ValueType(1);
        cosine *= sign;

        ValueType startWeight = 1 - factor;
        ValueType endWeight = factor;
        // Nearly parallel: the straight line is as good, and the sine too small to divide by.
        if (cosine < ValueType(0.9999)) {
            const ValueType angle = std::acos(cosine);
            startWeight = std::sin(startWeight * angle) / std::sin(angle);
            endWeight = std::sin(endWeight * angle) / std::sin(angle);
        }
        QuaternionBase result;
        result.m_values = start.m_values * startWeight + end.m_values * (endWeight * sign);
        result.normalize();
        return result;
    }

    constexpr bool equals(const QuaternionBase& other, const ValueType tolerance) const noexcept
    {
        return m_values.equals(other.m_values, tolerance);
    }
    constexpr bool operator==(const QuaternionBase& other) const noexcept { return m_values == other.m_values; }
    constexpr bool operator!=(const QuaternionBase& other) const noexcept { return !(*this == other); }

    friend std::ostream& operator<<(std::ostream& stream, const QuaternionBase& quaternion)
    {
        return stream << quaternion.m_values;
    }

private:
    Vector<ValueType, 4> m_values{ValueType(0), ValueType(0), ValueType(0), ValueType(1)};
};

using Quaternion = QuaternionBase<Real32>;
using Quaterniond = QuaternionBase<Real64>;

} // namespace osg

// The operations that take a matrix are defined there.
#include <OpenSG/OSGMatrix.h>
