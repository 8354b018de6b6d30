// SPDX-License-Identifier: MIT
#include <OpenSG/OSGUberLight.h>

namespace osg {

FieldContainerType UberLight::_type(
    "UberLight", "Group", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(UberLight, UberLightPtr)
OSG_FIELD_CONTAINER_DEF(UberLight, UberLightPtr)

UberLight::~UberLight() = default;

} // namespace osg
