// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <string>

/** Names of nodes; the same names as osg::setName() and osg::getName(). */
class NodeUtils {
public:
    NodeUtils() = delete;

    /**
     * Names @p node. Null is ignored.
     *
     * @param givenByProgram whether the name comes from the program and not from the user
     */
    static void setName(const osg::NodePtr& node, const std::string& name, bool givenByProgram);

    /** Returns the name of @p node; empty for a node without name and for null. */
    static std::string getName(const osg::NodePtr& node);

    /** Returns what the last setName() said; false for a node never named by it and for null. */
    static bool isNameGivenByProgram(const osg::NodePtr& node);
};
