// SPDX-License-Identifier: MIT
#include <OpenSG/OSGPointLight.h>

namespace osg {

FieldDescription* PointLight::_desc[] = {
    describeField<&PointLight::m_sfPosition>("position", PositionFieldId),
};

FieldContainerType PointLight::_type(
    "PointLight", "Light", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc, sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(PointLight, PointLightPtr)
OSG_FIELD_CONTAINER_DEF(PointLight, PointLightPtr)

PointLight::~PointLight() = default;

} // namespace osg
