// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGStateChunkFields.h>

namespace osg {

class MaterialChunk;

typedef FCPtr<StateChunkPtr, MaterialChunk> MaterialChunkPtr;
typedef RefPtr<MaterialChunkPtr> MaterialChunkRefPtr;

template <>
struct FieldDataTraits<MaterialChunkPtr> {
    static const Char8* getName() { return "MaterialChunkPtr"; }
};

typedef SField<MaterialChunkPtr> SFMaterialChunkPtr;
typedef MField<MaterialChunkPtr> MFMaterialChunkPtr;

} // namespace osg
