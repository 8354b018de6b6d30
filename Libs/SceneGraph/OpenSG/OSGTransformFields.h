// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>

namespace osg {

class Transform;

typedef FCPtr<GroupPtr, Transform> TransformPtr;
typedef RefPtr<TransformPtr> TransformRefPtr;

template <>
struct FieldDataTraits<TransformPtr> {
    static const Char8* getName() { return "TransformPtr"; }
};

typedef SField<TransformPtr> SFTransformPtr;
typedef MField<TransformPtr> MFTransformPtr;

} // namespace osg
