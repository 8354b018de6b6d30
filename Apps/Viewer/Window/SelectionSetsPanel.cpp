// SPDX-License-Identifier: MIT
#include "Viewer/Window/SelectionSetsPanel.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Icons.h"
#include "Viewer/Window/SelectionLookEditor.h"

#include <Interaction/NodeSelectionModel.h>

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace quon::viewer {

namespace {

using Combination = SelectionSets::Combination;

constexpr int NameColumn = 0;
constexpr int SizeColumn = 1;
constexpr int IdRole = Qt::UserRole;

constexpr QSize SwatchSize(12, 12);

SelectionSets::Id getId(const QTreeWidgetItem* item)
{
    return item->data(NameColumn, IdRole).toInt();
}

// What the list does with a key itself.
bool isListKey(const int key)
{
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Home || key == Qt::Key_End ||
           key == Qt::Key_Space || key == Qt::Key_F2 || key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

} // namespace

/** Renames in place: hands the new name on and leaves it to the panel to show what became of it. */
class SelectionSetsPanel::NameDelegate : public QStyledItemDelegate {
public:
    NameDelegate(std::function<void(Id, const QString&)> rename, QObject* parent)
        : QStyledItemDelegate(parent)
        , m_rename(std::move(rename))
    {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return index.column() == NameColumn ? QStyledItemDelegate::createEditor(parent, option, index) : nullptr;
    }

    void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override
    {
        m_rename(index.data(IdRole).toInt(), static_cast<QLineEdit*>(editor)->text());
    }

private:
    std::function<void(Id, const QString&)> m_rename;
};

SelectionSetsPanel::SelectionSetsPanel(ViewerSession& session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_sets(session.getSets())
    , m_list(new QTreeWidget(this))
    , m_hint(new QLabel(m_list->viewport()))
    , m_problemRow(new QWidget(this))
    , m_problem(new QLabel(m_problemRow))
    , m_new(new QAction(getIcon("add"), QString(), this))
    , m_recall(new QAction(getIcon("recall"), QString(), this))
    , m_add(new QAction(getIcon("recall-add"), QString(), this))
    , m_rename(new QAction(getIcon("rename"), QString(), this))
    , m_delete(new QAction(getIcon("delete"), QString(), this))
    , m_combineMenu(new QMenu(this))
    , m_combine(new QToolButton(this))
    , m_look(new SelectionLookEditor(this))
{
    setFocusProxy(m_list);
    m_list->setObjectName(QStringLiteral("sets"));
    m_list->setColumnCount(2);
    m_list->setHeaderHidden(true);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->setIconSize(SwatchSize);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(SizeColumn, QHeaderView::ResizeToContents);
    m_list->setItemDelegate(new NameDelegate([this](const Id id, const QString& name) { rename(id, name); }, this));
    m_list->installEventFilter(this);
    m_list->setMinimumHeight(fontMetrics().height() * 6);

    m_hint->setObjectName(QStringLiteral("hint"));
    m_hint->setWordWrap(true);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setEnabled(false);
    m_hint->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* inList = new QVBoxLayout(m_list->viewport());
    inList->addSpacing(fontMetrics().height() * 2);
    inList->addWidget(m_hint);
    m_problem->setObjectName(QStringLiteral("problem"));
    m_problem->setWordWrap(true);
    auto* problem = new QHBoxLayout(m_problemRow);
    problem->setContentsMargins(0, 0, 0, 0);
    auto* warning = new QLabel(m_problemRow);
    warning->setPixmap(getIcon("warning").pixmap(fontMetrics().height()));
    problem->addWidget(warning);
    problem->addWidget(m_problem, 1);
    m_problemRow->hide();

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(1);
    const auto addButton = [&](QToolButton* button, const char* objectName) {
        button->setObjectName(QString::fromLatin1(objectName));
        button->setAutoRaise(true);
        buttons->addWidget(button);
        return button;
    };
    addButton(new QToolButton(this), "new")->setDefaultAction(m_new);
    addButton(new QToolButton(this), "recall")->setDefaultAction(m_recall);
    addButton(new QToolButton(this), "addToSelection")->setDefaultAction(m_add);
    addButton(m_combine, "combine")->setIcon(getIcon("combine"));
    m_combine->setMenu(m_combineMenu);
    m_combine->setPopupMode(QToolButton::InstantPopup);
    buttons->addStretch(1);
    addButton(new QToolButton(this), "rename")->setDefaultAction(m_rename);
    addButton(new QToolButton(this), "delete")->setDefaultAction(m_delete);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_problemRow);
    layout->addLayout(buttons);
    layout->addSpacing(4);
    layout->addWidget(m_look);

    connect(m_new, &QAction::triggered, this, [this] {
        const std::size_t before = m_sets.getAll().size();
        m_session.sendCommand("new-set");
        if (m_sets.getAll().size() > before) {
            m_list->setCurrentItem(m_list->topLevelItem(m_list->topLevelItemCount() - 1));
        }
    });
    connect(m_recall, &QAction::triggered, this, [this] { edit([this] { m_sets.recall(getCurrent()); }); });
    connect(m_add, &QAction::triggered, this, [this] { edit([this] { m_sets.addToSelection(getCurrent()); }); });
    connect(m_delete, &QAction::triggered, this, [this] { edit([this] { m_sets.remove(getCurrent()); }); });
    connect(m_rename, &QAction::triggered, this, [this] {
        if (getCurrent() != SelectionSets::None) {
            m_list->editItem(m_list->currentItem(), NameColumn);
        }
    });
    connect(m_combineMenu, &QMenu::aboutToShow, this, [this] {
        m_combineMenu->clear();
        fillCombineMenu(*m_combineMenu);
    });
    connect(m_list, &QTreeWidget::itemDoubleClicked, m_recall, &QAction::trigger);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &SelectionSetsPanel::currentChanged);
    connect(m_list, &QTreeWidget::itemChanged, this, &SelectionSetsPanel::visibilityClicked);
    connect(m_list, &QWidget::customContextMenuRequested, this, &SelectionSetsPanel::showContextMenu);
    connect(m_look, &SelectionLookEditor::lookEdited, this, &SelectionSetsPanel::lookEdited);
    connect(&m_sets, &SelectionSets::changed, this, &SelectionSetsPanel::refresh);
    connect(&m_session, &ViewerSession::selectionChanged, this, &SelectionSetsPanel::refresh);
    connect(&m_session, &ViewerSession::selectionLookChanged, this, &SelectionSetsPanel::refresh);
    connect(&m_session, &ViewerSession::modelChanged, this, &SelectionSetsPanel::refresh);
    connect(&m_session.getBindings(), &InputBindings::changed, this, &SelectionSetsPanel::retranslate);
    retranslate();
}

SelectionSets::Id SelectionSetsPanel::getCurrent() const
{
    const QTreeWidgetItem* item = m_list->currentItem();
    return item == nullptr ? SelectionSets::None : getId(item);
}

bool SelectionSetsPanel::eventFilter(QObject* object, QEvent* event)
{
    if (object != m_list || event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(object, event);
    }
    auto* key = static_cast<QKeyEvent*>(event);
    if (m_list->indexWidget(m_list->currentIndex()) != nullptr) {
        // The end of a name being edited, which the field passes on.
        return key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    }
    if (isListKey(key->key())) {
        return false;
    }
    if (getCurrent() != SelectionSets::None) {
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            m_recall->trigger();
            return true;
        }
        if (key->key() == Qt::Key_Delete) {
            m_delete->trigger();
            return true;
        }
    }
    // Not for the list, which would look for an entry with this letter.
    key->ignore();
    return true;
}

void SelectionSetsPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void SelectionSetsPanel::retranslate()
{
    setWindowTitle(tr("Selection sets"));
    m_list->setAccessibleName(tr("Selection sets"));
    m_hint->setText(tr("Select parts and press + to keep them as a set."));
    m_new->setText(tr("New set"));
    m_new->setToolTip(m_session.getBindings().withKey(tr("Keep the selected parts as a set"), "new-set"));
    m_recall->setText(tr("Recall"));
    m_recall->setToolTip(tr("Select the parts of the set (Enter)"));
    m_add->setText(tr("Add to selection"));
    m_add->setToolTip(tr("Select the parts of the set as well"));
    m_rename->setText(tr("Rename"));
    m_rename->setToolTip(tr("Rename the set (F2)"));
    m_delete->setText(tr("Delete"));
    m_delete->setToolTip(tr("Delete the set (Del)"));
    m_combine->setText(tr("Combine"));
    m_combine->setToolTip(tr("Combine the set with the selection or with another set"));
    m_combineMenu->setTitle(tr("Combine"));
    refresh();
}

void SelectionSetsPanel::refresh()
{
    const std::vector<SelectionSets::Info> sets = m_sets.getAll();
    const Id before = getCurrent();
    {
        const QSignalBlocker blocker(m_list);
        rebuildItems(sets);
        refreshItem(m_list->topLevelItem(0), tr("Selection"), m_session.getSelection().getSelection().size(),
                    m_session.getSelectionLook());
        for (std::size_t i = 0; i < sets.size(); ++i) {
            refreshItem(m_list->topLevelItem(static_cast<int>(i) + 1), sets[i].name, sets[i].size, sets[i].look);
        }
    }
    m_hint->setVisible(sets.empty());
    m_look->setSceneRadius(m_session.getCamera().getSceneRadius());
    if (getCurrent() != before) {
        currentChanged();
        return;
    }
    m_look->setLook(getCurrentLook());
    const bool isSet = getCurrent() != SelectionSets::None;
    for (QAction* action : {m_recall, m_add, m_rename, m_delete}) {
        action->setEnabled(isSet);
    }
    m_combine->setEnabled(isSet);
    m_new->setEnabled(m_session.getCommands().isAvailable("new-set"));
}

