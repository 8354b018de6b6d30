// SPDX-License-Identifier: MIT
#include "Viewer/Window/PresenterMode.h"

#include "Viewer/Session/ViewerSession.h"

#include <Interaction/InteractionManager.h>

#include <QAction>
#include <QDockWidget>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenuBar>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>

namespace quon::viewer {

PresenterMode::PresenterMode(QMainWindow& window, QWidget& view, ViewerSession& session)
    : m_window(window)
    , m_view(view)
    , m_session(session)
    , m_key(new QShortcut(&window))
    , m_escape(new QShortcut(Qt::Key_Escape, &window))
    , m_notice("presenter")
{
    for (QShortcut* shortcut : {m_key, m_escape}) {
        shortcut->setEnabled(false);
        // The key that entered the mode may still be down.
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, this, &PresenterMode::leave);
    }
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
    m_key->setEnabled(false);
    m_escape->setEnabled(false);
    m_notice.hide();
    m_session.getInteractionManager().setPresenterMode(false);
    showAllAgain();
    emit changed();
}

void PresenterMode::retranslate()
{
    m_notice.setText(describe());
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
    const KeyBinding key = m_session.getBindings().getKey("presenter");
    // Two shortcuts of the same key would be ambiguous, and neither would be activated.
    const bool hasKeyOfItsOwn = !key.isNone() && key != KeyBinding{Qt::Key_Escape, Qt::NoModifier};
    m_key->setKey(hasKeyOfItsOwn ? QKeySequence(key.key | key.modifiers) : QKeySequence());
    m_key->setEnabled(hasKeyOfItsOwn);
    m_escape->setEnabled(true);
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

QString PresenterMode::describe() const
{
    const QString escape = QKeySequence(Qt::Key_Escape).toString(QKeySequence::NativeText);
    return m_key->isEnabled()
               ? tr("Presenter mode: %1 or %2 ends it").arg(m_key->key().toString(QKeySequence::NativeText), escape)
               : tr("Presenter mode: %1 ends it").arg(escape);
}

} // namespace quon::viewer
