// SPDX-License-Identifier: MIT
#include "Viewer/Window/SceneTreeView.h"

#include "Viewer/Session/QtVersions.h"
#include "Viewer/Window/SceneTreeDelegate.h"
#include "Viewer/Window/SceneTreeModel.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace quon::viewer {

namespace {

bool movesInTree(const int key)
{
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Space:
    case Qt::Key_Plus:
    case Qt::Key_Minus:
    case Qt::Key_Asterisk:
        return true;
    default:
        return false;
    }
}

} // namespace

SceneTreeView::SceneTreeView(SceneTreeModel& tree, QWidget* parent)
    : QTreeView(parent)
{
    setModel(&tree);
    setItemDelegate(new SceneTreeDelegate(tree, this));
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setFrameShape(NoFrame);
    setIndentation(16);
    viewport()->setAttribute(Qt::WA_Hover);

    header()->hide();
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(SceneTreeDelegate::StateWidth);
    header()->setSectionResizeMode(SceneTreeModel::Name, QHeaderView::Stretch);
    for (const int column : {SceneTreeModel::Visibility, SceneTreeModel::Lock}) {
        header()->setSectionResizeMode(column, QHeaderView::Fixed);
        header()->resizeSection(column, SceneTreeDelegate::StateWidth);
    }
}

void SceneTreeView::setEmptyText(const QString& text)
{
    m_emptyText = text;
    viewport()->update();
}

void SceneTreeView::dataChanged(const QModelIndex&, const QModelIndex&, const QVector<int>&)
{
    // Not the rows alone: what is hidden or locked shows in all that is below. Sizes never change.
    viewport()->update();
}

void SceneTreeView::mousePressEvent(QMouseEvent* event)
{
    endGesture();
    if (clickState(event)) {
        return;
    }
    if (event->button() == Qt::LeftButton) {
        m_inGesture = true;
        emit gestureBegan();
    }
    QTreeView::mousePressEvent(event);
}

void SceneTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_stateClick) {
        m_stateClick = false;
        return;
    }
    QTreeView::mouseReleaseEvent(event);
    endGesture();
}

void SceneTreeView::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The second press of two quick clicks comes as this event only.
    if (clickState(event)) {
        return;
    }
    QTreeView::mouseDoubleClickEvent(event);
    const QModelIndex index = indexAt(event->pos());
    if (event->button() == Qt::LeftButton && index.isValid()) {
        emit rowChosen(index);
    }
}

void SceneTreeView::contextMenuEvent(QContextMenuEvent* event)
{
    QPoint place = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        place = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    }
    emit menuWanted(place);
}

void SceneTreeView::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentIndex().isValid()) {
        emit rowChosen(currentIndex());
    } else if (movesInTree(event->key())) {
        QTreeView::keyPressEvent(event);
    } else {
        event->ignore();
    }
}

void SceneTreeView::focusOutEvent(QFocusEvent* event)
{
    endGesture();
    QTreeView::focusOutEvent(event);
}

void SceneTreeView::hideEvent(QHideEvent* event)
{
    pointAt(QModelIndex());
    endGesture();
    QTreeView::hideEvent(event);
}

void SceneTreeView::paintEvent(QPaintEvent* event)
{
    QTreeView::paintEvent(event);
    if (model()->rowCount() == 0) {
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawText(viewport()->rect().adjusted(16, 16, -16, -16),
                         Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_emptyText);
    }
}

bool SceneTreeView::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        pointAt(indexAt(QtVersions::getPosition(*static_cast<QHoverEvent*>(event)).toPoint()));
        break;
    case QEvent::HoverLeave:
    case QEvent::Leave:
        pointAt(QModelIndex());
        break;
    default:
        break;
    }
    return QTreeView::viewportEvent(event);
}

QRegion SceneTreeView::visualRegionForSelection(const QItemSelection& selection) const
{
    // The exact region costs a search of all rows for each of its ranges, and is painted at once anyway.
    return selection.isEmpty() ? QRegion() : QRegion(viewport()->rect());
}

bool SceneTreeView::clickState(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    if (event->button() != Qt::LeftButton || !index.isValid() || index.column() == SceneTreeModel::Name) {
        return false;
    }
    m_stateClick = true;
    emit stateClicked(index);
    return true;
}

void SceneTreeView::pointAt(const QModelIndex& index)
{
    const QModelIndex row = index.siblingAtColumn(SceneTreeModel::Name);
    if (m_pointedAt != row) {
        m_pointedAt = row;
        emit rowPointedAt(row);
    }
}

void SceneTreeView::endGesture()
{
    if (m_inGesture) {
        m_inGesture = false;
        emit gestureEnded();
    }
}

} // namespace quon::viewer
