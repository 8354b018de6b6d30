// SPDX-License-Identifier: MIT
#include "Viewer/Model/NodeIds.h"

#include <OpenSG/OSGFieldContainerFactory.h>

namespace quon::viewer {

osg::NodePtr findNodeById(const osg::UInt32 id)
{
    const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
    return container == osg::NullFC ? osg::NodePtr() : osg::NodePtr::dcast(container);
}

bool isWithin(const osg::NodePtr& node, const osg::NodePtr& root)
{
    if (node == osg::NullFC || root == osg::NullFC) {
        return node != osg::NullFC;
    }
    osg::NodePtr ancestor = node;
    while (ancestor != osg::NullFC && ancestor != root) {
        ancestor = ancestor->getParent();
    }
    return ancestor != osg::NullFC;
}

std::vector<osg::NodePtr> findNodes(const NodeIds& ids, const osg::NodePtr& root)
{
    std::vector<osg::NodePtr> nodes;
    nodes.reserve(ids.size());
    for (const osg::UInt32 id : ids) {
        const osg::NodePtr node = findNodeById(id);
        if (isWithin(node, root)) {
            nodes.push_back(node);
        }
    }
    return nodes;
}

} // namespace quon::viewer
