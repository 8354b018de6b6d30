// SPDX-License-Identifier: MIT
#include <OpenSG/OSGFieldMemory.h>

#include "OSGPool.h"

#include <atomic>
#include <new>
#include <thread>

namespace osg {

#if defined(OSG_PLAIN_MEMORY)

void* FieldMemory::take(const std::size_t size, bool& isPooled)
{
    isPooled = false;
    return ::operator new(size);
}

void FieldMemory::giveBack(void* memory, std::size_t, bool) noexcept
{
    ::operator delete(memory);
}

void FieldMemory::startPools() {}

#else

namespace {

constexpr std::size_t granularity = 16;
constexpr std::size_t largestPooled = 256;

// No thread before osgInit().
std::atomic<std::thread::id> owner;

// Zero before any constructor runs and never destroyed, as containers live longer than statics.
Pool pools[largestPooled / granularity + 1];

// What other threads gave back, for the owner to fetch when it runs out.
std::atomic<FreePiece*> returned[largestPooled / granularity + 1];

constexpr std::size_t roundUp(const std::size_t size)
{
    return (size + granularity - 1) / granularity * granularity;
}

bool isOwner()
{
    return owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

} // namespace

void* FieldMemory::take(const std::size_t size, bool& isPooled)
{
    const std::size_t rounded = roundUp(size);
    isPooled = rounded <= largestPooled && isOwner();
    if (!isPooled) {
        return ::operator new(size);
    }
    const std::size_t index = rounded / granularity;
    Pool& pool = pools[index];
    if (pool.free == nullptr && returned[index].load(std::memory_order_relaxed) != nullptr) {
        pool.free = returned[index].exchange(nullptr, std::memory_order_acquire);
    }
    return pool.take(rounded);
}

void FieldMemory::giveBack(void* memory, const std::size_t size, const bool isPooled) noexcept
{
    if (!isPooled) {
        ::operator delete(memory);
        return;
    }
    const std::size_t index = roundUp(size) / granularity;
    if (isOwner()) {
        pools[index].giveBack(memory);
        return;
    }
    FreePiece* const piece = new (memory) FreePiece{returned[index].load(std::memory_order_relaxed)};
    while (!returned[index].compare_exchange_weak(piece->next, piece, std::memory_order_release,
                                                  std::memory_order_relaxed)) {
    }
}

void FieldMemory::startPools()
{
    std::thread::id nobody;
    owner.compare_exchange_strong(nobody, std::this_thread::get_id());
}

#endif

} // namespace osg
