// SPDX-License-Identifier: MIT
//
// Hosts are built against the library at other times than the library: what its classes look like to a compiler is part
// of the interface. Everything here is read as the Itanium C++ ABI lays it down.
#include "Support/VirtualSlot.h"

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/AbstractSelectionVisualisation.h>
#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/InteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/InteractionTool.h>
#include <Interaction/LazyPicker.h>
#include <Interaction/MultimodeInteractionContext.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/Picker.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/SelectionManager.h>
#include <Interaction/SelectionVisualisation.h>
#include <Interaction/ToolInteractionContext.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace quon::interaction {

namespace {

struct Slot {
    std::string operation;
    std::ptrdiff_t slot;

    bool operator==(const Slot& other) const { return operation == other.operation && slot == other.slot; }
};

std::ostream& operator<<(std::ostream& stream, const Slot& slot)
{
    return stream << slot.slot << ' ' << slot.operation;
}

#define KO_SLOT(Class, operation)                                                                                      \
    Slot                                                                                                               \
    {                                                                                                                  \
#operation, testing::virtualSlot(&Class::operation)                                                            \
    }

// The first virtual operation that a subclass adds stands right behind the last one of its base.
template <typename Base>
struct Subclass : Base {
    virtual void next() = 0;
};

template <typename Base>
std::ptrdiff_t slotCount()
{
    return testing::virtualSlot(&Subclass<Base>::next);
}

// The operations in the order given fill the slots from first on without a gap.
std::vector<Slot> consecutive(const std::vector<Slot>& operations, std::ptrdiff_t first = 0)
{
    std::vector<Slot> expected;
    for (const Slot& slot : operations) {
        expected.push_back({slot.operation, first});
        ++first;
    }
    return expected;
}

template <typename Context>
std::vector<Slot> contextSlots()
{
    return {KO_SLOT(Context, getInteractionManager),
            KO_SLOT(Context, enabled),
            KO_SLOT(Context, disabled),
            KO_SLOT(Context, contextAdded),
            KO_SLOT(Context, contextRemoved),
            KO_SLOT(Context, contextRaised),
            KO_SLOT(Context, contextLowered),
            KO_SLOT(Context, pointerMoved),
            KO_SLOT(Context, cameraMoved),
            KO_SLOT(Context, triggerEvent),
            KO_SLOT(Context, isRaised),
            KO_SLOT(Context, isActive),
            KO_SLOT(Context, isEnabled),
            KO_SLOT(Context, getPreferredPosition)};
}

template <typename Tool>
std::vector<Slot> toolSlots()
{
    return {KO_SLOT(Tool, setToolMode),   KO_SLOT(Tool, activateTool), KO_SLOT(Tool, deactivateTool),
            KO_SLOT(Tool, isActive),      KO_SLOT(Tool, startTool),    KO_SLOT(Tool, processTool),
            KO_SLOT(Tool, stopTool),      KO_SLOT(Tool, triggerTool),  KO_SLOT(Tool, hoverTool),
            KO_SLOT(Tool, stopHoverTool), KO_SLOT(Tool, isPickHint)};
}

template <typename PickerType>
std::vector<Slot> pickerSlots()
{
    return {KO_SLOT(PickerType, getPicked),
            KO_SLOT(PickerType, getPickedPoint),
            KO_SLOT(PickerType, getPickedNode),
            KO_SLOT(PickerType, getPickedNormal),
            KO_SLOT(PickerType, getPickedUV),
            KO_SLOT(PickerType, getPickedMaterial),
            KO_SLOT(PickerType, getMultiPicked),
            KO_SLOT(PickerType, setFullyEnclosed),
            KO_SLOT(PickerType, getFullyEnclosed),
            KO_SLOT(PickerType, setDepthSelection),
            KO_SLOT(PickerType, getDepthSelection),
            KO_SLOT(PickerType, setSelectionRegion),
            KO_SLOT(PickerType, getSelectionRegion),
            KO_SLOT(PickerType, getPickedNodes),
            KO_SLOT(PickerType, setRoot),
            KO_SLOT(PickerType, getRoot),
            KO_SLOT(PickerType, setMakeNormalsConsistent),
            KO_SLOT(PickerType, getMakeNormalsConsistent),
            KO_SLOT(PickerType, setMaterialLayerEvaluationEnabled),
            KO_SLOT(PickerType, setTransparencyEvaluationEnabled),
            KO_SLOT(PickerType, setPointer),
            KO_SLOT(PickerType, getPointer),
            KO_SLOT(PickerType, setCamera),
            KO_SLOT(PickerType, getCamera)};
}

template <typename Visualisation>
std::vector<Slot> visualisationSlots()
{
    return {KO_SLOT(Visualisation, setVisible),       KO_SLOT(Visualisation, isVisible),
            KO_SLOT(Visualisation, getVisualisation), KO_SLOT(Visualisation, addNode),
            KO_SLOT(Visualisation, removeNode),       KO_SLOT(Visualisation, updateNode),
            KO_SLOT(Visualisation, hasNode),          KO_SLOT(Visualisation, updateAllNodes),
            KO_SLOT(Visualisation, removeAllNodes)};
}

int destroyed = 0;

// Concrete, with the hooks that only subclasses see, and counting its destructions.
class PickerProbe : public LazyPicker {
public:
    ~PickerProbe() override { ++destroyed; }

