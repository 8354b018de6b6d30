// SPDX-License-Identifier: MIT
#include <OpenSG/OSGMaterialChunk.h>

namespace osg {

FieldDescription* MaterialChunk::_desc[] = {
    describeField<&MaterialChunk::m_sfDiffuse>("diffuse", DiffuseFieldId),
    describeField<&MaterialChunk::m_sfAmbient>("ambient", AmbientFieldId),
    describeField<&MaterialChunk::m_sfSpecular>("specular", SpecularFieldId),
    describeField<&MaterialChunk::m_sfEmission>("emission", EmissionFieldId),
    describeField<&MaterialChunk::m_sfShininess>("shininess", ShininessFieldId),
    describeField<&MaterialChunk::m_sfLit>("lit", LitFieldId),
    describeField<&MaterialChunk::m_sfColorMaterial>("colorMaterial", ColorMaterialFieldId),
};

FieldContainerType MaterialChunk::_type(
    "MaterialChunk", "StateChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(MaterialChunk, MaterialChunkPtr)
OSG_FIELD_CONTAINER_DEF(MaterialChunk, MaterialChunkPtr)

MaterialChunk::~MaterialChunk() = default;

const StateChunkClass* MaterialChunk::getClass() const
{
    static const StateChunkClass chunkClass("Material");
    return &chunkClass;
}

bool MaterialChunk::isTransparent() const
{
    return getDiffuse().alpha() < 1.0F - Eps;
}

} // namespace osg
