// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoPropertyTemplates.h>

namespace osg {

/// Descriptor of GeoColors3f.
struct GeoColors3fPropertyDesc {
    typedef GeoColors Inherited;
    typedef MFColor3f StoredFieldType;
    static constexpr UInt32 Dimension = 3;
    static constexpr UInt32 Format = GL_FLOAT;
    static const Char8* getTypeName() { return "GeoColors3f"; }
};
/// Vertex colours, stored as Color3f.
typedef GeoProperty<GeoColors3fPropertyDesc> GeoColors3f;
typedef FCPtr<GeoColorsPtr, GeoColors3f> GeoColors3fPtr;
typedef RefPtr<GeoColors3fPtr> GeoColors3fRefPtr;
extern template class GeoProperty<GeoColors3fPropertyDesc>;

/// Descriptor of GeoColors4f.
struct GeoColors4fPropertyDesc {
    typedef GeoColors Inherited;
    typedef MFColor4f StoredFieldType;
    static constexpr UInt32 Dimension = 4;
    static constexpr UInt32 Format = GL_FLOAT;
    static const Char8* getTypeName() { return "GeoColors4f"; }
};
/// Vertex colours, stored as Color4f.
typedef GeoProperty<GeoColors4fPropertyDesc> GeoColors4f;
typedef FCPtr<GeoColorsPtr, GeoColors4f> GeoColors4fPtr;
typedef RefPtr<GeoColors4fPtr> GeoColors4fRefPtr;
extern template class GeoProperty<GeoColors4fPropertyDesc>;

} // namespace osg
