// SPDX-License-Identifier: MIT
#include "Viewer/Window/ShortcutsDialog.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Window/Icons.h"
#include "Viewer/Window/KeyField.h"
#include "Viewer/Window/ShortcutDelegate.h"

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include <algorithm>

namespace quon::viewer {

namespace {

enum Column { NameColumn, KeyColumn, ConflictColumn };

constexpr int RowRole = Qt::UserRole; ///< index of the row; headings have none

// The caps of a key or button: one for each modifier, the last for itself.
QStringList capsOf(const koShortcut::Entry& entry)
{
    if (entry.code == 0) {
        return {};
    }
    QStringList caps;
    for (const int modifier : {static_cast<int>(Qt::ControlModifier), static_cast<int>(Qt::AltModifier),
                               static_cast<int>(Qt::ShiftModifier), static_cast<int>(Qt::MetaModifier)}) {
        if ((entry.modifiers & modifier) != 0) {
            QString text = QKeySequence(modifier).toString(QKeySequence::NativeText);
            if (text.endsWith(QLatin1Char('+'))) {
                text.chop(1);
            }
            caps << text;
        }
    }
    koShortcut::Entry alone = entry;
    alone.modifiers = 0;
    return caps << koShortcut::toText(alone);
}

// Whose turn comes first on the same press: the window's, the mapper's, what is left over. Equal ones all fire.
int precedenceOf(const koShortcut::Entry& entry)
{
    if (entry.group == InputBindings::getGroup()) {
        return 1;
    }
    return entry.group == InputBindings::getFreeKeyGroup() ? 0 : 2;
}

// Tells a row again after the list was made anew.
QString identityOf(const ShortcutRow& row)
{
    return row.command != nullptr ? QString::fromLatin1(row.command->name) : koShortcut::toText(row.entry);
}

} // namespace

ShortcutsDialog::ShortcutsDialog(InputBindings& bindings, QWidget* parent)
    : QDialog(parent)
    , m_bindings(bindings)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->setContentsMargins(14, 14, 14, 14);
    layout->addWidget(makeSearch());
    layout->addWidget(makeList(), 1);
    layout->addWidget(makeEditor());
    layout->addWidget(makeButtons());
    m_searchKey->setNextFocus(m_list);
    m_key->setNextFocus(m_list);

    m_refreshTimer.setSingleShot(true);
    m_refreshTimer.setInterval(0);
    connect(&m_refreshTimer, &QTimer::timeout, this, &ShortcutsDialog::refresh);
    connect(&m_bindings, &InputBindings::changed, this, &ShortcutsDialog::refresh);
    koShortcut::addListener(this);

    resize(720, 680);
    retranslate();
    m_searchText->setFocus();
}

ShortcutsDialog::~ShortcutsDialog()
{
    koShortcut::removeListener(this);
}

void ShortcutsDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void ShortcutsDialog::entryAdded(const koShortcut::Entry&)
{
    m_refreshTimer.start();
}

void ShortcutsDialog::entryRemoved(const koShortcut::Entry&)
{
    m_refreshTimer.start();
}

QWidget* ShortcutsDialog::makeSearch()
{
    m_searchText = new QLineEdit;
    m_searchText->setObjectName(QStringLiteral("searchText"));
    m_searchText->setClearButtonEnabled(true);
    m_searchText->addAction(getIcon("search"), QLineEdit::LeadingPosition);
    connect(m_searchText, &QLineEdit::textChanged, this, &ShortcutsDialog::filter);

    m_searchKey = new KeyField;
    m_searchKey->setObjectName(QStringLiteral("searchKey"));
    connect(m_searchKey, &KeyField::keyEntered, this, [this](const KeyBinding& key) {
        m_wantedKey = key;
        filter();
    });

    m_searches = new QStackedWidget;
    m_searches->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_searches->addWidget(m_searchText);
    m_searches->addWidget(m_searchKey);

    m_searchByKey = new QToolButton;
    m_searchByKey->setObjectName(QStringLiteral("searchByKey"));
    m_searchByKey->setIcon(getIcon("shortcuts"));
    m_searchByKey->setCheckable(true);
    m_searchByKey->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    connect(m_searchByKey, &QToolButton::toggled, this, &ShortcutsDialog::searchByKey);

    auto* search = new QWidget;
    auto* layout = new QHBoxLayout(search);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_searches, 1);
    layout->addWidget(m_searchByKey);
    return search;
}

