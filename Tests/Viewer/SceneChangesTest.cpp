// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneChanges.h"

#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Pair;
using viewer::SceneChanges;

class SceneChangesTest : public SceneFixture {
protected:
    static void note(const osg::UInt32 id, const osg::BitVector mask)
    {
        osg::Thread::getCurrentChangeList()->addChanged(id, mask);
    }
};

TEST_F(SceneChangesTest, NothingHappenedNothingIsTaken)
{
    EXPECT_TRUE(SceneChanges::take().isEmpty());
}

TEST_F(SceneChangesTest, TakingEmptiesTheList)
{
    const osg::RefPtr<osg::NodePtr> node(makeGroup());
    EXPECT_FALSE(SceneChanges::take().isEmpty());

    EXPECT_TRUE(SceneChanges::take().isEmpty());
}

TEST_F(SceneChangesTest, ChangesOfOneContainerAreMergedAndIdsAscend)
{
    note(7, 1);
    note(5, 2);
    note(7, 4);
    note(6, 8);

    EXPECT_THAT(SceneChanges::take().getChanged(), ElementsAre(Pair(5, 2), Pair(6, 8), Pair(7, 5)));
}

TEST_F(SceneChangesTest, IdsFarApartAreMergedAndAscendToo)
{
    note(4000000000U, 1);
    note(5, 2);
    note(4000000000U, 4);
    note(70000, 8);

    EXPECT_THAT(SceneChanges::take().getChanged(), ElementsAre(Pair(5, 2), Pair(70000, 8), Pair(4000000000U, 5)));
}

TEST_F(SceneChangesTest, DestroyedContainersAreListed)
{
    osg::RefPtr<osg::NodePtr> node(makeGroup());
    const osg::UInt32 id = osg::getContainerId(node.get());
    SceneChanges::take();

    node = osg::NullFC;

    EXPECT_THAT(SceneChanges::take().getDestroyed(), Contains(id));
}

} // namespace

} // namespace quon::testing
