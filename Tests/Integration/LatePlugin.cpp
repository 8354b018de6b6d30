// SPDX-License-Identifier: MIT
//
// A plug-in that brings the library, and with it types of containers, into a running program.
#include <Interaction/BoxSelectionVisualisation.h>

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

namespace {

template <class Handle>
bool isMade(const Handle& handle)
{
    // Held and released: nothing of it stays.
    const osg::RefPtr<Handle> holder(handle);
    return holder != osg::NullFC;
}

} // namespace

extern "C" const char* selectLate()
{
    if (!isMade(osg::UberLight::create()) || !isMade(osg::UberCamera::create()) ||
        !isMade(osg::DepthTestChunk::create()) || !isMade(quon::extensions::createGeometry())) {
        return "a type of the host's extensions has no prototype";
    }
    const osg::RefPtr<osg::NodePtr> node(osg::Node::create());
    quon::extensions::setHostFlags(node, 8);
    if (quon::extensions::getHostFlags(node) != 8) {
        return "the flags of a node are lost";
    }
    quon::interaction::BoxSelectionVisualisation boxes;
    boxes.addNode(node);
    if (boxes.getVisualisation()->getNChildren() != 1) {
        return "no box";
    }
    boxes.removeAllNodes();
    return "";
}
