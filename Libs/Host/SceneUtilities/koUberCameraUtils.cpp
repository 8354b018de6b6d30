// SPDX-License-Identifier: MIT
#include <SceneUtilities/koUberCameraUtils.h>

#include <OpenSG/OSGUberCamera.h>

bool koUberCameraUtils::isUberCamera(const osg::NodePtr& node)
{
    if (node == osg::NullFC) {
        return false;
    }
    const osg::NodeCorePtr core = node->getCore();
    return core != osg::NullFC && core->getType().isDerivedFrom(osg::UberCamera::getClassType());
}
