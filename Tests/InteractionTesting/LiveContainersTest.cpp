// SPDX-License-Identifier: MIT
#include <InteractionTesting/LiveContainers.h>

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGThread.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace quon::testing {

namespace {

TEST(LiveContainersTest, CountsWhatWasMadeAndWhatIsGone)
{
    const std::size_t before = countLiveContainers();
    {
        const NodeRef node = makeNode(osg::Group::create());
        EXPECT_EQ(countLiveContainers(), before + 2); // the node and its core
    }
    EXPECT_EQ(countLiveContainers(), before);
}

TEST(LiveContainersTest, LeavesNoTraceInTheListOfChanges)
{
    osg::ChangeList* const changes = osg::Thread::getCurrentChangeList();
    changes->clearAll();

    countLiveContainers();

    EXPECT_EQ(changes->sizeCreated(), 0U);
    EXPECT_EQ(changes->sizeDestroyed(), 0U);
    const NodeRef node(osg::Node::create());
    EXPECT_NE(changes->sizeCreated(), 0U);
    changes->clearAll();
}

} // namespace

} // namespace quon::testing
