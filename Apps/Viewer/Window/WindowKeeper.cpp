// SPDX-License-Identifier: MIT
#include "Viewer/Window/WindowKeeper.h"

#include "Viewer/Session/Settings.h"

#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>
#include <QToolBar>

#include <chrono>

namespace quon::viewer {

WindowKeeper::WindowKeeper(QMainWindow& window, Settings& settings)
    : m_window(window)
    , m_settings(settings)
{
    restore();
    m_timer.setSingleShot(true);
    m_timer.setInterval(std::chrono::milliseconds(500));
    connect(&m_timer, &QTimer::timeout, this, &WindowKeeper::store);
    watchPanels();
    m_window.installEventFilter(this);
}

WindowKeeper::~WindowKeeper()
{
    if (m_timer.isActive()) {
        store();
    }
}

void WindowKeeper::setPaused(const bool paused)
{
    if (m_timer.isActive()) {
        store();
    }
    m_paused = paused;
}

bool WindowKeeper::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::WindowStateChange:
        changed();
        break;
    case QEvent::Close:
        if (!m_paused) {
            store();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void WindowKeeper::restore()
{
    const QByteArray geometry = m_settings.getWindowGeometry();
    if (!geometry.isEmpty() && !m_window.restoreGeometry(geometry)) {
        m_settings.ignore(Settings::WindowGeometryKey);
    }
    const QByteArray state = m_settings.getWindowState();
    if (!state.isEmpty() && !m_window.restoreState(state)) {
        m_settings.ignore(Settings::WindowStateKey);
    }
}

void WindowKeeper::watchPanels()
{
    for (const QDockWidget* dock : m_window.findChildren<QDockWidget*>()) {
        connect(dock, &QDockWidget::dockLocationChanged, this, &WindowKeeper::changed);
        connect(dock, &QDockWidget::topLevelChanged, this, &WindowKeeper::changed);
        connect(dock, &QDockWidget::visibilityChanged, this, &WindowKeeper::changed);
    }
    for (const QToolBar* bar : m_window.findChildren<QToolBar*>()) {
        connect(bar, &QToolBar::visibilityChanged, this, &WindowKeeper::changed);
    }
}

void WindowKeeper::changed()
{
    // Showing a window for the first time and hiding it are no wishes about its panels.
    if (!m_paused && m_window.isVisible()) {
        m_timer.start();
    }
}

void WindowKeeper::store()
{
    m_timer.stop();
    m_settings.setWindowGeometry(m_window.saveGeometry());
    m_settings.setWindowState(m_window.saveState());
}

} // namespace quon::viewer
