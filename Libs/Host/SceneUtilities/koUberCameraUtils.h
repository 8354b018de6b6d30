// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

/** Questions about the host's cameras, which stand in the scene as cores of nodes. */
class koUberCameraUtils {
public:
    koUberCameraUtils() = delete;

    /** Returns whether the core of @p node is an osg::UberCamera or derived from it; false without core and for null.
     */
    static bool isUberCamera(const osg::NodePtr& node);
};
