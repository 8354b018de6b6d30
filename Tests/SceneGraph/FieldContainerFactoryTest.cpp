// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace osg;
using quon::testing::hold;

class FieldContainerFactoryTest : public quon::testing::SceneFixture {};

TEST_F(FieldContainerFactoryTest, FindsAContainerByItsId)
{
    const auto node = hold(Node::create());

    const FieldContainerPtr found = FieldContainerFactory::the()->getContainer(getContainerId(node.get()));

    EXPECT_TRUE(found == node.get());
    EXPECT_TRUE(NodePtr::dcast(found) == node);
}

TEST_F(FieldContainerFactoryTest, GivesNullForIdsThatNobodyHas)
{
    const auto node = hold(Node::create());

    EXPECT_TRUE(FieldContainerFactory::the()->getContainer(0) == NullFC);
    EXPECT_TRUE(FieldContainerFactory::the()->getContainer(getContainerId(node.get()) + 1) == NullFC);
    EXPECT_TRUE(FieldContainerFactory::the()->getContainer(std::numeric_limits<UInt32>::max()) == NullFC);
}

TEST_F(FieldContainerFactoryTest, GivesNullForTheIdOfADestroyedContainer)
{
    NodePtr node = Node::create();
    const UInt32 id = getContainerId(node);

    subRefCP(node);

    EXPECT_TRUE(FieldContainerFactory::the()->getContainer(id) == NullFC);
}

TEST_F(FieldContainerFactoryTest, IdsFollowTheOrderOfCreation)
{
    const auto first = hold(Node::create());
    const auto second = hold(Group::create());
    const auto third = hold(Node::create());

    EXPECT_GT(getContainerId(first.get()), 0U);
    EXPECT_EQ(getContainerId(second.get()), getContainerId(first.get()) + 1);
    EXPECT_EQ(getContainerId(third.get()), getContainerId(first.get()) + 2);
}

TEST_F(FieldContainerFactoryTest, IdsAreNeverUsedAgain)
{
    const UInt32 firstId = [] {
        const auto node = hold(Node::create());
        return getContainerId(node.get());
    }();
    UInt32 lastId = firstId;

    for (int i = 0; i < 5000; ++i) {
        NodePtr node = Node::create();
        const UInt32 id = getContainerId(node);
        ASSERT_GT(id, lastId);
        lastId = id;
        subRefCP(node);
    }

    EXPECT_TRUE(FieldContainerFactory::the()->getContainer(firstId) == NullFC);
    EXPECT_TRUE(FieldContainerFactory::the()->getContainer(lastId) == NullFC);
}

TEST_F(FieldContainerFactoryTest, FindsTypesByName)
{
    EXPECT_EQ(FieldContainerFactory::the()->findType("Node"), &Node::getClassType());
    EXPECT_EQ(FieldContainerFactory::the()->findType("Geometry"), &Geometry::getClassType());
    EXPECT_TRUE(FieldContainerFactory::the()->findType("NoSuchType") == nullptr);
}

TEST_F(FieldContainerFactoryTest, CreatesByName)
{
    const auto container = hold(FieldContainerFactory::the()->createFieldContainer("Group"));
    const auto node = hold(FieldContainerFactory::the()->createNode("Node"));
    const auto core = hold(FieldContainerFactory::the()->createNodeCore("Transform"));

    EXPECT_TRUE(GroupPtr::dcast(container.get()) != NullFC);
    EXPECT_TRUE(node != NullFC);
    EXPECT_TRUE(TransformPtr::dcast(core.get()) != NullFC);
    EXPECT_TRUE(FieldContainerFactory::the()->createFieldContainer("NoSuchType") == NullFC);
}

} // namespace
