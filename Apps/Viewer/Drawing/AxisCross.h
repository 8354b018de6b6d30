// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/OverlayItem.h"

namespace quon::viewer {

class CameraController;

/** The directions of the world's axes in the lower right corner; axes that point away lie under those that do not. */
class AxisCross : public OverlayItem {
public:
    /** @param camera borrowed, must outlive the item */
    explicit AxisCross(const CameraController& camera);

    void paint(QPainter& painter, const QSize& size) override;

private:
    const CameraController& m_camera;
};

} // namespace quon::viewer
