// SPDX-License-Identifier: MIT
#include <OpenSG/OSGLight.h>

namespace osg {

FieldDescription* Light::_desc[] = {
    describeField<&Light::m_sfAmbient>("ambient", AmbientFieldId),
    describeField<&Light::m_sfDiffuse>("diffuse", DiffuseFieldId),
    describeField<&Light::m_sfSpecular>("specular", SpecularFieldId),
    describeField<&Light::m_sfBeacon>("beacon", BeaconFieldId),
    describeField<&Light::m_sfOn>("on", OnFieldId),
    describeField<&Light::m_sfConstantAttenuation>("constantAttenuation", ConstantAttenuationFieldId),
    describeField<&Light::m_sfLinearAttenuation>("linearAttenuation", LinearAttenuationFieldId),
    describeField<&Light::m_sfQuadraticAttenuation>("quadraticAttenuation", QuadraticAttenuationFieldId),
};

FieldContainerType Light::_type("Light", "Group", nullptr, nullptr, nullptr, _desc, sizeof(_desc));

OSG_ABSTR_FIELD_CONTAINER_INL_DEF(Light, LightPtr)
OSG_ABSTR_FIELD_CONTAINER_DEF(Light, LightPtr)

Light::~Light() = default;

} // namespace osg
