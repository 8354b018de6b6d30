// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Tools/RegionIndex.h"
#include "Viewer/Tools/RegionOption.h"

#include <Interaction/LazyPicker.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace quon::viewer {

class PreparedGeometries;

/**
 * Picks in the scene with Embree's ray queries.
 *
 * @par The ray
 * setCamera() takes the matrix from world space to clip space (projection times view; x right, y up, -w <= z <= w).
 * setPointer() takes viewport pixels with the origin top left; the ray goes through the middle of that pixel, from the
 * near to the far plane. It needs the size of the viewport, see setViewportSize().
 * @par What is picked
 * Triangles of the visible geometry nodes below the root. Nodes marked auxiliary are left out with all that is below
 * them: selection boxes cannot be selected. Lines and points are not hit. What a transform has made flat is hit like
 * everything else; from more than some 1e18 units away nothing is.
 * @par Settings
 * The selection region is half the edge length, in pixels, of a square around the pointer; 0 is the pointer's pixel.
 * Fully enclosed asks for nodes that lie in the region as a whole. Depth selection off leaves only what is in front at
 * some pixel of the region. With transparency evaluation, what is wholly transparent lets the ray through. With
 * consistent normals, a normal points to the side that the ray comes from. Materials have no layers here.
 * @par Modes
 * SinglePick and AllHits go along the ray; Region gives each node of the region once, with its point nearest to the
 * viewer, nearest first. Any other mode finds nothing.
 * @par Options
 * With a RegionOption, getPickedNodes() gives the parts in its rectangle, see findPart(), each once and in the order of
 * the scene; the pointer and the selection region do not matter, and neither does what of the rectangle lies beside the
 * viewport. Here lines and points count as well. Fully enclosed
 * asks for the parts of which all visible geometry lies in the rectangle. Depth selection off leaves the parts that a
 * ray hits first, through every pixel of the rectangle, or through a raster of LargestRayCount at most in a larger one.
 * Other options are not read.
 * @par Staleness
 * The picker does not see edits of the scene by itself: sceneChanged() must hear of them.
 */
class EmbreePicker : public interaction::LazyPicker, public SceneChangeListener {
public:
    /** The number of rays that tell what is in front in a rectangle. */
    static constexpr int LargestRayCount = 65536;

    /** How the cache does. */
    struct Statistics {
        std::size_t asked = 0;   ///< questions that were answered
        std::size_t queried = 0; ///< those for which the scene was queried; the rest came from the cache
    };

    EmbreePicker();
    ~EmbreePicker() override;

    EmbreePicker(const EmbreePicker&) = delete;
    EmbreePicker& operator=(const EmbreePicker&) = delete;

    /** @param width, height in pixels; values below one count as one */
    void setViewportSize(int width, int height);

    void setPointer(const osg::Pnt2f& position) override;
    osg::Pnt2f getPointer() const override;
    void setCamera(const osg::Matrix& camera) override;
    osg::Matrix getCamera() const override;

    const std::vector<osg::NodePtr>& getPickedNodes(osg::SelectionOption* option) override;
    void setRoot(const osg::NodePtr& root) override;
    void invalidate() override;

    /** Takes contents of geometries that need not be read and sorted then; borrowed, null for none. */
    void setPrepared(const PreparedGeometries* prepared);

    /**
     * Notes what changed, and brings what is searched up to date before the next answer; edits elsewhere leave the
     * cached answers valid.
     */
    void sceneChanged(const SceneChanges& changes) override;

    /**
     * The node in front at a pixel, whatever the pointer's place.
     *
     * Neither reads nor touches the cached answers.
     */
    osg::NodePtr findNodeAt(const osg::Pnt2f& position);

    /** Of the cached answers; findNodeAt() is none of them. */
    const Statistics& getStatistics() const { return m_statistics; }

    /** The number of geometries that the last rectangle cut: only these were looked into. */
    std::size_t getExactTestCount() const { return m_regionIndex.getExactTestCount(); }

protected:
    bool isCacheValid() override;

    /** Notes the rectangle of a RegionOption, which the cached answers depend on. */
    bool updateSelectionOption(osg::SelectionOption*& option) override;

    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption* option) override;
    void computePickedNodes(std::vector<osg::NodePtr>* nodes, osg::SelectionOption* option) override;
    void computeMultiPicked(MultiMode mode, std::vector<osg::NodePtr>* nodes, std::vector<osg::Pnt3f>* points,
                            std::vector<osg::Vec3f>* normals, std::vector<osg::MaterialPtr>* materials) override;

private:
    class Scene;
    struct Mesh;

    // Products with a point in clip space are positive or zero inside.
    using RegionPlanes = std::array<Vector4, 6>;

    struct Ray {
        osg::Pnt3f origin;
        osg::Vec3f direction; ///< of length one
        float length = 0;
    };

    struct Hit {
        osg::NodePtr node;
        osg::Pnt3f point;
        osg::Vec3f normal;
        osg::Vec2f uv;
        osg::MaterialPtr material;
        float distance = 0;
    };

    /** Everything that a cached answer depends on. */
    struct Key {
        osg::Pnt2f pointer;
        osg::Matrix camera;
        int width = 0;
        int height = 0;
        int region = 0;
        bool transparency = false;
        std::optional<PixelRectangle> rectangle; ///< of the option
        bool enclosed = false;                   ///< counts with a rectangle only
        bool depth = false;                      ///< counts with a rectangle only
        unsigned revision = 0;
        bool set = false; ///< false: nothing was computed, equals no key

        bool equals(const Key& other) const;
    };

    Key getCurrentKey() const;
    bool makeRay(const osg::Pnt2f& position, Ray& ray) const;
    std::vector<Hit> pickRay(const osg::Pnt2f& position, bool nearestOnly);
    std::vector<Hit> pickRegion();
    std::vector<osg::NodePtr> pickParts(const PixelRectangle& rectangle);
    std::set<osg::NodePtr> findPartsInFront(const PixelRectangle& rectangle);
    void updateRegionIndex();
    void updateScene();
    static bool isOutside(const Mesh& mesh, const Matrix4& toClip, const RegionPlanes& planes);

    std::unique_ptr<Scene> m_scene;
    osg::Pnt2f m_pointer;
    osg::Matrix m_camera;
    int m_width = 1;
    int m_height = 1;
    unsigned m_revision = 0;
    bool m_rootChanged = true;
    Key m_pickKey;
    Key m_nodesKey;
    Statistics m_statistics;
    bool m_asksForNodes = false;               ///< inside getPickedNodes()
    std::optional<PixelRectangle> m_rectangle; ///< of the option that was passed last
    RegionIndex m_regionIndex;
    Key m_regionIndexKey; ///< what the index was filled for: only revision and transparency count
};

} // namespace quon::viewer
