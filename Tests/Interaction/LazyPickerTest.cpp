// SPDX-License-Identifier: MIT
#include <Interaction/LazyPicker.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingPicker.h>
#include <InteractionTesting/SceneFixture.h>

#include "Support/VirtualSlot.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGVector.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace quon::testing {

namespace {

using interaction::LazyPicker;
using interaction::Picker;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LazyPickerTest : public SceneFixture {
protected:
    LazyPickerTest()
        : m_nodeA(osg::Node::create())
        , m_nodeB(osg::Node::create())
        , m_material(osg::SimpleMaterial::create())
        , m_otherMaterial(osg::SimpleMaterial::create())
        , m_picker(m_log, m_names, "picker")
    {
        m_names.add(m_nodeA.get(), "a");
        m_names.add(m_nodeB.get(), "b");
        m_names.add(&m_optionMemory, "option");
        m_names.add(&m_otherOptionMemory, "other");
        m_picker.setHit(firstHit());
        m_picker.setNodes({a()});
        m_picker.setMultiHit({{b(), a()},
                              {osg::Pnt3f(1.f, 2.f, 3.f), osg::Pnt3f(4.f, 5.f, 6.f)},
                              {osg::Vec3f(0.f, 1.f, 0.f), osg::Vec3f(0.f, 0.f, 1.f)},
                              {m_otherMaterial.get(), m_material.get()}});
    }

    osg::NodePtr a() const { return m_nodeA.get(); }
    osg::NodePtr b() const { return m_nodeB.get(); }

    RecordingPicker::Hit firstHit() const
    {
        return {a(), osg::Pnt3f(10.f, 20.f, 30.f), osg::Vec3f(1.f, 0.f, 0.f), osg::Vec2f(0.25f, 0.75f),
                m_material.get()};
    }

    RecordingPicker::Hit secondHit() const
    {
        return {b(), osg::Pnt3f(-1.f, -2.f, -3.f), osg::Vec3f(0.f, 0.f, -1.f), osg::Vec2f(0.5f, 0.125f),
                m_otherMaterial.get()};
    }

    // The picker only passes options on: any address will do.
    osg::SelectionOption* option() { return reinterpret_cast<osg::SelectionOption*>(&m_optionMemory); }
    osg::SelectionOption* otherOption() { return reinterpret_cast<osg::SelectionOption*>(&m_otherOptionMemory); }

    struct Results {
        std::vector<osg::NodePtr> nodes;
        std::vector<osg::Pnt3f> points;
        std::vector<osg::Vec3f> normals;
        std::vector<osg::MaterialPtr> materials;
    };

    Results multiPick(Picker::MultiMode mode)
    {
        Results results;
        m_picker.getMultiPicked(mode, &results.nodes, &results.points, &results.normals, &results.materials);
        return results;
    }

    // What the single results are now, without a query that would write them.
    RecordingPicker::Hit keptResults()
    {
        m_picker.setHit(std::nullopt);
        RecordingPicker::Hit kept;
        m_picker.getPicked(kept.node, kept.point, kept.normal, nullptr);
        kept.uv = m_picker.getPickedUV(nullptr);
        kept.material = m_picker.getPickedMaterial(nullptr);
        return kept;
    }

    static void expectEqual(const RecordingPicker::Hit& hit, const RecordingPicker::Hit& expected)
    {
        EXPECT_EQ(hit.node, expected.node);
        EXPECT_EQ(hit.point, expected.point);
        EXPECT_EQ(hit.normal, expected.normal);
        EXPECT_EQ(hit.uv, expected.uv);
        EXPECT_EQ(hit.material, expected.material);
    }

    CallLog m_log;
    ObjectNames m_names;
    osg::RefPtr<osg::NodePtr> m_nodeA;
    osg::RefPtr<osg::NodePtr> m_nodeB;
    osg::RefPtr<osg::MaterialPtr> m_material;
    osg::RefPtr<osg::MaterialPtr> m_otherMaterial;
    RecordingPicker m_picker;

private:
    double m_optionMemory = 0.;
    double m_otherOptionMemory = 0.;
};

constexpr const char* optionCall = "picker.updateSelectionOption(null)";
constexpr const char* validCall = "picker.isCacheValid()";
constexpr const char* pickCall = "picker.computePicked(null)";

// The interface.

/** Names the operations that are for subclasses only. */
class ProtectedOperations : public LazyPicker {
public:
    static std::vector<std::ptrdiff_t> slots()
    {
        return {virtualSlot(&ProtectedOperations::isCacheValid), virtualSlot(&ProtectedOperations::computePicked),
                virtualSlot(&ProtectedOperations::computePickedNodes),
                virtualSlot(&ProtectedOperations::computeMultiPicked),
                virtualSlot(&ProtectedOperations::updateSelectionOption)};
    }

