// SPDX-License-Identifier: MIT
#include <InteractionTesting/LiveContainers.h>

#include "Support/DrawnScene.h"
#include "Support/NotificationTexts.h"
#include "Support/UserInput.h"
#include "Support/ViewportPixel.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGFieldContainerFactory.h>

#include <QColor>
#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

// Colours of the selection as they arrive in pixels.
const QColor Orange(244, 133, 22);
const QColor NearBlack(12, 12, 12);

/**
 * Three boxes in a row, seen from the front: a red one left, a green one in the middle, a blue one right. In front of
 * the right half of the green one stands a white screen.
 *
 * Every test goes from Qt events to the selection, the nodes of the scene and the pixels of the picture.
 */
class EndToEndTest : public ::testing::Test {
protected:
    EndToEndTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
    {
        m_viewport.resize(300, 100);
        m_viewport.show();
        m_red = makePart("red", osg::Pnt3f(-6, -1, -1), osg::Pnt3f(-4, 1, 1), osg::Color3f(1, 0, 0));
        m_green = makePart("green", osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::Color3f(0, 1, 0));
        m_blue = makePart("blue", osg::Pnt3f(4, -1, -1), osg::Pnt3f(6, 1, 1), osg::Color3f(0, 0, 1));
        m_screen = makePart("screen", osg::Pnt3f(0, -2, 2), osg::Pnt3f(2, 2, 2.1F), osg::Color3f(1, 1, 1));
        const osg::NodePtr model = makeGroup();
        NodeUtils::setName(model, "model", false);
        for (const osg::NodePtr& part : {m_red, m_green, m_blue, m_screen}) {
            model->addChild(part);
        }
        m_session.setModel(model);
        m_session.getCamera().setStandardView("front");
        m_session.processSceneChanges();
        m_plain = m_viewport.grabScene();
    }

    // The pixel that shows a place of the world.
    QPoint pixelOf(const float x, const float y, const float z)
    {
        return findPixel(m_session, m_viewport.size(), osg::Pnt3f(x, y, z));
    }

    QPoint onRed() { return pixelOf(-5, 0, 1); }
    QPoint onGreen() { return pixelOf(-0.5F, 0, 1); }
    QPoint onBlue() { return pixelOf(5, 0, 1); }
    QPoint besideAll() { return pixelOf(-2.5F, 0, 0); }

    const std::set<osg::NodePtr>& selection() { return m_session.getSelection().getSelection(); }

    // Whether a pixel became what it is by mixing in the colour, at least a quarter of it: smooth lines cover the
    // pixels at their edges in part.
    static bool isMixed(const QColor& before, const QColor& after, const QColor& colour)
    {
        double share = 0;
        double largest = 0;
        const int from[] = {before.red(), before.green(), before.blue()};
        const int to[] = {after.red(), after.green(), after.blue()};
        const int mixedIn[] = {colour.red(), colour.green(), colour.blue()};
        for (std::size_t i = 0; i < 3; ++i) {
            if (std::abs(mixedIn[i] - from[i]) > largest) {
                largest = std::abs(mixedIn[i] - from[i]);
                share = static_cast<double>(to[i] - from[i]) / (mixedIn[i] - from[i]);
            }
        }
        if (share < 0.25 || share > 1.02) {
            return false;
        }
        for (std::size_t i = 0; i < 3; ++i) {
            if (std::abs(from[i] + share * (mixedIn[i] - from[i]) - to[i]) > 3) {
                return false;
            }
        }
        return true;
    }

