// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>
#include <Interaction/Picker.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGVector.h>

#include <limits>
#include <vector>

namespace quon::interaction {

/**
 * Answers all questions about one pick from a cache and runs the scene query only when the answers are stale.
 *
 * The host derives from it and supplies the query: isCacheValid(), computePicked(), computePickedNodes(),
 * computeMultiPicked(), and the pointer and camera operations of Picker; updateSelectionOption() where its options
 * change. Whoever moves the pointer or the camera or changes the scene calls invalidate(), or lets isCacheValid() find
 * out; the class never invalidates on its own account.
 *
 * @par When a query runs
 * A getter first calls updateSelectionOption(). It answers from the cache when nothing was invalidated since the last
 * query, that query had the same mode, the options did not change and isCacheValid() says true; isCacheValid() is asked
 * last, and only when everything else speaks for the cache. All getters of a single result share one mode,
 * Picker::SinglePick. Before the first query there was no mode, so that it always runs.
 *
 * @par One flag for all caches
 * The list of getPickedNodes() and the results of the picks share one mark of staleness; getPickedNodes() neither
 * compares nor records a mode. Unless isCacheValid() says false or the options changed:
 * - after invalidate() a call of getPickedNodes() clears the mark, and a pick of the same mode as the last one then
 *   returns what invalidate() left: null handles, zeros and empty vectors;
 * - after a pick, getPickedNodes() returns the list of its previous call.
 *
 * @par Ownership
 * The picker keeps a reference on its root. Picked nodes and materials are plain handles, which go stale when the scene
 * destroys what they mean; the class passes them on and never looks behind them.
 * @par Exceptions
 * What a query throws, or the memory for its answers, passes through; the next question then runs the query.
 * @par Threading
 * User-interface thread only, no locks.
 */
class INTERACTION_EXPORT LazyPicker : public Picker {
public:
    LazyPicker();

    void getPicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::SelectionOption* option) override;
    osg::Pnt3f getPickedPoint(osg::SelectionOption* option) override;
    osg::NodePtr getPickedNode(osg::SelectionOption* option) override;
    osg::Vec3f getPickedNormal(osg::SelectionOption* option) override;

    /** Returns the texture coordinate of the last single pick; a multi-pick leaves it alone. */
    osg::Vec2f getPickedUV(osg::SelectionOption* option) override;

    osg::MaterialPtr getPickedMaterial(osg::SelectionOption* option) override;

    /** Calls updateSelectionOption() with null, since a multi-pick takes no option. */
    void getMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                        std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override;

    /** Only stores the value: cached answers stay. False at first. */
    void setFullyEnclosed(bool fullyEnclosed) override;
    bool getFullyEnclosed() const override;

    /** Only stores the value: cached answers stay. True at first. */
    void setDepthSelection(bool depthSelection) override;
    bool getDepthSelection() const override;

    /** Makes the next question run the query when the value changes. 0 at first. */
    void setSelectionRegion(int selectionRegion) override;
    int getSelectionRegion() const override;

    const std::vector<osg::NodePtr>& getPickedNodes(osg::SelectionOption* option) override;

    /** Makes the next question run the query, also for the same root; cached answers are not reset. Null at first. */
    void setRoot(const osg::NodePtr& root) override;
    osg::NodePtr getRoot() const override;

    /** Only stores the value: cached answers stay. True at first. */
    void setMakeNormalsConsistent(bool makeNormalsConsistent) override;
    bool getMakeNormalsConsistent() const override;

    /** Makes the next question run the query when the value changes. False at first. */
    void setMaterialLayerEvaluationEnabled(bool enabled) override;

    /** Makes the next question run the query when the value changes. True at first. */
    void setTransparencyEvaluationEnabled(bool enabled) override;

    virtual ~LazyPicker();

    /**
     * Forgets the results of the picks, so that the next question runs the query.
     *
     * Node and material become null, point, normal and texture coordinate zero, the multi-pick results empty. The list
     * of getPickedNodes() and the last mode are kept.
     */
    virtual void invalidate();

    /** Returns whether the layers of a material are looked into for the material that is hit. */
    virtual bool getMaterialLayerEvaluationEnabled() const;

    /** Returns whether a pick passes through what is transparent at the hit. */
    virtual bool getTransparencyEvaluationEnabled() const;

protected:
    /**
     * Returns true when the cached answers still hold, for example because nothing relevant has moved.
     *
     * Called only when everything else speaks for the cache; false makes the query run.
     */
    virtual bool isCacheValid() = 0;

    /**
     * Runs a single pick and writes all five results; null handles and zeros when nothing is hit.
     *
     * @param[out] node the nearest node hit
     * @param[out] point hit point in world space
     * @param[out] normal surface normal in world space
     * @param[out] uv texture coordinate
     * @param[out] material material hit
     * @param option what updateSelectionOption() left, may be null
     */
    virtual void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                               osg::MaterialPtr& material, osg::SelectionOption* option) = 0;

    /**
     * Replaces the content of @p nodes by the nodes that the settings select.
     *
     * @param[in,out] nodes holds the previous list on entry: it is not emptied before the call; never null
     * @param option what updateSelectionOption() left, may be null
     */
    virtual void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption* option) = 0;

    /**
     * Runs a multi-pick and fills the vectors, best hit first, entries of equal index belonging together.
     *
     * The first entry of each vector becomes the single result; an empty vector leaves that single result as it was.
     *
     * @param mode any mode but Picker::SinglePick
     * @param[out] nodes nodes hit; empty on entry, never null, as the three that follow
     * @param[out] points hit points in world space
     * @param[out] normals surface normals in world space
     * @param[out] materials materials hit
     */
    virtual void computeMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                                    std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) = 0;

    /**
     * Called first by every getter of a pick, whether or not the query then runs. The default does nothing.
     *
     * @param[in,out] option a copy of the pointer that the caller passed; what it is replaced by reaches the
     *                computePicked() or computePickedNodes() that may follow
     * @return true when the options changed, so that the query must run
     */
    virtual bool updateSelectionOption(osg::SelectionOption*& option);

private:
    // Equals no mode that a caller may pass; reserved in MultiMode for that.
    static constexpr MultiMode noMode = static_cast<MultiMode>(std::numeric_limits<int>::min());

    void tryToUpdateIfNeeded(MultiMode mode, osg::SelectionOption* option);

    osg::RefPtr<osg::NodePtr> m_root;
    bool m_dirty;
    osg::NodePtr m_pickedNode;
    osg::Pnt3f m_pickedPoint;
    osg::Vec3f m_pickedNormal;
    osg::Vec2f m_pickedUV;
    osg::MaterialPtr m_pickedMaterial;
    std::vector<osg::NodePtr> m_pickedNodes;
    MultiMode m_lastMultiMode;
    std::vector<osg::NodePtr> m_multiNodes;
    std::vector<osg::Pnt3f> m_multiPoints;
    std::vector<osg::Vec3f> m_multiNormals;
    std::vector<osg::MaterialPtr> m_multiMaterials;
    bool m_fullyEnclosed;
    bool m_depthSelection;
    bool m_makeNormalsConsistent;
    bool m_materialLayerEvaluationEnabled;
    bool m_transparencyEvaluationEnabled;
    int m_selectionRegion;
};

} // namespace quon::interaction
