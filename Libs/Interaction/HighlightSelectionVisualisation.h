// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractSelectionVisualisation.h>
#include <Interaction/InteractionExport.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleMaterial.h>

namespace quon::interaction {

/**
 * Copies a subtree for drawing it a second time.
 *
 * The copies are new nodes with the `TravMask` of their originals and share their cores. In place of lights and
 * cameras of the host, material groups and material pools they have new, empty groups: a light must not light twice
 * and no inner material may win over the one set above the copy. Attachments, names and auxiliary marks are not copied.
 *
 * The depth of the tree costs memory, not stack. Without memory there is std::bad_alloc and no copy.
 *
 * @param node null is answered with null, and so is a node without core; a child without core is left out
 * @return the copy without a reference: whoever attaches it holds it
 */
INTERACTION_EXPORT osg::NodePtr cloneSelectionTree(const osg::NodePtr& node);

/**
 * Draws every selected subtree a second time, as a coloured wireframe on top of the scene.
 *
 * The copies share the cores of the originals, see cloneSelectionTree(), and are drawn with the one material of the
 * root's material group; the one built here is named "koScenegraph::m_highlightMaterial", root and copies have no
 * names. Copies stand in world coordinates: the root belongs below a node without transformation.
 *
 * Every update builds the copy afresh, so that changes of the subtree's structure show after it. The visualisation
 * node of a geometry directly below a transform also follows changes of that transform at once, until its first
 * update; later the transform is part of the copy's own matrix. Both draw the same picture.
 *
 * Everything below a selected node is copied, highlights included: do not select the root or a node above it, or each
 * update copies the copies of the one before and the trees grow without end.
 *
 * @par Ownership
 * The instance holds one reference to the material that it built, which the destructor deliberately does not release,
 * and one to the material group. Visualisation nodes are held by the base alone.
 *
 * @par Exceptions
 * Without memory the constructor leaves nothing behind, and an update leaves the copy of before. The setters need none.
 *
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT HighlightSelectionVisualisation : public AbstractSelectionVisualisation {
public:
    /** Builds chunks, material and material group, and gives the root that group as its core. */
    HighlightSelectionVisualisation();

    /** Releases the material group; the material built by the constructor keeps its reference. */
    ~HighlightSelectionVisualisation() override;

    /**
     * Sets the colour of the material built by the constructor; (0.956, 0.521, 0.086), an orange, by default.
     *
     * A material installed with setMaterial() is not touched.
     */
    void setColor(const osg::Color3f& color);

    /** Returns the colour of the material built by the constructor. */
    osg::Color3f getColor() const;

    /**
     * Draws the copies over everything (depth function `GL_ALWAYS`, the default) or in the scene (`GL_LEQUAL`).
     *
     * A material installed with setMaterial() is not touched.
     */
    void setOverlay(bool overlay);

    /** Returns whether the material built by the constructor draws over everything. */
    bool getOverlay() const;

    /**
     * Sets the material that every copy is drawn with.
     *
     * @param material null is ignored
     */
    void setMaterial(const osg::MaterialPtr& material);

    /** Returns the material that every copy is drawn with. */
    osg::MaterialPtr getMaterial() const;

    /**
     * Returns a transform node with the world matrix of the parent of @p node and a copy of @p node below it.
     *
     * For a geometry directly below a transform the matrix is that of the parent's parent, and a node that shares the
     * parent's transform comes in between. A node without core gives a transform node without child; without a parent
     * to ask the matrix is the identity.
     *
     * @param node null is answered with null
     * @return the transform node without a reference: whoever attaches it holds it
     */
    osg::NodePtr createVisualisation(const osg::NodePtr& node) override;

    /** Does nothing: copies are not recycled. */
    void removeVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override;

    /**
     * Replaces the copy below @p visualisation by a new one, or removes it while @p node is hidden or masked.
     *
     * A shown node first gives a visualisation that is a transform the world matrix of its parent, the identity
     * without one, and then replaces the first child; it never adds a child. A copy that was removed while the node
     * was hidden therefore comes back only where the scene graph's `replaceChild` adds to a node without children;
     * where it does not, the new copy is destroyed. A hidden node whose copy is gone already changes nothing. A node
     * that has no core any more gives no copy: the old one stays.
     *
     * @param node null is ignored
     * @param visualisation null is ignored
     */
    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override;

private:
    osg::SimpleMaterialPtr m_highlightMaterial;
    osg::DepthTestChunkPtr m_depthTestChunk;
    osg::RefPtr<osg::MaterialGroupPtr> m_materialGroup;
};

} // namespace quon::interaction
