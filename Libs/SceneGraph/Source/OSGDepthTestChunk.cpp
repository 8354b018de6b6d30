// SPDX-License-Identifier: MIT
#include <OpenSG/OSGDepthTestChunk.h>

namespace osg {

FieldContainerType DepthTestChunk::_type(
    "DepthTestChunk", "DepthChunk", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(DepthTestChunk, DepthTestChunkPtr)
OSG_FIELD_CONTAINER_DEF(DepthTestChunk, DepthTestChunkPtr)

DepthTestChunk::~DepthTestChunk() = default;

} // namespace osg
