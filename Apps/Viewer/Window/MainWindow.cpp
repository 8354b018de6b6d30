// SPDX-License-Identifier: MIT
#include "Viewer/Window/MainWindow.h"

#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Session/Settings.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Icons.h"
#include "Viewer/Window/InspectorPanel.h"
#include "Viewer/Window/LanguageMenu.h"
#include "Viewer/Window/MessageBar.h"
#include "Viewer/Window/ModelArea.h"
#include "Viewer/Window/ModelMenus.h"
#include "Viewer/Window/PresenterMode.h"
#include "Viewer/Window/RecentFilesMenu.h"
#include "Viewer/Window/RecordingControl.h"
#include "Viewer/Window/SceneTreePanel.h"
#include "Viewer/Window/ScriptPlayer.h"
#include "Viewer/Window/SelectionSetsPanel.h"
#include "Viewer/Window/ShortcutsDialog.h"
#include "Viewer/Window/StartPage.h"
#include "Viewer/Window/Viewport.h"
#include "Viewer/Window/WindowKeeper.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quon::viewer {

namespace {

// Switches that stay as they were when the viewer was closed.
constexpr const char* KeptSwitches[] = {"dark", "parallel", "preselection", "visible-only"};

constexpr int GroupCount = 6;

// What is made to show somebody without a model what the program is like.
constexpr int SampleSize = 2000;

const QString FolderKey = QStringLiteral("folder");

// What the tool bar shows, a gap where the name is empty.
constexpr const char* ToolBarCommands[] = {
    "fit",      "fit-selection", "front", "right", "top",  "iso", "parallel",      "",        "hide",    "isolate",
    "show-all", "lock",          "",      "undo",  "redo", "",    "visualisation", "overlay", "measure", "dark"};

} // namespace

MainWindow::MainWindow(ViewerSession& session, QWidget* parent)
    : QMainWindow(parent)
    , m_session(session)
    , m_modelSettings(session)
    , m_viewport(new Viewport(session, Viewport::Target::Window, this))
    , m_area(new ModelArea(m_viewport, m_opener, m_recentFiles, this))
    , m_fileMenu(menuBar()->addMenu(QString()))
    , m_modelMenus(nullptr)
    , m_panelMenu(nullptr)
    , m_helpMenu(nullptr)
    , m_aboutAction(nullptr)
    , m_findAction(nullptr)
    , m_toolBar(nullptr)
    , m_hovered(new QLabel(this))
    , m_size(new QLabel(this))
    , m_summary(new QLabel(this))
    , m_problems("settings")
{
    setCentralWidget(m_area);
    m_area->takeDropsOf(this);
    setDockNestingEnabled(true);

    addFileMenu();
    addCommands();
    m_modelMenus = new ModelMenus(m_modelSettings, *m_commandMenus[static_cast<std::size_t>(Command::Group::View)]);
    m_panelMenu = m_commandMenus.back()->addMenu(QString());
    m_helpMenu = menuBar()->addMenu(QString());
    m_helpMenu->addAction(getAction("shortcuts"));
    m_aboutAction = m_helpMenu->addAction(getIcon("koviewer"), QString(), this, &MainWindow::showAbout);
    addToolBar();
    m_session.getCommands().setCommand("shortcuts", {[this] { showShortcuts(); }, {}, {}});
    addPanel(new SelectionSetsPanel(m_session, this), QStringLiteral("selectionSets"), Qt::RightDockWidgetArea, true);
    addSceneTree();
    addPresenterMode();
    statusBar()->addWidget(m_hovered, 1);
    m_size->setContentsMargins(0, 0, 12, 0);
    statusBar()->addPermanentWidget(m_size);
    statusBar()->addPermanentWidget(m_summary);

    connect(&m_session, &ViewerSession::hoveredChanged, m_hovered, &QLabel::setText);
    for (const auto signal :
         {&ViewerSession::selectionChanged, &ViewerSession::stateChanged, &ViewerSession::modeChanged,
          &ViewerSession::modelChanged, &ViewerSession::historyChanged, &ViewerSession::redrawNeeded}) {
        connect(&m_session, signal, this, &MainWindow::updateActions);
    }
    connect(&m_session, &ViewerSession::modelChanged, this, [this] {
        m_area->setModelShown(m_session.getModel() != osg::NullFC);
        countParts();
        updateSize();
    });
    connect(&m_modelSettings, &ModelSettings::changed, this, &MainWindow::updateSize);
    connect(&m_opener, &ModelOpener::opened, this, &MainWindow::showModel);
    connect(&m_opener, &ModelOpener::failed, this,
            [this](const QString& line) { getMessages().showMessage(MessageBar::Kind::Error, line); });
    connect(m_area, &ModelArea::fileDropped, this,
            [this](const QString& file) { m_opener.open(QFile::encodeName(file).toStdString()); });
    const StartPage* page = &m_area->getStartPage();
    connect(page, &StartPage::openRequested, this, &MainWindow::askAndOpen);
    connect(page, &StartPage::assemblyRequested, this, [this] { showAssembly(SampleSize); });
    connect(page, &StartPage::fileChosen, this, &MainWindow::openRecent);
    connect(m_recentMenu, &RecentFilesMenu::fileChosen, this, &MainWindow::openRecent);
    connect(&m_session.getBindings(), &InputBindings::changed, this, &MainWindow::retranslate);
    addRecording();
    addInspector();
    countParts();
    retranslate();
    resize(1240, 800);
    m_area->setModelShown(m_session.getModel() != osg::NullFC);
    (m_session.getModel() == osg::NullFC ? static_cast<QWidget*>(&m_area->getStartPage()) : m_viewport)->setFocus();
}

