// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace osg;
using quon::testing::addNode;
using quon::testing::hold;
using quon::testing::makeCube;
using quon::testing::makeNode;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;

class ChangeListTest : public quon::testing::SceneFixture {
protected:
    ~ChangeListTest() override { list()->setReadOnly(false); }

    static ChangeList* list() { return Thread::getCurrentChangeList(); }

    /// What was recorded since the last call, but for the volumes: which of those are touched is not promised.
    std::vector<Change> takeChangesButVolumes()
    {
        std::vector<Change> changes;
        for (const Change& change : takeChanges()) {
            if (change.second != Node::VolumeFieldMask) {
                changes.push_back(change);
            }
        }
        return changes;
    }
};

TEST_F(ChangeListTest, MasksOfNodesHaveTheirNumbers)
{
    EXPECT_EQ(AttachmentContainer::AttachmentsFieldMask, 0x2U);
    EXPECT_EQ(Node::VolumeFieldMask, 0x4U);
    EXPECT_EQ(Node::TravMaskFieldMask, 0x8U);
    EXPECT_EQ(Node::ParentFieldMask, 0x10U);
    EXPECT_EQ(Node::ChildrenFieldMask, 0x20U);
    EXPECT_EQ(Node::CoreFieldMask, 0x40U);
    EXPECT_EQ(FieldBits::AllFields, 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(FieldBits::NoField, 0U);
}

TEST_F(ChangeListTest, MasksAreTheBitsOfTheIds)
{
    EXPECT_EQ(Transform::MatrixFieldMask, BitVector(1) << Transform::MatrixFieldId);
    EXPECT_EQ(MaterialGroup::MaterialFieldMask, BitVector(1) << MaterialGroup::MaterialFieldId);
    EXPECT_EQ(MaterialDrawable::MaterialFieldMask, BitVector(1) << MaterialDrawable::MaterialFieldId);
    EXPECT_EQ(Geometry::PositionsFieldMask, BitVector(1) << Geometry::PositionsFieldId);
    EXPECT_EQ(Material::SortKeyFieldMask, BitVector(1) << Material::SortKeyFieldId);
    EXPECT_EQ(ChunkMaterial::ChunksFieldMask, BitVector(1) << ChunkMaterial::ChunksFieldId);
    EXPECT_EQ(SimpleMaterial::DiffuseFieldMask, BitVector(1) << SimpleMaterial::DiffuseFieldId);
    EXPECT_EQ(NodeCore::ParentsFieldMask, BitVector(1) << NodeCore::ParentsFieldId);
}

TEST_F(ChangeListTest, EndEditRecordsTheContainerAndTheMaskAsGiven)
{
    const auto node = hold(Node::create());
    const UInt32 id = getContainerId(node.get());
    takeChanges();

    beginEditCP(node, Node::TravMaskFieldMask);
    endEditCP(node, Node::TravMaskFieldMask);

    EXPECT_THAT(takeChanges(), Contains(Pair(id, Node::TravMaskFieldMask)));
}

TEST_F(ChangeListTest, EveryEndEditIsAnEntryOfItsOwn)
{
    const auto group = hold(Group::create());
    const UInt32 id = getContainerId(group.get());
    takeChanges();

    endEditCP(group, 0x2);
    endEditCP(group, 0x2);
    endEditCP(group, 0x4);

    EXPECT_THAT(takeChanges(), ElementsAre(Pair(id, 0x2U), Pair(id, 0x2U), Pair(id, 0x4U)));
}

TEST_F(ChangeListTest, EndEditWithoutMaskRecordsAllFields)
{
    const auto group = hold(Group::create());
    takeChanges();

    endEditCP(group);

    EXPECT_THAT(takeChanges(), ElementsAre(Pair(getContainerId(group.get()), FieldBits::AllFields)));
}

TEST_F(ChangeListTest, BeginEditRecordsNothing)
{
    const auto node = hold(Node::create());
    takeChanges();

    beginEditCP(node, Node::ChildrenFieldMask);

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(ChangeListTest, BracketsIgnoreNull)
{
    beginEditCP(NodePtr(), Node::ChildrenFieldMask);
    endEditCP(NodePtr(), Node::ChildrenFieldMask);
    changedCP(NodePtr(), Node::ChildrenFieldMask);
    endEditNotChangedCP(NodePtr(), Node::ChildrenFieldMask);

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(ChangeListTest, AddChildRecordsTheParentOfTheChildOnly)
{
    const auto parent = hold(Node::create());
    const auto child = hold(Node::create());
    takeChanges();

    parent->addChild(child);

    EXPECT_THAT(takeChangesButVolumes(), ElementsAre(Pair(getContainerId(child.get()), Node::ParentFieldMask)));
}

TEST_F(ChangeListTest, TheCallerRecordsTheChildren)
{
    const auto parent = hold(Node::create());
    const auto child = hold(Node::create());
    takeChanges();

    beginEditCP(parent, Node::ChildrenFieldMask);
    parent->addChild(child);
    endEditCP(parent, Node::ChildrenFieldMask);

    EXPECT_THAT(takeChangesButVolumes(),
                ElementsAre(Pair(getContainerId(child.get()), 0x10U), Pair(getContainerId(parent.get()), 0x20U)));
}

TEST_F(ChangeListTest, SubChildRecordsTheParentOfTheChild)
{
    const auto parent = hold(Node::create());
    const auto child = hold(addNode(parent));
    takeChanges();

    parent->subChild(child);

    EXPECT_THAT(takeChangesButVolumes(), ElementsAre(Pair(getContainerId(child.get()), Node::ParentFieldMask)));
}

TEST_F(ChangeListTest, ReplaceChildRecordsTheParentsOfBothChildren)
{
    const auto parent = hold(Node::create());
    const auto oldChild = hold(addNode(parent));
    const auto newChild = hold(Node::create());
    takeChanges();

    parent->replaceChild(0, newChild);

    const auto changes = takeChanges();
    EXPECT_THAT(changes, Contains(Pair(getContainerId(oldChild.get()), Node::ParentFieldMask)));
    EXPECT_THAT(changes, Contains(Pair(getContainerId(newChild.get()), Node::ParentFieldMask)));
}

TEST_F(ChangeListTest, MovingAChildRecordsTheChildrenOfTheOldParent)
{
    const auto oldParent = hold(Node::create());
    const auto newParent = hold(Node::create());
    const NodePtr child = addNode(oldParent);
    takeChanges();

    newParent->addChild(child);

    const auto changes = takeChanges();
    EXPECT_THAT(changes, Contains(Pair(getContainerId(oldParent.get()), Node::ChildrenFieldMask)));
    EXPECT_THAT(changes, Not(Contains(Pair(getContainerId(newParent.get()), Node::ChildrenFieldMask))));
}

TEST_F(ChangeListTest, SetCoreRecordsTheParentsOfTheCore)
{
    const auto node = hold(Node::create());
    const auto core = hold(Group::create());
    takeChanges();

    node->setCore(core.get());

    EXPECT_THAT(takeChanges(), Contains(Pair(getContainerId(core.get()), NodeCore::ParentsFieldMask)));
}

TEST_F(ChangeListTest, SettingAPropertyRecordsItsParents)
{
    const auto geometry = hold(Geometry::create());
    const auto positions = hold(GeoPositions3f::create());
    takeChanges();

    geometry->setPositions(positions.get());

    EXPECT_THAT(takeChanges(), Contains(Pair(getContainerId(positions.get()), Attachment::ParentsFieldMask)));
}

TEST_F(ChangeListTest, HidingAChildRecordsTheVolumeOfItsParent)
{
    const auto parent = hold(makeNode(Group::create()));
    const NodePtr child = addNode(parent, makeCube());
    takeChanges();

    child->setTravMask(0);
    EXPECT_THAT(takeChanges(), IsEmpty());

    endEditCP(child, Node::TravMaskFieldMask);

    const auto changes = takeChanges();
    EXPECT_THAT(changes, Contains(Pair(getContainerId(child), Node::TravMaskFieldMask)));
    EXPECT_THAT(changes, Contains(Pair(getContainerId(parent.get()), Node::VolumeFieldMask)));
}

TEST_F(ChangeListTest, SettersRecordNothingWithoutAnEdit)
{
    const auto material = hold(SimpleMaterial::create());
    const auto transform = hold(Transform::create());
    const auto node = hold(Node::create());
    takeChanges();

    material->setDiffuse(Color3f(1, 0, 0));
    transform->setMatrix(Matrix());
    node->setTravMask(3);

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(ChangeListTest, CountsReferencesAndCreationsAndDestructions)
{
    list()->clearAll();

    NodePtr node = Node::create();
    const UInt32 id = getContainerId(node);
    addRefCP(node);
    addRefCP(node);
    subRefCP(node);
    subRefCP(node);

    EXPECT_THAT(std::vector<UInt32>(list()->beginCreated(), list()->endCreated()), ElementsAre(id));
    EXPECT_THAT(std::vector<UInt32>(list()->beginAddRefd(), list()->endAddRefd()), ElementsAre(id, id));
    EXPECT_THAT(std::vector<UInt32>(list()->beginSubRefd(), list()->endSubRefd()), ElementsAre(id));
    EXPECT_THAT(std::vector<UInt32>(list()->beginDestroyed(), list()->endDestroyed()), ElementsAre(id));
    EXPECT_EQ(list()->sizeCreated(), 1U);
    EXPECT_EQ(list()->sizeAddRefd(), 2U);
    EXPECT_EQ(list()->sizeSubRefd(), 1U);
    EXPECT_EQ(list()->sizeDestroyed(), 1U);
}

TEST_F(ChangeListTest, ClearingForgetsEverything)
{
    const auto node = hold(Node::create());
    endEditCP(node);

    list()->clearAll();

    EXPECT_TRUE(list()->empty());
    EXPECT_EQ(list()->sizeChanged(), 0U);
    EXPECT_EQ(list()->sizeCreated(), 0U);
    EXPECT_EQ(list()->sizeAddRefd(), 0U);
}

TEST_F(ChangeListTest, MergingAppendsTheOtherList)
{
    const auto group = hold(Group::create());
    const UInt32 id = getContainerId(group.get());
    ChangeList other;
    other.setReadOnly(false);
    takeChanges();
    endEditCP(group, 0x2);

    other.merge(*list());
    other.merge(*list());

    EXPECT_THAT(std::vector<Change>(other.beginChanged(), other.endChanged()),
                ElementsAre(Pair(id, 0x2U), Pair(id, 0x2U)));
    EXPECT_EQ(list()->sizeChanged(), 1U);
}

TEST_F(ChangeListTest, AReadOnlyListRecordsNothing)
{
    list()->clearAll();
    list()->setReadOnly(true);

    {
        const auto node = hold(Node::create());
        endEditCP(node);
    }

    EXPECT_TRUE(list()->empty());
    EXPECT_EQ(list()->sizeDestroyed(), 0U);
}

TEST_F(ChangeListTest, RecordsAgainOnceItIsWritable)
{
    list()->setReadOnly(true);
    list()->setReadOnly(false);
    const auto group = hold(Group::create());
    takeChanges();

    endEditCP(group, 0x2);

    EXPECT_THAT(takeChanges(), ElementsAre(Pair(getContainerId(group.get()), 0x2U)));
}

TEST_F(ChangeListTest, EditorsEndTheEditWithTheirScope)
{
    const auto held = hold(Group::create());
    const GroupPtr group = held;
    takeChanges();
    {
        CPEditor editor(group, 0x2);
        EXPECT_THAT(takeChanges(), IsEmpty());
    }
    EXPECT_THAT(takeChanges(), ElementsAre(Pair(getContainerId(group), 0x2U)));
    {
        CPEdit(group, 0x4);
    }
    EXPECT_THAT(takeChanges(), ElementsAre(Pair(getContainerId(group), 0x4U)));
    {
        CPEditAll(group);
    }
    EXPECT_THAT(takeChanges(), ElementsAre(Pair(getContainerId(group), FieldBits::AllFields)));
}

TEST_F(ChangeListTest, MergingAppendsEveryKind)
{
    ChangeList first;
    ChangeList second;
    first.setReadOnly(false);
    second.setReadOnly(false);
    first.addCreated(1);
    second.addCreated(2);
    second.addAddRefd(3);
    second.addSubRefd(4);
    second.addDestroyed(5);
    second.addChanged(6, 0x40);

    first.merge(second);

    EXPECT_THAT(std::vector<UInt32>(first.beginCreated(), first.endCreated()), ElementsAre(1U, 2U));
    EXPECT_THAT(std::vector<UInt32>(first.beginAddRefd(), first.endAddRefd()), ElementsAre(3U));
    EXPECT_THAT(std::vector<UInt32>(first.beginSubRefd(), first.endSubRefd()), ElementsAre(4U));
    EXPECT_THAT(std::vector<UInt32>(first.beginDestroyed(), first.endDestroyed()), ElementsAre(5U));
    EXPECT_THAT(std::vector<Change>(first.beginChanged(), first.endChanged()), ElementsAre(Pair(6U, 0x40U)));
    EXPECT_EQ(second.sizeCreated(), 1U);
}

TEST_F(ChangeListTest, SwappingExchangesEveryKind)
{
    ChangeList first;
    ChangeList second;
    first.setReadOnly(false);
    second.setReadOnly(false);
    first.addCreated(1);
    first.addChanged(2, 0x8);
    second.addAddRefd(3);
    second.addSubRefd(4);
    second.addDestroyed(5);
    second.addChanged(6, 0x40);

    first.swap(second);

    EXPECT_EQ(first.sizeCreated(), 0U);
    EXPECT_THAT(std::vector<UInt32>(first.beginAddRefd(), first.endAddRefd()), ElementsAre(3U));
    EXPECT_THAT(std::vector<UInt32>(first.beginSubRefd(), first.endSubRefd()), ElementsAre(4U));
    EXPECT_THAT(std::vector<UInt32>(first.beginDestroyed(), first.endDestroyed()), ElementsAre(5U));
    EXPECT_THAT(std::vector<Change>(first.beginChanged(), first.endChanged()), ElementsAre(Pair(6U, 0x40U)));
    EXPECT_THAT(std::vector<UInt32>(second.beginCreated(), second.endCreated()), ElementsAre(1U));
    EXPECT_THAT(std::vector<Change>(second.beginChanged(), second.endChanged()), ElementsAre(Pair(2U, 0x8U)));
    EXPECT_EQ(second.sizeAddRefd(), 0U);
}

TEST_F(ChangeListTest, ChangedIsEndOfEdit)
{
    const auto group = hold(Group::create());
    takeChanges();

    changedCP(group, 0x2);
    changedCP(NullFC, 0x2);

    EXPECT_THAT(takeChanges(), ElementsAre(Pair(getContainerId(group.get()), 0x2U)));
}

} // namespace
