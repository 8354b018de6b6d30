// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <new>

// With the address sanitizer nothing is pooled, so that it sees the use of what was given back.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OSG_PLAIN_MEMORY
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define OSG_PLAIN_MEMORY
#endif

namespace osg {

struct FreePiece {
    FreePiece* next;
};

/// Hands out pieces of one size, of slabs that are never given back. For one thread.
struct Pool {
    static constexpr std::size_t CacheLine = 64;
    static constexpr std::size_t SlabBytes = std::size_t(64) * 1024;

    /// @param size of a piece, a multiple of 16 and the same in each call; a multiple of CacheLine gives whole lines
    void* take(const std::size_t size)
    {
        if (free != nullptr) {
            FreePiece* const piece = free;
            free = piece->next;
            return piece;
        }
        if (static_cast<std::size_t>(end - next) < size) {
            next = static_cast<char*>(::operator new(SlabBytes, std::align_val_t(CacheLine)));
            end = next + SlabBytes;
        }
        void* const piece = next;
        next += size;
        return piece;
    }
    void giveBack(void* memory) { free = new (memory) FreePiece{free}; }

    FreePiece* free;
    char* next;
    char* end;
};

} // namespace osg
