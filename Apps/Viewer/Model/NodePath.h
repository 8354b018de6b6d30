// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace quon::viewer {

/**
 * Where a node is in its model, in words that mean the same node in every run.
 *
 * Identifiers of containers do not: they depend on what the process made before.
 */
class NodePath {
public:
    /**
     * Returns the way from @p root to @p node as the places among the children, for example "/0/3"; "/" is the root
     * itself.
     *
     * @return empty when the node is null or not within the root
     */
    static std::string get(const osg::NodePtr& root, const osg::NodePtr& node);

    /** Returns the way to each of @p nodes, in their order; many of them cost no more than one walk over the model. */
    static std::vector<std::string> getAll(const osg::NodePtr& root, const std::vector<osg::NodePtr>& nodes);

    /** Returns the node at a path; null when there is none, or when @p path is none. */
    static osg::NodePtr find(const osg::NodePtr& root, const std::string& path);

    /** Whether @p text is written as a path: "/", or places each behind a slash. */
    static bool isPath(const std::string& text);
};

/** Tells sets of nodes of one model apart, whatever the order and whatever the run. */
struct NodeDigest {
    std::size_t count = 0;
    std::uint64_t checksum = 0; ///< of the places and names of the nodes and of all above them; 0 for none

    bool operator==(const NodeDigest& other) const { return count == other.count && checksum == other.checksum; }
    bool operator!=(const NodeDigest& other) const { return !(*this == other); }

    /** Of @p nodes. Those that are not within @p root count, and have no part in the checksum. */
    static NodeDigest of(const osg::NodePtr& root, const std::set<osg::NodePtr>& nodes);

    /** Of all nodes from @p root down for which @p condition is true. */
    static NodeDigest ofAll(const osg::NodePtr& root, const std::function<bool(const osg::NodePtr&)>& condition);

    /** Of all nodes; @p partCount is what counts. */
    static NodeDigest ofModel(const osg::NodePtr& root, int partCount);

    /** Of the nodes that are hidden by their own mask. */
    static NodeDigest ofHidden(const osg::NodePtr& root);

    /** Of the nodes that are locked, themselves or by one above them. */
    static NodeDigest ofLocked(const osg::NodePtr& root);
};

} // namespace quon::viewer