QWidget* ShortcutsDialog::makeList()
{
    m_list = new QTreeWidget;
    m_list->setObjectName(QStringLiteral("list"));
    m_list->setColumnCount(3);
    m_list->setItemDelegate(new ShortcutDelegate(m_list));
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setIndentation(16);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(KeyColumn, QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(ConflictColumn, QHeaderView::Fixed);
    m_list->header()->resizeSection(ConflictColumn, 32);
    m_list->header()->setSectionsMovable(false);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &ShortcutsDialog::showCurrent);
    connect(m_list, &QTreeWidget::itemActivated, this, [this] {
        if (m_key->isEnabled()) {
            m_key->setFocus(Qt::OtherFocusReason);
        }
    });

    m_nothing = new QLabel;
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->setFrameShape(QFrame::StyledPanel);
    m_nothing->setForegroundRole(QPalette::PlaceholderText);
    m_nothing->setBackgroundRole(QPalette::Base);
    m_nothing->setAutoFillBackground(true);

    m_lists = new QStackedWidget;
    m_lists->addWidget(m_list);
    m_lists->addWidget(m_nothing);
    return m_lists;
}

QWidget* ShortcutsDialog::makeEditor()
{
    m_name = new QLabel;
    QFont bold = m_name->font();
    bold.setBold(true);
    m_name->setFont(bold);
    m_description = new QLabel;
    m_description->setWordWrap(true);
    m_description->setTextFormat(Qt::PlainText);

    m_key = new KeyField;
    m_key->setObjectName(QStringLiteral("key"));
    connect(m_key, &KeyField::keyEntered, this, &ShortcutsDialog::setCurrentKey);
    m_keyLabel = new QLabel;
    m_keyLabel->setBuddy(m_key);
    m_clear = new QPushButton;
    m_clear->setObjectName(QStringLiteral("clear"));
    connect(m_clear, &QPushButton::clicked, this, [this] { setCurrentKey({}); });
    m_restore = new QPushButton;
    m_restore->setObjectName(QStringLiteral("restore"));
    connect(m_restore, &QPushButton::clicked, this, &ShortcutsDialog::restoreCurrentKey);

    auto* keys = new QHBoxLayout;
    keys->addWidget(m_keyLabel);
    keys->addWidget(m_key, 1);
    keys->addWidget(m_clear);
    keys->addWidget(m_restore);

    m_conflictIcon = new QLabel;
    m_conflict = new QLabel;
    m_conflict->setObjectName(QStringLiteral("conflict"));
    m_conflict->setTextFormat(Qt::PlainText);
    m_conflict->setWordWrap(true);
    m_take = new QPushButton;
    m_take->setObjectName(QStringLiteral("take"));
    connect(m_take, &QPushButton::clicked, this, &ShortcutsDialog::takeKeyFromOthers);
    auto* conflicts = new QHBoxLayout;
    conflicts->addWidget(m_conflictIcon);
    conflicts->addWidget(m_conflict, 1);
    conflicts->addWidget(m_take);
    // Room for the button, so that nothing moves when a conflict comes up.
    conflicts->addSpacing(0);
    conflicts->addStrut(m_take->sizeHint().height());

    auto* editor = new QFrame;
    editor->setFrameShape(QFrame::StyledPanel);
    auto* layout = new QVBoxLayout(editor);
    layout->setContentsMargins(12, 10, 12, 10);
    layout->addWidget(m_name);
    layout->addWidget(m_description);
    layout->addLayout(keys);
    layout->addLayout(conflicts);
    return editor;
}

