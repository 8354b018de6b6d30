// SPDX-License-Identifier: MIT
#include "SceneParts.h"
#include "Support/StandardError.h"

#include <OpenSG/OSGGroup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::addNode;
using quon::testing::childrenOf;
using quon::testing::hold;
using quon::testing::isAlive;
using quon::testing::makeCube;
using quon::testing::makeNode;
using quon::testing::makeTranslation;
using quon::testing::StandardError;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class NodeTest : public quon::testing::SceneFixture {
protected:
    /// A node with the children m_a, m_b and m_c.
    NodeTest()
        : m_parent(Node::create())
        , m_a(addNode(m_parent))
        , m_b(addNode(m_parent))
        , m_c(addNode(m_parent))
    {}

    ~NodeTest() override
    {
        // The base looks for containers left over.
        m_a = m_b = m_c = m_parent = RefPtr<NodePtr>();
    }

    RefPtr<NodePtr> m_parent;
    RefPtr<NodePtr> m_a;
    RefPtr<NodePtr> m_b;
    RefPtr<NodePtr> m_c;
};

TEST_F(NodeTest, AFreshNodeHasNothing)
{
    const auto node = hold(Node::create());

    EXPECT_TRUE(node->getCore() == NullFC);
    EXPECT_TRUE(node->getParent() == NullFC);
    EXPECT_EQ(node->getNChildren(), 0U);
    EXPECT_EQ(node->getTravMask(), 0xFFFFFFFFU);
    EXPECT_TRUE(node->getActive());
    EXPECT_FALSE(node->getVolume().isValid());
    EXPECT_TRUE(node->getVolume().isEmpty());
}

TEST_F(NodeTest, ChildrenAreInOrderOfAddition)
{
    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), m_b.get(), m_c.get()));
    EXPECT_TRUE(m_b->getParent() == m_parent);
}

TEST_F(NodeTest, FindsTheIndexOfAChild)
{
    const auto stranger = hold(Node::create());

    EXPECT_EQ(m_parent->findChild(m_a), 0);
    EXPECT_EQ(m_parent->findChild(m_c), 2);
    EXPECT_EQ(m_parent->findChild(stranger), -1);
    EXPECT_EQ(m_parent->findChild(NullFC), -1);
}

TEST_F(NodeTest, AddingNullIsIgnored)
{
    m_parent->addChild(NullFC);

    EXPECT_EQ(m_parent->getNChildren(), 3U);
}

TEST_F(NodeTest, AddingAChildAgainMovesItToTheEnd)
{
    m_parent->addChild(m_a);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_b.get(), m_c.get(), m_a.get()));
    EXPECT_EQ(m_a.get().getRefCount(), 2);
    EXPECT_TRUE(m_a->getParent() == m_parent);
}

TEST_F(NodeTest, AddingTheOnlyChildAgainKeepsIt)
{
    const auto parent = hold(Node::create());
    const NodePtr child = addNode(parent);

    parent->addChild(child);

    EXPECT_THAT(childrenOf(parent), ElementsAre(child));
    EXPECT_EQ(child.getRefCount(), 1);
}

TEST_F(NodeTest, AddingAChildOfAnotherNodeMovesIt)
{
    const auto other = hold(Node::create());

    other->addChild(m_b);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), m_c.get()));
    EXPECT_THAT(childrenOf(other), ElementsAre(m_b.get()));
    EXPECT_TRUE(m_b->getParent() == other);
}

TEST_F(NodeTest, InsertsBeforeTheIndex)
{
    const NodePtr first = Node::create();
    const NodePtr last = Node::create();

    m_parent->insertChild(0, first);
    m_parent->insertChild(4, last);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(first, m_a.get(), m_b.get(), m_c.get(), last));
    EXPECT_TRUE(first->getParent() == m_parent);
}

TEST_F(NodeTest, InsertingAChildOfAnotherNodeMovesIt)
{
    const auto other = hold(Node::create());
    const NodePtr child = addNode(other);

    m_parent->insertChild(1, child);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), child, m_b.get(), m_c.get()));
    EXPECT_EQ(other->getNChildren(), 0U);
    EXPECT_EQ(child.getRefCount(), 1);
}

TEST_F(NodeTest, SubtractingAChildKeepsTheOrderOfTheOthers)
{
    m_parent->subChild(m_b);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), m_c.get()));
    EXPECT_TRUE(m_b->getParent() == NullFC);
}

TEST_F(NodeTest, SubtractingByIndexTakesThatChild)
{
    m_parent->subChild(1);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), m_c.get()));
    EXPECT_TRUE(m_b->getParent() == NullFC);
    EXPECT_EQ(m_b.get().getRefCount(), 1);
}

TEST_F(NodeTest, SubtractingTheIndexBehindTheLastChildDoesNothing)
{
    m_parent->subChild(3);

    EXPECT_EQ(m_parent->getNChildren(), 3U);
}

