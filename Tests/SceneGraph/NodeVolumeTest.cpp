// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::addNode;
using quon::testing::emptied;
using quon::testing::filled;
using quon::testing::hold;
using quon::testing::makeCube;
using quon::testing::makeNode;
using quon::testing::makePoints;
using quon::testing::makeTranslation;
using quon::testing::readBounds;
using quon::testing::worldBounds;

const auto unitCube = filled(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1));
const auto nothing = emptied(Pnt3f(), Pnt3f());

class NodeVolumeTest : public quon::testing::SceneFixture {
protected:
    static void translate(const NodePtr& node, const Real32 x, const Real32 y, const Real32 z)
    {
        Matrix matrix;
        matrix.setTranslate(x, y, z);
        TransformPtr::dcast(node->getCore())->setMatrix(matrix);
    }
};

TEST_F(NodeVolumeTest, AGeometryCoversItsPoints)
{
    const auto node = hold(makeNode(makePoints({Pnt3f(1, 2, 3), Pnt3f(-1, 5, 0), Pnt3f(0, 0, 9)})));

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(-1, 0, 0), Pnt3f(1, 5, 9)));
}

TEST_F(NodeVolumeTest, ACubeUnderATranslationIsMoved)
{
    const auto root = hold(makeNode(makeTranslation(10, 20, 30)));
    const NodePtr cube = addNode(root, makeCube());

    EXPECT_EQ(worldBounds(cube), filled(Pnt3f(9, 19, 29), Pnt3f(11, 21, 31)));
    EXPECT_EQ(cube->getToWorld()[3], Vec4f(10, 20, 30, 1));
}

TEST_F(NodeVolumeTest, TheVolumeOfATransformNodeIncludesItsOwnTransform)
{
    const auto node = hold(makeNode(makeTranslation(10, 20, 30)));
    addNode(node, makeCube());
    node->updateVolume();

    EXPECT_EQ(readBounds(node->getVolume()), filled(Pnt3f(9, 19, 29), Pnt3f(11, 21, 31)));
    EXPECT_EQ(worldBounds(node), filled(Pnt3f(9, 19, 29), Pnt3f(11, 21, 31)));
}

TEST_F(NodeVolumeTest, AGroupCoversItsChildren)
{
    const auto root = hold(makeNode(Group::create()));
    addNode(addNode(root, makeTranslation(10, 0, 0)), makeCube());
    addNode(addNode(root, makeTranslation(0, -10, 0)), makeCube());

    EXPECT_EQ(worldBounds(root), filled(Pnt3f(-1, -11, -1), Pnt3f(11, 1, 1)));
}

TEST_F(NodeVolumeTest, ANodeWithoutCoreCoversItsChildren)
{
    const auto root = hold(Node::create());
    addNode(root, makeCube());

    EXPECT_EQ(worldBounds(root), unitCube);
}

TEST_F(NodeVolumeTest, AGeometryWithChildrenCoversBoth)
{
    const auto root = hold(makeNode(makeCube()));
    addNode(addNode(root, makeTranslation(10, 0, 0)), makeCube());

    EXPECT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(11, 1, 1)));
}

TEST_F(NodeVolumeTest, NestedTransformsMultiply)
{
    Matrix scale;
    scale.setScale(2.0F);
    const TransformPtr outer = Transform::create();
    outer->setMatrix(scale);
    const auto root = hold(makeNode(outer));
    const NodePtr inner = addNode(root, makeTranslation(5, 0, 0));
    const NodePtr cube = addNode(inner, makeCube());

    const auto expected = filled(Pnt3f(8, -2, -2), Pnt3f(12, 2, 2));
    EXPECT_EQ(worldBounds(cube), expected);
    EXPECT_EQ(worldBounds(inner), expected);
    EXPECT_EQ(worldBounds(root), expected);
}

TEST_F(NodeVolumeTest, NothingReadsAsZeros)
{
    const auto group = hold(makeNode(Group::create()));
    const auto coreless = hold(Node::create());
    const auto transform = hold(makeNode(makeTranslation(10, 20, 30)));
    const auto geometry = hold(makeNode(Geometry::create()));

    EXPECT_EQ(worldBounds(group), nothing);
    EXPECT_EQ(worldBounds(coreless), nothing);
    EXPECT_EQ(worldBounds(transform), nothing);
    EXPECT_EQ(worldBounds(geometry), nothing);
}

TEST_F(NodeVolumeTest, NothingUnderATranslationReadsAsZeros)
{
    const auto root = hold(makeNode(makeTranslation(10, 20, 30)));
    const NodePtr child = addNode(root, Group::create());

    EXPECT_EQ(worldBounds(child), nothing);
}

