// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGDepthTestChunkFields.h>

namespace osg {

/// The host's depth test: a type of its own that takes the same slot as DepthChunk.
class OSG_SYSTEM_DLLMAPPING DepthTestChunk : public DepthChunk {
public:
    typedef DepthChunk Inherited;
    typedef DepthTestChunkPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(DepthTestChunkPtr)

protected:
    DepthTestChunk() = default;
    DepthTestChunk(const DepthTestChunk& source)
        : Inherited(source)
    {}
    ~DepthTestChunk() override;

    static FieldContainerType _type;
};

} // namespace osg
