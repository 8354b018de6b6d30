// SPDX-License-Identifier: MIT
#include "Support/DrawnScene.h"
#include "Support/NotificationTexts.h"
#include "Support/UserInput.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using viewer::LengthFormat;
using viewer::LengthUnit;
using viewer::MeasureLine;

/** Counts the picks that reach the back end. */
class CountingPicker : public viewer::EmbreePicker {
public:
    int picks = 0;

protected:
    void computePicked(osg::NodePtr& node, osg::Pnt3f& point, osg::Vec3f& normal, osg::Vec2f& uv,
                       osg::MaterialPtr& material, osg::SelectionOption* option) override
    {
        ++picks;
        EmbreePicker::computePicked(node, point, normal, uv, material, option);
    }
};

/**
 * A wall in the plane z = 0 from x = -4 to 2, and beside it one from x = 2 to 4 that goes back at 45 degrees: there
 * z = 2 - x. Seen from the front in parallel projection, so that pixels are places of the world.
 */
class MeasureToolTest : public ::testing::Test {
protected:
    MeasureToolTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
        , m_locale(QLocale())
    {
        QLocale::setDefault(QLocale::c());
        m_viewport.resize(400, 200);
        m_viewport.show();
        m_session.setModel(makeWalls());
        m_session.getCamera().setParallel(true);
        m_session.getCamera().setStandardView("front");
        m_session.getMeasureTool().setLengthFormat(LengthFormat(LengthUnit::Metre, true, QLocale::c()));
        m_unit = 2 / (placeOf(osg::Pnt3f(1, 0, 0))[0] - placeOf(osg::Pnt3f(-1, 0, 0))[0]);
    }

    ~MeasureToolTest() override { QLocale::setDefault(m_locale); }

    static osg::NodePtr makeWalls()
    {
        const osg::MaterialPtr material = makePlainMaterial(osg::Color3f(0.8F, 0.8F, 0.8F));
        return makeGroup(
            {makeNode(makeRectangle(-4, -2, 2, 2, 0, material)),
             makeNode(makeGeometry(
                 GL_QUADS, {osg::Pnt3f(2, -2, 0), osg::Pnt3f(4, -2, -2), osg::Pnt3f(4, 2, -2), osg::Pnt3f(2, 2, 0)}, {},
                 material))});
    }

    std::array<double, 2> placeOf(const osg::Pnt3f& point) { return *m_session.getCamera().getPlace(point); }

    // The pixel that shows a place.
    QPoint at(const float x, const float y)
    {
        const std::array<double, 2> place = placeOf(osg::Pnt3f(x, y, 0));
        return QPoint(static_cast<int>(place[0]), static_cast<int>(place[1]));
    }

    // What the middle of a pixel shows.
    double xOf(const QPoint& pixel) { return (pixel.x() + 0.5 - placeOf(osg::Pnt3f(0, 0, 0))[0]) * m_unit; }

    // Up to the last of the four digits.
    static void expectMetres(const QString& text, const double length)
    {
        EXPECT_TRUE(text.endsWith(QStringLiteral(" m"))) << text.toStdString();
        EXPECT_NEAR(text.left(text.size() - 2).toDouble(), length, 0.0011);
    }

    const MeasureLine::Content& content() { return m_session.getMeasureTool().getLine().getContent(); }
    std::string distance() { return content().texts.distance.toStdString(); }
    std::string mode() { return m_session.getTools().getCurrentMode(); }

    static std::vector<std::string> notifications() { return getNotificationTexts(); }

    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;
    QLocale m_locale;
    double m_unit = 0; ///< world units per pixel
};

TEST_F(MeasureToolTest, TwoClicksMeasureDistanceStepsAndAngle)
{
    const QPoint first = at(-3, 1);
    const QPoint second = at(3, -1);
    m_user.type(Qt::Key_M);

    m_user.click(first);
    m_user.click(second);

    const double stepX = (second.x() - first.x()) * m_unit;
    const double stepY = (first.y() - second.y()) * m_unit;
    const double stepZ = 2 - xOf(second);
    expectMetres(content().texts.distance, std::sqrt(stepX * stepX + stepY * stepY + stepZ * stepZ));
    expectMetres(content().texts.steps[0], stepX);
    expectMetres(content().texts.steps[1], stepY);
    expectMetres(content().texts.steps[2], stepZ);
    EXPECT_EQ(content().texts.angle, QStringLiteral("45.0°"));
    EXPECT_FALSE(content().isPreview);
    EXPECT_TRUE(m_session.getSelection().getSelection().empty()) << "a click selects nothing while measuring";
}

