// SPDX-License-Identifier: MIT
#include "Viewer/Window/InspectorPanel.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Icons.h"
#include "Viewer/Window/Viewport.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QScrollBar>
#include <QSplitter>
#include <QStringList>
#include <QTableView>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <numeric>

namespace quon::viewer {

namespace {

constexpr int RefreshMilliseconds = 250;
constexpr std::size_t ContainersPerRefresh = 500000;
constexpr int Margin = 6;
constexpr double FixedFontShare = 0.9;
constexpr int StateCharacters = 46; // width of the side with the numbers and the stack

enum StackColumn { Name, Position, Raised, Active, Enabled, StackColumnCount };

QString describe(const interaction::InteractionContext::PreferredPosition position)
{
    using Context = interaction::InteractionContext;
    switch (position) {
    case Context::Overlay:
        return QStringLiteral("Overlay");
    case Context::Modal:
        return QStringLiteral("Modal");
    case Context::Tool:
        return QStringLiteral("Tool");
    case Context::Navigation:
        return QStringLiteral("Navigation");
    case Context::Background:
        return QStringLiteral("Background");
    default:
        return QLocale().toString(static_cast<int>(position));
    }
}

// For what is read column by column; a little smaller, so that more of it is seen.
QFont getFixedFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Not every platform knows its own.
    font.setFamily(QStringLiteral("monospace"));
    font.setStyleHint(QFont::Monospace);
    font.setPointSizeF(QApplication::font().pointSizeF() * FixedFontShare);
    return font;
}

// Keys that the panel has no use for belong to the commands of the viewer.
bool isForLists(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    default:
        return false;
    }
}

} // namespace

InspectorPanel::InspectorPanel(ViewerSession& session, const Viewport& viewport, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_viewport(viewport)
    , m_pause(addButton("pause", "pause"))
    , m_clear(addButton("clear", "clear"))
    , m_copy(addButton("copy", "copy"))
    , m_filter(new QLineEdit(this))
    , m_movements(new QCheckBox(this))
    , m_table(new QTableView(this))
    , m_stackTitle(new QLabel(this))
    , m_stack(new QTreeWidget(this))
{
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(makeEventSide());
    splitter->addWidget(makeStateSide());
    splitter->setStretchFactor(0, 1);
    splitter->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);

    m_pause->setCheckable(true);
    connect(m_pause, &QToolButton::toggled, this, &InspectorPanel::refresh);
    connect(m_clear, &QToolButton::clicked, this, &InspectorPanel::clear);
    connect(m_copy, &QToolButton::clicked, this, &InspectorPanel::copy);
    connect(m_filter, &QLineEdit::textChanged, &m_model, &InspectorModel::setFilter);
    connect(m_movements, &QCheckBox::toggled, &m_model, &InspectorModel::setMovementsShown);
    connect(&m_model, &InspectorModel::modelReset, this, [this] {
        m_table->scrollToBottom();
        showNumbers();
    });
    m_timer.setInterval(RefreshMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &InspectorPanel::refresh);
    retranslate();
}

InspectorPanel::~InspectorPanel()
{
    m_session.getTrace().removeListener(this);
}

QToolButton* InspectorPanel::addButton(const char* icon, const char* objectName)
{
    auto* button = new QToolButton(this);
    button->setObjectName(QString::fromLatin1(objectName));
    button->setIcon(getIcon(icon));
    button->setAutoRaise(true);
    return button;
}

QWidget* InspectorPanel::makeEventSide()
{
    m_filter->setObjectName(QStringLiteral("filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->addAction(getIcon("search"), QLineEdit::LeadingPosition);
    m_movements->setObjectName(QStringLiteral("movements"));
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(Margin, Margin, Margin, 0);
    bar->addWidget(m_pause);
    bar->addWidget(m_clear);
    bar->addWidget(m_copy);
    bar->addWidget(m_filter, 1);
    bar->addWidget(m_movements);

    m_table->setObjectName(QStringLiteral("events"));
    m_table->setModel(&m_model);
    m_table->setShowGrid(false);
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(false);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_table->setFont(getFixedFont());
    m_table->verticalHeader()->hide();
    const int digit = m_table->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    m_table->verticalHeader()->setMinimumSectionSize(1);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 3);
    m_table->horizontalHeader()->setHighlightSections(false);
    const int widths[] = {10, 30, 11, 17, 11};
    for (int column = 0; column < InspectorModel::ColumnCount; ++column) {
        m_table->setColumnWidth(column, widths[column] * digit);
    }
    m_table->horizontalHeader()->setSectionResizeMode(InspectorModel::Event, QHeaderView::Stretch);
    m_table->installEventFilter(this);

    auto* side = new QWidget(this);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Margin);
    layout->addLayout(bar);
    layout->addWidget(m_table, 1);
    return side;
}

