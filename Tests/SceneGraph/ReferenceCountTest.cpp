// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::addNode;
using quon::testing::hold;
using quon::testing::isAlive;
using quon::testing::makeNode;

class ReferenceCountTest : public quon::testing::SceneFixture {};

TEST_F(ReferenceCountTest, ACreatedContainerHasNoOwner)
{
    NodePtr node = Node::create();
    GroupPtr group = Group::create();
    SimpleMaterialPtr material = SimpleMaterial::create();

    EXPECT_EQ(node.getRefCount(), 0);
    EXPECT_EQ(group.getRefCount(), 0);
    EXPECT_EQ(material.getRefCount(), 0);

    subRefCP(node);
    subRefCP(group);
    subRefCP(material);
}

TEST_F(ReferenceCountTest, AddingAndReleasingCountsByOne)
{
    NodePtr node = Node::create();

    addRefCP(node);
    EXPECT_EQ(node.getRefCount(), 1);
    addRefCP(node);
    EXPECT_EQ(node.getRefCount(), 2);
    subRefCP(node);
    EXPECT_EQ(node.getRefCount(), 1);

    subRefCP(node);
}

TEST_F(ReferenceCountTest, ReleasingToZeroDestroys)
{
    NodePtr node = Node::create();
    const UInt32 id = getContainerId(node);
    addRefCP(node);

    subRefCP(node);

    EXPECT_FALSE(isAlive(id));
}

TEST_F(ReferenceCountTest, ReleasingWhatNobodyOwnsDestroys)
{
    NodePtr node = Node::create();
    const UInt32 id = getContainerId(node);

    subRefCP(node);

    EXPECT_FALSE(isAlive(id));
}

TEST_F(ReferenceCountTest, TheHandleOfTheLastReleaseBecomesNullAndItsCopiesDoNot)
{
    NodePtr node = Node::create();
    const NodePtr copy = node;

    subRefCP(node);

    EXPECT_TRUE(node == NullFC);
    EXPECT_TRUE(copy != NullFC);
}

TEST_F(ReferenceCountTest, TheHandleOfAnEarlierReleaseStays)
{
    const auto held = hold(Node::create());
    NodePtr node = held;
    addRefCP(node);

    subRefCP(node);

    EXPECT_TRUE(node == held);
}

TEST_F(ReferenceCountTest, NullIsIgnored)
{
    NodePtr node;

    addRefCP(node);
    subRefCP(node);
    clearRefCP(node);
    setRefdCP(node, NullFC);
    addRefCP(NullFC);
    subRefCP(NullFC);

    EXPECT_TRUE(node == NullFC);
}

