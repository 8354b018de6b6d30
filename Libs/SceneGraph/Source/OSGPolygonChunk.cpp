// SPDX-License-Identifier: MIT
#include <OpenSG/OSGPolygonChunk.h>

namespace osg {

FieldDescription* PolygonChunk::_desc[] = {
    describeField<&PolygonChunk::m_sfCullFace>("cullFace", CullFaceFieldId),
    describeField<&PolygonChunk::m_sfFrontFace>("frontFace", FrontFaceFieldId),
    describeField<&PolygonChunk::m_sfFrontMode>("frontMode", FrontModeFieldId),
    describeField<&PolygonChunk::m_sfBackMode>("backMode", BackModeFieldId),
    describeField<&PolygonChunk::m_sfSmooth>("smooth", SmoothFieldId),
    describeField<&PolygonChunk::m_sfOffsetFactor>("offsetFactor", OffsetFactorFieldId),
    describeField<&PolygonChunk::m_sfOffsetBias>("offsetBias", OffsetBiasFieldId),
    describeField<&PolygonChunk::m_sfOffsetPoint>("offsetPoint", OffsetPointFieldId),
    describeField<&PolygonChunk::m_sfOffsetLine>("offsetLine", OffsetLineFieldId),
    describeField<&PolygonChunk::m_sfOffsetFill>("offsetFill", OffsetFillFieldId),
    describeField<&PolygonChunk::m_mfStipple>("stipple", StippleFieldId),
};

FieldContainerType PolygonChunk::_type(
    "PolygonChunk", "StateChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(PolygonChunk, PolygonChunkPtr)
OSG_FIELD_CONTAINER_DEF(PolygonChunk, PolygonChunkPtr)

PolygonChunk::~PolygonChunk() = default;

const StateChunkClass* PolygonChunk::getClass() const
{
    static const StateChunkClass chunkClass("Polygon");
    return &chunkClass;
}

} // namespace osg