MainWindow::~MainWindow()
{
    // First: it may still want to know where the panels are.
    m_keeper.reset();
    disconnect(&m_session, nullptr, this, nullptr);
    disconnect(&m_session.getBindings(), nullptr, this, nullptr);
    m_session.getCommands().removeCommand("shortcuts");
    m_session.getCommands().removeCommand("inspector");
    m_session.getCommands().removeCommand("presenter");
    m_presenter.reset();
    m_player.reset();
    m_recording.reset();
    m_session.getCommands().removeCommand("find");
    // Before its neighbours: the viewport in it still tells the session about the end of everything pending.
    delete m_area;
}

void MainWindow::useSettings(Settings& settings)
{
    m_settings = &settings;
    m_keeper = std::make_unique<WindowKeeper>(*this, settings);
    m_recentFiles.useSettings(settings.getStore());
    m_modelSettings.useSettings(settings.getStore());
    InputBindings& bindings = m_session.getBindings();
    bindings.setChangedKeys(settings.getKeys());
    connect(&bindings, &InputBindings::changed, this,
            [this, &bindings] { m_settings->setKeys(bindings.getChangedKeys()); });
    for (const char* name : KeptSwitches) {
        const CommandContext& commands = m_session.getCommands();
        if (commands.isSwitch(name) && settings.getSwitch(name, commands.isChecked(name)) != commands.isChecked(name)) {
            m_session.sendCommand(name);
        }
        m_switches[name] = commands.isChecked(name);
    }
    connect(&m_session, &ViewerSession::redrawNeeded, this, &MainWindow::keepSwitches);
    connect(&settings, &Settings::problemsChanged, this, &MainWindow::showProblems);
    showProblems();
}

void MainWindow::open(const std::string& file)
{
    m_opener.cancel();
    showModel(ModelLoader().load(file));
}

void MainWindow::showAssembly(const int partCount)
{
    m_opener.cancel();
    const osg::RefPtr<osg::NodePtr> assembly = AssemblyGenerator::generate(partCount);
    m_modelSettings.show(assembly.get());
    getMessages().hide();
    m_fileName = tr("Assembly");
    retranslate();
}

void MainWindow::addRecording()
{
    m_recording = std::make_unique<RecordingControl>(m_session, *m_viewport, [this] { return m_fileName; });
    m_recording->setFileQuestion([this] {
        const QString file =
            QFileDialog::getSaveFileName(this, tr("Record input"), QString(), tr("Recordings (*.txt);;All files (*)"));
        return QFile::encodeName(file).toStdString();
    });
    m_recording->setErrorReport([this](const QString& line) { QMessageBox::warning(this, tr("koviewer"), line); });
    m_player = std::make_unique<ScriptPlayer>(m_session, *m_viewport);
}

