// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/LoadGate.h"
#include "Support/TemporaryFolder.h"

#include "Viewer/Model/LoadJob.h"
#include "Viewer/Model/ModelReader.h"
#include "Viewer/Model/ViewerError.h"

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGGL.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::LoadCancelled;
using viewer::LoadControl;
using viewer::LoadedModel;
using viewer::LoadJob;
using viewer::ModelData;
using Step = viewer::LoadControl::Step;

const char* const Triangle = "o first\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

// Many parts of one triangle each.
ModelData makeData(const std::size_t parts)
{
    ModelData data;
    data.nodes.resize(parts + 1);
    data.meshes.resize(parts);
    for (std::size_t i = 0; i < parts; ++i) {
        data.meshes[i].primitive = GL_TRIANGLES;
        data.meshes[i].positions = {osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 0, 0), osg::Pnt3f(0, 1, 0)};
        data.meshes[i].indices = {0, 1, 2};
        data.nodes[i + 1].meshes = {i};
    }
    return data;
}

class LoadJobTest : public SceneFixture {
protected:
    // Everything that a job tells, in order; progress only with its text, and each text once in a row.
    void listenTo(LoadJob& job)
    {
        QObject::connect(&job, &LoadJob::progressed, [this](const QString& text, const double share) {
            EXPECT_LE(share, 1);
            const std::string step = text.toStdString();
            if (m_events.empty() || m_events.back() != step) {
                m_events.push_back(step);
            }
        });
        QObject::connect(&job, &LoadJob::finished, [this](const LoadedModel& model) {
            m_events.emplace_back("finished");
            m_model = model;
        });
        QObject::connect(&job, &LoadJob::failed,
                         [this](const QString& line) { m_events.push_back("failed: " + line.toStdString()); });
        QObject::connect(&job, &LoadJob::cancelled, [this] { m_events.emplace_back("cancelled"); });
        QObject::connect(&job, &LoadJob::settled, [this] { m_events.emplace_back("settled"); });
    }

