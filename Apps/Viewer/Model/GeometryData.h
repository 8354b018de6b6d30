// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/ModelData.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGVector.h>

#include <vector>

namespace quon::viewer {

/**
 * The content of an osg::Geometry as plain arrays: what drawing and picking both start from.
 *
 * Strips, fans, quads and polygons are resolved into triangles, loops and line strips into single lines. A primitive
 * that names a position which does not exist, is not a number or is too large to be transformed is left out, so that
 * whoever works on the arrays need not test again.
 */
struct GeometryData {
    std::vector<osg::Pnt3f> positions;
    std::vector<osg::Vec3f> normals;    ///< empty, or as many as positions
    std::vector<osg::Color4f> colours;  ///< empty, or as many as positions
    std::vector<osg::Vec2f> texCoords;  ///< empty, or as many as positions
    std::vector<osg::UInt32> triangles; ///< three indices each
    std::vector<osg::UInt32> lines;     ///< two indices each
    std::vector<osg::UInt32> points;

    /** Reads @p mesh: the same as reading the geometry that is built from it. */
    static GeometryData read(const ModelData::Mesh& mesh);

    /** Reads @p geometry; a null handle or one without positions, types or lengths gives empty arrays. */
    static GeometryData read(const osg::GeometryPtr& geometry);

    /** The box around all positions that a primitive uses; false when there is none. */
    bool getBounds(osg::Pnt3f& minimum, osg::Pnt3f& maximum) const;
};

} // namespace quon::viewer