void MainWindow::addInspector()
{
    QDockWidget* dock = addPanel(new InspectorPanel(m_session, *m_viewport, this), QStringLiteral("inspector"),
                                 Qt::BottomDockWidgetArea, false);
    m_session.getCommands().setCommand(
        "inspector", {[dock] { dock->setVisible(!dock->isVisible()); }, [dock] { return dock->isVisible(); }, {}});
}

MessageBar& MainWindow::getMessages()
{
    return m_area->getMessages();
}

QAction* MainWindow::getAction(const std::string& command) const
{
    const auto found = std::find_if(m_commandActions.begin(), m_commandActions.end(),
                                    [&](const CommandAction& entry) { return command == entry.command->name; });
    return found == m_commandActions.end() ? nullptr : found->action;
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        // The session's texts have changed already, see Languages.
        m_recording->retranslate();
        m_player->retranslate();
        retranslate();
    }
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    QMainWindow::closeEvent(event);
    if (event->isAccepted()) {
        m_opener.cancel();
    }
}

void MainWindow::keyPressEvent(QKeyEvent* event)
{
    event->setAccepted(m_viewport->handleKey(event));
}

void MainWindow::keyReleaseEvent(QKeyEvent* event)
{
    event->setAccepted(m_viewport->handleKey(event));
}

void MainWindow::addFileMenu()
{
    m_openAction = m_fileMenu->addAction(getIcon("open"), QString(), this, &MainWindow::askAndOpen);
    m_openAction->setShortcut(QKeySequence::Open);
    m_recentMenu = new RecentFilesMenu(m_recentFiles, m_fileMenu);
    m_fileMenu->addMenu(m_recentMenu);
    m_fileMenu->addSeparator();
    m_quitAction = m_fileMenu->addAction(QString(), this, &QWidget::close);
    // QKeySequence::Quit is empty outside the large desktops.
    m_quitAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
}

void MainWindow::addCommands()
{
    for (int group = 0; group < GroupCount; ++group) {
        const bool isSubmenu = group == static_cast<int>(Command::Group::Navigate);
        m_commandMenus.push_back(isSubmenu ? m_commandMenus.back()->addMenu(QString()) : menuBar()->addMenu(QString()));
        connect(m_commandMenus.back(), &QMenu::aboutToShow, this, &MainWindow::updateActions);
    }
    for (const Command& command : Command::getAll()) {
        QMenu* menu = m_commandMenus[static_cast<std::size_t>(command.group)];
        // Without a shortcut of Qt's: keys reach the commands through the event mapper alone.
        QAction* action = menu->addAction(getIcon(command.icon), QString());
        action->setObjectName(QString::fromLatin1(command.name));
        connect(action, &QAction::triggered, this, [this, name = std::string(command.name)] {
            m_session.sendCommand(name);
            updateActions();
        });
        m_commandActions.push_back({&command, action});
    }
}

void MainWindow::addToolBar()
{
    m_toolBar = QMainWindow::addToolBar(QString());
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setMovable(false);
    m_toolBar->addAction(m_openAction);
    m_toolBar->addSeparator();
    for (const char* name : ToolBarCommands) {
        if (*name == 0) {
            m_toolBar->addSeparator();
        } else {
            m_toolBar->addAction(getAction(name));
        }
    }
    // The keys belong to the viewport, also after a click up here.
    for (QToolButton* button : m_toolBar->findChildren<QToolButton*>()) {
        button->setFocusPolicy(Qt::NoFocus);
    }
}

void MainWindow::addSceneTree()
{
    auto* tree = new SceneTreePanel(m_session, this);
    QDockWidget* dock = addPanel(tree, QStringLiteral("sceneTreePanel"), Qt::LeftDockWidgetArea, true);
    connect(tree, &SceneTreePanel::left, m_viewport, qOverload<>(&QWidget::setFocus));
    const auto find = [tree, dock] {
        dock->show();
        dock->raise();
        tree->startSearch();
    };
    m_session.getCommands().setCommand("find", {find, {}, {}});
    // What everybody tries first cannot be a binding: "F" alone fires whatever is held with it.
    m_findAction = new QAction(this);
    m_findAction->setShortcut(QKeySequence::Find);
    connect(m_findAction, &QAction::triggered, this, [this] { m_session.sendCommand("find"); });
    addAction(m_findAction);
}

