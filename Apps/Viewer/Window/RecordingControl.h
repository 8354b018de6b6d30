// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>

namespace quon::notification {
class TextNotification;
}

namespace quon::viewer {

class InputRecorder;
class ViewerSession;
class Viewport;

/** The command "record" of a window: a switch that asks for a file and writes the input into it. */
class RecordingControl : public QObject {
    Q_OBJECT

public:
    /**
     * Adds the command.
     *
     * @param session, viewport borrowed, must outlive the control
     * @param modelName what recordings call the model that is shown
     */
    RecordingControl(ViewerSession& session, Viewport& viewport, std::function<QString()> modelName);

    /** Ends the recording and takes the command away. */
    ~RecordingControl() override;

    RecordingControl(const RecordingControl&) = delete;
    RecordingControl& operator=(const RecordingControl&) = delete;

    /** Sets who is asked for the name of a file, in the encoding of the file system; empty for none. */
    void setFileQuestion(std::function<std::string()> question);

    /** Sets who shows one line about a recording that went wrong. */
    void setErrorReport(std::function<void(const QString&)> report);

    /** Records into an open file, at once or, without a model, from the next one on. */
    void record(std::unique_ptr<InputRecorder> recorder);

    bool isRecording() const;

    /** Shows its text anew, after the language changed. */
    void retranslate();

private:
    void toggle();
    void startWithModel();
    void stop();
    void recordingEnded();

    ViewerSession& m_session;
    Viewport& m_viewport;
    std::function<QString()> m_modelName;
    std::function<std::string()> m_question;
    std::function<void(const QString&)> m_report;
    std::unique_ptr<InputRecorder> m_recorder; ///< null while nothing is recorded
    notification::TextNotification* m_notification = nullptr;
};

} // namespace quon::viewer