TEST_F(NodeVolumeTest, ANodeHiddenFromTheStartReadsAsZeros)
{
    const auto root = hold(makeNode(makeTranslation(10, 20, 30)));
    const NodePtr cube = makeNode(makeCube());
    cube->setTravMask(0);
    endEditCP(cube, Node::TravMaskFieldMask);
    root->addChild(cube);
    endEditCP(root, Node::ChildrenFieldMask);

    EXPECT_EQ(worldBounds(cube), nothing);
    EXPECT_EQ(worldBounds(root), nothing);
}

TEST_F(NodeVolumeTest, ANodeHiddenLaterKeepsItsVolumeAndFollowsItsParent)
{
    const auto root = hold(makeNode(makeTranslation(10, 20, 30)));
    const NodePtr cube = addNode(root, makeCube());
    worldBounds(cube);

    cube->setTravMask(0);
    endEditCP(cube, Node::TravMaskFieldMask);
    EXPECT_EQ(worldBounds(cube), filled(Pnt3f(9, 19, 29), Pnt3f(11, 21, 31)));

    translate(root, 0, 0, 5);
    endEditCP(root->getCore(), Transform::MatrixFieldMask);
    EXPECT_EQ(worldBounds(cube), filled(Pnt3f(-1, -1, 4), Pnt3f(1, 1, 6)));
}

TEST_F(NodeVolumeTest, AHiddenChildDoesNotCount)
{
    const auto root = hold(makeNode(Group::create()));
    addNode(root, makeCube());
    const NodePtr moved = addNode(root, makeTranslation(10, 0, 0));
    addNode(moved, makeCube());
    ASSERT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(11, 1, 1)));

    moved->setTravMask(0);
    endEditCP(moved, Node::TravMaskFieldMask);
    EXPECT_EQ(worldBounds(root), unitCube);

    moved->setTravMask(1);
    endEditCP(moved, Node::TravMaskFieldMask);
    EXPECT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(11, 1, 1)));
}

TEST_F(NodeVolumeTest, HidingWithoutAnEditLeavesTheOldVolume)
{
    const auto root = hold(makeNode(Group::create()));
    addNode(root, makeCube());
    const NodePtr moved = addNode(root, makeTranslation(10, 0, 0));
    addNode(moved, makeCube());
    const auto before = worldBounds(root);

    moved->setTravMask(0);

    EXPECT_EQ(worldBounds(root), before);
}

TEST_F(NodeVolumeTest, AMatrixSetWithoutAnEditLeavesTheOldVolume)
{
    const auto root = hold(makeNode(makeTranslation(10, 0, 0)));
    addNode(root, makeCube());
    ASSERT_EQ(worldBounds(root), filled(Pnt3f(9, -1, -1), Pnt3f(11, 1, 1)));

    translate(root, 20, 0, 0);
    EXPECT_EQ(worldBounds(root), filled(Pnt3f(9, -1, -1), Pnt3f(11, 1, 1)));

    endEditCP(root->getCore(), Transform::MatrixFieldMask);
    EXPECT_EQ(worldBounds(root), filled(Pnt3f(19, -1, -1), Pnt3f(21, 1, 1)));
}

TEST_F(NodeVolumeTest, AnEditDeepInTheTreeReachesTheRoot)
{
    const auto root = hold(makeNode(Group::create()));
    const NodePtr transform = addNode(addNode(root, Group::create()), makeTranslation(1, 0, 0));
    addNode(transform, makeCube());
    ASSERT_EQ(worldBounds(root), filled(Pnt3f(0, -1, -1), Pnt3f(2, 1, 1)));

    translate(transform, 5, 0, 0);
    endEditCP(transform->getCore(), Transform::MatrixFieldMask);

    EXPECT_EQ(worldBounds(root), filled(Pnt3f(4, -1, -1), Pnt3f(6, 1, 1)));
}

TEST_F(NodeVolumeTest, AddingAndSubtractingAChildChangesTheVolume)
{
    const auto root = hold(makeNode(Group::create()));
    addNode(root, makeCube());
    ASSERT_EQ(worldBounds(root), unitCube);

    const NodePtr moved = addNode(root, makeTranslation(10, 0, 0));
    addNode(moved, makeCube());
    EXPECT_EQ(worldBounds(root), filled(Pnt3f(-1, -1, -1), Pnt3f(11, 1, 1)));

    root->subChild(1);
    EXPECT_EQ(worldBounds(root), unitCube);
}

TEST_F(NodeVolumeTest, ReplacingAChildChangesTheVolume)
{
    const auto root = hold(makeNode(Group::create()));
    addNode(root, makeCube());
    ASSERT_EQ(worldBounds(root), unitCube);

    root->replaceChild(0, makeNode(makePoints({Pnt3f(0, 0, 0), Pnt3f(5, 5, 5)})));

    EXPECT_EQ(worldBounds(root), filled(Pnt3f(0, 0, 0), Pnt3f(5, 5, 5)));
}

