// SPDX-License-Identifier: MIT
#include "Viewer/Model/PartRelations.h"

#include "Viewer/Model/SceneTraversal.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <unordered_map>
#include <unordered_set>

namespace quon::viewer {

namespace {

// Collects nodes, each once.
class NodeCollection {
public:
    void add(const osg::NodePtr& node)
    {
        if (m_ids.insert(osg::getContainerId(node)).second) {
            m_nodes.push_back(node);
        }
    }

    const std::vector<osg::NodePtr>& getNodes() const { return m_nodes; }

private:
    std::vector<osg::NodePtr> m_nodes;
    std::unordered_set<osg::UInt32> m_ids;
};

// A name that the program gave names nothing of the model.
bool isNamed(const osg::NodePtr& node)
{
    return !NodeUtils::isNameGivenByProgram(node) && !NodeUtils::getName(node).empty();
}

bool isAnythingNamedFrom(const osg::NodePtr& node)
{
    for (osg::NodePtr candidate = node; candidate != osg::NullFC; candidate = candidate->getParent()) {
        if (isNamed(candidate)) {
            return true;
        }
    }
    return false;
}

void pushChildren(const osg::NodePtr& node, std::vector<osg::NodePtr>& pending)
{
    // Last child first, so that the first one is on top.
    for (osg::UInt32 i = node->getNChildren(); i > 0; --i) {
        pending.push_back(node->getChild(i - 1));
    }
}

} // namespace

std::vector<osg::NodePtr> findParents(const std::vector<osg::NodePtr>& nodes, const osg::NodePtr& root)
{
    NodeCollection parents;
    for (const osg::NodePtr& node : nodes) {
        if (node == osg::NullFC) {
            continue;
        }
        osg::NodePtr candidate = node;
        while (candidate != osg::NullFC && candidate != root && (candidate == node || !isNamed(candidate))) {
            candidate = candidate->getParent();
        }
        parents.add(candidate == osg::NullFC ? node : candidate);
    }
    return parents.getNodes();
}

std::vector<osg::NodePtr> findChildren(const std::vector<osg::NodePtr>& nodes)
{
    NodeCollection children;
    std::vector<osg::NodePtr> pending;
    for (const osg::NodePtr& node : nodes) {
        if (node == osg::NullFC) {
            continue;
        }
        const bool isPiece = isAnythingNamedFrom(node);
        bool found = false;
        pushChildren(node, pending);
        while (!pending.empty()) {
            const osg::NodePtr candidate = pending.back();
            pending.pop_back();
            if (koNodeUtils::isAuxiliaryNode(candidate)) {
                continue;
            }
            // Geometry without a name is a piece of what has one, see findPart().
            if (isNamed(candidate) || (!isPiece && getCoreKind(candidate->getCore()) == CoreKind::Geometry)) {
                children.add(candidate);
                found = true;
            } else {
                pushChildren(candidate, pending);
            }
        }
        if (!found) {
            children.add(node);
        }
    }
    return children.getNodes();
}

std::vector<osg::NodePtr> findOthers(const std::vector<osg::NodePtr>& parts, const std::set<osg::NodePtr>& nodes)
{
    std::unordered_set<osg::UInt32> ids;
    for (const osg::NodePtr& node : nodes) {
        if (node != osg::NullFC) {
            ids.insert(osg::getContainerId(node));
        }
    }
    // What is known of the nodes on the ways up: parts have these in common.
    std::unordered_map<osg::UInt32, bool> covered;
    const auto isCovered = [&](const osg::NodePtr& part) {
        std::vector<osg::UInt32> way;
        bool answer = false;
        for (osg::NodePtr node = part; node != osg::NullFC; node = node->getParent()) {
            const osg::UInt32 id = osg::getContainerId(node);
            if (const auto known = covered.find(id); known != covered.end()) {
                answer = known->second;
                break;
            }
            if (ids.count(id) != 0) {
                answer = true;
                covered[id] = true;
                break;
            }
            way.push_back(id);
        }
        for (const osg::UInt32 id : way) {
            covered[id] = answer;
        }
        return answer;
    };

    std::vector<osg::NodePtr> others;
    for (const osg::NodePtr& part : parts) {
        if (!isCovered(part)) {
            others.push_back(part);
        }
    }
    return others;
}

} // namespace quon::viewer
