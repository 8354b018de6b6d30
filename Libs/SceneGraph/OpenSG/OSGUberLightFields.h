// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>

namespace osg {

class UberLight;

typedef FCPtr<GroupPtr, UberLight> UberLightPtr;
typedef RefPtr<UberLightPtr> UberLightRefPtr;

template <>
struct FieldDataTraits<UberLightPtr> {
    static const Char8* getName() { return "UberLightPtr"; }
};

typedef SField<UberLightPtr> SFUberLightPtr;
typedef MField<UberLightPtr> MFUberLightPtr;

} // namespace osg
