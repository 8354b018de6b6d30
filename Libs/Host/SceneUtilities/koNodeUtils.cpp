// SPDX-License-Identifier: MIT
#include <SceneUtilities/koNodeUtils.h>

#include <SceneUtilities/HostMarks.h>

using quon::host::Mark;

void koNodeUtils::setIsAuxiliaryNode(const osg::NodePtr& node, bool auxiliary)
{
    quon::host::setMark(node, Mark::Auxiliary, auxiliary);
}

bool koNodeUtils::isAuxiliaryNode(const osg::NodePtr& node)
{
    return quon::host::hasMark(node, Mark::Auxiliary);
}

bool koNodeUtils::isEditable(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return false;
    }
    for (osg::NodePtr ancestor = node; ancestor != osg::NullFC; ancestor = ancestor->getParent()) {
        // Asked for all ancestors of each selected node.
        if (quon::host::mayHaveMarks(*ancestor) && quon::host::hasMark(ancestor, Mark::Locked)) {
            return false;
        }
    }
    return true;
}

void koNodeUtils::setIsEditable(const osg::NodePtr& node, bool editable)
{
    quon::host::setMark(node, Mark::Locked, !editable);
}
