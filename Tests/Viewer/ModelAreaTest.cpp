// SPDX-License-Identifier: MIT
#include "Support/LoadGate.h"

#include "Viewer/Window/LoadProgress.h"
#include "Viewer/Window/MessageBar.h"
#include "Viewer/Window/ModelArea.h"
#include "Viewer/Window/ModelOpener.h"
#include "Viewer/Window/RecentFiles.h"
#include "Viewer/Window/StartPage.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::LoadControl;

class ModelAreaTest : public ::testing::Test {
protected:
    ModelAreaTest()
        : m_view(new QWidget)
        , m_area(new viewer::ModelArea(m_view, m_opener, m_files, &m_window))
    {
        m_view->setFocusPolicy(Qt::StrongFocus);
        (new QVBoxLayout(&m_window))->addWidget(m_area);
        m_area->takeDropsOf(&m_window);
        QObject::connect(m_area, &viewer::ModelArea::fileDropped,
                         [this](const QString& file) { m_dropped.push_back(file.toStdString()); });
        m_window.resize(700, 600);
        m_window.show();
    }

    ~ModelAreaTest() override { delete m_area; }

    // Drags over the window and drops there, as the window system tells it; false when the window did not want it.
    bool drop(const QMimeData& data)
    {
        QDragEnterEvent enter(m_window.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_window, &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDropEvent event(m_window.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_window, &event);
        EXPECT_TRUE(event.isAccepted());
        return true;
    }

    std::string message() const
    {
        return m_area->getMessages().isVisible() ? m_area->getMessages().getText().toStdString() : std::string();
    }

    LoadGate m_gate; ///< outlives whoever waits at it
    viewer::ModelOpener m_opener;
    viewer::RecentFiles m_files;
    QWidget m_window;
    QWidget* m_view;
    viewer::ModelArea* m_area;
    std::vector<std::string> m_dropped;
};

TEST_F(ModelAreaTest, OneLocalFileIsTaken)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a/my model.obj"))});

    EXPECT_TRUE(drop(data));

    EXPECT_THAT(m_dropped, ElementsAre("/a/my model.obj"));
    EXPECT_EQ(message(), "");
}

TEST_F(ModelAreaTest, WhatIsNotOneLocalFileIsToldApart)
{
    QMimeData several;
    several.setUrls({QUrl::fromLocalFile(QStringLiteral("/a/a.obj")), QUrl::fromLocalFile(QStringLiteral("/a/b.obj"))});
    EXPECT_TRUE(drop(several));
    EXPECT_EQ(message(), "Drop one model at a time.");

    QMimeData remote;
    remote.setUrls({QUrl(QStringLiteral("https://example.org/a.obj"))});
    EXPECT_TRUE(drop(remote));
    EXPECT_EQ(message(), "https://example.org/a.obj is not a file on this computer.");

    QMimeData text;
    text.setText(QStringLiteral("a.obj"));
    EXPECT_TRUE(drop(text));
    EXPECT_EQ(message(), "What was dropped is not a file.");

    QMimeData picture;
    picture.setImageData(QImage(2, 2, QImage::Format_RGB32));
    EXPECT_FALSE(drop(picture));
    EXPECT_THAT(m_dropped, IsEmpty());
}

TEST_F(ModelAreaTest, ThePageShowsThatAFileCanBeDropped)
{
    viewer::StartPage& page = m_area->getStartPage();
    const QImage before = page.grab().toImage();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/a/a.obj"))});

    QDragEnterEvent enter(m_window.rect().center(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_window, &enter);
    EXPECT_NE(page.grab().toImage(), before);

    QDragLeaveEvent leave;
    QApplication::sendEvent(&m_window, &leave);
    EXPECT_EQ(page.grab().toImage(), before);
}

TEST_F(ModelAreaTest, ThePageMakesRoomForTheModelAndComesBackWithoutIt)
{
    m_area->getStartPage().setFocus();
    EXPECT_TRUE(m_area->getStartPage().isVisible());

    m_area->setModelShown(true);
    EXPECT_FALSE(m_area->getStartPage().isVisible());
    EXPECT_TRUE(m_view->isVisible());
    EXPECT_EQ(m_window.focusWidget(), m_view);
    EXPECT_EQ(m_view->size(), m_area->size());

    m_area->setModelShown(false);
    EXPECT_TRUE(m_area->getStartPage().isVisible());
}

TEST_F(ModelAreaTest, TheCancelButtonEndsALoad)
{
    m_opener.setRead([&](const std::string&, const LoadControl& control) -> viewer::ModelData {
        m_gate.pass(control);
        return {};
    });
    m_area->getMessages().showMessage(viewer::MessageBar::Kind::Error, QStringLiteral("An old message."));
    auto* progress = m_area->findChild<viewer::LoadProgress*>();
    EXPECT_FALSE(progress->isVisible());

    m_opener.open("plate.obj");
    EXPECT_TRUE(progress->isVisible());
    EXPECT_FALSE(m_area->getMessages().isVisible());

    QTest::mouseClick(progress->findChild<QPushButton*>(), Qt::LeftButton);
    EXPECT_FALSE(m_opener.isLoading());
    EXPECT_FALSE(progress->isVisible());
}

} // namespace

} // namespace quon::testing
