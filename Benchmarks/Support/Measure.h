// SPDX-License-Identifier: MIT
#pragma once

#include "Support/AllocationCounter.h"
#include "Support/Changes.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>

namespace quon::benchmarks {

/** Marks the run as failed when its result is wrong; to be called after the timed part. */
inline void check(benchmark::State& state, const bool isRight, const char* what)
{
    if (!isRight) {
        state.SkipWithError(what);
    }
}

/** Adds the counter "allocations": those of one more call of @p work, which must be as good as any (not checked). */
template <class Work>
void countAllocations(benchmark::State& state, const Work& work)
{
    AllocationCounter counter;
    work();
    state.counters["allocations"] = static_cast<double>(counter.get().allocations);
}

// More nodes take no other allocations, only longer.
constexpr std::size_t mostCounted = 200000;

/**
 * Times @p work, which handles @p count nodes, and only that: @p prepare runs before each time with the clock stopped.
 *
 * The first time counts as well, with memory that the process never had. Adds the counter "per_node", in seconds, and
 * from a further run that is not timed "allocations", for each node.
 */
template <class Prepare, class Work>
void measureNodesCold(benchmark::State& state, const std::size_t count, const Prepare& prepare, const Work& work)
{
    for (auto _ : state) {
        state.PauseTiming();
        prepare();
        forgetChanges();
        state.ResumeTiming();
        work();
    }
    const auto nodes = static_cast<double>(count);
    state.counters["per_node"] =
        benchmark::Counter(nodes, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);

    if (count <= mostCounted) {
        prepare();
        forgetChanges();
        AllocationCounter counter;
        work();
        state.counters["allocations"] = static_cast<double>(counter.get().allocations) / nodes;
    }
}

/** Does the same with memory that the process has already: a run before the others is not timed. */
template <class Prepare, class Work>
void measureNodes(benchmark::State& state, const std::size_t count, const Prepare& prepare, const Work& work)
{
    // Where more are wanted, one was enough to find that out.
    if (state.max_iterations == 1) {
        prepare();
        work();
    }
    measureNodesCold(state, count, prepare, work);
}

/**
 * Times @p work, which takes well under a microsecond and must be undone by @p undo before it can be done again.
 *
 * Stopping the benchmark's own clock takes longer than the work. This one costs about as much as two small function
 * calls, which are part of the result. Needs UseManualTime().
 */
template <class Work, class Undo>
void measureBetween(benchmark::State& state, const Work& work, const Undo& undo)
{
    using Clock = std::chrono::steady_clock;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        work();
        const Clock::time_point end = Clock::now();
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
        undo();
    }
    countAllocations(state, work);
    undo();
}

} // namespace quon::benchmarks
