// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGVector.h>

/**
 * What the host's scene graph has beyond a stock OpenSG, as free functions.
 *
 * These names stay the same whichever OpenSG is used; here they give an installed OpenSG 1.8 what it lacks. Handles
 * must not be null (not checked). What is no field here is kept in an attachment. The setters write and nothing else:
 * bracket them like any other write.
 */
namespace quon::extensions {

/** Takes all children out of @p node, whose edit the caller brackets with osg::Node::ChildrenFieldMask. */
void clearChildren(const osg::NodePtr& node);

/**
 * Reads the corners of the world-space box of @p node, in world units.
 *
 * A node that never had extent reads as two zero corners.
 */
void getWorldBounds(const osg::NodePtr& node, osg::Pnt3f& min, osg::Pnt3f& max);

/** Sets the host's 32 flags of a node, an attachment that exists while one of them is set. */
void setHostFlags(const osg::NodePtr& node, osg::UInt32 flags);

osg::UInt32 getHostFlags(const osg::NodePtr& node);

/** Sets the host's option of a simple material, an attachment that exists while it is set. */
void setHostOption(const osg::SimpleMaterialPtr& material, bool option);

bool getHostOption(const osg::SimpleMaterialPtr& material);

/**
 * Returns a new geometry that can carry the flag of setOverwriteMaterial(), reference count zero.
 *
 * Here it is of a type derived from osg::Geometry, which OpenSG's actions draw and intersect like one.
 */
osg::GeometryPtr createGeometry();

/**
 * Sets whether the material of @p geometry beats that of a material group above it.
 *
 * The flag is kept for any geometry, but only those from createGeometry() are drawn by it.
 */
void setOverwriteMaterial(const osg::GeometryPtr& geometry, bool overwrite);

bool getOverwriteMaterial(const osg::GeometryPtr& geometry);

/** Returns the mask to bracket setOverwriteMaterial() with. */
osg::BitVector getOverwriteMaterialFieldMask();

} // namespace quon::extensions
