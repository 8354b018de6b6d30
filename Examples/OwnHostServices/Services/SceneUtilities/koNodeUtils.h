// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

class koNodeUtils {
public:
    static void setIsAuxiliaryNode(const osg::NodePtr& node, bool auxiliary);

    /** Parts whose name begins with "fixed" are locked in this host. */
    static bool isEditable(const osg::NodePtr& node);
};
