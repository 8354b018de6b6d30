// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

/// Descriptor of GeoIndicesUI16.
struct GeoIndicesUI16PropertyDesc {
    typedef GeoIndices Inherited;
    typedef MFUInt16 StoredFieldType;
    static constexpr UInt32 Dimension = 1;
    static constexpr UInt32 Format = GL_UNSIGNED_SHORT;
    static const Char8* getTypeName() { return "GeoIndicesUI16"; }
};
/// Indices into the other properties, stored as UInt16.
typedef GeoProperty<GeoIndicesUI16PropertyDesc> GeoIndicesUI16;
typedef FCPtr<GeoIndicesPtr, GeoIndicesUI16> GeoIndicesUI16Ptr;
typedef RefPtr<GeoIndicesUI16Ptr> GeoIndicesUI16RefPtr;
extern template class GeoProperty<GeoIndicesUI16PropertyDesc>;

/// Descriptor of GeoIndicesUI32.
struct GeoIndicesUI32PropertyDesc {
    typedef GeoIndices Inherited;
    typedef MFUInt32 StoredFieldType;
    static constexpr UInt32 Dimension = 1;
    static constexpr UInt32 Format = GL_UNSIGNED_INT;
    static const Char8* getTypeName() { return "GeoIndicesUI32"; }
};
/// Indices into the other properties, stored as UInt32.
typedef GeoProperty<GeoIndicesUI32PropertyDesc> GeoIndicesUI32;
typedef FCPtr<GeoIndicesPtr, GeoIndicesUI32> GeoIndicesUI32Ptr;
typedef RefPtr<GeoIndicesUI32Ptr> GeoIndicesUI32RefPtr;
extern template class GeoProperty<GeoIndicesUI32PropertyDesc>;

} // namespace osg
