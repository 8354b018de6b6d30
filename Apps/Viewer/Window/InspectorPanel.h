// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/ContainerCount.h"
#include "Viewer/Tools/InteractionTrace.h"
#include "Viewer/Window/InspectorModel.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QTableView;
class QToolButton;
class QTreeWidget;

namespace quon::viewer {

class ViewerSession;
class Viewport;

/**
 * Shows host developers what the interaction library does: the stream of events and who consumes them, the stack of
 * contexts, and some numbers.
 *
 * Listens only while it is visible, and shows what is new a few times a second.
 */
class InspectorPanel : public QWidget, private InteractionTraceListener {
    Q_OBJECT

public:
    /** @param session, viewport borrowed, must outlive the panel */
    InspectorPanel(ViewerSession& session, const Viewport& viewport, QWidget* parent = nullptr);
    ~InspectorPanel() override;

    InspectorPanel(const InspectorPanel&) = delete;
    InspectorPanel& operator=(const InspectorPanel&) = delete;

    /** Shows what happened since the last time; the timer does so by itself while the panel is visible. */
    void refresh();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /** A line of the numbers. */
    struct Number {
        QLabel* name;
        QLabel* value;
    };

    void eventTraced(const TracedEvent& event) override;
    QToolButton* addButton(const char* icon, const char* objectName);
    QWidget* makeEventSide();
    QWidget* makeStateSide();
    Number addNumber(QGridLayout& layout, const char* objectName);
    void retranslate();
    void clear();
    void copy();
    void showEvents();
    void showNumbers();
    void showStack();

    ViewerSession& m_session;
    const Viewport& m_viewport;
    InspectorModel m_model;
    std::vector<TracedEvent> m_pending; ///< not in the model yet
    ContainerCount m_containers;
    QTimer m_timer;
    QToolButton* m_pause;
    QToolButton* m_clear;
    QToolButton* m_copy;
    QLineEdit* m_filter;
    QCheckBox* m_movements;
    QTableView* m_table;
    QLabel* m_stackTitle;
    QTreeWidget* m_stack;
    Number m_modes{};
    Number m_picks{};
    Number m_frame{};
    Number m_containerCount{};
    Number m_eventCount{};
};

} // namespace quon::viewer
