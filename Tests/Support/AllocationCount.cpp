// SPDX-License-Identifier: MIT
#include "Support/AllocationCount.h"
#include "Support/AllocationFailure.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocationCount{0};
std::atomic<std::size_t> liveAllocationCount{0};

// How many more allocations succeed, one included that fails; zero: all.
std::atomic<std::size_t> untilFailure{0};

bool fails() noexcept
{
    return untilFailure.load() != 0 && --untilFailure == 0;
}

void* counted(void* memory) noexcept
{
    if (memory != nullptr) {
        ++liveAllocationCount;
    }
    return memory;
}

void* allocate(std::size_t size) noexcept
{
    ++allocationCount;
    return fails() ? nullptr : counted(std::malloc(size == 0 ? 1 : size));
}

// Slabs of pools are no allocations of whoever asks the pool.
void* allocateAligned(std::size_t size, std::size_t alignment) noexcept
{
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    return fails() ? nullptr : counted(std::aligned_alloc(alignment, whole));
}

void* orThrow(void* memory)
{
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void giveBack(void* memory) noexcept
{
    if (memory != nullptr) {
        --liveAllocationCount;
    }
    std::free(memory);
}

} // namespace

namespace quon::testing {

std::size_t getAllocationCount()
{
    return allocationCount;
}

std::size_t getLiveAllocationCount()
{
    return liveAllocationCount;
}

AllocationFailure::AllocationFailure(std::size_t number)
{
    untilFailure = number;
}

AllocationFailure::~AllocationFailure()
{
    untilFailure = 0;
}

bool AllocationFailure::hasHappened() const
{
    return untilFailure == 0;
}

} // namespace quon::testing

// All forms: a sanitizer's own ones must not meet these in one allocation.
void* operator new(std::size_t size)
{
    return orThrow(allocate(size));
}

void* operator new[](std::size_t size)
{
    return orThrow(allocate(size));
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size);
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocateAligned(size, static_cast<std::size_t>(alignment)));
}

void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocateAligned(size, static_cast<std::size_t>(alignment)));
}

void operator delete(void* memory) noexcept
{
    giveBack(memory);
}

void operator delete[](void* memory) noexcept
{
    giveBack(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    giveBack(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept
{
    giveBack(memory);
}

void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept
{
    giveBack(memory);
}

void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept
{
    giveBack(memory);
}

void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    giveBack(memory);
}

void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    giveBack(memory);
}
