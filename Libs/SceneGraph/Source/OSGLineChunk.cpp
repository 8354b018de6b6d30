// SPDX-License-Identifier: MIT
#include <OpenSG/OSGLineChunk.h>

namespace osg {

FieldDescription* LineChunk::_desc[] = {
    describeField<&LineChunk::m_sfWidth>("width", WidthFieldId),
    describeField<&LineChunk::m_sfStippleRepeat>("stippleRepeat", StippleRepeatFieldId),
    describeField<&LineChunk::m_sfStipplePattern>("stipplePattern", StipplePatternFieldId),
    describeField<&LineChunk::m_sfSmooth>("smooth", SmoothFieldId),
};

FieldContainerType LineChunk::_type(
    "LineChunk", "StateChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(LineChunk, LineChunkPtr)
OSG_FIELD_CONTAINER_DEF(LineChunk, LineChunkPtr)

LineChunk::~LineChunk() = default;

const StateChunkClass* LineChunk::getClass() const
{
    static const StateChunkClass chunkClass("Line");
    return &chunkClass;
}

} // namespace osg
