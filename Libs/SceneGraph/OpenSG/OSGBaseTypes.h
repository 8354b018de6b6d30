// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <cstdint>
#include <limits>

namespace osg {

using Char8 = char;
using UChar8 = unsigned char;

using Int8 = std::int8_t;
using UInt8 = std::uint8_t;
using Int16 = std::int16_t;
using UInt16 = std::uint16_t;
using Int32 = std::int32_t;
using UInt32 = std::uint32_t;
using Int64 = std::int64_t;
using UInt64 = std::uint64_t;

using Real32 = float;
using Real64 = double;
using Real128 = long double;

/// A set of fields: one bit per field identifier.
using BitVector = UInt64;

/// Tolerance per component of the comparisons of points, vectors, colours and matrices.
inline constexpr Real32 Eps = 1e-6F;
inline constexpr Real32 Pi = 3.14159265358979323846F;
/// "Far enough for any scene"; not the infinity of floating point numbers.
inline constexpr Real32 Inf = 1e30F;

/// Constants of an arithmetic type, as container classes written by hand use them for their field masks.
template <class T>
struct TypeTraits {
    static constexpr T Zero = T(0);
    static constexpr T One = T(1);
    static constexpr T Min = std::numeric_limits<T>::lowest();
    static constexpr T Max = std::numeric_limits<T>::max();

    static constexpr T getZeroElement() noexcept { return Zero; }
    static constexpr T getOneElement() noexcept { return One; }
    static constexpr T getMin() noexcept { return Min; }
    static constexpr T getMax() noexcept { return Max; }
};

} // namespace osg
