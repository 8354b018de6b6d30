// SPDX-License-Identifier: MIT
#include "Support/UserInput.h"

#include "Viewer/Drawing/FrameTimes.h"
#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/InspectorModel.h"
#include "Viewer/Window/InspectorPanel.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionManager.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::InspectorModel;
using viewer::TracedEvent;

TracedEvent makeEvent(const std::string& category, const std::string& verb, const std::string& consumer = {},
                      const int depth = 0)
{
    TracedEvent event;
    event.category = category;
    event.verb = verb;
    event.consumer = consumer;
    event.outcome = consumer.empty() ? TracedEvent::Outcome::Ignored : TracedEvent::Outcome::Consumed;
    event.depth = depth;
    event.time = 1500;
    event.duration = 0.25;
    return event;
}

std::vector<std::string> textsOf(const QAbstractItemModel& model)
{
    std::vector<std::string> texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        std::string text;
        for (const int column : {InspectorModel::Event, InspectorModel::Verb, InspectorModel::Consumer}) {
            text += (text.empty() ? "" : "|") + model.index(row, column).data().toString().toStdString();
        }
        texts.push_back(text);
    }
    return texts;
}

TEST(InspectorModelTest, AnEventIsARowWithItsConsumerAndTimes)
{
    InspectorModel model;
    const QAbstractItemModelTester tester(&model);

    model.append({makeEvent("tool:select", "start", "tools"), makeEvent("inner", "start", "", 1)});

    EXPECT_THAT(textsOf(model), ElementsAre("tool:select|start|tools", "  inner|start|nobody"));
    EXPECT_EQ(model.index(0, InspectorModel::Time).data().toString(), QStringLiteral("1.500"));
    EXPECT_EQ(model.index(0, InspectorModel::Duration).data().toString(), QStringLiteral("0.250"));
    EXPECT_NE(model.index(0, InspectorModel::Event).data(Qt::ForegroundRole),
              model.index(1, InspectorModel::Event).data(Qt::ForegroundRole));
    EXPECT_EQ(model.toText({1}), QStringLiteral("1.500\t  inner\tstart\tnobody\t0.250\n"));
}

TEST(InspectorModelTest, MovementsAreHiddenUntilTheyAreAskedFor)
{
    InspectorModel model;
    const QAbstractItemModelTester tester(&model);
    model.append(
        {makeEvent("tool:select", "hover"), makeEvent("tool:select", "process"), makeEvent("tool:select", "stop")});

    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.getEventCount(), 3U);
    model.setMovementsShown(true);
    EXPECT_EQ(model.rowCount(), 3);
}

TEST(InspectorModelTest, TheFilterLooksAtEventVerbAndConsumerInAnyCase)
{
    InspectorModel model;
    const QAbstractItemModelTester tester(&model);
    model.append({makeEvent("tool:select", "start", "tools"), makeEvent("view:fit", "start", "commands"),
                  makeEvent("navigate:pan", "stop")});

    model.setFilter(QStringLiteral("COMM"));
    EXPECT_THAT(textsOf(model), ElementsAre("view:fit|start|commands"));
    model.setFilter(QStringLiteral("nobody"));
    EXPECT_THAT(textsOf(model), ElementsAre("navigate:pan|stop|nobody"));
    model.setFilter(QStringLiteral("start"));
    EXPECT_EQ(model.rowCount(), 2);
    model.setFilter(QString());
    EXPECT_EQ(model.rowCount(), 3);
}

TEST(InspectorModelTest, TheLastThousandEventsAreKept)
{
    InspectorModel model;
    const QAbstractItemModelTester tester(&model);
    std::vector<TracedEvent> events;
    for (int i = 0; i < 700; ++i) {
        events.push_back(makeEvent("event " + std::to_string(i), i % 2 == 0 ? "start" : "hover"));
    }
    model.append(events);
    for (TracedEvent& event : events) {
        event.category = "later " + event.category;
    }
    model.append(events);

    EXPECT_EQ(model.getEventCount(), InspectorModel::Capacity);
    EXPECT_EQ(model.rowCount(), 500);
    EXPECT_EQ(model.index(0, InspectorModel::Event).data().toString(), QStringLiteral("event 400"));
    model.setMovementsShown(true);
    EXPECT_EQ(model.rowCount(), 1000);

    events.insert(events.end(), events.begin(), events.end());
    model.append(events);
    EXPECT_EQ(model.rowCount(), 1000);
}

