// SPDX-License-Identifier: MIT
#include "Support/Measure.h"
#include "Support/PartScene.h"
#include "Support/ShownSelection.h"

#include <Interaction/AbstractSelectionVisualisation.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <optional>
#include <string>

namespace quon::benchmarks {

namespace {

constexpr int fewest = 1000;
constexpr int most = 1000000;

void setVisible(benchmark::State& state, const Shown shown, const bool isVisible)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    ShownSelection selection(shown, scene.getRoot());
    selection.getModel().setSelection(scene.getParts());
    interaction::SelectionVisualisation* visualisation = selection.getVisualisations().front();

    measureNodes(
        state, count, [&] { visualisation->setVisible(!isVisible); }, [&] { visualisation->setVisible(isVisible); });

    check(state, visualisation->isVisible() == isVisible && selection.shows(count), "it is not as wanted");
}

// Selected while it was hidden: everything is made when it is shown.
void showForTheFirstTime(benchmark::State& state, const Shown shown)
{
    const auto count = static_cast<std::size_t>(state.range());
    PartScene& scene = PartScene::get(count);
    std::optional<ShownSelection> selection;

    measureNodes(
        state, count,
        [&] {
            selection.emplace(shown, scene.getRoot());
            selection->getVisualisations().front()->setVisible(false);
            selection->getModel().setSelection(scene.getParts());
        },
        [&] { selection->getVisualisations().front()->setVisible(true); });

    check(state, selection->shows(count), "not everything is shown");
}

template <class... Arguments>
benchmark::internal::Benchmark* add(const std::string& name, const Shown shown, const Arguments&... arguments)
{
    const std::string fullName = "AbstractSelectionVisualisation/" + name + "/" + getName(shown);
    return benchmark::RegisterBenchmark(fullName.c_str(), arguments...)
        ->RangeMultiplier(10)
        ->Range(fewest, most)
        ->Unit(benchmark::kMicrosecond);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const Shown shown : {Shown::Box, Shown::Highlight}) {
        // Takes so much less time than what has to be done before that the usual time would never be over.
        add("setVisible/hide", shown, setVisible, shown, false)->Iterations(20);
        add("setVisible/show", shown, setVisible, shown, true);
        add("setVisible/showFirst", shown, showForTheFirstTime, shown);
    }
    return true;
}();

} // namespace

} // namespace quon::benchmarks