    virtual void next() = 0;
};

TEST(PickerTest, DeclaresItsOperationsInTheirOrderWithoutAVirtualDestructor)
{
    EXPECT_EQ(virtualSlot(&Picker::getPicked), 0);
    EXPECT_EQ(virtualSlot(&Picker::getPickedPoint), 1);
    EXPECT_EQ(virtualSlot(&Picker::getPickedNode), 2);
    EXPECT_EQ(virtualSlot(&Picker::getPickedNormal), 3);
    EXPECT_EQ(virtualSlot(&Picker::getPickedUV), 4);
    EXPECT_EQ(virtualSlot(&Picker::getPickedMaterial), 5);
    EXPECT_EQ(virtualSlot(&Picker::getMultiPicked), 6);
    EXPECT_EQ(virtualSlot(&Picker::setFullyEnclosed), 7);
    EXPECT_EQ(virtualSlot(&Picker::getFullyEnclosed), 8);
    EXPECT_EQ(virtualSlot(&Picker::setDepthSelection), 9);
    EXPECT_EQ(virtualSlot(&Picker::getDepthSelection), 10);
    EXPECT_EQ(virtualSlot(&Picker::setSelectionRegion), 11);
    EXPECT_EQ(virtualSlot(&Picker::getSelectionRegion), 12);
    EXPECT_EQ(virtualSlot(&Picker::getPickedNodes), 13);
    EXPECT_EQ(virtualSlot(&Picker::setRoot), 14);
    EXPECT_EQ(virtualSlot(&Picker::getRoot), 15);
    EXPECT_EQ(virtualSlot(&Picker::setMakeNormalsConsistent), 16);
    EXPECT_EQ(virtualSlot(&Picker::getMakeNormalsConsistent), 17);
    EXPECT_EQ(virtualSlot(&Picker::setMaterialLayerEvaluationEnabled), 18);
    EXPECT_EQ(virtualSlot(&Picker::setTransparencyEvaluationEnabled), 19);
    EXPECT_EQ(virtualSlot(&Picker::setPointer), 20);
    EXPECT_EQ(virtualSlot(&Picker::getPointer), 21);
    EXPECT_EQ(virtualSlot(&Picker::setCamera), 22);
    EXPECT_EQ(virtualSlot(&Picker::getCamera), 23);
    static_assert(!std::has_virtual_destructor_v<Picker>);
    static_assert(std::is_abstract_v<Picker>);
    static_assert(sizeof(Picker) == sizeof(void*));
}

TEST_F(LazyPickerTest, AddsAVirtualDestructorAndItsOwnOperationsBehindThoseOfTheInterface)
{
    // The destructor takes the places 24 and 25.
    static_assert(std::has_virtual_destructor_v<LazyPicker>);
    EXPECT_EQ(virtualSlot(&LazyPicker::invalidate), 26);
    EXPECT_EQ(virtualSlot(&LazyPicker::getMaterialLayerEvaluationEnabled), 27);
    EXPECT_EQ(virtualSlot(&LazyPicker::getTransparencyEvaluationEnabled), 28);
    EXPECT_THAT(ProtectedOperations::slots(), ElementsAre(29, 30, 31, 32, 33));
    EXPECT_EQ(virtualSlot(&ProtectedOperations::next), 34);
    static_assert(std::is_abstract_v<LazyPicker>);
}

// The first query.

TEST_F(LazyPickerTest, NewPickerRunsTheQueryWhateverIsCacheValidSays)
{
    for (const bool valid : {true, false}) {
        m_log.clear();
        RecordingPicker picker(m_log, m_names, "picker");
        picker.setCacheValid(valid);

        picker.getPickedNode(nullptr);

        EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall)) << "valid: " << valid;
    }
}

TEST_F(LazyPickerTest, NewPickerRunsTheNodeQueryWhateverIsCacheValidSays)
{
    m_picker.getPickedNodes(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computePickedNodes([], null)"));
}

TEST_F(LazyPickerTest, NewPickerHasNoLastModeEvenAfterGetPickedNodes)
{
    m_picker.getPickedNodes(nullptr);
    m_log.clear();

    m_picker.getPickedNode(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall));
}

TEST_F(LazyPickerTest, NewPickerHasNoLastModeThatEqualsAMultiMode)
{
    for (const int mode : {1, 2, -1, 17, std::numeric_limits<int>::max()}) {
        RecordingPicker picker(m_log, m_names, "picker");
        picker.getPickedNodes(nullptr);
        m_log.clear();

        picker.getMultiPicked(static_cast<Picker::MultiMode>(mode), nullptr, nullptr, nullptr, nullptr);

        EXPECT_THAT(m_log.calls(),
                    ElementsAre(optionCall, "picker.computeMultiPicked(" + std::to_string(mode) + ", empty)"));
    }
}

TEST_F(LazyPickerTest, NewPickerHoldsNullHandlesAndZeros)
{
    const RecordingPicker::Hit kept = keptResults();

    expectEqual(kept,
                {osg::NullFC, osg::Pnt3f(0.f, 0.f, 0.f), osg::Vec3f(0.f, 0.f, 0.f), osg::Vec2f(0.f, 0.f), osg::NullFC});
}

// Single picks.

