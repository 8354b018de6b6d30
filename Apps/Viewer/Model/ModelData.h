// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/UpAxis.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <QStringList>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace quon::viewer {

class GeometryContent;

/**
 * The content of a model file as plain arrays, between the file and the scene graph.
 *
 * There is no container of the scene graph in it: it may be made in any thread, which containers may not.
 */
struct ModelData {
    struct Material {
        std::string name; ///< empty where the file has none
        osg::Color3f diffuse;
        osg::Color3f specular;
        osg::Color3f emission;
        float shininess = 0;
        float transparency = 0; ///< from 0, opaque, to below 1
    };

    /** What becomes one geometry; all primitives are of one kind. */
    struct Mesh {
        osg::UInt8 primitive = 0;                            ///< GL_POINTS, GL_LINES or GL_TRIANGLES
        std::size_t material = static_cast<std::size_t>(-1); ///< index; none when there is no such material
        std::vector<osg::Pnt3f> positions;
        std::vector<osg::Vec3f> normals;   ///< empty, or as many as positions
        std::vector<osg::Color4f> colours; ///< empty, or as many as positions
        std::vector<osg::Vec2f> texCoords; ///< empty, or as many as positions
        std::vector<osg::UInt32> indices;  ///< each below the number of positions

        /** What the geometry will be read as; null unless prepareGeometries() was called. */
        std::shared_ptr<const GeometryContent> content;
    };

    struct Node {
        std::string name; ///< empty where the file has none
        osg::Matrix matrix;
        std::size_t parent = 0;          ///< index, below the node's own; the first node has none
        std::vector<std::size_t> meshes; ///< indices
    };

    std::vector<Material> materials;
    std::vector<Mesh> meshes;
    std::vector<Node> nodes; ///< parents before their children, siblings in the order of the file

    /** What the file names or should hold and what is not in here, one sentence each; empty when nothing is missing. */
    QStringList missing;

    /** Metres to one unit of the coordinates; 0 when the file does not say. */
    double metresPerUnit = 0;

    /** The axis of the coordinates that points up; y where the file does not say. */
    UpAxis upAxis = UpAxis::Y;
    bool isUpAxisStated = false; ///< whether the file or its format says so

    /** The number of nodes with a mesh. */
    std::size_t countParts() const
    {
        std::size_t parts = 0;
        for (const Node& node : nodes) {
            parts += node.meshes.empty() ? 0U : 1U;
        }
        return parts;
    }
};

} // namespace quon::viewer
