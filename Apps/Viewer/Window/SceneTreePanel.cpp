// SPDX-License-Identifier: MIT
#include "Viewer/Window/SceneTreePanel.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/SceneEditor.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Icons.h"
#include "Viewer/Window/SceneTreeView.h"

#include <Interaction/NodeSelectionModel.h>

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QToolButton>
#include <QVBoxLayout>

#include <set>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

constexpr int Margin = 6;
constexpr int FirstRows = 30;
constexpr int TypingPause = 250; // milliseconds

} // namespace

SceneTreePanel::SceneTreePanel(ViewerSession& session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_selection(m_model, session.getEditor(), session.getSelection())
    , m_search(new QLineEdit(this))
    , m_searchPicture(m_search->addAction(getIcon("search"), QLineEdit::LeadingPosition))
    , m_matches(new QWidget(this))
    , m_matchCount(new QLabel(m_matches))
    , m_previous(addButton("previous", QStringLiteral("previousMatch")))
    , m_next(addButton("next", QStringLiteral("nextMatch")))
    , m_selectMatches(addButton("select-all", QStringLiteral("selectMatches")))
    , m_view(new SceneTreeView(m_model, this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, Margin, 0, 0);
    layout->setSpacing(0);
    addSearchField();
    addView();

    m_session.addSceneChangeListener(this);
    connect(&m_session, &ViewerSession::modelAboutToChange, this, &SceneTreePanel::forgetModel);
    connect(&m_session, &ViewerSession::modelChanged, this, &SceneTreePanel::readModel);
    connect(&m_session, &ViewerSession::selectionChanged, this, &SceneTreePanel::showSelection);
    connect(&m_session.getBindings(), &InputBindings::changed, this, &SceneTreePanel::retranslate);
    connect(&m_selection, &SceneTreeSelection::edited, this, [this] { m_session.processSceneChanges(); });
    // After the view's own: it has forgotten everything by then.
    connect(&m_model, &QAbstractItemModel::modelReset, this, &SceneTreePanel::restoreView);
    retranslate();
}

SceneTreePanel::~SceneTreePanel()
{
    m_session.pointAt(osg::NullFC);
    m_session.removeSceneChangeListener(this);
    // Before the models that it shows; it may still end a gesture.
    delete m_view;
}

void SceneTreePanel::startSearch()
{
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}

void SceneTreePanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void SceneTreePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_stale) {
        readModel();
    } else {
        showSelection();
    }
}

bool SceneTreePanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        return handleSearchKey(key->key(), key->modifiers());
    }
    return QWidget::eventFilter(watched, event);
}

void SceneTreePanel::sceneChanged(const SceneChanges& changes)
{
    if (isVisible() && !m_stale) {
        m_model.sceneChanged(changes);
    } else {
        m_stale = true;
    }
}

void SceneTreePanel::addSearchField()
{
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setClearButtonEnabled(true);
    m_search->installEventFilter(this);
    auto* searchLine = new QHBoxLayout;
    searchLine->setContentsMargins(Margin, 0, Margin, Margin);
    searchLine->addWidget(m_search);

    m_matchCount->setObjectName(QStringLiteral("matchCount"));
    auto* matchLine = new QHBoxLayout(m_matches);
    matchLine->setContentsMargins(Margin * 2, 0, Margin, Margin / 2);
    matchLine->setSpacing(2);
    matchLine->addWidget(m_matchCount, 1);
    matchLine->addWidget(m_previous);
    matchLine->addWidget(m_next);
    matchLine->addWidget(m_selectMatches);
    m_matches->hide();

    static_cast<QVBoxLayout*>(layout())->addLayout(searchLine);
    layout()->addWidget(m_matches);
    m_typing.setSingleShot(true);
    connect(&m_typing, &QTimer::timeout, this, &SceneTreePanel::applySearch);
    connect(m_search, &QLineEdit::textChanged, this, &SceneTreePanel::searchChanged);
    connect(m_previous, &QToolButton::clicked, this, [this] { goToMatch(-1); });
    connect(m_next, &QToolButton::clicked, this, [this] { goToMatch(1); });
    connect(m_selectMatches, &QToolButton::clicked, this, &SceneTreePanel::selectMatches);
}