TEST_F(LazyPickerTest, AllSingleGettersShareOneQuery)
{
    osg::NodePtr node;
    osg::Pnt3f point;
    osg::Vec3f normal;

    m_picker.getPicked(node, point, normal, nullptr);
    const osg::Pnt3f samePoint = m_picker.getPickedPoint(nullptr);
    const osg::NodePtr sameNode = m_picker.getPickedNode(nullptr);
    const osg::Vec3f sameNormal = m_picker.getPickedNormal(nullptr);
    const osg::Vec2f uv = m_picker.getPickedUV(nullptr);
    const osg::MaterialPtr material = m_picker.getPickedMaterial(nullptr);

    expectEqual({node, point, normal, uv, material}, firstHit());
    expectEqual({sameNode, samePoint, sameNormal, uv, material}, firstHit());
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall, optionCall, validCall, optionCall, validCall,
                                           optionCall, validCall, optionCall, validCall, optionCall, validCall));
}

TEST_F(LazyPickerTest, EverySingleGetterRunsTheQueryWhenItComesFirst)
{
    const std::vector<std::function<void()>> getters = {
        [this] {
            osg::NodePtr node;
            osg::Pnt3f point;
            osg::Vec3f normal;
            m_picker.getPicked(node, point, normal, option());
        },
        [this] { m_picker.getPickedPoint(option()); },
        [this] { m_picker.getPickedNode(option()); },
        [this] { m_picker.getPickedNormal(option()); },
        [this] { m_picker.getPickedUV(option()); },
        [this] { m_picker.getPickedMaterial(option()); },
    };

    for (const auto& getter : getters) {
        m_picker.invalidate();
        m_log.clear();

        getter();

        EXPECT_THAT(m_log.calls(), ElementsAre("picker.updateSelectionOption(option)", "picker.computePicked(option)"));
    }
}

TEST_F(LazyPickerTest, TwoNodeGettersRunOneQueryWhenTheCacheIsValid)
{
    m_picker.getPickedNode(nullptr);
    m_picker.getPickedNode(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall, optionCall, validCall));
}

TEST_F(LazyPickerTest, TwoNodeGettersRunTwoQueriesWhenTheCacheIsNotValid)
{
    m_picker.setCacheValid(false);

    m_picker.getPickedNode(nullptr);
    m_picker.getPickedNode(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall, optionCall, validCall, pickCall));
}

TEST_F(LazyPickerTest, RepeatedQueryReplacesAllFiveResults)
{
    m_picker.getPickedNode(nullptr);
    m_picker.setHit(secondHit());
    m_picker.invalidate();

    m_picker.getPickedNode(nullptr);

    expectEqual(keptResults(), secondHit());
}

TEST_F(LazyPickerTest, SinglePickHandsTheBackEndTheResultsOfBefore)
{
    m_picker.getPickedNode(nullptr);
    m_picker.setCacheValid(false);

    expectEqual(keptResults(), firstHit());
}

TEST_F(LazyPickerTest, ModeZeroGivesExactlyOneEntryAfterASinglePick)
{
    m_picker.getPickedNode(nullptr);
    m_log.clear();

    const Results results = multiPick(Picker::SinglePick);

    EXPECT_THAT(results.nodes, ElementsAre(a()));
    EXPECT_THAT(results.points, ElementsAre(firstHit().point));
    EXPECT_THAT(results.normals, ElementsAre(firstHit().normal));
    EXPECT_THAT(results.materials, ElementsAre(m_material.get()));
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall));
}

TEST_F(LazyPickerTest, ModeZeroGivesExactlyOneEntryWhenNothingIsHit)
{
    m_picker.setHit(RecordingPicker::Hit());

    const Results results = multiPick(Picker::SinglePick);

    EXPECT_THAT(results.nodes, ElementsAre(osg::NodePtr()));
    EXPECT_THAT(results.points, ElementsAre(osg::Pnt3f(0.f, 0.f, 0.f)));
    EXPECT_THAT(results.normals, ElementsAre(osg::Vec3f(0.f, 0.f, 0.f)));
    EXPECT_THAT(results.materials, ElementsAre(osg::MaterialPtr()));
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall));
}

TEST_F(LazyPickerTest, ModeZeroStillGivesOneEntryAfterRepeatedQueries)
{
    m_picker.setCacheValid(false);
    m_picker.getPickedNode(nullptr);
    m_picker.getPickedNode(nullptr);

    const Results results = multiPick(Picker::SinglePick);

    EXPECT_THAT(results.nodes, ElementsAre(a()));
    EXPECT_EQ(results.points.size(), 1u);
    EXPECT_EQ(results.normals.size(), 1u);
    EXPECT_EQ(results.materials.size(), 1u);
}

// Multi-picks.

TEST_F(LazyPickerTest, MultiPickReturnsAllHits)
{
    const Results results = multiPick(Picker::AllHits);

    EXPECT_THAT(results.nodes, ElementsAre(b(), a()));
    EXPECT_THAT(results.points, ElementsAre(osg::Pnt3f(1.f, 2.f, 3.f), osg::Pnt3f(4.f, 5.f, 6.f)));
    EXPECT_THAT(results.normals, ElementsAre(osg::Vec3f(0.f, 1.f, 0.f), osg::Vec3f(0.f, 0.f, 1.f)));
    EXPECT_THAT(results.materials, ElementsAre(m_otherMaterial.get(), m_material.get()));
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computeMultiPicked(1, empty)"));
}