    // The pixels that have the colour mixed in, compared with the scene without any selection.
    int mixed(const QImage& picture, const QColor& colour, const QRect& area) const
    {
        int found = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                found += isMixed(QColor(m_plain.pixel(x, y)), QColor(picture.pixel(x, y)), colour) ? 1 : 0;
            }
        }
        return found;
    }

    int mixed(const QImage& picture, const QColor& colour) const { return mixed(picture, colour, picture.rect()); }

    static int count(const QImage& picture, const QColor& colour)
    {
        int found = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                found += QColor(picture.pixel(x, y)) == colour ? 1 : 0;
            }
        }
        return found;
    }

    // The pixels around a part, its box included.
    QRect around(const float x)
    {
        return QRect(pixelOf(x - 1.4F, 1.4F, 1), pixelOf(x + 1.4F, -1.4F, 1)).intersected(m_viewport.rect());
    }

    static std::vector<std::string> notifications() { return getNotificationTexts(); }

    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;
    osg::NodePtr m_red;
    osg::NodePtr m_green;
    osg::NodePtr m_blue;
    osg::NodePtr m_screen;
    QImage m_plain; ///< the scene without any selection
};

TEST_F(EndToEndTest, TheSceneShowsItsPartsAndNoSelection)
{
    const QImage picture = m_viewport.grabScene();

    EXPECT_EQ(QColor(picture.pixel(onRed())), QColor(255, 0, 0));
    EXPECT_EQ(QColor(picture.pixel(onGreen())), QColor(0, 255, 0));
    EXPECT_EQ(QColor(picture.pixel(onBlue())), QColor(0, 0, 255));
    EXPECT_EQ(mixed(picture, Orange), 0);
}

TEST_F(EndToEndTest, AClickSelectsThePartUnderThePointerAndDrawsAnOrangeBox)
{
    m_user.click(onRed());

    EXPECT_THAT(selection(), ElementsAre(m_red));
    const QImage picture = m_viewport.grabScene();
    EXPECT_GT(mixed(picture, Orange, around(-5)), 40);
    EXPECT_EQ(mixed(picture, Orange, around(5)), 0);
    EXPECT_EQ(m_session.getBoxes().getVisualisation()->getNChildren(), 1U);
}

TEST_F(EndToEndTest, AnotherClickMovesTheSelection)
{
    m_user.click(onRed());
    m_user.click(onBlue());

    EXPECT_THAT(selection(), ElementsAre(m_blue));
    const QImage picture = m_viewport.grabScene();
    EXPECT_EQ(mixed(picture, Orange, around(-5)), 0);
    EXPECT_GT(mixed(picture, Orange, around(5)), 40);
}

TEST_F(EndToEndTest, ControlClicksAddAndTakeOut)
{
    m_user.click(onRed());
    m_user.click(onBlue(), Qt::ControlModifier);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_red, m_blue));

    m_user.click(onRed(), Qt::ControlModifier);
    EXPECT_THAT(selection(), ElementsAre(m_blue));
}

TEST_F(EndToEndTest, AClickOnEmptySpaceClearsAndAControlClickThereDoesNot)
{
    m_user.click(onRed());

    m_user.click(besideAll(), Qt::ControlModifier);
    EXPECT_THAT(selection(), ElementsAre(m_red));

    m_user.click(besideAll());
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(mixed(m_viewport.grabScene(), Orange), 0);
}

