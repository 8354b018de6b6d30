// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGLightFields.h>

namespace osg {

class PointLight;

typedef FCPtr<LightPtr, PointLight> PointLightPtr;
typedef RefPtr<PointLightPtr> PointLightRefPtr;

template <>
struct FieldDataTraits<PointLightPtr> {
    static const Char8* getName() { return "PointLightPtr"; }
};

typedef SField<PointLightPtr> SFPointLightPtr;
typedef MField<PointLightPtr> MFPointLightPtr;

} // namespace osg
