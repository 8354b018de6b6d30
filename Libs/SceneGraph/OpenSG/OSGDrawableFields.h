// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGNodeCoreFields.h>

namespace osg {

class Drawable;

typedef FCPtr<NodeCorePtr, Drawable> DrawablePtr;
typedef RefPtr<DrawablePtr> DrawableRefPtr;

template <>
struct FieldDataTraits<DrawablePtr> {
    static const Char8* getName() { return "DrawablePtr"; }
};

typedef SField<DrawablePtr> SFDrawablePtr;
typedef MField<DrawablePtr> MFDrawablePtr;

} // namespace osg
