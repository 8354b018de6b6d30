// SPDX-License-Identifier: MIT
#include "Support/Measure.h"
#include "Support/Trees.h"

#include <Interaction/HighlightSelectionVisualisation.h>

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <benchmark/benchmark.h>

#include <cstddef>

namespace quon::benchmarks {

namespace {

using testing::NodeRef;

constexpr int fewest = 1000;
constexpr int most = 1000000;

void clone(benchmark::State& state, NodeRef (*makeTree)(std::size_t count))
{
    const NodeRef tree = makeTree(static_cast<std::size_t>(state.range()));
    const std::size_t count = countNodes(tree);
    NodeRef copy;

    measureNodes(
        state, count, [&] { copy = osg::NullFC; }, [&] { copy = NodeRef(interaction::cloneSelectionTree(tree)); });

    check(state, countNodes(copy) == count, "the copy has not as many nodes");
    copy = osg::NullFC;
    forgetChanges();
}

[[maybe_unused]] const bool isRegistered = [] {
    const auto add = [](const char* name, NodeRef (*makeTree)(std::size_t count)) {
        benchmark::RegisterBenchmark(name, clone, makeTree)
            ->RangeMultiplier(10)
            ->Range(fewest, most)
            ->Unit(benchmark::kMicrosecond);
    };
    add("HighlightSelectionVisualisation/cloneSelectionTree/deep", makeDeepTree);
    add("HighlightSelectionVisualisation/cloneSelectionTree/wide", makeWideTree);
    add("HighlightSelectionVisualisation/cloneSelectionTree/mixed", makeMixedTree);
    return true;
}();

} // namespace

} // namespace quon::benchmarks
