// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QSize;

namespace quon::viewer {

/**
 * Paints the notifications of the process as a stack of rounded, translucent boxes into the lower left corner of a
 * viewport, the oldest at the bottom. Long texts are wrapped; empty ones are left out.
 *
 * @param size of the viewport in pixels of the user interface
 */
void paintNotifications(QPainter& painter, const QSize& size);

} // namespace quon::viewer
