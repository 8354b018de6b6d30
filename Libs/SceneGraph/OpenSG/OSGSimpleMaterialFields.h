// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGChunkMaterialFields.h>

namespace osg {

class SimpleMaterial;

typedef FCPtr<ChunkMaterialPtr, SimpleMaterial> SimpleMaterialPtr;
typedef RefPtr<SimpleMaterialPtr> SimpleMaterialRefPtr;

template <>
struct FieldDataTraits<SimpleMaterialPtr> {
    static const Char8* getName() { return "SimpleMaterialPtr"; }
};

typedef SField<SimpleMaterialPtr> SFSimpleMaterialPtr;
typedef MField<SimpleMaterialPtr> MFSimpleMaterialPtr;

} // namespace osg
