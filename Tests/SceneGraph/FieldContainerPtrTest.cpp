// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::makeNode;

class FieldContainerPtrTest : public quon::testing::SceneFixture {};

TEST_F(FieldContainerPtrTest, AFreshHandleIsNull)
{
    const NodePtr node;
    const NodePtr fromNull = NullFC;

    EXPECT_TRUE(node == NullFC);
    EXPECT_TRUE(NullFC == node);
    EXPECT_FALSE(node != NullFC);
    EXPECT_TRUE(!node);
    EXPECT_FALSE(static_cast<bool>(node));
    EXPECT_TRUE(node == fromNull);
}

TEST_F(FieldContainerPtrTest, AHandleOfAContainerIsNotNull)
{
    const auto node = hold(Node::create());
    const NodePtr handle = node;

    EXPECT_FALSE(handle == NullFC);
    EXPECT_TRUE(handle != NullFC);
    EXPECT_FALSE(!handle);
    bool isTrue = false;
    if (handle) {
        isTrue = true;
    }
    EXPECT_TRUE(isTrue);
}

TEST_F(FieldContainerPtrTest, CopiesOfAHandleAreEqualAndDoNotCount)
{
    const auto node = hold(Node::create());

    const NodePtr copy = node;
    const NodePtr another(copy);

    EXPECT_TRUE(copy == another);
    EXPECT_FALSE(copy != another);
    EXPECT_EQ(copy.getRefCount(), 1);
}

TEST_F(FieldContainerPtrTest, HandlesOfDifferentTypesCompareByContainer)
{
    const auto group = hold(Group::create());
    const auto node = hold(Node::create());
    const GroupPtr derived = group;
    const NodeCorePtr base = derived;
    const FieldContainerPtr root = base;
    const NodePtr other = node;

    EXPECT_TRUE(derived == base);
    EXPECT_TRUE(root == derived);
    EXPECT_TRUE(other != derived);
}

TEST_F(FieldContainerPtrTest, AssigningNullForgetsTheContainer)
{
    const auto node = hold(Node::create());
    NodePtr handle = node;

    handle = NullFC;

    EXPECT_TRUE(handle == NullFC);
    EXPECT_EQ(node.get().getRefCount(), 1);
}

TEST_F(FieldContainerPtrTest, AssigningToABaseHandleKeepsTheContainer)
{
    const auto node = hold(Node::create());
    const NodePtr handle = node;
    FieldContainerPtr base;

    base = handle;

    EXPECT_TRUE(base == handle);
}

TEST_F(FieldContainerPtrTest, AConstantHandleGivesAChangeableContainer)
{
    const auto node = hold(Node::create());
    const NodePtr handle = node;

    handle->setTravMask(5);

    EXPECT_EQ((*handle).getTravMask(), 5U);
}

TEST_F(FieldContainerPtrTest, AContainerGivesAHandleOfItself)
{
    const auto node = hold(Node::create());
    const NodePtr handle = node;

    const NodePtr fromReference(*handle);
    const NodePtr fromPointer(&*handle);

    EXPECT_TRUE(fromReference == handle);
    EXPECT_TRUE(fromPointer == handle);
}

TEST_F(FieldContainerPtrTest, NullIsBeforeEveryContainerAndNothingIsBeforeNull)
{
    const auto node = hold(Node::create());
    const NodePtr handle = node;
    const NodePtr null;

    EXPECT_TRUE(null < handle);
    EXPECT_FALSE(handle < null);
    EXPECT_FALSE(handle < NullFC);
    EXPECT_TRUE(NullFC < handle);
    EXPECT_FALSE(handle < handle);
}

TEST_F(FieldContainerPtrTest, OrderOfTwoContainersIsStrict)
{
    const auto first = hold(Node::create());
    const auto second = hold(Node::create());
    const NodePtr a = first;
    const NodePtr b = second;

    EXPECT_NE(a < b, b < a);
}

