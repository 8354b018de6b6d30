// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGField.h>

namespace osg {

// Field values of C++'s own types. GLenum has no entry of its own: it is the same type as UInt32.
template <>
struct FieldDataTraits<bool> {
    static const Char8* getName() { return "Bool"; }
};
template <>
struct FieldDataTraits<Int8> {
    static const Char8* getName() { return "Int8"; }
};
template <>
struct FieldDataTraits<UInt8> {
    static const Char8* getName() { return "UInt8"; }
};
template <>
struct FieldDataTraits<Int16> {
    static const Char8* getName() { return "Int16"; }
};
template <>
struct FieldDataTraits<UInt16> {
    static const Char8* getName() { return "UInt16"; }
};
template <>
struct FieldDataTraits<Int32> {
    static const Char8* getName() { return "Int32"; }
};
template <>
struct FieldDataTraits<UInt32> {
    static const Char8* getName() { return "UInt32"; }
};
template <>
struct FieldDataTraits<Int64> {
    static const Char8* getName() { return "Int64"; }
};
template <>
struct FieldDataTraits<UInt64> {
    static const Char8* getName() { return "UInt64"; }
};
template <>
struct FieldDataTraits<Real32> {
    static const Char8* getName() { return "Real32"; }
};
template <>
struct FieldDataTraits<Real64> {
    static const Char8* getName() { return "Real64"; }
};

} // namespace osg
