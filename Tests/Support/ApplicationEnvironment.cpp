// SPDX-License-Identifier: MIT
#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

// The application object of a test program with widgets: made before the first test, gone after the last.
class ApplicationEnvironment : public ::testing::Environment {
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
        // Qt's advice about the platform is no output of the code under test.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        m_application = std::make_unique<QApplication>(m_argc, m_argv);
    }

    void TearDown() override { m_application.reset(); }

    int m_argc = 1;
    char m_name[5] = "test";
    char* m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QApplication> m_application;
};

[[maybe_unused]] const ::testing::Environment* const environment =
    ::testing::AddGlobalTestEnvironment(new ApplicationEnvironment);

} // namespace
