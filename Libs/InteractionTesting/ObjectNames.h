// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <map>
#include <string>
#include <vector>

namespace quon::testing {

/**
 * Readable names for nodes and borrowed objects in the entries of a CallLog.
 *
 * Compares handles and addresses only, so that handles of destroyed nodes keep their names. What has no name reads
 * "unknown", null reads "null".
 */
class ObjectNames {
public:
    /** Gives a node a name, in place of one that it has. No reference is added. */
    void add(const osg::NodePtr& node, const std::string& name) { m_nodes[node] = name; }

    /** Gives any other object a name, by its address. */
    void add(const void* object, const std::string& name) { m_objects[object] = name; }

    /** Returns the name of a node. */
    std::string of(const osg::NodePtr& node) const { return node == osg::NullFC ? "null" : find(m_nodes, node); }

    /** Returns the name of any other object. */
    std::string of(const void* object) const { return object == nullptr ? "null" : find(m_objects, object); }

    /** Returns the names in brackets, parted by blanks. */
    std::string of(const std::vector<osg::NodePtr>& nodes) const
    {
        std::string names = "[";
        for (const osg::NodePtr& node : nodes) {
            names += names.size() > 1 ? " " : "";
            names += of(node);
        }
        return names + "]";
    }

private:
    template <typename Map>
    static std::string find(const Map& map, const typename Map::key_type& key)
    {
        const auto entry = map.find(key);
        return entry != map.end() ? entry->second : "unknown";
    }

    std::map<osg::NodePtr, std::string> m_nodes;
    std::map<const void*, std::string> m_objects;
};

} // namespace quon::testing
