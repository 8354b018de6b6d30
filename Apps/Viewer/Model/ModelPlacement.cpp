// SPDX-License-Identifier: MIT
#include "Viewer/Model/ModelPlacement.h"

#include <OpenSG/OSGTransform.h>

namespace quon::viewer {

osg::Matrix ModelPlacement::toMatrix() const
{
    const float s = metresPerUnit > 0 ? static_cast<float>(metresPerUnit) : 1.0F;
    switch (upAxis) {
    case UpAxis::X:
        // A quarter turn around z.
        return osg::Matrix(0, -s, 0, 0, s, 0, 0, 0, 0, 0, s, 0, 0, 0, 0, 1);
    case UpAxis::Z:
        // A quarter turn around x: what was in front stays in front.
        return osg::Matrix(s, 0, 0, 0, 0, 0, s, 0, 0, -s, 0, 0, 0, 0, 0, 1);
    default:
        return osg::Matrix(s, 0, 0, 0, 0, s, 0, 0, 0, 0, s, 0, 0, 0, 0, 1);
    }
}

void ModelPlacement::applyTo(const osg::NodePtr& node) const
{
    const osg::TransformPtr transform = node == osg::NullFC || node->getCore() == osg::NullFC
                                            ? osg::TransformPtr(osg::NullFC)
                                            : osg::TransformPtr::dcast(node->getCore());
    if (transform == osg::NullFC) {
        return;
    }
    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(toMatrix());
    endEditCP(transform, osg::Transform::MatrixFieldMask);
}

} // namespace quon::viewer
