// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractSelectionVisualisation.h>
#include <Interaction/InteractionExport.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <stack>

namespace quon::interaction {

/**
 * Draws the twelve edges of the world bounding box of every selected node.
 *
 * Boxes around nodes that the user may not edit have a second colour; a node without extent gets a small marker cube
 * around its place. Cameras of the host get no box. The boxes are drawn late in the transparent pass and, with the
 * overlay on, over everything.
 *
 * The root is named "VisualisationRootMaterialGroup", has a material group with the highlight material as its core and
 * belongs below a node without transformation: boxes are in world coordinates. Each box is named
 * "VisualizationHighlightNode" and marked auxiliary; the materials are named "koScenegraph::m_highlightMaterial" and
 * "koScenegraph::m_lockedNodeMaterial".
 *
 * @par Recycling
 * A box node lives on after its node is deselected and serves the next selected one; clear() and the destructor
 * let go of the spare ones.
 *
 * @par Ownership
 * A box node carries one reference of its own from its creation on, besides the two of the base. It goes to the spare
 * stack with removeVisualisation() and back with createVisualisation(), and is dropped by clear() and the destructor
 * for the nodes on the stack only: a box that is in use when the instance is destroyed keeps it. So does each of the
 * two materials keep the reference that the constructor took. Call removeAllNodes() before destroying an instance to
 * leave no box behind, and deselect a node before the scene destroys it: the box of a node that is gone is not recycled
 * and keeps its own reference for good.
 *
 * @par Exceptions
 * Without memory the constructor leaves nothing behind; a box that cannot be fitted, or kept as a spare one, is let go
 * of. The setters need no memory.
 *
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT BoxSelectionVisualisation : public AbstractSelectionVisualisation {
public:
    /** Builds chunks and materials and gives the root its material group and its name. */
    BoxSelectionVisualisation();

    /** Lets go of the spare boxes, see clear(); materials, chunks and boxes in use are not released. */
    ~BoxSelectionVisualisation() override;

    /** Lets go of the spare boxes; one that nobody else holds is destroyed. */
    void clear();

    /**
     * Sets the size of the cube around nodes without extent, from the next update of a node on.
     *
     * @param markerSize half the edge length in world units, 1 by default
     */
    void setMarkerSize(float markerSize);

    /** Returns half the edge length of the marker cube in world units. */
    float getMarkerSize() const;

    /** Sets the colour of all boxes around editable nodes; (0.956, 0.521, 0.086), an orange, by default. */
    void setColor(const osg::Color3f& color);

    /** Returns the colour of boxes around editable nodes. */
    osg::Color3f getColor() const;

    /** Sets the colour of all boxes around locked nodes; (0.046, 0.046, 0.046), near black, by default. */
    void setLockedColor(const osg::Color3f& color);

    /**
     * Sets the transparency of all boxes and moves them within the order of drawing.
     *
     * The offset is added to the current sort key of the highlight material, so it accumulates over calls; the
     * locked-node material gets the same key, whatever its own was. The key wraps around at the ends of 32 bits.
     *
     * @param transparency 0 for opaque to 1 for invisible; 0.001 by default
     * @param sortKeyOffset added to the sort key, 60000 by default
     */
    void setTransparency(float transparency, int sortKeyOffset);

    /** Draws the boxes over everything (depth function `GL_ALWAYS`, the default) or in the scene (`GL_LEQUAL`). */
    void setOverlay(bool overlay);

    /** Returns whether the boxes are drawn over everything. */
    bool getOverlay() const;

    /**
     * Returns a box around @p node: the spare box handed back last, or a new one.
     *
     * The result has passed updateVisualisation() and carries a reference of its own.
     *
     * @param node null is answered with null
     */
    osg::NodePtr createVisualisation(const osg::NodePtr& node) override;

    /**
     * Puts @p visualisation on the spare stack, which takes over the box's own reference.
     *
     * Nothing is detached or destroyed here.
     *
     * @param node not looked at
     * @param visualisation null is ignored
     */
    void removeVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override;

    /**
     * Fits @p visualisation to the world bounds of @p node and colours it by whether the user may edit the node.
     *
     * Where all six coordinates of the bounds are exactly 0, a cube of twice the marker size around the node's world
     * position is drawn instead. A node that lost its extent may still report its last bounds: those are drawn then.
     * Corners within 1e-6 of the wanted ones are not written again.
     *
     * @param node null is ignored
     * @param visualisation null is ignored, and so is a node that is no geometry with eight 3-float positions
     */
    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override;

    /** Returns true unless @p node is a camera of the host. */
    bool shouldHaveVisualization(const osg::NodePtr& node) const override;

private:
    osg::SimpleMaterialPtr m_highlightMaterial;
    osg::SimpleMaterialPtr m_lockedNodeMaterial;
    osg::DepthTestChunkPtr m_depthTestChunk;
    float m_markerSize = 1.0F;
    std::stack<osg::NodePtr> m_spareNodes;
};

} // namespace quon::interaction
