// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/ModelPlacement.h"
#include "Viewer/Model/PreparedGeometries.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <QStringList>

#include <cstddef>
#include <string>

namespace quon::viewer {

/** What became of a model file. */
struct LoadedModel {
    std::string file; ///< as it was asked for

    /**
     * The model's place in the world: a node with a transform core and the file's name, given by program, whose only
     * child is the root of what the file holds.
     */
    osg::RefPtr<osg::NodePtr> root;

    PreparedGeometries prepared; ///< contents of its geometries; empty when it was loaded without

    QStringList missing; ///< what the file names or should hold and what is not shown, a sentence each

    ModelPlacement placement;    ///< what root was made with
    bool isUpAxisStated = false; ///< by the file or its format; y was taken otherwise
    bool isUnitStated = false;

    std::size_t parts = 0; ///< nodes of the file with a mesh
};

} // namespace quon::viewer
