// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/UpAxis.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>

namespace quon::viewer {

/**
 * How the coordinates of a model lie in the world, which has y up and is measured in metres as far as the unit of the
 * model is known.
 */
struct ModelPlacement {
    UpAxis upAxis = UpAxis::Y;
    double metresPerUnit = 0; ///< 0 when the unit is not known; the numbers stay as they are then

    /** The matrix from the model's coordinates to the world's. */
    osg::Matrix toMatrix() const;

    /** Writes toMatrix() into the transform core of @p node; null and a node with another core are left alone. */
    void applyTo(const osg::NodePtr& node) const;

    bool operator==(const ModelPlacement& other) const
    {
        return upAxis == other.upAxis && !(metresPerUnit < other.metresPerUnit) &&
               !(metresPerUnit > other.metresPerUnit);
    }
    bool operator!=(const ModelPlacement& other) const { return !(*this == other); }
};

} // namespace quon::viewer
