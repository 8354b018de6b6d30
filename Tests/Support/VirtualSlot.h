// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>

namespace quon::testing {

/** What virtualSlot() answers for an operation that is not virtual. */
constexpr std::ptrdiff_t notVirtual = -1;

/**
 * Returns the place of a virtual operation in its class's table, counted from 0.
 *
 * Reads the representation of member pointers in the Itanium C++ ABI; a virtual destructor would take two places.
 */
template <typename Member>
std::ptrdiff_t virtualSlot(Member member)
{
    struct Representation {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    };
    static_assert(sizeof(Member) == sizeof(Representation), "not a pointer to a member function of the Itanium ABI");
    Representation representation;
    std::memcpy(&representation, &member, sizeof representation);
#if defined(__arm__) || defined(__aarch64__)
    // Addresses of functions may be odd there, so that the mark of a virtual one sits in the adjustment.
    const bool isVirtual = (representation.adjustment & 1) != 0;
    const std::ptrdiff_t offset = representation.pointer;
#else
    const bool isVirtual = (representation.pointer & 1) != 0;
    const std::ptrdiff_t offset = representation.pointer - 1;
#endif
    return isVirtual ? offset / static_cast<std::ptrdiff_t>(sizeof(void*)) : notVirtual;
}

} // namespace quon::testing
