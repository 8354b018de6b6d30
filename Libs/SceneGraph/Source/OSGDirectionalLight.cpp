// SPDX-License-Identifier: MIT
#include <OpenSG/OSGDirectionalLight.h>

namespace osg {

FieldDescription* DirectionalLight::_desc[] = {
    describeField<&DirectionalLight::m_sfDirection>("direction", DirectionFieldId),
};

FieldContainerType DirectionalLight::_type(
    "DirectionalLight", "Light", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(DirectionalLight, DirectionalLightPtr)
OSG_FIELD_CONTAINER_DEF(DirectionalLight, DirectionalLightPtr)

DirectionalLight::~DirectionalLight() = default;

} // namespace osg
