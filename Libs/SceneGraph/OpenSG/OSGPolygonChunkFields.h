// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGStateChunkFields.h>

namespace osg {

class PolygonChunk;

typedef FCPtr<StateChunkPtr, PolygonChunk> PolygonChunkPtr;
typedef RefPtr<PolygonChunkPtr> PolygonChunkRefPtr;

template <>
struct FieldDataTraits<PolygonChunkPtr> {
    static const Char8* getName() { return "PolygonChunkPtr"; }
};

typedef SField<PolygonChunkPtr> SFPolygonChunkPtr;
typedef MField<PolygonChunkPtr> MFPolygonChunkPtr;

} // namespace osg
