// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneBuilder.h>

#include <InteractionTesting/SceneFixture.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVolume.h>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

class SceneBuilderTest : public SceneFixture {};

TEST_F(SceneBuilderTest, BuildsATreeThatItsRootHolds)
{
    const osg::GroupPtr core = osg::Group::create();
    osg::UInt32 childId = 0;
    {
        const NodeRef root = makeNode(core);
        const osg::NodePtr child = addChild(root.get(), osg::Group::create());
        childId = osg::getContainerId(child);

        EXPECT_EQ(root->getCore(), osg::NodeCorePtr(core));
        EXPECT_EQ(root->getNChildren(), 1U);
        EXPECT_EQ(child->getParent(), root.get());
        EXPECT_TRUE(exists(childId));
    }
    EXPECT_FALSE(exists(childId));
}

TEST_F(SceneBuilderTest, PlacesAnExtentInTheWorld)
{
    const NodeRef root = makeNode(makeTranslation(10, 20, 30));
    addChild(root.get(), makeExtent(osg::Pnt3f(-1, -2, -3), osg::Pnt3f(1, 2, 3)));

    root->updateVolume();
    osg::Pnt3f min;
    osg::Pnt3f max;
    root->getVolume().getBounds(min, max);

    EXPECT_EQ(min, osg::Pnt3f(9, 18, 27));
    EXPECT_EQ(max, osg::Pnt3f(11, 22, 33));
}

TEST_F(SceneBuilderTest, MovesATransform)
{
    const osg::TransformPtr transform = makeTranslation(1, 2, 3);
    const NodeRef node = makeNode(transform);

    setTranslation(transform, 4, 5, 6);

    EXPECT_EQ(transform->getMatrix()[3], osg::Vec4f(4, 5, 6, 1));
}

} // namespace

} // namespace quon::testing
