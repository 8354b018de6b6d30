// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGMaterialDrawableFields.h>

namespace osg {

class Geometry;

typedef FCPtr<MaterialDrawablePtr, Geometry> GeometryPtr;
typedef RefPtr<GeometryPtr> GeometryRefPtr;

template <>
struct FieldDataTraits<GeometryPtr> {
    static const Char8* getName() { return "GeometryPtr"; }
};

typedef SField<GeometryPtr> SFGeometryPtr;
typedef MField<GeometryPtr> MFGeometryPtr;

} // namespace osg