TEST_F(LazyPickerTest, MultiPickReplacesWhatTheVectorsHeld)
{
    Results results;
    results.nodes = {a(), a(), a()};
    results.points = {osg::Pnt3f(9.f, 9.f, 9.f)};

    m_picker.getMultiPicked(Picker::AllHits, &results.nodes, &results.points, &results.normals, &results.materials);

    EXPECT_THAT(results.nodes, ElementsAre(b(), a()));
    EXPECT_EQ(results.points.size(), 2u);
}

TEST_F(LazyPickerTest, NullVectorsAreSkippedByTheMultiPick)
{
    Results results;

    m_picker.getMultiPicked(Picker::AllHits, nullptr, nullptr, nullptr, nullptr);
    m_picker.getMultiPicked(Picker::AllHits, &results.nodes, nullptr, nullptr, nullptr);
    m_picker.getMultiPicked(Picker::AllHits, nullptr, &results.points, nullptr, nullptr);
    m_picker.getMultiPicked(Picker::AllHits, nullptr, nullptr, &results.normals, nullptr);
    m_picker.getMultiPicked(Picker::AllHits, nullptr, nullptr, nullptr, &results.materials);

    EXPECT_EQ(results.nodes.size(), 2u);
    EXPECT_EQ(results.points.size(), 2u);
    EXPECT_EQ(results.normals.size(), 2u);
    EXPECT_EQ(results.materials.size(), 2u);
}

TEST_F(LazyPickerTest, ChangedModeRunsTheQueryAndTheSameModeDoesNot)
{
    m_picker.getPickedNode(nullptr);
    m_log.clear();

    multiPick(Picker::AllHits);
    multiPick(Picker::AllHits);
    multiPick(Picker::Region);
    m_picker.getPickedNode(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computeMultiPicked(1, empty)", optionCall, validCall,
                                           optionCall, "picker.computeMultiPicked(2, empty)", optionCall, pickCall));
}

TEST_F(LazyPickerTest, ModesOfTheBackEndAreInts)
{
    static_assert(std::is_same_v<std::underlying_type_t<Picker::MultiMode>, int>);
    static_assert(Picker::SinglePick == 0 && Picker::AllHits == 1 && Picker::Region == 2);
}

TEST_F(LazyPickerTest, ModesOfTheBackEndPassThrough)
{
    multiPick(static_cast<Picker::MultiMode>(4711));
    multiPick(static_cast<Picker::MultiMode>(-5));
    multiPick(static_cast<Picker::MultiMode>(-5));

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computeMultiPicked(4711, empty)", optionCall,
                                           "picker.computeMultiPicked(-5, empty)", optionCall, validCall));
}

TEST_F(LazyPickerTest, FirstEntriesOfAMultiPickBecomeTheSingleResults)
{
    m_picker.getPickedNode(nullptr);

    multiPick(Picker::AllHits);

    // The texture coordinate stays that of the single pick.
    expectEqual(keptResults(),
                {b(), osg::Pnt3f(1.f, 2.f, 3.f), osg::Vec3f(0.f, 1.f, 0.f), firstHit().uv, m_otherMaterial.get()});
}

TEST_F(LazyPickerTest, MultiPickWithoutResultLeavesTheSingleResults)
{
    m_picker.getPickedNode(nullptr);
    m_picker.setMultiHit({});

    const Results results = multiPick(Picker::AllHits);

    EXPECT_THAT(results.nodes, IsEmpty());
    EXPECT_THAT(results.points, IsEmpty());
    EXPECT_THAT(results.normals, IsEmpty());
    EXPECT_THAT(results.materials, IsEmpty());
    expectEqual(keptResults(), firstHit());
}

TEST_F(LazyPickerTest, EachEmptyVectorOfAMultiPickLeavesItsSingleResultAlone)
{
    m_picker.getPickedNode(nullptr);
    m_picker.setMultiHit({{}, {osg::Pnt3f(1.f, 2.f, 3.f)}, {}, {m_otherMaterial.get()}});

    multiPick(Picker::AllHits);

    expectEqual(keptResults(),
                {a(), osg::Pnt3f(1.f, 2.f, 3.f), firstHit().normal, firstHit().uv, m_otherMaterial.get()});
}

TEST_F(LazyPickerTest, MultiPickHandsTheBackEndEmptyVectorsEvenAfterHits)
{
    m_picker.setCacheValid(false);
    multiPick(Picker::AllHits);
    m_log.clear();

    multiPick(Picker::AllHits);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall, "picker.computeMultiPicked(1, empty)"));
}

