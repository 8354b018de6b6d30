// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <functional>
#include <string>

namespace quon::viewer {

/**
 * Turns a model file of any format that Assimp reads into a scene graph.
 *
 * Every node of the file becomes a node with a transform core and the file's name; every mesh of it becomes a child
 * with a geometry core and without a name, so that a node is the part whose pieces its meshes are (see findPart()).
 * Nodes with the same mesh share one geometry core, geometries with the same material one material. Polygons arrive as
 * triangles, with normals made where the file has none.
 */
class ModelLoader {
public:
    /** Hears how far loading is: from 0 to 1, or below 0 when nobody knows. */
    using Progress = std::function<void(float)>;

    explicit ModelLoader(Progress progress = {});

    /**
     * Loads @p file.
     *
     * @return the root of the model, which has at least one part
     * @throws ViewerError with the file's name and the reason: no such file, a directory, empty, of an unknown format,
     *         damaged, or without meshes
     */
    osg::RefPtr<osg::NodePtr> load(const std::string& file) const;

    /** Does the first checks of load() alone: there is such a file, and it is a file with something in it. */
    static void checkFile(const std::string& file);

private:
    Progress m_progress;
};

} // namespace quon::viewer
