// SPDX-License-Identifier: MIT
#include "Viewer/Model/SceneChanges.h"

#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGThread.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::Truly;
using ::testing::UnorderedElementsAre;
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

TEST_F(SceneChangesTest, WhatCameIntoBeingBeforeTheFirstGatheringIsTakenWhole)
{
    const osg::RefPtr<osg::NodePtr> node(makeGroup());
    SceneChanges::gather();

    const SceneChanges changes = SceneChanges::take();

    EXPECT_THAT(changes.getChanged(), Contains(Pair(osg::getContainerId(node.get()), ::testing::_)));
    EXPECT_THAT(changes.getChanged(), Contains(Pair(osg::getContainerId(node->getCore()), ::testing::_)));
}

TEST_F(SceneChangesTest, OfWhatCameIntoBeingBetweenGatheringsNodesBelowOlderOnesAreTaken)
{
    const osg::RefPtr<osg::NodePtr> root(makeGroup());
    SceneChanges::gather();
    const osg::RefPtr<osg::NodePtr> child(makeGroup());
    const osg::RefPtr<osg::NodePtr> grandchild(makeGroup());
    const osg::RefPtr<osg::NodePtr> lonely(makeGroup());
    child->addChild(grandchild.get());
    {
        const osg::CPEditor edit(root.get(), osg::Node::ChildrenFieldMask);
        root->addChild(child.get());
    }
    SceneChanges::gather();

    const SceneChanges changes = SceneChanges::take();

    const osg::BitVector all = ~osg::BitVector(0);
    EXPECT_THAT(changes.getChanged(),
                Contains(Pair(osg::getContainerId(root.get()), Truly([](const osg::BitVector mask) {
                                  return (mask & osg::Node::ChildrenFieldMask) != 0;
                              }))));
    EXPECT_THAT(changes.getChanged(), Contains(Pair(osg::getContainerId(child.get()), all)));
    for (const auto& [id, mask] : changes.getChanged()) {
        EXPECT_NE(id, osg::getContainerId(child->getCore()));
        EXPECT_NE(id, osg::getContainerId(grandchild.get()));
        EXPECT_NE(id, osg::getContainerId(lonely.get()));
    }
}

TEST_F(SceneChangesTest, WhatCameIntoBeingBetweenGatheringsIsTakenWhenItChangesLater)
{
    const osg::RefPtr<osg::NodePtr> root(makeGroup());
    SceneChanges::gather();
    const osg::RefPtr<osg::NodePtr> first(makeGroup());
    const osg::RefPtr<osg::NodePtr> second(makeGroup());
    SceneChanges::gather();
    osg::endEditCP(first.get(), osg::Node::TravMaskFieldMask);
    SceneChanges::gather();
    osg::endEditCP(second.get(), osg::Node::ChildrenFieldMask);

    const SceneChanges changes = SceneChanges::take();

    EXPECT_THAT(changes.getChanged(), Contains(Pair(osg::getContainerId(first.get()), osg::Node::TravMaskFieldMask)));
    EXPECT_THAT(changes.getChanged(), Contains(Pair(osg::getContainerId(second.get()), osg::Node::ChildrenFieldMask)));
}

TEST_F(SceneChangesTest, GatheredIdsAscendAndEachIsTakenOnce)
{
    const osg::RefPtr<osg::NodePtr> root(makeGroup());
    std::vector<osg::RefPtr<osg::NodePtr>> children;
    for (int i = 0; i < 4; ++i) {
        SceneChanges::gather();
        children.emplace_back(makeGroup());
        const osg::CPEditor edit(root.get(), osg::Node::ChildrenFieldMask);
        root->addChild(children.back().get());
        if (i > 0) {
            osg::endEditCP(children[0].get(), osg::Node::TravMaskFieldMask);
        }
    }
    SceneChanges::gather();

    const SceneChanges changes = SceneChanges::take();

    std::vector<osg::UInt32> ids;
    for (const auto& [id, mask] : changes.getChanged()) {
        ids.push_back(id);
    }
    EXPECT_EQ(std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<>()), ids.end())
        << ::testing::PrintToString(ids);
    for (const auto& child : children) {
        EXPECT_THAT(ids, Contains(osg::getContainerId(child.get())));
    }
}

TEST_F(SceneChangesTest, AVolumeThatWasCalculatedIsLeftOutOfALaterGathering)
{
    const osg::RefPtr<osg::NodePtr> looked(makeGroup());
    const osg::RefPtr<osg::NodePtr> edited(makeGroup());
    SceneChanges::take();
    SceneChanges::gather();
    const osg::RefPtr<osg::NodePtr> another(makeGroup());
    osg::endEditCP(looked.get(), osg::Node::VolumeFieldMask);
    osg::endEditCP(edited.get(), osg::Node::VolumeFieldMask | osg::Node::TravMaskFieldMask);
    // The same bit of another class is another field.
    osg::endEditCP(edited->getCore(), osg::Node::VolumeFieldMask);
    SceneChanges::gather();

    EXPECT_THAT(SceneChanges::take().getChanged(),
                UnorderedElementsAre(
                    Pair(osg::getContainerId(edited.get()), osg::Node::VolumeFieldMask | osg::Node::TravMaskFieldMask),
                    Pair(osg::getContainerId(edited->getCore()), osg::Node::VolumeFieldMask)));
}

TEST_F(SceneChangesTest, AfterTakingAllIsTakenWholeAgain)
{
    SceneChanges::gather();
    SceneChanges::take();
    const osg::RefPtr<osg::NodePtr> node(makeGroup());
    SceneChanges::gather();

    EXPECT_THAT(SceneChanges::take().getChanged(), Contains(Pair(osg::getContainerId(node.get()), ::testing::_)));
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
