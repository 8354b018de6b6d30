// SPDX-License-Identifier: MIT
#include "Support/DrawnScene.h"

#include "Viewer/Drawing/BatchList.h"
#include "Viewer/Model/SceneChanges.h"

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using viewer::BatchList;
using viewer::SceneChanges;

constexpr osg::UInt32 EveryNode = 0xFFFFFFFF;

osg::NodePtr makePart()
{
    return makeNode(makeBox(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 1), makePlainMaterial({1, 0, 0})));
}

TEST(BatchListTest, MaterialsAreForgottenWhenTheyAreGone)
{
    BatchList list;
    const osg::RefPtr<osg::NodePtr> scene(makeGroup({makePart(), makePart()}));
    const auto follow = [&] {
        list.sceneChanged(SceneChanges::take());
        list.update(scene.get(), EveryNode);
    };
    follow();
    ASSERT_EQ(list.getMaterialCount(), 2U);

    for (int i = 0; i < 10; ++i) {
        beginEditCP(scene, osg::Node::ChildrenFieldMask);
        scene->subChild(scene->getChild(0));
        scene->addChild(makePart());
        endEditCP(scene, osg::Node::ChildrenFieldMask);
        follow();
    }
    EXPECT_EQ(list.getMaterialCount(), 2U);

    beginEditCP(scene, osg::Node::ChildrenFieldMask);
    scene->subChild(scene->getChild(0));
    scene->subChild(scene->getChild(0));
    endEditCP(scene, osg::Node::ChildrenFieldMask);
    follow();
    EXPECT_EQ(list.getMaterialCount(), 0U);
}

} // namespace

} // namespace quon::testing
