// SPDX-License-Identifier: MIT
#pragma once

#include <QTreeView>

namespace quon::viewer {

class SceneTreeModel;

/**
 * The rows of a SceneTreeModel with an eye and a padlock at the right.
 *
 * A click on these asks for the other state of that row and selects nothing. Keys that move in the tree work as in
 * every tree; all others, letters too, are left to the window, whose commands they are. What the number of selected
 * rows would make slow is done for the whole view at once.
 */
class SceneTreeView : public QTreeView {
    Q_OBJECT

public:
    /** @param tree borrowed, must outlive the view */
    explicit SceneTreeView(SceneTreeModel& tree, QWidget* parent = nullptr);

    /** @param text shown in the middle while there are no rows */
    void setEmptyText(const QString& text);

    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QVector<int>& roles = QVector<int>()) override;

signals:
    /** The left button went down in the tree: what is selected until gestureEnded() is one selection. */
    void gestureBegan();
    /** Follows every gestureBegan(), also when the button's release is lost. */
    void gestureEnded();

    /** The eye or the padlock of a row was clicked; the index says which. */
    void stateClicked(const QModelIndex& index);

    /** A row was double-clicked, or chosen with the enter key. */
    void rowChosen(const QModelIndex& index);

    /** The pointer is over another row; no index when it is over none, or has left. */
    void rowPointedAt(const QModelIndex& index);

    /** A menu is wanted, at a place of the screen. */
    void menuWanted(const QPoint& place);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;

private:
    bool clickState(QMouseEvent* event);
    void endGesture();
    void pointAt(const QModelIndex& index);

    QString m_emptyText;
    QPersistentModelIndex m_pointedAt; ///< first column
    bool m_inGesture = false;
    bool m_stateClick = false; ///< the button went down on an eye or a padlock
};

} // namespace quon::viewer
