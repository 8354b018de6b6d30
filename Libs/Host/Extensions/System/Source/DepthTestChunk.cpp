// SPDX-License-Identifier: MIT
#include <OpenSG/OSGDepthTestChunk.h>

#include "LateRegistration.h"

namespace osg {

FieldContainerType DepthTestChunk::_type("DepthTestChunk", "DepthChunk", nullptr, &DepthTestChunk::createPrototype,
                                         nullptr, nullptr, 0);

OSG_FIELD_CONTAINER_DEF(DepthTestChunk, DepthTestChunkPtr)

DepthTestChunk::DepthTestChunk(const DepthTestChunk& source)
    : Inherited(source)
{}

DepthTestChunk::~DepthTestChunk() = default;

FieldContainerPtr DepthTestChunk::createPrototype()
{
    return createEmpty();
}

} // namespace osg

namespace {

const quon::extensions::LateRegistration lateRegistration;

} // namespace
