// SPDX-License-Identifier: MIT
#include <OpenSG/OSGSimpleGeometry.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace osg {

namespace {

/// Made once and kept; does not show in the live count of the factory.
MaterialPtr makeDefaultMaterial(const bool lit)
{
    const UInt32 before = ContainerAccess::beginPermanent();
    const SimpleMaterialPtr material = SimpleMaterial::create();
    if (material != NullFC) {
        addRefCP(material);
        beginEditCP(material);
        material->setAmbient(Color3f(0.3F, 0.3F, 0.3F));
        material->setDiffuse(Color3f(0.5F, 0.5F, 0.5F));
        material->setSpecular(Color3f(0.8F, 0.8F, 0.8F));
        material->setShininess(100.0F);
        material->setLit(lit);
        endEditCP(material);
    }
    ContainerAccess::endPermanent(before);
    return material;
}

/// Collects indexed triangles and makes a geometry of them.
struct TriangleMesh {
    std::vector<Pnt3f> positions;
    std::vector<Vec3f> normals;
    std::vector<Vec2f> texCoords;
    std::vector<UInt32> indices;

    UInt32 addVertex(const Pnt3f& position, const Vec3f& normal, const Vec2f& texCoord)
    {
        positions.push_back(position);
        normals.push_back(normal);
        texCoords.push_back(texCoord);
        return static_cast<UInt32>(positions.size() - 1);
    }

    void addTriangle(const UInt32 a, const UInt32 b, const UInt32 c) { indices.insert(indices.end(), {a, b, c}); }

    /// Adds a rectangle of @p hor by @p vert quads; @p right and @p up are its sides.
    void addRectangle(const Pnt3f& corner, const Vec3f& right, const Vec3f& up, const UInt16 hor, const UInt16 vert)
    {
        Vec3f normal = right.cross(up);
        normal.normalize();
        const UInt32 columns = std::max<UInt32>(hor, 1);
        const UInt32 rows = std::max<UInt32>(vert, 1);
        const UInt32 first = static_cast<UInt32>(positions.size());
        for (UInt32 row = 0; row <= rows; ++row) {
            const Real32 v = static_cast<Real32>(row) / static_cast<Real32>(rows);
            for (UInt32 column = 0; column <= columns; ++column) {
                const Real32 u = static_cast<Real32>(column) / static_cast<Real32>(columns);
                addVertex(corner + right * u + up * v, normal, Vec2f(u, v));
            }
        }
        for (UInt32 row = 0; row < rows; ++row) {
            for (UInt32 column = 0; column < columns; ++column) {
                const UInt32 lower = first + row * (columns + 1) + column;
                const UInt32 upper = lower + columns + 1;
                addTriangle(lower, lower + 1, upper + 1);
                addTriangle(lower, upper + 1, upper);
            }
        }
    }

    GeometryPtr makeGeometry() const
    {
        if (GlobalSystemState != Running) {
            return NullFC;
        }
        const GeoPTypesUI8Ptr types = GeoPTypesUI8::create();
        const GeoPLengthsUI32Ptr lengths = GeoPLengthsUI32::create();
        const GeoIndicesUI32Ptr geoIndices = GeoIndicesUI32::create();
        const GeoPositions3fPtr geoPositions = GeoPositions3f::create();
        const GeoNormals3fPtr geoNormals = GeoNormals3f::create();
        const GeoTexCoords2fPtr geoTexCoords = GeoTexCoords2f::create();
        beginEditCP(types);
        types->addValue(GL_TRIANGLES);
        endEditCP(types);
        beginEditCP(lengths);
        lengths->addValue(static_cast<UInt32>(indices.size()));
        endEditCP(lengths);
        fill(geoIndices, indices);
        fill(geoPositions, positions);
        fill(geoNormals, normals);
        fill(geoTexCoords, texCoords);

        const GeometryPtr geometry = Geometry::create();
        beginEditCP(geometry);
        geometry->setTypes(types);
        geometry->setLengths(lengths);
        geometry->setIndices(geoIndices);
        geometry->setPositions(geoPositions);
        geometry->setNormals(geoNormals);
        geometry->setTexCoords(geoTexCoords);
        geometry->setMaterial(getDefaultMaterial());
        endEditCP(geometry);
        return geometry;
    }

private:
    template <class PropertyPtrT, class ValueT>
    static void fill(const PropertyPtrT& property, const std::vector<ValueT>& values)
    {
        beginEditCP(property);
        property->editField().reserve(values.size());
        for (const ValueT& value : values) {
            property->editField().push_back(value);
        }
        endEditCP(property);
    }
};

Vec2f sphereTexCoord(const Vec3f& direction)
{
    const Real32 u = 0.5F + std::atan2(direction[0], direction[2]) / (2.0F * Pi);
    const Real32 v = 0.5F + std::asin(std::clamp(direction[1], -1.0F, 1.0F)) / Pi;
    return Vec2f(u, v);
}

} // namespace

