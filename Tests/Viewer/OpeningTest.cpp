// SPDX-License-Identifier: MIT
#include <InteractionTesting/LiveContainers.h>

#include "Support/LoadGate.h"
#include "Support/TemporaryFolder.h"
#include "Support/UserInput.h"

#include "Viewer/Model/ModelReader.h"
#include "Viewer/Session/Settings.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/LoadProgress.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/MessageBar.h"
#include "Viewer/Window/RecentFilesMenu.h"
#include "Viewer/Window/StartPage.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <QUrl>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using viewer::LoadControl;
using viewer::ModelReader;

const char* const Plate = "o plate\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nf 1 2 3 4\n";

// The user at the window, opening models in every way there is.
class OpeningTest : public ::testing::Test {
protected:
    OpeningTest()
        : m_settings(QString::fromStdString(m_folder.path("settings.ini")))
        , m_plate(m_folder.write("plate.obj", Plate))
        , m_other(m_folder.write("other.obj", Plate))
        , m_window(std::make_unique<viewer::MainWindow>(m_session))
    {
        m_window->useSettings(m_settings);
        m_window->show();
    }

    void waitForEnd() const
    {
        while (m_window->getOpener().isLoading()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    void drop(const std::string& file)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(file))});
        QDragEnterEvent enter(m_window->rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_window.get(), &enter);
        QDropEvent event(m_window->rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_window.get(), &event);
    }

    // Lets reading wait at the gate.
    void holdUp()
    {
        m_window->getOpener().setRead([this](const std::string& file, const LoadControl& control) {
            m_gate.pass(control);
            return ModelReader::read(file, control);
        });
    }

    std::string message() const
    {
        const viewer::MessageBar& messages = m_window->getMessages();
        return messages.isVisible() ? messages.getText().toStdString() : std::string();
    }

    std::vector<std::string> statusTexts() const
    {
        std::vector<std::string> texts;
        for (const QLabel* label : m_window->statusBar()->findChildren<QLabel*>()) {
            texts.push_back(label->text().toStdString());
        }
        return texts;
    }

    std::string title() const { return m_window->windowTitle().toStdString(); }

    TemporaryFolder m_folder;
    LoadGate m_gate; ///< outlives whoever waits at it
    viewer::Settings m_settings;
    std::string m_plate;
    std::string m_other;
    viewer::ViewerSession m_session;
    std::unique_ptr<viewer::MainWindow> m_window;
};

TEST_F(OpeningTest, ADroppedFileIsShownWithItsNameSizeAndParts)
{
    drop(m_plate);
    waitForEnd();

    EXPECT_EQ(title(), "plate.obj - koviewer");
    EXPECT_NE(m_session.getModel(), osg::NullFC);
    EXPECT_THAT(statusTexts(), Contains("2.000 × 2.000 × 0 units"));
    EXPECT_FALSE(m_window->findChild<viewer::StartPage*>()->isVisible());
    EXPECT_EQ(message(), "");
    EXPECT_THAT(m_window->getRecentFiles().getFiles(), ElementsAre(QString::fromStdString(m_plate)));
}

TEST_F(OpeningTest, TheSceneCanBeUsedDuringALoad)
{
    m_window->open(m_plate);
    holdUp();
    drop(m_other);
    const osg::NodePtr model = m_session.getModel();
    m_session.getCamera().setStandardView("front");
    EXPECT_TRUE(m_window->findChild<viewer::LoadProgress*>()->isVisible());

    UserInput(m_window->getViewport()).click(m_window->getViewport().rect().center());

    EXPECT_EQ(m_session.getSelection().getSelection().size(), 1U);
    EXPECT_EQ(m_session.getModel(), model);
    EXPECT_EQ(title(), "plate.obj - koviewer");
    m_gate.open();
    waitForEnd();
    EXPECT_EQ(title(), "other.obj - koviewer");
    EXPECT_FALSE(m_window->findChild<viewer::LoadProgress*>()->isVisible());
}

TEST_F(OpeningTest, AFileThatCannotBeReadChangesNothingAndIsToldInTheWindow)
{
    m_window->open(m_plate);
    m_session.toggleNode(m_session.findNode("plate"));
    const osg::NodePtr model = m_session.getModel();
    const std::string bad = m_folder.write("bad.glb", "no model at all");

    drop(bad);
    waitForEnd();

    EXPECT_EQ(message(), bad + ": is damaged, or not of the format that its name says");
    EXPECT_EQ(m_session.getModel(), model);
    EXPECT_EQ(m_session.getSelection().getSelection().size(), 1U);
    EXPECT_TRUE(m_window->getAction("undo")->isEnabled());
    EXPECT_EQ(title(), "plate.obj - koviewer");
    EXPECT_EQ(m_window->getRecentFiles().getFiles().size(), 1);
}

TEST_F(OpeningTest, ACancelledLoadChangesNothing)
{
    m_window->open(m_plate);
    const osg::NodePtr model = m_session.getModel();
    holdUp();
    drop(m_other);

    QTest::mouseClick(m_window->findChild<viewer::LoadProgress*>()->findChild<QPushButton*>(), Qt::LeftButton);

    EXPECT_FALSE(m_window->getOpener().isLoading());
    EXPECT_EQ(m_session.getModel(), model);
    EXPECT_EQ(title(), "plate.obj - koviewer");
    EXPECT_EQ(message(), "");
}

