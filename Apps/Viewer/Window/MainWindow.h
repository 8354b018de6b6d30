// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/ModelSettings.h"
#include "Viewer/Session/PassingNotification.h"
#include "Viewer/Window/ModelOpener.h"
#include "Viewer/Window/RecentFiles.h"
#include "Viewer/Window/WindowShortcuts.h"

#include <QMainWindow>
#include <QPointer>

#include <map>
#include <memory>
#include <string>
#include <vector>

class QAction;
class QDockWidget;
class QLabel;
class QMenu;
class QToolBar;

namespace quon::viewer {

class Languages;
class MessageBar;
class ModelArea;
class ModelMenus;
class PresenterMode;
class RecentFilesMenu;
class RecordingControl;
class ScriptPlayer;
class Settings;
class ShortcutsDialog;
class ViewerSession;
class Viewport;
class WindowKeeper;

/**
 * The viewer's window: the viewport in the middle, menus and a tool bar made from Command::getAll(), panels in docks
 * around it, a status bar.
 *
 * Menus and buttons send the same interaction events as the keys do. A key that a panel leaves alone goes to the
 * viewport, so that keys work wherever the focus is; text fields keep theirs.
 */
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /** @param session borrowed, must outlive the window */
    explicit MainWindow(ViewerSession& session, QWidget* parent = nullptr);
    ~MainWindow() override;

    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /**
     * Loads a model and shows it in place of the old one before it returns.
     *
     * @throws ViewerError with the file's name and the reason; the old model stays then
     */
    void open(const std::string& file);

    /** Generates an assembly and shows it in place of the old model, see AssemblyGenerator. */
    void showAssembly(int partCount);

    /**
     * Takes over what is remembered in @p settings, and keeps it there from now on. What is wrong with them is told in
     * the notification area. Call it once, when all panels are there.
     *
     * @param settings borrowed, must outlive the window
     */
    void useSettings(Settings& settings);

    /** What loads models without keeping the window waiting; what it opens is shown, what it cannot open is told. */
    ModelOpener& getOpener() { return m_opener; }

    RecentFiles& getRecentFiles() { return m_recentFiles; }
    ModelSettings& getModelSettings() { return m_modelSettings; }
    MessageBar& getMessages();

    /**
     * Lets the user choose a language; call it after useSettings(), which says where the choice is kept.
     *
     * @param languages borrowed, must outlive the window
     */
    void addLanguages(Languages& languages);

    Viewport& getViewport() { return *m_viewport; }

    /** Records the input of the viewport. */
    RecordingControl& getRecording() { return *m_recording; }

    /** Replays recordings. */
    ScriptPlayer& getPlayer() { return *m_player; }

    /** Returns the menu entry and button of a command, null for an unknown name. */
    QAction* getAction(const std::string& command) const;

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    struct CommandAction {
        const Command* command;
        QAction* action;
        QString text = {}; ///< in the user's language
        QString key = {};  ///< as the user reads it, empty for none
    };

    void addFileMenu();
    void addCommands();
    void addToolBar();
    void addSceneTree();
    /** Adds a panel that starts hidden unless @p shown; the Panels menu lists it. */
    QDockWidget* addPanel(QWidget* panel, const QString& objectName, Qt::DockWidgetArea area, bool shown);
    void retranslate();
    void updateActions();
    void countParts();
    void updateSummary();
    void updateSize();
    void askAndOpen();
    void showShortcuts();
    void registerShortcuts();
    void addPresenterMode();
    void showProblems();
    void keepSwitches();
    void openRecent(const QString& file);
    void showModel(const LoadedModel& model);
    void showAbout();
    void addRecording();
    void addInspector();

    ViewerSession& m_session;
    ModelSettings m_modelSettings;
    RecentFiles m_recentFiles;
    ModelOpener m_opener;
    QString m_folder; ///< where the last model was looked for
    Viewport* m_viewport;
    std::unique_ptr<RecordingControl> m_recording;
    std::unique_ptr<ScriptPlayer> m_player;
    ModelArea* m_area;
    QMenu* m_fileMenu;
    QAction* m_openAction;
    RecentFilesMenu* m_recentMenu;
    QAction* m_quitAction;
    std::vector<QMenu*> m_commandMenus; ///< by Command::Group
    ModelMenus* m_modelMenus;
    QMenu* m_panelMenu;
    QMenu* m_helpMenu;
    QAction* m_aboutAction;
    QAction* m_findAction; ///< for the key that does this everywhere
    QToolBar* m_toolBar;
    std::vector<CommandAction> m_commandActions;
    QLabel* m_hovered;
    QLabel* m_size;
    QLabel* m_summary;
    int m_partCount = 0; ///< of the model that is shown; to count them is to walk over all of it
    QString m_fileName;
    std::unique_ptr<PresenterMode> m_presenter;
    Settings* m_settings = nullptr;         ///< null until there are some
    std::map<std::string, bool> m_switches; ///< as they are in the settings, by the names of their commands
    PassingNotification m_problems;
    std::unique_ptr<WindowKeeper> m_keeper;
    WindowShortcuts m_shortcuts;
    QPointer<ShortcutsDialog> m_shortcutsDialog; ///< while it is shown
};

} // namespace quon::viewer