MaterialPtr getDefaultMaterial()
{
    static const MaterialPtr material = makeDefaultMaterial(true);
    return material;
}

MaterialPtr getDefaultUnlitMaterial()
{
    static const MaterialPtr material = makeDefaultMaterial(false);
    return material;
}

GeometryPtr makePlaneGeo(const Real32 xsize, const Real32 ysize, const UInt16 hor, const UInt16 vert)
{
    TriangleMesh mesh;
    mesh.addRectangle(Pnt3f(-xsize / 2, -ysize / 2, 0.0F), Vec3f(xsize, 0.0F, 0.0F), Vec3f(0.0F, ysize, 0.0F), hor,
                      vert);
    return mesh.makeGeometry();
}

NodePtr makePlane(const Real32 xsize, const Real32 ysize, const UInt16 hor, const UInt16 vert)
{
    return makeNodeFor(makePlaneGeo(xsize, ysize, hor, vert));
}

GeometryPtr makeBoxGeo(const Real32 xsize, const Real32 ysize, const Real32 zsize, const UInt16 hor, const UInt16 vert,
                       const UInt16 depth)
{
    const Real32 x = xsize / 2;
    const Real32 y = ysize / 2;
    const Real32 z = zsize / 2;
    const Vec3f right(xsize, 0.0F, 0.0F);
    const Vec3f up(0.0F, ysize, 0.0F);
    const Vec3f front(0.0F, 0.0F, zsize);
    TriangleMesh mesh;
    mesh.addRectangle(Pnt3f(-x, -y, z), right, up, hor, vert);
    mesh.addRectangle(Pnt3f(x, -y, -z), -right, up, hor, vert);
    mesh.addRectangle(Pnt3f(x, -y, z), -front, up, depth, vert);
    mesh.addRectangle(Pnt3f(-x, -y, -z), front, up, depth, vert);
    mesh.addRectangle(Pnt3f(-x, y, z), right, -front, hor, depth);
    mesh.addRectangle(Pnt3f(-x, -y, -z), right, front, hor, depth);
    return mesh.makeGeometry();
}

NodePtr makeBox(const Real32 xsize, const Real32 ysize, const Real32 zsize, const UInt16 hor, const UInt16 vert,
                const UInt16 depth)
{
    return makeNodeFor(makeBoxGeo(xsize, ysize, zsize, hor, vert, depth));
}

