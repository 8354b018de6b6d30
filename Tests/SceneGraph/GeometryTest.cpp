// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::makeCube;

class GeometryTest : public quon::testing::SceneFixture {};

TEST_F(GeometryTest, AFreshGeometryHasNoPropertiesAndCachesItsDisplayList)
{
    const auto geometry = hold(Geometry::create());

    EXPECT_TRUE(geometry->getTypes() == NullFC);
    EXPECT_TRUE(geometry->getLengths() == NullFC);
    EXPECT_TRUE(geometry->getPositions() == NullFC);
    EXPECT_TRUE(geometry->getNormals() == NullFC);
    EXPECT_TRUE(geometry->getColors() == NullFC);
    EXPECT_TRUE(geometry->getIndices() == NullFC);
    EXPECT_TRUE(geometry->getMaterial() == NullFC);
    EXPECT_TRUE(geometry->getDlistCache());
}

TEST_F(GeometryTest, KeepsItsProperties)
{
    const auto geometry = hold(Geometry::create());
    const GeoPTypesUI8Ptr types = GeoPTypesUI8::create();
    const GeoPLengthsUI32Ptr lengths = GeoPLengthsUI32::create();
    const GeoPositions3fPtr positions = GeoPositions3f::create();
    const GeoIndicesUI32Ptr indices = GeoIndicesUI32::create();

    geometry->setTypes(types);
    geometry->setLengths(lengths);
    geometry->setPositions(positions);
    geometry->setIndices(indices);
    geometry->setDlistCache(false);

    EXPECT_TRUE(geometry->getTypes() == types);
    EXPECT_TRUE(geometry->getLengths() == lengths);
    EXPECT_TRUE(geometry->getPositions() == positions);
    EXPECT_TRUE(geometry->getIndices() == indices);
    EXPECT_FALSE(geometry->getDlistCache());
    EXPECT_TRUE(GeoPositions3fPtr::dcast(geometry->getPositions()) == positions);
}

TEST_F(GeometryTest, KeepsItsNormalsAndColors)
{
    const auto geometry = hold(Geometry::create());
    const GeoNormals3fPtr normals = GeoNormals3f::create();
    const GeoColors3fPtr colors = GeoColors3f::create();

    geometry->setNormals(normals);
    geometry->setColors(colors);

    EXPECT_TRUE(geometry->getNormals() == normals);
    EXPECT_TRUE(geometry->getColors() == colors);
    EXPECT_EQ(colors.getRefCount(), 1);
}

TEST_F(GeometryTest, IsAParentOfItsProperties)
{
    const auto geometry = hold(Geometry::create());
    const auto positions = hold(GeoPositions3f::create());

    geometry->setPositions(positions.get());
    ASSERT_EQ(positions->getParents().size(), 1U);
    EXPECT_TRUE(positions->getParents()[0] == geometry.get());

    geometry->setPositions(GeoPositions3f::create());
    EXPECT_EQ(positions->getParents().size(), 0U);
}

TEST_F(GeometryTest, TwoGeometriesShareAProperty)
{
    const auto first = hold(Geometry::create());
    const auto second = hold(Geometry::create());
    const GeoPositions3fPtr positions = GeoPositions3f::create();

    first->setPositions(positions);
    second->setPositions(positions);

    EXPECT_EQ(positions.getRefCount(), 2);
    EXPECT_EQ(positions->getParents().size(), 2U);
}

TEST_F(GeometryTest, IsAMaterialDrawableAndNoGroup)
{
    const auto geometry = hold(Geometry::create());
    const NodeCorePtr core = geometry.get();

    EXPECT_TRUE(MaterialDrawablePtr::dcast(core) != NullFC);
    EXPECT_TRUE(DrawablePtr::dcast(core) != NullFC);
    EXPECT_TRUE(GroupPtr::dcast(core) == NullFC);
}

TEST_F(GeometryTest, KeepsItsMaterial)
{
    const auto geometry = hold(Geometry::create());
    const SimpleMaterialPtr material = SimpleMaterial::create();

    geometry->setMaterial(material);

    EXPECT_TRUE(geometry->getMaterial() == material);
}

TEST_F(GeometryTest, SettingItsOwnPropertyAgainKeepsIt)
{
    const auto geometry = hold(makeCube());
    const UInt32 id = getContainerId(geometry->getPositions());

    geometry->setPositions(geometry->getPositions());

    ASSERT_TRUE(quon::testing::isAlive(id));
    EXPECT_EQ(geometry->getPositions().getRefCount(), 1);
    EXPECT_EQ(geometry->getPositions()->getParents().size(), 1U);
}

TEST_F(GeometryTest, ACloneHasPropertiesOfItsOwn)
{
    const auto geometry = hold(makeCube());

    const auto copy = hold(geometry->clone());

    EXPECT_TRUE(copy->getPositions() != geometry->getPositions());
    EXPECT_EQ(copy->getPositions().getRefCount(), 1);
    EXPECT_EQ(copy->getPositions()->getValue(1), Pnt3f(1, 1, 1));
    EXPECT_EQ(geometry->getPositions()->getParents().size(), 1U);
}

TEST_F(GeometryTest, RarePropertiesAreHeldAndReleasedAsTheOthersAre)
{
    const auto geometry = hold(Geometry::create());
    const auto colors = hold(GeoColors3f::create());
    const auto coordinates = hold(GeoTexCoords2f::create());

    geometry->setSecondaryColors(colors.get());
    geometry->setTexCoords1(coordinates.get());
    EXPECT_TRUE(geometry->getSecondaryColors() == colors.get());
    EXPECT_TRUE(geometry->getTexCoords1() == coordinates.get());
    EXPECT_EQ(colors.get().getRefCount(), 2);

    geometry->setSecondaryColors(NullFC);
    EXPECT_EQ(colors.get().getRefCount(), 1);
    EXPECT_EQ(coordinates.get().getRefCount(), 2);
}

} // namespace
