// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

class QMainWindow;

namespace quon::viewer {

class Settings;

/**
 * Remembers where a window is and which of its panels are shown where.
 *
 * Moving a window is a hundred changes: they are stored once it rests for a moment, and when it is closed.
 */
class WindowKeeper : public QObject {
    Q_OBJECT

public:
    /**
     * Restores what is remembered, and from then on remembers what changes.
     *
     * @param window borrowed, with all its panels and tool bars; must outlive the keeper
     * @param settings borrowed, must outlive the keeper
     */
    WindowKeeper(QMainWindow& window, Settings& settings);

    /** Stores what has not been stored yet. */
    ~WindowKeeper() override;

    WindowKeeper(const WindowKeeper&) = delete;
    WindowKeeper& operator=(const WindowKeeper&) = delete;

    /** Whether changes are not the user's and forgotten. What happened before a pause is stored. */
    void setPaused(bool paused);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void restore();
    void watchPanels();
    void changed();
    void store();

    QMainWindow& m_window;
    Settings& m_settings;
    QTimer m_timer; ///< runs while there is something to store
    bool m_paused = false;
};

} // namespace quon::viewer