    using LazyPicker::updateSelectionOption;

    void setPointer(const osg::Pnt2f&) override {}
    osg::Pnt2f getPointer() const override { return osg::Pnt2f(); }
    void setCamera(const osg::Matrix&) override {}
    osg::Matrix getCamera() const override { return osg::Matrix(); }

    bool isCacheValid() override { return true; }
    void computePicked(osg::NodePtr&, osg::Pnt3f&, osg::Vec3f&, osg::Vec2f&, osg::MaterialPtr&,
                       osg::SelectionOption*) override
    {}
    void computePickedNodes(std::vector<osg::NodePtr>*, osg::SelectionOption*) override {}
    void computeMultiPicked(MultiMode, std::vector<osg::NodePtr>*, std::vector<osg::Pnt3f>*, std::vector<osg::Vec3f>*,
                            std::vector<osg::MaterialPtr>*) override
    {}
};

class VisualisationProbe : public SelectionVisualisation {
public:
    ~VisualisationProbe() override { ++destroyed; }

    void setVisible(bool) override {}
    bool isVisible() const override { return false; }
    osg::NodePtr getVisualisation() override { return osg::NodePtr(); }
    void addNode(const osg::NodePtr&) override {}
    void removeNode(const osg::NodePtr&) override {}
    void updateNode(const osg::NodePtr&) override {}
    bool hasNode(const osg::NodePtr&) const override { return false; }
    void updateAllNodes() override {}
    void removeAllNodes() override {}
};

// Calls a destructor straight out of the virtual table, as compiled callers do.
void callDestructor(void* object, std::size_t slot)
{
    using Destructor = void (*)(void*);
    const Destructor* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    table[slot](object);
}

// A destructor takes two slots: the one that only destroys, then the one that also frees the memory.
template <typename Probe>
void expectDestructorAt(std::size_t slot)
{
    alignas(Probe) unsigned char memory[sizeof(Probe)];
    destroyed = 0;

    callDestructor(new (memory) Probe, slot);
    EXPECT_EQ(destroyed, 1) << "no destructor in slot " << slot;

    callDestructor(new Probe, slot + 1);
    EXPECT_EQ(destroyed, 2) << "no deleting destructor in slot " << slot + 1;
}

TEST(AbiTest, InteractionContextHasFourteenVirtualOperationsInOrder)
{
    const std::vector<Slot> operations = contextSlots<InteractionContext>();

    EXPECT_EQ(operations.size(), 14u);
    EXPECT_EQ(operations, consecutive(operations));
    EXPECT_EQ(slotCount<InteractionContext>(), 14);
}

TEST(AbiTest, AbstractInteractionContextKeepsTheOrderAndAddsNoVirtualOperation)
{
    const std::vector<Slot> operations = contextSlots<AbstractInteractionContext>();

    EXPECT_EQ(operations, consecutive(operations));
    EXPECT_EQ(slotCount<AbstractInteractionContext>(), 14);
}

TEST(AbiTest, MultimodeInteractionContextAddsSelectModeBehindItsBase)
{
    const std::vector<Slot> operations = contextSlots<MultimodeInteractionContext>();

    EXPECT_EQ(operations, consecutive(operations));
    EXPECT_EQ(testing::virtualSlot(&MultimodeInteractionContext::selectMode), 14);
    EXPECT_EQ(slotCount<MultimodeInteractionContext>(), 15);
}

TEST(AbiTest, ToolInteractionContextAddsSetPickerBehindItsBase)
{
    const std::vector<Slot> operations = contextSlots<ToolInteractionContext>();

    EXPECT_EQ(operations, consecutive(operations));
    EXPECT_EQ(testing::virtualSlot(&ToolInteractionContext::selectMode), 14);
    EXPECT_EQ(testing::virtualSlot(&ToolInteractionContext::setPicker), 15);
    EXPECT_EQ(slotCount<ToolInteractionContext>(), 16);
}

TEST(AbiTest, InteractionToolHasElevenVirtualOperationsInOrder)
{
    const std::vector<Slot> operations = toolSlots<InteractionTool>();

    EXPECT_EQ(operations.size(), 11u);
    EXPECT_EQ(operations, consecutive(operations));
    EXPECT_EQ(slotCount<InteractionTool>(), 11);
}

TEST(AbiTest, AbstractInteractionToolKeepsTheOrderAndAddsNoVirtualOperation)
{
    const std::vector<Slot> operations = toolSlots<AbstractInteractionTool>();

    EXPECT_EQ(operations, consecutive(operations));
    EXPECT_EQ(slotCount<AbstractInteractionTool>(), 11);
}

TEST(AbiTest, PickerHasTwentyFourVirtualOperationsInOrder)
{
    const std::vector<Slot> operations = pickerSlots<Picker>();

    EXPECT_EQ(operations.size(), 24u);
    EXPECT_EQ(operations, consecutive(operations));
}

TEST(AbiTest, LazyPickerKeepsTheOrderOfPicker)
{
    const std::vector<Slot> operations = pickerSlots<LazyPicker>();

    EXPECT_EQ(operations, consecutive(operations));
}

TEST(AbiTest, LazyPickerHasItsDestructorBehindTheOperationsOfPicker)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<LazyPicker>);
    expectDestructorAt<PickerProbe>(24);
}

