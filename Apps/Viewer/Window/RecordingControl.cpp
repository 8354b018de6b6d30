// SPDX-License-Identifier: MIT
#include "Viewer/Window/RecordingControl.h"

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/InputRecorder.h"
#include "Viewer/Session/ViewerSession.h"

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace quon::viewer {

RecordingControl::RecordingControl(ViewerSession& session, Viewport& viewport, std::function<QString()> modelName)
    : m_session(session)
    , m_viewport(viewport)
    , m_modelName(std::move(modelName))
{
    m_session.getCommands().setCommand(
        "record", {[this] { toggle(); }, [this] { return m_recorder != nullptr; },
                   [this] { return m_recorder != nullptr || m_session.getModel() != osg::NullFC; }});
    // Queued: whoever opens a model knows its name only afterwards.
    connect(&m_session, &ViewerSession::modelChanged, this, &RecordingControl::startWithModel, Qt::QueuedConnection);
}

RecordingControl::~RecordingControl()
{
    stop();
    m_session.getCommands().removeCommand("record");
}

void RecordingControl::setFileQuestion(std::function<std::string()> question)
{
    m_question = std::move(question);
}

void RecordingControl::setErrorReport(std::function<void(const QString&)> report)
{
    m_report = std::move(report);
}

void RecordingControl::record(std::unique_ptr<InputRecorder> recorder)
{
    stop();
    m_recorder = std::move(recorder);
    connect(m_recorder.get(), &InputRecorder::ended, this, &RecordingControl::recordingEnded);
    startWithModel();
}

bool RecordingControl::isRecording() const
{
    return m_recorder != nullptr && m_recorder->isRecording();
}

void RecordingControl::retranslate()
{
    if (m_notification != nullptr) {
        m_notification->setText(tr("Recording input to %1")
                                    .arg(QFileInfo(QFile::decodeName(m_recorder->getFile().c_str())).fileName())
                                    .toStdString());
    }
}

void RecordingControl::toggle()
{
    if (m_recorder != nullptr) {
        // The last line may be the first one that found no room.
        m_recorder->stop();
        recordingEnded();
        return;
    }
    const std::string file = m_question ? m_question() : std::string();
    if (file.empty()) {
        return;
    }
    try {
        record(std::make_unique<InputRecorder>(file));
    } catch (const ViewerError& error) {
        if (m_report) {
            m_report(QString::fromStdString(error.what()));
        }
    }
}

void RecordingControl::startWithModel()
{
    if (m_recorder == nullptr || m_recorder->isRecording() || m_session.getModel() == osg::NullFC) {
        return;
    }
    m_recorder->start(m_session, m_viewport, m_modelName().toStdString());
    m_notification = notification::NotificationManager::getInstance()->createTextNotification("recording", "");
    retranslate();
}

void RecordingControl::stop()
{
    if (m_recorder == nullptr) {
        return;
    }
    m_recorder->stop();
    notification::NotificationManager::getInstance()->removeNotification(m_notification);
    m_notification = nullptr;
    // Later: the recorder may be the one that calls.
    m_recorder.release()->deleteLater();
}

void RecordingControl::recordingEnded()
{
    const QString error = QString::fromStdString(m_recorder->getError());
    stop();
    if (m_report && !error.isEmpty()) {
        m_report(error);
    }
}

} // namespace quon::viewer
