// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

/// Descriptor of GeoPositions3d.
struct GeoPositions3dPropertyDesc {
    typedef GeoPositions Inherited;
    typedef MFPnt3d StoredFieldType;
    static constexpr UInt32 Dimension = 3;
    static constexpr UInt32 Format = GL_DOUBLE;
    static const Char8* getTypeName() { return "GeoPositions3d"; }
};
/// Vertex positions stored as Pnt3d, which are read and written as Pnt3f.
typedef GeoProperty<GeoPositions3dPropertyDesc> GeoPositions3d;
typedef FCPtr<GeoPositionsPtr, GeoPositions3d> GeoPositions3dPtr;
typedef RefPtr<GeoPositions3dPtr> GeoPositions3dRefPtr;
extern template class GeoProperty<GeoPositions3dPropertyDesc>;

/// Descriptor of GeoPositions3f.
struct GeoPositions3fPropertyDesc {
    typedef GeoPositions Inherited;
    typedef MFPnt3f StoredFieldType;
    static constexpr UInt32 Dimension = 3;
    static constexpr UInt32 Format = GL_FLOAT;
    static const Char8* getTypeName() { return "GeoPositions3f"; }
};
/// Vertex positions in the space of the geometry's node, stored as Pnt3f.
typedef GeoProperty<GeoPositions3fPropertyDesc> GeoPositions3f;
typedef FCPtr<GeoPositionsPtr, GeoPositions3f> GeoPositions3fPtr;
typedef RefPtr<GeoPositions3fPtr> GeoPositions3fRefPtr;
extern template class GeoProperty<GeoPositions3fPropertyDesc>;

} // namespace osg
