// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

/** This host keeps its cameras out of the scene. */
class koUberCameraUtils {
public:
    static bool isUberCamera(const osg::NodePtr& node);
};
