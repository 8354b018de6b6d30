// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <vector>

namespace quon::viewer {

/** Calls @p visit for every node from @p root down, in preorder, until it returns false. Null is ignored. */
template <class Visit>
void walkNodes(const osg::NodePtr& root, const Visit& visit)
{
    std::vector<osg::NodePtr> pending;
    if (root != osg::NullFC) {
        pending.push_back(root);
    }
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        if (!visit(node)) {
            return;
        }
        for (osg::UInt32 i = node->getNChildren(); i > 0; --i) {
            pending.push_back(node->getChild(i - 1));
        }
    }
}

} // namespace quon::viewer
