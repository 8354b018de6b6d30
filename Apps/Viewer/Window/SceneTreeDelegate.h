// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QStyledItemDelegate>

namespace quon::viewer {

class SceneTreeModel;

/**
 * Draws the rows of a SceneTreeModel.
 *
 * A picture, the name with the text of the filter marked in it, and how many rows are below; at the right an eye and a
 * padlock, faint unless the node itself is hidden or locked. What is hidden is greyed. Rows are a little higher than
 * their text.
 */
class SceneTreeDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /** Width of a column with a picture, in logical pixels. */
    static constexpr int StateWidth = 26;

    /** @param tree borrowed, must outlive the delegate */
    explicit SceneTreeDelegate(const SceneTreeModel& tree, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    enum Picture {
        PartPicture,
        GroupPicture,
        ShownPicture,
        HiddenPicture,
        LockedPicture,
        UnlockedPicture,
        PictureCount
    };

    void paintName(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintState(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintPicture(QPainter& painter, const QStyleOptionViewItem& option, Picture picture, const QRect& rectangle,
                      double opacity) const;
    void markMatches(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rectangle,
                     const QString& text) const;

    const SceneTreeModel& m_tree;
    QIcon m_icons[PictureCount];
};

} // namespace quon::viewer
