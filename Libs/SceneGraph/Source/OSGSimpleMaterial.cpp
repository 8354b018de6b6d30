// SPDX-License-Identifier: MIT
#include <OpenSG/OSGSimpleMaterial.h>

namespace osg {

FieldDescription* SimpleMaterial::_desc[] = {
    describeField<&SimpleMaterial::m_sfAmbient>("ambient", AmbientFieldId),
    describeField<&SimpleMaterial::m_sfDiffuse>("diffuse", DiffuseFieldId),
    describeField<&SimpleMaterial::m_sfSpecular>("specular", SpecularFieldId),
    describeField<&SimpleMaterial::m_sfShininess>("shininess", ShininessFieldId),
    describeField<&SimpleMaterial::m_sfEmission>("emission", EmissionFieldId),
    describeField<&SimpleMaterial::m_sfTransparency>("transparency", TransparencyFieldId),
    describeField<&SimpleMaterial::m_sfLit>("lit", LitFieldId),
    describeField<&SimpleMaterial::m_sfColorMaterial>("colorMaterial", ColorMaterialFieldId),
    describeField<&SimpleMaterial::m_sfHostReserved>("hostReserved", HostReservedFieldId),
    describeField<&SimpleMaterial::m_sfHostOption>("hostOption", HostOptionFieldId),
};

FieldContainerType SimpleMaterial::_type(
    "SimpleMaterial", "ChunkMaterial", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(SimpleMaterial, SimpleMaterialPtr)
OSG_FIELD_CONTAINER_DEF(SimpleMaterial, SimpleMaterialPtr)

SimpleMaterial::~SimpleMaterial()
{
    subRefCP(m_materialChunk);
    subRefCP(m_blendChunk);
}

StatePtr SimpleMaterial::makeState()
{
    updateChunks();
    const StatePtr state = State::create();
    fillState(state);
    return state;
}

void SimpleMaterial::rebuildState()
{
    updateChunks();
    if (m_state == NullFC) {
        m_state = State::create();
        addRefCP(m_state);
    } else {
        m_state->clearChunks();
    }
    fillState(m_state);
}

bool SimpleMaterial::isTransparent() const
{
    return getTransparency() > Eps || Inherited::isTransparent();
}

void SimpleMaterial::updateChunks()
{
    if (m_blendChunk == NullFC) {
        m_blendChunk = BlendChunk::create();
        addRefCP(m_blendChunk);
        beginEditCP(m_blendChunk);
        m_blendChunk->setSrcFactor(GL_SRC_ALPHA);
        m_blendChunk->setDestFactor(GL_ONE_MINUS_SRC_ALPHA);
        endEditCP(m_blendChunk);
    }
    if (m_materialChunk == NullFC) {
        m_materialChunk = MaterialChunk::create();
        addRefCP(m_materialChunk);
    }
    const auto withAlpha = [this](const Color3f& color) {
        return Color4f(color.red(), color.green(), color.blue(), 1.0F - getTransparency());
    };
    beginEditCP(m_materialChunk);
    m_materialChunk->setAmbient(withAlpha(getAmbient()));
    m_materialChunk->setDiffuse(withAlpha(getDiffuse()));
    m_materialChunk->setSpecular(withAlpha(getSpecular()));
    m_materialChunk->setEmission(withAlpha(getEmission()));
    m_materialChunk->setShininess(getShininess());
    m_materialChunk->setLit(getLit());
    m_materialChunk->setColorMaterial(getColorMaterial());
    endEditCP(m_materialChunk);
}

void SimpleMaterial::fillState(const StatePtr& state)
{
    state->addChunk(m_materialChunk);
    if (isTransparent()) {
        state->addChunk(m_blendChunk);
    }
    addChunks(state);
}

} // namespace osg
