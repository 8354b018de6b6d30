// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGDepthChunkFields.h>

namespace osg {

class DepthTestChunk;

typedef FCPtr<DepthChunkPtr, DepthTestChunk> DepthTestChunkPtr;
typedef RefPtr<DepthTestChunkPtr> DepthTestChunkRefPtr;

template <>
struct FieldDataTraits<DepthTestChunkPtr> {
    static const Char8* getName() { return "DepthTestChunkPtr"; }
};

typedef SField<DepthTestChunkPtr> SFDepthTestChunkPtr;
typedef MField<DepthTestChunkPtr> MFDepthTestChunkPtr;

} // namespace osg
