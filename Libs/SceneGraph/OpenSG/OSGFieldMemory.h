// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>

#include <cstddef>

namespace osg {

/**
 * Memory for the values of fields. Not part of OpenSG's interface.
 *
 * A container has several fields of a few values each. In the thread that called osgInit() these come from pools, which
 * keeps what belongs to neighbouring containers side by side, and away from everything else that the program allocates.
 * In other threads, and where there are many values, they come from operator new. Any thread may give back what any
 * thread took.
 */
class OSG_SYSTEM_DLLMAPPING FieldMemory {
public:
    /// Returns @p size bytes, aligned for every type; @p isPooled says how to give them back.
    static void* take(std::size_t size, bool& isPooled);
    /// Takes back what take() returned for this @p size with @p isPooled. Null is ignored.
    static void giveBack(void* memory, std::size_t size, bool isPooled) noexcept;

    /// Makes this thread the one with the pools, unless there is one.
    static void startPools();
};

} // namespace osg
