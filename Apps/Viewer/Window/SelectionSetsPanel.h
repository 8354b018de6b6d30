// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/SelectionSets.h"

#include <QWidget>

class QAction;
class QLabel;
class QMenu;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace quon::viewer {

class SelectionLookEditor;
class ViewerSession;

/**
 * The list of the selection sets, with the selection itself as its first entry, and how the current one is drawn.
 *
 * F2 renames in place, Enter or a double click recalls, Delete deletes, Space shows or hides. All other keys are left
 * to the window.
 */
class SelectionSetsPanel : public QWidget {
    Q_OBJECT

public:
    /** @param session borrowed, must outlive the panel */
    explicit SelectionSetsPanel(ViewerSession& session, QWidget* parent = nullptr);

    /** Returns the current set, None while the selection is the current entry. */
    SelectionSets::Id getCurrent() const;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class NameDelegate;
    using Id = SelectionSets::Id;

    void retranslate();
    void refresh();
    void refreshItem(QTreeWidgetItem* item, const QString& name, std::size_t size, const SelectionLook& look);
    void rebuildItems(const std::vector<SelectionSets::Info>& sets);
    void currentChanged();
    void visibilityClicked(QTreeWidgetItem* item);
    void lookEdited(const SelectionLook& look);
    void rename(Id id, const QString& name);
    void showProblem(const QString& problem);
    void showContextMenu(const QPoint& place);
    void fillCombineMenu(QMenu& menu);
    SelectionLook getCurrentLook() const;

    template <class Operation>
    void edit(const Operation& operation);

    ViewerSession& m_session;
    SelectionSets& m_sets;
    QTreeWidget* m_list;
    QLabel* m_hint;
    QWidget* m_problemRow;
    QLabel* m_problem;
    QAction* m_new;
    QAction* m_recall;
    QAction* m_add;
    QAction* m_rename;
    QAction* m_delete;
    QMenu* m_combineMenu;
    QToolButton* m_combine;
    SelectionLookEditor* m_look;
};

} // namespace quon::viewer
