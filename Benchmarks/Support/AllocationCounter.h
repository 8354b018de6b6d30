// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace quon::benchmarks {

/** What a piece of work asked of the memory. */
struct AllocationCount {
    std::size_t allocations; ///< calls of operator new in all its forms, the scene graph's requests for slabs included
    std::size_t slabBytes;   ///< asked for with an alignment: what the scene graph's pools take
    std::ptrdiff_t
        heldBytes; ///< held more than before, as the allocator rounds it and with its own word for each piece
};

/**
 * Counts what the calling thread asks of the memory as long as the object lives.
 *
 * The program's operator new and operator delete are replaced; they count nothing while there is no such object, so
 * that the work is timed with next to nothing beside it. One object at a time (not checked).
 */
class AllocationCounter {
public:
    /** Starts counting from zero. */
    AllocationCounter();

    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;

    /** Ends counting. */
    ~AllocationCounter();

    /** Returns what was counted so far. */
    AllocationCount get() const;
};

} // namespace quon::benchmarks
