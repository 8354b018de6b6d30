// SPDX-License-Identifier: MIT
#pragma once

#include <InteractionTesting/SceneFixture.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTransform.h>

#include <ostream>
#include <vector>

namespace quon::testing {

/** Holds one reference for the length of a test. */
template <class HandleT>
osg::RefPtr<HandleT> hold(const HandleT& handle)
{
    return osg::RefPtr<HandleT>(handle);
}

/** A node with @p core, reference count zero. */
inline osg::NodePtr makeNode(const osg::NodeCorePtr& core)
{
    osg::NodePtr node = osg::Node::create();
    osg::beginEditCP(node, osg::Node::CoreFieldMask);
    node->setCore(core);
    // Without this the node keeps the empty volume that it was created with.
    osg::endEditCP(node, osg::Node::CoreFieldMask);
    return node;
}

/** A node with @p core as the last child of @p parent. */
inline osg::NodePtr addNode(const osg::NodePtr& parent, const osg::NodeCorePtr& core)
{
    osg::NodePtr node = makeNode(core);
    parent->addChild(node);
    return node;
}

/** A node without core as the last child of @p parent. */
inline osg::NodePtr addNode(const osg::NodePtr& parent)
{
    osg::NodePtr node = osg::Node::create();
    parent->addChild(node);
    return node;
}

inline osg::TransformPtr makeTranslation(const osg::Real32 x, const osg::Real32 y, const osg::Real32 z)
{
    osg::Matrix matrix;
    matrix.setTranslate(x, y, z);
    osg::TransformPtr transform = osg::Transform::create();
    transform->setMatrix(matrix);
    osg::endEditCP(transform, osg::Transform::MatrixFieldMask);
    return transform;
}

/** A geometry that draws @p points as points; reference count zero. */
inline osg::GeometryPtr makePoints(const std::vector<osg::Pnt3f>& points)
{
    osg::GeoPositions3fPtr positions = osg::GeoPositions3f::create();
    for (const osg::Pnt3f& point : points) {
        positions->addValue(point);
    }
    osg::endEditCP(positions);
    osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8::create();
    types->addValue(GL_POINTS);
    osg::endEditCP(types);
    osg::GeoPLengthsUI32Ptr lengths = osg::GeoPLengthsUI32::create();
    lengths->addValue(static_cast<osg::UInt32>(points.size()));
    osg::endEditCP(lengths);

    osg::GeometryPtr geometry = osg::Geometry::create();
    geometry->setTypes(types);
    geometry->setLengths(lengths);
    geometry->setPositions(positions);
    osg::endEditCP(geometry);
    return geometry;
}

/** A geometry with the two corners of a cube of side two around the origin. */
inline osg::GeometryPtr makeCube()
{
    return makePoints({osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1)});
}

/** Six numbers and the flag, whatever type of volume the scene graph keeps. */
struct Bounds {
    osg::Pnt3f minimum;
    osg::Pnt3f maximum;
    bool isEmpty = false;

    friend bool operator==(const Bounds& left, const Bounds& right)
    {
        return left.minimum == right.minimum && left.maximum == right.maximum && left.isEmpty == right.isEmpty;
    }

    friend std::ostream& operator<<(std::ostream& stream, const Bounds& bounds)
    {
        return stream << '(' << bounds.minimum << ") (" << bounds.maximum << (bounds.isEmpty ? ") empty" : ")");
    }
};

inline Bounds filled(const osg::Pnt3f& minimum, const osg::Pnt3f& maximum)
{
    return {minimum, maximum, false};
}

inline Bounds emptied(const osg::Pnt3f& minimum, const osg::Pnt3f& maximum)
{
    return {minimum, maximum, true};
}

template <class VolumeT>
Bounds readBounds(const VolumeT& volume)
{
    Bounds bounds;
    volume.getBounds(bounds.minimum, bounds.maximum);
    bounds.isEmpty = volume.isEmpty();
    return bounds;
}

template <class VolumeT>
Bounds readWorldBounds(const osg::NodePtr& node, void (osg::Node::*read)(VolumeT&))
{
    VolumeT volume;
    ((*node).*read)(volume);
    return readBounds(volume);
}

/** The world volume of @p node. The type of the volume is deduced: flavours of OpenSG differ in it. */
inline Bounds worldBounds(const osg::NodePtr& node)
{
    return readWorldBounds(node, &osg::Node::getWorldVolume);
}

inline std::vector<osg::NodePtr> childrenOf(const osg::NodePtr& node)
{
    std::vector<osg::NodePtr> children;
    for (osg::UInt32 i = 0; i < node->getNChildren(); ++i) {
        children.push_back(node->getChild(i));
    }
    return children;
}

/** Whether the factory still knows a container of that id. */
inline bool isAlive(const osg::UInt32 id)
{
    return osg::FieldContainerFactory::the()->getContainer(id) != osg::NullFC;
}

} // namespace quon::testing
