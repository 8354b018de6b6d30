// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <vector>

// Sizes at which OpenSG takes quadratic time or runs out of stack. Nothing here looks at a clock; a test that takes
// minutes is noticed all the same.
namespace {

using namespace osg;
using quon::testing::addNode;
using quon::testing::childrenOf;
using quon::testing::filled;
using quon::testing::hold;
using quon::testing::isAlive;
using quon::testing::makeCube;
using quon::testing::makeNode;
using quon::testing::makeTranslation;
using quon::testing::worldBounds;

constexpr UInt32 many = 100000;

class EmbeddedScaleTest : public quon::testing::SceneFixture {
protected:
    // Tens of thousands of entries in the change list are of no interest here.
    EmbeddedScaleTest() { Thread::getCurrentChangeList()->setReadOnly(true); }
    ~EmbeddedScaleTest() override { Thread::getCurrentChangeList()->setReadOnly(false); }

    /// A chain of nodes with @p core, from the one returned down to @p leaf.
    static NodePtr chainAbove(const NodePtr& leaf, const NodeCorePtr& core)
    {
        NodePtr root = leaf;
        for (UInt32 i = 0; i < many; ++i) {
            const NodePtr parent = makeNode(core);
            parent->addChild(root);
            root = parent;
        }
        return root;
    }
};

TEST_F(EmbeddedScaleTest, ADeepChainDies)
{
    RefPtr<NodePtr> root(chainAbove(Node::create(), Group::create()));
    const UInt32 id = getContainerId(root->getCore());

    root = NullFC;

    EXPECT_FALSE(isAlive(id));
}

TEST_F(EmbeddedScaleTest, ADeepChainHasAVolume)
{
    const auto leaf = hold(makeNode(makeCube()));
    const auto root = hold(chainAbove(leaf, Group::create()));

    EXPECT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1)));
    EXPECT_EQ(worldBounds(leaf), filled(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1)));
}

TEST_F(EmbeddedScaleTest, AChangeAtTheEndOfADeepChainReachesItsRoot)
{
    const NodePtr leaf = Node::create();
    const auto root = hold(chainAbove(leaf, Group::create()));
    ASSERT_TRUE(worldBounds(root).isEmpty);

    addNode(leaf, makeCube());
    endEditCP(leaf, Node::ChildrenFieldMask);

    EXPECT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1)));
}

TEST_F(EmbeddedScaleTest, ADeepChainOfTransformsMultiplies)
{
    const auto leaf = hold(makeNode(makeCube()));
    const auto root = hold(chainAbove(leaf, makeTranslation(1, 0, 0)));

    EXPECT_EQ(leaf->getToWorld()[3], Vec4f(many, 0, 0, 1));
    EXPECT_EQ(worldBounds(root), filled(Pnt3f(many - 1, -1, -1), Pnt3f(many + 1, 1, 1)));
}

TEST_F(EmbeddedScaleTest, ADeepChainIsCloned)
{
    const auto root = hold(chainAbove(makeNode(makeCube()), Group::create()));

    const auto copy = hold(cloneTree(root));

    UInt32 depth = 0;
    NodePtr node = copy;
    while (node->getNChildren() == 1) {
        node = node->getChild(0);
        ++depth;
    }
    EXPECT_EQ(depth, many);
    EXPECT_TRUE(GeometryPtr::dcast(node->getCore()) != NullFC);
    EXPECT_EQ(root->getCore()->getParents().size(), 2 * many);
}

class ManyChildrenTest : public EmbeddedScaleTest {
protected:
    ManyChildrenTest()
        : m_parent(makeNode(Group::create()))
    {
        m_children.reserve(many);
        for (UInt32 i = 0; i < many; ++i) {
            m_children.push_back(addNode(m_parent));
        }
        worldBounds(m_parent);
    }

    ~ManyChildrenTest() override { m_parent = NullFC; }

