// SPDX-License-Identifier: MIT
#include "Support/Measure.h"
#include "Support/PartScene.h"
#include "Support/ShownSelection.h"

#include <Interaction/NodeSelectionModel.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quon::benchmarks {

namespace {

using interaction::NodeSelectionModel;
using Nodes = std::vector<osg::NodePtr>;

constexpr int fewest = 1000;
constexpr int most = 1000000;

// In which order the scene's parts are taken.
enum class Order { Forward, Backward, Shuffled };

Nodes inOrder(const PartScene& scene, const Order order)
{
    switch (order) {
    case Order::Forward:
        return scene.getParts();
    case Order::Backward:
        return scene.getPartsBackward();
    case Order::Shuffled:
        return scene.getPartsShuffled();
    }
    return {};
}

// Selects one node after the other, with one call for each.
void addOneByOne(NodeSelectionModel& model, const Nodes& nodes)
{
    for (const osg::NodePtr& node : nodes) {
        model.addNode(node);
    }
}

void addTogether(NodeSelectionModel& model, const Nodes& nodes)
{
    model.addNodes(nodes);
}

void replace(NodeSelectionModel& model, const Nodes& nodes)
{
    model.setSelection(nodes);
}

void removeOneByOne(NodeSelectionModel& model, const Nodes& nodes)
{
    for (const osg::NodePtr& node : nodes) {
        model.removeNode(node);
    }
}

void removeTogether(NodeSelectionModel& model, const Nodes& nodes)
{
    model.removeNodes(nodes);
}

void updateOneByOne(NodeSelectionModel& model, const Nodes& nodes)
{
    for (const osg::NodePtr& node : nodes) {
        model.updateNode(node);
    }
}

void updateTogether(NodeSelectionModel& model, const Nodes& /*nodes*/)
{
    model.updateVisualisations();
}

void clear(NodeSelectionModel& model, const Nodes& /*nodes*/)
{
    model.clearSelection();
}

using Operation = void (*)(NodeSelectionModel& model, const Nodes& nodes);

// Visualisations that never showed anything: everything that they show has to be made.
void selectForTheFirstTime(benchmark::State& state, const Shown shown, const Order order, const Operation select)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    const Nodes nodes = inOrder(scene, order);
    std::optional<ShownSelection> selection;

    measureNodes(
        state, count, [&] { selection.emplace(shown, scene.getRoot()); },
        [&] { select(selection->getModel(), nodes); });

    check(state, selection->shows(count), "not everything is selected and shown");
}

// The same as the first thing that a process does, when the system has to find the memory.
void selectFirstOfProcess(benchmark::State& state, const Shown shown)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    std::optional<ShownSelection> selection;

    measureNodesCold(
        state, count, [&] { selection.emplace(shown, scene.getRoot()); },
        [&] { selection->getModel().setSelection(scene.getParts()); });

    check(state, selection->shows(count), "not everything is selected and shown");
}

// As many nodes were selected before, so that boxes are there to be used again.
void selectAgain(benchmark::State& state, const Shown shown)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    ShownSelection selection(shown, scene.getRoot());
    selection.getModel().setSelection(scene.getParts());

    measureNodes(
        state, count, [&] { selection.getModel().clearSelection(); },
        [&] { selection.getModel().setSelection(scene.getParts()); });

    check(state, selection.shows(count), "not everything is selected and shown");
}

void deselect(benchmark::State& state, const Shown shown, const Order order, const Operation deselect)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    const Nodes nodes = inOrder(scene, order);
    ShownSelection selection(shown, scene.getRoot());

    measureNodes(
        state, count, [&] { selection.getModel().setSelection(scene.getParts()); },
        [&] { deselect(selection.getModel(), nodes); });

    check(state, selection.shows(0), "something is still selected or shown");
}

// What no library can do without: the set that hosts read, in handle order, and a table of what is shown for each node.
// Looked up as a selection does and taken out, with nothing else done.
void deselectInBareContainers(benchmark::State& state, const Order order)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    const Nodes nodes = inOrder(scene, order);
    std::set<osg::NodePtr> selection;
    std::map<osg::UInt32, osg::NodePtr> shown;

    measureNodes(
        state, count,
        [&] {
            for (const osg::NodePtr& node : scene.getParts()) {
                selection.insert(node);
                shown.emplace_hint(shown.end(), osg::getContainerId(node), node);
            }
        },
        [&] {
            for (const osg::NodePtr& node : nodes) {
                shown.erase(shown.find(osg::getContainerId(node)));
                selection.erase(selection.find(node));
            }
        });

    check(state, selection.empty() && shown.empty(), "something is left");
}

void refresh(benchmark::State& state, const Shown shown, const bool isMoved, const Operation update)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    ShownSelection selection(shown, scene.getRoot());
    selection.getModel().setSelection(scene.getParts());

    measureNodes(
        state, count,
        [&] {
            if (isMoved) {
                scene.moveAssemblies();
            }
        },
        [&] { update(selection.getModel(), scene.getParts()); });

    check(state, selection.shows(count), "not everything is selected and shown");
}

