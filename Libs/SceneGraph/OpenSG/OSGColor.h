// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGVector.h>

namespace osg {

/// Red, green and blue; a fresh colour is black. Comparisons have the tolerance Eps per component.
template <class ValueTypeT>
class Color3 {
public:
    using ValueType = ValueTypeT;

    constexpr Color3() noexcept = default;

    constexpr Color3(const ValueType red, const ValueType green, const ValueType blue) noexcept
        : m_values(red, green, blue)
    {}

    explicit constexpr Color3(const ValueType* values) noexcept
        : m_values(values)
    {}

    constexpr ValueType red() const noexcept { return m_values[0]; }
    constexpr ValueType green() const noexcept { return m_values[1]; }
    constexpr ValueType blue() const noexcept { return m_values[2]; }

    constexpr ValueType& operator[](const UInt32 index) noexcept { return m_values[index]; }
    constexpr const ValueType& operator[](const UInt32 index) const noexcept { return m_values[index]; }

    constexpr void clear() noexcept { m_values.setNull(); }

    constexpr void setValuesRGB(const ValueType red, const ValueType green, const ValueType blue) noexcept
    {
        m_values.setValues(red, green, blue);
    }

    constexpr void getValuesRGB(ValueType& red, ValueType& green, ValueType& blue) const noexcept
    {
        m_values.getSeparateValues(red, green, blue);
    }

    constexpr ValueType* getValuesRGB() noexcept { return m_values.getValues(); }
    constexpr const ValueType* getValuesRGB() const noexcept { return m_values.getValues(); }

    constexpr bool equals(const Color3& other, const ValueType tolerance) const noexcept
    {
        return m_values.equals(other.m_values, tolerance);
    }

    constexpr bool operator==(const Color3& other) const noexcept { return m_values == other.m_values; }
    constexpr bool operator!=(const Color3& other) const noexcept { return !(*this == other); }

    friend std::ostream& operator<<(std::ostream& stream, const Color3& color) { return stream << color.m_values; }

private:
    Point<ValueType, 3> m_values;
};

/// Red, green, blue and alpha; a fresh colour is transparent black. Compares like Color3.
template <class ValueTypeT>
class Color4 {
public:
    using ValueType = ValueTypeT;

    constexpr Color4() noexcept = default;

    constexpr Color4(const ValueType red, const ValueType green, const ValueType blue, const ValueType alpha) noexcept
        : m_values(red, green, blue, alpha)
    {}

    explicit constexpr Color4(const ValueType* values) noexcept
        : m_values(values)
    {}

    constexpr ValueType red() const noexcept { return m_values[0]; }
    constexpr ValueType green() const noexcept { return m_values[1]; }
    constexpr ValueType blue() const noexcept { return m_values[2]; }
    constexpr ValueType alpha() const noexcept { return m_values[3]; }

    constexpr ValueType& operator[](const UInt32 index) noexcept { return m_values[index]; }
    constexpr const ValueType& operator[](const UInt32 index) const noexcept { return m_values[index]; }

    constexpr void clear() noexcept { m_values.setNull(); }

    constexpr void setValuesRGBA(const ValueType red, const ValueType green, const ValueType blue,
                                 const ValueType alpha) noexcept
    {
        m_values.setValues(red, green, blue, alpha);
    }

    constexpr void getValuesRGBA(ValueType& red, ValueType& green, ValueType& blue, ValueType& alpha) const noexcept
    {
        m_values.getSeparateValues(red, green, blue, alpha);
    }

    constexpr ValueType* getValuesRGBA() noexcept { return m_values.getValues(); }
    constexpr const ValueType* getValuesRGBA() const noexcept { return m_values.getValues(); }

    constexpr bool equals(const Color4& other, const ValueType tolerance) const noexcept
    {
        return m_values.equals(other.m_values, tolerance);
    }

    constexpr bool operator==(const Color4& other) const noexcept { return m_values == other.m_values; }
    constexpr bool operator!=(const Color4& other) const noexcept { return !(*this == other); }

    friend std::ostream& operator<<(std::ostream& stream, const Color4& color) { return stream << color.m_values; }

private:
    Point<ValueType, 4> m_values;
};

using Color3f = Color3<Real32>;
using Color4f = Color4<Real32>;
using Color3ub = Color3<UInt8>;
using Color4ub = Color4<UInt8>;

} // namespace osg
