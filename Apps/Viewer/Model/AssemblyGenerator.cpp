// SPDX-License-Identifier: MIT
#include "Viewer/Model/AssemblyGenerator.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

constexpr double Pi = 3.14159265358979323846;

enum Kind : std::size_t { Plate, Bracket, Rail, Housing, Cylinder, Bolt, KindCount };

constexpr std::array<const char*, KindCount> KindNames{"plate", "bracket", "rail", "housing", "cylinder", "bolt"};

struct Finish {
    const char* name;
    float red;
    float green;
    float blue;
    float specular;
};

enum FinishIndex : std::size_t { Steel, DarkSteel, Aluminium, Brass, FirstPaint, FinishCount = FirstPaint + 4 };

constexpr std::array<Finish, FinishCount> Finishes{{{"steel", 0.62F, 0.64F, 0.67F, 0.35F},
                                                    {"dark steel", 0.27F, 0.29F, 0.32F, 0.25F},
                                                    {"aluminium", 0.80F, 0.82F, 0.84F, 0.40F},
                                                    {"brass", 0.78F, 0.64F, 0.32F, 0.35F},
                                                    {"blue paint", 0.16F, 0.35F, 0.62F, 0.15F},
                                                    {"green paint", 0.24F, 0.49F, 0.36F, 0.15F},
                                                    {"red paint", 0.66F, 0.20F, 0.17F, 0.15F},
                                                    {"light paint", 0.86F, 0.85F, 0.80F, 0.15F}}};

/** One part of a rack: where it stands and how large it is compared with the others of its kind. */
struct Place {
    Kind kind;
    std::size_t finish; ///< FirstPaint stands for the paint of the rack
    float x, y, z;
    float quarterTurns = 0; ///< around the y axis
    float lying = 0;        ///< quarter turns around the x axis, before the others
    osg::Vec3f size = osg::Vec3f(1, 1, 1);
};

// What a rack is made of, the large parts first: an incomplete rack is still one.
const std::array<Place, 20>& getRackPlaces()
{
    static const std::array<Place, 20> places{{
        {Plate, Steel, 0, 0, 0},
        {Housing, FirstPaint, -0.15F, 0.01F, 0},
        {Cylinder, Aluminium, 0.09F, 0.09F, -0.14F, 0, 1},
        {Bracket, DarkSteel, -0.295F, 0.01F, 0.195F, 1},
        {Bracket, DarkSteel, 0.295F, 0.01F, 0.195F, 2},
        {Bracket, DarkSteel, 0.295F, 0.01F, -0.195F, 3},
        {Bracket, DarkSteel, -0.295F, 0.01F, -0.195F, 0},
        {Rail, Aluminium, 0, 0.24F, 0.17F},
        {Rail, Aluminium, 0, 0.24F, -0.17F},
        {Housing, Aluminium, 0.22F, 0.01F, 0.05F, 0, 0, osg::Vec3f(0.3F, 0.8F, 0.8F)},
        {Cylinder, Brass, 0.09F, 0.09F, 0.06F, 0, 1, osg::Vec3f(0.35F, 0.4F, 0.35F)},
        {Cylinder, DarkSteel, -0.15F, 0.15F, 0, 0, 0, osg::Vec3f(0.6F, 0.25F, 0.6F)},
        {Bolt, Brass, -0.245F, 0.01F, 0.16F},
        {Bolt, Brass, 0.25F, 0.01F, 0.16F},
        {Bolt, Brass, 0.25F, 0.01F, -0.16F},
        {Bolt, Brass, -0.245F, 0.01F, -0.16F},
        {Bolt, DarkSteel, 0.02F, 0.01F, 0.10F, 0.5F},
        {Bolt, DarkSteel, 0.16F, 0.01F, 0.10F, 0.5F},
        {Bolt, DarkSteel, 0.02F, 0.01F, -0.17F, 0.5F},
        {Bolt, DarkSteel, 0.16F, 0.01F, -0.17F, 0.5F},
    }};
    return places;
}

const int PartsOfRack = static_cast<int>(getRackPlaces().size());
constexpr int RacksOfModule = 10;
constexpr int RackColumns = 2;
constexpr float RackWidth = 0.64F;
constexpr float RackHeight = 0.30F;
constexpr float ModuleWidth = 1.5F;
constexpr float ModuleDepth = 0.75F;
constexpr float LevelHeight = 1.8F;

