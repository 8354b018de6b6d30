// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneChanges.h"

#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGThread.h>

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

TEST_F(SceneChangesTest, ManyIdsCloseTogetherAndSomeFarBelowAreMergedAndAscend)
{
    SceneChanges::Changed entries;
    for (osg::UInt32 id = 1000; id != 0; --id) {
        entries.insert(entries.end(), {{1000000 + id, 1}, {7, 2}, {1000000 + id, 4}, {3, 0}, {5, 8}});
    }
    entries.insert(entries.end(), {{7, 16}, {2000, 0}, {1000500, 32}});

    const SceneChanges::Changed merged = merge(entries);

    ASSERT_EQ(merged.size(), 1002U);
    EXPECT_EQ(merged[0], std::make_pair(osg::UInt32(5), osg::BitVector(8)));
    EXPECT_EQ(merged[1], std::make_pair(osg::UInt32(7), osg::BitVector(18)));
    for (osg::UInt32 id = 1; id <= 1000; ++id) {
        EXPECT_EQ(merged[id + 1], std::make_pair(1000000 + id, osg::BitVector(id == 500 ? 37 : 5)));
    }
}

TEST_F(SceneChangesTest, WhatIsGatheredIsTakenWithTheRest)
{
    const osg::RefPtr<osg::NodePtr> node(makeGroup());
    osg::RefPtr<osg::NodePtr> shortLived(makeGroup());
    const osg::UInt32 id = osg::getContainerId(node.get());
    const osg::UInt32 destroyed = osg::getContainerId(shortLived.get());
    SceneChanges::take();
    osg::endEditCP(node.get(), osg::Node::TravMaskFieldMask);
    shortLived = osg::NullFC;

    SceneChanges::gather();
    EXPECT_TRUE(osg::Thread::getCurrentChangeList()->empty());
    SceneChanges::gather();
    osg::endEditCP(node.get(), osg::Node::ChildrenFieldMask);
    const SceneChanges changes = SceneChanges::take();

    EXPECT_THAT(changes.getChanged(), Contains(Pair(id, osg::Node::TravMaskFieldMask | osg::Node::ChildrenFieldMask)));
    EXPECT_THAT(changes.getDestroyed(), Contains(destroyed));
    EXPECT_TRUE(SceneChanges::take().isEmpty());
}

TEST_F(SceneChangesTest, DestroyedContainersThatWereGatheredAreTakenAlone)
{
    osg::RefPtr<osg::NodePtr> node(makeGroup());
    const osg::UInt32 id = osg::getContainerId(node.get());
    SceneChanges::take();
    osg::Thread::getCurrentChangeList()->addDestroyed(id);

    SceneChanges::gather();

    EXPECT_THAT(SceneChanges::take().getDestroyed(), ElementsAre(id));
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
