// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGVector.h>

namespace quon::testing {

/** Holds a node as long as it lives. */
using NodeRef = osg::RefPtr<osg::NodePtr>;

/** Returns a new node with the given core, without a parent. */
inline NodeRef makeNode(const osg::NodeCorePtr& core)
{
    NodeRef node(osg::Node::create());
    osg::beginEditCP(node, osg::Node::CoreFieldMask);
    node->setCore(core);
    osg::endEditCP(node, osg::Node::CoreFieldMask);
    return node;
}

/** Adds a new node with the given core to @p parent, which alone holds it. */
inline osg::NodePtr addChild(const osg::NodePtr& parent, const osg::NodeCorePtr& core)
{
    const NodeRef node = makeNode(core);
    osg::beginEditCP(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(node);
    osg::endEditCP(parent, osg::Node::ChildrenFieldMask);
    return node.get();
}

/** Lets a transform move by the given distances and do nothing else. */
inline void setTranslation(const osg::TransformPtr& transform, float x, float y, float z)
{
    osg::Matrix matrix;
    matrix.setTranslate(x, y, z);
    osg::beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(matrix);
    osg::endEditCP(transform, osg::Transform::MatrixFieldMask);
}

/** A transform core that moves by the given distances. */
inline osg::TransformPtr makeTranslation(float x, float y, float z)
{
    const osg::TransformPtr transform = osg::Transform::create();
    setTranslation(transform, x, y, z);
    return transform;
}

/** A geometry core whose local bounds are @p min and @p max. */
inline osg::GeometryPtr makeExtent(const osg::Pnt3f& min, const osg::Pnt3f& max)
{
    const osg::GeoPositions3fPtr positions = osg::GeoPositions3f::create();
    osg::beginEditCP(positions);
    positions->addValue(min);
    positions->addValue(max);
    osg::endEditCP(positions);
    // Without a primitive that uses them, positions have no extent.
    const osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8::create();
    osg::beginEditCP(types);
    types->addValue(GL_POINTS);
    osg::endEditCP(types);
    const osg::GeometryPtr geometry = osg::Geometry::create();
    osg::beginEditCP(geometry);
    geometry->setTypes(types);
    geometry->setPositions(positions);
    osg::endEditCP(geometry);
    return geometry;
}

/** Returns whether the container with this id still exists. */
inline bool exists(osg::UInt32 id)
{
    return osg::FieldContainerFactory::the()->getContainer(id) != osg::NullFC;
}

} // namespace quon::testing