void SelectionSetsPanel::refreshItem(QTreeWidgetItem* item, const QString& name, const std::size_t size,
                                     const SelectionLook& look)
{
    item->setText(NameColumn, name);
    item->setToolTip(NameColumn, name);
    const QPixmap swatch = makeSwatch(toQColor(look.colour), SwatchSize, devicePixelRatioF());
    QIcon icon(swatch);
    // The colour stays what it is in the current row.
    icon.addPixmap(swatch, QIcon::Selected);
    item->setIcon(NameColumn, icon);
    item->setText(SizeColumn, QLocale().toString(static_cast<qulonglong>(size)));
    if (getId(item) != SelectionSets::None) {
        item->setCheckState(NameColumn, look.visible ? Qt::Checked : Qt::Unchecked);
    }
}

void SelectionSetsPanel::rebuildItems(const std::vector<SelectionSets::Info>& sets)
{
    std::vector<Id> wanted{SelectionSets::None};
    std::transform(sets.begin(), sets.end(), std::back_inserter(wanted),
                   [](const SelectionSets::Info& set) { return set.id; });
    std::vector<Id> present;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        present.push_back(getId(m_list->topLevelItem(row)));
    }
    if (present == wanted) {
        return;
    }
    const Id current = getCurrent();
    const int row = std::max(0, m_list->indexOfTopLevelItem(m_list->currentItem()));
    m_list->clear();
    for (const Id id : wanted) {
        auto* item = new QTreeWidgetItem(m_list);
        item->setData(NameColumn, IdRole, id);
        item->setTextAlignment(SizeColumn, Qt::AlignRight | Qt::AlignVCenter);
        if (id != SelectionSets::None) {
            item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
        }
    }
    // The same one, or what is in the place of one that is gone.
    const auto same = std::find(wanted.begin(), wanted.end(), current);
    const int next =
        same != wanted.end() ? static_cast<int>(same - wanted.begin()) : std::min(row, m_list->topLevelItemCount() - 1);
    m_list->setCurrentItem(m_list->topLevelItem(next));
}