TEST_F(EndToEndTest, ADragIsNoClick)
{
    m_user.drag(onRed(), onRed() + QPoint(3, 0));
    EXPECT_THAT(selection(), IsEmpty());

    // Back to where it began: still a drag.
    m_user.press(onRed());
    m_user.move(onRed() + QPoint(0, 9));
    m_user.move(onRed());
    m_user.release(onRed());
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(EndToEndTest, AClickMayTremble)
{
    m_user.press(onRed());
    m_user.move(onRed() + QPoint(2, 2));
    m_user.release(onRed() + QPoint(2, 2));

    EXPECT_THAT(selection(), ElementsAre(m_red));
}

TEST_F(EndToEndTest, ADragWhoseModifiersChangedUnderwayIsNoClickEither)
{
    m_user.press(onRed());
    m_user.move(onRed() + QPoint(8, 0), Qt::ShiftModifier);
    m_user.release(onRed() + QPoint(8, 0), Qt::LeftButton, Qt::ShiftModifier);

    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(EndToEndTest, TheEndOfTheFocusInThePressSelectsNothing)
{
    m_user.press(onRed());
    m_user.loseFocus();
    EXPECT_THAT(selection(), IsEmpty());

    m_user.release(onRed());
    EXPECT_THAT(selection(), IsEmpty());
    m_user.click(onRed());
    EXPECT_THAT(selection(), ElementsAre(m_red));
}

TEST_F(EndToEndTest, HoveringNamesThePartUntilThePointerLeaves)
{
    std::vector<std::string> names;
    QObject::connect(&m_session, &viewer::ViewerSession::hoveredChanged,
                     [&](const QString& name) { names.push_back(name.toStdString()); });

    for (const QPoint& place : {onRed(), onBlue(), besideAll(), onRed()}) {
        m_user.move(place);
        m_session.beginFrame();
    }
    m_user.leave();

    EXPECT_THAT(names, ElementsAre("red", "blue", "", "red", ""));
}

TEST_F(EndToEndTest, LockingASelectedPartTurnsItsBoxNearBlackAndUnlockingOrangeAgain)
{
    m_user.click(onRed());

    m_user.type(Qt::Key_L);
    EXPECT_FALSE(koNodeUtils::isEditable(m_red));
    QImage picture = m_viewport.grabScene();
    EXPECT_EQ(mixed(picture, Orange), 0);
    EXPECT_GT(mixed(picture, NearBlack, around(-5)), 40);

    m_user.type(Qt::Key_L);
    EXPECT_TRUE(koNodeUtils::isEditable(m_red));
    picture = m_viewport.grabScene();
    EXPECT_GT(mixed(picture, Orange, around(-5)), 40);
    EXPECT_EQ(mixed(picture, NearBlack), 0);
}

TEST_F(EndToEndTest, ALockedBoxKeepsItsColourBesideAnOrangeOne)
{
    m_user.click(onRed());
    m_user.type(Qt::Key_L);
    m_user.click(onBlue(), Qt::ControlModifier);

    const QImage picture = m_viewport.grabScene();

    EXPECT_GT(mixed(picture, NearBlack, around(-5)), 40);
    EXPECT_EQ(mixed(picture, Orange, around(-5)), 0);
    EXPECT_GT(mixed(picture, Orange, around(5)), 40);
    EXPECT_EQ(mixed(picture, NearBlack, around(5)), 0);
}

TEST_F(EndToEndTest, LockingASelectionThatIsPartlyLockedLocksAllOfIt)
{
    m_user.click(onRed());
    m_user.type(Qt::Key_L);
    m_user.click(onBlue(), Qt::ControlModifier);

    m_user.type(Qt::Key_L);
    EXPECT_FALSE(koNodeUtils::isEditable(m_red));
    EXPECT_FALSE(koNodeUtils::isEditable(m_blue));

    m_user.type(Qt::Key_L);
    EXPECT_TRUE(koNodeUtils::isEditable(m_red));
    EXPECT_TRUE(koNodeUtils::isEditable(m_blue));
}

TEST_F(EndToEndTest, ABoxIsDrawnOverNearerPartsUntilTheOverlayGoes)
{
    m_user.click(onGreen());
    // The right edges of the green box lie behind the screen.
    const QRect behind(pixelOf(0.4F, 1.2F, 2.1F), pixelOf(1.2F, -1.2F, 2.1F));
    EXPECT_GT(mixed(m_viewport.grabScene(), Orange, behind), 30);

    m_user.type(Qt::Key_O);
    EXPECT_FALSE(m_session.getBoxes().getOverlay());
    const QImage picture = m_viewport.grabScene();
    EXPECT_EQ(mixed(picture, Orange, behind), 0);
    EXPECT_GT(mixed(picture, Orange, around(-1)), 30);
}

TEST_F(EndToEndTest, TheWireframeTakesThePlaceOfTheBox)
{
    m_user.click(onRed());

    m_user.type(Qt::Key_B);

    EXPECT_FALSE(m_session.getBoxes().isVisible());
    EXPECT_TRUE(m_session.getHighlight().isVisible());
    const QImage picture = m_viewport.grabScene();
    EXPECT_GT(mixed(picture, Orange, around(-5)), 60);
    // The diagonal of a face crosses the middle, where a box has nothing.
    EXPECT_GT(mixed(picture, Orange, QRect(onRed() - QPoint(4, 4), onRed() + QPoint(4, 4))), 4);

    m_user.type(Qt::Key_B);
    EXPECT_EQ(mixed(m_viewport.grabScene(), Orange, QRect(onRed() - QPoint(2, 2), onRed() + QPoint(2, 2))), 0);
}

TEST_F(EndToEndTest, TheWireframeIsHiddenByNearerPartsWithoutOverlay)
{
    m_user.click(onGreen());
    m_user.type(Qt::Key_B);
    const QRect behind(pixelOf(0.2F, 1.2F, 2.1F), pixelOf(1.2F, -1.2F, 2.1F));
    EXPECT_GT(mixed(m_viewport.grabScene(), Orange, behind), 60);

    m_user.type(Qt::Key_O);

    EXPECT_FALSE(m_session.getHighlight().getOverlay());
    const QImage picture = m_viewport.grabScene();
    EXPECT_EQ(mixed(picture, Orange, behind), 0);
    // In front of the part's own faces the lines stay.
    EXPECT_GT(mixed(picture, Orange, QRect(pixelOf(-1.2F, 1.2F, 1), pixelOf(-0.1F, -1.2F, 1))), 30);
}

TEST_F(EndToEndTest, HidingTakesThePartItsBoxAndItsPickAway)
{
    m_user.click(onRed());

    m_user.type(Qt::Key_H);

    EXPECT_EQ(m_red->getTravMask(), 0U);
    EXPECT_THAT(selection(), ElementsAre(m_red));
    const QImage picture = m_viewport.grabScene();
    EXPECT_EQ(count(picture, QColor(255, 0, 0)), 0);
    m_user.click(onRed());
    EXPECT_THAT(selection(), IsEmpty());
    // Nothing of the selection was in the picture.
    EXPECT_EQ(m_viewport.grabScene(), picture);
}

TEST_F(EndToEndTest, WhatWasHiddenComesBackWithItsBox)
{
    m_user.click(onRed());
    m_user.type(Qt::Key_H);

    m_user.type(Qt::Key_U);

    EXPECT_EQ(m_red->getTravMask(), 0xFFFFFFFFU);
    const QImage picture = m_viewport.grabScene();
    EXPECT_GT(count(picture, QColor(255, 0, 0)), 100);
    EXPECT_GT(mixed(picture, Orange, around(-5)), 40);
}

TEST_F(EndToEndTest, AHiddenPartHasNoWireframe)
{
    m_user.click(onRed());
    m_user.type(Qt::Key_B);

    m_user.type(Qt::Key_H);

    const QImage picture = m_viewport.grabScene();
    m_user.type(Qt::Key_Escape);
    EXPECT_EQ(m_viewport.grabScene(), picture);
}

TEST_F(EndToEndTest, EscapeClearsTheSelection)
{
    m_user.click(onRed());
    m_user.click(onBlue(), Qt::ControlModifier);

    m_user.type(Qt::Key_Escape);

    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(m_session.getBoxes().getVisualisation()->getNChildren(), 0U);
    EXPECT_EQ(mixed(m_viewport.grabScene(), Orange), 0);
}

TEST_F(EndToEndTest, KeysWorkWhateverModifiersAreHeld)
{
    m_user.click(onRed());

    m_user.pressKey(Qt::Key_Escape, Qt::ShiftModifier);

    EXPECT_THAT(selection(), IsEmpty());
    m_user.releaseKey(Qt::Key_Escape);
}

TEST_F(EndToEndTest, AGroupWithoutExtentIsShownByAMarkerCube)
{
    const osg::NodePtr group = m_session.addEmptyGroup("empty", osg::Pnt3f(-2.5F, 0, 0));

    m_session.toggleNode(group);
    m_session.processSceneChanges();

    EXPECT_THAT(selection(), ElementsAre(group));
    const float size = m_session.getBoxes().getMarkerSize();
    const QRect cube(pixelOf(-2.5F - 1.5F * size, 1.5F * size, size), pixelOf(-2.5F + 1.5F * size, -1.5F * size, size));
    const QImage picture = m_viewport.grabScene();
    EXPECT_GT(mixed(picture, Orange, cube), 4);
    EXPECT_EQ(mixed(picture, Orange, cube), mixed(picture, Orange));

    m_session.toggleNode(group);
    EXPECT_EQ(mixed(m_viewport.grabScene(), Orange), 0);
}

TEST_F(EndToEndTest, AMovedPartIsPickedWhereItIsAndItsBoxFollowsAnUpdate)
{
    m_user.click(onRed());
    const osg::TransformPtr transform = osg::TransformPtr::dcast(m_red->getCore());

    beginEditCP(transform, osg::Transform::MatrixFieldMask);
    transform->setMatrix(translation(2.5F, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    m_session.getSelection().updateNode(m_red);

    const QImage picture = m_viewport.grabScene();
    m_user.click(onRed());
    EXPECT_THAT(selection(), IsEmpty());
    m_plain = m_viewport.grabScene();
    EXPECT_GT(mixed(picture, Orange, around(-2.5F)), 40);
    m_user.click(besideAll());
    EXPECT_THAT(selection(), ElementsAre(m_red));
}

TEST_F(EndToEndTest, AfterTheViewTurnedThePointerHitsWhatIsSeen)
{
    m_session.getCamera().setStandardView("back");
    m_user.click(onBlue());
    EXPECT_THAT(selection(), ElementsAre(m_blue));
    EXPECT_LT(onBlue().x(), onRed().x());

    m_user.drag(QPoint(150, 50), QPoint(180, 45), Qt::RightButton);
    m_user.turnWheel(QPoint(150, 50), 240);
    m_user.drag(QPoint(150, 50), QPoint(160, 60), Qt::MiddleButton);

    const QImage picture = m_viewport.grabScene();
    for (int y = 2; y < picture.height(); y += 8) {
        for (int x = 2; x < picture.width(); x += 8) {
            const QColor colour(picture.pixel(x, y));
            const osg::NodePtr node =
                m_session.getPicker().findNodeAt(osg::Pnt2f(static_cast<float>(x), static_cast<float>(y)));
            if (colour == QColor(255, 0, 0)) {
                EXPECT_EQ(node, m_red->getChild(0));
            } else if (colour == QColor(0, 255, 0)) {
                EXPECT_EQ(node, m_green->getChild(0));
            } else if (colour == QColor(0, 0, 255)) {
                EXPECT_EQ(node, m_blue->getChild(0));
            }
        }
    }
}

TEST_F(EndToEndTest, TheBoxesThemselvesAreNeverPicked)
{
    m_user.click(onRed());
    const QImage picture = m_viewport.grabScene();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != m_plain.pixel(x, y)) {
                const osg::NodePtr node =
                    m_session.getPicker().findNodeAt(osg::Pnt2f(static_cast<float>(x), static_cast<float>(y)));
                EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(node));
            }
        }
    }
    m_session.getPicker().setRoot(m_session.getScene());
    EXPECT_NE(
        m_session.getPicker().findNodeAt(osg::Pnt2f(static_cast<float>(onRed().x()), static_cast<float>(onRed().y()))),
        osg::NullFC);
}

