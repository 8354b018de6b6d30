// SPDX-License-Identifier: MIT
#include "Viewer/Window/InspectorModel.h"

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <iterator>

namespace quon::viewer {

namespace {

using Outcome = TracedEvent::Outcome;

// Readable on the background of tables, light or dark.
QColor getColour(const Outcome outcome)
{
    const bool dark = QGuiApplication::palette().color(QPalette::Base).lightness() < 128;
    switch (outcome) {
    case Outcome::Consumed:
        return dark ? QColor(0x7b, 0xd8, 0x8f) : QColor(0x1a, 0x7f, 0x37);
    case Outcome::Ignored:
        return dark ? QColor(0x92, 0x98, 0xa0) : QColor(0x7a, 0x80, 0x87);
    default:
        return dark ? QColor(0xe3, 0xb3, 0x41) : QColor(0x9a, 0x67, 0x00);
    }
}

} // namespace

InspectorModel::InspectorModel(QObject* parent)
    : QAbstractTableModel(parent)
{}

void InspectorModel::append(const std::vector<TracedEvent>& events)
{
    std::vector<TracedEvent> shown;
    std::copy_if(events.begin(), events.end(), std::back_inserter(shown),
                 [this](const TracedEvent& event) { return isShown(event); });
    m_events.insert(m_events.end(), events.begin(), events.end());
    if (!shown.empty()) {
        const int first = rowCount();
        beginInsertRows({}, first, first + static_cast<int>(shown.size()) - 1);
        m_shown.insert(m_shown.end(), shown.begin(), shown.end());
        endInsertRows();
    }

    int surplus = 0;
    while (m_events.size() > Capacity) {
        surplus += isShown(m_events.front()) ? 1 : 0;
        m_events.pop_front();
    }
    if (surplus > 0) {
        beginRemoveRows({}, 0, surplus - 1);
        m_shown.erase(m_shown.begin(), m_shown.begin() + surplus);
        endRemoveRows();
    }
}

void InspectorModel::clear()
{
    beginResetModel();
    m_events.clear();
    m_shown.clear();
    endResetModel();
}

void InspectorModel::setFilter(const QString& text)
{
    m_filter = text;
    filterAgain();
}

void InspectorModel::setMovementsShown(const bool shown)
{
    m_movementsShown = shown;
    filterAgain();
}

QString InspectorModel::toText(const std::vector<int>& rows) const
{
    QString text;
    for (const int row : rows) {
        for (int column = 0; column < ColumnCount; ++column) {
            text += (column > 0 ? QStringLiteral("\t") : QString()) +
                    getText(m_shown[static_cast<std::size_t>(row)], column);
        }
        text += QLatin1Char('\n');
    }
    return text;
}

void InspectorModel::retranslate()
{
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
    // The filter looks at the words that are shown.
    filterAgain();
}

int InspectorModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int InspectorModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant InspectorModel::data(const QModelIndex& index, const int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const TracedEvent& event = m_shown[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return getText(event, index.column());
    case Qt::ForegroundRole:
        return index.column() == Time || index.column() == Duration ? getColour(Outcome::Ignored)
                                                                    : getColour(event.outcome);
    case Qt::TextAlignmentRole:
        return static_cast<int>(
            (index.column() == Time || index.column() == Duration ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant InspectorModel::headerData(const int section, const Qt::Orientation orientation, const int role) const
{
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return static_cast<int>((section == Time || section == Duration ? Qt::AlignRight : Qt::AlignLeft) |
                                Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Time:
        return tr("Time (s)");
    case Event:
        return tr("Event");
    case Verb:
        return tr("Verb");
    case Consumer:
        return tr("Consumed by");
    default:
        return tr("Took (ms)");
    }
}

bool InspectorModel::isShown(const TracedEvent& event) const
{
    if (!m_movementsShown && (event.verb == "hover" || event.verb == "process")) {
        return false;
    }
    if (m_filter.isEmpty()) {
        return true;
    }
    const QString text =
        getText(event, Event) + QLatin1Char(' ') + getText(event, Verb) + QLatin1Char(' ') + getText(event, Consumer);
    return text.contains(m_filter, Qt::CaseInsensitive);
}

void InspectorModel::filterAgain()
{
    beginResetModel();
    m_shown.clear();
    std::copy_if(m_events.begin(), m_events.end(), std::back_inserter(m_shown),
                 [this](const TracedEvent& event) { return isShown(event); });
    endResetModel();
}

QString InspectorModel::getText(const TracedEvent& event, const int column) const
{
    switch (column) {
    case Time:
        return QString::number(event.time / 1000, 'f', 3);
    case Event:
        // What contexts send stands below the event that they were handling.
        return QString(event.depth * 2, QLatin1Char(' ')) + QString::fromStdString(event.category);
    case Verb:
        return QString::fromStdString(event.verb);
    case Consumer:
        return getConsumer(event);
    default:
        return QString::number(event.duration, 'f', 3);
    }
}

QString InspectorModel::getConsumer(const TracedEvent& event) const
{
    switch (event.outcome) {
    case Outcome::Consumed:
        return QString::fromStdString(event.consumer);
    case Outcome::Ignored:
        return tr("nobody");
    default:
        return tr("another context");
    }
}

} // namespace quon::viewer
