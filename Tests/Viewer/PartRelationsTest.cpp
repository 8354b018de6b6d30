// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "Viewer/Model/PartRelations.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::findChildren;
using viewer::findOthers;
using viewer::findParents;

/**
 * model
 *   engine
 *     (a group without name)
 *       bolt
 *         (geometry)
 *       nut
 *         (geometry)
 *   plate
 *     (geometry)
 */
class PartRelationsTest : public SceneFixture {
protected:
    PartRelationsTest()
        : m_bolt(named("bolt", {makeShape()}))
        , m_nut(named("nut", {makeShape()}))
        , m_inner(makeGroup({m_bolt, m_nut}))
        , m_engine(named("engine", {m_inner}))
        , m_plate(named("plate", {makeShape()}))
        , m_model(named("model", {m_engine, m_plate}))
    {}

    ~PartRelationsTest() override { m_model = osg::NullFC; }

    static osg::NodePtr makeShape() { return makeNode(makeRectangle(0, 0, 1, 1, 0, osg::NullFC)); }

    static osg::NodePtr named(const char* name, const std::initializer_list<osg::NodePtr> children)
    {
        const osg::NodePtr node = makeGroup(children);
        NodeUtils::setName(node, name, false);
        return node;
    }

    osg::NodePtr m_bolt;
    osg::NodePtr m_nut;
    osg::NodePtr m_inner;
    osg::NodePtr m_engine;
    osg::NodePtr m_plate;
    osg::RefPtr<osg::NodePtr> m_model;
};

TEST_F(PartRelationsTest, TheParentIsTheNextNodeAboveWithAName)
{
    EXPECT_THAT(findParents({m_bolt}, m_model.get()), ElementsAre(m_engine));
    EXPECT_THAT(findParents({m_engine}, m_model.get()), ElementsAre(m_model.get()));
}

TEST_F(PartRelationsTest, AParentOfSeveralComesOnce)
{
    EXPECT_THAT(findParents({m_bolt, osg::NullFC, m_plate, m_nut}, m_model.get()),
                ElementsAre(m_engine, m_model.get()));
}

TEST_F(PartRelationsTest, TheRootOfTheModelIsTheTopWithOrWithoutAName)
{
    const osg::RefPtr<osg::NodePtr> scene(named("scene", {}));
    EXPECT_THAT(findParents({m_model.get()}, m_model.get()), ElementsAre(m_model.get()));
    scene->addChild(m_model.get());
    EXPECT_THAT(findParents({m_model.get()}, m_model.get()), ElementsAre(m_model.get()));

    EXPECT_THAT(findParents({m_bolt, m_nut}, m_inner), ElementsAre(m_inner));
}

TEST_F(PartRelationsTest, ANodeThatIsNotInTheModelStays)
{
    const osg::RefPtr<osg::NodePtr> other(makeGroup({makeShape()}));

    EXPECT_THAT(findParents({other->getChild(0)}, m_model.get()), ElementsAre(other->getChild(0)));
}

TEST_F(PartRelationsTest, ANameThatTheProgramGaveIsNone)
{
    NodeUtils::setName(m_engine, "engine", true);

    EXPECT_THAT(findParents({m_bolt}, m_model.get()), ElementsAre(m_model.get()));
    EXPECT_THAT(findChildren({m_model.get()}), ElementsAre(m_bolt, m_nut, m_plate));
}

TEST_F(PartRelationsTest, ChildrenAreTheNextNodesBelowWithAName)
{
    EXPECT_THAT(findChildren({m_model.get()}), ElementsAre(m_engine, m_plate));
    EXPECT_THAT(findChildren({m_engine}), ElementsAre(m_bolt, m_nut));
    EXPECT_THAT(findChildren({m_engine, osg::NullFC, m_inner}), ElementsAre(m_bolt, m_nut));
}

TEST_F(PartRelationsTest, APartStaysForItsPiecesAreNoParts)
{
    EXPECT_THAT(findChildren({m_bolt, m_engine}), ElementsAre(m_bolt, m_nut));
}

TEST_F(PartRelationsTest, WithoutAnyNameTheChildrenAreTheGeometries)
{
    const osg::NodePtr first = makeShape();
    const osg::NodePtr second = makeShape();
    const osg::RefPtr<osg::NodePtr> root(makeGroup({first, makeGroup({second})}));

    EXPECT_THAT(findChildren({root.get()}), ElementsAre(first, second));
    EXPECT_THAT(findParents({second}, root.get()), ElementsAre(root.get()));
}

TEST_F(PartRelationsTest, HiddenChildrenComeAlongAndAuxiliaryOnesDoNot)
{
    setTravMask(m_bolt, 0);
    koNodeUtils::setIsAuxiliaryNode(m_nut, true);

    EXPECT_THAT(findChildren({m_engine}), ElementsAre(m_bolt));
}

TEST_F(PartRelationsTest, OthersAreThePartsThatAreNeitherSelectedNorInASelectedGroup)
{
    const std::vector<osg::NodePtr> parts{m_bolt, m_nut, m_plate};

    EXPECT_THAT(findOthers(parts, {}), ElementsAre(m_bolt, m_nut, m_plate));
    EXPECT_THAT(findOthers(parts, {m_nut, osg::NullFC}), ElementsAre(m_bolt, m_plate));
    EXPECT_THAT(findOthers(parts, {m_engine}), ElementsAre(m_plate));
    EXPECT_THAT(findOthers(parts, {m_model.get()}), IsEmpty());
}

TEST_F(PartRelationsTest, AHundredThousandPartsInAChainAreRelatedToEachOther)
{
    // Deep and long: whoever walks up from every part would not come to an end.
    std::vector<osg::NodePtr> parts;
    osg::RefPtr<osg::NodePtr> root(named("part", {}));
    parts.push_back(root.get());
    for (int i = 1; i < 100000; ++i) {
        parts.push_back(named("part", {}));
        parts[parts.size() - 2]->addChild(parts.back());
    }

    EXPECT_EQ(findOthers(parts, {parts[50000]}).size(), 50000U);
    EXPECT_EQ(findParents(parts, root.get()).size(), 99999U);
    EXPECT_EQ(findChildren(parts).size(), 99999U);
}

} // namespace

} // namespace quon::testing