    /// Removes the children in this order of their numbers and looks at the rest now and then.
    void removeAll(const std::vector<UInt32>& order)
    {
        std::vector<bool> isLeft(many, true);
        for (UInt32 step = 0; step < many; ++step) {
            NodePtr child = m_children[order[step]];
            m_parent->subChild(child);
            isLeft[order[step]] = false;
            ASSERT_EQ(m_parent->getNChildren(), many - step - 1);
            if (step % 9973 == 0 || step + 20 > many) {
                std::vector<NodePtr> left;
                for (UInt32 i = 0; i < many; ++i) {
                    if (isLeft[i]) {
                        left.push_back(m_children[i]);
                    }
                }
                ASSERT_TRUE(childrenOf(m_parent) == left) << "after " << step + 1 << " removals";
            }
        }
    }

    static std::vector<UInt32> numbers()
    {
        std::vector<UInt32> order(many);
        std::iota(order.begin(), order.end(), 0U);
        return order;
    }

    RefPtr<NodePtr> m_parent;
    std::vector<NodePtr> m_children;
};

TEST_F(ManyChildrenTest, LeaveFromTheFront)
{
    removeAll(numbers());
}

TEST_F(ManyChildrenTest, LeaveFromTheBack)
{
    std::vector<UInt32> order = numbers();
    std::reverse(order.begin(), order.end());

    removeAll(order);
}

TEST_F(ManyChildrenTest, LeaveInRandomOrder)
{
    std::vector<UInt32> order = numbers();
    std::shuffle(order.begin(), order.end(), std::mt19937(17));

    removeAll(order);
}

TEST_F(ManyChildrenTest, LeaveEveryOtherFirst)
{
    std::vector<UInt32> order = numbers();
    std::stable_partition(order.begin(), order.end(), [](const UInt32 number) { return number % 2 == 1; });

    removeAll(order);
}

TEST_F(ManyChildrenTest, LeaveByIndexFromTheMiddle)
{
    for (UInt32 left = many; left > 1; --left) {
        m_parent->subChild(left / 2);
    }

    ASSERT_EQ(m_parent->getNChildren(), 1U);
    EXPECT_TRUE(m_parent->getChild(0) == m_children[0]);
}

TEST_F(ManyChildrenTest, AreFoundByHandleWhileTheyLeave)
{
    for (UInt32 i = 0; i < many; i += 2) {
        NodePtr child = m_children[i];
        m_parent->subChild(child);
        ASSERT_EQ(m_parent->findChild(m_children[i + 1]), static_cast<Int32>(i / 2));
    }

    EXPECT_EQ(m_parent->getNChildren(), many / 2);
}

TEST_F(ManyChildrenTest, AreReplacedOneByOne)
{
    for (UInt32 i = 0; i < many; ++i) {
        m_children[i] = Node::create();
        m_parent->replaceChild(i, m_children[i]);
    }

    EXPECT_TRUE(childrenOf(m_parent) == m_children);
}

TEST_F(ManyChildrenTest, AreClearedAtOnce)
{
    const UInt32 id = getContainerId(m_children[many / 2]);

    m_parent->clearChildren();

    EXPECT_EQ(m_parent->getNChildren(), 0U);
    EXPECT_FALSE(isAlive(id));
}

TEST_F(ManyChildrenTest, MoveToAnotherNode)
{
    const auto other = hold(Node::create());

    for (const NodePtr& child : m_children) {
        other->addChild(child);
    }

    EXPECT_EQ(m_parent->getNChildren(), 0U);
    EXPECT_TRUE(childrenOf(other) == m_children);
}

TEST_F(EmbeddedScaleTest, ManyNodesShareACoreAndLeaveItInAnyOrder)
{
    const auto core = hold(makeCube());
    std::vector<RefPtr<NodePtr>> nodes(many);
    for (auto& node : nodes) {
        node = makeNode(core.get());
    }
    EXPECT_EQ(core->getParents().size(), many);
    EXPECT_EQ(core.get().getRefCount(), static_cast<Int32>(many) + 1);

    std::vector<UInt32> order(many);
    std::iota(order.begin(), order.end(), 0U);
    std::shuffle(order.begin(), order.end(), std::mt19937(23));
    // Most of them without looking in between, so that those who stay are moved together more than once.
    const std::size_t rest = many / 5;
    for (std::size_t i = rest; i < many; ++i) {
        nodes[order[i]] = NullFC;
    }

    std::vector<NodePtr> left;
    for (const auto& node : nodes) {
        if (node != NullFC) {
            left.push_back(node);
        }
    }
    ASSERT_EQ(core->getParents().size(), rest);
    std::vector<NodePtr> parents;
    for (UInt32 i = 0; i < rest; ++i) {
        parents.push_back(core->getParents()[i]);
    }
    EXPECT_TRUE(parents == left);
}

