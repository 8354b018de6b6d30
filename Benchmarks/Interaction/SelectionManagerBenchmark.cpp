// SPDX-License-Identifier: MIT
#include "Support/Measure.h"

#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

namespace quon::benchmarks {

namespace {

using interaction::NodeSelectionModel;
using interaction::SelectionManager;

std::string nameOf(const std::size_t number)
{
    return "selection " + std::to_string(number);
}

// A manager with as many models as wanted; the name is that of the last one.
struct Managed {
    explicit Managed(const benchmark::State& state)
    {
        for (std::size_t i = 0; i < static_cast<std::size_t>(state.range()); ++i) {
            lastName = nameOf(i);
            last = manager.createSelectionModel(lastName);
        }
    }

    SelectionManager manager;
    std::string lastName;
    NodeSelectionModel* last = nullptr;
};

void get(benchmark::State& state)
{
    Managed managed(state);
    bool isFound = true;
    const auto work = [&] { isFound &= managed.manager.getSelectionModel(managed.lastName) == managed.last; };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isFound, "a model is not found by its name");
}

void createExisting(benchmark::State& state)
{
    Managed managed(state);
    bool isFound = true;
    const auto work = [&] { isFound &= managed.manager.createSelectionModel(managed.lastName) == managed.last; };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isFound, "a model that is there was made a second time");
}

void createAndRemove(benchmark::State& state)
{
    Managed managed(state);
    const std::string name = "another";
    const auto work = [&] { managed.manager.removeSelectionModel(managed.manager.createSelectionModel(name)); };

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state,
          managed.manager.getSelectionModel(name) == nullptr &&
              managed.manager.getSelectionModel(managed.lastName) == managed.last,
          "a model that was removed is still there, or another one went");
}

[[maybe_unused]] const bool isRegistered = [] {
    const auto add = [](const char* name, void (*function)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, function)->RangeMultiplier(10)->Range(1, 1000);
    };
    add("SelectionManager/getSelectionModel", get);
    add("SelectionManager/createSelectionModel/existing", createExisting);
    add("SelectionManager/createSelectionModel+removeSelectionModel", createAndRemove);
    return true;
}();

} // namespace

} // namespace quon::benchmarks
