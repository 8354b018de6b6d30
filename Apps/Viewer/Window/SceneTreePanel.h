// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/SceneChanges.h"
#include "Viewer/Window/SceneTreeModel.h"
#include "Viewer/Window/SceneTreeSelection.h"

#include <QTimer>
#include <QWidget>

#include <unordered_set>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QToolButton;

namespace quon::viewer {

class SceneTreeView;
class ViewerSession;

/**
 * The parts of the model as a tree with a search field.
 *
 * The selected rows and the selected parts are the same; a part that was selected elsewhere, alone, is scrolled to.
 * Double-clicking a row, or the enter key, fits its part into the view; the eye and the padlock of a row hide and lock
 * it; the menu has the commands for what is selected. The part of the row under the pointer is preselected in the view.
 * Searching leaves the rows with the text in their names and what is above them; the enter key goes to the next one,
 * with Shift to the previous one, Escape ends the search.
 *
 * While the panel is not to be seen it follows nothing; it looks at the scene anew when it is shown.
 */
class SceneTreePanel : public QWidget, private SceneChangeListener {
    Q_OBJECT

public:
    /** Larger models are searched when the user pauses or presses the enter key, others at every letter. */
    static constexpr int InstantSearchLimit = 100000;

    /** @param session borrowed, must outlive the panel */
    explicit SceneTreePanel(ViewerSession& session, QWidget* parent = nullptr);
    ~SceneTreePanel() override;

    SceneTreePanel(const SceneTreePanel&) = delete;
    SceneTreePanel& operator=(const SceneTreePanel&) = delete;

    /** Gives the search field the focus. */
    void startSearch();

signals:
    /** The user is done here: the focus belongs to the view again. */
    void left();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void sceneChanged(const SceneChanges& changes) override;

    void addSearchField();
    void addView();
    QToolButton* addButton(const char* icon, const QString& objectName);
    void forgetModel();
    void readModel();
    void restoreView();
    void expandFirstRows();
    void showSelection();
    void showCurrent();

    void searchChanged();
    void applySearch();
    bool handleSearchKey(int key, Qt::KeyboardModifiers modifiers);
    void goToMatch(int step);
    int findSelectedMatch() const;
    void selectMatches();
    void updateMatches();

    void toggleState(const QModelIndex& index);
    void fitRow(const QModelIndex& index);
    void showMenu(const QPoint& place);
    void addCommand(QMenu& menu, const char* name);
    void retranslate();

    ViewerSession& m_session;
    SceneTreeModel m_model;
    SceneTreeSelection m_selection;
    QLineEdit* m_search;
    QTimer m_typing; ///< runs while a search waits for a pause
    QAction* m_searchPicture;
    QWidget* m_matches; ///< the line below the search field, while there is a text to search for
    QLabel* m_matchCount;
    QToolButton* m_previous;
    QToolButton* m_next;
    QToolButton* m_selectMatches;
    SceneTreeView* m_view;
    bool m_stale = true;                        ///< the model has to be read before it is shown
    std::unordered_set<osg::UInt32> m_expanded; ///< ids of the expanded rows, without a filter
    bool m_fresh = true;                        ///< no row of the model was expanded yet
    bool m_restoring = false;                   ///< rows are expanded by program
};

} // namespace quon::viewer