TEST(FrameTimesTest, TheLastAndTheMiddleOneAreTold)
{
    viewer::FrameTimes times;
    EXPECT_EQ(times.getLast(), 0);
    EXPECT_EQ(times.getMedian(), 0);

    for (const double time : {5.0, 1.0, 9.0}) {
        times.add(time);
    }
    EXPECT_EQ(times.getLast(), 9);
    EXPECT_EQ(times.getMedian(), 5);

    for (std::size_t i = 0; i < viewer::FrameTimes::Capacity; ++i) {
        times.add(2);
    }
    EXPECT_EQ(times.getCount(), viewer::FrameTimes::Capacity);
    EXPECT_EQ(times.getMedian(), 2);
}

class InspectorPanelTest : public ::testing::Test {
protected:
    InspectorPanelTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
        , m_panel(m_session, m_viewport)
    {
        m_viewport.resize(320, 240);
        m_viewport.show();
        const osg::RefPtr<osg::NodePtr> model = viewer::AssemblyGenerator::generate(20);
        m_session.setModel(model.get());
        m_panel.resize(1000, 300);
    }

    template <class Widget>
    Widget& child(const char* name)
    {
        return *m_panel.findChild<Widget*>(QString::fromLatin1(name));
    }

    std::vector<std::string> rows() { return textsOf(*child<QTableView>("events").model()); }

    std::string number(const char* name) { return child<QLabel>(name).text().toStdString(); }

    void click(const char* button) { QTest::mouseClick(&child<QToolButton>(button), Qt::LeftButton); }

    void clickAndRefresh(const QPoint& place)
    {
        m_user.click(place);
        m_panel.refresh();
    }

    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;
    viewer::InspectorPanel m_panel;
};

TEST_F(InspectorPanelTest, ItListensOnlyWhileItIsVisible)
{
    EXPECT_FALSE(m_session.getTrace().isListening());
    m_panel.show();
    EXPECT_TRUE(m_session.getTrace().isListening());
    m_panel.hide();
    EXPECT_FALSE(m_session.getTrace().isListening());

    m_user.click(QPoint(10, 10));
    m_panel.show();
    EXPECT_THAT(rows(), IsEmpty());
}

TEST_F(InspectorPanelTest, TheEventsOfAClickAppearWithWhoConsumedThem)
{
    m_panel.show();
    clickAndRefresh(QPoint(10, 10));

    EXPECT_THAT(rows(), ElementsAre("tool:select|start|tools", "tool:select|stop|tools", "tool:select|trigger|tools"));
    EXPECT_THAT(number("eventCount"), ::testing::StartsWith("3 shown of "));
}

TEST_F(InspectorPanelTest, TheTimerShowsNewEventsByItself)
{
    m_panel.show();
    m_user.press(QPoint(10, 10));

    EXPECT_TRUE(QTest::qWaitFor([&] { return !rows().empty(); }));
}

TEST_F(InspectorPanelTest, PausingKeepsWhatIsShownAndGoingOnCatchesUp)
{
    m_panel.show();
    clickAndRefresh(QPoint(10, 10));

    click("pause");
    clickAndRefresh(QPoint(10, 10));
    EXPECT_EQ(rows().size(), 3U);

    click("pause");
    EXPECT_EQ(rows().size(), 6U);
    click("clear");
    EXPECT_THAT(rows(), IsEmpty());
}

TEST_F(InspectorPanelTest, FilterAndMovementsAreTypedAndClicked)
{
    m_panel.show();
    clickAndRefresh(QPoint(10, 10));

    QTest::keyClicks(&child<QLineEdit>("filter"), QStringLiteral("trigger"));
    EXPECT_THAT(rows(), ElementsAre("tool:select|trigger|tools"));
    QTest::keyClick(&child<QLineEdit>("filter"), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&child<QLineEdit>("filter"), QStringLiteral("hover"));
    EXPECT_THAT(rows(), IsEmpty());
    QTest::mouseClick(&child<QCheckBox>("movements"), Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, child<QCheckBox>("movements").height() / 2));
    EXPECT_THAT(rows(), ::testing::Contains("tool:select|hover|tools"));
}

