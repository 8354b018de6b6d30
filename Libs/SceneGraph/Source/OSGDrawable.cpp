// SPDX-License-Identifier: MIT
#include <OpenSG/OSGDrawable.h>

namespace osg {

FieldContainerType Drawable::_type("Drawable", "NodeCore", nullptr, nullptr, nullptr);

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(Drawable, DrawablePtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(Drawable, DrawablePtr)

Drawable::~Drawable() = default;

} // namespace osg
