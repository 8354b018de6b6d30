// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleMaterial.h>

/**
 * What the host's scene graph has beyond a stock OpenSG, as free functions.
 *
 * These names stay the same whichever OpenSG is used; here they lead to members of the embedded scene graph. Handles
 * must not be null (not checked). The setters write the field and nothing else: bracket them like any other write.
 */
namespace quon::extensions {

/** Takes all children out of @p node, whose edit the caller brackets with osg::Node::ChildrenFieldMask. */
inline void clearChildren(const osg::NodePtr& node)
{
    node->clearChildren();
}

/**
 * Reads the corners of the world-space box of @p node, in world units.
 *
 * A node that never had extent reads as two zero corners.
 */
inline void getWorldBounds(const osg::NodePtr& node, osg::Pnt3f& min, osg::Pnt3f& max)
{
    osg::BoxVolume volume;
    node->getWorldVolume(volume);
    volume.getBounds(min, max);
}

/** Sets the host's 32 flags of a node, the field that follows the core. */
inline void setHostFlags(const osg::NodePtr& node, osg::UInt32 flags)
{
    node->setHostFlags(flags);
}

/** Returns the host's 32 flags of a node, 0 unless set. */
inline osg::UInt32 getHostFlags(const osg::NodePtr& node)
{
    return node->getHostFlags();
}

/** Sets the host's option of a simple material, the second field after the colour material. */
inline void setHostOption(const osg::SimpleMaterialPtr& material, bool option)
{
    material->setHostOption(option);
}

/** Returns the host's option of a simple material. */
inline bool getHostOption(const osg::SimpleMaterialPtr& material)
{
    return material->getHostOption();
}

/** Returns a new geometry that can carry the flag of setOverwriteMaterial(), reference count zero. */
inline osg::GeometryPtr createGeometry()
{
    return osg::Geometry::create();
}

/** Sets whether the material of @p geometry beats that of a material group above it. */
inline void setOverwriteMaterial(const osg::GeometryPtr& geometry, bool overwrite)
{
    geometry->setOverwriteMaterial(overwrite);
}

/** Returns whether the material of @p geometry beats that of a material group above it; false unless set. */
inline bool getOverwriteMaterial(const osg::GeometryPtr& geometry)
{
    return geometry->getOverwriteMaterial();
}

/** Returns the mask to bracket setOverwriteMaterial() with. */
inline osg::BitVector getOverwriteMaterialFieldMask()
{
    return osg::MaterialDrawable::OverwriteMaterialFieldMask;
}

} // namespace quon::extensions