// One node more and one less, beside others that stay.
void toggle(benchmark::State& state, const Shown shown)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    ShownSelection selection(shown, scene.getRoot());
    selection.getModel().setSelection(scene.getParts());
    const Nodes nodes = scene.getPartsShuffled();
    std::size_t next = 0;
    const auto work = [&] {
        const osg::NodePtr& node = nodes[next];
        next = next + 1 == nodes.size() ? 0 : next + 1;
        selection.getModel().removeNode(node);
        selection.getModel().addNode(node);
    };

    for (auto _ : state) {
        work();
        // The list of changes has to be emptied now and then, which is cheap beside all that was recorded.
        if (next % 1024 == 0) {
            forgetChanges();
        }
    }

    countAllocations(state, work);
    check(state, selection.shows(count), "not everything is selected and shown");
}

// Clicks on one part after the other.
void replaceByOne(benchmark::State& state, const Shown shown)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    ShownSelection selection(shown, scene.getRoot());
    std::size_t next = 0;
    const auto work = [&] {
        selection.getModel().setSelection(scene.getParts()[next]);
        next = next + 1 == count ? 0 : next + 1;
    };
    work();

    for (auto _ : state) {
        work();
        if (next % 1024 == 0) {
            forgetChanges();
        }
    }

    countAllocations(state, work);
    check(state, selection.shows(1), "not exactly one node is selected and shown");
}

void attachVisualisations(benchmark::State& state, const Shown shown)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    std::optional<ShownSelection> shownAlone;
    NodeSelectionModel model("selection");
    model.setSelection(scene.getParts());
    const auto detach = [&] {
        if (shownAlone) {
            for (interaction::SelectionVisualisation* visualisation : shownAlone->getVisualisations()) {
                model.removeVisualisation(visualisation);
            }
        }
    };

    measureNodes(
        state, count,
        [&] {
            detach();
            shownAlone.emplace(shown, scene.getRoot());
        },
        [&] {
            for (interaction::SelectionVisualisation* visualisation : shownAlone->getVisualisations()) {
                model.addVisualisation(visualisation);
            }
        });

    for (interaction::SelectionVisualisation* visualisation : shownAlone->getVisualisations()) {
        check(state, visualisation->getVisualisation()->getNChildren() == count, "not everything is shown");
    }
    detach();
}

template <class Function, class... Arguments>
benchmark::internal::Benchmark* addOne(const std::string& name, const Shown shown, const Function& function,
                                       const Arguments&... arguments)
{
    const std::string fullName = "NodeSelectionModel/" + name + "/" + getName(shown);
    return benchmark::RegisterBenchmark(fullName.c_str(), function, shown, arguments...)->Unit(benchmark::kMicrosecond);
}

template <class... Arguments>
benchmark::internal::Benchmark* add(const std::string& name, const Shown shown, const Arguments&... arguments)
{
    return addOne(name, shown, arguments...)->RangeMultiplier(10)->Range(fewest, most);
}

// Done once: alone in a process, its memory is all new.
template <class... Arguments>
void addFirst(const std::string& name, const Shown shown, const Arguments&... arguments)
{
    addOne(name, shown, arguments...)->Arg(100000)->Iterations(1);
}

void addBare(const std::string& name, const Order order)
{
    const std::string fullName = "NodeSelectionModel/bareContainers/" + name;
    benchmark::RegisterBenchmark(fullName.c_str(), deselectInBareContainers, order)
        ->Unit(benchmark::kMicrosecond)
        ->RangeMultiplier(10)
        ->Range(fewest, most);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const Shown shown : allShown) {
        add("addNode/forward", shown, selectForTheFirstTime, Order::Forward, addOneByOne);
        add("addNode/random", shown, selectForTheFirstTime, Order::Shuffled, addOneByOne);
        add("addNodes", shown, selectForTheFirstTime, Order::Forward, addTogether);
        add("setSelection", shown, selectForTheFirstTime, Order::Forward, replace);
        add("setSelection/again", shown, selectAgain);
        add("setSelection/one", shown, replaceByOne);
        addFirst("setSelection/first", shown, selectFirstOfProcess);
        add("removeNode/forward", shown, deselect, Order::Forward, removeOneByOne);
        add("removeNode/backward", shown, deselect, Order::Backward, removeOneByOne);
        add("removeNode/random", shown, deselect, Order::Shuffled, removeOneByOne);
        add("removeNodes/forward", shown, deselect, Order::Forward, removeTogether);
        add("removeNodes/backward", shown, deselect, Order::Backward, removeTogether);
        add("removeNodes/random", shown, deselect, Order::Shuffled, removeTogether);
        add("removeNode+addNode", shown, toggle);
        // So often, however little time it takes: selecting again in between is not counted.
        add("clearSelection", shown, deselect, Order::Forward, clear)->Iterations(20);
        add("updateNode", shown, refresh, false, updateOneByOne);
        add("updateVisualisations/unchanged", shown, refresh, false, updateTogether);
        add("updateVisualisations/moved", shown, refresh, true, updateTogether);
        if (shown != Shown::Nothing) {
            add("addVisualisation", shown, attachVisualisations);
        }
    }
    addBare("forward", Order::Forward);
    addBare("random", Order::Shuffled);
    return true;
}();

} // namespace

} // namespace quon::benchmarks
