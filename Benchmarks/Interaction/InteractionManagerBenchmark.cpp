// SPDX-License-Identifier: MIT
#include "Support/CountingContexts.h"
#include "Support/Measure.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <list>
#include <string>
#include <utility>

namespace quon::benchmarks {

namespace {

using interaction::InteractionEvent;
using interaction::InteractionManager;

// What no routing of events by such a stack can do without: an event made of four strings, a list, a virtual call for
// each context.
struct BareEvent {
    std::string category;
    std::string verb;
    std::string tool;
    std::string hint;
};

class BareContext {
public:
    virtual bool triggerEvent(const BareEvent& event) = 0;

    std::size_t events = 0;
};

class PassingContext final : public BareContext {
    bool triggerEvent(const BareEvent& /*event*/) override
    {
        ++events;
        return false;
    }
};

class ConsumingContext final : public BareContext {
    bool triggerEvent(const BareEvent& /*event*/) override
    {
        ++events;
        return true;
    }
};

// Apart from its caller, as the library is.
[[gnu::noinline]] bool dispatch(const std::list<BareContext*>& contexts, const BareEvent& event)
{
    for (BareContext* context : contexts) {
        if (context->triggerEvent(event)) {
            return true;
        }
    }
    return false;
}

void bareProgram(benchmark::State& state)
{
    std::list<PassingContext> passing(static_cast<std::size_t>(state.range()) - 1);
    ConsumingContext last;
    std::list<BareContext*> contexts;
    for (PassingContext& context : passing) {
        contexts.push_back(&context);
    }
    contexts.push_back(&last);
    const std::string category = "tool:select";
    const std::string verb = "start";
    const std::string tool = "tool";
    const std::string hint = "select";
    bool isConsumed = true;
    const auto work = [&] { isConsumed &= dispatch(contexts, BareEvent{category, verb, tool, hint}); };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isConsumed && last.events == static_cast<std::size_t>(state.iterations()) + 1,
          "not every event reached the last context");
}

// The event is there already; the last context consumes it.
void triggerEvent(benchmark::State& state)
{
    ContextStack stack(static_cast<std::size_t>(state.range()));
    const InteractionEvent event("tool:select", "start");
    bool isConsumed = true;

    for (auto _ : state) {
        isConsumed &= stack.getManager().triggerEvent(event);
    }

    countAllocations(state, [&] { isConsumed &= stack.getManager().triggerEvent(event); });
    const auto calls = static_cast<std::size_t>(state.iterations()) + 1;
    check(state, isConsumed && stack.getTop().events == calls && stack.getBottom().events == calls,
          "not every event reached the last context");
}

// The same with an event for each dispatch, as the mapper makes them.
void buildAndTriggerEvent(benchmark::State& state)
{
    ContextStack stack(static_cast<std::size_t>(state.range()));
    const std::string category = "tool:select";
    const std::string verb = "start";
    bool isConsumed = true;
    const auto work = [&] { isConsumed &= stack.getManager().triggerEvent(InteractionEvent(category, verb)); };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    const auto calls = static_cast<std::size_t>(state.iterations()) + 1;
    check(state, isConsumed && stack.getTop().events == calls && stack.getBottom().events == calls,
          "not every event reached the last context");
}

void pointerMoved(benchmark::State& state)
{
    ContextStack stack(static_cast<std::size_t>(state.range()));
    const osg::Pnt2f position(1, 2);

    for (auto _ : state) {
        stack.getManager().pointerMoved(position);
    }

    countAllocations(state, [&] { stack.getManager().pointerMoved(position); });
    const auto calls = static_cast<std::size_t>(state.iterations()) + 1;
    check(state, stack.getTop().movements == calls && stack.getBottom().movements == calls,
          "not every movement reached all contexts");
}

void cameraMoved(benchmark::State& state)
{
    ContextStack stack(static_cast<std::size_t>(state.range()));
    const osg::Matrix camera;

    for (auto _ : state) {
        stack.getManager().cameraMoved(camera);
    }

    countAllocations(state, [&] { stack.getManager().cameraMoved(camera); });
    const auto calls = static_cast<std::size_t>(state.iterations()) + 1;
    check(state, stack.getTop().movements == calls && stack.getBottom().movements == calls,
          "not every movement reached all contexts");
}

// Top and bottom take turns.
void raiseContext(benchmark::State& state)
{
    ContextStack stack(static_cast<std::size_t>(state.range()));
    CountingContext* next = &stack.getBottom();
    CountingContext* other = &stack.getTop();
    const auto work = [&] {
        stack.getManager().raiseContext(next);
        std::swap(next, other);
    };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    stack.getManager().raiseContext(&stack.getTop());
    stack.getManager().triggerEvent(InteractionEvent("tool:select", "start"));
    check(state, stack.getTop().events == 1, "a context that was raised is not on top");
}

void addAndRemoveContext(benchmark::State& state)
{
    ContextStack stack(static_cast<std::size_t>(state.range()));
    CountingContext context(true);
    const auto work = [&] {
        stack.getManager().addContext(&context);
        stack.getManager().removeContext(&context);
    };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    stack.getManager().triggerEvent(InteractionEvent("tool:select", "start"));
    check(state, context.events == 0 && stack.getTop().events == 1, "a context that was removed is still there");
}

[[maybe_unused]] const bool isRegistered = [] {
    const auto add = [](const char* name, void (*function)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, function)->RangeMultiplier(10)->Range(1, 100);
    };
    add("InteractionManager/triggerEvent", triggerEvent);
    add("InteractionManager/InteractionEvent+triggerEvent", buildAndTriggerEvent);
    add("InteractionManager/bareProgram", bareProgram);
    add("InteractionManager/pointerMoved", pointerMoved);
    add("InteractionManager/cameraMoved", cameraMoved);
    add("InteractionManager/raiseContext", raiseContext);
    add("InteractionManager/addContext+removeContext", addAndRemoveContext);
    return true;
}();

} // namespace

} // namespace quon::benchmarks