void SceneTreePanel::addView()
{
    m_view->setObjectName(QStringLiteral("sceneTree"));
    m_view->setSelectionModel(&m_selection);
    layout()->addWidget(m_view);
    connect(m_view, &SceneTreeView::gestureBegan, this, [this] { m_session.getEditor().beginGesture(); });
    connect(m_view, &SceneTreeView::gestureEnded, this, [this] { m_session.getEditor().endGesture(); });
    connect(m_view, &SceneTreeView::stateClicked, this, &SceneTreePanel::toggleState);
    connect(m_view, &SceneTreeView::rowChosen, this, &SceneTreePanel::fitRow);
    connect(m_view, &SceneTreeView::rowPointedAt, this,
            [this](const QModelIndex& index) { m_session.pointAt(m_model.getNode(index)); });
    connect(m_view, &SceneTreeView::menuWanted, this, &SceneTreePanel::showMenu);
    connect(m_view, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (!m_restoring && m_model.getFilter().isEmpty()) {
            m_expanded.insert(osg::getContainerId(m_model.getNode(index)));
        }
    });
    connect(m_view, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (!m_restoring && m_model.getFilter().isEmpty()) {
            m_expanded.erase(osg::getContainerId(m_model.getNode(index)));
        }
    });
}

QToolButton* SceneTreePanel::addButton(const char* icon, const QString& objectName)
{
    auto* button = new QToolButton(m_matches);
    button->setObjectName(objectName);
    button->setIcon(getIcon(icon));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void SceneTreePanel::forgetModel()
{
    m_expanded.clear();
    m_fresh = true;
    m_model.setRoot(osg::NullFC);
    m_search->clear();
    m_stale = true;
}

void SceneTreePanel::readModel()
{
    if (!isVisible()) {
        m_stale = true;
        return;
    }
    // What happened so far needs no answer: everything is read anew.
    m_session.processSceneChanges();
    m_stale = false;
    m_model.setRoot(m_session.getModel());
}

void SceneTreePanel::restoreView()
{
    // The rows are others, and the pointer may not move for long.
    m_session.pointAt(osg::NullFC);
    if (m_model.getTotalCount() > 0 && m_fresh) {
        m_fresh = false;
        expandFirstRows();
    } else {
        const QScopedValueRollback<bool> restoring(m_restoring, true);
        if (m_model.getFilter().isEmpty()) {
            for (const osg::UInt32 id : m_expanded) {
                m_view->expand(m_model.findIndex(id));
            }
        } else {
            m_view->expandAll();
        }
    }
    m_selection.showScene();
    showCurrent();
    updateMatches();
}

void SceneTreePanel::expandFirstRows()
{
    // As far as all of it can be seen; a single root always.
    int shown = m_model.rowCount();
    std::vector<QModelIndex> level(1);
    while (!level.empty()) {
        std::vector<QModelIndex> nextLevel;
        int below = 0;
        for (const QModelIndex& parent : level) {
            for (int row = 0; row < m_model.rowCount(parent); ++row) {
                const QModelIndex index = m_model.index(row, SceneTreeModel::Name, parent);
                if (m_model.hasChildren(index)) {
                    nextLevel.push_back(index);
                    below += m_model.rowCount(index);
                }
            }
        }
        if (shown > 1 && shown + below > FirstRows) {
            return;
        }
        for (const QModelIndex& index : nextLevel) {
            m_view->expand(index);
        }
        shown += below;
        level = std::move(nextLevel);
    }
}

void SceneTreePanel::showSelection()
{
    if (!isVisible() || m_stale) {
        return;
    }
    if (m_selection.showScene()) {
        showCurrent();
    }
    updateMatches();
}

void SceneTreePanel::showCurrent()
{
    const std::set<osg::NodePtr>& selected = m_session.getSelection().getSelection();
    const QModelIndex index = selected.size() == 1 ? m_model.getIndex(*selected.begin()) : QModelIndex();
    if (index.isValid()) {
        m_selection.setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        // Expands what is above.
        m_view->scrollTo(index);
    }
}

void SceneTreePanel::searchChanged()
{
    if (m_model.getTotalCount() > InstantSearchLimit && !m_search->text().isEmpty()) {
        m_typing.start(TypingPause);
    } else {
        applySearch();
    }
}

void SceneTreePanel::applySearch()
{
    m_model.setFilter(m_search->text());
}

bool SceneTreePanel::handleSearchKey(const int key, const Qt::KeyboardModifiers modifiers)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        goToMatch((modifiers & Qt::ShiftModifier) != 0 ? -1 : 1);
        return true;
    case Qt::Key_Escape:
        m_search->clear();
        emit left();
        return true;
    case Qt::Key_Down:
        m_view->setFocus(Qt::TabFocusReason);
        return true;
    default:
        return false;
    }
}