TEST_F(EndToEndTest, SelectingCopiesNothingIntoTheContextButTheBox)
{
    m_viewport.grabScene();
    m_user.click(onRed());
    m_viewport.grabScene();
    EXPECT_EQ(m_viewport.getRenderer().getStatistics().uploaded, 1U);

    m_user.type(Qt::Key_B);
    m_viewport.grabScene();

    EXPECT_EQ(m_viewport.getRenderer().getStatistics().uploaded, 0U);
}

TEST_F(EndToEndTest, AnotherModelTakesThePlaceOfTheOldOne)
{
    m_user.click(onRed());
    const osg::UInt32 id = osg::getContainerId(m_red);
    const osg::NodePtr other =
        makeGroup({makePart("other", osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::Color3f(1, 0, 1))});

    m_session.setModel(other);
    m_session.getCamera().setStandardView("front");

    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_EQ(osg::FieldContainerFactory::the()->getContainer(id), osg::NullFC);
    const QImage picture = m_viewport.grabScene();
    EXPECT_EQ(QColor(picture.pixel(150, 50)), QColor(255, 0, 255));
    EXPECT_EQ(count(picture, QColor(255, 0, 0)), 0);
    m_user.click(QPoint(150, 50));
    EXPECT_THAT(selection(), ElementsAre(other->getChild(0)));
}

