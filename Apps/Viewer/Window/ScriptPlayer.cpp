// SPDX-License-Identifier: MIT
#include "Viewer/Window/ScriptPlayer.h"

#include "Viewer/Script/ScriptRunner.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <QApplication>
#include <QKeyEvent>

namespace quon::viewer {

ScriptPlayer::ScriptPlayer(ViewerSession& session, Viewport& viewport)
    : m_session(session)
    , m_viewport(viewport)
{
    // One command after the other, however long each takes.
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ScriptPlayer::step);
    connect(&m_session, &ViewerSession::modelChanged, this, &ScriptPlayer::begin, Qt::QueuedConnection);
}

ScriptPlayer::~ScriptPlayer()
{
    stop();
}

void ScriptPlayer::play(const Script& script)
{
    stop();
    m_script = std::make_shared<Script>(script);
    begin();
}

void ScriptPlayer::begin()
{
    if (!isPlaying() || m_runner != nullptr || m_session.getModel() == osg::NullFC) {
        return;
    }
    m_runner = std::make_shared<ScriptRunner>(m_session, m_viewport, nullptr);
    m_next = 0;
    m_notification = notification::NotificationManager::getInstance()->createTextNotification("replay", "");
    retranslate();
    QApplication::instance()->installEventFilter(this);
    m_timer.start(0);
}

void ScriptPlayer::step()
{
    if (m_next >= m_script->getCommands().size()) {
        stop();
        emit finished();
        return;
    }
    const std::shared_ptr<const Script> script = m_script;
    const std::shared_ptr<ScriptRunner> runner = m_runner;
    try {
        runner->run(*script, script->getCommands()[m_next++]);
    } catch (const ViewerError& error) {
        stop();
        emit failed(error);
        return;
    }
    // The user may have ended the script meanwhile, or begun another one.
    if (runner == m_runner) {
        m_timer.start(m_pace);
    }
}

void ScriptPlayer::stop()
{
    m_timer.stop();
    m_script.reset();
    if (m_runner == nullptr) {
        return;
    }
    QApplication::instance()->removeEventFilter(this);
    m_runner.reset();
    notification::NotificationManager::getInstance()->removeNotification(m_notification);
    m_notification = nullptr;
}

void ScriptPlayer::retranslate()
{
    if (m_notification != nullptr) {
        m_notification->setText(tr("Replaying a recording, Escape ends it").toStdString());
    }
}

bool ScriptPlayer::eventFilter(QObject* watched, QEvent* event)
{
    // Qt sends these itself, when the user goes to another window or points to another widget.
    if (event->type() == QEvent::FocusOut || event->type() == QEvent::Leave) {
        return watched == &m_viewport && !m_runner->isSending(*event);
    }
    // The script's own events are not spontaneous: those of the window system are.
    if (!event->spontaneous() || !watched->isWidgetType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::KeyPress:
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            QMetaObject::invokeMethod(
                this,
                [this] {
                    if (isPlaying()) {
                        stop();
                        emit finished();
                    }
                },
                Qt::QueuedConnection);
        }
        return true;
    case QEvent::KeyRelease:
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::NativeGesture:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        return watched == &m_viewport;
    default:
        return false;
    }
}

} // namespace quon::viewer