QDockWidget* MainWindow::addPanel(QWidget* panel, const QString& objectName, const Qt::DockWidgetArea area,
                                  const bool shown)
{
    auto* dock = new QDockWidget(panel->windowTitle(), this);
    dock->setObjectName(objectName);
    dock->setWidget(panel);
    // A panel names itself, in whatever language.
    connect(panel, &QWidget::windowTitleChanged, dock, &QWidget::setWindowTitle);
    addDockWidget(area, dock);
    dock->setVisible(shown);
    m_panelMenu->addAction(dock->toggleViewAction());
    return dock;
}

void MainWindow::retranslate()
{
    setWindowTitle(m_fileName.isEmpty() ? tr("koviewer") : tr("%1 - koviewer").arg(m_fileName));
    m_fileMenu->setTitle(tr("&File"));
    m_openAction->setText(tr("Open..."));
    m_openAction->setToolTip(tr("Open a model (%1)").arg(m_openAction->shortcut().toString(QKeySequence::NativeText)));
    m_quitAction->setText(tr("Quit"));
    const QString titles[GroupCount] = {tr("&Edit"),         tr("&Select"), tr("&View"),
                                        tr("Turn and move"), tr("&Tools"),  tr("&Window")};
    for (std::size_t group = 0; group < GroupCount; ++group) {
        m_commandMenus[group]->setTitle(titles[group]);
    }
    m_recentMenu->retranslate();
    m_modelMenus->retranslate();
    m_panelMenu->setTitle(tr("Panels"));
    m_helpMenu->setTitle(tr("&Help"));
    m_aboutAction->setText(tr("About koviewer"));
    m_toolBar->setWindowTitle(tr("Tool bar"));
    for (CommandAction& entry : m_commandActions) {
        // Kept: the camera moves more often than texts change.
        entry.text = entry.command->getText();
        entry.key = m_session.getBindings().getKey(entry.command->name).toText();
        entry.action->setIconText(entry.text);
        entry.action->setToolTip(m_session.getBindings().withKey(entry.command->getDescription(), entry.command->name));
    }
    registerShortcuts();
    m_presenter->retranslate();
    updateActions();
    updateSummary();
    updateSize();
}

void MainWindow::updateActions()
{
    const CommandContext& commands = m_session.getCommands();
    for (const CommandAction& entry : m_commandActions) {
        entry.action->setEnabled(commands.isAvailable(entry.command->name));
        entry.action->setCheckable(commands.isSwitch(entry.command->name));
        entry.action->setChecked(commands.isChecked(entry.command->name));
        const QString current = commands.getText(entry.command->name);
        const QString& text = current.isEmpty() ? entry.text : current;
        entry.action->setText(entry.key.isEmpty() ? text : text + QLatin1Char('\t') + entry.key);
    }
}

void MainWindow::countParts()
{
    m_partCount = m_session.countParts();
    updateSummary();
}

void MainWindow::updateSummary()
{
    m_summary->setText(m_session.getModel() == osg::NullFC ? QString() : tr("%n parts", "", m_partCount));
}

void MainWindow::showAbout()
{
    QMessageBox box(this);
    box.setObjectName(QStringLiteral("about"));
    box.setWindowTitle(tr("About koviewer"));
    box.setIconPixmap(getIcon("koviewer").pixmap(64, 64));
    box.setText(tr("koviewer %1").arg(QStringLiteral(KOVIEWER_VERSION)));
    // By its key, or where there is none by its place among the menus.
    const QString key = m_session.getBindings().getKey("inspector").toText();
    box.setInformativeText(
        tr("A viewer for models, and the reference host of libkoInteraction: what you click, drag and type goes "
           "through the library as named events. The inspector (%1) shows them.\n\nQt %2, MIT licence.")
            .arg(key.isEmpty() ? m_commandMenus.back()->title().remove(QLatin1Char('&')) : key,
                 QString::fromLatin1(qVersion())));
    box.exec();
}