TEST_F(LazyPickerTest, MultiPickIntoThePickersOwnVectorsKeepsThem)
{
    // A back end gets the picker's own vectors to fill and may hand them in again as the caller's.
    class Rememberer : public RecordingPicker {
    public:
        using RecordingPicker::RecordingPicker;

        void computeMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                                std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override
        {
            RecordingPicker::computeMultiPicked(mode, nodes, points, normals, materials);
            m_ownNodes = nodes;
            m_ownPoints = points;
        }

        std::vector<osg::NodePtr>* m_ownNodes = nullptr;
        std::vector<osg::Pnt3f>* m_ownPoints = nullptr;
    };
    Rememberer picker(m_log, m_names, "picker");
    picker.setMultiHit({{b(), a()}, {osg::Pnt3f(1.f, 2.f, 3.f)}, {}, {}});
    picker.getMultiPicked(Picker::AllHits, nullptr, nullptr, nullptr, nullptr);

    picker.getMultiPicked(Picker::AllHits, picker.m_ownNodes, picker.m_ownPoints, nullptr, nullptr);
    picker.invalidate();
    picker.getMultiPicked(Picker::AllHits, picker.m_ownNodes, picker.m_ownPoints, nullptr, nullptr);

    EXPECT_THAT(*picker.m_ownNodes, ElementsAre(b(), a()));
    EXPECT_THAT(*picker.m_ownPoints, ElementsAre(osg::Pnt3f(1.f, 2.f, 3.f)));
}

// Options.

TEST_F(LazyPickerTest, ReplacedOptionReachesTheQuery)
{
    m_picker.setReplacementOption(otherOption());

    m_picker.getPickedNode(option());

    EXPECT_THAT(m_log.calls(), ElementsAre("picker.updateSelectionOption(option)", "picker.computePicked(other)"));
}

TEST_F(LazyPickerTest, OptionReplacedByNullReachesTheQuery)
{
    m_picker.setReplacementOption(nullptr);

    m_picker.getPickedNode(option());

    EXPECT_THAT(m_log.calls(), ElementsAre("picker.updateSelectionOption(option)", pickCall));
}

TEST_F(LazyPickerTest, ReplacedOptionReachesTheNodeQuery)
{
    m_picker.setReplacementOption(otherOption());

    m_picker.getPickedNodes(option());

    EXPECT_THAT(m_log.calls(),
                ElementsAre("picker.updateSelectionOption(option)", "picker.computePickedNodes([], other)"));
}

TEST_F(LazyPickerTest, MultiPickUpdatesANullOption)
{
    m_picker.setReplacementOption(otherOption());

    multiPick(Picker::AllHits);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computeMultiPicked(1, empty)"));
}

TEST_F(LazyPickerTest, MultiPickOfModeZeroRunsASinglePickWithTheUpdatedNullOption)
{
    m_picker.setReplacementOption(otherOption());

    multiPick(Picker::SinglePick);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computePicked(other)"));
}

TEST_F(LazyPickerTest, AnotherOptionAloneDoesNotRunTheQuery)
{
    m_picker.getPickedNode(option());
    m_log.clear();

    m_picker.getPickedNode(otherOption());

    EXPECT_THAT(m_log.calls(), ElementsAre("picker.updateSelectionOption(other)", validCall));
}

TEST_F(LazyPickerTest, InvalidatingFromInsideTheOptionUpdateRunsTheQuery)
{
    m_picker.getPickedNode(nullptr);
    m_log.clear();
    m_picker.onUpdateSelectionOption([this] { m_picker.invalidate(); });

    m_picker.getPickedNode(nullptr);
    m_picker.getPickedNodes(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall, optionCall, "picker.computePickedNodes([], null)"));
}

TEST_F(LazyPickerTest, OptionUpdateOfTheBaseChangesNothing)
{
    class Plain : public RecordingPicker {
    public:
        using RecordingPicker::RecordingPicker;

        bool updateSelectionOption(osg::SelectionOption*& option) override
        {
            // Past the recording on purpose. NOLINTNEXTLINE(bugprone-parent-virtual-call)
            return LazyPicker::updateSelectionOption(option);
        }
    };
    Plain picker(m_log, m_names, "picker");
    osg::SelectionOption* passed = option();

    const bool changed = picker.updateSelectionOption(passed);
    picker.getPickedNode(option());
    picker.getPickedNode(option());

    EXPECT_FALSE(changed);
    EXPECT_EQ(passed, option());
    EXPECT_THAT(m_log.calls(), ElementsAre("picker.computePicked(option)", validCall));
}

// When a query runs: all states of the cache.

struct CacheState {
    bool dirty;
    bool sameMode;
    bool optionsChanged;
    bool cacheValid;

    bool asksIsCacheValid() const { return !dirty && sameMode && !optionsChanged; }
    bool runsTheQuery() const { return !(asksIsCacheValid() && cacheValid); }
};

std::string stateName(const ::testing::TestParamInfo<CacheState>& info)
{
    const CacheState& state = info.param;
    return std::string(state.dirty ? "Dirty" : "Clean") + (state.sameMode ? "SameMode" : "OtherMode") +
           (state.optionsChanged ? "OptionsChanged" : "OptionsUnchanged") + (state.cacheValid ? "Valid" : "NotValid");
}

std::ostream& operator<<(std::ostream& stream, const CacheState& state)
{
    return stream << state.dirty << state.sameMode << state.optionsChanged << state.cacheValid;
}

std::vector<CacheState> allCacheStates()
{
    std::vector<CacheState> states;
    for (const bool dirty : {false, true}) {
        for (const bool sameMode : {false, true}) {
            for (const bool optionsChanged : {false, true}) {
                for (const bool cacheValid : {false, true}) {
                    states.push_back({dirty, sameMode, optionsChanged, cacheValid});
                }
            }
        }
    }
    return states;
}