TEST_F(NodeTest, SubtractingTheFirstOfNoChildrenIsSilent)
{
    const auto node = hold(Node::create());

    node->subChild(0);

    EXPECT_EQ(node->getNChildren(), 0U);
}

TEST_F(NodeTest, SubtractingAStrangerWarnsAndDoesNothing)
{
    const auto stranger = hold(Node::create());
    const auto other = hold(Node::create());
    other->addChild(stranger);

    m_parent->subChild(stranger);

    EXPECT_THAT(StandardError::take(), HasSubstr("is not one of my children!"));
    EXPECT_EQ(m_parent->getNChildren(), 3U);
    EXPECT_TRUE(stranger->getParent() == other);
    EXPECT_EQ(stranger.get().getRefCount(), 2);
}

TEST_F(NodeTest, ClearingFromTheEndReleasesAllChildren)
{
    while (m_parent->getNChildren() > 0) {
        m_parent->subChild(m_parent->getNChildren() - 1);
    }

    EXPECT_TRUE(m_a->getParent() == NullFC);
    EXPECT_EQ(m_a.get().getRefCount(), 1);
    EXPECT_EQ(m_c.get().getRefCount(), 1);
}

TEST_F(NodeTest, ReplacesTheChildAtTheIndex)
{
    const NodePtr newChild = Node::create();

    m_parent->replaceChild(1, newChild);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), newChild, m_c.get()));
    EXPECT_TRUE(newChild->getParent() == m_parent);
    EXPECT_EQ(newChild.getRefCount(), 1);
    EXPECT_TRUE(m_b->getParent() == NullFC);
    EXPECT_EQ(m_b.get().getRefCount(), 1);
}

TEST_F(NodeTest, ReplacingByAChildOfAnotherNodeMovesIt)
{
    const auto other = hold(Node::create());
    const NodePtr child = addNode(other);

    m_parent->replaceChild(0, child);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(child, m_b.get(), m_c.get()));
    EXPECT_EQ(other->getNChildren(), 0U);
    EXPECT_EQ(child.getRefCount(), 1);
}

TEST_F(NodeTest, ReplacingByALaterChildOfTheSameNodeTakesItFromThere)
{
    m_parent->replaceChild(0, m_c);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_c.get(), m_b.get()));
    EXPECT_EQ(m_c.get().getRefCount(), 2);
    EXPECT_TRUE(m_a->getParent() == NullFC);
}

TEST_F(NodeTest, ReplacingLooksTheIndexUpAfterAnEarlierChildOfTheSameNodeLeft)
{
    m_parent->replaceChild(1, m_a);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_b.get(), m_a.get()));
    EXPECT_TRUE(m_c->getParent() == NullFC);
}

TEST_F(NodeTest, ReplacingOnANodeWithoutChildrenDoesNothing)
{
    const auto node = hold(Node::create());
    NodePtr newChild = Node::create();

    node->replaceChild(0, newChild);

    EXPECT_EQ(node->getNChildren(), 0U);
    EXPECT_EQ(newChild.getRefCount(), 0);
    EXPECT_TRUE(newChild->getParent() == NullFC);
    subRefCP(newChild);
}

TEST_F(NodeTest, ReplacingBehindTheLastChildDoesNothing)
{
    const auto newChild = hold(Node::create());

    m_parent->replaceChild(3, newChild);
    m_parent->replaceChild(1000, newChild);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), m_b.get(), m_c.get()));
    EXPECT_TRUE(newChild->getParent() == NullFC);
    EXPECT_EQ(newChild.get().getRefCount(), 1);
}

TEST_F(NodeTest, ReplacingBehindTheLastChildLeavesTheNewChildWithItsParent)
{
    const auto other = hold(Node::create());
    const NodePtr child = addNode(other);

    m_parent->replaceChild(3, child);

    EXPECT_TRUE(child->getParent() == other);
    EXPECT_EQ(child.getRefCount(), 1);
}

TEST_F(NodeTest, ReplacingByNullDoesNothing)
{
    m_parent->replaceChild(0, NullFC);

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), m_b.get(), m_c.get()));
}

TEST_F(NodeTest, ReplacesAChildByAnother)
{
    const NodePtr newChild = Node::create();

    EXPECT_TRUE(m_parent->replaceChildBy(m_b, newChild));

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), newChild, m_c.get()));
    EXPECT_EQ(m_b.get().getRefCount(), 1);
}

TEST_F(NodeTest, DoesNotReplaceAStrangerNorByNull)
{
    const auto stranger = hold(Node::create());

    EXPECT_FALSE(m_parent->replaceChildBy(stranger, m_a));
    EXPECT_FALSE(m_parent->replaceChildBy(m_a, NullFC));

    EXPECT_THAT(childrenOf(m_parent), ElementsAre(m_a.get(), m_b.get(), m_c.get()));
}

TEST_F(NodeTest, ActiveMeansAllBitsOfTheMask)
{
    m_a->setTravMask(0x7FFFFFFF);
    EXPECT_FALSE(m_a->getActive());

    m_a->setActive(false);
    EXPECT_EQ(m_a->getTravMask(), 0U);

    m_a->setActive(true);
    EXPECT_EQ(m_a->getTravMask(), 0xFFFFFFFFU);
    EXPECT_TRUE(m_a->getActive());
}

