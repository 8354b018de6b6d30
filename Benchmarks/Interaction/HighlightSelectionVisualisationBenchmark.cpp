// SPDX-License-Identifier: MIT
#include "Support/Measure.h"
#include "Support/PartScene.h"

#include <Interaction/HighlightSelectionVisualisation.h>

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace quon::benchmarks {

namespace {

using testing::NodeRef;

constexpr int fewest = 1000;
constexpr int most = 1000000;

// Each node below the one before.
NodeRef makeDeepTree(const std::size_t count)
{
    NodeRef root = testing::makeNode(osg::Group::create());
    osg::NodePtr last = root.get();
    for (std::size_t i = 1; i < count; ++i) {
        last = testing::addChild(last, osg::Group::create());
    }
    return root;
}

// All nodes below one.
NodeRef makeWideTree(const std::size_t count)
{
    NodeRef root = testing::makeNode(osg::Group::create());
    for (std::size_t i = 1; i < count; ++i) {
        testing::addChild(root, osg::Group::create());
    }
    return root;
}

// A machine: assemblies of parts that share their shapes.
NodeRef makeMixedTree(const std::size_t count)
{
    // The parts alone make about as many nodes as are wanted.
    const PartScene scene(count);
    return NodeRef(scene.getRoot());
}

std::size_t countNodes(const osg::NodePtr& root)
{
    std::vector<osg::NodePtr> pending{root};
    std::size_t count = 0;
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        ++count;
        for (osg::UInt32 i = 0; i < node->getNChildren(); ++i) {
            pending.push_back(node->getChild(i));
        }
    }
    return count;
}

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
            ->Complexity()
            ->Unit(benchmark::kMicrosecond);
    };
    add("HighlightSelectionVisualisation/cloneSelectionTree/deep", makeDeepTree);
    add("HighlightSelectionVisualisation/cloneSelectionTree/wide", makeWideTree);
    add("HighlightSelectionVisualisation/cloneSelectionTree/mixed", makeMixedTree);
    return true;
}();

} // namespace

} // namespace quon::benchmarks