using Profile = std::vector<std::pair<float, float>>;

Profile makeRectangle(const float width, const float depth)
{
    return {{-width / 2, -depth / 2}, {width / 2, -depth / 2}, {width / 2, depth / 2}, {-width / 2, depth / 2}};
}

Profile makeCircle(const float radius, const int corners)
{
    Profile profile;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * Pi * i / corners;
        profile.emplace_back(radius * static_cast<float>(std::cos(angle)),
                             radius * static_cast<float>(std::sin(angle)));
    }
    return profile;
}

/** Collects the triangles of one kind of part. */
class Shape {
public:
    /**
     * Adds a prism that stands upright.
     *
     * @param profile the corners in x and z; the first one must see all others
     * @param smooth whether the side is round
     */
    void addPrism(const Profile& profile, const float bottom, const float top, const bool smooth)
    {
        for (std::size_t i = 0; i < profile.size(); ++i) {
            addSide(profile[i], profile[(i + 1) % profile.size()], bottom, top, smooth);
        }
        addCap(profile, top, 1);
        addCap(profile, bottom, -1);
    }

    /** A geometry of these triangles without material. */
    osg::GeometryPtr makeGeometry() const
    {
        const osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8::create();
        beginEditCP(types);
        types->push_back(GL_TRIANGLES);
        endEditCP(types);
        const osg::GeoPLengthsUI32Ptr lengths = osg::GeoPLengthsUI32::create();
        beginEditCP(lengths);
        lengths->push_back(static_cast<osg::UInt32>(m_indices.size()));
        endEditCP(lengths);
        const osg::GeoIndicesUI32Ptr indices = osg::GeoIndicesUI32::create();
        beginEditCP(indices);
        for (const osg::UInt32 index : m_indices) {
            indices->push_back(index);
        }
        endEditCP(indices);
        const osg::GeoPositions3fPtr positions = osg::GeoPositions3f::create();
        beginEditCP(positions);
        for (const osg::Pnt3f& position : m_positions) {
            positions->push_back(position);
        }
        endEditCP(positions);
        const osg::GeoNormals3fPtr normals = osg::GeoNormals3f::create();
        beginEditCP(normals);
        for (const osg::Vec3f& normal : m_normals) {
            normals->push_back(normal);
        }
        endEditCP(normals);

        const osg::GeometryPtr geometry = osg::Geometry::create();
        beginEditCP(geometry);
        geometry->setTypes(types);
        geometry->setLengths(lengths);
        geometry->setIndices(indices);
        geometry->setPositions(positions);
        geometry->setNormals(normals);
        endEditCP(geometry);
        return geometry;
    }

private:
    using Corner = Profile::value_type;

    void addSide(const Corner& from, const Corner& to, const float bottom, const float top, const bool smooth)
    {
        osg::Vec3f flat(to.second - from.second, 0, from.first - to.first);
        flat.normalize();
        osg::Vec3f left(from.first, 0, from.second);
        osg::Vec3f right(to.first, 0, to.second);
        left.normalize();
        right.normalize();
        const osg::UInt32 first = addVertex(from, bottom, smooth ? left : flat);
        addVertex(from, top, smooth ? left : flat);
        addVertex(to, top, smooth ? right : flat);
        addVertex(to, bottom, smooth ? right : flat);
        m_indices.insert(m_indices.end(), {first, first + 1, first + 2, first, first + 2, first + 3});
    }

    void addCap(const Profile& profile, const float height, const float up)
    {
        const auto first = static_cast<osg::UInt32>(m_positions.size());
        for (const Corner& corner : profile) {
            addVertex(corner, height, osg::Vec3f(0, up, 0));
        }
        for (osg::UInt32 i = 1; i + 1 < profile.size(); ++i) {
            const osg::UInt32 second = first + i;
            if (up > 0) {
                m_indices.insert(m_indices.end(), {first, second + 1, second});
            } else {
                m_indices.insert(m_indices.end(), {first, second, second + 1});
            }
        }
    }

    osg::UInt32 addVertex(const Corner& corner, const float height, const osg::Vec3f& normal)
    {
        m_positions.emplace_back(corner.first, height, corner.second);
        m_normals.push_back(normal);
        return static_cast<osg::UInt32>(m_positions.size() - 1);
    }

