// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/CoverMap.h"
#include "Viewer/Drawing/MarkerBuffer.h"
#include "Viewer/Drawing/VertexBuffers.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/PagedArray.h"
#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Model/SceneMirror.h"
#include "Viewer/Model/SurfaceFacing.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quon::viewer {

class GeometryContent;
struct GeometryData;
class PreparedGeometries;
class WorkerPool;

/** The content of one geometry core. */
struct Mesh {
    std::shared_ptr<const GeometryContent> content; ///< a large mesh has none once it is in its buffers
    IndexCounts counts;
    osg::Pnt3f minimum;
    osg::Pnt3f maximum;
    std::size_t vertexCount = 0;
    std::array<osg::UInt32, 6> properties{}; ///< ids of what it was read from
    bool stale = true;                       ///< the geometry has changed since
    std::vector<std::uint32_t> users;        ///< places of the items that show it
    bool buffersStale = true;
    VertexBuffers buffers; ///< of a mesh that is drawn by itself, see DrawItem

    VertexFormat getFormat() const { return {hasNormals, hasColours}; }
    bool hasNormals = false;
    bool hasColours = false;
    SurfaceFacing facing = SurfaceFacing::Any;
};

/** A geometry node as it is drawn: as a piece of a batch, or by itself when it is large. */
struct DrawItem {
    static constexpr std::uint32_t None = 0xFFFFFFFF;

    osg::UInt32 geometryId = 0;
    Mesh* mesh = nullptr; ///< null: no such item
    osg::MaterialPtr material;
    osg::UInt32 materialId = 0;
    osg::Matrix toWorld;
    osg::Pnt3f minimum; ///< in the world
    osg::Pnt3f maximum;
    float radius = 0;
    std::uint32_t group = None;  ///< none: nothing of it can be drawn
    std::uint32_t batch = None;  ///< none: it is drawn by itself
    std::uint32_t slot = 0;      ///< among the items of the batch, or of the single ones of the group
    std::size_t vertexCount = 0; ///< as it counts in the batch
    std::uint32_t user = 0;      ///< among the users of the mesh

    osg::Pnt3f getCentre() const;
};

/** The indices of a geometry among its own vertices; geometries that look alike share them. */
struct IndexPattern {
    std::vector<GLushort> triangles;
    std::vector<GLushort> lines;
    std::vector<GLushort> points;
    std::vector<std::uint8_t>
        corners; ///< by vertex: of the world box; empty unless all are corners of it, see WorldBox

    bool equals(const GeometryData& data, const std::vector<std::uint8_t>& others) const;
};

/** Many geometries in one pair of buffers, in world space relative to an origin of their own. */
struct Batch {
    std::vector<std::uint32_t> items; ///< places; the larger ones first once it is built
    std::vector<IndexCounts> ends;    ///< by item: indices up to its end
    std::vector<float> radii;         ///< by item, a little varied; none larger than the one before
    std::vector<WorldBox> boxes;      ///< by item
    std::vector<IndexPattern> patterns;
    std::vector<std::uint32_t> patternOfItem; ///< by item
    std::vector<std::uint32_t> firstVertices; ///< by item
    std::size_t vertexCount = 0;
    osg::Pnt3f minimum; ///< in the world; holds all items, may be too large
    osg::Pnt3f maximum;
    std::array<double, 3> origin{};
    bool stale = true;
    VertexBuffers buffers; ///< indices come into them with the first drawing of all items
    MarkerBuffer markers;  ///< by item

    const IndexPattern& getPattern(const std::uint32_t item) const { return patterns[patternOfItem[item]]; }

    /** Whether nothing of it but lines and points is drawn. */
    bool isThin() const { return ends.empty() || ends.back().triangles == 0; }
};

/** What the buffers of a batch are filled with, and what is needed to find that out. */
struct BatchContent {
    VertexData data;
    std::vector<Marker> markers;
    std::vector<std::pair<float, std::uint32_t>> order; ///< radius and place of each item
    std::vector<std::uint8_t> corners;
};

/** Everything that is drawn with one material and one vertex format and is of similar size. */
struct DrawGroup {
    osg::MaterialPtr material; ///< may be null
    osg::UInt32 materialId = 0;
    VertexFormat format;
    std::uint64_t rank = 0;                    ///< groups whose material came first have the lower one
    SurfaceFacing facing = SurfaceFacing::Any; ///< in the world
    int size = 0;                              ///< class of the radii
    float leastRadius = 0;                     ///< of the class
    std::vector<std::uint32_t> batches;
    std::vector<std::uint32_t> open;    ///< batches with room
    std::vector<std::uint32_t> singles; ///< places of the items that are drawn by themselves
    std::size_t itemCount = 0;

    /** The material, null also when it is no longer there. */
    osg::MaterialPtr getMaterial() const;
};

