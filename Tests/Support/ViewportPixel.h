// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"
#include "Viewer/Session/ViewerSession.h"

#include <QPoint>
#include <QSize>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

namespace quon::testing {

/** The pixel of a viewport of this size that shows a place of the world. */
inline QPoint findPixel(viewer::ViewerSession& session, const QSize& size, const osg::Pnt3f& point)
{
    const viewer::Vector4 clip = viewer::Matrix4(session.getCamera().getWorldToClip()).transform(point);
    return QPoint(static_cast<int>((clip[0] / clip[3] + 1) / 2 * size.width()),
                  static_cast<int>((1 - clip[1] / clip[3]) / 2 * size.height()));
}

} // namespace quon::testing