QWidget* ShortcutsDialog::makeButtons()
{
    m_restoreAll = new QPushButton;
    m_restoreAll->setObjectName(QStringLiteral("restoreAll"));
    connect(m_restoreAll, &QPushButton::clicked, &m_bindings, &InputBindings::restoreAllKeys);
    m_close = new QPushButton;
    m_close->setObjectName(QStringLiteral("close"));
    connect(m_close, &QPushButton::clicked, this, &QDialog::close);

    auto* buttons = new QWidget;
    auto* layout = new QHBoxLayout(buttons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_restoreAll);
    layout->addStretch(1);
    layout->addWidget(m_close);
    // Enter belongs to the list and to the search, not to whichever button comes first.
    for (QPushButton* button : {m_clear, m_restore, m_take, m_restoreAll, m_close}) {
        button->setAutoDefault(false);
    }
    return buttons;
}

void ShortcutsDialog::retranslate()
{
    setWindowTitle(tr("Shortcuts"));
    m_searchText->setPlaceholderText(tr("Search by name or key"));
    m_searchKey->setPlaceholderText(tr("Press the key to look for"));
    m_searchByKey->setText(tr("By key"));
    m_searchByKey->setToolTip(tr("Search by pressing the key"));
    m_list->setHeaderLabels({tr("Command"), tr("Shortcut"), QString()});
    m_nothing->setText(tr("No shortcut matches"));
    m_keyLabel->setText(tr("&Key:"));
    m_clear->setText(tr("Clear"));
    m_clear->setToolTip(tr("Leave the command without a key"));
    m_restore->setText(tr("Restore"));
    m_restoreAll->setText(tr("Restore all"));
    m_restoreAll->setToolTip(tr("Give all commands their default keys again"));
    m_close->setText(tr("Close"));
    refresh();
}

void ShortcutsDialog::refresh()
{
    m_refreshTimer.stop();
    const ShortcutRow* current = getCurrentRow();
    const QString identity = current == nullptr ? QString() : identityOf(*current);
    m_rows = listShortcuts(m_bindings);
    fill();
    selectRow(identity);
    m_restoreAll->setEnabled(!m_bindings.getChangedKeys().empty());
}

void ShortcutsDialog::fill()
{
    // Quiet: the current row must not be asked for while there is none.
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        addRow(row);
    }
    m_list->expandAll();
    filter();
}

QTreeWidgetItem* ShortcutsDialog::addHeading(QTreeWidgetItem* parent, const QString& text)
{
    auto* heading = new QTreeWidgetItem({text});
    QFont font = m_list->font();
    font.setBold(true);
    heading->setFont(NameColumn, font);
    heading->setFlags(Qt::ItemIsEnabled);
    if (parent == nullptr) {
        m_list->addTopLevelItem(heading);
    } else {
        heading->setForeground(NameColumn, palette().brush(QPalette::PlaceholderText));
        parent->addChild(heading);
    }
    heading->setFirstColumnSpanned(true);
    return heading;
}

QTreeWidgetItem* ShortcutsDialog::findHeading(const ShortcutRow& row)
{
    const auto findOrAdd = [this](QTreeWidgetItem* parent, const QString& text) {
        QTreeWidgetItem* root = parent == nullptr ? m_list->invisibleRootItem() : parent;
        for (int i = 0; i < root->childCount(); ++i) {
            if (root->child(i)->text(NameColumn) == text && !root->child(i)->data(NameColumn, RowRole).isValid()) {
                return root->child(i);
            }
        }
        return addHeading(parent, text);
    };
    QTreeWidgetItem* group = findOrAdd(nullptr, row.entry.group);
    if (row.entry.group != InputBindings::getGroup()) {
        return group;
    }
    if (row.entry.kind == koShortcut::MouseButton) {
        return findOrAdd(group, tr("Mouse"));
    }
    if (row.command == nullptr) {
        return group;
    }
    switch (row.command->group) {
    case Command::Group::Edit:
        return findOrAdd(group, tr("Edit"));
    case Command::Group::Select:
        return findOrAdd(group, tr("Select"));
    case Command::Group::View:
        return findOrAdd(group, tr("View"));
    case Command::Group::Navigate:
        return findOrAdd(group, tr("Turn and move"));
    case Command::Group::Tools:
        return findOrAdd(group, tr("Tools"));
    case Command::Group::Window:
        return findOrAdd(group, tr("Window"));
    }
    return group;
}

