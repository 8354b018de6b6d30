// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>

namespace osg {

class MaterialGroup;

typedef FCPtr<GroupPtr, MaterialGroup> MaterialGroupPtr;
typedef RefPtr<MaterialGroupPtr> MaterialGroupRefPtr;

template <>
struct FieldDataTraits<MaterialGroupPtr> {
    static const Char8* getName() { return "MaterialGroupPtr"; }
};

typedef SField<MaterialGroupPtr> SFMaterialGroupPtr;
typedef MField<MaterialGroupPtr> MFMaterialGroupPtr;

} // namespace osg