class LazyPickerStateTest : public LazyPickerTest, public ::testing::WithParamInterface<CacheState> {
protected:
    void enterState()
    {
        if (GetParam().sameMode) {
            m_picker.getPickedNode(nullptr);
        } else {
            multiPick(Picker::AllHits);
        }
        if (GetParam().dirty) {
            m_picker.invalidate();
        }
        m_picker.setOptionsChanged(GetParam().optionsChanged);
        m_picker.setCacheValid(GetParam().cacheValid);
        m_log.clear();
    }
};

TEST_P(LazyPickerStateTest, SinglePickRunsTheQueryUnlessEverythingSpeaksForTheCache)
{
    enterState();

    m_picker.getPickedNode(nullptr);

    std::vector<std::string> expected = {optionCall};
    if (GetParam().asksIsCacheValid()) {
        expected.emplace_back(validCall);
    }
    if (GetParam().runsTheQuery()) {
        expected.emplace_back(pickCall);
    }
    EXPECT_EQ(m_log.calls(), expected);
}

TEST_P(LazyPickerStateTest, NodeQueryDoesNotCareForTheMode)
{
    enterState();

    m_picker.getPickedNodes(nullptr);

    std::vector<std::string> expected = {optionCall};
    const bool asks = !GetParam().dirty && !GetParam().optionsChanged;
    if (asks) {
        expected.emplace_back(validCall);
    }
    if (!(asks && GetParam().cacheValid)) {
        expected.emplace_back("picker.computePickedNodes([], null)");
    }
    EXPECT_EQ(m_log.calls(), expected);
}

INSTANTIATE_TEST_SUITE_P(AllStates, LazyPickerStateTest, ::testing::ValuesIn(allCacheStates()), stateName);

// The list of picked nodes, and the flag that it shares with the picks.

TEST_F(LazyPickerTest, PickedNodesAreAReferenceToTheOneList)
{
    const std::vector<osg::NodePtr>& first = m_picker.getPickedNodes(nullptr);
    const std::vector<osg::NodePtr>& second = m_picker.getPickedNodes(nullptr);

    EXPECT_EQ(&first, &second);
    EXPECT_THAT(second, ElementsAre(a()));
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computePickedNodes([], null)", optionCall, validCall));
}

TEST_F(LazyPickerTest, ListOfPickedNodesIsNotEmptiedBeforeTheNodeQuery)
{
    m_picker.getPickedNodes(nullptr);
    m_picker.setCacheValid(false);
    m_picker.setNodes({b(), a()});
    m_log.clear();

    const std::vector<osg::NodePtr>& nodes = m_picker.getPickedNodes(nullptr);

    EXPECT_THAT(nodes, ElementsAre(b(), a()));
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall, "picker.computePickedNodes([a], null)"));
}

TEST_F(LazyPickerTest, NodeQueryClearsTheFlagForTheSinglePick)
{
    m_picker.getPickedNode(nullptr);
    m_picker.invalidate();
    m_picker.getPickedNodes(nullptr);
    m_log.clear();

    osg::NodePtr node = a();
    osg::Pnt3f point(7.f, 7.f, 7.f);
    osg::Vec3f normal(7.f, 7.f, 7.f);
    m_picker.getPicked(node, point, normal, nullptr);
    const osg::Vec2f uv = m_picker.getPickedUV(nullptr);
    const osg::MaterialPtr material = m_picker.getPickedMaterial(nullptr);

    expectEqual({node, point, normal, uv, material}, RecordingPicker::Hit());
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall, optionCall, validCall, optionCall, validCall));
}

TEST_F(LazyPickerTest, NodeQueryClearsTheFlagForAMultiPickOfTheLastMode)
{
    multiPick(Picker::AllHits);
    m_picker.invalidate();
    m_picker.getPickedNodes(nullptr);
    m_log.clear();

    const Results results = multiPick(Picker::AllHits);

    EXPECT_THAT(results.nodes, IsEmpty());
    EXPECT_THAT(results.points, IsEmpty());
    EXPECT_THAT(results.normals, IsEmpty());
    EXPECT_THAT(results.materials, IsEmpty());
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall));
}

TEST_F(LazyPickerTest, PickOfAnotherModeRunsTheQueryAlthoughTheNodeQueryClearedTheFlag)
{
    multiPick(Picker::AllHits);
    m_picker.invalidate();
    m_picker.getPickedNodes(nullptr);
    m_log.clear();

    m_picker.getPickedNode(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall));
}

TEST_F(LazyPickerTest, ClearedFlagDoesNotCountWhenTheCacheIsNotValidOrTheOptionsChanged)
{
    for (const bool optionsChanged : {false, true}) {
        m_picker.setOptionsChanged(false);
        m_picker.setCacheValid(true);
        m_picker.getPickedNode(nullptr);
        m_picker.invalidate();
        m_picker.getPickedNodes(nullptr);
        m_picker.setOptionsChanged(optionsChanged);
        m_picker.setCacheValid(optionsChanged);

        EXPECT_EQ(m_picker.getPickedNode(nullptr), a()) << "options changed: " << optionsChanged;
    }
}

