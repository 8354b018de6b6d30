// SPDX-License-Identifier: MIT
#pragma once

#include "Scene.h"

#include <Extensions/SceneExtensions.h>

#include <QColor>
#include <QPainter>
#include <QPointF>
#include <QRectF>

/** The scene from above: where a pixel lies in the world, and what the workshop looks like there. */
namespace plan {

constexpr int width = 480;
constexpr int height = 320;
constexpr float pixelsPerUnit = 40;

inline osg::Pnt3f toWorld(const osg::Pnt2f& pixel)
{
    return osg::Pnt3f((pixel[0] - width / 2) / pixelsPerUnit, (height / 2 - pixel[1]) / pixelsPerUnit, 0);
}

inline QPointF toPixel(const osg::Pnt3f& point)
{
    return QPointF(width / 2 + point[0] * pixelsPerUnit, height / 2 - point[1] * pixelsPerUnit);
}

inline QRectF toPixels(const osg::NodePtr& node)
{
    osg::Pnt3f minimum;
    osg::Pnt3f maximum;
    quon::extensions::getWorldBounds(node, minimum, maximum);
    return QRectF(toPixel(minimum), toPixel(maximum)).normalized();
}

/** Paints every geometry in and below @p node: filled and with its name, or the outline alone. */
inline void paint(QPainter& painter, const osg::NodePtr& node, const bool filled)
{
    if (node->getTravMask() == 0) {
        return; // hidden
    }
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(node->getCore());
    if (geometry != osg::NullFC) {
        const osg::Color3f diffuse = osg::SimpleMaterialPtr::dcast(geometry->getMaterial())->getDiffuse();
        const QColor color = QColor::fromRgbF(diffuse[0], diffuse[1], diffuse[2]);
        painter.setBrush(filled ? QBrush(color) : Qt::NoBrush);
        painter.setPen(filled ? QPen(color.darker(130)) : QPen(color, 4));
        painter.drawRect(toPixels(node));
    }
    for (osg::UInt32 i = 0; i < node->getNChildren(); ++i) {
        paint(painter, node->getChild(i), filled);
    }
    if (filled) {
        painter.setPen(Qt::white);
        painter.drawText(toPixels(node), Qt::AlignCenter, QString::fromStdString(NodeUtils::getName(node)));
    }
}

inline void paint(QPainter& painter, const Scene& scene)
{
    painter.fillRect(0, 0, width, height, QColor(240, 242, 245));
    paint(painter, scene.getMachines(), true);
    paint(painter, scene.getOverlays(), false);
}

} // namespace plan
