// SPDX-License-Identifier: MIT
#include "Support/DrawnScene.h"
#include "Support/UserInput.h"
#include "Support/ViewportPixel.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>
#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGFieldContainerFactory.h>

#include <QColor>
#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

/** Two red boxes seen from the front, left and right of the middle; a user moves the pointer over them. */
class PreselectionTest : public ::testing::Test {
protected:
    PreselectionTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
    {
        m_viewport.resize(300, 200);
        m_viewport.show();
        m_left = makePart("left", osg::Pnt3f(-4, -1, -1), osg::Pnt3f(-2, 1, 1));
        m_right = makePart("right", osg::Pnt3f(2, -1, -1), osg::Pnt3f(4, 1, 1));
        m_model = makeGroup({m_left, m_right});
        NodeUtils::setName(m_model, "model", false);
        m_session.setModel(m_model);
        m_session.getCamera().setStandardView("front");
        m_session.beginFrame();
    }

    QPoint at(const float x, const float y) { return findPixel(m_session, m_viewport.size(), osg::Pnt3f(x, y, 1)); }

    const std::set<osg::NodePtr>& preselected() { return m_session.getPreselection().getModel().getSelection(); }
    const std::set<osg::NodePtr>& selected() { return m_session.getSelection().getSelection(); }

    void hover(const QPoint& place)
    {
        m_user.move(place);
        m_session.beginFrame();
    }

    static bool isBlue(const QColor& colour)
    {
        return colour.blue() > colour.red() + 40 && colour.blue() > colour.green() + 20;
    }

    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;
    osg::NodePtr m_left;
    osg::NodePtr m_right;
    osg::NodePtr m_model;
};

