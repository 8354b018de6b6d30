// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>

namespace osg {

class UberCamera;

typedef FCPtr<GroupPtr, UberCamera> UberCameraPtr;
typedef RefPtr<UberCameraPtr> UberCameraRefPtr;

template <>
struct FieldDataTraits<UberCameraPtr> {
    static const Char8* getName() { return "UberCameraPtr"; }
};

typedef SField<UberCameraPtr> SFUberCameraPtr;
typedef MField<UberCameraPtr> MFUberCameraPtr;

} // namespace osg
