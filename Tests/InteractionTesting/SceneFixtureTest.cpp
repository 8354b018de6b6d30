// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/** A test of a host as GoogleTest makes it, run by hand. */
class HostTest final : public SceneFixture {
public:
    void TestBody() override {}
    using SceneFixture::takeChanges;
};

TEST(SceneFixtureTest, PassesWhenAllContainersAreGone)
{
    const HostTest test;
    const NodeRef node = makeNode(osg::Group::create());
}

TEST(SceneFixtureTest, FailsWhenAContainerOutlivesTheTest)
{
    NodeRef outlives;

    EXPECT_NONFATAL_FAILURE(
        {
            const HostTest test;
            outlives = makeNode(osg::Group::create());
        },
        "containers leaked or released too often");
}

TEST(SceneFixtureTest, FailsWhenAContainerWasReleasedTooOften)
{
    const osg::NodePtr held = osg::Node::create();

    EXPECT_NONFATAL_FAILURE(
        {
            const HostTest test;
            osg::subRefCP(held);
        },
        "containers leaked or released too often");
}

TEST(SceneFixtureTest, TakesTheChangesSinceTheLastTime)
{
    HostTest test;
    const NodeRef node = makeNode(osg::Group::create());
    test.takeChanges();

    osg::beginEditCP(node, osg::Node::TravMaskFieldMask);
    node->setTravMask(0);
    osg::endEditCP(node, osg::Node::TravMaskFieldMask);

    EXPECT_THAT(test.takeChanges(),
                ElementsAre(Pair(osg::getContainerId(node.get()), osg::BitVector(osg::Node::TravMaskFieldMask))));
    EXPECT_THAT(test.takeChanges(), IsEmpty());
}

TEST(SceneFixtureTest, StartsWithoutChanges)
{
    const NodeRef node = makeNode(osg::Group::create());

    HostTest test;

    EXPECT_THAT(test.takeChanges(), IsEmpty());
}

} // namespace

} // namespace quon::testing
