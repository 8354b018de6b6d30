// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>

namespace quon::testing {

/**
 * Returns the place of a virtual operation in its class's table, counted from 0.
 *
 * Reads the representation of member pointers in the Itanium C++ ABI; a virtual destructor would take two places.
 */
template <typename Class, typename Function>
std::ptrdiff_t virtualSlot(Function Class::*operation)
{
    std::ptrdiff_t offset = 0;
    static_assert(sizeof operation == 2 * sizeof offset);
    std::memcpy(&offset, &operation, sizeof offset);
    // The lowest bit marks virtual operations on most processors; none is at an odd offset.
    return (offset & ~static_cast<std::ptrdiff_t>(1)) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

} // namespace quon::testing
