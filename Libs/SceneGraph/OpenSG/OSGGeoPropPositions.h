// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

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
