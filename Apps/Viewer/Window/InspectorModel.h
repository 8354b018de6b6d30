// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Tools/InteractionTrace.h"

#include <QAbstractTableModel>
#include <QString>

#include <cstddef>
#include <deque>
#include <vector>

namespace quon::viewer {

/** The last interaction events as a table, the newest at the bottom, filtered by what the user wants to see. */
class InspectorModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /** The events that are kept, shown or not. */
    static constexpr std::size_t Capacity = 1000;

    enum Column { Time, Event, Verb, Consumer, Duration, ColumnCount };

    explicit InspectorModel(QObject* parent = nullptr);

    /** Appends events; the oldest ones make room. */
    void append(const std::vector<TracedEvent>& events);

    /** Forgets all events. */
    void clear();

    /** Shows only events with this text in category, verb or consumer, in letters of any case; empty shows all. */
    void setFilter(const QString& text);

    /** Whether the events of every movement, "hover" and "process", are shown; they are not at first. */
    void setMovementsShown(bool shown);

    /** The number of events kept, shown or not. */
    std::size_t getEventCount() const { return m_events.size(); }

    /** Returns rows as lines whose columns are separated by tabulators. */
    QString toText(const std::vector<int>& rows) const;

    /** Asks for all texts again, after the language changed. */
    void retranslate();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool isShown(const TracedEvent& event) const;
    void filterAgain();
    QString getText(const TracedEvent& event, int column) const;
    QString getConsumer(const TracedEvent& event) const;

    std::deque<TracedEvent> m_events;
    std::deque<TracedEvent> m_shown;
    QString m_filter;
    bool m_movementsShown = false;
};

} // namespace quon::viewer
