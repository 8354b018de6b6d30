// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

#include <vector>

namespace osg {
class SelectionOption;
}

namespace quon::interaction {

/**
 * What a tool asks for the scene below the pointer: node, point, normal, texture coordinate and material.
 *
 * The ray of a pick starts at the camera, see setCamera(), and goes through the pointer, see setPointer(). LazyPicker
 * implements most of the interface as a cache; the scene query itself is the host's.
 *
 * @par Spaces
 * The pointer is in viewport pixels, as InteractionContext::pointerMoved() reports it; hit points and normals are in
 * world space.
 * @par Options
 * An option of the host is passed on to the scene query and read by nobody else. It is borrowed for the call and may be
 * null: the picker's settings alone decide then.
 * @par Ownership
 * The host owns a picker and destroys it through its own class, never through this interface. Nodes and materials that
 * a picker returns are plain handles: they keep nothing alive.
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT Picker {
public:
    /**
     * What a pick looks for.
     *
     * Any other int is a kind of multi-pick that the host's back end defines; the library passes it through. Only the
     * smallest int is reserved: no mode may have that value.
     */
    enum MultiMode : int {
        SinglePick = 0, ///< the nearest hit alone: what every getter of a single result uses
        AllHits = 1,    ///< every hit along the ray, nearest first
        Region = 2      ///< everything in the selection region around the pointer, best hit first
    };

    /**
     * Picks the nearest hit.
     *
     * @param[out] node the node hit, null when nothing is hit
     * @param[out] point the hit point in world space
     * @param[out] normal the surface normal at the hit point in world space
     * @param option passed on to the scene query, may be null
     */
    virtual void getPicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::SelectionOption* option) = 0;

    /** Returns the nearest hit point in world space. */
    virtual osg::Pnt3f getPickedPoint(osg::SelectionOption* option) = 0;

    /** Returns the node of the nearest hit, null when nothing is hit. */
    virtual osg::NodePtr getPickedNode(osg::SelectionOption* option) = 0;

    /** Returns the surface normal at the nearest hit in world space. */
    virtual osg::Vec3f getPickedNormal(osg::SelectionOption* option) = 0;

    /** Returns the texture coordinate at the nearest hit. */
    virtual osg::Vec2f getPickedUV(osg::SelectionOption* option) = 0;

    /** Returns the material at the nearest hit, null when nothing is hit or the node has none. */
    virtual osg::MaterialPtr getPickedMaterial(osg::SelectionOption* option) = 0;

    /**
     * Picks in the manner of @p mode; the best hit comes first, entries of equal index belong together.
     *
     * What the vectors held before is replaced.
     *
     * @param mode SinglePick gives exactly one entry, also when nothing is hit
     * @param[out] nodes nodes hit; null skips them
     * @param[out] points hit points in world space; null skips them
     * @param[out] normals surface normals in world space; null skips them
     * @param[out] materials materials hit; null skips them
     */
    virtual void getMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                                std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) = 0;

    /** Sets whether a region picks only what lies in it as a whole. */
    virtual void setFullyEnclosed(bool fullyEnclosed) = 0;

    /** Returns whether a region picks only what lies in it as a whole. */
    virtual bool getFullyEnclosed() const = 0;

    /** Sets whether a region picks what is hidden behind something else, too. */
    virtual void setDepthSelection(bool depthSelection) = 0;

    /** Returns whether a region picks what is hidden behind something else, too. */
    virtual bool getDepthSelection() const = 0;

    /** Sets the size of the selection region around the pointer, in the unit of the back end. */
    virtual void setSelectionRegion(int selectionRegion) = 0;

    /** Returns the size of the selection region around the pointer, in the unit of the back end. */
    virtual int getSelectionRegion() const = 0;

    /**
     * Picks all nodes that the settings select, for example those of a region.
     *
     * @param option passed on to the scene query, may be null
     * @return the picker's own list, valid until the next call of this operation
     */
    virtual const std::vector<osg::NodePtr>& getPickedNodes(osg::SelectionOption* option) = 0;

    /**
     * Sets the root of the subtree that is picked in.
     *
     * @param root referenced while it is the root; null: nothing to pick in
     */
    virtual void setRoot(const osg::NodePtr& root) = 0;

    /** Returns the root of the subtree that is picked in; no reference is added. */
    virtual osg::NodePtr getRoot() const = 0;

    /** Sets whether normals are turned towards the viewer. */
    virtual void setMakeNormalsConsistent(bool makeNormalsConsistent) = 0;

    /** Returns whether normals are turned towards the viewer. */
    virtual bool getMakeNormalsConsistent() const = 0;

    /** Sets whether the layers of a material are looked into for the material that is hit. */
    virtual void setMaterialLayerEvaluationEnabled(bool enabled) = 0;

    /** Sets whether a pick passes through what is transparent at the hit. */
    virtual void setTransparencyEvaluationEnabled(bool enabled) = 0;

    /**
     * Sets the place of the pointer.
     *
     * @param position in viewport pixels, as InteractionContext::pointerMoved() reports it
     */
    virtual void setPointer(const osg::Pnt2f& position) = 0;

    /** Returns the place of the pointer in viewport pixels. */
    virtual osg::Pnt2f getPointer() const = 0;

    /**
     * Sets the camera that looks at the scene.
     *
     * @param camera as InteractionContext::cameraMoved() reports it
     */
    virtual void setCamera(const osg::Matrix& camera) = 0;

    /** Returns the camera that looks at the scene. */
    virtual osg::Matrix getCamera() const = 0;

protected:
    // Not virtual: never destroyed through the interface.
    ~Picker() = default;
};

} // namespace quon::interaction
