// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

/// Descriptor of GeoPTypesUI8.
struct GeoPTypesUI8PropertyDesc {
    typedef GeoPTypes Inherited;
    typedef MFUInt8 StoredFieldType;
    static constexpr UInt32 Dimension = 1;
    static constexpr UInt32 Format = GL_UNSIGNED_BYTE;
    static const Char8* getTypeName() { return "GeoPTypesUI8"; }
};
/// Primitive types (GL_TRIANGLES and so on), one for each primitive, stored as UInt8.
typedef GeoProperty<GeoPTypesUI8PropertyDesc> GeoPTypesUI8;
typedef FCPtr<GeoPTypesPtr, GeoPTypesUI8> GeoPTypesUI8Ptr;
typedef RefPtr<GeoPTypesUI8Ptr> GeoPTypesUI8RefPtr;
extern template class GeoProperty<GeoPTypesUI8PropertyDesc>;

} // namespace osg
