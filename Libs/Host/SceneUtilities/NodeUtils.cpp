// SPDX-License-Identifier: MIT
#include <SceneUtilities/NodeUtils.h>

#include <SceneUtilities/HostMarks.h>

#include <OpenSG/OSGSimpleAttachments.h>

using quon::host::Mark;

void NodeUtils::setName(const osg::NodePtr& node, const std::string& name, bool givenByProgram)
{
    if (node == osg::NullFC) {
        return;
    }
    osg::setName(node, name);
    quon::host::setMark(node, Mark::NameGivenByProgram, givenByProgram);
}

std::string NodeUtils::getName(const osg::NodePtr& node)
{
    const osg::Char8* name = node != osg::NullFC ? osg::getName(node) : nullptr;
    return name != nullptr ? name : "";
}

bool NodeUtils::isNameGivenByProgram(const osg::NodePtr& node)
{
    return quon::host::hasMark(node, Mark::NameGivenByProgram);
}