void MainWindow::updateSize()
{
    m_size->setText(m_modelSettings.describeSize());
    m_size->setToolTip(m_modelSettings.getLengthFormat().isMetric()
                           ? tr("Width, height and depth of the model")
                           : tr("Width, height and depth of the model; the file does not say in which unit"));
}

void MainWindow::askAndOpen()
{
    QSettings* store = m_settings == nullptr ? nullptr : m_settings->getStore();
    if (store != nullptr && m_folder.isEmpty()) {
        m_folder = store->value(FolderKey).toString();
    }
    auto* dialog = new QFileDialog(this, tr("Open a model"), m_folder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters(ModelOpener::getNameFilters());
    connect(dialog, &QFileDialog::fileSelected, this, [this, store](const QString& file) {
        m_folder = QFileInfo(file).absolutePath();
        if (store != nullptr) {
            store->setValue(FolderKey, m_folder);
        }
        m_opener.open(QFile::encodeName(file).toStdString());
    });
    dialog->open();
}

void MainWindow::openRecent(const QString& file)
{
    if (QFileInfo::exists(file)) {
        m_opener.open(QFile::encodeName(file).toStdString());
        return;
    }
    m_recentFiles.remove(file);
    getMessages().showMessage(
        MessageBar::Kind::Warning,
        tr("%1 is no longer there and was taken off the recent files.").arg(QDir::toNativeSeparators(file)));
}

void MainWindow::showModel(const LoadedModel& model)
{
    const QString file = QFile::decodeName(model.file.c_str());
    m_fileName = QFileInfo(file).fileName();
    m_modelSettings.show(model);
    m_recentFiles.add(file);
    retranslate();
    if (model.missing.isEmpty()) {
        getMessages().hide();
    } else {
        getMessages().showMessage(MessageBar::Kind::Warning,
                                  tr("%1 was loaded in part. %2").arg(m_fileName, model.missing.front()),
                                  model.missing.mid(1));
    }
}

void MainWindow::showShortcuts()
{
    if (m_shortcutsDialog == nullptr) {
        m_shortcutsDialog = new ShortcutsDialog(m_session.getBindings(), this);
        m_shortcutsDialog->setAttribute(Qt::WA_DeleteOnClose);
        m_shortcutsDialog->show();
    }
    m_shortcutsDialog->raise();
    m_shortcutsDialog->activateWindow();
}

void MainWindow::registerShortcuts()
{
    m_shortcuts.clear();
    for (const QAction* action : m_fileMenu->actions()) {
        m_shortcuts.add(m_fileMenu->title().remove(QLatin1Char('&')), *action);
    }
    m_findAction->setText(Command::find("find")->getDescription());
    m_shortcuts.add(m_commandMenus[static_cast<std::size_t>(Command::Group::Select)]->title().remove(QLatin1Char('&')),
                    *m_findAction);
}

void MainWindow::addPresenterMode()
{
    m_presenter = std::make_unique<PresenterMode>(*this, *m_viewport, m_session);
    m_session.getCommands().setCommand(
        "presenter", {[this] { m_presenter->enterLater(); }, [this] { return m_presenter->isOn(); }, {}});
    connect(m_presenter.get(), &PresenterMode::aboutToEnter, this, [this] {
        if (m_keeper != nullptr) {
            m_keeper->setPaused(true);
        }
    });
    connect(m_presenter.get(), &PresenterMode::changed, this, [this] {
        if (m_keeper != nullptr) {
            m_keeper->setPaused(m_presenter->isOn());
        }
        updateActions();
    });
}

void MainWindow::addLanguages(Languages& languages)
{
    m_commandMenus.back()->insertMenu(m_panelMenu->menuAction(), new LanguageMenu(languages, m_settings, this));
}

void MainWindow::showProblems()
{
    m_problems.show(m_settings->describeProblems(), std::chrono::seconds(15));
}

void MainWindow::keepSwitches()
{
    const CommandContext& commands = m_session.getCommands();
    for (const char* name : KeptSwitches) {
        const bool isOn = commands.isChecked(name);
        if (std::exchange(m_switches[name], isOn) != isOn) {
            m_settings->setSwitch(name, isOn);
        }
    }
}

} // namespace quon::viewer
