// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

/**
 * Marks that a host sets on nodes.
 *
 * A mark is kept with its node and dies with it; nodes without marks cost nothing. A shallow copy of a node starts with
 * the marks of the original and has its own from the first change on.
 */
class koNodeUtils {
public:
    koNodeUtils() = delete;

    /** Marks @p node as a helper of the program: not part of the user's model. Null is ignored. */
    static void setIsAuxiliaryNode(const osg::NodePtr& node, bool auxiliary);

    /** Returns whether @p node itself is marked auxiliary; false unless set, and false for null. */
    static bool isAuxiliaryNode(const osg::NodePtr& node);

    /**
     * Returns whether the user may edit @p node: neither it nor any of its ancestors is locked.
     *
     * Looks at the node and its ancestors at each call. False for null.
     */
    static bool isEditable(const osg::NodePtr& node);

    /**
     * Locks @p node and everything below it (false), or takes this node's own lock off again (true).
     *
     * A node whose own lock is off is still locked under a locked ancestor. Null is ignored.
     */
    static void setIsEditable(const osg::NodePtr& node, bool editable);
};