    std::vector<osg::Pnt3f> m_positions;
    std::vector<osg::Vec3f> m_normals;
    std::vector<osg::UInt32> m_indices;
};

Shape makeShape(const Kind kind)
{
    Shape shape;
    switch (kind) {
    case Plate:
        shape.addPrism(makeRectangle(0.6F, 0.4F), 0, 0.01F, false);
        break;
    case Bracket:
        // From the inner corner on, which sees all others.
        shape.addPrism({{0.006F, 0.006F}, {0.006F, 0.04F}, {0, 0.04F}, {0, 0}, {0.04F, 0}, {0.04F, 0.006F}}, 0, 0.27F,
                       false);
        break;
    case Rail:
        shape.addPrism(makeRectangle(0.58F, 0.02F), 0, 0.015F, false);
        break;
    case Housing:
        shape.addPrism(makeRectangle(0.2F, 0.28F), 0, 0.12F, false);
        shape.addPrism(makeRectangle(0.16F, 0.24F), 0.12F, 0.14F, false);
        break;
    case Cylinder:
        shape.addPrism(makeCircle(0.06F, 14), 0, 0.18F, true);
        break;
    default:
        shape.addPrism(makeCircle(0.008F, 6), 0, 0.006F, false);
        shape.addPrism(makeCircle(0.016F, 6), 0.006F, 0.018F, false);
        break;
    }
    return shape;
}

osg::SimpleMaterialPtr makeMaterial(const Finish& finish)
{
    const osg::SimpleMaterialPtr material = osg::SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(osg::Color3f(finish.red, finish.green, finish.blue));
    material->setSpecular(osg::Color3f(finish.specular, finish.specular, finish.specular));
    material->setShininess(30);
    endEditCP(material);
    koMaterials::setName(material, finish.name, false);
    return material;
}

