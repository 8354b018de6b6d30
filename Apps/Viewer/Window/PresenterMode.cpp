// SPDX-License-Identifier: MIT
#include "Viewer/Window/PresenterMode.h"

#include "Viewer/Session/ViewerSession.h"

#include <Interaction/InteractionManager.h>

#include <QAction>
#include <QDockWidget>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

namespace quon::viewer {

PresenterMode::PresenterMode(QMainWindow& window, QWidget& view, ViewerSession& session)
    : m_window(window)
    , m_view(view)
    , m_session(session)
    , m_notice("presenter")
{
    // Keys go to the view; what nobody wants, wherever the focus is, comes up to the window.
    m_window.installEventFilter(this);
    m_view.installEventFilter(this);
}

PresenterMode::~PresenterMode()
{
    if (m_isOn) {
        m_session.getInteractionManager().setPresenterMode(false);
    }
}

void PresenterMode::enterLater()
{
    QMetaObject::invokeMethod(this, &PresenterMode::enter, Qt::QueuedConnection);
}

void PresenterMode::leave()
{
    if (!m_isOn) {
        return;
    }
    m_isOn = false;
    m_notice.hide();
    m_session.getInteractionManager().setPresenterMode(false);
    showAllAgain();
    emit changed();
}

void PresenterMode::retranslate()
{
    m_notice.setText(describe());
}

bool PresenterMode::eventFilter(QObject* object, QEvent* event)
{
    if (!m_isOn || event->type() != QEvent::KeyPress || !isWayBack(*static_cast<QKeyEvent*>(event))) {
        return QObject::eventFilter(object, event);
    }
    // The key that entered the mode may still be down, and repeats.
    if (!static_cast<QKeyEvent*>(event)->isAutoRepeat()) {
        leave();
    }
    return true;
}

void PresenterMode::enter()
{
    if (m_isOn) {
        return;
    }
    emit aboutToEnter();
    m_isOn = true;
    // Before the keys are held back: the releases of those that are down will not get through.
    m_session.focusLost();
    m_session.getInteractionManager().setPresenterMode(true);
    m_key = m_session.getBindings().getKey("presenter");
    hideAllButView();
    m_notice.show(describe());
    emit changed();
}

void PresenterMode::hideAllButView()
{
    m_panels = m_window.saveState();
    m_windowState = m_window.windowState();
    std::vector<QWidget*> widgets{m_window.menuBar(), m_window.statusBar()};
    for (QToolBar* bar : m_window.findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly)) {
        widgets.push_back(bar);
    }
    for (QDockWidget* dock : m_window.findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        widgets.push_back(dock);
    }
    m_hidden.clear();
    for (QWidget* widget : widgets) {
        if (!widget->isHidden()) {
            widget->hide();
            m_hidden.emplace_back(widget);
        }
    }
    m_disabled.clear();
    for (QAction* action : m_window.actions()) {
        // Those of the menus are out of reach with their menu bar.
        if (action->isEnabled()) {
            action->setEnabled(false);
            m_disabled.emplace_back(action);
        }
    }
    m_window.setWindowState(m_windowState | Qt::WindowFullScreen);
    m_view.setFocus();
}

void PresenterMode::showAllAgain()
{
    m_window.setWindowState(m_windowState);
    for (const QPointer<QWidget>& widget : m_hidden) {
        if (widget != nullptr) {
            widget->show();
        }
    }
    m_hidden.clear();
    for (const QPointer<QAction>& action : m_disabled) {
        if (action != nullptr) {
            action->setEnabled(true);
        }
    }
    m_disabled.clear();
    // Sizes and the order of tabs as well.
    m_window.restoreState(m_panels);
}

bool PresenterMode::isWayBack(const QKeyEvent& event) const
{
    if (event.key() == Qt::Key_Escape) {
        return true;
    }
    // As the mapper does: a key without modifiers counts whatever modifiers are held.
    const KeyBinding pressed = KeyBinding::fromEvent(event);
    return !m_key.isNone() && pressed.key == m_key.key &&
           (m_key.modifiers == 0 || pressed.modifiers == m_key.modifiers);
}

QString PresenterMode::describe() const
{
    const QString escape = QKeySequence(Qt::Key_Escape).toString(QKeySequence::NativeText);
    return m_key.isNone() || m_key.key == Qt::Key_Escape
               ? tr("Presenter mode: %1 ends it").arg(escape)
               : tr("Presenter mode: %1 or %2 ends it").arg(m_key.toText(), escape);
}

} // namespace quon::viewer