void ShortcutsDialog::addRow(const std::size_t index)
{
    const ShortcutRow& row = m_rows[index];
    QString name = row.getName();
    name.remove(QStringLiteral("..."));
    auto* item = new QTreeWidgetItem({name});
    item->setData(NameColumn, RowRole, static_cast<int>(index));
    item->setToolTip(NameColumn, row.entry.description);
    item->setData(KeyColumn, ShortcutDelegate::CapsRole, capsOf(row.entry));
    item->setData(KeyColumn, Qt::AccessibleTextRole, row.getKeyText());
    // Caps have no text of their own: the column is as wide as this one would be with its caps around it.
    item->setSizeHint(KeyColumn, QSize(fontMetrics().horizontalAdvance(row.getKeyText()) + 60, 0));
    if (row.command != nullptr) {
        // A blank one where there is none: the names stand below each other.
        QPixmap blank(m_list->iconSize().isValid() ? m_list->iconSize() : QSize(16, 16));
        blank.fill(Qt::transparent);
        const QIcon icon = getIcon(row.command->icon);
        item->setIcon(NameColumn, icon.isNull() ? QIcon(blank) : icon);
        QFont font = m_list->font();
        font.setItalic(m_bindings.getChangedKeys().count(row.command->name) != 0);
        item->setFont(NameColumn, font);
    }
    if (!row.conflicts.empty()) {
        item->setIcon(ConflictColumn, getIcon("warning"));
        item->setToolTip(ConflictColumn, describeConflicts(row));
    }
    findHeading(row)->addChild(item);
}

void ShortcutsDialog::filter()
{
    bool any = false;
    const auto filterBelow = [&](const auto& self, QTreeWidgetItem* parent) -> bool {
        bool anyBelow = false;
        for (int i = 0; i < parent->childCount(); ++i) {
            QTreeWidgetItem* item = parent->child(i);
            const QVariant row = item->data(NameColumn, RowRole);
            const bool isShown =
                row.isValid() ? isWanted(m_rows[static_cast<std::size_t>(row.toInt())]) : self(self, item);
            item->setHidden(!isShown);
            anyBelow = anyBelow || isShown;
        }
        return anyBelow;
    };
    any = filterBelow(filterBelow, m_list->invisibleRootItem());
    m_lists->setCurrentWidget(any ? static_cast<QWidget*>(m_list) : m_nothing);
}

bool ShortcutsDialog::isWanted(const ShortcutRow& row) const
{
    if (m_searchByKey->isChecked()) {
        return m_wantedKey.isNone() || row.isFiredBy(m_wantedKey);
    }
    const QString wanted = m_searchText->text().trimmed();
    const QStringList texts{row.getName(), row.entry.description, row.getKeyText()};
    return std::any_of(texts.begin(), texts.end(),
                       [&](const QString& text) { return text.contains(wanted, Qt::CaseInsensitive); });
}

void ShortcutsDialog::searchByKey(const bool byKey)
{
    m_wantedKey = {};
    m_searchKey->setKey({});
    QWidget* search = byKey ? static_cast<QWidget*>(m_searchKey) : m_searchText;
    m_searches->setCurrentWidget(search);
    search->setFocus();
    filter();
}

void ShortcutsDialog::selectRow(const QString& identity)
{
    QTreeWidgetItem* first = nullptr;
    for (QTreeWidgetItemIterator item(m_list); *item != nullptr; ++item) {
        const QVariant row = (*item)->data(NameColumn, RowRole);
        if (!row.isValid()) {
            continue;
        }
        first = first == nullptr ? *item : first;
        if (identityOf(m_rows[static_cast<std::size_t>(row.toInt())]) == identity) {
            first = *item;
            break;
        }
    }
    m_list->setCurrentItem(first);
    showCurrent();
}

const ShortcutRow* ShortcutsDialog::getCurrentRow() const
{
    const QTreeWidgetItem* item = m_list->currentItem();
    const QVariant row = item == nullptr ? QVariant() : item->data(NameColumn, RowRole);
    return row.isValid() ? &m_rows[static_cast<std::size_t>(row.toInt())] : nullptr;
}

