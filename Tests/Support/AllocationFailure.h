// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace quon::testing {

/**
 * Lets one allocation fail while it lives, wherever in the process: operator new throws std::bad_alloc or returns null.
 *
 * One at a time. Programs that use this class have their operator new replaced, as by getAllocationCount(). The memory
 * of QString and the like does not come from there.
 */
class AllocationFailure {
public:
    /** @param number of the allocation that fails, counted from 1 */
    explicit AllocationFailure(std::size_t number);
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;
    ~AllocationFailure();

    /** Returns whether there were as many allocations, so that one failed. */
    bool hasHappened() const;
};

/** Returns how many pieces of memory from operator new the process holds. */
std::size_t getLiveAllocationCount();

} // namespace quon::testing
