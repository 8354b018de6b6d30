// SPDX-License-Identifier: MIT
#include "Viewer/Model/Part.h"

#include <SceneUtilities/NodeUtils.h>

namespace quon::viewer {

osg::NodePtr findPart(const osg::NodePtr& node)
{
    for (osg::NodePtr candidate = node; candidate != osg::NullFC; candidate = candidate->getParent()) {
        // A name that the program gave names no part of the model.
        if (!NodeUtils::getName(candidate).empty() && !NodeUtils::isNameGivenByProgram(candidate)) {
            return candidate;
        }
    }
    return node;
}

} // namespace quon::viewer
