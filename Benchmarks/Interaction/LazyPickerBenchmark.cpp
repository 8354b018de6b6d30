// SPDX-License-Identifier: MIT
#include "Support/Measure.h"
#include "Support/PartPicker.h"
#include "Support/PartScene.h"

#include <Interaction/LazyPicker.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace quon::benchmarks {

namespace {

using interaction::LazyPicker;

constexpr std::size_t partCount = 1000;

// Called through the interface, as tools do.
struct Node {
    static bool get(interaction::Picker& picker) { return picker.getPickedNode(nullptr) != osg::NullFC; }
};

struct Point {
    static bool get(interaction::Picker& picker) { return picker.getPickedPoint(nullptr)[0] >= 0; }
};

struct Normal {
    static bool get(interaction::Picker& picker) { return picker.getPickedNormal(nullptr)[2] > 0; }
};

struct TextureCoordinate {
    static bool get(interaction::Picker& picker) { return picker.getPickedUV(nullptr)[0] >= 0; }
};

struct Material {
    static bool get(interaction::Picker& picker) { return picker.getPickedMaterial(nullptr) == osg::NullFC; }
};

struct All {
    static bool get(interaction::Picker& picker)
    {
        osg::NodePtr node;
        osg::Pnt3f point;
        osg::Vec3f normal;
        picker.getPicked(node, point, normal, nullptr);
        return node != osg::NullFC && normal[2] > 0;
    }
};

struct Nodes {
    static bool get(interaction::Picker& picker) { return picker.getPickedNodes(nullptr).size() == partCount; }
};

struct Multi {
    static bool get(interaction::Picker& picker)
    {
        static std::vector<osg::NodePtr> nodes;
        picker.getMultiPicked(LazyPicker::AllHits, &nodes, nullptr, nullptr, nullptr);
        return nodes.size() == 1;
    }
};

template <class Getter>
void clean(benchmark::State& state)
{
    const PartScene& scene = PartScene::get(partCount);
    PartPicker picker(scene.getParts());
    picker.setPointer(osg::Pnt2f(5, 0));
    bool isRight = Getter::get(picker);
    interaction::Picker& asked = picker;
    benchmark::DoNotOptimize(&asked);

    for (auto _ : state) {
        isRight &= Getter::get(asked);
    }

    countAllocations(state, [&] { isRight &= Getter::get(asked); });
    check(state, isRight && picker.queries == 1, "the answer is wrong, or the scene was queried again");
}

template <class Getter>
void dirty(benchmark::State& state)
{
    const PartScene& scene = PartScene::get(partCount);
    PartPicker picker(scene.getParts());
    bool isRight = true;
    std::size_t pixel = 0;
    const auto work = [&] {
        picker.setPointer(osg::Pnt2f(static_cast<float>(pixel), 0));
        pixel = pixel + 1 == partCount ? 0 : pixel + 1;
        isRight &= Getter::get(picker);
    };
    work();

    for (auto _ : state) {
        work();
    }

    countAllocations(state, work);
    check(state, isRight && picker.queries == static_cast<std::size_t>(state.iterations()) + 2,
          "the answer is wrong, or the scene was not queried each time");
}

BENCHMARK_TEMPLATE(clean, Node)->Name("LazyPicker/clean/getPickedNode");
BENCHMARK_TEMPLATE(clean, Point)->Name("LazyPicker/clean/getPickedPoint");
BENCHMARK_TEMPLATE(clean, Normal)->Name("LazyPicker/clean/getPickedNormal");
BENCHMARK_TEMPLATE(clean, TextureCoordinate)->Name("LazyPicker/clean/getPickedUV");
BENCHMARK_TEMPLATE(clean, Material)->Name("LazyPicker/clean/getPickedMaterial");
BENCHMARK_TEMPLATE(clean, All)->Name("LazyPicker/clean/getPicked");
BENCHMARK_TEMPLATE(clean, Nodes)->Name("LazyPicker/clean/getPickedNodes");
BENCHMARK_TEMPLATE(clean, Multi)->Name("LazyPicker/clean/getMultiPicked");
BENCHMARK_TEMPLATE(dirty, Node)->Name("LazyPicker/dirty/getPickedNode");
BENCHMARK_TEMPLATE(dirty, All)->Name("LazyPicker/dirty/getPicked");
BENCHMARK_TEMPLATE(dirty, Nodes)->Name("LazyPicker/dirty/getPickedNodes");
BENCHMARK_TEMPLATE(dirty, Multi)->Name("LazyPicker/dirty/getMultiPicked");

} // namespace

} // namespace quon::benchmarks