void ShortcutsDialog::showCurrent()
{
    const ShortcutRow* row = getCurrentRow();
    const bool isChangeable = row != nullptr && row->command != nullptr;
    m_name->setText(row == nullptr ? QString() : row->getName());
    m_description->setText(row == nullptr || row->getName() == row->entry.description ? QString()
                                                                                      : row->entry.description);
    m_key->setKey(isChangeable ? m_bindings.getKey(row->command->name) : KeyBinding());
    m_key->setEnabled(isChangeable);
    m_key->setPlaceholderText(isChangeable ? tr("Click here and press the key") : tr("Cannot be changed"));
    m_clear->setEnabled(isChangeable && !m_key->getKey().isNone());
    const KeyBinding standard = isChangeable ? InputBindings::getDefaultKey(row->command->name) : KeyBinding();
    m_restore->setEnabled(isChangeable && m_key->getKey() != standard);
    m_restore->setToolTip(standard.isNone() ? QString() : tr("The default key is %1").arg(standard.toText()));
    showConflicts(row);
}

void ShortcutsDialog::showConflicts(const ShortcutRow* row)
{
    QStringList changeable;
    if (row != nullptr && row->command != nullptr) {
        for (const koShortcut::Entry& entry : row->conflicts) {
            if (const Command* command = findCommandOf(entry, m_bindings); command != nullptr) {
                changeable << command->getText();
            }
        }
    }
    const bool any = row != nullptr && !row->conflicts.empty();
    m_conflict->setText(any ? describeConflicts(*row) : QString());
    m_conflictIcon->setPixmap(any ? getIcon("warning").pixmap(16, 16) : QPixmap());
    m_take->setVisible(!changeable.isEmpty());
    m_take->setText(changeable.size() == 1 ? tr("Take it from '%1'").arg(changeable.front())
                                           : tr("Take it from all others"));
}

QString ShortcutsDialog::describeConflicts(const ShortcutRow& row) const
{
    QStringList alsoFired;
    QStringList firedInstead;
    QStringList notFired;
    for (const koShortcut::Entry& entry : row.conflicts) {
        const Command* command = findCommandOf(entry, m_bindings);
        const int difference = precedenceOf(entry) - precedenceOf(row.entry);
        QStringList& names = difference == 0 ? alsoFired : difference > 0 ? firedInstead : notFired;
        names << tr("'%1'").arg(command == nullptr ? entry.description : command->getText());
    }
    const QString separator = QStringLiteral(", ");
    QStringList sentences;
    if (!alsoFired.isEmpty()) {
        sentences << tr("Also fires %1").arg(alsoFired.join(separator));
    }
    if (!firedInstead.isEmpty()) {
        sentences << tr("%1 fires in its place").arg(firedInstead.join(separator));
    }
    if (!notFired.isEmpty()) {
        sentences << tr("Fires in place of %1").arg(notFired.join(separator));
    }
    return sentences.join(QLatin1Char('\n'));
}

void ShortcutsDialog::setCurrentKey(const KeyBinding& key)
{
    if (const ShortcutRow* row = getCurrentRow(); row != nullptr && row->command != nullptr) {
        m_bindings.setKey(row->command->name, key);
    }
}

void ShortcutsDialog::restoreCurrentKey()
{
    if (const ShortcutRow* row = getCurrentRow(); row != nullptr && row->command != nullptr) {
        m_bindings.restoreKey(row->command->name);
    }
}

void ShortcutsDialog::takeKeyFromOthers()
{
    const ShortcutRow* row = getCurrentRow();
    if (row == nullptr) {
        return;
    }
    // A copy of the names: every change makes the list anew.
    std::vector<std::string> others;
    for (const koShortcut::Entry& entry : row->conflicts) {
        if (const Command* command = findCommandOf(entry, m_bindings); command != nullptr) {
            others.emplace_back(command->name);
        }
    }
    for (const std::string& other : others) {
        m_bindings.setKey(other, {});
    }
}

} // namespace quon::viewer
