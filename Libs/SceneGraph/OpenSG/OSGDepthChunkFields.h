// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGStateChunkFields.h>

namespace osg {

class DepthChunk;

typedef FCPtr<StateChunkPtr, DepthChunk> DepthChunkPtr;
typedef RefPtr<DepthChunkPtr> DepthChunkRefPtr;

template <>
struct FieldDataTraits<DepthChunkPtr> {
    static const Char8* getName() { return "DepthChunkPtr"; }
};

typedef SField<DepthChunkPtr> SFDepthChunkPtr;
typedef MField<DepthChunkPtr> MFDepthChunkPtr;

} // namespace osg