void SelectionSetsPanel::currentChanged()
{
    m_look->dropUnfinished();
    showProblem({});
    refresh();
}

void SelectionSetsPanel::visibilityClicked(QTreeWidgetItem* item)
{
    const std::optional<SelectionSets::Info> set = m_sets.find(getId(item));
    if (!set) {
        return;
    }
    SelectionLook look = set->look;
    look.visible = item->checkState(NameColumn) == Qt::Checked;
    edit([&] { m_sets.setLook(set->id, look); });
}

void SelectionSetsPanel::lookEdited(const SelectionLook& look)
{
    edit([&] {
        if (getCurrent() == SelectionSets::None) {
            m_session.setSelectionLook(look);
        } else {
            m_sets.setLook(getCurrent(), look);
        }
    });
}

void SelectionSetsPanel::rename(const Id id, const QString& name)
{
    const QString problem = m_sets.getNameProblem(id, name);
    showProblem(problem);
    if (problem.isEmpty()) {
        edit([&] { m_sets.rename(id, name); });
    }
}

void SelectionSetsPanel::showProblem(const QString& problem)
{
    m_problem->setText(problem);
    m_problemRow->setVisible(!problem.isEmpty());
}

void SelectionSetsPanel::showContextMenu(const QPoint& place)
{
    QMenu menu(this);
    QMenu* combine = nullptr;
    if (getCurrent() == SelectionSets::None) {
        menu.addAction(m_new);
    } else {
        menu.addActions({m_recall, m_add});
        combine = menu.addMenu(getIcon("combine"), tr("Combine"));
        fillCombineMenu(*combine);
        menu.addSeparator();
        menu.addActions({m_rename, m_delete});
    }
    menu.exec(m_list->viewport()->mapToGlobal(place));
}

void SelectionSetsPanel::fillCombineMenu(QMenu& menu)
{
    const Id current = getCurrent();
    const auto addCombination = [&](QMenu& to, const QString& text, const Combination combination, const Id other) {
        to.addAction(text, this, [=] { edit([&] { m_sets.combine(current, combination, other); }); });
    };
    QAction* replace =
        menu.addAction(tr("Replace by selection"), this, [=] { edit([&] { m_sets.replaceBySelection(current); }); });
    replace->setEnabled(!m_session.getSelection().getSelection().empty());
    addCombination(menu, tr("Unite with selection"), Combination::Union, SelectionSets::None);
    addCombination(menu, tr("Intersect with selection"), Combination::Intersection, SelectionSets::None);
    addCombination(menu, tr("Subtract selection"), Combination::Difference, SelectionSets::None);

    const std::vector<SelectionSets::Info> sets = m_sets.getAll();
    if (sets.size() < 2) {
        return;
    }
    menu.addSeparator();
    const std::pair<QString, Combination> combinations[] = {{tr("Unite with"), Combination::Union},
                                                            {tr("Intersect with"), Combination::Intersection},
                                                            {tr("Subtract"), Combination::Difference}};
    for (const auto& [text, combination] : combinations) {
        QMenu* others = menu.addMenu(text);
        for (const SelectionSets::Info& set : sets) {
            if (set.id != current) {
                // An ampersand in a name is no mark of a key.
                addCombination(*others, QString(set.name).replace(QLatin1Char('&'), QStringLiteral("&&")), combination,
                               set.id);
            }
        }
    }
}

SelectionLook SelectionSetsPanel::getCurrentLook() const
{
    const std::optional<SelectionSets::Info> set = m_sets.find(getCurrent());
    return set ? set->look : m_session.getSelectionLook();
}

template <class Operation>
void SelectionSetsPanel::edit(const Operation& operation)
{
    m_session.processSceneChanges();
    operation();
    m_session.processSceneChanges();
}

} // namespace quon::viewer
