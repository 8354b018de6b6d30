// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <set>
#include <vector>

/**
 * Ways from selected nodes to others, along what a user sees of the scene: nodes that have a name, and parts.
 *
 * Every result has each node once. Null handles among the arguments are left out.
 */
namespace quon::viewer {

/**
 * Returns the groups that @p nodes are in: the next node above each that has a name, or the root of the model.
 *
 * @param root of the model; it stays itself, and so does what is not in the model
 */
std::vector<osg::NodePtr> findParents(const std::vector<osg::NodePtr>& nodes, const osg::NodePtr& root);

/**
 * Returns what is directly in @p nodes: the next nodes below that have a name, or are parts where nothing has a name.
 *
 * Hidden ones come along, auxiliary ones do not. A node with nothing of that kind in it stays itself.
 */
std::vector<osg::NodePtr> findChildren(const std::vector<osg::NodePtr>& nodes);

/** Returns those of @p parts that are neither among @p nodes nor in one of them, in their order. */
std::vector<osg::NodePtr> findOthers(const std::vector<osg::NodePtr>& parts, const std::set<osg::NodePtr>& nodes);

} // namespace quon::viewer
