// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

/// Descriptor of GeoPLengthsUI8.
struct GeoPLengthsUI8PropertyDesc {
    typedef GeoPLengths Inherited;
    typedef MFUInt8 StoredFieldType;
    static constexpr UInt32 Dimension = 1;
    static constexpr UInt32 Format = GL_UNSIGNED_BYTE;
    static const Char8* getTypeName() { return "GeoPLengthsUI8"; }
};
/// Number of vertices of each primitive, stored as UInt8.
typedef GeoProperty<GeoPLengthsUI8PropertyDesc> GeoPLengthsUI8;
typedef FCPtr<GeoPLengthsPtr, GeoPLengthsUI8> GeoPLengthsUI8Ptr;
typedef RefPtr<GeoPLengthsUI8Ptr> GeoPLengthsUI8RefPtr;
extern template class GeoProperty<GeoPLengthsUI8PropertyDesc>;

/// Descriptor of GeoPLengthsUI16.
struct GeoPLengthsUI16PropertyDesc {
    typedef GeoPLengths Inherited;
    typedef MFUInt16 StoredFieldType;
    static constexpr UInt32 Dimension = 1;
    static constexpr UInt32 Format = GL_UNSIGNED_SHORT;
    static const Char8* getTypeName() { return "GeoPLengthsUI16"; }
};
/// Number of vertices of each primitive, stored as UInt16.
typedef GeoProperty<GeoPLengthsUI16PropertyDesc> GeoPLengthsUI16;
typedef FCPtr<GeoPLengthsPtr, GeoPLengthsUI16> GeoPLengthsUI16Ptr;
typedef RefPtr<GeoPLengthsUI16Ptr> GeoPLengthsUI16RefPtr;
extern template class GeoProperty<GeoPLengthsUI16PropertyDesc>;

/// Descriptor of GeoPLengthsUI32.
struct GeoPLengthsUI32PropertyDesc {
    typedef GeoPLengths Inherited;
    typedef MFUInt32 StoredFieldType;
    static constexpr UInt32 Dimension = 1;
    static constexpr UInt32 Format = GL_UNSIGNED_INT;
    static const Char8* getTypeName() { return "GeoPLengthsUI32"; }
};
/// Number of vertices of each primitive, stored as UInt32.
typedef GeoProperty<GeoPLengthsUI32PropertyDesc> GeoPLengthsUI32;
typedef FCPtr<GeoPLengthsPtr, GeoPLengthsUI32> GeoPLengthsUI32Ptr;
typedef RefPtr<GeoPLengthsUI32Ptr> GeoPLengthsUI32RefPtr;
extern template class GeoProperty<GeoPLengthsUI32PropertyDesc>;

} // namespace osg
