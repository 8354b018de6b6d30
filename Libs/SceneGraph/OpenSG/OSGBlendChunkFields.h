// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGStateChunkFields.h>

namespace osg {

class BlendChunk;

typedef FCPtr<StateChunkPtr, BlendChunk> BlendChunkPtr;
typedef RefPtr<BlendChunkPtr> BlendChunkRefPtr;

template <>
struct FieldDataTraits<BlendChunkPtr> {
    static const Char8* getName() { return "BlendChunkPtr"; }
};

typedef SField<BlendChunkPtr> SFBlendChunkPtr;
typedef MField<BlendChunkPtr> MFBlendChunkPtr;

} // namespace osg
