// SPDX-License-Identifier: MIT
#include <InteractionTesting/ObjectNames.h>

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGGroup.h>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

TEST(ObjectNamesTest, NamesNodesAndObjects)
{
    const NodeRef wheel = makeNode(osg::Group::create());
    const int option = 0;
    ObjectNames names;
    names.add(wheel.get(), "wheel");
    names.add(&option, "option");

    EXPECT_EQ(names.of(wheel.get()), "wheel");
    EXPECT_EQ(names.of(&option), "option");
}

TEST(ObjectNamesTest, TellsWhatIsNullAndWhatIsUnknown)
{
    const NodeRef wheel = makeNode(osg::Group::create());
    const int option = 0;
    const ObjectNames names;

    EXPECT_EQ(names.of(wheel.get()), "unknown");
    EXPECT_EQ(names.of(osg::NodePtr(osg::NullFC)), "null");
    EXPECT_EQ(names.of(&option), "unknown");
    EXPECT_EQ(names.of(static_cast<const void*>(nullptr)), "null");
}

TEST(ObjectNamesTest, ListsNodesInTheirOrder)
{
    const NodeRef wheel = makeNode(osg::Group::create());
    const NodeRef axle = makeNode(osg::Group::create());
    ObjectNames names;
    names.add(wheel.get(), "wheel");
    names.add(axle.get(), "axle");

    EXPECT_EQ(names.of({axle.get(), wheel.get(), osg::NullFC}), "[axle wheel null]");
    EXPECT_EQ(names.of(std::vector<osg::NodePtr>()), "[]");
}

TEST(ObjectNamesTest, KeepsTheNameOfADestroyedNode)
{
    NodeRef wheel = makeNode(osg::Group::create());
    const osg::NodePtr handle = wheel.get();
    ObjectNames names;
    names.add(handle, "wheel");

    wheel = NodeRef();

    EXPECT_EQ(names.of(handle), "wheel");
}

} // namespace

} // namespace quon::testing
