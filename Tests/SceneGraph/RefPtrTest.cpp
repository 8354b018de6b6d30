// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace {

using namespace osg;
using quon::testing::isAlive;

class RefPtrTest : public quon::testing::SceneFixture {};

TEST_F(RefPtrTest, AFreshReferenceIsNull)
{
    const RefPtr<NodePtr> reference;

    EXPECT_TRUE(reference == NullFC);
    EXPECT_TRUE(!reference);
    EXPECT_TRUE(reference.get() == NullFC);
}

TEST_F(RefPtrTest, AReferenceCountsWhileItLives)
{
    NodePtr node = Node::create();
    addRefCP(node);
    {
        const RefPtr<NodePtr> reference(node);
        EXPECT_EQ(node.getRefCount(), 2);
    }

    EXPECT_EQ(node.getRefCount(), 1);
    subRefCP(node);
}

TEST_F(RefPtrTest, TheLastReferenceDestroysItsContainer)
{
    const UInt32 id = [] {
        const RefPtr<NodePtr> reference(Node::create());
        EXPECT_TRUE(isAlive(getContainerId(reference.get())));
        return getContainerId(reference.get());
    }();

    EXPECT_FALSE(isAlive(id));
}

TEST_F(RefPtrTest, ACopyCountsOnceMore)
{
    const RefPtr<NodePtr> reference(Node::create());
    {
        const RefPtr<NodePtr> copy(reference);
        EXPECT_EQ(reference.get().getRefCount(), 2);
        EXPECT_TRUE(copy == reference);
    }

    EXPECT_EQ(reference.get().getRefCount(), 1);
}

TEST_F(RefPtrTest, AssignmentReleasesTheOldContainerAndHoldsTheNewOne)
{
    RefPtr<NodePtr> reference(Node::create());
    const UInt32 oldId = getContainerId(reference.get());
    const NodePtr node = Node::create();

    reference = node;

    EXPECT_FALSE(isAlive(oldId));
    EXPECT_EQ(node.getRefCount(), 1);
}

TEST_F(RefPtrTest, AssigningTheSameContainerChangesNothing)
{
    RefPtr<NodePtr> reference(Node::create());
    const NodePtr node = reference;

    reference = node;
    const RefPtr<NodePtr>& same = reference;
    reference = same;

    EXPECT_EQ(node.getRefCount(), 1);
}

TEST_F(RefPtrTest, AssigningAReferenceSharesTheContainer)
{
    const RefPtr<NodePtr> first(Node::create());
    RefPtr<NodePtr> second;

    second = first;

    EXPECT_EQ(first.get().getRefCount(), 2);
}

TEST_F(RefPtrTest, AssigningNullReleases)
{
    RefPtr<NodePtr> reference(Node::create());
    const UInt32 id = getContainerId(reference.get());

    reference = NullFC;

    EXPECT_TRUE(reference == NullFC);
    EXPECT_FALSE(isAlive(id));
}

TEST_F(RefPtrTest, AReferenceIsPassedAsAHandle)
{
    const RefPtr<NodePtr> parent(Node::create());
    const RefPtr<NodePtr> child(Node::create());
    const RefPtr<GroupPtr> group(Group::create());

    parent->addChild(child);
    parent->setCore(group.get());

    EXPECT_TRUE(child->getParent() == parent);
    EXPECT_EQ(child.get().getRefCount(), 2);
    EXPECT_EQ(group.get().getRefCount(), 2);

    parent->subChild(child);

    EXPECT_EQ(child.get().getRefCount(), 1);
}

TEST_F(RefPtrTest, ComparesWithHandlesFromBothSides)
{
    const RefPtr<NodePtr> reference(Node::create());
    const RefPtr<NodePtr> other(Node::create());
    const NodePtr node = reference;

    EXPECT_TRUE(reference == node);
    EXPECT_TRUE(node == reference);
    EXPECT_FALSE(other == node);
    EXPECT_TRUE(node != other);
    EXPECT_TRUE(other != node);
    EXPECT_TRUE(reference != NullFC);
    EXPECT_TRUE(reference != other);
}

TEST_F(RefPtrTest, AReferenceMayHoldABaseOfWhatItIsGiven)
{
    const SimpleMaterialPtr simple = SimpleMaterial::create();

    const RefPtr<MaterialPtr> reference(simple);

    EXPECT_EQ(simple.getRefCount(), 1);
    EXPECT_TRUE(reference == simple);
}

TEST_F(RefPtrTest, ReferencesLiveInAMapById)
{
    std::map<unsigned int, RefPtr<NodePtr>> nodes;
    const NodePtr first = Node::create();
    const NodePtr second = Node::create();
    const UInt32 firstId = getContainerId(first);
    const UInt32 secondId = getContainerId(second);

    nodes[firstId] = first;
    nodes.insert(std::make_pair(secondId, RefPtr<NodePtr>(second)));

    EXPECT_EQ(first.getRefCount(), 1);
    EXPECT_EQ(second.getRefCount(), 1);
    EXPECT_TRUE(nodes[firstId] == first);
    EXPECT_TRUE(first == nodes[firstId]);

    nodes.erase(firstId);
    EXPECT_FALSE(isAlive(firstId));

    nodes.clear();
    EXPECT_FALSE(isAlive(secondId));
}

TEST_F(RefPtrTest, AHandleIsPutIntoAMapOfReferencesAsItIs)
{
    std::map<unsigned int, RefPtr<NodePtr>> nodes;
    const NodePtr first = Node::create();
    const NodePtr second = Node::create();

    nodes.insert(std::make_pair(1U, first));
    nodes.emplace(2U, second);

    EXPECT_EQ(first.getRefCount(), 1);
    EXPECT_EQ(second.getRefCount(), 1);
    EXPECT_TRUE(nodes[3U] == NullFC);
}

TEST_F(RefPtrTest, ReadyMadeNamesAreTheSameTypes)
{
    static_assert(std::is_same_v<NodeRefPtr, RefPtr<NodePtr>>);
    static_assert(std::is_same_v<MaterialRefPtr, RefPtr<MaterialPtr>>);
    static_assert(std::is_same_v<RefPtr<NodePtr>::FCPtrType, NodePtr>);
    static_assert(std::is_same_v<RefPtr<NodePtr>::StoredObjectType, Node>);

    const NodeRefPtr reference(Node::create());

    EXPECT_EQ(reference.get().getRefCount(), 1);
}

} // namespace
