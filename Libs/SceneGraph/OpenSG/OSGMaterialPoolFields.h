// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>

namespace osg {

class MaterialPool;

typedef FCPtr<GroupPtr, MaterialPool> MaterialPoolPtr;
typedef RefPtr<MaterialPoolPtr> MaterialPoolRefPtr;

template <>
struct FieldDataTraits<MaterialPoolPtr> {
    static const Char8* getName() { return "MaterialPoolPtr"; }
};

typedef SField<MaterialPoolPtr> SFMaterialPoolPtr;
typedef MField<MaterialPoolPtr> MFMaterialPoolPtr;

} // namespace osg
