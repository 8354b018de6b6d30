// SPDX-License-Identifier: MIT
#include <Extensions/SceneExtensions.h>

#include "HostFieldAttachment.h"
#include "OverwriteGeometry.h"

namespace quon::extensions {

namespace {

OverwriteGeometryPtr asOverwriteGeometry(const osg::GeometryPtr& geometry)
{
    return OverwriteGeometryPtr::dcast(geometry);
}

// The type of the volume is deduced: the flavours of OpenSG 1.8 differ in it.
template <class VolumeT>
void readWorldBounds(const osg::NodePtr& node, void (osg::Node::*read)(VolumeT&), osg::Pnt3f& min, osg::Pnt3f& max)
{
    VolumeT volume;
    ((*node).*read)(volume);
    volume.getBounds(min, max);
}

} // namespace

void clearChildren(const osg::NodePtr& node)
{
    // From the back, where a removal moves nothing.
    for (osg::UInt32 count = node->getNChildren(); count > 0; --count) {
        node->subChild(count - 1);
    }
}

void getWorldBounds(const osg::NodePtr& node, osg::Pnt3f& min, osg::Pnt3f& max)
{
    readWorldBounds(node, &osg::Node::getWorldVolume, min, max);
}

void setHostFlags(const osg::NodePtr& node, osg::UInt32 flags)
{
    setHostField(node, flags);
}

osg::UInt32 getHostFlags(const osg::NodePtr& node)
{
    return getHostField(node);
}

void setHostOption(const osg::SimpleMaterialPtr& material, bool option)
{
    setHostField(material, option ? 1 : 0);
}

bool getHostOption(const osg::SimpleMaterialPtr& material)
{
    return getHostField(material) != 0;
}

osg::GeometryPtr createGeometry()
{
    return OverwriteGeometry::create();
}

void setOverwriteMaterial(const osg::GeometryPtr& geometry, bool overwrite)
{
    const OverwriteGeometryPtr overwriteGeometry = asOverwriteGeometry(geometry);
    if (overwriteGeometry != osg::NullFC) {
        overwriteGeometry->setOverwriteMaterial(overwrite);
    } else {
        setHostField(geometry, overwrite ? 1 : 0);
    }
}

bool getOverwriteMaterial(const osg::GeometryPtr& geometry)
{
    const OverwriteGeometryPtr overwriteGeometry = asOverwriteGeometry(geometry);
    return overwriteGeometry != osg::NullFC ? overwriteGeometry->getOverwriteMaterial() : getHostField(geometry) != 0;
}

osg::BitVector getOverwriteMaterialFieldMask()
{
    return OverwriteGeometry::OverwriteMaterialFieldMask;
}

} // namespace quon::extensions
