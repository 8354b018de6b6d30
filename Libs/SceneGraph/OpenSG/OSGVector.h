// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>

#include <cmath>
#include <ostream>
#include <type_traits>

namespace osg {

template <class ValueTypeT, UInt32 SizeI>
class Vector;

/**
 * A position of @p SizeI components.
 *
 * Every constructor that takes fewer values than there are components sets the rest to zero; so does a conversion from
 * a smaller point. A conversion from a larger one drops the surplus. An index out of range is not checked.
 */
template <class ValueTypeT, UInt32 SizeI>
class Point {
    static_assert(SizeI >= 1 && std::is_arithmetic_v<ValueTypeT>);

public:
    using ValueType = ValueTypeT;
    using VectorType = Vector<ValueTypeT, SizeI>;

    static constexpr UInt32 _iSize = SizeI;

    constexpr Point() noexcept = default;

    constexpr Point(const ValueType x) noexcept
        : m_values{x}
    {}

    constexpr Point(const ValueType x, const ValueType y) noexcept
        : m_values{x, y}
    {}

    constexpr Point(const ValueType x, const ValueType y, const ValueType z) noexcept
        : m_values{x, y, z}
    {}

    constexpr Point(const ValueType x, const ValueType y, const ValueType z, const ValueType w) noexcept
        : m_values{x, y, z, w}
    {}

    /// @param values as many as there are components; null gives zeros
    constexpr Point(const ValueType* values) noexcept
    {
        if (values != nullptr) {
            setValue(values);
        }
    }

    template <class OtherT, UInt32 OtherI>
    constexpr Point(const Point<OtherT, OtherI>& other) noexcept
    {
        for (UInt32 i = 0; i < SizeI && i < OtherI; ++i) {
            m_values[i] = static_cast<ValueType>(other[i]);
        }
    }

    constexpr ValueType& operator[](const UInt32 index) noexcept { return m_values[index]; }
    constexpr const ValueType& operator[](const UInt32 index) const noexcept { return m_values[index]; }

    constexpr ValueType x() const noexcept { return m_values[0]; }
    constexpr ValueType y() const noexcept
    {
        static_assert(SizeI > 1);
        return m_values[1];
    }
    constexpr ValueType z() const noexcept
    {
        static_assert(SizeI > 2);
        return m_values[2];
    }
    constexpr ValueType w() const noexcept
    {
        static_assert(SizeI > 3);
        return m_values[3];
    }

    constexpr ValueType* getValues() noexcept { return m_values; }
    constexpr const ValueType* getValues() const noexcept { return m_values; }

    constexpr void setValues(const ValueType x, const ValueType y) noexcept
    {
        static_assert(SizeI == 2);
        m_values[0] = x;
        m_values[1] = y;
    }
    constexpr void setValues(const ValueType x, const ValueType y, const ValueType z) noexcept
    {
        static_assert(SizeI == 3);
        m_values[0] = x;
        m_values[1] = y;
        m_values[2] = z;
    }
    constexpr void setValues(const ValueType x, const ValueType y, const ValueType z, const ValueType w) noexcept
    {
        static_assert(SizeI == 4);
        m_values[0] = x;
        m_values[1] = y;
        m_values[2] = z;
        m_values[3] = w;
    }

    constexpr void setValue(const ValueType* values) noexcept
    {
        for (UInt32 i = 0; i < SizeI; ++i) {
            m_values[i] = values[i];
        }
    }

    template <class OtherT, UInt32 OtherI>
    constexpr void setValue(const Point<OtherT, OtherI>& other) noexcept
    {
        *this = Point(other);
    }

    constexpr void getSeparateValues(ValueType& x, ValueType& y) const noexcept
    {
        static_assert(SizeI == 2);
        x = m_values[0];
        y = m_values[1];
    }
    constexpr void getSeparateValues(ValueType& x, ValueType& y, ValueType& z) const noexcept
    {
        static_assert(SizeI == 3);
        x = m_values[0];
        y = m_values[1];
        z = m_values[2];
    }
    constexpr void getSeparateValues(ValueType& x, ValueType& y, ValueType& z, ValueType& w) const noexcept
    {
        static_assert(SizeI == 4);
        x = m_values[0];
        y = m_values[1];
        z = m_values[2];
        w = m_values[3];
    }

    constexpr void setNull() noexcept { *this = Point(); }

    /// True when every component is within the tolerance of zero, not only for exact zeros.
    constexpr bool isZero() const noexcept { return *this == Point(); }

