// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

#include <vector>

namespace quon::viewer {

class PreparedGeometries;

/**
 * The extent of what is to be seen of a model, in world space.
 *
 * The volumes of the scene graph are looser: each transform on the way up makes a box around a box.
 */
struct ModelOutline {
    osg::Pnt3f minimum; ///< with maximum the tightest box; both zero when nothing is to be seen
    osg::Pnt3f maximum;
    std::vector<osg::Pnt3f> points; ///< those farthest out in many directions; empty when nothing is to be seen

    /**
     * @param model null has no outline
     * @param prepared contents of geometries that need not be read; may be null
     */
    static ModelOutline find(const osg::NodePtr& model, const PreparedGeometries* prepared = nullptr);
};

} // namespace quon::viewer