TEST_F(EndToEndTest, TheBoxesOfOneModelAreGoneWithIt)
{
    const std::size_t before = countLiveContainers();
    m_user.pressKey(Qt::Key_A, Qt::ControlModifier);
    m_user.releaseKey(Qt::Key_A, Qt::ControlModifier);
    m_user.type(Qt::Key_Escape);
    EXPECT_GT(countLiveContainers(), before) << "boxes are kept for the next selection";

    m_session.setModel(m_session.getModel());

    EXPECT_EQ(countLiveContainers(), before);
}

TEST_F(EndToEndTest, WithoutAModelEveryKeyAndClickIsHarmless)
{
    m_session.setModel(osg::NullFC);

    m_user.click(QPoint(150, 50));
    for (const int key :
         {Qt::Key_L, Qt::Key_H, Qt::Key_U, Qt::Key_B, Qt::Key_O, Qt::Key_Escape, Qt::Key_F, Qt::Key_1}) {
        m_user.type(key);
    }

    EXPECT_EQ(m_session.addEmptyGroup("empty", osg::Pnt3f()), osg::NullFC);
    EXPECT_EQ(m_session.countParts(), 0);
    EXPECT_EQ(m_viewport.grabScene().width(), 300);
}

TEST_F(EndToEndTest, NotificationsTellWhatIsSelectedAndHow)
{
    EXPECT_THAT(
        notifications(),
        ElementsAre("Click selects a part, Ctrl+click adds it or takes it out, Shift+drag selects with a rectangle",
                    "Nothing selected  |  boxes over the scene"));

    m_user.click(onRed());
    m_user.type(Qt::Key_L);
    m_user.click(onBlue(), Qt::ControlModifier);
    m_user.type(Qt::Key_B);
    m_user.type(Qt::Key_O);

    EXPECT_EQ(notifications().back(), "2 selected, 1 locked  |  wireframe in the scene");
}

