// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGDrawableFields.h>

namespace osg {

class MaterialDrawable;

typedef FCPtr<DrawablePtr, MaterialDrawable> MaterialDrawablePtr;
typedef RefPtr<MaterialDrawablePtr> MaterialDrawableRefPtr;

template <>
struct FieldDataTraits<MaterialDrawablePtr> {
    static const Char8* getName() { return "MaterialDrawablePtr"; }
};

typedef SField<MaterialDrawablePtr> SFMaterialDrawablePtr;
typedef MField<MaterialDrawablePtr> MFMaterialDrawablePtr;

} // namespace osg