QWidget* InspectorPanel::makeStateSide()
{
    m_stack->setObjectName(QStringLiteral("stack"));
    m_stack->setRootIsDecorated(false);
    m_stack->setSelectionMode(QAbstractItemView::NoSelection);
    m_stack->setFocusPolicy(Qt::NoFocus);
    m_stack->setFrameShape(QFrame::NoFrame);
    m_stack->setColumnCount(StackColumnCount);
    m_stack->setAlternatingRowColors(true);
    m_stack->setFont(getFixedFont());
    m_stack->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_stack->header()->setStretchLastSection(false);
    m_stack->header()->setSectionResizeMode(Position, QHeaderView::Stretch);
    m_stack->header()->setMinimumSectionSize(1);

    auto* grid = new QGridLayout;
    grid->setContentsMargins(Margin, Margin, Margin, Margin);
    grid->setHorizontalSpacing(2 * Margin);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    m_modes = addNumber(*grid, "modes");
    m_picks = addNumber(*grid, "picks");
    m_frame = addNumber(*grid, "frame");
    m_containerCount = addNumber(*grid, "containers");
    m_eventCount = addNumber(*grid, "eventCount");

    QFont bold = m_stackTitle->font();
    bold.setBold(true);
    m_stackTitle->setFont(bold);
    m_stackTitle->setContentsMargins(Margin, 0, Margin, 0);
    auto* side = new QWidget(this);
    side->setMinimumWidth(StateCharacters * m_stack->fontMetrics().horizontalAdvance(QLatin1Char('0')));
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Margin);
    layout->addLayout(grid);
    layout->addWidget(m_stackTitle);
    layout->addWidget(m_stack, 1);
    return side;
}

InspectorPanel::Number InspectorPanel::addNumber(QGridLayout& layout, const char* objectName)
{
    const int row = layout.rowCount();
    const Number number{new QLabel(this), new QLabel(this)};
    number.value->setObjectName(QString::fromLatin1(objectName));
    number.value->setFont(getFixedFont());
    number.value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout.addWidget(number.name, row, 0);
    layout.addWidget(number.value, row, 1);
    return number;
}

void InspectorPanel::retranslate()
{
    setWindowTitle(tr("Inspector"));
    m_pause->setToolTip(tr("Pause: keep what is shown"));
    m_clear->setToolTip(tr("Clear the events"));
    m_copy->setToolTip(tr("Copy the selected events, or all that are shown"));
    m_filter->setPlaceholderText(tr("Filter by event, verb or context"));
    m_filter->setAccessibleName(tr("Filter of the events"));
    m_movements->setText(tr("Movements"));
    m_movements->setToolTip(tr("Show the events of every movement, hover and process"));
    m_table->setAccessibleName(tr("Events"));
    m_stackTitle->setText(tr("Stack of contexts, top first"));
    m_stack->setAccessibleName(m_stackTitle->text());
    m_stack->setHeaderLabels({tr("Context"), tr("Position"), tr("Raised"), tr("Active"), tr("Enabled")});
    m_modes.name->setText(tr("Modes"));
    m_picks.name->setText(tr("Picks"));
    m_frame.name->setText(tr("Frame"));
    m_containerCount.name->setText(tr("Containers"));
    m_eventCount.name->setText(tr("Events"));
    m_model.retranslate();
    showNumbers();
}

void InspectorPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
}

void InspectorPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_session.getTrace().addListener(this);
    m_timer.start();
    refresh();
}

void InspectorPanel::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_timer.stop();
    m_session.getTrace().removeListener(this);
    m_pending.clear();
}

void InspectorPanel::keyPressEvent(QKeyEvent* event)
{
    // Also when a table has the focus: eventFilter() leaves it to its parents.
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool InspectorPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || isForLists(static_cast<QKeyEvent&>(*event))) {
        return QWidget::eventFilter(watched, event);
    }
    // Tables take every letter for the beginning of a search.
    event->ignore();
    return true;
}

