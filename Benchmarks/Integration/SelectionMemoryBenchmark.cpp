// SPDX-License-Identifier: MIT
#include "Support/AllocationCounter.h"
#include "Support/Measure.h"
#include "Support/PartScene.h"
#include "Support/ShownSelection.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <fstream>
#include <string>

#include <unistd.h>

namespace quon::benchmarks {

namespace {

// Pages of this process that are in memory, in bytes.
double getResidentBytes()
{
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// The pools give out again what they got back, which asks for no memory: only the first one of a process counts.
bool isFirstOfProcess()
{
    static bool isFirst = true;
    const bool result = isFirst;
    isFirst = false;
    return result;
}

void selectedNode(benchmark::State& state, const Shown shown)
{
    if (!isFirstOfProcess()) {
        state.SkipWithError("needs a process of its own, which scripts/bench.sh gives it");
        return;
    }
    const auto count = static_cast<std::size_t>(state.range());
    const auto nodes = static_cast<double>(count);
    PartScene& scene = PartScene::get(count);
    // What the list of changes needs is given back to nobody and no part of the selection.
    osg::Thread::getCurrentChangeList()->setReadOnly(true);
    ShownSelection selection(shown, scene.getRoot());

    for (auto _ : state) {
        const double residentBefore = getResidentBytes();
        AllocationCounter counter;
        selection.getModel().setSelection(scene.getParts());
        const AllocationCount selected = counter.get();
        state.counters["allocations"] = static_cast<double>(selected.allocations) / nodes;
        state.counters["bytes"] = static_cast<double>(selected.heldBytes) / nodes;
        state.counters["bytes_in_pools"] = static_cast<double>(selected.slabBytes) / nodes;
        state.counters["resident_bytes"] = (getResidentBytes() - residentBefore) / nodes;
        check(state, selection.shows(count), "not everything is selected and shown");

        selection.getModel().clearSelection();
        state.counters["bytes_after_clear"] = static_cast<double>(counter.get().heldBytes) / nodes;
    }

    osg::Thread::getCurrentChangeList()->setReadOnly(false);
    check(state, selection.shows(0), "something is still selected or shown");
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const Shown shown : allShown) {
        benchmark::RegisterBenchmark(("Memory/selectedNode/" + getName(shown)).c_str(), selectedNode, shown)
            ->Arg(100000)
            ->Iterations(1)
            ->Unit(benchmark::kMicrosecond);
    }
    return true;
}();

} // namespace

} // namespace quon::benchmarks