TEST_F(OpeningTest, TheSecondOfTwoDroppedFilesIsShown)
{
    holdUp();

    drop(m_plate);
    drop(m_other);
    m_gate.open();
    waitForEnd();

    EXPECT_EQ(title(), "other.obj - koviewer");
    EXPECT_THAT(m_window->getRecentFiles().getFiles(), ElementsAre(QString::fromStdString(m_other)));
}

TEST_F(OpeningTest, AWindowClosedDuringALoadStopsItAndLeavesNothing)
{
    const std::size_t before = countLiveContainers();
    holdUp();
    drop(m_plate);

    m_window->close();
    EXPECT_FALSE(m_window->getOpener().isLoading());
    m_window.reset();

    EXPECT_EQ(m_session.getModel(), osg::NullFC);
    EXPECT_LE(countLiveContainers(), before);
}

TEST_F(OpeningTest, AWindowDestroyedWhileTheSceneIsBuiltLeavesNothing)
{
    const std::size_t before = countLiveContainers();
    std::string parts = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    for (int i = 0; i < 100; ++i) {
        parts += "o part" + std::to_string(i) + "\nf 1 2 3\n";
    }
    m_window->getOpener().setSlice(std::chrono::milliseconds(0));
    bool building = false;
    QObject::connect(&m_window->getOpener(), &viewer::ModelOpener::progressed, [&](const QString& text, double) {
        building = building || text.startsWith(QStringLiteral("Building"));
    });
    drop(m_folder.write("parts.obj", parts));
    while (!building && m_window->getOpener().isLoading()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    ASSERT_TRUE(m_window->getOpener().isLoading());

    m_window.reset();

    EXPECT_EQ(m_session.getModel(), osg::NullFC);
    EXPECT_LE(countLiveContainers(), before);
}

TEST_F(OpeningTest, AModelWithoutAllOfItsFilesIsShownAndSaysSo)
{
    drop(m_folder.write("red.obj", std::string("mtllib red.mtl\n") + Plate));
    waitForEnd();

    EXPECT_EQ(message(), "red.obj was loaded in part. The file red.mtl is missing.");
    EXPECT_EQ(title(), "red.obj - koviewer");
}

TEST_F(OpeningTest, ARecentFileIsOpenedAgainFromTheMenu)
{
    m_window->open(m_plate);
    m_window->open(m_other);
    auto* menu = m_window->findChild<viewer::RecentFilesMenu*>();

    menu->popup(QPoint(0, 0));
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(menu->actions().at(1)).center());
    QCoreApplication::processEvents();
    waitForEnd();

    EXPECT_EQ(title(), "plate.obj - koviewer");
    EXPECT_EQ(m_window->getRecentFiles().getFiles().front(), QString::fromStdString(m_plate));
}

TEST_F(OpeningTest, ARecentFileThatIsGoneIsTakenOffTheList)
{
    m_window->open(m_plate);
    m_window->open(m_other);
    std::remove(m_plate.c_str());
    auto* menu = m_window->findChild<viewer::RecentFilesMenu*>();

    menu->popup(QPoint(0, 0));
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(menu->actions().at(1)).center());
    QCoreApplication::processEvents();

    EXPECT_EQ(message(), m_plate + " is no longer there and was taken off the recent files.");
    EXPECT_THAT(m_window->getRecentFiles().getFiles(), ElementsAre(QString::fromStdString(m_other)));
    EXPECT_EQ(title(), "other.obj - koviewer");
}

TEST_F(OpeningTest, ThePageWithoutAModelOpensAndGenerates)
{
    auto* page = m_window->findChild<viewer::StartPage*>();
    EXPECT_TRUE(page->isVisible());

    QTest::mouseClick(page->findChild<QPushButton*>(QStringLiteral("startAssembly")), Qt::LeftButton);

    EXPECT_FALSE(page->isVisible());
    EXPECT_THAT(statusTexts(), Contains("2000 parts"));
    EXPECT_EQ(title(), "Assembly - koviewer");
}

TEST_F(OpeningTest, TheFileDialogRemembersItsFolderAndOpensWhatIsChosen)
{
    auto* page = m_window->findChild<viewer::StartPage*>();
    QTest::mouseClick(page->findChild<QPushButton*>(QStringLiteral("startOpen")), Qt::LeftButton);
    auto* dialog = m_window->findChild<QFileDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->nameFilters().front().startsWith(QStringLiteral("All models (")));

    dialog->findChild<QLineEdit*>()->setText(QString::fromStdString(m_plate));
    QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
    waitForEnd();

    EXPECT_EQ(title(), "plate.obj - koviewer");
    EXPECT_EQ(m_settings.getStore()->value(QStringLiteral("folder")).toString(),
              QFileInfo(QString::fromStdString(m_plate)).absolutePath());
}

} // namespace

} // namespace quon::testing
