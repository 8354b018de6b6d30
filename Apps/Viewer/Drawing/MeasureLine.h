// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/OverlayItem.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <QPointF>
#include <QString>

#include <array>
#include <optional>

namespace quon::viewer {

class CameraController;

/**
 * The line between two points of the scene, with what was measured along it in a box at its middle.
 *
 * Points and line lie over the scene, also where something is in front of them, and follow the camera at every picture.
 * A point that lies behind the eye is not drawn, and neither is the line to it. Light lines with dark ones inside stand
 * out from every background.
 */
class MeasureLine : public OverlayItem {
public:
    /** What the box at the middle of the line says; empty texts are left out. */
    struct Texts {
        QString distance;
        QString angle;
        std::array<QString, 3> steps; ///< along x, y and z
    };

    /** Everything that is drawn. */
    struct Content {
        std::optional<osg::Pnt3f> pointer; ///< where the next click would set a point
        std::optional<osg::Pnt3f> first;
        std::optional<osg::Pnt3f> second; ///< only with a first one
        bool isPreview = false;           ///< the second one is not set yet: no steps along the axes are drawn
        Texts texts;
    };

    /** @param camera borrowed, must outlive the item */
    explicit MeasureLine(const CameraController& camera);

    /** Replaces what is drawn. Returns whether that is something else than before. */
    bool setContent(const Content& content);
    const Content& getContent() const { return m_content; }

    void paint(QPainter& painter, const QSize& size) override;

private:
    std::optional<QPointF> getPlace(const std::optional<osg::Pnt3f>& point) const;
    void paintSteps(QPainter& painter) const;
    void paintTexts(QPainter& painter, const QSize& size, const QPointF& first, const QPointF& second) const;

    const CameraController& m_camera;
    Content m_content;
};

} // namespace quon::viewer
