// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentFields.h>
#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>

namespace osg {

template <class AbstractDescT>
class AbstractGeoProperty;

/// Descriptor of GeoPTypes.
struct GeoPTypesPropertyDesc {
    typedef UInt8 GenericType;
    static const Char8* getTypeName() { return "GeoPTypes"; }
};
typedef AbstractGeoProperty<GeoPTypesPropertyDesc> GeoPTypes;
typedef FCPtr<AttachmentPtr, GeoPTypes> GeoPTypesPtr;
typedef RefPtr<GeoPTypesPtr> GeoPTypesRefPtr;

/// Descriptor of GeoPLengths.
struct GeoPLengthsPropertyDesc {
    typedef UInt32 GenericType;
    static const Char8* getTypeName() { return "GeoPLengths"; }
};
typedef AbstractGeoProperty<GeoPLengthsPropertyDesc> GeoPLengths;
typedef FCPtr<AttachmentPtr, GeoPLengths> GeoPLengthsPtr;
typedef RefPtr<GeoPLengthsPtr> GeoPLengthsRefPtr;

/// Descriptor of GeoIndices.
struct GeoIndicesPropertyDesc {
    typedef UInt32 GenericType;
    static const Char8* getTypeName() { return "GeoIndices"; }
};
typedef AbstractGeoProperty<GeoIndicesPropertyDesc> GeoIndices;
typedef FCPtr<AttachmentPtr, GeoIndices> GeoIndicesPtr;
typedef RefPtr<GeoIndicesPtr> GeoIndicesRefPtr;

/// Descriptor of GeoPositions.
struct GeoPositionsPropertyDesc {
    typedef Pnt3f GenericType;
    static const Char8* getTypeName() { return "GeoPositions"; }
};
typedef AbstractGeoProperty<GeoPositionsPropertyDesc> GeoPositions;
typedef FCPtr<AttachmentPtr, GeoPositions> GeoPositionsPtr;
typedef RefPtr<GeoPositionsPtr> GeoPositionsRefPtr;

/// Descriptor of GeoNormals.
struct GeoNormalsPropertyDesc {
    typedef Vec3f GenericType;
    static const Char8* getTypeName() { return "GeoNormals"; }
};
typedef AbstractGeoProperty<GeoNormalsPropertyDesc> GeoNormals;
typedef FCPtr<AttachmentPtr, GeoNormals> GeoNormalsPtr;
typedef RefPtr<GeoNormalsPtr> GeoNormalsRefPtr;

/// Descriptor of GeoColors.
struct GeoColorsPropertyDesc {
    typedef Color3f GenericType;
    static const Char8* getTypeName() { return "GeoColors"; }
};
typedef AbstractGeoProperty<GeoColorsPropertyDesc> GeoColors;
typedef FCPtr<AttachmentPtr, GeoColors> GeoColorsPtr;
typedef RefPtr<GeoColorsPtr> GeoColorsRefPtr;

/// Descriptor of GeoTexCoords.
struct GeoTexCoordsPropertyDesc {
    typedef Vec2f GenericType;
    static const Char8* getTypeName() { return "GeoTexCoords"; }
};
typedef AbstractGeoProperty<GeoTexCoordsPropertyDesc> GeoTexCoords;
typedef FCPtr<AttachmentPtr, GeoTexCoords> GeoTexCoordsPtr;
typedef RefPtr<GeoTexCoordsPtr> GeoTexCoordsRefPtr;

template <>
struct FieldDataTraits<GeoPTypesPtr> {
    static const Char8* getName() { return "GeoPTypesPtr"; }
};
typedef SField<GeoPTypesPtr> SFGeoPTypesPtr;

template <>
struct FieldDataTraits<GeoPLengthsPtr> {
    static const Char8* getName() { return "GeoPLengthsPtr"; }
};
typedef SField<GeoPLengthsPtr> SFGeoPLengthsPtr;

template <>
struct FieldDataTraits<GeoIndicesPtr> {
    static const Char8* getName() { return "GeoIndicesPtr"; }
};
typedef SField<GeoIndicesPtr> SFGeoIndicesPtr;

template <>
struct FieldDataTraits<GeoPositionsPtr> {
    static const Char8* getName() { return "GeoPositionsPtr"; }
};
typedef SField<GeoPositionsPtr> SFGeoPositionsPtr;

template <>
struct FieldDataTraits<GeoNormalsPtr> {
    static const Char8* getName() { return "GeoNormalsPtr"; }
};
typedef SField<GeoNormalsPtr> SFGeoNormalsPtr;

template <>
struct FieldDataTraits<GeoColorsPtr> {
    static const Char8* getName() { return "GeoColorsPtr"; }
};
typedef SField<GeoColorsPtr> SFGeoColorsPtr;

template <>
struct FieldDataTraits<GeoTexCoordsPtr> {
    static const Char8* getName() { return "GeoTexCoordsPtr"; }
};
typedef SField<GeoTexCoordsPtr> SFGeoTexCoordsPtr;

} // namespace osg
