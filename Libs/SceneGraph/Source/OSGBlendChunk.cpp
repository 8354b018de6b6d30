// SPDX-License-Identifier: MIT
#include <OpenSG/OSGBlendChunk.h>

namespace osg {

FieldDescription* BlendChunk::_desc[] = {
    describeField<&BlendChunk::m_sfSrcFactor>("srcFactor", SrcFactorFieldId),
    describeField<&BlendChunk::m_sfDestFactor>("destFactor", DestFactorFieldId),
    describeField<&BlendChunk::m_sfEquation>("equation", EquationFieldId),
    describeField<&BlendChunk::m_sfColor>("color", ColorFieldId),
    describeField<&BlendChunk::m_sfAlphaFunc>("alphaFunc", AlphaFuncFieldId),
    describeField<&BlendChunk::m_sfAlphaValue>("alphaValue", AlphaValueFieldId),
    describeField<&BlendChunk::m_sfAlphaSrcFactor>("alphaSrcFactor", AlphaSrcFactorFieldId),
    describeField<&BlendChunk::m_sfAlphaDestFactor>("alphaDestFactor", AlphaDestFactorFieldId),
};

FieldContainerType BlendChunk::_type(
    "BlendChunk", "StateChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(BlendChunk, BlendChunkPtr)
OSG_FIELD_CONTAINER_DEF(BlendChunk, BlendChunkPtr)

BlendChunk::~BlendChunk() = default;

const StateChunkClass* BlendChunk::getClass() const
{
    static const StateChunkClass chunkClass("Blend");
    return &chunkClass;
}

bool BlendChunk::isTransparent() const
{
    return getDestFactor() != GL_ZERO;
}

} // namespace osg
