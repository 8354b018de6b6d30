// SPDX-License-Identifier: MIT
//
// Memory that takes the same instructions each time, and whose aligned pieces ascend. The C library puts work off until
// somebody asks for a large piece, which would have others pay for what is counted. Selected nodes are compared by
// their addresses: where the pools of the scene lie decides the shape of the tree.
#include <array>
#include <cstddef>
#include <cstdlib>
#include <new>

#include <sys/mman.h>

namespace {

constexpr std::size_t granularity = 16;
constexpr std::size_t largestKept = 1024;

// In front of each piece; what is handed out has the alignment of everything.
struct alignas(granularity) Header {
    std::size_t sizeClass; // in steps of the granularity, 0: too large to be kept
    Header* next;          // of those that are kept
};

constexpr std::size_t slabBytes = 1024 * 1024;
constexpr std::size_t alignedBytes = std::size_t(1) << 34; // reserved, not used

std::array<Header*, largestKept / granularity + 1> kept{};
char* slab = nullptr;
std::size_t slabRest = 0;

void* fromSystem(const std::size_t size)
{
    void* memory = std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* fromSlab(const std::size_t size)
{
    if (slabRest < size) {
        // The rest of the one before is lost.
        slab = static_cast<char*>(fromSystem(slabBytes));
        slabRest = slabBytes;
    }
    void* memory = slab;
    slab += size;
    slabRest -= size;
    return memory;
}

// Pools keep what they get, so that nothing comes back.
void* fromAligned(const std::size_t size, const std::size_t alignment)
{
    static char* const begin = static_cast<char*>(
        mmap(nullptr, alignedBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    static std::size_t used = 0;
    const std::size_t start = (used + alignment - 1) / alignment * alignment;
    if (begin == MAP_FAILED || start + size > alignedBytes) {
        throw std::bad_alloc();
    }
    used = start + size;
    return begin + start;
}

void* allocate(const std::size_t size)
{
    if (size > largestKept) {
        return new (fromSystem(sizeof(Header) + size)) Header{0, nullptr} + 1;
    }
    const std::size_t sizeClass = size == 0 ? 1 : (size + granularity - 1) / granularity;
    Header* header = kept[sizeClass];
    if (header == nullptr) {
        return new (fromSlab(sizeof(Header) + sizeClass * granularity)) Header{sizeClass, nullptr} + 1;
    }
    kept[sizeClass] = header->next;
    return header + 1;
}

void release(void* memory) noexcept
{
    if (memory == nullptr) {
        return;
    }
    Header* header = static_cast<Header*>(memory) - 1;
    if (header->sizeClass == 0) {
        std::free(header);
        return;
    }
    header->next = kept[header->sizeClass];
    kept[header->sizeClass] = header;
}

} // namespace

// The forms that the standard library leads all others to.
void* operator new(const std::size_t size)
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    release(memory);
}

void* operator new(const std::size_t size, const std::align_val_t alignment)
{
    return fromAligned(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* /*memory*/, std::align_val_t /*alignment*/) noexcept {}

void operator delete(void* /*memory*/, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {}