    /// True when no component differs by more than @p tolerance; false as soon as one is not a number.
    constexpr bool equals(const Point& other, const ValueType tolerance) const noexcept
    {
        for (UInt32 i = 0; i < SizeI; ++i) {
            if constexpr (std::is_floating_point_v<ValueType>) {
                const ValueType difference = m_values[i] - other.m_values[i];
                // Written so that a NaN compares unequal.
                if (!(difference <= tolerance && -difference <= tolerance)) {
                    return false;
                }
            } else {
                const bool less = m_values[i] < other.m_values[i];
                const Int64 low = static_cast<Int64>(less ? m_values[i] : other.m_values[i]);
                const Int64 high = static_cast<Int64>(less ? other.m_values[i] : m_values[i]);
                if (high - low > static_cast<Int64>(tolerance)) {
                    return false;
                }
            }
        }
        return true;
    }

    /// The square of the distance to @p other.
    constexpr ValueType dist2(const Point& other) const noexcept
    {
        ValueType sum = 0;
        for (UInt32 i = 0; i < SizeI; ++i) {
            const ValueType difference = static_cast<ValueType>(m_values[i] - other.m_values[i]);
            sum = static_cast<ValueType>(sum + difference * difference);
        }
        return sum;
    }

    ValueType dist(const Point& other) const noexcept { return static_cast<ValueType>(std::sqrt(dist2(other))); }

    /// This position as a vector from the origin. A value, unlike addToZero(): a point is not a vector.
    constexpr VectorType subZero() const noexcept { return VectorType(*this); }

    constexpr VectorType operator-(const Point& other) const noexcept
    {
        VectorType result(*this);
        for (UInt32 i = 0; i < SizeI; ++i) {
            result[i] = static_cast<ValueType>(result[i] - other.m_values[i]);
        }
        return result;
    }

    constexpr Point operator+(const VectorType& vector) const noexcept { return Point(*this) += vector; }
    constexpr Point operator-(const VectorType& vector) const noexcept { return Point(*this) -= vector; }
    constexpr Point operator*(const ValueType factor) const noexcept { return Point(*this) *= factor; }
    constexpr Point operator/(const ValueType divisor) const noexcept { return Point(*this) /= divisor; }

    constexpr Point& operator+=(const VectorType& vector) noexcept
    {
        for (UInt32 i = 0; i < SizeI; ++i) {
            m_values[i] = static_cast<ValueType>(m_values[i] + vector[i]);
        }
        return *this;
    }
    constexpr Point& operator-=(const VectorType& vector) noexcept
    {
        for (UInt32 i = 0; i < SizeI; ++i) {
            m_values[i] = static_cast<ValueType>(m_values[i] - vector[i]);
        }
        return *this;
    }
    constexpr Point& operator*=(const ValueType factor) noexcept
    {
        for (UInt32 i = 0; i < SizeI; ++i) {
            m_values[i] = static_cast<ValueType>(m_values[i] * factor);
        }
        return *this;
    }
    constexpr Point& operator/=(const ValueType divisor) noexcept
    {
        for (UInt32 i = 0; i < SizeI; ++i) {
            m_values[i] = static_cast<ValueType>(m_values[i] / divisor);
        }
        return *this;
    }

    /// Compares per component with the tolerance Eps, limits included.
    constexpr bool operator==(const Point& other) const noexcept
    {
        return equals(other, std::is_floating_point_v<ValueType> ? static_cast<ValueType>(Eps) : ValueType(0));
    }
    constexpr bool operator!=(const Point& other) const noexcept { return !(*this == other); }

    /// Lexicographic and exact, so that points can be keys of ordered containers.
    constexpr bool operator<(const Point& other) const noexcept
    {
        for (UInt32 i = 0; i < SizeI; ++i) {
            if (m_values[i] < other.m_values[i]) {
                return true;
            }
            if (other.m_values[i] < m_values[i]) {
                return false;
            }
        }
        return false;
    }

private:
    ValueType m_values[SizeI] = {};
};

/// A direction or displacement of @p SizeI components; what is said of points holds for vectors too.
template <class ValueTypeT, UInt32 SizeI>
class Vector : public Point<ValueTypeT, SizeI> {
public:
    using Inherited = Point<ValueTypeT, SizeI>;
    using PointType = Inherited;
    using ValueType = ValueTypeT;

    using Inherited::Inherited;

    constexpr Vector() noexcept = default;

    constexpr Vector(const PointType& point) noexcept
        : Inherited(point)
    {}

    /// This vector as the position it leads to from the origin.
    constexpr PointType& addToZero() noexcept { return *this; }
    constexpr const PointType& addToZero() const noexcept { return *this; }

    constexpr ValueType squareLength() const noexcept { return dot(*this); }

    ValueType length() const noexcept { return static_cast<ValueType>(std::sqrt(squareLength())); }