TEST_F(EmbeddedScaleTest, ManyNodesOfASharedGeometryFollowItsPoints)
{
    const auto geometry = hold(makeCube());
    const auto root = hold(makeNode(Group::create()));
    for (UInt32 i = 0; i < many; ++i) {
        addNode(root, geometry.get());
    }
    ASSERT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1)));

    geometry->getPositions()->setValue(Pnt3f(5, 5, 5), 1);
    endEditCP(geometry, Geometry::PositionsFieldMask);

    EXPECT_EQ(worldBounds(root->getChild(many - 1)), filled(Pnt3f(-1, -1, -1), Pnt3f(5, 5, 5)));
    EXPECT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(5, 5, 5)));
}

TEST_F(EmbeddedScaleTest, ManyGeometriesShareAPropertyAndLeaveIt)
{
    const auto positions = hold(GeoPositions3f::create());
    std::vector<RefPtr<GeometryPtr>> geometries(many);
    for (auto& geometry : geometries) {
        geometry = Geometry::create();
        geometry->setPositions(positions.get());
    }
    EXPECT_EQ(positions->getParents().size(), many);

    std::shuffle(geometries.begin(), geometries.end(), std::mt19937(29));
    geometries.clear();

    EXPECT_EQ(positions->getParents().size(), 0U);
    EXPECT_EQ(positions.get().getRefCount(), 1);
}

TEST_F(EmbeddedScaleTest, ManyNodesShareAnAttachmentAndLeaveIt)
{
    const auto attachment = hold(GeoPositions3f::create());
    const auto other = hold(GeoColors3f::create());
    std::vector<RefPtr<NodePtr>> nodes(many);
    for (auto& node : nodes) {
        node = Node::create();
        node->addAttachment(other.get());
        node->addAttachment(attachment.get());
    }

    std::shuffle(nodes.begin(), nodes.end(), std::mt19937(31));
    const RefPtr<NodePtr> last(nodes.back());
    nodes.clear();

    ASSERT_EQ(attachment->getParents().size(), 1U);
    EXPECT_TRUE(attachment->getParents()[0] == last.get());
    EXPECT_EQ(other->getParents().size(), 1U);
    last->subAttachment(attachment.get());
    EXPECT_EQ(attachment->getParents().size(), 0U);
}

TEST_F(EmbeddedScaleTest, ManyNodesHaveAnAttachmentTwiceAndLeaveIt)
{
    const auto attachment = hold(GeoPositions3f::create());
    std::vector<RefPtr<NodePtr>> nodes(many / 10);
    for (auto& node : nodes) {
        node = Node::create();
        node->addAttachment(attachment.get(), 0);
        node->addAttachment(attachment.get(), 1);
    }

    std::shuffle(nodes.begin(), nodes.end(), std::mt19937(37));
    const RefPtr<NodePtr> last(nodes.back());
    nodes.clear();
    last->subAttachment(attachment.get(), 0);

    ASSERT_EQ(attachment->getParents().size(), 1U);
    EXPECT_TRUE(attachment->getParents()[0] == last.get());
    EXPECT_EQ(attachment.get().getRefCount(), 2);
}

TEST_F(EmbeddedScaleTest, MemoryOfTheDeadIsUsedAgain)
{
    // Identifiers are not, and both together must not grow without end.
    UInt32 lastId = 0;
    for (UInt32 i = 0; i < 20 * many; ++i) {
        NodePtr node = Node::create();
        ASSERT_GT(getContainerId(node), lastId);
        lastId = getContainerId(node);
        subRefCP(node);
    }

    EXPECT_FALSE(isAlive(lastId));
}

} // namespace