TEST_F(InspectorPanelTest, RowsAreCopiedByButtonAndByKey)
{
    m_panel.show();
    clickAndRefresh(QPoint(10, 10));

    click("copy");
    EXPECT_EQ(QApplication::clipboard()->text().count(QLatin1Char('\n')), 3);

    auto& table = child<QTableView>("events");
    QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier,
                      table.visualRect(table.model()->index(1, 1)).center());
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
    const QString text = QApplication::clipboard()->text();
    EXPECT_EQ(text.count(QLatin1Char('\n')), 1);
    EXPECT_TRUE(text.contains(QStringLiteral("tool:select\tstop\ttools")));
}

TEST_F(InspectorPanelTest, TheStackIsListedTopFirstWithItsFlags)
{
    m_panel.show();

    auto& stack = child<QTreeWidget>("stack");
    const auto texts = [&](const int column) {
        std::vector<std::string> result;
        for (int row = 0; row < stack.topLevelItemCount(); ++row) {
            result.push_back(stack.topLevelItem(row)->text(column).toStdString());
        }
        return result;
    };
    EXPECT_THAT(texts(0), ElementsAre("trace, top", "tools", "navigation", "commands", "trace, bottom"));
    EXPECT_THAT(texts(2), ElementsAre("●", "–", "–", "–", "–"));
    EXPECT_THAT(texts(4), ElementsAre("●", "●", "●", "●", "●"));

    m_session.getInteractionManager().disable();
    m_panel.refresh();
    EXPECT_THAT(texts(4), ElementsAre("–", "–", "–", "–", "–"));
    m_session.getInteractionManager().enable();
}

TEST_F(InspectorPanelTest, TheNumbersTellOfPicksFramesAndContainers)
{
    m_panel.show();
    EXPECT_EQ(number("frame"), "none yet");
    const auto before = m_session.getPicker().getStatistics();

    m_session.getPicker().setPointer(osg::Pnt2f(33, 44));
    m_session.getPicker().getPickedNode(nullptr);
    m_session.getPicker().getPickedPoint(nullptr);
    m_session.getPicker().getPickedNormal(nullptr);
    const auto after = m_session.getPicker().getStatistics();
    m_viewport.grabScene();
    m_panel.refresh();

    EXPECT_EQ(after.asked, before.asked + 3);
    EXPECT_EQ(after.queried, before.queried + 1);
    const auto shown = m_session.getPicker().getStatistics();
    EXPECT_EQ(number("picks"), QStringLiteral("%1 asked, %2 cached, %3 run")
                                   .arg(shown.asked)
                                   .arg(shown.asked - shown.queried)
                                   .arg(shown.queried)
                                   .toStdString());
    EXPECT_THAT(number("frame"), ::testing::EndsWith(" of 1"));
    EXPECT_THAT(number("containers"), ::testing::EndsWith(" alive"));
    EXPECT_EQ(number("modes"), "none");
}

TEST_F(InspectorPanelTest, TheContainersThatComeAndGoAreCounted)
{
    m_panel.show();
    const auto count = [&] {
        m_panel.refresh();
        return QString::fromStdString(number("containers"))
            .split(QLatin1Char(' '))
            .front()
            .remove(QLatin1Char(','))
            .toInt();
    };
    const int before = count();

    const osg::RefPtr<osg::NodePtr> node(osg::Node::create());
    EXPECT_EQ(count(), before + 1);
}

TEST(InspectorDockTest, TheCommandShowsAndHidesTheInspector)
{
    viewer::ViewerSession session;
    viewer::MainWindow window(session);
    window.show();
    auto* dock = window.findChild<QDockWidget*>(QStringLiteral("inspector"));
    ASSERT_NE(dock, nullptr);
    EXPECT_FALSE(dock->isVisible());

    QTest::keyClick(&window.getViewport(), Qt::Key_F12);
    EXPECT_TRUE(dock->isVisible());
    EXPECT_TRUE(session.getTrace().isListening());
    EXPECT_EQ(dock->windowTitle(), QStringLiteral("Inspector"));

    // A key that the panel leaves alone is the viewer's.
    QTest::keyClick(dock->findChild<QTableView*>(QStringLiteral("events")), Qt::Key_D);
    EXPECT_TRUE(session.isDark());

    QTest::keyClick(&window.getViewport(), Qt::Key_F12);
    EXPECT_FALSE(dock->isVisible());
    EXPECT_FALSE(session.getTrace().isListening());
}

} // namespace

} // namespace quon::testing