TEST_F(LazyPickerTest, PickClearsTheFlagForTheNodeQuery)
{
    m_picker.getPickedNodes(nullptr);
    m_picker.invalidate();
    m_picker.setNodes({b()});
    m_picker.getPickedNode(nullptr);
    m_log.clear();

    const std::vector<osg::NodePtr>& nodes = m_picker.getPickedNodes(nullptr);

    EXPECT_THAT(nodes, ElementsAre(a())) << "the list of the previous call";
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall));
}

TEST_F(LazyPickerTest, NodeQueryRecordsNoMode)
{
    multiPick(Picker::AllHits);
    m_picker.setCacheValid(false);
    m_picker.getPickedNodes(nullptr);
    m_picker.setCacheValid(true);
    m_log.clear();

    const Results results = multiPick(Picker::AllHits);

    EXPECT_THAT(results.nodes, ElementsAre(b(), a()));
    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall));
}

// Invalidation.

TEST_F(LazyPickerTest, InvalidateResetsTheSingleResults)
{
    m_picker.getPickedNode(nullptr);

    m_picker.invalidate();

    expectEqual(keptResults(), RecordingPicker::Hit());
}

TEST_F(LazyPickerTest, InvalidateKeepsTheListOfPickedNodes)
{
    const std::vector<osg::NodePtr>& nodes = m_picker.getPickedNodes(nullptr);

    m_picker.invalidate();

    EXPECT_THAT(nodes, ElementsAre(a()));
}

TEST_F(LazyPickerTest, InvalidateCallsNothing)
{
    m_picker.getPickedNode(nullptr);
    m_log.clear();

    m_picker.invalidate();

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// Settings.

TEST_F(LazyPickerTest, SettingsStartAtTheirDefaults)
{
    EXPECT_EQ(m_picker.getRoot(), osg::NullFC);
    EXPECT_FALSE(m_picker.getFullyEnclosed());
    EXPECT_TRUE(m_picker.getDepthSelection());
    EXPECT_TRUE(m_picker.getMakeNormalsConsistent());
    EXPECT_FALSE(m_picker.getMaterialLayerEvaluationEnabled());
    EXPECT_TRUE(m_picker.getTransparencyEvaluationEnabled());
    EXPECT_EQ(m_picker.getSelectionRegion(), 0);
}

TEST_F(LazyPickerTest, SettingsAreStoredEachForItself)
{
    m_picker.setFullyEnclosed(true);
    EXPECT_TRUE(m_picker.getFullyEnclosed());
    EXPECT_TRUE(m_picker.getDepthSelection());

    m_picker.setDepthSelection(false);
    EXPECT_FALSE(m_picker.getDepthSelection());
    EXPECT_TRUE(m_picker.getMakeNormalsConsistent());

    m_picker.setMakeNormalsConsistent(false);
    EXPECT_FALSE(m_picker.getMakeNormalsConsistent());
    EXPECT_FALSE(m_picker.getMaterialLayerEvaluationEnabled());

    m_picker.setMaterialLayerEvaluationEnabled(true);
    EXPECT_TRUE(m_picker.getMaterialLayerEvaluationEnabled());
    EXPECT_TRUE(m_picker.getTransparencyEvaluationEnabled());

    m_picker.setTransparencyEvaluationEnabled(false);
    EXPECT_FALSE(m_picker.getTransparencyEvaluationEnabled());

    m_picker.setSelectionRegion(-12);
    EXPECT_EQ(m_picker.getSelectionRegion(), -12);
    EXPECT_TRUE(m_picker.getFullyEnclosed());
}

struct SettingCase {
    std::string name;
    std::function<void(LazyPicker&, const osg::NodePtr&)> set;
    bool runsTheQuery;
};

std::ostream& operator<<(std::ostream& stream, const SettingCase& setting)
{
    return stream << setting.name;
}

class LazyPickerSettingTest : public LazyPickerTest, public ::testing::WithParamInterface<SettingCase> {};

TEST_P(LazyPickerSettingTest, DecidesWhetherTheNextQuestionRunsTheQuery)
{
    m_picker.setRoot(a());
    m_picker.getPickedNode(nullptr);
    m_log.clear();

    GetParam().set(m_picker, a());
    m_picker.getPickedNode(nullptr);

    if (GetParam().runsTheQuery) {
        EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall));
    } else {
        EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall));
    }
}

TEST_P(LazyPickerSettingTest, DecidesWhetherTheNextNodeQueryRuns)
{
    m_picker.setRoot(a());
    m_picker.getPickedNodes(nullptr);
    m_log.clear();

    GetParam().set(m_picker, a());
    m_picker.getPickedNodes(nullptr);

    if (GetParam().runsTheQuery) {
        EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, "picker.computePickedNodes([a], null)"));
    } else {
        EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, validCall));
    }
}

TEST_P(LazyPickerSettingTest, KeepsTheCachedAnswers)
{
    m_picker.setRoot(a());
    m_picker.getPickedNode(nullptr);

    GetParam().set(m_picker, a());

    expectEqual(keptResults(), firstHit());
}