void InspectorPanel::eventTraced(const TracedEvent& event)
{
    m_pending.push_back(event);
    // While the display is paused nobody takes them away.
    if (m_pending.size() >= 2 * InspectorModel::Capacity) {
        m_pending.erase(m_pending.begin(), m_pending.begin() + InspectorModel::Capacity);
    }
}

void InspectorPanel::refresh()
{
    if (!m_pause->isChecked()) {
        showEvents();
        showStack();
    }
    m_containers.proceed(ContainersPerRefresh);
    showNumbers();
}

void InspectorPanel::clear()
{
    m_pending.clear();
    m_model.clear();
}

void InspectorPanel::copy()
{
    std::vector<int> rows;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows()) {
        rows.push_back(index.row());
    }
    std::sort(rows.begin(), rows.end());
    if (rows.empty()) {
        rows.resize(static_cast<std::size_t>(m_model.rowCount()));
        std::iota(rows.begin(), rows.end(), 0);
    }
    QApplication::clipboard()->setText(m_model.toText(rows));
}

void InspectorPanel::showEvents()
{
    if (m_pending.empty()) {
        return;
    }
    const QScrollBar* bar = m_table->verticalScrollBar();
    const bool atEnd = bar->value() == bar->maximum();
    m_model.append(m_pending);
    m_pending.clear();
    // Whoever has scrolled up is reading.
    if (atEnd) {
        m_table->scrollToBottom();
    }
}

void InspectorPanel::showNumbers()
{
    const QLocale locale;
    const auto count = [&](const std::size_t number) { return locale.toString(static_cast<qulonglong>(number)); };

    QStringList modes;
    for (const std::string& mode : m_session.getTools().getModes()) {
        modes << QString::fromStdString(mode);
    }
    m_modes.value->setText(modes.isEmpty() ? tr("none") : modes.join(tr(", ")));

    const EmbreePicker::Statistics& picks = m_session.getPicker().getStatistics();
    const std::size_t hits = picks.asked - picks.queried;
    m_picks.value->setText(
        tr("%1 asked, %2 cached, %3 run").arg(count(picks.asked), count(hits), count(picks.queried)));

    const FrameTimes& times = m_viewport.getFrameTimes();
    m_frame.value->setText(times.getCount() == 0
                               ? tr("none yet")
                               : tr("%1 ms, median %2 ms of %3")
                                     .arg(locale.toString(times.getLast(), 'f', 1),
                                          locale.toString(times.getMedian(), 'f', 1), count(times.getCount())));
    m_containerCount.value->setText(m_containers.isKnown() ? tr("%1 alive").arg(count(m_containers.getCount()))
                                                           : tr("counting ..."));
    m_eventCount.value->setText(
        tr("%1 shown of %2").arg(count(static_cast<std::size_t>(m_model.rowCount())), count(m_model.getEventCount())));
}

void InspectorPanel::showStack()
{
    const std::vector<InteractionTrace::StackEntry>& stack = m_session.getTrace().getStack();
    while (m_stack->topLevelItemCount() > static_cast<int>(stack.size())) {
        delete m_stack->takeTopLevelItem(m_stack->topLevelItemCount() - 1);
    }
    while (m_stack->topLevelItemCount() < static_cast<int>(stack.size())) {
        auto* item = new QTreeWidgetItem(m_stack);
        for (int column = Raised; column < StackColumnCount; ++column) {
            item->setTextAlignment(column, Qt::AlignCenter);
        }
    }
    for (std::size_t i = 0; i < stack.size(); ++i) {
        QTreeWidgetItem* item = m_stack->topLevelItem(static_cast<int>(i));
        const interaction::InteractionContext& context = *stack[i].context;
        const auto mark = [](const bool set) { return set ? QString(QChar(0x25CF)) : QString(QChar(0x2013)); };
        item->setText(Name, QString::fromStdString(stack[i].name));
        const auto position = context.getPreferredPosition();
        item->setText(Position, static_cast<int>(position) == std::numeric_limits<int>::max() ? tr("below all")
                                                                                              : describe(position));
        item->setText(Raised, mark(context.isRaised()));
        item->setText(Active, mark(context.isActive()));
        item->setText(Enabled, mark(context.isEnabled()));
    }
}

} // namespace quon::viewer
