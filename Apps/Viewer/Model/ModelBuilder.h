// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/ModelData.h"
#include "Viewer/Model/PreparedGeometries.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

namespace quon::viewer {

/**
 * Builds the scene graph of a model, all at once or in slices between other work of the same thread.
 *
 * Every node of the data becomes a node with a transform core and its name; every mesh of it becomes a child with a
 * geometry core and without a name, so that a node is the part whose pieces its meshes are (see findPart()). Nodes with
 * the same mesh share one geometry core, geometries with the same material one material.
 *
 * All of it happens in the thread that calls; the scene graph records its changes there. What was built so far goes
 * with the builder, unless somebody else holds a reference to its root.
 */
class ModelBuilder {
public:
    using Clock = std::chrono::steady_clock;

    /** @param data has at least one node; its arrays are given back as they are used up */
    explicit ModelBuilder(ModelData data);

    ModelBuilder(const ModelBuilder&) = delete;
    ModelBuilder& operator=(const ModelBuilder&) = delete;

    /**
     * Goes on building until the model is complete or @p deadline has passed, and a little at least.
     *
     * @return true when the model is complete; further calls do nothing
     */
    bool advance(Clock::time_point deadline = Clock::time_point::max());

    /** Returns the root of what was built so far; null before the first advance(). */
    osg::NodePtr getRoot() const { return m_root.get(); }

    /** Returns the contents of the geometries built so far, as far as the data came with them; leaves none. */
    PreparedGeometries takePrepared() { return std::exchange(m_prepared, {}); }

    /** How many parts there are so far, and how many there will be. */
    std::size_t countBuiltParts() const { return m_builtParts; }
    std::size_t countParts() const { return m_parts; }

private:
    // A geometry that does not have all of its values yet. It keeps the properties, which are null where there is no
    // use for them.
    struct Filling {
        osg::RefPtr<osg::GeometryPtr> geometry;
        osg::GeoPositions3fPtr positions;
        osg::GeoNormals3fPtr normals;
        osg::GeoColors4fPtr colours;
        osg::GeoTexCoords2fPtr texCoords;
        osg::GeoIndicesUI32Ptr indices;
    };

    void step();
    void addNode();
    void addMesh();
    void addPiece(const osg::GeometryPtr& geometry);
    void startGeometry(const ModelData::Mesh& mesh);
    bool fillGeometry(ModelData::Mesh& mesh);
    osg::MaterialPtr getMaterial(std::size_t index);
    bool isComplete() const;

    ModelData m_data;
    std::vector<osg::RefPtr<osg::MaterialPtr>> m_materials;
    std::vector<osg::RefPtr<osg::GeometryPtr>> m_geometries; ///< complete ones
    Filling m_filling;
    PreparedGeometries m_prepared;
    std::vector<osg::NodePtr> m_nodes; ///< built so far, kept by their root
    osg::RefPtr<osg::NodePtr> m_root;
    std::size_t m_nextMesh = 0; ///< place among the meshes of the newest node
    std::size_t m_parts;
    std::size_t m_builtParts = 0;
    unsigned m_unnamed = 0;
};

} // namespace quon::viewer
