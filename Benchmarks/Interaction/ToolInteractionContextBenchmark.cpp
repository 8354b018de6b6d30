// SPDX-License-Identifier: MIT
#include "Support/Measure.h"

#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/ToolInteractionContext.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

namespace quon::benchmarks {

namespace {

using interaction::InteractionEvent;
using interaction::InteractionManager;
using interaction::ToolInteractionContext;

class CountingTool final : public interaction::AbstractInteractionTool {
public:
    std::size_t calls = 0;
    std::size_t modes = 0;

    bool setToolMode(ToolInteractionContext* /*context*/, const std::string& /*mode*/) override
    {
        ++modes;
        return true;
    }

    bool triggerTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/) override
    {
        ++calls;
        return true;
    }

    bool stopHoverTool(ToolInteractionContext* /*context*/, const std::string& /*hint*/) override
    {
        ++calls;
        return true;
    }
};

// A manager with one context and its tool.
struct Driven {
    Driven()
    {
        context.setTool(&tool);
        manager.addContext(&context);
    }

    ~Driven() { manager.removeContext(&context); }

    InteractionManager manager;
    CountingTool tool;
    ToolInteractionContext context{ToolInteractionContext::Tool};
};

// The verb that is compared first and the one that is compared last.
void toolEvent(benchmark::State& state, const std::string& verb)
{
    Driven driven;
    const InteractionEvent event("tool:select", verb);
    bool isConsumed = true;
    const auto work = [&] { isConsumed &= driven.manager.triggerEvent(event); };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isConsumed && driven.tool.calls == static_cast<std::size_t>(state.iterations()) + 1,
          "not every event reached the tool");
}

void foreignEvent(benchmark::State& state)
{
    Driven driven;
    const InteractionEvent event("navigate:orbit", "process");
    bool isConsumed = false;
    const auto work = [&] { isConsumed |= driven.manager.triggerEvent(event); };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, !isConsumed && driven.tool.calls == 0, "an event of another category was consumed");
}

void mode(benchmark::State& state)
{
    Driven driven;
    const InteractionEvent start("mode:measure", "start");
    const InteractionEvent stop("mode:measure", "stop");
    bool isConsumed = true;
    const auto work = [&] {
        isConsumed &= driven.manager.triggerEvent(start);
        isConsumed &= driven.manager.triggerEvent(stop);
    };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isConsumed && driven.tool.modes == 2 * (static_cast<std::size_t>(state.iterations()) + 1),
          "not every mode reached the tool");
}

BENCHMARK_CAPTURE(toolEvent, trigger, "trigger")->Name("ToolInteractionContext/triggerEvent/trigger");
BENCHMARK_CAPTURE(toolEvent, stopHover, "stopHover")->Name("ToolInteractionContext/triggerEvent/stopHover");
BENCHMARK(foreignEvent)->Name("ToolInteractionContext/triggerEvent/otherCategory");
BENCHMARK(mode)->Name("MultimodeInteractionContext/triggerEvent/start+stop");

} // namespace

} // namespace quon::benchmarks