TEST_F(MeasureToolTest, TheToolSaysWhatComesNextAndThenWhatItIs)
{
    m_user.type(Qt::Key_M);
    EXPECT_THAT(notifications(), ::testing::Contains("Click two points to measure between them"));

    m_user.click(at(-3, 0));
    EXPECT_THAT(notifications(), ::testing::Contains("Click the second point, Escape takes the first one back"));

    m_user.click(at(1, 0));
    EXPECT_THAT(notifications(), ::testing::Contains("Distance " + distance() + ", click to begin anew"));
    EXPECT_EQ(notifications().size(), 2U) << "beside that of the selection";
}

TEST_F(MeasureToolTest, TheSecondPointIsShownWhileThePointerHovers)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));

    m_user.move(at(-1, 0));
    m_viewport.grabScene();
    EXPECT_TRUE(content().isPreview);
    expectMetres(content().texts.distance, (at(-1, 0).x() - at(-3, 0).x()) * m_unit);
    EXPECT_FALSE(m_session.getMeasureTool().isFinished());

    m_user.move(QPoint(2, 2));
    m_viewport.grabScene();
    EXPECT_FALSE(content().second.has_value()) << "there is nothing below the pointer";

    m_user.move(at(1, 0));
    m_viewport.grabScene();
    EXPECT_TRUE(content().second.has_value());
    m_user.leave();
    EXPECT_FALSE(content().second.has_value());
    EXPECT_FALSE(content().pointer.has_value());
    EXPECT_TRUE(content().first.has_value());
}

TEST_F(MeasureToolTest, AThirdClickBeginsAnew)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));
    m_user.click(at(-1, 0));
    ASSERT_TRUE(m_session.getMeasureTool().isFinished());

    m_user.click(at(1, 1));
    EXPECT_FALSE(m_session.getMeasureTool().isFinished());
    m_user.click(at(1, -1));

    expectMetres(content().texts.distance, (at(1, -1).y() - at(1, 1).y()) * m_unit);
}

TEST_F(MeasureToolTest, EscapeTakesBackThePointThenTheMeasurementThenLeaves)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));
    m_user.type(Qt::Key_Escape);
    EXPECT_FALSE(content().first.has_value());
    EXPECT_EQ(mode(), "measure");

    m_user.click(at(-3, 0));
    m_user.click(at(-1, 0));
    m_user.type(Qt::Key_Escape);
    EXPECT_FALSE(m_session.getMeasureTool().isFinished());
    EXPECT_FALSE(content().first.has_value());
    EXPECT_EQ(mode(), "measure");

    m_user.type(Qt::Key_Escape);
    EXPECT_EQ(mode(), "");
    EXPECT_THAT(notifications(), ::testing::Not(::testing::Contains(::testing::StartsWith("Click two points"))));
}

TEST_F(MeasureToolTest, DragsAndClicksOnEmptySpaceSetNoPoint)
{
    m_user.type(Qt::Key_M);

    m_user.drag(at(-3, 0), at(-3, 0) + QPoint(3, 0));
    EXPECT_FALSE(content().first.has_value());
    m_user.click(QPoint(2, 2));
    EXPECT_FALSE(content().first.has_value());
    m_user.press(at(-3, 0));
    m_user.loseFocus();
    EXPECT_FALSE(content().first.has_value());

    m_user.press(at(-3, 0));
    m_user.move(at(-3, 0) + QPoint(2, 0));
    m_user.release(at(-3, 0) + QPoint(2, 0));
    EXPECT_TRUE(content().first.has_value()) << "a hand may tremble";
}

