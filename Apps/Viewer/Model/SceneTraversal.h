// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>

namespace quon::viewer {

/** A geometry node as it stands in the world. */
struct GeometryInstance {
    osg::NodePtr node;
    osg::GeometryPtr geometry;
    osg::Matrix toWorld;
    /** The material that it is seen with; may be null. */
    osg::MaterialPtr material;
};

/** What a node gets from above: the place of its parent and the material that a group has settled on. */
struct InheritedState {
    osg::Matrix toWorld;
    osg::MaterialPtr groupMaterial; ///< of the outermost material group that has one; may be null

    /** What @p node inherits from the nodes above it, whose masks and switches do not count. */
    static InheritedState find(const osg::NodePtr& node);
};

/** What a core means to a traversal. */
enum class CoreKind {
    Other, ///< no core, or one that changes nothing for those below
    Transform,
    MaterialGroup,
    Switch,
    Geometry,
};

/** @param core null is of the kind Other */
CoreKind getCoreKind(const osg::NodeCorePtr& core);

/** Hears of what a traversal meets. */
class SceneVisitor {
public:
    /**
     * Called for every node that the traversal reaches, in preorder, before its traversal mask is looked at.
     *
     * @return false leaves out the node and everything below it
     */
    virtual bool enterNode(const osg::NodePtr& node) = 0;

    /** Called for every visible node with a geometry core, after its enterNode(). */
    virtual void visitGeometry(const GeometryInstance& instance) = 0;

protected:
    ~SceneVisitor() = default;
};

/**
 * Walks the scene below @p root in preorder.
 *
 * A node counts when its traversal mask and @p mask have a bit in common; a switch lets its choice through. Transform
 * cores add up, including those above the root. The outermost material group on the way down, those above the root
 * included, decides the material of a geometry, unless the geometry's overwrite flag is on: then its own material
 * stays. The walk keeps its own stack, so that the depth of the scene does not matter.
 *
 * @param root null is ignored
 */
void traverseScene(const osg::NodePtr& root, osg::UInt32 mask, SceneVisitor& visitor);

/** The same for a root whose inherited state is known. */
void traverseScene(const osg::NodePtr& root, const InheritedState& inherited, osg::UInt32 mask, SceneVisitor& visitor);

} // namespace quon::viewer
