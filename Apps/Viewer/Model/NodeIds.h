// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGNode.h>

#include <vector>

namespace quon::viewer {

/**
 * Nodes by their container ids: what is kept longer than a node may live.
 *
 * A handle does not notice the end of its node; an id does, and is never given to another one.
 */
using NodeIds = std::vector<osg::UInt32>;

/** Returns the node with this id, null when it is gone. */
osg::NodePtr findNodeById(osg::UInt32 id);

/** Returns whether @p node is @p root or below it; false for null. With a null root every node is. */
bool isWithin(const osg::NodePtr& node, const osg::NodePtr& root);

/** Returns the ids of nodes in their order; the nodes must not be null (not checked). */
template <class Nodes>
NodeIds getIds(const Nodes& nodes)
{
    NodeIds ids;
    ids.reserve(nodes.size());
    for (const osg::NodePtr& node : nodes) {
        ids.push_back(osg::getContainerId(node));
    }
    return ids;
}

/** Returns the nodes with these ids that exist and are within @p root, in their order. */
std::vector<osg::NodePtr> findNodes(const NodeIds& ids, const osg::NodePtr& root);

} // namespace quon::viewer
