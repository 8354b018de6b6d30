// SPDX-License-Identifier: MIT
#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGThread.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;

// A program of its own: the main function of the other tests switches recording on before it starts the scene graph.
TEST(RecordingDefaultTest, NothingIsRecordedUntilTheListIsMadeWritable)
{
    ChangeList* list = Thread::getCurrentChangeList();
    ASSERT_TRUE(list != nullptr);
    NodePtr node = Node::create();
    addRefCP(node);

    endEditCP(node, Node::TravMaskFieldMask);
    EXPECT_EQ(list->sizeChanged(), 0U);
    EXPECT_EQ(list->sizeCreated(), 0U);
    EXPECT_EQ(list->sizeAddRefd(), 0U);

    list->setReadOnly(false);
    endEditCP(node, Node::TravMaskFieldMask);
    EXPECT_GE(list->sizeChanged(), 1U);

    subRefCP(node);
}

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (!osg::osgInit(argc, argv)) {
        return 1;
    }
    const int result = RUN_ALL_TESTS();
    return osg::osgExit() ? result : 1;
}
