// SPDX-License-Identifier: MIT
#include <OpenSG/OSGDepthChunk.h>

namespace osg {

FieldDescription* DepthChunk::_desc[] = {
    describeField<&DepthChunk::m_sfEnable>("enable", EnableFieldId),
    describeField<&DepthChunk::m_sfFunc>("func", FuncFieldId),
    describeField<&DepthChunk::m_sfNear>("near", NearFieldId),
    describeField<&DepthChunk::m_sfFar>("far", FarFieldId),
    describeField<&DepthChunk::m_sfReadOnly>("readOnly", ReadOnlyFieldId),
};

FieldContainerType DepthChunk::_type(
    "DepthChunk", "StateChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(DepthChunk, DepthChunkPtr)
OSG_FIELD_CONTAINER_DEF(DepthChunk, DepthChunkPtr)

DepthChunk::~DepthChunk() = default;

const StateChunkClass* DepthChunk::getClass() const
{
    static const StateChunkClass chunkClass("Depth");
    return &chunkClass;
}

} // namespace osg