std::vector<SettingCase> allSettings()
{
    using Root = const osg::NodePtr&;
    return {
        {"FullyEnclosedChanged", [](LazyPicker& picker, Root) { picker.setFullyEnclosed(true); }, false},
        {"FullyEnclosedSame", [](LazyPicker& picker, Root) { picker.setFullyEnclosed(false); }, false},
        {"DepthSelectionChanged", [](LazyPicker& picker, Root) { picker.setDepthSelection(false); }, false},
        {"DepthSelectionSame", [](LazyPicker& picker, Root) { picker.setDepthSelection(true); }, false},
        {"ConsistentNormalsChanged", [](LazyPicker& picker, Root) { picker.setMakeNormalsConsistent(false); }, false},
        {"ConsistentNormalsSame", [](LazyPicker& picker, Root) { picker.setMakeNormalsConsistent(true); }, false},
        {"SelectionRegionChanged", [](LazyPicker& picker, Root) { picker.setSelectionRegion(5); }, true},
        {"SelectionRegionSame", [](LazyPicker& picker, Root) { picker.setSelectionRegion(0); }, false},
        {"LayersChanged", [](LazyPicker& picker, Root) { picker.setMaterialLayerEvaluationEnabled(true); }, true},
        {"LayersSame", [](LazyPicker& picker, Root) { picker.setMaterialLayerEvaluationEnabled(false); }, false},
        {"TransparencyChanged", [](LazyPicker& picker, Root) { picker.setTransparencyEvaluationEnabled(false); }, true},
        {"TransparencySame", [](LazyPicker& picker, Root) { picker.setTransparencyEvaluationEnabled(true); }, false},
        {"RootChanged", [](LazyPicker& picker, Root) { picker.setRoot(osg::NullFC); }, true},
        {"RootSame", [](LazyPicker& picker, Root root) { picker.setRoot(root); }, true},
    };
}

std::string settingName(const ::testing::TestParamInfo<SettingCase>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Settings, LazyPickerSettingTest, ::testing::ValuesIn(allSettings()), settingName);

TEST_F(LazyPickerTest, SettingThatChangesBackStillRunsTheQuery)
{
    m_picker.getPickedNode(nullptr);
    m_log.clear();

    m_picker.setSelectionRegion(5);
    m_picker.setSelectionRegion(0);
    m_picker.getPickedNode(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(optionCall, pickCall));
}

TEST_F(LazyPickerTest, FlagOfAChangedSettingIsClearedByTheNodeQuery)
{
    m_picker.getPickedNode(nullptr);
    m_picker.setSelectionRegion(5);
    m_picker.setHit(secondHit());
    m_picker.getPickedNodes(nullptr);

    EXPECT_EQ(m_picker.getPickedNode(nullptr), a()) << "the answer of before, which a changed setting does not reset";
}

// The root and its reference.

TEST_F(LazyPickerTest, RootHoldsOneReference)
{
    m_picker.setRoot(a());
    m_picker.setRoot(a());

    EXPECT_EQ(m_picker.getRoot(), a());
    EXPECT_EQ(a().getRefCount(), 2) << "the fixture's and the picker's";
}

TEST_F(LazyPickerTest, ReplacedRootIsReleased)
{
    m_picker.setRoot(a());

    m_picker.setRoot(b());

    EXPECT_EQ(a().getRefCount(), 1);
    EXPECT_EQ(b().getRefCount(), 2);
}

TEST_F(LazyPickerTest, NullRootReleasesTheOldOne)
{
    m_picker.setRoot(a());

    m_picker.setRoot(osg::NullFC);

    EXPECT_EQ(m_picker.getRoot(), osg::NullFC);
    EXPECT_EQ(a().getRefCount(), 1);
}

TEST_F(LazyPickerTest, DestructionThroughTheLazyPickerReleasesTheRoot)
{
    std::unique_ptr<LazyPicker> picker = std::make_unique<RecordingPicker>(m_log, m_names, "other");
    picker->setRoot(a());

    picker.reset();

    EXPECT_EQ(a().getRefCount(), 1);
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(LazyPickerTest, RootMayBeANodeThatOnlyTheOldRootKeepsAlive)
{
    const osg::NodePtr child = osg::Node::create();
    {
        const osg::RefPtr<osg::NodePtr> parent(osg::Node::create());
        osg::beginEditCP(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(child);
        osg::endEditCP(parent, osg::Node::ChildrenFieldMask);
        m_picker.setRoot(parent);
    }

    m_picker.setRoot(child);

    EXPECT_EQ(m_picker.getRoot(), child);
    EXPECT_EQ(child.getRefCount(), 1);
    EXPECT_EQ(child->getParent(), osg::NullFC);
}

TEST_F(LazyPickerTest, PickedNodesAndMaterialsAreNotReferenced)
{
    m_picker.getPickedNode(nullptr);
    m_picker.getPickedNodes(nullptr);

    EXPECT_EQ(a().getRefCount(), 1);
    EXPECT_EQ(m_material.get().getRefCount(), 1);
}

} // namespace

} // namespace quon::testing
