// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentContainerFields.h>

namespace osg {

class Material;

typedef FCPtr<AttachmentContainerPtr, Material> MaterialPtr;
typedef RefPtr<MaterialPtr> MaterialRefPtr;

template <>
struct FieldDataTraits<MaterialPtr> {
    static const Char8* getName() { return "MaterialPtr"; }
};

typedef SField<MaterialPtr> SFMaterialPtr;
typedef MField<MaterialPtr> MFMaterialPtr;

} // namespace osg
