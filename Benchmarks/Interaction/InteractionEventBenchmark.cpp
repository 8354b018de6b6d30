// SPDX-License-Identifier: MIT
#include "Support/Measure.h"

#include <Interaction/InteractionEvent.h>

#include <benchmark/benchmark.h>

#include <string>

namespace quon::benchmarks {

namespace {

using interaction::InteractionEvent;

void construct(benchmark::State& state, const std::string& category, const std::string& tool, const std::string& hint)
{
    const std::string verb = "start";
    bool isSplit = true;
    const auto work = [&] {
        const InteractionEvent event(category, verb);
        // Looked at, or nobody would have to build it.
        isSplit &= event.getTool().size() == tool.size() && event.getHint().size() == hint.size();
    };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    const InteractionEvent event(category, verb);
    check(state, isSplit && event.getTool() == tool && event.getHint() == hint, "the category was split wrongly");
}

void copy(benchmark::State& state, const std::string& category)
{
    const InteractionEvent event(category, "start");
    bool isEqual = true;
    const auto work = [&] {
        const InteractionEvent other = event;
        isEqual &= other.getHint().size() == event.getHint().size();
    };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    const InteractionEvent other = event;
    check(state, isEqual && other.getCategory() == category, "the copy is another event");
}

// Names up to 15 bytes need no memory of their own.
BENCHMARK_CAPTURE(construct, short, "tool:select", "tool", "select")->Name("InteractionEvent/construct/short");
BENCHMARK_CAPTURE(construct, withoutHint, "navigate", "navigate", "")->Name("InteractionEvent/construct/withoutHint");
BENCHMARK_CAPTURE(construct, long, "annotation-tool:measure-distance-along-surface", "annotation-tool",
                  "measure-distance-along-surface")
    ->Name("InteractionEvent/construct/long");
BENCHMARK_CAPTURE(copy, short, "tool:select")->Name("InteractionEvent/copy/short");

} // namespace

} // namespace quon::benchmarks
