// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGDrawableFields.h>
#include <OpenSG/OSGNodeCore.h>

namespace osg {

/// Base of the cores that can be drawn.
class OSG_SYSTEM_DLLMAPPING Drawable : public NodeCore {
public:
    typedef NodeCore Inherited;
    typedef DrawablePtr Ptr;

    OSG_ABSTR_FIELD_CONTAINER_DECL(DrawablePtr)

protected:
    Drawable() = default;
    Drawable(const Drawable& source)
        : Inherited(source)
    {}
    ~Drawable() override;

    static FieldContainerType _type;
};

} // namespace osg
