// SPDX-License-Identifier: MIT
//
// What the machine can do, to judge the other figures by: walks over many nodes wait for memory, and so does whoever is
// the first to use it.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include <sys/mman.h>

namespace {

// More than any cache holds.
constexpr std::size_t bytes = std::size_t(128) << 20;
constexpr std::size_t lineBytes = 64;
constexpr std::size_t pageBytes = 4096;

struct alignas(lineBytes) Line {
    std::uint32_t next = 0;
};

// One access after the other, each where nobody could have expected it.
void randomAccess(benchmark::State& state)
{
    std::vector<std::uint32_t> order(bytes / lineBytes);
    std::iota(order.begin(), order.end(), 0U);
    std::shuffle(order.begin() + 1, order.end(), std::mt19937(1));
    std::vector<Line> lines(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        lines[order[i]].next = order[(i + 1) % order.size()];
    }
    std::uint32_t place = 0;
    for ([[maybe_unused]] auto _ : state) {
        place = lines[place].next;
    }
    benchmark::DoNotOptimize(place);
}
BENCHMARK(randomAccess)->Name("Machine/randomAccess");

// A page that the process has not used before.
void firstTouch(benchmark::State& state)
{
    char* memory = nullptr;
    std::size_t used = bytes;
    for ([[maybe_unused]] auto _ : state) {
        if (used == bytes) {
            state.PauseTiming();
            if (memory != nullptr) {
                munmap(memory, bytes);
            }
            void* const mapped = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
            if (mapped == MAP_FAILED) {
                state.SkipWithError("the system has no memory to spare");
                return;
            }
            memory = static_cast<char*>(mapped);
            used = 0;
            state.ResumeTiming();
        }
        memory[used] = 1;
        used += pageBytes;
    }
    munmap(memory, bytes);
}
BENCHMARK(firstTouch)->Name("Machine/firstTouch");

} // namespace
