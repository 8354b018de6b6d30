// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/NotificationPainter.h"

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QString>

#include <algorithm>

namespace quon::viewer {

namespace {

constexpr int Margin = 12;
constexpr int Gap = 6;
constexpr int PaddingX = 12;
constexpr int PaddingY = 7;
constexpr int Radius = 8;
constexpr int FontSize = 14;

} // namespace

void paintNotifications(QPainter& painter, const QSize& size)
{
    QFont font = painter.font();
    font.setPixelSize(FontSize);
    painter.setFont(font);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    const int textWidth = std::max(1, size.width() - 2 * (Margin + PaddingX));
    const QFontMetrics metrics(font);
    int bottom = size.height() - Margin;
    for (const notification::Notification* entry :
         notification::NotificationManager::getInstance()->getNotifications()) {
        const auto* shown = dynamic_cast<const notification::TextNotification*>(entry);
        if (shown == nullptr || shown->getText().empty()) {
            continue;
        }
        const QString text = QString::fromStdString(shown->getText());
        constexpr int flags = Qt::AlignLeft | Qt::TextWordWrap;
        QRect textBox = metrics.boundingRect(QRect(0, 0, textWidth, size.height()), flags, text);
        textBox.moveBottomLeft(QPoint(Margin + PaddingX, bottom - PaddingY));
        const QRect box = textBox.adjusted(-PaddingX, -PaddingY, PaddingX, PaddingY);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(24, 30, 38, 205));
        painter.drawRoundedRect(box, Radius, Radius);
        painter.setPen(QColor(245, 247, 250));
        painter.drawText(textBox, flags, text);
        bottom = box.top() - Gap;
    }
}

} // namespace quon::viewer
