// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGLightFields.h>

namespace osg {

class DirectionalLight;

typedef FCPtr<LightPtr, DirectionalLight> DirectionalLightPtr;
typedef RefPtr<DirectionalLightPtr> DirectionalLightRefPtr;

template <>
struct FieldDataTraits<DirectionalLightPtr> {
    static const Char8* getName() { return "DirectionalLightPtr"; }
};

typedef SField<DirectionalLightPtr> SFDirectionalLightPtr;
typedef MField<DirectionalLightPtr> MFDirectionalLightPtr;

} // namespace osg
