// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <string>

class NodeUtils {
public:
    static void setName(const osg::NodePtr& node, const std::string& name, bool givenByProgram);
};
