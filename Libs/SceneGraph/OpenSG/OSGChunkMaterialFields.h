// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGMaterialFields.h>

namespace osg {

class ChunkMaterial;

typedef FCPtr<MaterialPtr, ChunkMaterial> ChunkMaterialPtr;
typedef RefPtr<ChunkMaterialPtr> ChunkMaterialRefPtr;

template <>
struct FieldDataTraits<ChunkMaterialPtr> {
    static const Char8* getName() { return "ChunkMaterialPtr"; }
};

typedef SField<ChunkMaterialPtr> SFChunkMaterialPtr;
typedef MField<ChunkMaterialPtr> MFChunkMaterialPtr;

} // namespace osg
