// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>
#include <vector>

// An installed OpenSG makes the same bodies of strips and fans; here they are indexed triangles.
namespace {

using namespace osg;
using quon::testing::hold;

class EmbeddedSimpleGeometryTest : public quon::testing::SceneFixture {
protected:
    /// The default materials stay for good once they were asked for, which must not count as a leak of a test.
    static void SetUpTestSuite()
    {
        const UInt32 before = FieldContainerFactory::the()->getLiveContainerCount();
        getDefaultMaterial();
        getDefaultUnlitMaterial();
        s_containersShown = FieldContainerFactory::the()->getLiveContainerCount() - before;
    }

    static UInt32 s_containersShown;
};

UInt32 EmbeddedSimpleGeometryTest::s_containersShown = 1;

struct Vertex {
    Pnt3f position;
    Vec3f normal;
    Vec2f texCoord;
};

struct Triangle {
    Vertex a;
    Vertex b;
    Vertex c;

    /// Twice the area long, towards the side from which the corners run counter-clockwise.
    Vec3f facing() const { return (b.position - a.position).cross(c.position - a.position); }
    Real32 area() const { return facing().length() / 2; }
    /// The volume of the tetrahedron with the origin, negative when the triangle looks at the origin.
    Real32 volume() const { return a.position.subZero().dot(b.position.subZero().cross(c.position.subZero())) / 6; }
};

std::vector<Vertex> verticesOf(const GeometryPtr& geometry)
{
    std::vector<Vertex> vertices;
    for (UInt32 i = 0; i < geometry->getPositions()->getSize(); ++i) {
        vertices.push_back({geometry->getPositions()->getValue(i), geometry->getNormals()->getValue(i),
                            geometry->getTexCoords()->getValue(i)});
    }
    return vertices;
}

std::vector<Triangle> trianglesOf(const GeometryPtr& geometry)
{
    const std::vector<Vertex> vertices = verticesOf(geometry);
    const GeoIndicesPtr indices = geometry->getIndices();
    std::vector<Triangle> triangles;
    for (UInt32 i = 0; i + 2 < indices->getSize(); i += 3) {
        triangles.push_back({vertices.at(indices->getValue(i)), vertices.at(indices->getValue(i + 1)),
                             vertices.at(indices->getValue(i + 2))});
    }
    return triangles;
}

Real32 areaOf(const std::vector<Triangle>& triangles)
{
    Real32 area = 0.0F;
    for (const Triangle& triangle : triangles) {
        area += triangle.area();
    }
    return area;
}

/// Of what the triangles enclose, when they all look outwards.
Real32 volumeOf(const std::vector<Triangle>& triangles)
{
    Real32 volume = 0.0F;
    for (const Triangle& triangle : triangles) {
        volume += triangle.volume();
    }
    return volume;
}

Real32 ballVolume(const Real32 radius)
{
    return 4.0F / 3.0F * Pi * radius * radius * radius;
}

/// Triangles around the origin that look outwards, from vertices on a sphere whose normals point away from its centre.
void expectSphere(const GeometryPtr& geometry, const Real32 radius)
{
    for (const Vertex& vertex : verticesOf(geometry)) {
        ASSERT_NEAR(vertex.position.subZero().length(), radius, radius * 1e-5F);
        ASSERT_TRUE(vertex.normal.equals(vertex.position.subZero() / radius, 1e-5F)) << vertex.normal;
    }
    for (const Triangle& triangle : trianglesOf(geometry)) {
        ASSERT_GT(triangle.volume(), 0.0F);
    }
}

/// A texture is wrapped around the y axis, its middle at the front and its lower border at the lower pole.
void expectWrappedTexture(const GeometryPtr& geometry)
{
    for (const Vertex& vertex : verticesOf(geometry)) {
        const Real32 longitude = (vertex.texCoord[0] - 0.5F) * 2 * Pi;
        const Real32 latitude = (vertex.texCoord[1] - 0.5F) * Pi;
        const Vec3f direction(std::cos(latitude) * std::sin(longitude), std::sin(latitude),
                              std::cos(latitude) * std::cos(longitude));
        ASSERT_TRUE(direction.equals(vertex.normal, 1e-3F)) << vertex.texCoord << " at " << vertex.normal;
    }
}

TEST_F(EmbeddedSimpleGeometryTest, IsOnePrimitiveOfIndexedTriangles)
{
    for (const GeometryPtr& made :
         {makePlaneGeo(1, 1, 2, 2), makeBoxGeo(1, 1, 1, 1, 1, 1), makeSphereGeo(1, 1), makeLatLongSphereGeo(4, 4, 1)}) {
        const auto geometry = hold(made);
        ASSERT_EQ(geometry->getTypes()->getSize(), 1U);
        EXPECT_EQ(geometry->getTypes()->getValue(0), GL_TRIANGLES);
        ASSERT_EQ(geometry->getLengths()->getSize(), 1U);
        EXPECT_EQ(geometry->getLengths()->getValue(0), geometry->getIndices()->getSize());
        EXPECT_EQ(geometry->getNormals()->getSize(), geometry->getPositions()->getSize());
        EXPECT_EQ(geometry->getTexCoords()->getSize(), geometry->getPositions()->getSize());
    }
}

TEST_F(EmbeddedSimpleGeometryTest, APlaneIsDividedIntoItsQuads)
{
    const auto plane = hold(makePlaneGeo(4, 6, 2, 3));

    const std::vector<Triangle> triangles = trianglesOf(plane);

    EXPECT_EQ(triangles.size(), 2U * 2U * 3U);
    EXPECT_EQ(plane->getPositions()->getSize(), 3U * 4U);
    for (const Triangle& triangle : triangles) {
        EXPECT_FLOAT_EQ(triangle.area(), 2.0F);
    }
}

TEST_F(EmbeddedSimpleGeometryTest, APlaneLooksAlongZ)
{
    const auto plane = hold(makePlaneGeo(4, 6, 2, 3));

    for (const Triangle& triangle : trianglesOf(plane)) {
        EXPECT_GT(triangle.facing()[2], 0.0F);
        EXPECT_EQ(triangle.a.normal, Vec3f(0, 0, 1));
    }
}

TEST_F(EmbeddedSimpleGeometryTest, ATextureCoversAPlaneFromTheLowerLeftCorner)
{
    const auto plane = hold(makePlaneGeo(4, 6, 2, 3));

    for (const Vertex& vertex : verticesOf(plane)) {
        EXPECT_NEAR(vertex.texCoord[0], (vertex.position[0] + 2) / 4, 1e-6F);
        EXPECT_NEAR(vertex.texCoord[1], (vertex.position[1] + 3) / 6, 1e-6F);
    }
}

TEST_F(EmbeddedSimpleGeometryTest, NoDivisionsAreTakenAsOne)
{
    EXPECT_EQ(trianglesOf(hold(makePlaneGeo(1, 1, 0, 0))).size(), 2U);
    EXPECT_EQ(trianglesOf(hold(makeBoxGeo(1, 1, 1, 0, 0, 0))).size(), 12U);
}

TEST_F(EmbeddedSimpleGeometryTest, ABoxIsDividedAlongEachAxis)
{
    const auto box = hold(makeBoxGeo(2, 4, 6, 1, 2, 3));

    const std::vector<Triangle> triangles = trianglesOf(box);

    // Two triangles for each quad of two opposite sides, three times.
    EXPECT_EQ(triangles.size(), 2U * 2U * (1 * 2 + 3 * 2 + 1 * 3));
    EXPECT_NEAR(areaOf(triangles), 2.0F * (2 * 4 + 4 * 6 + 2 * 6), 1e-3F);
}

TEST_F(EmbeddedSimpleGeometryTest, ABoxLooksOutwardsOnAllSides)
{
    const auto box = hold(makeBoxGeo(2, 4, 6, 1, 2, 3));
    const Vec3f half(1, 2, 3);

    const std::vector<Triangle> triangles = trianglesOf(box);

    EXPECT_NEAR(volumeOf(triangles), 2.0F * 4 * 6, 1e-3F);
    std::set<std::tuple<Real32, Real32, Real32>> sides;
    for (const Triangle& triangle : triangles) {
        const Vec3f normal = triangle.a.normal;
        sides.emplace(normal[0], normal[1], normal[2]);
        EXPECT_GT(triangle.facing().dot(normal), 0.0F);
        for (const Vertex& vertex : {triangle.a, triangle.b, triangle.c}) {
            // On the side that the normal says: half the size away from the centre.
            EXPECT_EQ(vertex.normal, normal);
            EXPECT_FLOAT_EQ(vertex.position.subZero().dot(normal), std::abs(normal[0]) * half[0] +
                                                                       std::abs(normal[1]) * half[1] +
                                                                       std::abs(normal[2]) * half[2]);
        }
    }
    EXPECT_EQ(sides.size(), 6U);
}

TEST_F(EmbeddedSimpleGeometryTest, ASphereWithoutDivisionsIsAnIcosahedron)
{
    const auto sphere = hold(makeSphereGeo(0, 2));

    const std::vector<Triangle> triangles = trianglesOf(sphere);

    EXPECT_EQ(sphere->getPositions()->getSize(), 12U);
    EXPECT_EQ(triangles.size(), 20U);
    expectSphere(sphere, 2);
    const Real32 edge = 2 / std::sin(2 * Pi / 5);
    for (const Triangle& triangle : triangles) {
        EXPECT_NEAR(triangle.area(), std::sqrt(3.0F) / 4 * edge * edge, 1e-4F);
    }
    EXPECT_NEAR(volumeOf(triangles), 5.0F / 12 * (3 + std::sqrt(5.0F)) * edge * edge * edge, 1e-3F);
}

TEST_F(EmbeddedSimpleGeometryTest, EveryDivisionOfASphereMakesFourTrianglesOfOne)
{
    const auto sphere = hold(makeSphereGeo(3, 2));

    const std::vector<Triangle> triangles = trianglesOf(sphere);

    EXPECT_EQ(triangles.size(), 20U * 4 * 4 * 4);
    // As many as Euler's formula asks for when neighbours share their corners.
    EXPECT_EQ(sphere->getPositions()->getSize(), triangles.size() / 2 + 2);
    expectSphere(sphere, 2);
    EXPECT_LT(volumeOf(triangles), ballVolume(2));
    EXPECT_GT(volumeOf(triangles), ballVolume(2) * 0.98F);
}

TEST_F(EmbeddedSimpleGeometryTest, ASphereOfRingsHasTrianglesAtItsPoles)
{
    const auto sphere = hold(makeLatLongSphereGeo(16, 32, 3));

    const std::vector<Triangle> triangles = trianglesOf(sphere);

    EXPECT_EQ(triangles.size(), 32U * (2 * 16 - 2));
    expectSphere(sphere, 3);
    EXPECT_LT(volumeOf(triangles), ballVolume(3));
    EXPECT_GT(volumeOf(triangles), ballVolume(3) * 0.97F);
}

TEST_F(EmbeddedSimpleGeometryTest, ASphereOfRingsHasTwoRowsAndThreeColumnsAtLeast)
{
    const auto sphere = hold(makeLatLongSphereGeo(0, 0, 1));

    const std::vector<Triangle> triangles = trianglesOf(sphere);

    // Two pyramids on one triangle.
    EXPECT_EQ(triangles.size(), 6U);
    expectSphere(sphere, 1);
    EXPECT_NEAR(volumeOf(triangles), 2.0F / 3 * (3 * std::sqrt(3.0F) / 4), 1e-5F);
}

TEST_F(EmbeddedSimpleGeometryTest, TexturesAreWrappedAroundSpheres)
{
    expectWrappedTexture(hold(makeSphereGeo(2, 2)));
    expectWrappedTexture(hold(makeLatLongSphereGeo(8, 12, 2)));
}

TEST_F(EmbeddedSimpleGeometryTest, TheDefaultMaterialsDoNotShowAmongTheLivingContainers)
{
    EXPECT_EQ(s_containersShown, 0U);
}

TEST_F(EmbeddedSimpleGeometryTest, TheUnlitDefaultMaterialIsTheSameGrey)
{
    const SimpleMaterialPtr lit = SimpleMaterialPtr::dcast(getDefaultMaterial());
    const SimpleMaterialPtr unlit = SimpleMaterialPtr::dcast(getDefaultUnlitMaterial());
    ASSERT_TRUE(lit != NullFC);
    ASSERT_TRUE(unlit != NullFC);

    const Color3f diffuse = lit->getDiffuse();

    EXPECT_EQ(diffuse.red(), diffuse.green());
    EXPECT_EQ(diffuse.green(), diffuse.blue());
    EXPECT_GT(diffuse.red(), 0.0F);
    EXPECT_EQ(unlit->getDiffuse(), diffuse);
    EXPECT_EQ(unlit->getAmbient(), lit->getAmbient());
    EXPECT_EQ(unlit->getSpecular(), lit->getSpecular());
    EXPECT_EQ(unlit->getShininess(), lit->getShininess());
}

} // namespace