TEST_F(EndToEndTest, TheDescriptionOfTheToolIsShownWhileTheManagerHasItsContext)
{
    m_session.getInteractionManager().disable();
    // The tool's text is the tool's: only contexts hide theirs with the manager.
    EXPECT_EQ(notifications().size(), 2U);
    m_session.getInteractionManager().enable();
}

TEST_F(EndToEndTest, PartsAreCountedByName)
{
    EXPECT_EQ(m_session.countParts(), 4);
}

TEST(EndToEndLeakTest, ASessionLeavesNothingBehindThatItsVisualisationsWouldNot)
{
    const auto countLive = [] { return quon::testing::countLiveContainers(); };
    const std::size_t start = countLive();
    {
        // Each keeps its material on purpose: that of the selection and that of the preselection.
        interaction::HighlightSelectionVisualisation highlight;
        interaction::HighlightSelectionVisualisation preselection;
        interaction::BoxSelectionVisualisation boxes;
    }
    const std::size_t leftByVisualisations = countLive() - start;

    const std::size_t before = countLive();
    {
        viewer::ViewerSession session;
        viewer::Viewport viewport(session, viewer::Viewport::Target::Pictures);
        viewport.resize(100, 100);
        viewport.show();
        const osg::NodePtr part = makeNode(makeBox(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1), osg::NullFC));
        session.setModel(makeGroup({part}));
        UserInput user(viewport);
        user.click(QPoint(50, 50));
        EXPECT_EQ(session.getSelection().getSelection().size(), 1U);
        user.type(Qt::Key_B);
        user.type(Qt::Key_L);
        viewport.grabScene();
    }

    EXPECT_EQ(countLive() - before, leftByVisualisations);
}

} // namespace

} // namespace quon::testing
