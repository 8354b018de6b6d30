// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

namespace {

using namespace osg;
using quon::testing::Bounds;
using quon::testing::filled;
using quon::testing::hold;
using quon::testing::worldBounds;

class SimpleGeometryTest : public quon::testing::SceneFixture {
protected:
    /// The default materials stay for good once they were asked for, which must not count as a leak of a test.
    static void SetUpTestSuite()
    {
        getDefaultMaterial();
        getDefaultUnlitMaterial();
    }
};

void expectNear(const Bounds& bounds, const Bounds& expected, const Real32 tolerance)
{
    EXPECT_TRUE(bounds.minimum.equals(expected.minimum, tolerance)) << bounds;
    EXPECT_TRUE(bounds.maximum.equals(expected.maximum, tolerance)) << bounds;
    EXPECT_FALSE(bounds.isEmpty);
}

TEST_F(SimpleGeometryTest, APlaneLiesAroundTheOriginInThePlaneOfXAndY)
{
    const auto node = hold(makePlane(4, 6, 2, 3));

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(-2, -3, 0), Pnt3f(2, 3, 0)));
}

TEST_F(SimpleGeometryTest, ABoxLiesAroundTheOrigin)
{
    const auto node = hold(makeBox(2, 4, 6, 1, 2, 3));

    EXPECT_EQ(worldBounds(node), filled(Pnt3f(-1, -2, -3), Pnt3f(1, 2, 3)));
}

TEST_F(SimpleGeometryTest, ASphereReachesItsRadiusWithRingsThroughTheAxes)
{
    const auto node = hold(makeLatLongSphere(8, 16, 2));

    expectNear(worldBounds(node), filled(Pnt3f(-2, -2, -2), Pnt3f(2, 2, 2)), 1e-5F);
}

TEST_F(SimpleGeometryTest, ADividedSphereComesCloseToItsRadius)
{
    const auto node = hold(makeSphere(4, 2));

    expectNear(worldBounds(node), filled(Pnt3f(-2, -2, -2), Pnt3f(2, 2, 2)), 0.01F);
}

TEST_F(SimpleGeometryTest, NobodyHoldsWhatIsMade)
{
    EXPECT_EQ(hold(makePlane(1, 1, 1, 1)).get().getRefCount(), 1);
    EXPECT_EQ(hold(makeBox(1, 1, 1, 1, 1, 1)).get().getRefCount(), 1);
    EXPECT_EQ(hold(makeSphere(0, 1)).get().getRefCount(), 1);
    EXPECT_EQ(hold(makeLatLongSphere(4, 4, 1)).get().getRefCount(), 1);
    EXPECT_EQ(hold(makePlaneGeo(1, 1, 1, 1)).get().getRefCount(), 1);
    EXPECT_EQ(hold(makeBoxGeo(1, 1, 1, 1, 1, 1)).get().getRefCount(), 1);
    EXPECT_EQ(hold(makeSphereGeo(0, 1)).get().getRefCount(), 1);
    EXPECT_EQ(hold(makeLatLongSphereGeo(4, 4, 1)).get().getRefCount(), 1);
}

TEST_F(SimpleGeometryTest, ANodeHasTheGeometryAsItsCore)
{
    const auto node = hold(makeBox(1, 1, 1, 1, 1, 1));

    EXPECT_TRUE(GeometryPtr::dcast(node->getCore()) != NullFC);
    EXPECT_EQ(node->getCore().getRefCount(), 1);
    EXPECT_EQ(node->getNChildren(), 0U);
}

TEST_F(SimpleGeometryTest, EveryGeometryHasTheDefaultMaterial)
{
    EXPECT_TRUE(hold(makePlaneGeo(1, 1, 1, 1))->getMaterial() == getDefaultMaterial());
    EXPECT_TRUE(hold(makeBoxGeo(1, 1, 1, 1, 1, 1))->getMaterial() == getDefaultMaterial());
    EXPECT_TRUE(hold(makeSphereGeo(0, 1))->getMaterial() == getDefaultMaterial());
    EXPECT_TRUE(hold(makeLatLongSphereGeo(4, 4, 1))->getMaterial() == getDefaultMaterial());
}

TEST_F(SimpleGeometryTest, EveryGeometryHasPositionsNormalsAndTextureCoordinates)
{
    for (const GeometryPtr& made :
         {makePlaneGeo(1, 1, 1, 1), makeBoxGeo(1, 1, 1, 1, 1, 1), makeSphereGeo(1, 1), makeLatLongSphereGeo(4, 4, 1)}) {
        const auto geometry = hold(made);
        EXPECT_TRUE(geometry->getTypes() != NullFC);
        EXPECT_TRUE(geometry->getLengths() != NullFC);
        EXPECT_TRUE(geometry->getPositions() != NullFC);
        EXPECT_TRUE(geometry->getNormals() != NullFC);
        EXPECT_TRUE(geometry->getTexCoords() != NullFC);
    }
}

TEST_F(SimpleGeometryTest, ThereIsOneDefaultMaterialOfEachKind)
{
    EXPECT_TRUE(getDefaultMaterial() == getDefaultMaterial());
    EXPECT_TRUE(getDefaultUnlitMaterial() == getDefaultUnlitMaterial());
    EXPECT_TRUE(getDefaultMaterial() != getDefaultUnlitMaterial());
}

TEST_F(SimpleGeometryTest, TheDefaultMaterialsAreLitAndUnlit)
{
    const SimpleMaterialPtr lit = SimpleMaterialPtr::dcast(getDefaultMaterial());
    const SimpleMaterialPtr unlit = SimpleMaterialPtr::dcast(getDefaultUnlitMaterial());
    ASSERT_TRUE(lit != NullFC);
    ASSERT_TRUE(unlit != NullFC);

    EXPECT_TRUE(lit->getLit());
    EXPECT_FALSE(unlit->getLit());
    EXPECT_FALSE(lit->isTransparent());
}

TEST_F(SimpleGeometryTest, TheDefaultMaterialOutlivesItsGeometries)
{
    const MaterialPtr material = getDefaultMaterial();
    const Int32 count = material.getRefCount();
    EXPECT_GT(count, 0);
    {
        const auto geometry = hold(makePlaneGeo(1, 1, 1, 1));
        EXPECT_EQ(material.getRefCount(), count + 1);
    }

    EXPECT_EQ(material.getRefCount(), count);
}

} // namespace