    // Lets events be handled until the condition holds.
    template <class Condition>
    static void waitUntil(const Condition& condition)
    {
        while (!condition()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    static void waitUntilSettled(const LoadJob& job)
    {
        waitUntil([&] { return job.isSettled(); });
        QCoreApplication::processEvents();
    }

    TemporaryFolder m_folder;
    std::vector<std::string> m_events;
    LoadedModel m_model;
};

TEST_F(LoadJobTest, ReadsPreparesBuildsAndFinishes)
{
    const std::string file = m_folder.write("plate.obj", Triangle);
    LoadJob job(file);
    listenTo(job);

    job.start();
    EXPECT_TRUE(job.isActive());
    waitUntilSettled(job);

    ASSERT_GE(m_events.size(), 4U);
    EXPECT_EQ(m_events.front(), "Reading plate.obj");
    EXPECT_EQ(m_events[m_events.size() - 3], "Building the scene: 1 of 1 parts");
    EXPECT_EQ(m_events[m_events.size() - 2], "finished");
    EXPECT_EQ(m_events.back(), "settled");
    EXPECT_FALSE(job.isActive());
    EXPECT_EQ(job.getFile(), file);
    EXPECT_EQ(m_model.file, file);
    EXPECT_EQ(m_model.parts, 1U);
    ASSERT_NE(m_model.root, osg::NullFC);
    EXPECT_EQ(NodeUtils::getName(m_model.root.get()), "plate.obj");
}

TEST_F(LoadJobTest, ProgressArrivesInTheOrderOfTheSteps)
{
    LoadGate first;
    LoadGate second;
    LoadJob job("plate.obj", [&](const std::string&, const LoadControl& control) {
        control.report(Step::Reading, 0.5);
        first.pass(control);
        control.report(Step::Preparing, 0.5);
        second.pass(control);
        return makeData(2);
    });
    listenTo(job);
    std::vector<double> shares;
    QObject::connect(&job, &LoadJob::progressed, [&](const QString&, const double share) { shares.push_back(share); });

    job.start();
    waitUntil([&] { return shares.size() == 2; });
    first.open();
    waitUntil([&] { return shares.size() == 3; });
    second.open();
    waitUntilSettled(job);

    EXPECT_THAT(m_events,
                ElementsAre("Reading plate.obj", "Preparing plate.obj", "Preparing the selection in plate.obj",
                            "Building the scene: 2 of 2 parts", "finished", "settled"));
    ASSERT_GE(shares.size(), 5U);
    EXPECT_THAT(std::vector<double>(shares.begin(), shares.begin() + 3), ElementsAre(0, 0.5, 0.5));
    EXPECT_EQ(shares.back(), 1);
}

TEST_F(LoadJobTest, WhatChangesQuicklyIsNotToldEveryTime)
{
    constexpr int Reports = 1000;
    int reports = 0;
    LoadJob job("plates.obj", [&](const std::string&, const LoadControl& control) {
        for (; reports < Reports; ++reports) {
            control.report(Step::Reading, static_cast<double>(reports) / Reports);
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
        return makeData(1);
    });
    int told = 0;
    QObject::connect(&job, &LoadJob::progressed, [&] { ++told; });

    job.start();
    waitUntilSettled(job);

    EXPECT_EQ(reports, Reports);
    EXPECT_LT(told, Reports / 2);
    EXPECT_GT(told, 2);
}

TEST_F(LoadJobTest, TheModelComesWithTheContentsOfItsGeometries)
{
    LoadJob job("plates.obj", [&](const std::string&, const LoadControl&) { return makeData(3); });
    listenTo(job);

    job.start();
    waitUntilSettled(job);

    ASSERT_NE(m_model.root, osg::NullFC);
    const osg::NodePtr part = m_model.root->getChild(0)->getChild(2);
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(part->getChild(0)->getCore());
    const auto content = viewer::PreparedGeometries::read(&m_model.prepared, geometry);
    EXPECT_EQ(content, viewer::PreparedGeometries::read(&m_model.prepared, geometry));
    EXPECT_NE(content, viewer::PreparedGeometries::read(nullptr, geometry));
    EXPECT_THAT(content->getData().triangles, ElementsAre(0, 1, 2));
}

TEST_F(LoadJobTest, CancelledWhileTheSelectionIsPreparedItEnds)
{
    LoadJob job("plates.obj", [&](const std::string&, const LoadControl&) { return makeData(50000); });
    listenTo(job);
    QObject::connect(&job, &LoadJob::progressed, [&](const QString& text, double) {
        if (text.startsWith(QStringLiteral("Preparing the selection"))) {
            job.cancel();
        }
    });

    job.start();
    waitUntilSettled(job);

    EXPECT_THAT(m_events,
                ElementsAre("Reading plates.obj", "Preparing the selection in plates.obj", "cancelled", "settled"));
}

TEST_F(LoadJobTest, AFailureIsToldInOneLine)
{
    const std::string file = m_folder.path("none.obj");
    LoadJob job(file);
    listenTo(job);

    job.start();
    waitUntilSettled(job);

    EXPECT_THAT(m_events, ElementsAre("Reading none.obj", "failed: " + file + ": no such file", "settled"));
}

TEST_F(LoadJobTest, CancelledWhileReadingItEndsAtOnceAndLeavesNothing)
{
    LoadGate gate;
    LoadJob job("plate.obj", [&](const std::string&, const LoadControl& control) {
        gate.pass(control);
        return makeData(1);
    });
    listenTo(job);
    job.start();

    job.cancel();

    EXPECT_FALSE(job.isActive());
    EXPECT_THAT(m_events, ElementsAre("Reading plate.obj", "cancelled"));
    waitUntilSettled(job);
    EXPECT_THAT(m_events, ElementsAre("Reading plate.obj", "cancelled", "settled"));
}

TEST_F(LoadJobTest, WhatAStubbornReaderBringsAfterTheCancellationIsDropped)
{
    LoadGate gate;
    LoadJob job("plate.obj", [&](const std::string&, const LoadControl& control) {
        gate.passStubbornly();
        control.report(Step::Preparing, 0.5);
        return makeData(1);
    });
    listenTo(job);
    job.start();

    job.cancel();
    EXPECT_FALSE(job.isSettled());
    gate.open();
    waitUntilSettled(job);

    EXPECT_THAT(m_events, ElementsAre("Reading plate.obj", "cancelled", "settled"));
}

TEST_F(LoadJobTest, CancelledWhileBuildingItLeavesNothing)
{
    const std::size_t before = countLiveContainers();
    LoadJob job("plates.obj", [&](const std::string&, const LoadControl&) { return makeData(50); });
    job.setSlice(std::chrono::milliseconds(0));
    listenTo(job);
    QObject::connect(&job, &LoadJob::progressed, [&](const QString& text, const double share) {
        if (text.startsWith(QStringLiteral("Building")) && share < 1) {
            EXPECT_GT(countLiveContainers(), before);
            job.cancel();
        }
    });

    job.start();
    waitUntilSettled(job);

    EXPECT_EQ(m_events[m_events.size() - 2], "cancelled");
    EXPECT_EQ(m_events.back(), "settled");
    EXPECT_EQ(countLiveContainers(), before);
}

TEST_F(LoadJobTest, OtherEventsAreHandledWhileTheSceneIsBuilt)
{
    LoadJob job("plates.obj", [&](const std::string&, const LoadControl&) { return makeData(50000); });
    listenTo(job);
    int others = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { others += m_events.size() > 1 && job.isActive() ? 1 : 0; });
    timer.start(0);

    job.start();
    waitUntilSettled(job);

    EXPECT_GT(others, 1);
    EXPECT_EQ(m_events[m_events.size() - 2], "finished");
    EXPECT_EQ(m_model.parts, 50000U);
}

TEST_F(LoadJobTest, WhatIsBuiltIsNoChangeOfTheScene)
{
    LoadJob job("plates.obj", [&](const std::string&, const LoadControl&) { return makeData(1000); });
    listenTo(job);
    takeChanges();

    job.start();
    waitUntilSettled(job);

    // Only the node that puts the model in its place.
    EXPECT_LT(takeChanges().size(), 100U);
    m_model = LoadedModel();
}

TEST_F(LoadJobTest, DestroyedWhileReadingItWaitsForItsThread)
{
    LoadGate gate;
    bool left = false;
    {
        LoadJob job("plate.obj", [&](const std::string&, const LoadControl& control) {
            struct Leave {
                bool& left;
                ~Leave() { left = true; }
            } leave{left};
            gate.pass(control);
            return makeData(1);
        });
        listenTo(job);
        job.start();
    }
    EXPECT_TRUE(left);
    EXPECT_THAT(m_events, ElementsAre("Reading plate.obj"));
}

TEST_F(LoadJobTest, DestroyedWhileBuildingItLeavesNothing)
{
    const std::size_t before = countLiveContainers();
    {
        LoadJob job("plates.obj", [&](const std::string&, const LoadControl&) { return makeData(50); });
        job.setSlice(std::chrono::milliseconds(0));
        listenTo(job);
        job.start();
        waitUntil([&] { return QString::fromStdString(m_events.back()).startsWith(QStringLiteral("Building")); });
        EXPECT_GT(countLiveContainers(), before);
    }
    EXPECT_EQ(countLiveContainers(), before);
}

TEST_F(LoadJobTest, AModelThatNobodyTakesIsGone)
{
    const std::size_t before = countLiveContainers();
    LoadJob job("plate.obj", [&](const std::string&, const LoadControl&) { return makeData(1); });

    job.start();
    waitUntilSettled(job);

    EXPECT_EQ(countLiveContainers(), before);
}

TEST_F(LoadJobTest, AReaderThatThrowsFailsTheJobWithTheNameOfTheFile)
{
    LoadJob job("plate.obj", [&](const std::string&, const LoadControl&) -> ModelData {
        throw std::runtime_error("out of\npaper");
    });
    listenTo(job);

    job.start();
    waitUntilSettled(job);

    EXPECT_THAT(m_events, ElementsAre("Reading plate.obj", "failed: plate.obj: out of paper", "settled"));
}

TEST_F(LoadJobTest, AReaderThatNamesTheFileItselfIsQuoted)
{
    LoadJob job("plate.obj", [&](const std::string& file, const LoadControl&) -> ModelData {
        throw viewer::ViewerError(file, "line 3: no number");
    });
    listenTo(job);

    job.start();
    waitUntilSettled(job);

    EXPECT_THAT(m_events, ElementsAre("Reading plate.obj", "failed: plate.obj: line 3: no number", "settled"));
}

TEST_F(LoadJobTest, StartingTwiceAndCancellingOutOfTurnDoNothing)
{
    LoadJob job("plate.obj", [&](const std::string&, const LoadControl&) { return makeData(1); });
    listenTo(job);
    job.cancel();
    EXPECT_THAT(m_events, IsEmpty());
    EXPECT_TRUE(job.isSettled());

    job.start();
    job.start();
    waitUntilSettled(job);
    job.cancel();
    job.start();
    QCoreApplication::processEvents();

    EXPECT_THAT(m_events, ElementsAre("Reading plate.obj", "Preparing the selection in plate.obj",
                                      "Building the scene: 1 of 1 parts", "finished", "settled"));
}

} // namespace

} // namespace quon::testing