void addChild(const osg::NodePtr& parent, const osg::NodePtr& child)
{
    beginEditCP(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
    endEditCP(parent, osg::Node::ChildrenFieldMask);
}

osg::NodePtr makeNode(const osg::NodeCorePtr& core)
{
    const osg::NodePtr node = osg::Node::create();
    beginEditCP(node, osg::Node::CoreFieldMask);
    node->setCore(core);
    endEditCP(node, osg::Node::CoreFieldMask);
    return node;
}

osg::NodePtr makePlacedNode(const std::string& name, const osg::Matrix& matrix)
{
    const osg::TransformPtr transform = osg::Transform::create();
    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(matrix);
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    const osg::NodePtr node = makeNode(transform);
    NodeUtils::setName(node, name, false);
    return node;
}

std::string numbered(const char* name, const int index)
{
    return std::string(name) + ' ' + std::to_string(index + 1);
}

osg::Matrix translation(const float x, const float y, const float z)
{
    osg::Matrix matrix;
    matrix.setTranslate(x, y, z);
    return matrix;
}

// Spreads neighbouring numbers, the same everywhere.
unsigned scatter(const int number)
{
    auto value = static_cast<unsigned>(number) * 2654435761U;
    value ^= value >> 15U;
    return (value * 2246822519U) >> 8U;
}

class Builder {
public:
    explicit Builder(const int partCount)
        : m_left(partCount)
    {
        const int modulesWanted = (partCount + PartsOfRack * RacksOfModule - 1) / (PartsOfRack * RacksOfModule);
        // About as wide and as deep as high: a module is half as deep as it is wide.
        m_columns = static_cast<int>(std::ceil(std::cbrt(modulesWanted / 2.0)));
        m_rows = 2 * m_columns;
    }

    osg::RefPtr<osg::NodePtr> build()
    {
        const osg::RefPtr<osg::NodePtr> root(makeNode(osg::Group::create()));
        NodeUtils::setName(root.get(), "assembly", false);
        for (int level = 0; m_left > 0; ++level) {
            addChild(root.get(), buildLevel(level));
        }
        return root;
    }

private:
    osg::NodePtr buildLevel(const int level)
    {
        const osg::NodePtr node =
            makePlacedNode(numbered("level", level), translation(0, static_cast<float>(level) * LevelHeight, 0));
        for (int module = 0; module < m_columns * m_rows && m_left > 0; ++module) {
            addChild(node, buildModule(module));
        }
        return node;
    }

    osg::NodePtr buildModule(const int module)
    {
        const float x = (static_cast<float>(module % m_columns) - static_cast<float>(m_columns - 1) / 2) * ModuleWidth;
        const float z = (static_cast<float>(module / m_columns) - static_cast<float>(m_rows - 1) / 2) * ModuleDepth;
        const osg::NodePtr node = makePlacedNode(numbered("module", module), translation(x, 0, z));
        for (int rack = 0; rack < RacksOfModule && m_left > 0; ++rack) {
            addChild(node, buildRack(rack));
        }
        return node;
    }

    osg::NodePtr buildRack(const int rack)
    {
        const float x = (static_cast<float>(rack % RackColumns) - static_cast<float>(RackColumns - 1) / 2) * RackWidth;
        const float y = static_cast<float>(rack / RackColumns) * RackHeight;
        const osg::NodePtr node = makePlacedNode(numbered("rack", rack), translation(x, y, 0));
        const std::size_t paint = FirstPaint + scatter(m_racks++) % (FinishCount - FirstPaint);
        std::array<int, KindCount> numbers{};
        for (const Place& place : getRackPlaces()) {
            if (m_left == 0) {
                break;
            }
            const std::string name = numbered(KindNames.at(place.kind), numbers.at(place.kind)++);
            addChild(node, buildPart(name, place, place.finish == FirstPaint ? paint : place.finish));
            --m_left;
        }
        return node;
    }

    osg::NodePtr buildPart(const std::string& name, const Place& place, const std::size_t finish)
    {
        constexpr auto quarter = static_cast<float>(Pi / 2);
        const osg::Quaternion around(osg::Vec3f(0, 1, 0), place.quarterTurns * quarter);
        const osg::Quaternion lying(osg::Vec3f(1, 0, 0), place.lying * quarter);
        osg::Matrix turned;
        turned.setRotate(around);
        osg::Matrix laid;
        laid.setRotate(lying);
        osg::Matrix sized;
        sized.setScale(place.size[0], place.size[1], place.size[2]);
        osg::Matrix matrix = translation(place.x, place.y, place.z);
        matrix.mult(turned);
        matrix.mult(laid);
        matrix.mult(sized);

        const osg::NodePtr node = makePlacedNode(name, matrix);
        addChild(node, makeNode(getGeometry(place.kind, finish)));
        return node;
    }

    // All finishes of a kind share its vertices.
    osg::GeometryPtr getGeometry(const Kind kind, const std::size_t finish)
    {
        osg::RefPtr<osg::GeometryPtr>& geometry = m_geometries.at(kind).at(finish);
        if (geometry != osg::NullFC) {
            return geometry.get();
        }
        osg::RefPtr<osg::GeometryPtr>& bare = m_bare.at(kind);
        if (bare == osg::NullFC) {
            bare = makeShape(kind).makeGeometry();
        }
        geometry = osg::Geometry::create();
        beginEditCP(geometry);
        geometry->setTypes(bare->getTypes());
        geometry->setLengths(bare->getLengths());
        geometry->setIndices(bare->getIndices());
        geometry->setPositions(bare->getPositions());
        geometry->setNormals(bare->getNormals());
        geometry->setMaterial(getMaterial(finish));
        endEditCP(geometry);
        return geometry.get();
    }

    osg::MaterialPtr getMaterial(const std::size_t finish)
    {
        osg::RefPtr<osg::MaterialPtr>& material = m_materials.at(finish);
        if (material == osg::NullFC) {
            material = makeMaterial(Finishes.at(finish));
        }
        return material.get();
    }

    int m_left; ///< parts that are still to be made
    int m_racks = 0;
    int m_columns;
    int m_rows;
    std::array<osg::RefPtr<osg::MaterialPtr>, FinishCount> m_materials;
    std::array<osg::RefPtr<osg::GeometryPtr>, KindCount> m_bare;
    std::array<std::array<osg::RefPtr<osg::GeometryPtr>, FinishCount>, KindCount> m_geometries;
};

} // namespace

osg::RefPtr<osg::NodePtr> AssemblyGenerator::generate(const int partCount)
{
    return Builder(std::clamp(partCount, 1, LargestCount)).build();
}

} // namespace quon::viewer
