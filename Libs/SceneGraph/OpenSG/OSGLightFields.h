// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>

namespace osg {

class Light;

typedef FCPtr<GroupPtr, Light> LightPtr;
typedef RefPtr<LightPtr> LightRefPtr;

template <>
struct FieldDataTraits<LightPtr> {
    static const Char8* getName() { return "LightPtr"; }
};

typedef SField<LightPtr> SFLightPtr;
typedef MField<LightPtr> MFLightPtr;

} // namespace osg
