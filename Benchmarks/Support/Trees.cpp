// SPDX-License-Identifier: MIT
#include "Support/Trees.h"

#include "Support/PartScene.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <vector>

namespace quon::benchmarks {

testing::NodeRef makeDeepTree(const std::size_t count)
{
    testing::NodeRef root = testing::makeNode(osg::Group::create());
    osg::NodePtr last = root.get();
    for (std::size_t i = 1; i < count; ++i) {
        last = testing::addChild(last, osg::Group::create());
    }
    return root;
}

testing::NodeRef makeWideTree(const std::size_t count)
{
    testing::NodeRef root = testing::makeNode(osg::Group::create());
    for (std::size_t i = 1; i < count; ++i) {
        testing::addChild(root, osg::Group::create());
    }
    return root;
}

testing::NodeRef makeMixedTree(const std::size_t count)
{
    const PartScene scene(count);
    return testing::NodeRef(scene.getRoot());
}

std::size_t countNodes(const osg::NodePtr& root)
{
    std::vector<osg::NodePtr> pending{root};
    std::size_t count = 0;
    while (!pending.empty()) {
        const osg::NodePtr node = pending.back();
        pending.pop_back();
        ++count;
        for (osg::UInt32 i = 0; i < node->getNChildren(); ++i) {
            pending.push_back(node->getChild(i));
        }
    }
    return count;
}

} // namespace quon::benchmarks
