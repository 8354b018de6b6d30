// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/ShortcutList.h"

#include <Shortcut/koShortcut.h>

#include <QDialog>
#include <QTimer>

#include <string>
#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace quon::viewer {

class KeyField;

/**
 * Lists what the shortcut registry holds, finds shortcuts by name and by key, marks those that the same press is meant
 * for, and changes the keys of commands.
 *
 * Changes apply at once. The list follows the registry, whoever changes it, and the language.
 */
class ShortcutsDialog : public QDialog, private koShortcut::Listener {
    Q_OBJECT

public:
    /** @param bindings borrowed, must outlive the dialog */
    explicit ShortcutsDialog(InputBindings& bindings, QWidget* parent = nullptr);
    ~ShortcutsDialog() override;

    ShortcutsDialog(const ShortcutsDialog&) = delete;
    ShortcutsDialog& operator=(const ShortcutsDialog&) = delete;

protected:
    void changeEvent(QEvent* event) override;

private:
    void entryAdded(const koShortcut::Entry& entry) override;
    void entryRemoved(const koShortcut::Entry& entry) override;

    QWidget* makeSearch();
    QWidget* makeList();
    QWidget* makeEditor();
    QWidget* makeButtons();

    void retranslate();
    void refresh();
    void fill();
    QTreeWidgetItem* addHeading(QTreeWidgetItem* parent, const QString& text);
    QTreeWidgetItem* findHeading(const ShortcutRow& row);
    void addRow(std::size_t row);
    void filter();
    bool isWanted(const ShortcutRow& row) const;
    void searchByKey(bool byKey);
    void selectRow(const QString& identity);

    const ShortcutRow* getCurrentRow() const;
    void showCurrent();
    void showConflicts(const ShortcutRow* row);
    QString describeConflicts(const ShortcutRow& row) const;
    void setCurrentKey(const KeyBinding& key);
    void restoreCurrentKey();
    void takeKeyFromOthers();

    InputBindings& m_bindings;
    std::vector<ShortcutRow> m_rows;
    KeyBinding m_wantedKey; ///< when searching by key
    QTimer m_refreshTimer;  ///< one refresh for however many entries came and went

    QStackedWidget* m_searches;
    QLineEdit* m_searchText;
    KeyField* m_searchKey;
    QToolButton* m_searchByKey;
    QStackedWidget* m_lists;
    QTreeWidget* m_list;
    QLabel* m_nothing;
    QLabel* m_name;
    QLabel* m_description;
    QLabel* m_keyLabel;
    KeyField* m_key;
    QPushButton* m_clear;
    QPushButton* m_restore;
    QLabel* m_conflictIcon;
    QLabel* m_conflict;
    QPushButton* m_take;
    QPushButton* m_restoreAll;
    QPushButton* m_close;
};

} // namespace quon::viewer