TEST_F(NodeTest, ACloneSharesTheCoreAndCopiesTheMask)
{
    const auto node = hold(makeNode(Group::create()));
    node->setTravMask(9);

    const auto copy = hold(node->clone());

    EXPECT_TRUE(copy->getCore() == node->getCore());
    EXPECT_EQ(copy->getTravMask(), 9U);
    EXPECT_EQ(copy.get().getRefCount(), 1);
}

TEST_F(NodeTest, ACloneOfATreeHasTheSameShapeAndCores)
{
    const auto root = hold(makeNode(Group::create()));
    const NodePtr first = addNode(root, makeTranslation(1, 2, 3));
    const NodePtr leaf = addNode(first, makeCube());
    const NodePtr second = addNode(root);
    second->setTravMask(5);

    const auto copy = hold(cloneTree(root));

    EXPECT_EQ(copy.get().getRefCount(), 1);
    EXPECT_TRUE(copy->getParent() == NullFC);
    EXPECT_TRUE(copy->getCore() == root->getCore());
    ASSERT_EQ(copy->getNChildren(), 2U);
    EXPECT_TRUE(copy->getChild(0) != first);
    EXPECT_TRUE(copy->getChild(0)->getCore() == first->getCore());
    EXPECT_TRUE(copy->getChild(1)->getCore() == NullFC);
    EXPECT_EQ(copy->getChild(1)->getTravMask(), 5U);
    ASSERT_EQ(copy->getChild(0)->getNChildren(), 1U);
    EXPECT_TRUE(copy->getChild(0)->getChild(0)->getCore() == leaf->getCore());
    EXPECT_EQ(leaf->getCore().getRefCount(), 2);
    EXPECT_EQ(root->getNChildren(), 2U);
}

TEST_F(NodeTest, AConstantNodeReadsItsCoreItsMaskAndItsNumberOfChildren)
{
    const Node& node = *m_parent.get();

    EXPECT_TRUE(node.getCore() == NullFC);
    EXPECT_EQ(node.getNChildren(), 3U);
    EXPECT_EQ(node.getTravMask(), 0xFFFFFFFFU);
}

TEST_F(NodeTest, MakesANodeForACore)
{
    const GroupPtr group = Group::create();

    const auto node = hold(makeNodeFor(group));

    EXPECT_TRUE(node->getCore() == group);
    EXPECT_EQ(node.get().getRefCount(), 1);
}

TEST_F(NodeTest, MakesANodeWithANewCore)
{
    TransformPtr transform;

    const auto node = hold(makeCoredNode<Transform>(&transform));
    const auto plain = hold(makeCoredNode<Group>());

    EXPECT_TRUE(node->getCore() == transform);
    EXPECT_TRUE(transform != NullFC);
    EXPECT_TRUE(GroupPtr::dcast(plain->getCore()) != NullFC);
}

TEST_F(NodeTest, TheWorldMatrixIncludesTheOwnCore)
{
    const auto root = hold(makeNode(makeTranslation(1, 2, 3)));
    const NodePtr middle = addNode(root, Group::create());
    const NodePtr leaf = addNode(middle, makeTranslation(10, 20, 30));

    EXPECT_EQ(root->getToWorld()[3], Vec4f(1, 2, 3, 1));
    EXPECT_EQ(middle->getToWorld()[3], Vec4f(1, 2, 3, 1));
    EXPECT_EQ(leaf->getToWorld()[3], Vec4f(11, 22, 33, 1));
}

TEST_F(NodeTest, TheWorldMatrixAppliesTheInnerTransformFirst)
{
    Matrix scale;
    scale.setScale(2.0F);
    const TransformPtr outer = Transform::create();
    outer->setMatrix(scale);
    const auto root = hold(makeNode(outer));
    const NodePtr leaf = addNode(root, makeTranslation(1, 2, 3));

    EXPECT_EQ(leaf->getToWorld()[3], Vec4f(2, 4, 6, 1));
    EXPECT_EQ(leaf->getToWorld()[0], Vec4f(2, 0, 0, 0));
}

TEST_F(NodeTest, TheWorldMatrixSkipsNodesWithoutCore)
{
    const auto root = hold(makeNode(makeTranslation(1, 2, 3)));
    const NodePtr leaf = addNode(addNode(root));
    Matrix matrix;
    matrix.setScale(7.0F);

    leaf->getToWorld(matrix);

    EXPECT_EQ(matrix[3], Vec4f(1, 2, 3, 1));
    EXPECT_EQ(matrix[0], Vec4f(1, 0, 0, 0));
}

TEST_F(NodeTest, TheWorldMatrixOfALonelyNodeIsTheIdentity)
{
    EXPECT_EQ(m_parent->getToWorld(), Matrix());
}

} // namespace
