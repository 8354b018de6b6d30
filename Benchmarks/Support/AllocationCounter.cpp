// SPDX-License-Identifier: MIT
#include "Support/AllocationCounter.h"

#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

thread_local bool isCounting = false;
thread_local quon::benchmarks::AllocationCount count{};

std::ptrdiff_t getHeldBytes(void* memory) noexcept
{
    return static_cast<std::ptrdiff_t>(malloc_usable_size(memory) + sizeof(std::size_t));
}

void* note(void* memory, const std::size_t size, const bool isSlab) noexcept
{
    if (isCounting && memory != nullptr) {
        ++count.allocations;
        count.slabBytes += isSlab ? size : 0U;
        count.heldBytes += getHeldBytes(memory);
    }
    return memory;
}

void* allocate(const std::size_t size) noexcept
{
    return note(std::malloc(size == 0 ? 1 : size), size, false);
}

void* allocate(const std::size_t size, const std::align_val_t alignment) noexcept
{
    void* memory = nullptr;
    if (posix_memalign(&memory, static_cast<std::size_t>(alignment), size) != 0) {
        return nullptr;
    }
    return note(memory, size, true);
}

void* orThrow(void* memory)
{
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void release(void* memory) noexcept
{
    if (isCounting && memory != nullptr) {
        count.heldBytes -= getHeldBytes(memory);
    }
    std::free(memory);
}

} // namespace

namespace quon::benchmarks {

AllocationCounter::AllocationCounter()
{
    count = AllocationCount{};
    isCounting = true;
}

AllocationCounter::~AllocationCounter()
{
    isCounting = false;
}

AllocationCount AllocationCounter::get() const
{
    return count;
}

} // namespace quon::benchmarks

void* operator new(const std::size_t size)
{
    return orThrow(allocate(size));
}

void* operator new[](const std::size_t size)
{
    return orThrow(allocate(size));
}

void* operator new(const std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size);
}

void* operator new[](const std::size_t size, const std::nothrow_t& /*tag*/) noexcept
{
    return allocate(size);
}

void* operator new(const std::size_t size, const std::align_val_t alignment)
{
    return orThrow(allocate(size, alignment));
}

void* operator new[](const std::size_t size, const std::align_val_t alignment)
{
    return orThrow(allocate(size, alignment));
}

void operator delete(void* memory) noexcept
{
    release(memory);
}

void operator delete[](void* memory) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    release(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept
{
    release(memory);
}

void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    release(memory);
}

void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept
{
    release(memory);
}
