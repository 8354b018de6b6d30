// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

#include <string>

class QLabel;
class QTextBrowser;

namespace quon::viewer {

class ViewerSession;
class Viewport;

/** The viewer's window: the viewport, a tool bar, the list of keys and mouse buttons, and a status bar. */
class MainWindow : public QMainWindow {
public:
    /** @param session borrowed, must outlive the window */
    explicit MainWindow(ViewerSession& session, QWidget* parent = nullptr);
    ~MainWindow() override;

    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /**
     * Loads a model and shows it in place of the old one; progress goes to the status bar.
     *
     * @throws ViewerError with the file's name and the reason; the old model stays then
     */
    void open(const std::string& file);

    /** Generates an assembly and shows it in place of the old model, see AssemblyGenerator. */
    void showAssembly(int partCount);

    Viewport& getViewport() { return *m_viewport; }

private:
    void addActions();
    void askAndOpen();
    void fillKeyHelp();
    void sendCommand(const char* category);

    ViewerSession& m_session;
    Viewport* m_viewport;
    QTextBrowser* m_keyHelp;
    QLabel* m_hovered;
    QLabel* m_summary;
};

} // namespace quon::viewer
