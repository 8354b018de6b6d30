// SPDX-License-Identifier: MIT
#include "Viewer/Window/ShortcutDelegate.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QStringList>

#include <algorithm>

namespace quon::viewer {

namespace {

constexpr int LineMargin = 5;
constexpr int CapPadding = 7;
constexpr int CapGap = 4;
constexpr int CapRadius = 4;

QColor mix(const QColor& first, const QColor& second, const double share)
{
    const auto channel = [&](const int one, const int other) { return static_cast<int>(one + (other - one) * share); };
    return QColor(channel(first.red(), second.red()), channel(first.green(), second.green()),
                  channel(first.blue(), second.blue()));
}

} // namespace

void ShortcutDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const QStringList caps = index.data(CapsRole).toStringList();
    if (caps.isEmpty()) {
        return;
    }
    const QPalette::ColorGroup group =
        (option.state & QStyle::State_Enabled) != 0 ? QPalette::Normal : QPalette::Disabled;
    const QColor base = option.palette.color(group, QPalette::Base);
    const QColor text = option.palette.color(group, QPalette::Text);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setFont(option.font);
    const QFontMetrics metrics(option.font);
    const int height = metrics.height() + 4;
    int left = option.rect.left() + CapGap;
    for (const QString& cap : caps) {
        // Never narrower than high: a single letter looks like a key.
        const int width = std::max(metrics.horizontalAdvance(cap) + 2 * CapPadding, height);
        const QRectF frame(left + 0.5, option.rect.center().y() - height / 2 + 0.5, width, height);
        painter->setPen(mix(base, text, 0.35));
        painter->setBrush(mix(base, text, 0.06));
        painter->drawRoundedRect(frame, CapRadius, CapRadius);
        painter->setPen(text);
        painter->drawText(frame, Qt::AlignCenter, cap);
        left += width + CapGap;
    }
    painter->restore();
}

QSize ShortcutDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(QFontMetrics(option.font).height() + 4 + LineMargin);
    return size;
}

} // namespace quon::viewer