TEST_F(ReferenceCountTest, ClearReleasesAndForgets)
{
    const auto held = hold(Node::create());
    NodePtr node = held;
    addRefCP(node);

    clearRefCP(node);

    EXPECT_TRUE(node == NullFC);
    EXPECT_EQ(held.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, SetReleasesTheOldAndHoldsTheNew)
{
    const auto oldNode = hold(Node::create());
    const auto newNode = hold(Node::create());
    NodePtr node = oldNode;
    addRefCP(node);

    setRefdCP(node, newNode.get());

    EXPECT_TRUE(node == newNode);
    EXPECT_EQ(oldNode.get().getRefCount(), 1);
    EXPECT_EQ(newNode.get().getRefCount(), 2);

    setRefdCP(node, NullFC);

    EXPECT_TRUE(node == NullFC);
    EXPECT_EQ(newNode.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, SettingTheSameChangesNothing)
{
    const auto held = hold(Node::create());
    NodePtr node = held;

    setRefdCP(node, held.get());

    EXPECT_EQ(held.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AChildIsHeldByItsParent)
{
    const auto parent = hold(Node::create());
    const auto child = hold(Node::create());

    parent->addChild(child);
    EXPECT_EQ(child.get().getRefCount(), 2);
    EXPECT_EQ(parent.get().getRefCount(), 1);

    parent->subChild(child);
    EXPECT_EQ(child.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AnInsertedChildIsHeldByItsParent)
{
    const auto parent = hold(Node::create());
    const auto child = hold(Node::create());

    parent->insertChild(0, child);

    EXPECT_EQ(child.get().getRefCount(), 2);
}

TEST_F(ReferenceCountTest, MovingAChildKeepsItsCount)
{
    const auto oldParent = hold(Node::create());
    const auto newParent = hold(Node::create());
    const NodePtr child = addNode(oldParent);

    newParent->addChild(child);

    EXPECT_EQ(child.getRefCount(), 1);
    EXPECT_TRUE(child->getParent() == newParent);
}

TEST_F(ReferenceCountTest, AddingAChildTwiceKeepsItsCount)
{
    const auto parent = hold(Node::create());
    const NodePtr child = addNode(parent);

    parent->addChild(child);

    EXPECT_EQ(child.getRefCount(), 1);
}

TEST_F(ReferenceCountTest, ReplacingHoldsTheNewAndReleasesTheOldChild)
{
    const auto parent = hold(Node::create());
    const auto oldChild = hold(addNode(parent));
    const NodePtr newChild = Node::create();

    parent->replaceChild(0, newChild);

    EXPECT_EQ(newChild.getRefCount(), 1);
    EXPECT_EQ(oldChild.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, ReplacingBeyondTheLastChildHoldsNothing)
{
    const auto parent = hold(Node::create());
    NodePtr newChild = Node::create();

    parent->replaceChild(0, newChild);

    EXPECT_EQ(newChild.getRefCount(), 0);
    subRefCP(newChild);
}

TEST_F(ReferenceCountTest, ANodeHoldsItsCore)
{
    const auto node = hold(Node::create());
    const auto oldCore = hold(Group::create());
    const auto newCore = hold(Group::create());

    node->setCore(oldCore.get());
    EXPECT_EQ(oldCore.get().getRefCount(), 2);

    node->setCore(newCore.get());
    EXPECT_EQ(oldCore.get().getRefCount(), 1);
    EXPECT_EQ(newCore.get().getRefCount(), 2);

    node->setCore(NullFC);
    EXPECT_EQ(newCore.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, SettingTheSameCoreAgainKeepsItsCount)
{
    const auto node = hold(makeNode(Group::create()));

    node->setCore(node->getCore());

    EXPECT_EQ(node->getCore().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AMaterialGroupHoldsItsMaterial)
{
    const auto group = hold(MaterialGroup::create());
    const auto oldMaterial = hold(SimpleMaterial::create());
    const auto newMaterial = hold(SimpleMaterial::create());

    group->setMaterial(oldMaterial.get());
    EXPECT_EQ(oldMaterial.get().getRefCount(), 2);

    group->setMaterial(oldMaterial.get());
    EXPECT_EQ(oldMaterial.get().getRefCount(), 2);

    group->setMaterial(newMaterial.get());
    EXPECT_EQ(oldMaterial.get().getRefCount(), 1);
    EXPECT_EQ(newMaterial.get().getRefCount(), 2);
}

TEST_F(ReferenceCountTest, AMaterialGroupKeepsAMaterialThatOnlyItHoldsWhenSetAgain)
{
    const auto group = hold(MaterialGroup::create());
    group->setMaterial(SimpleMaterial::create());
    const MaterialPtr material = group->getMaterial();

    group->setMaterial(material);

    EXPECT_EQ(material.getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AGeometryHoldsItsMaterial)
{
    const auto geometry = hold(Geometry::create());
    const auto oldMaterial = hold(SimpleMaterial::create());
    const auto newMaterial = hold(SimpleMaterial::create());

    geometry->setMaterial(oldMaterial.get());
    geometry->setMaterial(oldMaterial.get());
    EXPECT_EQ(oldMaterial.get().getRefCount(), 2);

    geometry->setMaterial(newMaterial.get());
    EXPECT_EQ(oldMaterial.get().getRefCount(), 1);
    EXPECT_EQ(newMaterial.get().getRefCount(), 2);

    geometry->setMaterial(NullFC);
    EXPECT_EQ(newMaterial.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AGeometryHoldsItsProperties)
{
    const auto geometry = hold(Geometry::create());
    const auto types = hold(GeoPTypesUI8::create());
    const auto lengths = hold(GeoPLengthsUI32::create());
    const auto positions = hold(GeoPositions3f::create());
    const auto indices = hold(GeoIndicesUI32::create());

    geometry->setTypes(types.get());
    geometry->setLengths(lengths.get());
    geometry->setPositions(positions.get());
    geometry->setIndices(indices.get());

    EXPECT_EQ(types.get().getRefCount(), 2);
    EXPECT_EQ(lengths.get().getRefCount(), 2);
    EXPECT_EQ(positions.get().getRefCount(), 2);
    EXPECT_EQ(indices.get().getRefCount(), 2);

    geometry->setPositions(positions.get());
    EXPECT_EQ(positions.get().getRefCount(), 2);

    geometry->setPositions(NullFC);
    EXPECT_EQ(positions.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AMaterialHoldsItsChunksOnceUntilItsStateIsBuilt)
{
    const auto material = hold(ChunkMaterial::create());
    const LineChunkPtr chunk = LineChunk::create();

    material->addChunk(chunk);
    EXPECT_EQ(chunk.getRefCount(), 1);

    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    EXPECT_EQ(chunk.getRefCount(), 2);

    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    EXPECT_EQ(chunk.getRefCount(), 2);
}

TEST_F(ReferenceCountTest, ASimpleMaterialHoldsItsChunksTwiceAfterTheEdit)
{
    const auto material = hold(SimpleMaterial::create());
    const LineChunkPtr chunk = LineChunk::create();

    material->addChunk(chunk, -2);
    EXPECT_EQ(chunk.getRefCount(), 1);

    endEditCP(material);
    EXPECT_EQ(chunk.getRefCount(), 2);
}

TEST_F(ReferenceCountTest, AChunkOfTwoMaterialsIsHeldTwiceByEach)
{
    const auto first = hold(ChunkMaterial::create());
    const auto second = hold(SimpleMaterial::create());
    const LineChunkPtr chunk = LineChunk::create();

    first->addChunk(chunk);
    second->addChunk(chunk);
    endEditCP(first);
    endEditCP(second);

    EXPECT_EQ(chunk.getRefCount(), 4);
}

TEST_F(ReferenceCountTest, AddingAChunkTwiceHoldsItTwice)
{
    const auto material = hold(ChunkMaterial::create());
    const LineChunkPtr chunk = LineChunk::create();

    material->addChunk(chunk);
    material->addChunk(chunk);

    EXPECT_EQ(chunk.getRefCount(), 2);
}

TEST_F(ReferenceCountTest, SubtractingAChunkReleasesOneAndTheEditTheOther)
{
    const auto material = hold(ChunkMaterial::create());
    const auto chunk = hold(LineChunk::create());
    material->addChunk(chunk.get());
    endEditCP(material);
    EXPECT_EQ(chunk.get().getRefCount(), 3);

    material->subChunk(chunk.get());
    EXPECT_EQ(chunk.get().getRefCount(), 2);

    endEditCP(material);
    EXPECT_EQ(chunk.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, SubtractingAChunkFromASimpleMaterialReleasesItWithTheEdit)
{
    const auto material = hold(SimpleMaterial::create());
    const auto chunk = hold(LineChunk::create());
    material->addChunk(chunk.get(), -2);
    endEditCP(material);

    material->subChunk(chunk.get());
    endEditCP(material);

    EXPECT_EQ(chunk.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AContainerHoldsItsAttachments)
{
    const auto node = hold(Node::create());
    const auto attachment = hold(GeoPositions3f::create());

    node->addAttachment(attachment.get());
    EXPECT_EQ(attachment.get().getRefCount(), 2);

    node->subAttachment(attachment.get());
    EXPECT_EQ(attachment.get().getRefCount(), 1);
}

TEST_F(ReferenceCountTest, AShallowCopyOfANodeSharesItsCore)
{
    const auto node = hold(makeNode(Group::create()));
    const auto parent = hold(Node::create());
    parent->addChild(node);
    addNode(node);
    node->setTravMask(6);

    const auto copy = hold(NodePtr::dcast(node->shallowCopy()));

    EXPECT_EQ(copy.get().getRefCount(), 1);
    EXPECT_TRUE(copy->getCore() == node->getCore());
    EXPECT_EQ(node->getCore().getRefCount(), 2);
    EXPECT_EQ(node->getCore()->getParents().size(), 2U);
    EXPECT_EQ(copy->getNChildren(), 0U);
    EXPECT_TRUE(copy->getParent() == NullFC);
    EXPECT_EQ(copy->getTravMask(), 6U);
}

TEST_F(ReferenceCountTest, AShallowCopyHasNoOwner)
{
    const auto node = hold(Node::create());

    FieldContainerPtr copy = node->shallowCopy();

    EXPECT_EQ(copy.getRefCount(), 0);
    EXPECT_TRUE(copy != node.get());
    subRefCP(copy);
}

TEST_F(ReferenceCountTest, AShallowCopyOfAMaterialCopiesItsFields)
{
    const auto material = hold(SimpleMaterial::create());
    material->setDiffuse(Color3f(1, 0, 0));
    material->setSortKey(17);

    const auto copy = hold(SimpleMaterialPtr::dcast(material->shallowCopy()));

    EXPECT_EQ(copy->getDiffuse(), Color3f(1, 0, 0));
    EXPECT_EQ(copy->getSortKey(), 17);
}

} // namespace
