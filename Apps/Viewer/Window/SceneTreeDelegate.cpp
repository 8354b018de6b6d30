// SPDX-License-Identifier: MIT
#include "Viewer/Window/SceneTreeDelegate.h"

#include "Viewer/Window/Icons.h"
#include "Viewer/Window/SceneTreeModel.h"

#include <QApplication>
#include <QLocale>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace quon::viewer {

namespace {

constexpr int PictureSize = 16;
constexpr int Gap = 5;
constexpr int Padding = 8;
constexpr int SmallestHeight = 24;
constexpr double Faint = 0.4;
const QColor MatchColour(255, 190, 30, 120);

QPalette::ColorGroup getGroup(const QStyleOptionViewItem& option)
{
    return (option.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
}

QColor getTextColour(const QStyleOptionViewItem& option, const bool dimmed)
{
    const bool selected = (option.state & QStyle::State_Selected) != 0;
    QColor colour = option.palette.color(getGroup(option), selected ? QPalette::HighlightedText : QPalette::Text);
    if (dimmed) {
        colour.setAlphaF(selected ? 0.7F : 0.5F);
    }
    return colour;
}

} // namespace

SceneTreeDelegate::SceneTreeDelegate(const SceneTreeModel& tree, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_tree(tree)
    , m_icons{getIcon("part"), getIcon("group"), getIcon("show-all"),
              getIcon("hide"), getIcon("lock"),  getIcon("unlock")}
{}

void SceneTreeDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem row = option;
    initStyleOption(&row, index);
    // The style draws what is behind: selection, hovering, focus.
    row.text.clear();
    row.features = QStyleOptionViewItem::None;
    const QStyle* style = row.widget != nullptr ? row.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

    painter->save();
    if (index.column() == SceneTreeModel::Name) {
        paintName(*painter, row, index);
    } else {
        paintState(*painter, row, index);
    }
    painter->restore();
}

QSize SceneTreeDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int height = std::max(option.fontMetrics.height() + Padding, SmallestHeight);
    const int width =
        index.column() == SceneTreeModel::Name ? QStyledItemDelegate::sizeHint(option, index).width() : StateWidth;
    return {width, height};
}

void SceneTreeDelegate::paintName(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int below = index.data(SceneTreeModel::ChildCountRole).toInt();
    const bool dimmed =
        index.data(SceneTreeModel::HiddenRole).toBool() || index.data(SceneTreeModel::HiddenAboveRole).toBool();
    QRect place = option.rect.adjusted(Gap, 0, -Gap, 0);
    paintPicture(painter, option, below > 0 ? GroupPicture : PartPicture,
                 QRect(place.left(), place.center().y() - PictureSize / 2 + 1, PictureSize, PictureSize),
                 dimmed ? Faint : 1);
    place.setLeft(place.left() + PictureSize + Gap);

    const QString name = option.fontMetrics.elidedText(index.data().toString(), Qt::ElideMiddle, place.width());
    const int nameWidth = option.fontMetrics.horizontalAdvance(name);
    if (index.data(SceneTreeModel::MatchRole).toBool()) {
        markMatches(painter, option, place, name);
    }
    painter.setFont(option.font);
    painter.setPen(getTextColour(option, dimmed));
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, name);
    // The name comes first: where there is no room for both there is no count.
    const QString count = QLocale().toString(below);
    if (below > 0 && nameWidth + Gap + option.fontMetrics.horizontalAdvance(count) <= place.width()) {
        place.setLeft(place.left() + nameWidth + Gap);
        painter.setPen(getTextColour(option, true));
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, count);
    }
}

void SceneTreeDelegate::paintState(QPainter& painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const
{
    QRect place(0, 0, PictureSize, PictureSize);
    place.moveCenter(option.rect.center());
    if (index.column() == SceneTreeModel::Visibility) {
        const bool hidden = index.data(SceneTreeModel::HiddenRole).toBool();
        paintPicture(painter, option, hidden ? HiddenPicture : ShownPicture, place, hidden ? 1 : Faint);
    } else if (index.data(SceneTreeModel::LockedRole).toBool()) {
        paintPicture(painter, option, LockedPicture, place, 1);
    } else if (index.data(SceneTreeModel::LockedAboveRole).toBool()) {
        paintPicture(painter, option, LockedPicture, place, Faint);
    } else if ((option.state & QStyle::State_MouseOver) != 0) {
        // Shows where to click, without a padlock in every row.
        paintPicture(painter, option, UnlockedPicture, place, Faint);
    }
}

void SceneTreeDelegate::paintPicture(QPainter& painter, const QStyleOptionViewItem& option, const Picture picture,
                                     const QRect& rectangle, const double opacity) const
{
    const bool selected = (option.state & QStyle::State_Selected) != 0;
    painter.setOpacity(opacity);
    m_icons[picture].paint(&painter, rectangle, Qt::AlignCenter, selected ? QIcon::Selected : QIcon::Normal);
    painter.setOpacity(1);
}

void SceneTreeDelegate::markMatches(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rectangle,
                                    const QString& text) const
{
    const QString& filter = m_tree.getFilter();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(MatchColour);
    const int height = option.fontMetrics.height();
    for (auto at = text.indexOf(filter, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(filter, at + filter.size(), Qt::CaseInsensitive)) {
        const int left = rectangle.left() + option.fontMetrics.horizontalAdvance(text.left(at));
        const int width = option.fontMetrics.horizontalAdvance(text.mid(at, filter.size()));
        painter.drawRoundedRect(QRect(left, rectangle.center().y() - height / 2, width, height), 2, 2);
    }
}

} // namespace quon::viewer
