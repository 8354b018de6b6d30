// SPDX-License-Identifier: MIT
#include "Support/UserInput.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/SceneTreeView.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>

#include <QAction>
#include <QColor>
#include <QCursor>
#include <QDockWidget>
#include <QImage>
#include <QLineEdit>
#include <QPixmap>
#include <QScreen>
#include <QWindow>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace quon::testing {

namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

// Starting a software renderer on a busy machine takes its time; what is waited for comes at once otherwise.
constexpr int Patience = 60000;

const QColor Orange(244, 133, 22); // boxes of the selection, as they arrive in pixels

int countPixels(const QImage& picture, const QColor& colour)
{
    constexpr int tolerance = 12;
    int found = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor pixel(picture.pixel(x, y));
            found += std::abs(pixel.red() - colour.red()) <= tolerance &&
                             std::abs(pixel.green() - colour.green()) <= tolerance &&
                             std::abs(pixel.blue() - colour.blue()) <= tolerance
                         ? 1
                         : 0;
        }
    }
    return found;
}

int countDifferent(const QImage& first, const QImage& second)
{
    int found = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            found += first.pixel(x, y) != second.pixel(x, y) ? 1 : 0;
        }
    }
    return found;
}

/**
 * The whole window on a screen with OpenGL: what the other tests draw into pictures goes through a child widget, its
 * context and the composition of the window here.
 *
 * Events are those of the window system's interface of Qt: Qt finds out itself which widget they belong to. Pixels are
 * those of the screen.
 */
class OnScreenTest : public ::testing::Test {
protected:
    OnScreenTest()
        : m_window(m_session)
        , m_viewport(m_window.getViewport())
    {
        m_window.resize(1100, 700);
        m_window.show();
        m_window.activateWindow();
        m_window.open(KO_ENGINE_MODEL);
    }

    void SetUp() override
    {
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window, Patience));
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window, Patience));
        // Where the screen's own pointer lights up nothing: what it does comes in between at any time.
        QCursor::setPos(m_viewport.mapToGlobal(QPoint(5, m_viewport.height() / 2)));
        ASSERT_TRUE(eventually([this] { return isModelShown() && m_viewport.isPictureComplete(); }))
            << "the model is not to be seen";
        ASSERT_EQ(boxPixels(), 0);
    }

    template <class Condition>
    static bool eventually(const Condition& condition)
    {
        return QTest::qWaitFor(condition, Patience);
    }

    /** What the screen shows of the viewport. */
    QImage shown() const
    {
        const QRect place(m_viewport.mapTo(&m_window, QPoint()), m_viewport.size());
        return m_window.screen()
            ->grabWindow(m_window.winId(), place.x(), place.y(), place.width(), place.height())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }

    /** The part of it where no notifications come and go. */
    QImage shownAboveNotifications() const
    {
        const QImage picture = shown();
        return picture.copy(0, 0, picture.width(), picture.height() * 3 / 4);
    }

    /** Whether much is in front of the background, which has one colour in every line. */
    bool isModelShown() const
    {
        const QImage picture = shownAboveNotifications();
        int found = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                found += picture.pixel(x, y) != picture.pixel(0, y) ? 1 : 0;
            }
        }
        return found > 20000;
    }

    int boxPixels() const { return countPixels(shown(), Orange); }

    QPoint middle() const { return m_viewport.mapTo(&m_window, m_viewport.rect().center()); }

    void clickMiddle(Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseMove(m_window.windowHandle(), middle());
        QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, modifiers, middle());
    }

    /** Moves the pointer to where nothing lights up under it. */
    void pointBesideTheModel()
    {
        QTest::mouseMove(m_window.windowHandle(), m_viewport.mapTo(&m_window, QPoint(5, m_viewport.height() / 2)));
    }

    void type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(m_window.windowHandle(), static_cast<Qt::Key>(key), modifiers);
    }

    const std::set<osg::NodePtr>& selected() { return m_session.getSelection().getSelection(); }

    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
    viewer::Viewport& m_viewport;
};

TEST_F(OnScreenTest, AClickOnAPartDrawsItsBoxAndEscapeTakesItAway)
{
    clickMiddle();
    EXPECT_THAT(selected(), SizeIs(1));
    EXPECT_TRUE(eventually([this] { return boxPixels() > 100; }));

    type(Qt::Key_Escape);
    EXPECT_THAT(selected(), IsEmpty());
    EXPECT_TRUE(eventually([this] { return boxPixels() == 0; }));
}

