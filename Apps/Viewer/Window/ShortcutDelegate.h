// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace quon::viewer {

/** Draws keys as a row of caps and leaves air between the lines of a list. */
class ShortcutDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /** A QStringList: what to write on the caps, one each. */
    static constexpr int CapsRole = Qt::UserRole + 100;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace quon::viewer
