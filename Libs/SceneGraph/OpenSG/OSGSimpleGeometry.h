// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGNode.h>

namespace osg {

/// The material of all geometries made here: a lit grey. There is one in the process.
OSG_SYSTEM_DLLMAPPING MaterialPtr getDefaultMaterial();
/// The same grey without lighting.
OSG_SYSTEM_DLLMAPPING MaterialPtr getDefaultUnlitMaterial();

// All have normals and texture coordinates and are centred on the origin; the make...Geo functions return the core
// alone. Counts of the results are zero.

/// A rectangle in the plane of x and y that looks along z, divided into @p hor by @p vert quads.
OSG_SYSTEM_DLLMAPPING GeometryPtr makePlaneGeo(Real32 xsize, Real32 ysize, UInt16 hor, UInt16 vert);
OSG_SYSTEM_DLLMAPPING NodePtr makePlane(Real32 xsize, Real32 ysize, UInt16 hor, UInt16 vert);

/// A box with sides along the axes, divided along each of them.
OSG_SYSTEM_DLLMAPPING GeometryPtr makeBoxGeo(Real32 xsize, Real32 ysize, Real32 zsize, UInt16 hor, UInt16 vert,
                                             UInt16 depth);
OSG_SYSTEM_DLLMAPPING NodePtr makeBox(Real32 xsize, Real32 ysize, Real32 zsize, UInt16 hor, UInt16 vert, UInt16 depth);

/// A sphere made of an icosahedron whose triangles are divided by four @p depth times.
OSG_SYSTEM_DLLMAPPING GeometryPtr makeSphereGeo(UInt16 depth, Real32 radius);
OSG_SYSTEM_DLLMAPPING NodePtr makeSphere(UInt16 depth, Real32 radius);

/// A sphere made of rings from pole to pole.
OSG_SYSTEM_DLLMAPPING GeometryPtr makeLatLongSphereGeo(UInt16 latres, UInt16 longres, Real32 radius);
OSG_SYSTEM_DLLMAPPING NodePtr makeLatLongSphere(UInt16 latres, UInt16 longres, Real32 radius);

} // namespace osg