    /// Scales to length one. A null vector stays as it is.
    void normalize() noexcept
    {
        const ValueType oldLength = length();
        if (oldLength > ValueType(0)) {
            *this /= oldLength;
        }
    }

    constexpr ValueType dot(const Vector& other) const noexcept
    {
        ValueType sum = 0;
        for (UInt32 i = 0; i < SizeI; ++i) {
            sum = static_cast<ValueType>(sum + (*this)[i] * other[i]);
        }
        return sum;
    }

    constexpr Vector cross(const Vector& other) const noexcept
    {
        static_assert(SizeI == 3);
        const Vector& a = *this;
        const Vector& b = other;
        return Vector(static_cast<ValueType>(a[1] * b[2] - a[2] * b[1]),
                      static_cast<ValueType>(a[2] * b[0] - a[0] * b[2]),
                      static_cast<ValueType>(a[0] * b[1] - a[1] * b[0]));
    }

    constexpr void negate() noexcept { *this = -*this; }

    constexpr Vector operator-() const noexcept
    {
        Vector result;
        for (UInt32 i = 0; i < SizeI; ++i) {
            result[i] = static_cast<ValueType>(-(*this)[i]);
        }
        return result;
    }

    constexpr Vector operator+(const Vector& other) const noexcept { return Vector(*this) += other; }
    constexpr Vector operator-(const Vector& other) const noexcept { return Vector(*this) -= other; }
    constexpr Vector operator*(const ValueType factor) const noexcept { return Vector(*this) *= factor; }
    constexpr Vector operator/(const ValueType divisor) const noexcept { return Vector(*this) /= divisor; }

    constexpr Vector& operator+=(const Vector& other) noexcept
    {
        Inherited::operator+=(other);
        return *this;
    }
    constexpr Vector& operator-=(const Vector& other) noexcept
    {
        Inherited::operator-=(other);
        return *this;
    }
    constexpr Vector& operator*=(const ValueType factor) noexcept
    {
        Inherited::operator*=(factor);
        return *this;
    }
    constexpr Vector& operator/=(const ValueType divisor) noexcept
    {
        Inherited::operator/=(divisor);
        return *this;
    }
};

template <class ValueTypeT, UInt32 SizeI>
constexpr Vector<ValueTypeT, SizeI> operator*(const ValueTypeT factor, const Vector<ValueTypeT, SizeI>& vector) noexcept
{
    return vector * factor;
}

template <class ValueTypeT, UInt32 SizeI>
constexpr Point<ValueTypeT, SizeI> operator*(const ValueTypeT factor, const Point<ValueTypeT, SizeI>& point) noexcept
{
    return point * factor;
}

/// Writes the components with one space between them.
template <class ValueTypeT, UInt32 SizeI>
std::ostream& operator<<(std::ostream& stream, const Point<ValueTypeT, SizeI>& point)
{
    for (UInt32 i = 0; i < SizeI; ++i) {
        // The unary plus makes numbers of the types that are characters.
        stream << (i == 0 ? "" : " ") << +point[i];
    }
    return stream;
}

using Pnt2f = Point<Real32, 2>;
using Pnt3f = Point<Real32, 3>;
using Pnt4f = Point<Real32, 4>;
using Pnt2d = Point<Real64, 2>;
using Pnt3d = Point<Real64, 3>;
using Pnt4d = Point<Real64, 4>;
using Pnt2s = Point<Int16, 2>;
using Pnt3s = Point<Int16, 3>;
using Pnt4s = Point<Int16, 4>;
using Pnt2us = Point<UInt16, 2>;
using Pnt3us = Point<UInt16, 3>;
using Pnt4us = Point<UInt16, 4>;
using Pnt2ub = Point<UInt8, 2>;
using Pnt3ub = Point<UInt8, 3>;
using Pnt4ub = Point<UInt8, 4>;

using Vec2f = Vector<Real32, 2>;
using Vec3f = Vector<Real32, 3>;
using Vec4f = Vector<Real32, 4>;
using Vec2d = Vector<Real64, 2>;
using Vec3d = Vector<Real64, 3>;
using Vec4d = Vector<Real64, 4>;
using Vec2s = Vector<Int16, 2>;
using Vec3s = Vector<Int16, 3>;
using Vec4s = Vector<Int16, 4>;
using Vec2us = Vector<UInt16, 2>;
using Vec3us = Vector<UInt16, 3>;
using Vec4us = Vector<UInt16, 4>;
using Vec2ub = Vector<UInt8, 2>;
using Vec3ub = Vector<UInt8, 3>;
using Vec4ub = Vector<UInt8, 4>;

} // namespace osg
