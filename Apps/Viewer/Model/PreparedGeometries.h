// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/GeometryContent.h"
#include "Viewer/Model/LoadControl.h"
#include "Viewer/Model/SceneChanges.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGeometry.h>

#include <array>
#include <memory>
#include <unordered_map>

namespace quon::viewer {

struct ModelData;

/**
 * Makes the content of every mesh in @p data, with everything that takes long, so that nobody has to wait for it who
 * shows the model later. May be called in any thread.
 *
 * @throws LoadCancelled
 */
void prepareGeometries(ModelData& data, const LoadControl& control);

/**
 * The contents of geometries that somebody has read before they were asked for.
 *
 * A content counts until its geometry or one of its properties changes, of which sceneChanged() has to hear; a geometry
 * that was given another property is noticed without it. References to containers are not taken.
 */
class PreparedGeometries : public SceneChangeListener {
public:
    /** @param content null is ignored */
    void add(const osg::GeometryPtr& geometry, std::shared_ptr<const GeometryContent> content);

    /**
     * Returns the content of a geometry: the one that was prepared when there is one and it is up to date, otherwise
     * the geometry is read.
     *
     * @param prepared may be null
     */
    static std::shared_ptr<const GeometryContent> read(const PreparedGeometries* prepared,
                                                       const osg::GeometryPtr& geometry);

    /** Forgets what is no longer true. */
    void sceneChanged(const SceneChanges& changes) override;

    bool isEmpty() const { return m_entries.empty(); }

private:
    using Properties = std::array<osg::UInt32, 7>;

    struct Entry {
        std::shared_ptr<const GeometryContent> content;
        Properties properties{}; ///< ids
    };

    static Properties getProperties(const osg::GeometryPtr& geometry);

    std::unordered_map<osg::UInt32, Entry> m_entries; ///< by id of the geometry
    osg::UInt32 m_newestId = 0;                       ///< of geometries and properties
};

} // namespace quon::viewer
