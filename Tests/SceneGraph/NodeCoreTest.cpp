// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGMaterialPool.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::makeNode;

class NodeCoreTest : public quon::testing::SceneFixture {};

TEST_F(NodeCoreTest, AFreshCoreHasNoParents)
{
    const auto core = hold(Group::create());

    EXPECT_EQ(core->getParents().size(), 0U);
}

TEST_F(NodeCoreTest, EveryNodeOfASharedCoreIsAParent)
{
    const auto core = hold(Group::create());
    const auto first = hold(makeNode(core.get()));
    const auto second = hold(makeNode(core.get()));

    ASSERT_EQ(core->getParents().size(), 2U);
    EXPECT_TRUE(core->getParents()[0] == first);
    EXPECT_TRUE(core->getParents()[1] == second);
    EXPECT_EQ(core.get().getRefCount(), 3);
}

TEST_F(NodeCoreTest, AnotherCoreTakesTheNodeOver)
{
    const auto oldCore = hold(Group::create());
    const auto newCore = hold(Group::create());
    const auto node = hold(makeNode(oldCore.get()));

    node->setCore(newCore.get());

    EXPECT_EQ(oldCore->getParents().size(), 0U);
    ASSERT_EQ(newCore->getParents().size(), 1U);
    EXPECT_TRUE(newCore->getParents()[0] == node);
}

TEST_F(NodeCoreTest, SettingTheSameCoreAgainLeavesOneParent)
{
    const auto core = hold(Group::create());
    const auto node = hold(makeNode(core.get()));

    node->setCore(core.get());

    EXPECT_EQ(core->getParents().size(), 1U);
    EXPECT_EQ(core.get().getRefCount(), 2);
}

TEST_F(NodeCoreTest, SettingTheSameCoreAgainMovesTheNodeToTheEndOfTheParents)
{
    const auto core = hold(Group::create());
    const auto first = hold(makeNode(core.get()));
    const auto second = hold(makeNode(core.get()));

    first->setCore(core.get());

    ASSERT_EQ(core->getParents().size(), 2U);
    EXPECT_TRUE(core->getParents()[0] == second);
    EXPECT_TRUE(core->getParents()[1] == first);
}

TEST_F(NodeCoreTest, WithoutCoreANodeIsNobodysParent)
{
    const auto core = hold(Group::create());
    const auto node = hold(makeNode(core.get()));

    node->setCore(NullFC);

    EXPECT_TRUE(node->getCore() == NullFC);
    EXPECT_EQ(core->getParents().size(), 0U);
}

TEST_F(NodeCoreTest, AFreshTransformIsTheIdentity)
{
    const auto transform = hold(Transform::create());
    const Transform& constant = *transform.get();

    EXPECT_EQ(constant.getMatrix(), Matrix());
}

TEST_F(NodeCoreTest, ATransformKeepsItsMatrix)
{
    const auto transform = hold(Transform::create());
    Matrix matrix;
    matrix.setTranslate(1, 2, 3);

    transform->setMatrix(matrix);

    EXPECT_EQ(transform->getMatrix(), matrix);
}

TEST_F(NodeCoreTest, AFreshMaterialGroupHasNoMaterial)
{
    const auto group = hold(MaterialGroup::create());

    EXPECT_TRUE(group->getMaterial() == NullFC);
}

TEST_F(NodeCoreTest, AMaterialGroupIsAGroup)
{
    const auto node = hold(makeNode(MaterialGroup::create()));

    EXPECT_TRUE(GroupPtr::dcast(node->getCore()) != NullFC);
}

TEST_F(NodeCoreTest, AMaterialPoolHoldsMaterials)
{
    const auto pool = hold(MaterialPool::create());
    const auto material = hold(SimpleMaterial::create());

    pool->add(material.get());
    EXPECT_EQ(pool->getCount(), 1U);
    EXPECT_TRUE(pool->get(0) == material.get());
    EXPECT_EQ(material.get().getRefCount(), 2);

    pool->sub(material.get());
    EXPECT_EQ(pool->getCount(), 0U);
    EXPECT_EQ(material.get().getRefCount(), 1);
}

TEST_F(NodeCoreTest, AMaterialPoolReleasesItsMaterials)
{
    RefPtr<MaterialPoolPtr> pool(MaterialPool::create());
    const auto first = hold(SimpleMaterial::create());
    const auto second = hold(SimpleMaterial::create());
    pool->add(first.get());
    pool->clear();
    EXPECT_EQ(first.get().getRefCount(), 1);

    pool->add(second.get());
    pool = NullFC;
    EXPECT_EQ(second.get().getRefCount(), 1);
}

} // namespace