TEST_F(PreselectionTest, ThePartUnderThePointerIsPreselectedFromTheNextFrameOn)
{
    m_user.move(at(-3, 0));
    EXPECT_THAT(preselected(), IsEmpty());

    m_session.beginFrame();

    EXPECT_THAT(preselected(), ElementsAre(m_left));
    EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(PreselectionTest, ItFollowsThePointerAndGoesOverEmptySpace)
{
    hover(at(-3, 0));
    hover(at(3, 0));
    EXPECT_THAT(preselected(), ElementsAre(m_right));

    hover(at(0, 0));
    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(PreselectionTest, ItGoesWhenThePointerLeaves)
{
    hover(at(-3, 0));

    m_user.leave();

    EXPECT_THAT(preselected(), IsEmpty());
    m_session.beginFrame();
    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(PreselectionTest, WhatIsSelectedIsNotPreselected)
{
    m_user.click(at(-3, 0));
    m_session.beginFrame();
    EXPECT_THAT(preselected(), IsEmpty());

    m_user.click(at(-3, 0), Qt::ControlModifier);
    m_session.beginFrame();
    EXPECT_THAT(preselected(), ElementsAre(m_left));
}

TEST_F(PreselectionTest, ItIsPickedAgainWhenTheCameraMoves)
{
    hover(at(-3, 0));
    const int width = at(3, 0).x() - at(-3, 0).x();

    m_session.getCamera().pan(-width, 0);
    m_session.beginFrame();

    EXPECT_THAT(preselected(), ElementsAre(m_right));
}

TEST_F(PreselectionTest, ItGoesWhenThePartIsHiddenAndComesBackWithIt)
{
    hover(at(-3, 0));

    m_session.getEditor().hide({m_left});
    m_session.beginFrame();
    EXPECT_THAT(preselected(), IsEmpty());

    m_session.getEditor().showAll();
    m_session.beginFrame();
    EXPECT_THAT(preselected(), ElementsAre(m_left));
}

TEST_F(PreselectionTest, ThereIsNoneWhileAButtonIsHeldAndThePointerMoves)
{
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton, Qt::RightButton}) {
        hover(at(-3, 0));
        EXPECT_THAT(preselected(), ElementsAre(m_left));

        m_user.press(at(-3, 0), button);
        m_user.move(at(-3, 0) + QPoint(0, 6));
        m_session.beginFrame();
        EXPECT_THAT(preselected(), IsEmpty());

        m_user.release(at(-3, 0) + QPoint(0, 6), button);
        hover(at(0, 0));
    }
}

TEST_F(PreselectionTest, WhatARectangleHoldsIsPreselectedUntilItIsSelectedOrCancelled)
{
    m_user.press(at(-5, 2), Qt::LeftButton, Qt::ShiftModifier);
    m_user.move(at(0, -2), Qt::ShiftModifier);
    m_session.beginFrame();
    EXPECT_THAT(preselected(), ElementsAre(m_left));
    m_user.move(at(5, -2), Qt::ShiftModifier);
    m_session.beginFrame();
    EXPECT_THAT(preselected(), UnorderedElementsAre(m_left, m_right));

    m_user.type(Qt::Key_Escape);
    EXPECT_THAT(preselected(), IsEmpty());
    m_user.release(at(5, -2), Qt::LeftButton, Qt::ShiftModifier);

    m_user.drag(at(-5, 2), at(0, -2), Qt::LeftButton, Qt::ShiftModifier);
    m_session.beginFrame();
    EXPECT_THAT(preselected(), IsEmpty());
    EXPECT_THAT(selected(), ElementsAre(m_left));
}

TEST_F(PreselectionTest, SwitchedOffNothingIsPreselectedAndTheNameIsStillTold)
{
    QString name;
    QObject::connect(&m_session, &viewer::ViewerSession::hoveredChanged, [&](const QString& text) { name = text; });
    hover(at(-3, 0));

    m_session.sendCommand("preselection");
    EXPECT_THAT(preselected(), IsEmpty());
    EXPECT_FALSE(m_session.getCommands().isChecked("preselection"));
    hover(at(3, 0));
    EXPECT_THAT(preselected(), IsEmpty());
    EXPECT_EQ(name, QStringLiteral("right"));

    m_session.sendCommand("preselection");
    m_session.beginFrame();
    EXPECT_THAT(preselected(), ElementsAre(m_right));
}

TEST_F(PreselectionTest, AnotherModelTakesItAway)
{
    hover(at(-3, 0));

    m_session.setModel(osg::NullFC);

    EXPECT_THAT(preselected(), IsEmpty());
    m_session.beginFrame();
    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(PreselectionTest, APartThatIsTakenOutOfTheModelIsLetGo)
{
    hover(at(-3, 0));
    const osg::UInt32 id = osg::getContainerId(m_left);

    beginEditCP(m_model, osg::Node::ChildrenFieldMask);
    m_model->subChild(m_left);
    endEditCP(m_model, osg::Node::ChildrenFieldMask);
    m_session.beginFrame();

    EXPECT_THAT(preselected(), IsEmpty());
    EXPECT_EQ(osg::FieldContainerFactory::the()->getContainer(id), osg::NullFC);
}

TEST_F(PreselectionTest, ThePartTurnsBlueInThePictureAndRedAgain)
{
    const auto colourOf = [&](const QPoint& place) { return QColor(m_viewport.grabScene().pixel(place)); };
    EXPECT_EQ(colourOf(at(-3, 0)), QColor(255, 0, 0));

    // Without a call of anything in between: the picture itself is a frame.
    m_user.move(at(-3, 0));
    const QImage picture = m_viewport.grabScene();
    int blue = 0;
    int red = 0;
    for (int y = at(-3, 0.9F).y(); y < at(-3, -0.9F).y(); ++y) {
        for (int x = at(-3.9F, 0).x(); x < at(-2.1F, 0).x(); ++x) {
            const QColor colour(picture.pixel(x, y));
            blue += isBlue(colour) ? 1 : 0;
            red += colour == QColor(255, 0, 0) ? 1 : 0;
        }
    }
    EXPECT_GT(blue, 300);
    EXPECT_EQ(red, 0);
    EXPECT_EQ(QColor(picture.pixel(at(3, 0))), QColor(255, 0, 0));

    m_user.click(at(-3, 0));
    EXPECT_EQ(colourOf(at(-3, 0)), QColor(255, 0, 0));
}

TEST_F(PreselectionTest, AGroupThatIsSelectedLeavesItsPartsToBePreselected)
{
    m_session.getEditor().select({m_model});

    hover(at(-3, 0));

    EXPECT_THAT(preselected(), ElementsAre(m_left));
}

TEST_F(PreselectionTest, NodesComeOnceAndNullsAreLeftOut)
{
    m_session.getPreselection().show({m_left, osg::NullFC, m_right, m_left});

    EXPECT_THAT(preselected(), UnorderedElementsAre(m_left, m_right));
}

TEST(PreselectionLifetimeTest, ASessionTakesTheModelAlong)
{
    auto* const manager = interaction::SelectionManager::getInstance();
    {
        viewer::ViewerSession session;
        EXPECT_EQ(manager->getSelectionModel(viewer::Preselection::ModelName), &session.getPreselection().getModel());
    }

    EXPECT_EQ(manager->getSelectionModel(viewer::Preselection::ModelName), nullptr);
}

} // namespace

} // namespace quon::testing
