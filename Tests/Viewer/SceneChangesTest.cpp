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
    static SceneChanges::Changed merge(const SceneChanges::Changed& entries)
    {
        return SceneChanges::merge(entries.begin(), entries.end());
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
    EXPECT_THAT(merge({{7, 1}, {5, 2}, {7, 4}, {6, 8}}), ElementsAre(Pair(5, 2), Pair(6, 8), Pair(7, 5)));
}

TEST_F(SceneChangesTest, IdsFarApartAreMergedAndAscendToo)
{
    EXPECT_THAT(merge({{4000000000U, 1}, {5, 2}, {4000000000U, 4}, {70000, 8}}),
                ElementsAre(Pair(5, 2), Pair(70000, 8), Pair(4000000000U, 5)));
}

TEST_F(SceneChangesTest, TheFieldsOfOneContainerAreTakenTogether)
{
    const osg::RefPtr<osg::NodePtr> node(makeGroup());
    SceneChanges::take();
    osg::endEditCP(node.get(), osg::Node::TravMaskFieldMask);
    osg::endEditCP(node.get(), osg::Node::ChildrenFieldMask);

    const osg::UInt32 id = osg::getContainerId(node.get());
    EXPECT_THAT(SceneChanges::take().getChanged(),
                Contains(Pair(id, osg::Node::TravMaskFieldMask | osg::Node::ChildrenFieldMask)));
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