TEST_F(FieldContainerPtrTest, HandlesAreKeysOfSetsAndMaps)
{
    const auto first = hold(Node::create());
    const auto second = hold(Node::create());
    std::set<NodePtr> set;
    std::map<NodePtr, int> map;

    set.insert(first);
    set.insert(second);
    set.insert(first);
    map[first] = 1;
    map[second] = 2;

    EXPECT_EQ(set.size(), 2U);
    EXPECT_EQ(set.count(first), 1U);
    EXPECT_EQ(map[second], 2);
    EXPECT_EQ(set.erase(first), 1U);
    EXPECT_EQ(set.count(first), 0U);
}

TEST_F(FieldContainerPtrTest, ANullHandleCountsZero)
{
    EXPECT_EQ(NodePtr().getRefCount(), 0);
    EXPECT_EQ(NodePtr(NullFC).getRefCount(), 0);
}

TEST_F(FieldContainerPtrTest, DcastFindsTheDerivedType)
{
    const auto node = hold(makeNode(Group::create()));
    const NodeCorePtr core = node->getCore();

    const GroupPtr group = GroupPtr::dcast(core);

    EXPECT_TRUE(group != NullFC);
    EXPECT_TRUE(group == core);
}

TEST_F(FieldContainerPtrTest, DcastToABaseTypeOfTheContainerSucceeds)
{
    const auto node = hold(makeNode(Transform::create()));

    EXPECT_TRUE(GroupPtr::dcast(node->getCore()) == node->getCore());
    EXPECT_TRUE(NodeCorePtr::dcast(node->getCore()) == node->getCore());
    EXPECT_TRUE(AttachmentContainerPtr::dcast(node->getCore()) == node->getCore());
}

TEST_F(FieldContainerPtrTest, DcastToAnotherTypeGivesNull)
{
    const auto node = hold(makeNode(Group::create()));
    const FieldContainerPtr asContainer = node.get();

    EXPECT_TRUE(TransformPtr::dcast(node->getCore()) == NullFC);
    EXPECT_TRUE(GeometryPtr::dcast(node->getCore()) == NullFC);
    EXPECT_TRUE(MaterialPtr::dcast(asContainer) == NullFC);
    EXPECT_TRUE(NodePtr::dcast(asContainer) == node);
}

TEST_F(FieldContainerPtrTest, DcastOfNullGivesNull)
{
    EXPECT_TRUE(NodePtr::dcast(FieldContainerPtr()) == NullFC);
    EXPECT_TRUE(GroupPtr::dcast(NodeCorePtr(NullFC)) == NullFC);
    EXPECT_TRUE(AttachmentContainerPtr::dcast(FieldContainerPtr()) == NullFC);
    EXPECT_TRUE(AttachmentPtr::dcast(FieldContainerPtr()) == NullFC);
}

TEST_F(FieldContainerPtrTest, DcastDoesNotCount)
{
    const auto node = hold(makeNode(Group::create()));

    const GroupPtr group = GroupPtr::dcast(node->getCore());

    EXPECT_EQ(group.getRefCount(), 1);
}

TEST_F(FieldContainerPtrTest, HandlesOfDerivedTypesPassAsHandlesOfTheirBases)
{
    const auto material = hold(SimpleMaterial::create());
    const auto group = hold(MaterialGroup::create());
    const SimpleMaterialPtr simple = material;

    group->setMaterial(simple);

    EXPECT_TRUE(group->getMaterial() == simple);
}

TEST_F(FieldContainerPtrTest, HandlesLiveInVectors)
{
    const auto node = hold(Node::create());
    std::vector<NodePtr> handles(2);

    handles[1] = node;
    handles.erase(handles.begin());
    handles.insert(handles.begin(), NodePtr(NullFC));

    ASSERT_EQ(handles.size(), 2U);
    EXPECT_TRUE(handles[0] == NullFC);
    EXPECT_TRUE(handles[1] == node);
}

} // namespace