TEST(AbiTest, LazyPickerHasItsOwnVirtualOperationsBehindItsDestructor)
{
    const std::vector<Slot> operations = {KO_SLOT(PickerProbe, invalidate),
                                          KO_SLOT(PickerProbe, getMaterialLayerEvaluationEnabled),
                                          KO_SLOT(PickerProbe, getTransparencyEvaluationEnabled),
                                          KO_SLOT(PickerProbe, isCacheValid),
                                          KO_SLOT(PickerProbe, computePicked),
                                          KO_SLOT(PickerProbe, computePickedNodes),
                                          KO_SLOT(PickerProbe, computeMultiPicked),
                                          KO_SLOT(PickerProbe, updateSelectionOption)};

    // Slots 24 and 25 are the destructor's.
    EXPECT_EQ(operations, consecutive(operations, 26));
    EXPECT_EQ(slotCount<LazyPicker>(), 34);
}

TEST(AbiTest, SelectionVisualisationHasNineVirtualOperationsInOrder)
{
    const std::vector<Slot> operations = visualisationSlots<SelectionVisualisation>();

    EXPECT_EQ(operations.size(), 9u);
    EXPECT_EQ(operations, consecutive(operations));
}

TEST(AbiTest, SelectionVisualisationHasItsDestructorLast)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<SelectionVisualisation>);
    expectDestructorAt<VisualisationProbe>(9);
    EXPECT_EQ(slotCount<SelectionVisualisation>(), 11);
}

TEST(AbiTest, AbstractSelectionVisualisationAddsFourHooksBehindItsBase)
{
    struct Probe : AbstractSelectionVisualisation {
        using AbstractSelectionVisualisation::createVisualisation;
        using AbstractSelectionVisualisation::removeVisualisation;
        using AbstractSelectionVisualisation::shouldHaveVisualization;
        using AbstractSelectionVisualisation::updateVisualisation;
    };
    const std::vector<Slot> inherited = visualisationSlots<AbstractSelectionVisualisation>();
    const std::vector<Slot> added = {KO_SLOT(Probe, createVisualisation), KO_SLOT(Probe, removeVisualisation),
                                     KO_SLOT(Probe, updateVisualisation), KO_SLOT(Probe, shouldHaveVisualization)};

    EXPECT_EQ(inherited, consecutive(inherited));
    // Slots 9 and 10 are the destructor's.
    EXPECT_EQ(added, consecutive(added, 11));
    EXPECT_EQ(slotCount<AbstractSelectionVisualisation>(), 15);
}

TEST(AbiTest, TheTwoKindsOfVisualisationAddNoVirtualOperation)
{
    const std::vector<Slot> box = visualisationSlots<BoxSelectionVisualisation>();
    const std::vector<Slot> highlight = visualisationSlots<HighlightSelectionVisualisation>();

    EXPECT_EQ(box, consecutive(box));
    EXPECT_EQ(highlight, consecutive(highlight));
    EXPECT_EQ(slotCount<BoxSelectionVisualisation>(), 15);
    EXPECT_EQ(slotCount<HighlightSelectionVisualisation>(), 15);
}

TEST(AbiTest, ContextsAndToolsHaveNoVirtualDestructor)
{
    EXPECT_FALSE(std::has_virtual_destructor_v<InteractionContext>);
    EXPECT_FALSE(std::has_virtual_destructor_v<AbstractInteractionContext>);
    EXPECT_FALSE(std::has_virtual_destructor_v<MultimodeInteractionContext>);
    EXPECT_FALSE(std::has_virtual_destructor_v<ToolInteractionContext>);
    EXPECT_FALSE(std::has_virtual_destructor_v<InteractionTool>);
    EXPECT_FALSE(std::has_virtual_destructor_v<AbstractInteractionTool>);
}

TEST(AbiTest, RecordsAndHubsAreNotPolymorphic)
{
    EXPECT_FALSE(std::is_polymorphic_v<InteractionEvent>);
    EXPECT_FALSE(std::is_polymorphic_v<InteractionManager>);
    EXPECT_FALSE(std::is_polymorphic_v<QtEventMapper>);
    EXPECT_FALSE(std::is_polymorphic_v<NodeSelectionModel>);
    EXPECT_FALSE(std::is_polymorphic_v<SelectionManager>);
}

TEST(AbiTest, PreferredPositionIsASignedInt)
{
    EXPECT_TRUE(std::is_signed_v<std::underlying_type_t<InteractionContext::PreferredPosition>>);
    EXPECT_EQ(sizeof(InteractionContext::PreferredPosition), sizeof(int));
}

} // namespace

} // namespace quon::interaction
