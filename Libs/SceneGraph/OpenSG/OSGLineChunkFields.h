// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGStateChunkFields.h>

namespace osg {

class LineChunk;

typedef FCPtr<StateChunkPtr, LineChunk> LineChunkPtr;
typedef RefPtr<LineChunkPtr> LineChunkRefPtr;

template <>
struct FieldDataTraits<LineChunkPtr> {
    static const Char8* getName() { return "LineChunkPtr"; }
};

typedef SField<LineChunkPtr> SFLineChunkPtr;
typedef MField<LineChunkPtr> MFLineChunkPtr;

} // namespace osg
