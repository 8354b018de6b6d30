// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGAttachmentFields.h>

namespace osg {

class StateChunk;

typedef FCPtr<AttachmentPtr, StateChunk> StateChunkPtr;
typedef RefPtr<StateChunkPtr> StateChunkRefPtr;

template <>
struct FieldDataTraits<StateChunkPtr> {
    static const Char8* getName() { return "StateChunkPtr"; }
};

typedef SField<StateChunkPtr> SFStateChunkPtr;
typedef MField<StateChunkPtr> MFStateChunkPtr;

} // namespace osg
