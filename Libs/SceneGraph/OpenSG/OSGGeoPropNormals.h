// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

/// Descriptor of GeoNormals3f.
struct GeoNormals3fPropertyDesc {
    typedef GeoNormals Inherited;
    typedef MFVec3f StoredFieldType;
    static constexpr UInt32 Dimension = 3;
    static constexpr UInt32 Format = GL_FLOAT;
    static const Char8* getTypeName() { return "GeoNormals3f"; }
};
/// Vertex normals, stored as Vec3f.
typedef GeoProperty<GeoNormals3fPropertyDesc> GeoNormals3f;
typedef FCPtr<GeoNormalsPtr, GeoNormals3f> GeoNormals3fPtr;
typedef RefPtr<GeoNormals3fPtr> GeoNormals3fRefPtr;
extern template class GeoProperty<GeoNormals3fPropertyDesc>;

} // namespace osg
