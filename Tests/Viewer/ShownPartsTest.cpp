// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "Viewer/Model/ShownParts.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSwitch.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ShownPartsTest : public SceneFixture {
protected:
    ShownPartsTest()
        : m_first(makePart("first"))
        , m_second(makePart("second"))
        , m_group(makeGroup({m_second}))
        , m_root(makeGroup({m_first, m_group, makeGroup()}))
    {
        m_parts.setRoot(m_root.get());
        viewer::SceneChanges::take();
    }

    ~ShownPartsTest() override { m_root = osg::NullFC; }

    // With two pieces of geometry.
    static osg::NodePtr makePart(const char* name)
    {
        const osg::GeometryPtr geometry = makeRectangle(0, 0, 1, 1, 0, osg::NullFC);
        const osg::NodePtr part = makeGroup({makeNode(geometry), makeNode(geometry)});
        NodeUtils::setName(part, name, false);
        return part;
    }

    const std::vector<osg::NodePtr>& get()
    {
        m_parts.sceneChanged(viewer::SceneChanges::take());
        return m_parts.get();
    }

    osg::NodePtr m_first;
    osg::NodePtr m_second;
    osg::NodePtr m_group;
    osg::RefPtr<osg::NodePtr> m_root;
    viewer::ShownParts m_parts;
};

TEST_F(ShownPartsTest, EachPartComesOnceInTheOrderOfTheScene)
{
    EXPECT_THAT(get(), ElementsAre(m_first, m_second));
}

TEST_F(ShownPartsTest, WithoutARootThereAreNone)
{
    get();

    m_parts.setRoot(osg::NullFC);

    EXPECT_THAT(get(), IsEmpty());
}

TEST_F(ShownPartsTest, TheListIsKeptUntilTheModelChanges)
{
    get();
    get();
    EXPECT_EQ(m_parts.getWalkCount(), 1U);

    // Next to the model, as visualisations come and go.
    const osg::RefPtr<osg::NodePtr> elsewhere(makeGroup({makeGroup()}));
    setTravMask(elsewhere.get(), 0);
    get();
    EXPECT_EQ(m_parts.getWalkCount(), 1U);

    const osg::NodePtr added = makePart("added");
    beginEditCP(m_group, osg::Node::ChildrenFieldMask);
    m_group->addChild(added);
    endEditCP(m_group, osg::Node::ChildrenFieldMask);
    EXPECT_THAT(get(), ElementsAre(m_first, m_second, added));
    EXPECT_EQ(m_parts.getWalkCount(), 2U);

    beginEditCP(m_group, osg::Node::ChildrenFieldMask);
    m_group->subChild(added);
    endEditCP(m_group, osg::Node::ChildrenFieldMask);
    EXPECT_THAT(get(), ElementsAre(m_first, m_second));
}

TEST_F(ShownPartsTest, WhatIsHiddenIsNoneUntilItIsShownAgain)
{
    get();
    setTravMask(m_group, 0);
    EXPECT_THAT(get(), ElementsAre(m_first));

    setTravMask(m_first->getChild(0), 0);
    EXPECT_THAT(get(), ElementsAre(m_first));
    setTravMask(m_first->getChild(1), 0);
    EXPECT_THAT(get(), IsEmpty());

    setTravMask(m_group, 0xFFFFFFFF);
    EXPECT_THAT(get(), ElementsAre(m_second));
}

TEST_F(ShownPartsTest, AuxiliaryNodesHoldNone)
{
    koNodeUtils::setIsAuxiliaryNode(m_group, true);

    EXPECT_THAT(get(), ElementsAre(m_first));
}

TEST_F(ShownPartsTest, ASwitchShowsItsChoice)
{
    const osg::SwitchPtr choosing = osg::Switch::create();
    const osg::NodePtr left = makePart("left");
    const osg::NodePtr right = makePart("right");
    const auto choose = [&](const osg::Int32 choice) {
        beginEditCP(choosing, osg::Switch::ChoiceFieldMask);
        choosing->setChoice(choice);
        endEditCP(choosing, osg::Switch::ChoiceFieldMask);
    };
    choose(0);
    beginEditCP(m_root, osg::Node::ChildrenFieldMask);
    m_root->addChild(makeNode(choosing, {left, right}));
    endEditCP(m_root, osg::Node::ChildrenFieldMask);
    EXPECT_THAT(get(), ElementsAre(m_first, m_second, left));

    choose(1);

    EXPECT_THAT(get(), ElementsAre(m_first, m_second, right));
}

TEST_F(ShownPartsTest, AHundredThousandPartsAreWalkedOverOnce)
{
    const osg::GeometryPtr geometry = makeRectangle(0, 0, 1, 1, 0, osg::NullFC);
    const osg::RefPtr<osg::NodePtr> many(makeGroup());
    for (int i = 0; i < 100000; ++i) {
        many->addChild(makeNode(geometry));
    }
    m_parts.setRoot(many.get());

    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(get().size(), 100000U);
    }

    EXPECT_EQ(m_parts.getWalkCount(), 1U);
    m_parts.setRoot(osg::NullFC);
}

} // namespace

} // namespace quon::testing
