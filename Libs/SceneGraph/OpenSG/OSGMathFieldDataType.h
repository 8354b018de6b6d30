// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGField.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGVector.h>

namespace osg {

template <>
struct FieldDataTraits<Matrix> {
    static const Char8* getName() { return "Matrix"; }
};
template <>
struct FieldDataTraits<Pnt2f> {
    static const Char8* getName() { return "Pnt2f"; }
};
template <>
struct FieldDataTraits<Pnt3d> {
    static const Char8* getName() { return "Pnt3d"; }
};
template <>
struct FieldDataTraits<Pnt3f> {
    static const Char8* getName() { return "Pnt3f"; }
};
template <>
struct FieldDataTraits<Pnt4f> {
    static const Char8* getName() { return "Pnt4f"; }
};
template <>
struct FieldDataTraits<Vec2f> {
    static const Char8* getName() { return "Vec2f"; }
};
template <>
struct FieldDataTraits<Vec3f> {
    static const Char8* getName() { return "Vec3f"; }
};
template <>
struct FieldDataTraits<Vec4f> {
    static const Char8* getName() { return "Vec4f"; }
};
template <>
struct FieldDataTraits<Quaternion> {
    static const Char8* getName() { return "Quaternion"; }
};

} // namespace osg