TEST_F(NodeVolumeTest, PositionsThatNoPrimitiveUsesHaveNoExtent)
{
    const GeometryPtr geometry = makeCube();
    const auto node = hold(makeNode(geometry));
    geometry->setTypes(NullFC);
    endEditCP(geometry);
    EXPECT_EQ(worldBounds(node), emptied(Pnt3f(0, 0, 0), Pnt3f(0, 0, 0)));

    const GeoPTypesUI8Ptr types = GeoPTypesUI8::create();
    types->addValue(GL_POINTS);
    endEditCP(types);
    geometry->setTypes(types);
    geometry->getLengths()->setValue(1, 0);
    endEditCP(geometry);

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(-1, -1, -1), Pnt3f(-1, -1, -1)));
}

TEST_F(NodeVolumeTest, IndicesSayWhichPositionsCount)
{
    const GeometryPtr geometry = makePoints({Pnt3f(0, 0, 0), Pnt3f(1, 1, 1), Pnt3f(9, 9, 9)});
    const auto node = hold(makeNode(geometry));
    const GeoIndicesUI32Ptr indices = GeoIndicesUI32::create();
    indices->addValue(1);
    indices->addValue(0);
    endEditCP(indices);
    geometry->setIndices(indices);
    geometry->getLengths()->setValue(2, 0);
    endEditCP(geometry);

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(0, 0, 0), Pnt3f(1, 1, 1)));
}

TEST_F(NodeVolumeTest, WithoutLengthsAPrimitiveHasAllPositions)
{
    const GeometryPtr geometry = makeCube();
    const auto node = hold(makeNode(geometry));
    geometry->setLengths(NullFC);
    endEditCP(geometry);

    EXPECT_EQ(worldBounds(node), unitCube);
}

TEST_F(NodeVolumeTest, AShallowCopyKeepsTheNumbersOfTheBoxButNotTheBox)
{
    const auto node = hold(makeNode(Group::create()));
    addNode(node, makeCube());
    ASSERT_EQ(worldBounds(node), unitCube);

    const auto copy = hold(NodePtr::dcast(node->shallowCopy()));

    EXPECT_EQ(worldBounds(copy), emptied(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1)));
}

TEST_F(NodeVolumeTest, InvalidatingIsRecordedOnce)
{
    const auto node = hold(Node::create());
    EXPECT_THAT(takeChanges(), ::testing::ElementsAre(Change(getContainerId(node.get()), Node::VolumeFieldMask)));

    node->invalidateVolume();

    EXPECT_THAT(takeChanges(), ::testing::IsEmpty());
}

TEST_F(NodeVolumeTest, ANewCoreChangesTheVolumeWithoutAnEdit)
{
    const auto node = hold(makeNode(makeCube()));
    ASSERT_EQ(worldBounds(node), unitCube);

    node->setCore(makePoints({Pnt3f(0, 0, 0), Pnt3f(5, 5, 5)}));

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(0, 0, 0), Pnt3f(5, 5, 5)));
}

TEST_F(NodeVolumeTest, EndingTheEditOfTheMaskOfARootRefreshesItself)
{
    const auto node = hold(makeNode(makeCube()));
    ASSERT_EQ(worldBounds(node), unitCube);
    node->setCore(makePoints({Pnt3f(0, 0, 0), Pnt3f(5, 5, 5)}));

    endEditCP(node, Node::TravMaskFieldMask);

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(0, 0, 0), Pnt3f(5, 5, 5)));
}

TEST_F(NodeVolumeTest, ANodeThatLostItsChildrenIsEmptyWithItsOldBounds)
{
    const auto node = hold(makeNode(makeTranslation(5, 0, 0)));
    addNode(node, makeCube());
    ASSERT_EQ(worldBounds(node), filled(Pnt3f(4, -1, -1), Pnt3f(6, 1, 1)));

    node->subChild(0);
    endEditCP(node, Node::ChildrenFieldMask);

    EXPECT_EQ(worldBounds(node), emptied(Pnt3f(4, -1, -1), Pnt3f(6, 1, 1)));
}

TEST_F(NodeVolumeTest, OldBoundsOfAnEmptyNodeDoNotFollowItsParent)
{
    const auto root = hold(makeNode(makeTranslation(5, 0, 0)));
    const NodePtr group = addNode(root, Group::create());
    addNode(group, makeCube());
    ASSERT_EQ(worldBounds(group), filled(Pnt3f(4, -1, -1), Pnt3f(6, 1, 1)));

    group->subChild(0);
    endEditCP(group, Node::ChildrenFieldMask);

    EXPECT_EQ(worldBounds(group), emptied(Pnt3f(-1, -1, -1), Pnt3f(1, 1, 1)));
}

