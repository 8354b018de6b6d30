// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>

namespace osg {

/// Masks that mean the same for every container type.
struct FieldBits {
    static constexpr BitVector NoField = 0;
    static constexpr BitVector AllFields = ~BitVector(0);
};

/// Who caused a change; handed through to FieldContainer::changed().
struct ChangedOrigin {
    static constexpr UInt32 Abstract = 0x0001;
    static constexpr UInt32 Sync = 0x0010;
    static constexpr UInt32 External = 0x0020;
};

} // namespace osg
