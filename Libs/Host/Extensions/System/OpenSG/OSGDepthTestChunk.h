// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg {

class DepthTestChunk;

typedef FCPtr<DepthChunkPtr, DepthTestChunk> DepthTestChunkPtr;
typedef RefPtr<DepthTestChunkPtr> DepthTestChunkRefPtr;

/// The host's depth test: a type of its own that takes the same slot as DepthChunk.
class DepthTestChunk : public DepthChunk {
public:
    typedef DepthChunk Inherited;
    typedef DepthTestChunkPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(DepthTestChunkPtr)

protected:
    DepthTestChunk() = default;
    DepthTestChunk(const DepthTestChunk& source);
    ~DepthTestChunk() override;

private:
    friend class FieldContainer;

    static FieldContainerType _type;

    static FieldContainerPtr createPrototype();
};

OSG_FIELD_CONTAINER_INL_DEF(DepthTestChunk, DepthTestChunkPtr)

} // namespace osg