void SceneTreePanel::goToMatch(const int step)
{
    applySearch();
    const int count = m_model.getMatchCount();
    if (count == 0) {
        return;
    }
    const int place = findSelectedMatch();
    const int next = place < 0 ? (step > 0 ? 0 : count - 1) : (place + step + count) % count;
    m_session.getEditor().select({m_model.getNode(m_model.getMatch(next))});
    m_session.processSceneChanges();
    m_session.sendCommand("fit-selection");
}

int SceneTreePanel::findSelectedMatch() const
{
    const std::set<osg::NodePtr>& selected = m_session.getSelection().getSelection();
    return selected.size() == 1 ? m_model.findMatch(m_model.getIndex(*selected.begin())) : -1;
}

void SceneTreePanel::selectMatches()
{
    std::vector<osg::NodePtr> nodes;
    for (int place = 0; place < m_model.getMatchCount(); ++place) {
        nodes.push_back(m_model.getNode(m_model.getMatch(place)));
    }
    m_session.getEditor().select(nodes);
    m_session.processSceneChanges();
}

void SceneTreePanel::updateMatches()
{
    const int count = m_model.getMatchCount();
    const int place = findSelectedMatch();
    if (count == 0) {
        m_matchCount->setText(tr("Nothing found"));
    } else if (place < 0) {
        m_matchCount->setText(tr("%Ln found", nullptr, count));
    } else {
        m_matchCount->setText(tr("%L1 of %L2").arg(place + 1).arg(count));
    }
    for (QToolButton* button : {m_previous, m_next, m_selectMatches}) {
        button->setEnabled(count > 0);
    }
    m_matches->setVisible(!m_model.getFilter().isEmpty());
    m_view->setEmptyText(m_model.getTotalCount() == 0 ? tr("No model") : tr("No part has this name"));
}

void SceneTreePanel::toggleState(const QModelIndex& index)
{
    SceneEditor& editor = m_session.getEditor();
    const osg::NodePtr node = m_model.getNode(index);
    if (index.column() == SceneTreeModel::Lock) {
        editor.setLocked({node}, !index.data(SceneTreeModel::LockedRole).toBool());
    } else if (index.data(SceneTreeModel::HiddenRole).toBool()) {
        editor.show({node});
    } else {
        editor.hide({node});
    }
    m_session.processSceneChanges();
}

void SceneTreePanel::fitRow(const QModelIndex& index)
{
    // With a modifier held the row may have been taken out by the click.
    if (m_selection.isSelected(index)) {
        m_session.sendCommand("fit-selection");
    }
}

void SceneTreePanel::showMenu(const QPoint& place)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addCommand(*menu, "fit-selection");
    menu->addSeparator();
    addCommand(*menu, "hide");
    addCommand(*menu, "show");
    addCommand(*menu, "isolate");
    addCommand(*menu, "lock");
    menu->addSeparator();
    addCommand(*menu, "select-parent");
    addCommand(*menu, "select-children");
    menu->addSeparator();
    menu->addAction(tr("Expand all"), m_view, &QTreeView::expandAll);
    menu->addAction(tr("Collapse all"), m_view, &QTreeView::collapseAll);
    menu->popup(place);
}

void SceneTreePanel::addCommand(QMenu& menu, const char* name)
{
    const Command* command = Command::find(name);
    // Behind the tabulator menus write the key; it is not theirs to fire.
    const QString key = m_session.getBindings().getKey(name).toText();
    QAction* action = menu.addAction(getIcon(command->icon),
                                     key.isEmpty() ? command->getText() : command->getText() + QLatin1Char('\t') + key);
    action->setObjectName(QString::fromLatin1(name));
    action->setEnabled(m_session.getCommands().isAvailable(name));
    connect(action, &QAction::triggered, this, [this, name] { m_session.sendCommand(name); });
}

void SceneTreePanel::retranslate()
{
    setWindowTitle(tr("Scene"));
    m_search->setPlaceholderText(tr("Find parts"));
    m_search->setToolTip(m_session.getBindings().withKey(
        tr("Type a part of a name; Enter goes to the next part, Shift+Enter to the previous one"), "find"));
    m_view->setAccessibleName(tr("Parts"));
    const std::pair<QToolButton*, QString> buttons[] = {{m_previous, tr("Previous part found")},
                                                        {m_next, tr("Next part found")},
                                                        {m_selectMatches, tr("Select all parts found")}};
    for (const auto& [button, text] : buttons) {
        button->setToolTip(text);
        button->setAccessibleName(text);
    }
    updateMatches();
}

} // namespace quon::viewer
