// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

/// Descriptor of GeoTexCoords2f.
struct GeoTexCoords2fPropertyDesc {
    typedef GeoTexCoords Inherited;
    typedef MFVec2f StoredFieldType;
    static constexpr UInt32 Dimension = 2;
    static constexpr UInt32 Format = GL_FLOAT;
    static const Char8* getTypeName() { return "GeoTexCoords2f"; }
};
/// Texture coordinates, stored as Vec2f.
typedef GeoProperty<GeoTexCoords2fPropertyDesc> GeoTexCoords2f;
typedef FCPtr<GeoTexCoordsPtr, GeoTexCoords2f> GeoTexCoords2fPtr;
typedef RefPtr<GeoTexCoords2fPtr> GeoTexCoords2fRefPtr;
extern template class GeoProperty<GeoTexCoords2fPropertyDesc>;

} // namespace osg
