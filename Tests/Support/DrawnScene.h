// SPDX-License-Identifier: MIT
#pragma once

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGVector.h>

#include <initializer_list>
#include <vector>

/** Builders of the small scenes that the tests of the viewer draw and pick in. Everything is made with count 0. */
namespace quon::testing {

/** An unlit material: its diffuse colour is the colour of the pixels. */
inline osg::SimpleMaterialPtr makePlainMaterial(const osg::Color3f& colour, const float transparency = 0,
                                                const osg::Int32 sortKey = 0)
{
    const osg::SimpleMaterialPtr material = osg::SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(colour);
    material->setLit(false);
    material->setTransparency(transparency);
    material->setSortKey(sortKey);
    endEditCP(material);
    return material;
}

inline osg::GeometryPtr makeGeometry(const GLenum type, const std::vector<osg::Pnt3f>& corners,
                                     const std::vector<osg::UInt32>& indices, const osg::MaterialPtr& material)
{
    const osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8::create();
    beginEditCP(types);
    types->push_back(static_cast<osg::UInt8>(type));
    endEditCP(types);
    const osg::GeoPLengthsUI32Ptr lengths = osg::GeoPLengthsUI32::create();
    beginEditCP(lengths);
    lengths->push_back(static_cast<osg::UInt32>(indices.empty() ? corners.size() : indices.size()));
    endEditCP(lengths);
    const osg::GeoPositions3fPtr positions = osg::GeoPositions3f::create();
    beginEditCP(positions);
    for (const osg::Pnt3f& corner : corners) {
        positions->push_back(corner);
    }
    endEditCP(positions);

    const osg::GeometryPtr geometry = osg::Geometry::create();
    beginEditCP(geometry);
    geometry->setTypes(types);
    geometry->setLengths(lengths);
    geometry->setPositions(positions);
    if (!indices.empty()) {
        const osg::GeoIndicesUI32Ptr property = osg::GeoIndicesUI32::create();
        beginEditCP(property);
        for (const osg::UInt32 index : indices) {
            property->push_back(index);
        }
        endEditCP(property);
        geometry->setIndices(property);
    }
    geometry->setMaterial(material);
    endEditCP(geometry);
    return geometry;
}

/** A rectangle parallel to the x and y axes. */
inline osg::GeometryPtr makeRectangle(const float left, const float bottom, const float right, const float top,
                                      const float z, const osg::MaterialPtr& material)
{
    return makeGeometry(GL_QUADS,
                        {osg::Pnt3f(left, bottom, z), osg::Pnt3f(right, bottom, z), osg::Pnt3f(right, top, z),
                         osg::Pnt3f(left, top, z)},
                        {}, material);
}

/** A box whose twelve triangles share eight corners. */
inline osg::GeometryPtr makeBox(const osg::Pnt3f& minimum, const osg::Pnt3f& maximum, const osg::MaterialPtr& material)
{
    std::vector<osg::Pnt3f> corners;
    for (int i = 0; i < 8; ++i) {
        corners.emplace_back((i & 1) != 0 ? maximum[0] : minimum[0], (i & 2) != 0 ? maximum[1] : minimum[1],
                             (i & 4) != 0 ? maximum[2] : minimum[2]);
    }
    return makeGeometry(GL_TRIANGLES, corners, {0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                                                2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5},
                        material);
}

inline osg::NodePtr makeNode(const osg::NodeCorePtr& core, const std::initializer_list<osg::NodePtr> children = {})
{
    const osg::NodePtr node = osg::Node::create();
    beginEditCP(node);
    node->setCore(core);
    for (const osg::NodePtr& child : children) {
        node->addChild(child);
    }
    endEditCP(node);
    return node;
}

inline osg::NodePtr makeGroup(const std::initializer_list<osg::NodePtr> children = {})
{
    return makeNode(osg::Group::create(), children);
}

inline osg::NodePtr makeTransform(const osg::Matrix& matrix, const std::initializer_list<osg::NodePtr> children = {})
{
    const osg::TransformPtr transform = osg::Transform::create();
    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(matrix);
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    return makeNode(transform, children);
}

inline osg::Matrix translation(const float x, const float y, const float z)
{
    osg::Matrix matrix;
    matrix.setTranslate(x, y, z);
    return matrix;
}

/** A named transform node with a box below it, as the loader makes parts. */
inline osg::NodePtr makePart(const char* name, const osg::Pnt3f& minimum, const osg::Pnt3f& maximum,
                             const osg::Color3f& colour = osg::Color3f(1, 0, 0))
{
    const osg::NodePtr part =
        makeTransform(osg::Matrix(), {makeNode(makeBox(minimum, maximum, makePlainMaterial(colour)))});
    NodeUtils::setName(part, name, false);
    return part;
}

inline void setTravMask(const osg::NodePtr& node, const osg::UInt32 mask)
{
    beginEditCP(node, osg::Node::TravMaskFieldMask);
    node->setTravMask(mask);
    endEditCP(node, osg::Node::TravMaskFieldMask);
}

} // namespace quon::testing