GeometryPtr makeSphereGeo(const UInt16 depth, const Real32 radius)
{
    TriangleMesh mesh;
    const auto addDirection = [&mesh, radius](Vec3f direction) {
        direction.normalize();
        return mesh.addVertex(Pnt3f(direction[0] * radius, direction[1] * radius, direction[2] * radius), direction,
                              sphereTexCoord(direction));
    };
    const Real32 wide = (1.0F + std::sqrt(5.0F)) / 2.0F;
    for (const Real32 first : {-1.0F, 1.0F}) {
        for (const Real32 second : {-wide, wide}) {
            addDirection(Vec3f(first, second, 0.0F));
            addDirection(Vec3f(0.0F, first, second));
            addDirection(Vec3f(second, 0.0F, first));
        }
    }
    // Every three corners at the distance of an edge, which is two, are a triangle; their order follows from the side
    // on which the centre is.
    const auto areNeighbours = [&mesh](const UInt32 a, const UInt32 b) {
        return mesh.normals[a].dot(mesh.normals[b]) > 0.4F;
    };
    std::vector<UInt32> triangles;
    for (UInt32 a = 0; a < 12; ++a) {
        for (UInt32 b = a + 1; b < 12; ++b) {
            for (UInt32 c = b + 1; c < 12; ++c) {
                if (areNeighbours(a, b) && areNeighbours(b, c) && areNeighbours(a, c)) {
                    const bool outwards = mesh.normals[a].cross(mesh.normals[b]).dot(mesh.normals[c]) > 0.0F;
                    triangles.insert(triangles.end(), {a, outwards ? b : c, outwards ? c : b});
                }
            }
        }
    }
    for (UInt16 level = 0; level < depth; ++level) {
        std::map<std::pair<UInt32, UInt32>, UInt32> middles;
        const auto middle = [&](const UInt32 a, const UInt32 b) {
            const auto [found, isNew] = middles.try_emplace(std::minmax(a, b));
            if (isNew) {
                found->second = addDirection(mesh.normals[a] + mesh.normals[b]);
            }
            return found->second;
        };
        std::vector<UInt32> divided;
        divided.reserve(triangles.size() * 4);
        for (std::size_t corner = 0; corner < triangles.size(); corner += 3) {
            const UInt32 a = triangles[corner];
            const UInt32 b = triangles[corner + 1];
            const UInt32 c = triangles[corner + 2];
            const UInt32 ab = middle(a, b);
            const UInt32 bc = middle(b, c);
            const UInt32 ca = middle(c, a);
            divided.insert(divided.end(), {a, ab, ca, ab, b, bc, ca, bc, c, ab, bc, ca});
        }
        triangles = std::move(divided);
    }
    mesh.indices = std::move(triangles);
    return mesh.makeGeometry();
}

NodePtr makeSphere(const UInt16 depth, const Real32 radius)
{
    return makeNodeFor(makeSphereGeo(depth, radius));
}

GeometryPtr makeLatLongSphereGeo(const UInt16 latres, const UInt16 longres, const Real32 radius)
{
    TriangleMesh mesh;
    const UInt32 rows = std::max<UInt32>(latres, 2);
    const UInt32 columns = std::max<UInt32>(longres, 3);
    for (UInt32 row = 0; row <= rows; ++row) {
        const Real32 v = static_cast<Real32>(row) / static_cast<Real32>(rows);
        const Real32 latitude = (v - 0.5F) * Pi;
        for (UInt32 column = 0; column <= columns; ++column) {
            const Real32 u = static_cast<Real32>(column) / static_cast<Real32>(columns);
            const Real32 longitude = (u - 0.5F) * 2.0F * Pi;
            const Vec3f direction(std::cos(latitude) * std::sin(longitude), std::sin(latitude),
                                  std::cos(latitude) * std::cos(longitude));
            mesh.addVertex(Pnt3f(direction[0] * radius, direction[1] * radius, direction[2] * radius), direction,
                           Vec2f(u, v));
        }
    }
    for (UInt32 row = 0; row < rows; ++row) {
        for (UInt32 column = 0; column < columns; ++column) {
            const UInt32 lower = row * (columns + 1) + column;
            const UInt32 upper = lower + columns + 1;
            // The quads at the poles are triangles.
            if (row > 0) {
                mesh.addTriangle(lower, lower + 1, upper + 1);
            }
            if (row + 1 < rows) {
                mesh.addTriangle(lower, upper + 1, upper);
            }
        }
    }
    return mesh.makeGeometry();
}

NodePtr makeLatLongSphere(const UInt16 latres, const UInt16 longres, const Real32 radius)
{
    return makeNodeFor(makeLatLongSphereGeo(latres, longres, radius));
}

} // namespace osg