/**
 * The visible geometry of a scene in as few pairs of buffers as reasonable, kept up to date from edit to edit.
 *
 * Small geometries of the same material are copied into batches, transformed into the world: one call draws thousands
 * of them, and an edit makes stale no more than the batch of what it touched. A batch has at most 4096 geometries and
 * 65536 vertices, so that its indices are short and building it again takes a few milliseconds. Positions are relative
 * to an origin in the middle of the batch, and a batch does not extend further than its smallest geometries allow, so
 * that single precision does for scenes far away from the origin of the world. Large geometries are copied once for
 * each geometry core and keep their matrix.
 *
 * All operations that have a context in their description need it to be current; the others need none.
 */
class BatchList : private SceneMirror::Listener {
public:
    BatchList();
    ~BatchList() = default;

    BatchList(const BatchList&) = delete;
    BatchList& operator=(const BatchList&) = delete;

    /** Takes contents of geometries that need not be read then; borrowed, null for none. */
    void setPrepared(const PreparedGeometries* prepared) { m_prepared = prepared; }

    void sceneChanged(const SceneChanges& changes);

    /** Follows the scene, without touching any buffer. */
    void update(const osg::NodePtr& root, osg::UInt32 mask);

    /**
     * Fills the vertices and the markers of batches that are stale, not their indices; in the context.
     *
     * @param workers put the contents together, as many batches at once as there are workers
     */
    void build(const std::vector<Batch*>& batches, WorkerPool& workers);

    /** Fills the buffers of a mesh that is drawn by itself; in the context. */
    void build(Mesh& mesh);

    /** Deletes the buffers of what is gone; in the context. */
    void deleteDoomedBuffers();

    /** Lets go of the scene and deletes all buffers; in the context. */
    void release();

    /** The groups by their rank. */
    std::vector<DrawGroup*> getGroups() const;
    Batch& getBatch(const std::uint32_t index) { return *m_batches[index]; }
    const DrawItem& getItem(const std::uint32_t place) const { return m_items[place]; }

    std::size_t getMeshCount() const { return m_meshes.size(); }
    /** How many materials have a rank: those that were drawn and are still there. */
    std::size_t getMaterialCount() const { return m_ranks.size(); }
    std::size_t getBatchCount() const { return m_batches.size() - m_freeBatches.size(); }

    /** How many geometries were read and how many buffers filled since the last call. */
    std::size_t takeReadCount();
    std::size_t takeBuildCount();

private:
    using GroupKey = std::tuple<osg::UInt32, bool, bool, SurfaceFacing, int>;

    bool isWanted(const osg::NodePtr& node) override;
    void geometryShown(std::size_t place, const GeometryInstance& instance) override;
    void geometryGone(std::size_t place) override;

    Mesh& getMesh(const osg::GeometryPtr& geometry);
    void read(const osg::GeometryPtr& geometry, Mesh& mesh);
    void markStale(osg::UInt32 geometryId);
    void refreshStaleMeshes();
    void place(std::uint32_t place, std::uint32_t formerGroup, std::uint32_t formerBatch);
    void moveItem(std::uint32_t place);
    void takeOut(std::uint32_t place);
    static std::uint32_t findPattern(Batch& batch, const DrawItem& item, std::vector<std::uint8_t>& corners);
    void prepare(Batch& batch, BatchContent& content);
    void fill(Batch& batch, const BatchContent& content);
    void sortItems(Batch& batch, BatchContent& content);
    void tidy(std::uint32_t group, std::uint32_t batch);
    std::uint32_t findGroup(const DrawItem& item);
    std::uint32_t findBatch(std::uint32_t groupIndex, std::uint32_t preferred, const DrawItem& item);
    static bool fits(const Batch& batch, const DrawGroup& group, const DrawItem& item);
    void dropMesh(osg::UInt32 geometryId);

    const PreparedGeometries* m_prepared = nullptr;
    SceneMirror m_mirror;
    PagedArray<DrawItem> m_items;                   ///< by place
    std::unordered_map<osg::UInt32, Mesh> m_meshes; ///< by id of the geometry; ids are never reused
    osg::UInt32 m_newestId = 0;                     ///< of all geometries and properties that were ever read
    std::vector<osg::UInt32> m_staleMeshes;         ///< ids of those that are shown
    std::vector<std::unique_ptr<DrawGroup>> m_groups;
    std::map<GroupKey, std::uint32_t> m_groupIndices;
    std::vector<std::uint32_t> m_freeGroups;
    std::vector<std::unique_ptr<Batch>> m_batches;
    std::vector<std::uint32_t> m_freeBatches;
    std::unordered_map<osg::UInt32, std::uint64_t> m_ranks; ///< by id of the material
    std::uint64_t m_nextRank = 0;
    std::vector<GLuint> m_doomedBuffers;
    VertexData m_data;                    ///< what is filled into buffers of a mesh; kept for its memory
    std::vector<BatchContent> m_contents; ///< of the batches that are being built; kept for their memory
    std::size_t m_readCount = 0;
    std::size_t m_buildCount = 0;
};

} // namespace quon::viewer
