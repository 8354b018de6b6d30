// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace osg;
using quon::testing::addNode;
using quon::testing::hold;
using quon::testing::isAlive;
using quon::testing::makeNode;
using ::testing::Contains;

class DestructionTest : public quon::testing::SceneFixture {
protected:
    static std::vector<UInt32> destroyedIds()
    {
        const ChangeList* list = Thread::getCurrentChangeList();
        return std::vector<UInt32>(list->beginDestroyed(), list->endDestroyed());
    }
};

TEST_F(DestructionTest, ATreeDiesWithItsRoot)
{
    RefPtr<NodePtr> root(makeNode(Group::create()));
    const NodePtr child = addNode(root, Group::create());
    const NodePtr grandChild = addNode(child, Group::create());
    const std::vector<UInt32> ids{getContainerId(child), getContainerId(child->getCore()), getContainerId(grandChild),
                                  getContainerId(root.get())};

    root = NullFC;

    for (const UInt32 id : ids) {
        EXPECT_FALSE(isAlive(id));
    }
}

TEST_F(DestructionTest, AChildThatSomebodyHoldsSurvivesWithoutParent)
{
    RefPtr<NodePtr> root(Node::create());
    const auto child = hold(addNode(root));

    root = NullFC;

    EXPECT_EQ(child.get().getRefCount(), 1);
    EXPECT_TRUE(child->getParent() == NullFC);
}

TEST_F(DestructionTest, ACoreForgetsItsDeadNode)
{
    const auto core = hold(Group::create());
    const auto survivor = hold(makeNode(core.get()));
    RefPtr<NodePtr> node(makeNode(core.get()));
    ASSERT_EQ(core->getParents().size(), 2U);

    node = NullFC;

    EXPECT_EQ(core.get().getRefCount(), 2);
    ASSERT_EQ(core->getParents().size(), 1U);
    EXPECT_TRUE(core->getParents()[0] == survivor);
}

TEST_F(DestructionTest, ACoreDiesWithItsLastNode)
{
    RefPtr<NodePtr> node(makeNode(Group::create()));
    const UInt32 id = getContainerId(node->getCore());

    node = NullFC;

    EXPECT_FALSE(isAlive(id));
}

TEST_F(DestructionTest, AMaterialDiesWithTheLastThatUsesIt)
{
    RefPtr<MaterialGroupPtr> group(MaterialGroup::create());
    RefPtr<GeometryPtr> geometry(Geometry::create());
    const SimpleMaterialPtr material = SimpleMaterial::create();
    const UInt32 id = getContainerId(material);
    group->setMaterial(material);
    geometry->setMaterial(material);

    group = NullFC;
    EXPECT_TRUE(isAlive(id));

    geometry = NullFC;
    EXPECT_FALSE(isAlive(id));
}

TEST_F(DestructionTest, ChunksDieWithTheirMaterial)
{
    RefPtr<SimpleMaterialPtr> material(SimpleMaterial::create());
    const LineChunkPtr chunk = LineChunk::create();
    const UInt32 id = getContainerId(chunk);
    material->addChunk(chunk, -2);
    endEditCP(material);

    material = NullFC;

    EXPECT_FALSE(isAlive(id));
}

TEST_F(DestructionTest, PropertiesDieWithTheirGeometry)
{
    RefPtr<GeometryPtr> geometry(quon::testing::makeCube());
    const UInt32 id = getContainerId(geometry->getPositions());

    geometry = NullFC;

    EXPECT_FALSE(isAlive(id));
}

TEST_F(DestructionTest, APropertyForgetsItsDeadGeometry)
{
    RefPtr<GeometryPtr> geometry(Geometry::create());
    const auto positions = hold(GeoPositions3f::create());
    geometry->setPositions(positions.get());
    ASSERT_EQ(positions->getParents().size(), 1U);

    geometry = NullFC;

    EXPECT_EQ(positions.get().getRefCount(), 1);
    EXPECT_EQ(positions->getParents().size(), 0U);
}

TEST_F(DestructionTest, ANameDiesWithItsNode)
{
    RefPtr<NodePtr> node(Node::create());
    osg::setName(node.get(), "name");
    const AttachmentPtr name = node->findAttachment(Name::getClassType());
    ASSERT_TRUE(name != NullFC);
    const UInt32 id = getContainerId(name);

    node = NullFC;

    EXPECT_FALSE(isAlive(id));
}

TEST_F(DestructionTest, IsListedAsDestroyedAndNotAsReleased)
{
    NodePtr node = Node::create();
    addRefCP(node);
    const UInt32 id = getContainerId(node);
    Thread::getCurrentChangeList()->clearAll();

    subRefCP(node);

    EXPECT_THAT(destroyedIds(), ::testing::ElementsAre(id));
    EXPECT_EQ(Thread::getCurrentChangeList()->sizeSubRefd(), 0U);
}

TEST_F(DestructionTest, ListsEveryContainerThatDied)
{
    RefPtr<NodePtr> root(makeNode(Group::create()));
    const UInt32 rootId = getContainerId(root.get());
    const UInt32 coreId = getContainerId(root->getCore());
    const UInt32 childId = getContainerId(addNode(root));
    Thread::getCurrentChangeList()->clearAll();

    root = NullFC;

    EXPECT_THAT(destroyedIds(), ::testing::UnorderedElementsAre(rootId, coreId, childId));
}

TEST_F(DestructionTest, TheArgumentOfSubChildBecomesNullWhenItWasTheLast)
{
    const auto parent = hold(Node::create());
    NodePtr child = addNode(parent);
    const NodePtr copy = child;

    parent->subChild(child);

    EXPECT_TRUE(child == NullFC);
    EXPECT_TRUE(copy != NullFC);
}

TEST_F(DestructionTest, SubChildWithTheChildTakenFromTheNodeItselfIsFine)
{
    const auto parent = hold(Node::create());
    const UInt32 id = getContainerId(addNode(parent));

    parent->subChild(parent->getChild(0));

    EXPECT_FALSE(isAlive(id));
    EXPECT_EQ(parent->getNChildren(), 0U);
}

TEST_F(DestructionTest, ANewContainerAtTheSamePlaceHasALargerId)
{
    NodePtr node = Node::create();
    const UInt32 oldId = getContainerId(node);
    subRefCP(node);

    const auto next = hold(Node::create());

    EXPECT_GT(getContainerId(next.get()), oldId);
    EXPECT_FALSE(isAlive(oldId));
}

} // namespace