TEST_F(MeasureToolTest, NavigationGoesOnAndTheMeasurementStays)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));
    m_user.click(at(-1, 0));
    m_user.leave();
    const std::string before = distance();
    const osg::Matrix camera = m_session.getCamera().getWorldToClip();

    m_user.drag(QPoint(100, 100), QPoint(150, 120), Qt::RightButton);
    m_user.turnWheel(QPoint(150, 120), 240);

    EXPECT_NE(m_session.getCamera().getWorldToClip(), camera);
    EXPECT_EQ(distance(), before);
    EXPECT_EQ(mode(), "measure");
}

TEST_F(MeasureToolTest, TheMeasurementEndsWithTheModeAndWithTheModel)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));
    m_user.click(at(-1, 0));
    m_user.type(Qt::Key_M);
    EXPECT_EQ(mode(), "");
    EXPECT_FALSE(content().first.has_value());

    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));
    m_user.click(at(-1, 0));
    ASSERT_TRUE(m_session.getMeasureTool().isFinished());
    m_session.setModel(makeWalls());
    EXPECT_FALSE(content().first.has_value());
    EXPECT_EQ(mode(), "measure");
}

TEST_F(MeasureToolTest, TheResultIsCopiedAsText)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));
    EXPECT_FALSE(m_session.getCommands().isAvailable("copy-measurement"));
    m_user.click(at(-1, 0));
    QGuiApplication::clipboard()->setText(QStringLiteral("old"));

    m_user.pressKey(Qt::Key_C, Qt::ControlModifier);
    m_user.releaseKey(Qt::Key_C, Qt::ControlModifier);

    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "Distance: " + distance() +
                                                                      "\nAlong x: " + distance() +
                                                                      "\nAlong y: 0 m\nAlong z: 0 m\nAngle between the "
                                                                      "normals: 0.0°");
}

TEST_F(MeasureToolTest, AnotherUnitIsShownAtOnce)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 0));
    m_user.click(at(-1, 0));
    const double length = (at(-1, 0).x() - at(-3, 0).x()) * m_unit;

    const LengthFormat inches(LengthUnit::Inch, true, QLocale(QLocale::German));
    m_session.getMeasureTool().setLengthFormat(inches);

    EXPECT_EQ(distance(), inches.format(length).toStdString());
    EXPECT_THAT(notifications(), ::testing::Contains(::testing::HasSubstr(distance())));
}

TEST_F(MeasureToolTest, ThePictureShowsTheLine)
{
    m_user.type(Qt::Key_M);
    m_user.click(at(-3, 1));
    m_user.leave();
    const QImage before = m_viewport.grabPicture();
    m_user.click(at(1, 1));
    m_user.leave();

    const QImage after = m_viewport.grabPicture();

    // A quarter of the way, where the line is alone: dark blue.
    const QColor ink(after.pixel(at(-2.4F, 1)));
    EXPECT_GT(ink.blue(), ink.red() + 60);
    EXPECT_LT(ink.lightness(), 140);
    EXPECT_GT(QColor(before.pixel(at(-2.4F, 1))).lightness(), 180);
}

TEST_F(MeasureToolTest, MovementsArePickedOnceForAFrame)
{
    CountingPicker picker;
    m_session.addSceneChangeListener(&picker);
    m_session.getTools().setPicker(&picker);
    picker.setRoot(m_session.getModel());
    picker.setViewportSize(400, 200);
    picker.setCamera(m_session.getCamera().getWorldToClip());
    m_user.type(Qt::Key_M);
    m_viewport.grabScene();
    picker.picks = 0;

    for (int i = 0; i < 20; ++i) {
        m_user.move(at(-3, 0) + QPoint(i, 0));
    }
    EXPECT_EQ(picker.picks, 0);
    m_viewport.grabScene();
    m_viewport.grabScene();
    EXPECT_EQ(picker.picks, 1);
    m_user.press(at(-3, 0) + QPoint(19, 0));
    m_user.release(at(-3, 0) + QPoint(19, 0));
    EXPECT_EQ(picker.picks, 1) << "the click is where the last frame looked";

    m_session.removeSceneChangeListener(&picker);
    m_session.getTools().setPicker(&m_session.getPicker());
}

} // namespace

} // namespace quon::testing