TEST_F(NodeVolumeTest, AnEmptyChildWithOldBoundsDoesNotCount)
{
    const auto root = hold(makeNode(Group::create()));
    const NodePtr emptied = addNode(root, makeTranslation(50, 0, 0));
    addNode(emptied, makeCube());
    addNode(root, makeCube());
    worldBounds(root);

    emptied->subChild(0);
    endEditCP(emptied, Node::ChildrenFieldMask);

    EXPECT_EQ(worldBounds(root), unitCube);
}

TEST_F(NodeVolumeTest, ANodeThatGainsAChildAgainForgetsItsOldBounds)
{
    const auto node = hold(makeNode(Group::create()));
    addNode(node, makePoints({Pnt3f(-50, -50, -50), Pnt3f(50, 50, 50)}));
    worldBounds(node);
    node->subChild(0);
    worldBounds(node);

    addNode(node, makeCube());
    endEditCP(node, Node::ChildrenFieldMask);

    EXPECT_EQ(worldBounds(node), unitCube);
}

TEST_F(NodeVolumeTest, APointMovedWithoutAnEditLeavesTheOldVolume)
{
    const GeometryPtr geometry = makeCube();
    const auto node = hold(makeNode(geometry));
    ASSERT_EQ(worldBounds(node), unitCube);

    const GeoPositions3fPtr positions = GeoPositions3fPtr::dcast(geometry->getPositions());
    positions->setValue(Pnt3f(5, 5, 5), 1);
    EXPECT_EQ(worldBounds(node), unitCube);

    endEditCP(positions, GeoPositions3f::GeoPropDataFieldMask);
    EXPECT_EQ(worldBounds(node), filled(Pnt3f(-1, -1, -1), Pnt3f(5, 5, 5)));
}

TEST_F(NodeVolumeTest, EndingTheEditOfTheGeometryRefreshesAsWell)
{
    const GeometryPtr geometry = makeCube();
    const auto node = hold(makeNode(geometry));
    ASSERT_EQ(worldBounds(node), unitCube);

    geometry->getPositions()->setValue(Pnt3f(5, 5, 5), 1);
    endEditCP(geometry, Geometry::PositionsFieldMask);

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(-1, -1, -1), Pnt3f(5, 5, 5)));
}

TEST_F(NodeVolumeTest, AllNodesOfASharedGeometryFollowItsPoints)
{
    const auto geometry = hold(makeCube());
    const auto first = hold(makeNode(geometry.get()));
    const auto second = hold(makeNode(makeTranslation(10, 0, 0)));
    addNode(second, geometry.get());
    worldBounds(first);
    worldBounds(second);

    geometry->getPositions()->setValue(Pnt3f(5, 5, 5), 1);
    endEditCP(geometry->getPositions(), GeoPositions3f::GeoPropDataFieldMask);

    EXPECT_EQ(worldBounds(first), filled(Pnt3f(-1, -1, -1), Pnt3f(5, 5, 5)));
    EXPECT_EQ(worldBounds(second), filled(Pnt3f(9, -1, -1), Pnt3f(15, 5, 5)));
}

TEST_F(NodeVolumeTest, AllNodesOfASharedTransformFollowItsMatrix)
{
    const auto transform = hold(makeTranslation(10, 0, 0));
    const auto first = hold(makeNode(transform.get()));
    const auto second = hold(makeNode(transform.get()));
    addNode(first, makeCube());
    addNode(second, makeCube());
    worldBounds(first);
    worldBounds(second);

    translate(first, 0, 0, 0);
    endEditCP(transform, Transform::MatrixFieldMask);

    EXPECT_EQ(worldBounds(first), unitCube);
    EXPECT_EQ(worldBounds(second), unitCube);
}

TEST_F(NodeVolumeTest, AnInvalidatedVolumeIsComputedOnTheNextRead)
{
    const auto node = hold(makeNode(makeCube()));
    worldBounds(node);
    ASSERT_TRUE(node->getVolume().isValid());

    node->invalidateVolume();
    EXPECT_FALSE(node->getVolume().isValid());

    EXPECT_EQ(worldBounds(node), unitCube);
    EXPECT_TRUE(node->getVolume().isValid());
}

TEST_F(NodeVolumeTest, AMaterialGroupCoversItsChildrenLikeAGroup)
{
    const auto root = hold(makeNode(MaterialGroup::create()));
    addNode(root, makeCube());

    EXPECT_EQ(worldBounds(root), unitCube);
}

} // namespace
