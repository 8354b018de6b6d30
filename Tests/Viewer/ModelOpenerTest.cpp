// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/LoadGate.h"
#include "Support/TemporaryFolder.h"

#include "Viewer/Model/ModelReader.h"
#include "Viewer/Window/ModelOpener.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using viewer::LoadControl;
using viewer::LoadedModel;
using viewer::ModelOpener;
using viewer::ModelReader;

const char* const Triangle = "o first\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

class ModelOpenerTest : public SceneFixture {
protected:
    ModelOpenerTest()
        : m_opener(std::make_unique<ModelOpener>())
    {
        QObject::connect(m_opener.get(), &ModelOpener::started,
                         [this](const QString& name) { m_events.push_back("started " + name.toStdString()); });
        QObject::connect(m_opener.get(), &ModelOpener::ended, [this] { m_events.emplace_back("ended"); });
        QObject::connect(m_opener.get(), &ModelOpener::opened,
                         [this](const LoadedModel& model) { m_events.push_back("opened " + model.file); });
        QObject::connect(m_opener.get(), &ModelOpener::failed,
                         [this](const QString& line) { m_events.push_back("failed " + line.toStdString()); });
        QObject::connect(m_opener.get(), &ModelOpener::cancelled, [this] { m_events.emplace_back("cancelled"); });
    }

    void waitForEnd() const
    {
        while (m_opener->isLoading()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    TemporaryFolder m_folder;
    LoadGate m_gate; ///< outlives whoever waits at it
    std::vector<std::string> m_events;
    std::unique_ptr<ModelOpener> m_opener;
};

TEST_F(ModelOpenerTest, AFileIsOpened)
{
    const std::string file = m_folder.write("plate.obj", Triangle);

    m_opener->open(file);
    EXPECT_TRUE(m_opener->isLoading());
    waitForEnd();

    EXPECT_THAT(m_events, ElementsAre("started plate.obj", "ended", "opened " + file));
}

TEST_F(ModelOpenerTest, AFileThatCannotBeReadFails)
{
    const std::string file = m_folder.write("plate.obj", "");

    m_opener->open(file);
    waitForEnd();

    EXPECT_THAT(m_events, ElementsAre("started plate.obj", "ended", "failed " + file + ": is empty"));
}

TEST_F(ModelOpenerTest, ALoadCanBeCancelled)
{
    m_opener->setRead([&](const std::string& file, const LoadControl& control) {
        m_gate.pass(control);
        return ModelReader::read(file, control);
    });

    m_opener->open("plate.obj");
    m_opener->cancel();

    EXPECT_FALSE(m_opener->isLoading());
    EXPECT_THAT(m_events, ElementsAre("started plate.obj", "ended", "cancelled"));
    m_opener->cancel();
    EXPECT_EQ(m_events.size(), 3U);
}

TEST_F(ModelOpenerTest, TheSecondOfTwoLoadsCancelsTheFirstEvenIfThatDoesNotListen)
{
    const std::string second = m_folder.write("second.obj", Triangle);
    m_opener->setRead([&](const std::string& file, const LoadControl& control) {
        if (file == "first.obj") {
            m_gate.passStubbornly();
        }
        return ModelReader::read(file, control);
    });

    m_opener->open("first.obj");
    m_opener->open(second);
    waitForEnd();
    m_gate.open();

    EXPECT_THAT(m_events, ElementsAre("started first.obj", "ended", "cancelled", "started second.obj", "ended",
                                      "opened " + second));
}

TEST_F(ModelOpenerTest, OneLoadAfterTheOtherOpensBoth)
{
    const std::string first = m_folder.write("first.obj", Triangle);
    const std::string second = m_folder.write("second.obj", Triangle);

    m_opener->open(first);
    waitForEnd();
    m_opener->open(second);
    waitForEnd();

    EXPECT_THAT(m_events, ElementsAre("started first.obj", "ended", "opened " + first, "started second.obj", "ended",
                                      "opened " + second));
}

TEST_F(ModelOpenerTest, JobsAreGoneOnceTheyHaveEnded)
{
    m_opener->open(m_folder.write("plate.obj", Triangle));
    waitForEnd();
    while (!m_opener->children().isEmpty()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(ModelOpenerTest, DestroyedDuringLoadsItStopsThem)
{
    std::atomic<int> readers{0};
    std::atomic<int> left{0};
    m_opener->setRead([&](const std::string&, const LoadControl& control) -> viewer::ModelData {
        struct Leave {
            std::atomic<int>& left;
            ~Leave() { ++left; }
        } leave{left};
        ++readers;
        m_gate.pass(control);
        return {};
    });
    m_opener->open("first.obj");
    m_opener->open("second.obj");

    m_opener.reset();

    EXPECT_EQ(left, readers);
    EXPECT_EQ(readers, 2);
    EXPECT_THAT(m_events, ElementsAre("started first.obj", "ended", "cancelled", "started second.obj"));
}

TEST_F(ModelOpenerTest, TheFileDialogHasFiltersForWhatCanBeRead)
{
    const QStringList filters = ModelOpener::getNameFilters();

    ASSERT_GT(filters.size(), 10);
    EXPECT_THAT(filters.front().toStdString(), StartsWith("All models (*."));
    EXPECT_THAT(filters.front().toStdString(), HasSubstr("*.glb"));
    EXPECT_THAT(filters.front().toStdString(), HasSubstr("*.obj"));
    EXPECT_EQ(filters.back(), QStringLiteral("All files (*)"));
    EXPECT_TRUE(filters.contains(QStringLiteral("Wavefront Object (*.obj)")));
    for (const QString& filter : filters) {
        EXPECT_EQ(filter.count(QLatin1Char('(')), 1) << filter.toStdString();
    }
}

} // namespace

} // namespace quon::testing