TEST_F(OnScreenTest, UndoTakesTheBoxAwayAndRedoBringsItBack)
{
    clickMiddle();
    ASSERT_TRUE(eventually([this] { return boxPixels() > 100; }));

    type(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(eventually([this] { return boxPixels() == 0; }));
    type(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(eventually([this] { return boxPixels() > 100; }));
}

TEST_F(OnScreenTest, DraggingWithTheRightButtonTurnsTheModelAndSelectsNothing)
{
    const QImage before = shownAboveNotifications();
    QWindow* window = m_window.windowHandle();

    QTest::mousePress(window, Qt::RightButton, Qt::NoModifier, middle());
    for (int step = 1; step <= 8; ++step) {
        QTest::mouseMove(window, middle() + QPoint(12 * step, 4 * step));
    }
    EXPECT_TRUE(eventually([&] { return countDifferent(before, shownAboveNotifications()) > 10000; }))
        << "drawn while the button is held";
    QTest::mouseRelease(window, Qt::RightButton, Qt::NoModifier, middle() + QPoint(96, 32));

    EXPECT_THAT(selected(), IsEmpty());
    pointBesideTheModel();
    type(Qt::Key_4);
    EXPECT_TRUE(eventually([&] { return countDifferent(before, shownAboveNotifications()) == 0; }))
        << "the view from before";
}

TEST_F(OnScreenTest, APartThatIsHiddenIsDrawnNoMore)
{
    const QImage before = shownAboveNotifications();
    clickMiddle();
    type(Qt::Key_H);
    type(Qt::Key_Escape);
    pointBesideTheModel();
    EXPECT_TRUE(
        eventually([&] { return boxPixels() == 0 && countDifferent(before, shownAboveNotifications()) > 100; }));

    type(Qt::Key_U);
    EXPECT_TRUE(eventually([&] { return countDifferent(before, shownAboveNotifications()) == 0; }));
}

TEST_F(OnScreenTest, ALargerWindowIsDrawnToItsEdgesAndPicksWhatItShows)
{
    clickMiddle();
    const osg::NodePtr part = *selected().begin();
    const QSize before = m_viewport.size();

    m_window.resize(1240, 780);
    ASSERT_TRUE(eventually([&] { return m_viewport.width() > before.width() && boxPixels() > 100; }));
    EXPECT_TRUE(eventually([this] { return m_viewport.grabScene().size() == m_viewport.size(); }));
    // The corner of the background, which nothing covers.
    EXPECT_TRUE(eventually([this] {
        const QImage picture = m_viewport.grabScene();
        const QPoint corner(picture.width() - 2, picture.height() / 2);
        return shown().pixel(corner) == picture.pixel(corner);
    }));

    type(Qt::Key_Escape);
    clickMiddle();
    EXPECT_THAT(selected(), ::testing::ElementsAre(part));
}

TEST_F(OnScreenTest, ARowOfTheTreeDrawsTheBoxOfItsPart)
{
    auto* tree = m_window.findChild<viewer::SceneTreeView*>();
    ASSERT_NE(tree, nullptr);
    const QModelIndex row = tree->model()->index(0, 0);

    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      tree->viewport()->mapTo(&m_window, tree->visualRect(row).center()));

    EXPECT_THAT(selected(), SizeIs(1));
    EXPECT_TRUE(eventually([this] { return boxPixels() > 100; }));
}

TEST_F(OnScreenTest, KeysGoToTheSearchFieldWhileItHasTheFocusAndToTheViewOtherwise)
{
    type(Qt::Key_F, Qt::ControlModifier);
    auto* search = m_window.findChild<QLineEdit*>(QStringLiteral("search"));
    ASSERT_TRUE(eventually([&] { return search->hasFocus(); }));
    QTest::keyClick(m_window.windowHandle(), 'd');
    EXPECT_EQ(search->text(), QStringLiteral("d"));
    EXPECT_FALSE(m_session.isDark());

    const QRgb light = shown().pixel(5, m_viewport.height() / 2);
    type(Qt::Key_Escape);
    EXPECT_TRUE(eventually([this] { return m_viewport.hasFocus(); }));
    QTest::keyClick(m_window.windowHandle(), 'd');
    EXPECT_TRUE(m_session.isDark());
    EXPECT_TRUE(eventually([&] { return shown().pixel(5, m_viewport.height() / 2) != light; }));
}

TEST_F(OnScreenTest, PresenterModeShowsTheViewAloneAndEscapeBringsTheRestBack)
{
    auto* tree = m_window.findChild<viewer::SceneTreeView*>();
    const QSize before = m_viewport.size();

    type(Qt::Key_F11);
    EXPECT_TRUE(eventually([&] {
        return m_viewport.size() == m_window.size() && m_viewport.grabScene().size() == m_viewport.size() &&
               isModelShown();
    }));
    // The mouse works, keys do not, not even those of the window.
    clickMiddle();
    EXPECT_THAT(selected(), SizeIs(1));
    EXPECT_TRUE(eventually([this] { return boxPixels() > 100; }));
    type(Qt::Key_H);
    type(Qt::Key_F, Qt::ControlModifier);
    EXPECT_NE((*selected().begin())->getTravMask(), 0U);
    EXPECT_FALSE(tree->isVisible());

    type(Qt::Key_Escape);
    EXPECT_TRUE(eventually([&] { return tree->isVisible() && m_viewport.size() == before && isModelShown(); }));
    EXPECT_THAT(selected(), SizeIs(1));
}

TEST_F(OnScreenTest, TheWheelZooms)
{
    const QImage before = shownAboveNotifications();

    UserInput(m_viewport).turnWheel(m_viewport.rect().center(), 120);

    EXPECT_TRUE(eventually([&] { return countDifferent(before, shownAboveNotifications()) > 10000; }));
}

TEST_F(OnScreenTest, AClosedPanelGivesItsPlaceToTheViewAndTheModelIsStillDrawn)
{
    const int before = m_viewport.width();

    for (QDockWidget* dock : m_window.findChildren<QDockWidget*>()) {
        dock->close();
    }

    EXPECT_TRUE(eventually([&] {
        return m_viewport.width() > before && m_viewport.grabScene().width() == m_viewport.width() && isModelShown();
    }));
}

} // namespace

} // namespace quon::testing
