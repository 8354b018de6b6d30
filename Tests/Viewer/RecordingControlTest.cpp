// SPDX-License-Identifier: MIT
#include "Support/NotificationTexts.h"
#include "Support/TemporaryFolder.h"
#include "Support/UserInput.h"

#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Script/InputRecorder.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/RecordingControl.h"
#include "Viewer/Window/Viewport.h"

#include <QApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class RecordingControlTest : public ::testing::Test {
protected:
    RecordingControlTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
        , m_control(std::make_unique<viewer::RecordingControl>(m_session, m_viewport,
                                                               [] { return QStringLiteral("engine.glb"); }))
    {
        m_viewport.show();
        m_control->setFileQuestion([this] { return m_answer; });
        m_control->setErrorReport([this](const QString& line) { m_errors.push_back(line.toStdString()); });
    }

    void setModel()
    {
        const osg::RefPtr<osg::NodePtr> model = viewer::AssemblyGenerator::generate(3);
        m_session.setModel(model.get());
        QApplication::processEvents();
    }

    static std::vector<std::string> notifications() { return getNotificationTexts(); }

    TemporaryFolder m_folder;
    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;
    std::unique_ptr<viewer::RecordingControl> m_control;
    std::string m_answer;
    std::vector<std::string> m_errors;
};

TEST_F(RecordingControlTest, TheCommandIsASwitchThatNeedsAModel)
{
    EXPECT_FALSE(m_session.getCommands().isAvailable("record"));
    setModel();
    EXPECT_TRUE(m_session.getCommands().isAvailable("record"));
    m_control.reset();
    EXPECT_FALSE(m_session.getCommands().isSwitch("record"));
}

TEST_F(RecordingControlTest, OnItAsksForAFileAndOffItEndsTheRecording)
{
    setModel();
    m_answer = m_folder.path("recording.txt");

    m_session.sendCommand("record");
    EXPECT_TRUE(m_session.getCommands().isChecked("record"));
    EXPECT_TRUE(m_control->isRecording());
    EXPECT_THAT(notifications(), Contains("Recording input to recording.txt"));
    m_user.press(QPoint(10, 10));
    m_session.sendCommand("record");
    m_user.release(QPoint(10, 10));

    EXPECT_FALSE(m_session.getCommands().isChecked("record"));
    EXPECT_FALSE(m_session.getTrace().isListening());
    EXPECT_THAT(notifications(), Not(Contains(StartsWith("Recording"))));
    const std::string text = m_folder.read("recording.txt");
    EXPECT_THAT(text, HasSubstr("# Model: engine.glb\n"));
    EXPECT_THAT(text, HasSubstr("press 10 10  # tool:select start (tools)\n"));
    EXPECT_THAT(text, Not(HasSubstr("release")));
    // A replay must not begin to record.
    EXPECT_THAT(text, Not(HasSubstr("command record")));
}

TEST_F(RecordingControlTest, WhoNamesNoFileRecordsNothing)
{
    setModel();

    m_session.sendCommand("record");

    EXPECT_FALSE(m_session.getCommands().isChecked("record"));
    EXPECT_THAT(m_errors, IsEmpty());
}

TEST_F(RecordingControlTest, AFileThatCannotBeWrittenIsReportedInOneLine)
{
    setModel();
    m_answer = m_folder.path("none/recording.txt");

    m_session.sendCommand("record");

    EXPECT_FALSE(m_session.getCommands().isChecked("record"));
    EXPECT_THAT(m_errors, ElementsAre(m_answer + ": cannot be written: No such file or directory"));
}

TEST_F(RecordingControlTest, AFullDiskEndsTheRecordingWithAReport)
{
    setModel();
    m_answer = "/dev/full";

    m_session.sendCommand("record");
    QApplication::processEvents();

    EXPECT_FALSE(m_session.getCommands().isChecked("record"));
    EXPECT_THAT(m_errors, ElementsAre("/dev/full: cannot be written: No space left on device"));
}

TEST_F(RecordingControlTest, AFullDiskIsReportedToWhoEndsTheRecordingAtOnce)
{
    setModel();
    m_answer = "/dev/full";

    m_session.sendCommand("record");
    m_session.sendCommand("record");
    QApplication::processEvents();

    EXPECT_FALSE(m_session.getCommands().isChecked("record"));
    EXPECT_THAT(m_errors, ElementsAre("/dev/full: cannot be written: No space left on device"));
}

TEST_F(RecordingControlTest, WithoutAModelItBeginsWithTheNextOneAndEndsWithAnother)
{
    m_control->record(std::make_unique<viewer::InputRecorder>(m_folder.path("recording.txt")));
    EXPECT_FALSE(m_control->isRecording());

    setModel();
    EXPECT_TRUE(m_control->isRecording());

    setModel();
    EXPECT_FALSE(m_control->isRecording());
    EXPECT_FALSE(m_session.getCommands().isChecked("record"));
    EXPECT_THAT(m_errors, IsEmpty());
}

} // namespace

} // namespace quon::testing
