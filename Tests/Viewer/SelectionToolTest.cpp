// SPDX-License-Identifier: MIT
#include "Support/CountingPicker.h"
#include "Support/DrawnScene.h"
#include "Support/UserInput.h"
#include "Support/ViewportPixel.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <QColor>
#include <QEvent>
#include <QImage>
#include <QObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

/** Counts the events of one type that reach what it is installed in. */
class EventCounter : public QObject {
public:
    explicit EventCounter(const QEvent::Type type)
        : m_type(type)
    {}

    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == m_type ? 1 : 0;
        return false;
    }

    int count = 0;

private:
    QEvent::Type m_type;
};

/**
 * Three boxes in a row, seen from the front: left, middle, right. Behind the middle one is a smaller box, which it
 * hides.
 *
 * Every test sends a user's events to the viewport and looks at the selection.
 */
class SelectionToolTest : public ::testing::Test {
protected:
    SelectionToolTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_user(m_viewport)
    {
        m_viewport.resize(300, 100);
        m_viewport.show();
        m_left = makePart("left", osg::Pnt3f(-6, -1, -1), osg::Pnt3f(-4, 1, 1));
        m_middle = makePart("middle", osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1));
        m_right = makePart("right", osg::Pnt3f(4, -1, -1), osg::Pnt3f(6, 1, 1));
        m_behind = makePart("behind", osg::Pnt3f(-0.5F, -0.5F, -3), osg::Pnt3f(0.5F, 0.5F, -2));
        m_model = makeGroup({m_left, m_middle, m_right, m_behind});
        NodeUtils::setName(m_model, "model", false);
        m_session.setModel(m_model);
        m_session.getCamera().setStandardView("front");
        m_session.processSceneChanges();

        m_session.getTools().setPicker(&m_picker);
        m_session.addSceneChangeListener(&m_picker);
        m_picker.setRoot(m_model);
        m_picker.setViewportSize(300, 100);
        m_picker.setCamera(m_session.getCamera().getWorldToClip());
    }

    ~SelectionToolTest() override
    {
        m_session.removeSceneChangeListener(&m_picker);
        m_session.getTools().setPicker(&m_session.getPicker());
        m_picker.setRoot(osg::NullFC);
    }

    // The pixel that shows a place of the plane z = 1, where the boxes have their fronts.
    QPoint at(const float x, const float y) { return findPixel(m_session, m_viewport.size(), osg::Pnt3f(x, y, 1)); }

    void shiftDrag(const QPoint& from, const QPoint& to) { m_user.drag(from, to, Qt::LeftButton, Qt::ShiftModifier); }

    const std::set<osg::NodePtr>& selection() { return m_session.getSelection().getSelection(); }

    viewer::RubberBand& band()
    {
        return static_cast<viewer::SelectionTool*>(m_session.getTools().getCurrentTool())->getRubberBand();
    }

    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    UserInput m_user;
    CountingPicker m_picker;
    osg::NodePtr m_model;
    osg::NodePtr m_left;
    osg::NodePtr m_middle;
    osg::NodePtr m_right;
    osg::NodePtr m_behind;
};

TEST_F(SelectionToolTest, AClickSelectsThePartAndNothingElse)
{
    m_user.click(at(-5, 0));
    m_user.click(at(5, 0));

    EXPECT_THAT(selection(), ElementsAre(m_right));
}

TEST_F(SelectionToolTest, AClickOnEmptySpaceClearsTheSelection)
{
    m_user.click(at(-5, 0));
    m_user.click(at(-2.5F, 0));

    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(SelectionToolTest, AControlClickAddsAPartAndTakesItOutAgain)
{
    m_user.click(at(-5, 0));
    m_user.click(at(5, 0), Qt::ControlModifier);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_left, m_right));

    m_user.click(at(5, 0), Qt::ControlModifier);
    m_user.click(at(-2.5F, 0), Qt::ControlModifier);
    EXPECT_THAT(selection(), ElementsAre(m_left));
}

TEST_F(SelectionToolTest, AShiftClickAddsAPartAndLeavesOneThatIsSelected)
{
    m_user.click(at(-5, 0));
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(Qt::ShiftModifier), Qt::ShiftModifier | Qt::ControlModifier}) {
        m_user.click(at(5, 0), modifiers);
        EXPECT_THAT(selection(), UnorderedElementsAre(m_left, m_right));
    }
    m_user.click(at(-2.5F, 0), Qt::ShiftModifier);

    EXPECT_THAT(selection(), UnorderedElementsAre(m_left, m_right));
}

TEST_F(SelectionToolTest, ADragNeverEndsInAClickEvenWhereItBegan)
{
    m_user.press(at(-5, 0));
    m_user.move(at(-5, 0) + QPoint(3, 0));
    m_user.move(at(-5, 0));
    m_user.release(at(-5, 0));

    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(SelectionToolTest, APressThatMovesLessThanThreePixelsIsAClick)
{
    m_user.press(at(-5, 0));
    m_user.move(at(-5, 0) + QPoint(2, 2));
    m_user.release(at(-5, 0) + QPoint(2, 2));

    EXPECT_THAT(selection(), ElementsAre(m_left));
}

TEST_F(SelectionToolTest, ARectangleDrawnToTheRightSelectsWhatItEncloses)
{
    // Around the left box, over half of the middle one.
    shiftDrag(at(-7, 2), at(0, -2));

    EXPECT_THAT(selection(), ElementsAre(m_left));
}

TEST_F(SelectionToolTest, ARectangleDrawnToTheLeftSelectsWhatItTouches)
{
    shiftDrag(at(0, 0.9F), at(-7, 0.7F));

    EXPECT_THAT(selection(), UnorderedElementsAre(m_left, m_middle));
}

TEST_F(SelectionToolTest, ARectangleSelectsWhatIsHiddenBehindOthersUnlessVisibleOnlyIsOn)
{
    shiftDrag(at(-1.5F, 1.5F), at(1.5F, -1.5F));
    EXPECT_THAT(selection(), UnorderedElementsAre(m_middle, m_behind));

    m_session.sendCommand("visible-only");
    shiftDrag(at(-1.5F, 1.5F), at(1.5F, -1.5F));
    EXPECT_THAT(selection(), ElementsAre(m_middle));
    EXPECT_TRUE(m_session.getCommands().isChecked("visible-only"));
}

TEST_F(SelectionToolTest, ARectangleReplacesTheSelectionAndWithControlAddsToIt)
{
    m_user.click(at(-5, 0));
    shiftDrag(at(3, 2), at(7, -2));
    EXPECT_THAT(selection(), ElementsAre(m_right));

    m_user.drag(at(-7, 2), at(-3, -2), Qt::LeftButton, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_left, m_right));
}

TEST_F(SelectionToolTest, ARectangleAroundNothingClearsTheSelection)
{
    m_user.click(at(-5, 0));

    shiftDrag(at(-3.5F, 1), at(-1.5F, -1));

    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(SelectionToolTest, HiddenAndAuxiliaryPartsAreNeverInARectangle)
{
    setTravMask(m_left, 0);
    koNodeUtils::setIsAuxiliaryNode(m_right, true);
    beginEditCP(m_model, osg::Node::ChildrenFieldMask);
    m_model->subChild(m_right);
    m_model->addChild(m_right);
    endEditCP(m_model, osg::Node::ChildrenFieldMask);

    shiftDrag(QPoint(299, 99), QPoint(0, 0));

    EXPECT_THAT(selection(), UnorderedElementsAre(m_middle, m_behind));
}

TEST_F(SelectionToolTest, ARectangleMayReachBeyondTheViewport)
{
    shiftDrag(QPoint(-50, -50), QPoint(400, 200));
    EXPECT_EQ(selection().size(), 4U);

    // The whole of the left box is in a rectangle that the left edge of the viewport does not cut.
    m_session.getCamera().pan(static_cast<double>(-at(-5, 0).x()), 0);
    shiftDrag(QPoint(-50, -50), QPoint(400, 200));
    EXPECT_THAT(selection(), UnorderedElementsAre(m_middle, m_right, m_behind));
}

TEST_F(SelectionToolTest, TheSelectionChangesOnceWhenTheButtonIsReleased)
{
    int changes = 0;
    QObject::connect(&m_session, &viewer::ViewerSession::selectionChanged, [&] { ++changes; });
    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    for (float x = -7; x <= 7; ++x) {
        m_user.move(at(x, -2), Qt::ShiftModifier);
        m_session.beginFrame();
    }
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(band().getCount(), 4);

    m_user.release(at(7, -2), Qt::LeftButton, Qt::ShiftModifier);

    EXPECT_EQ(changes, 1);
    EXPECT_EQ(selection().size(), 4U);
}

TEST_F(SelectionToolTest, ModifiersThatChangeDuringADragChangeNothing)
{
    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    m_user.move(at(-5, 0), Qt::NoModifier);
    m_user.move(at(-3, -2), Qt::AltModifier);
    m_user.release(at(-3, -2), Qt::LeftButton, Qt::ControlModifier);

    EXPECT_THAT(selection(), ElementsAre(m_left));
}

TEST_F(SelectionToolTest, EscapeTakesTheRectangleAwayAndTheReleaseSelectsNothing)
{
    m_user.click(at(5, 0));
    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    m_user.move(at(-3, -2), Qt::ShiftModifier);
    EXPECT_TRUE(band().isActive());

    m_user.type(Qt::Key_Escape);
    EXPECT_FALSE(band().isActive());
    m_user.move(at(-2.5F, -2), Qt::ShiftModifier);
    EXPECT_FALSE(band().isActive());
    m_user.release(at(-2.5F, -2), Qt::LeftButton, Qt::ShiftModifier);

    EXPECT_THAT(selection(), ElementsAre(m_right));
}

TEST_F(SelectionToolTest, TheEndOfTheFocusTakesTheRectangleAway)
{
    m_user.click(at(5, 0));
    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    m_user.move(at(-3, -2), Qt::ShiftModifier);

    m_user.loseFocus();
    EXPECT_FALSE(band().isActive());
    m_user.release(at(-3, -2), Qt::LeftButton, Qt::ShiftModifier);

    EXPECT_THAT(selection(), ElementsAre(m_right));
}

TEST_F(SelectionToolTest, AnotherModelTakesTheRectangleAway)
{
    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    m_user.move(at(-3, -2), Qt::ShiftModifier);

    m_session.setModel(m_model);
    m_user.release(at(-3, -2), Qt::LeftButton, Qt::ShiftModifier);

    EXPECT_FALSE(band().isActive());
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(SelectionToolTest, ARectangleIsQueriedOncePerFrameAndOnceAtTheEnd)
{
    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    for (int i = 0; i < 50; ++i) {
        m_user.move(at(-6, 1) + QPoint(i, 0), Qt::ShiftModifier);
    }
    EXPECT_EQ(m_picker.nodePicks, 0);
    m_session.beginFrame();
    EXPECT_EQ(m_picker.nodePicks, 1);
    m_session.beginFrame();
    EXPECT_EQ(m_picker.nodePicks, 1);

    m_user.release(at(-6, 1) + QPoint(49, 0), Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(m_picker.nodePicks, 1);
    EXPECT_EQ(m_picker.picks, 0);
}

TEST_F(SelectionToolTest, HoveringPicksOncePerFrameWithThePointerWhereItIsThen)
{
    std::vector<std::string> names;
    QObject::connect(&m_session, &viewer::ViewerSession::hoveredChanged,
                     [&](const QString& name) { names.push_back(name.toStdString()); });
    for (int i = 0; i < 50; ++i) {
        m_user.move(at(-5, 0) + QPoint(i, 0));
    }
    m_user.move(at(5, 0));
    EXPECT_EQ(m_picker.picks, 0);

    m_session.beginFrame();
    m_session.beginFrame();

    EXPECT_EQ(m_picker.picks, 1);
    EXPECT_THAT(names, ElementsAre("right"));
}

TEST_F(SelectionToolTest, HoveringIsPickedSoonAfterTheMovementWithoutAPicture)
{
    m_user.move(at(5, 0));
    while (m_picker.picks == 0) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    EXPECT_EQ(m_picker.picks, 1);
}

TEST_F(SelectionToolTest, HoveringEndsOverEmptySpaceWhenThePointerLeavesAndWhileAButtonIsHeld)
{
    QString name;
    QObject::connect(&m_session, &viewer::ViewerSession::hoveredChanged, [&](const QString& text) { name = text; });
    const auto hover = [&] {
        m_user.move(at(5, 0) + QPoint(1, 0));
        m_user.move(at(5, 0));
        m_session.beginFrame();
        EXPECT_EQ(name, QStringLiteral("right"));
    };

    hover();
    m_user.move(at(2.5F, 0));
    m_session.beginFrame();
    EXPECT_EQ(name, QString());

    hover();
    m_user.leave();
    EXPECT_EQ(name, QString());

    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        hover();
        m_user.press(at(5, 0), button);
        m_user.move(at(5, 0) + QPoint(5, 0));
        m_session.beginFrame();
        EXPECT_EQ(name, QString());
        m_user.release(at(5, 0) + QPoint(5, 0), button);
    }
}

TEST_F(SelectionToolTest, SelectAllTakesThePartsThatAreShown)
{
    setTravMask(m_right, 0);

    m_user.pressKey(Qt::Key_A, Qt::ControlModifier);
    m_user.releaseKey(Qt::Key_A, Qt::ControlModifier);

    EXPECT_THAT(selection(), UnorderedElementsAre(m_left, m_middle, m_behind));
}

TEST_F(SelectionToolTest, InvertSelectsTheShownPartsThatAreNotSelectedAndNothingElse)
{
    setTravMask(m_right, 0);
    m_user.click(at(-5, 0));

    m_user.type(Qt::Key_N);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_middle, m_behind));

    m_session.getEditor().select({m_model});
    m_user.type(Qt::Key_N);
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(SelectionToolTest, ParentAndChildrenLeadUpToTheModelAndDownToItsParts)
{
    m_user.click(at(-5, 0));

    m_user.type(Qt::Key_PageUp);
    EXPECT_THAT(selection(), ElementsAre(m_model));
    m_user.type(Qt::Key_PageUp);
    EXPECT_THAT(selection(), ElementsAre(m_model));

    m_user.type(Qt::Key_PageDown);
    EXPECT_EQ(selection().size(), 4U);
    m_user.type(Qt::Key_PageDown);
    EXPECT_EQ(selection().size(), 4U);
}

TEST_F(SelectionToolTest, SelectionCommandsCanBeAskedForWhenThereIsSomethingToSelectFrom)
{
    const viewer::CommandContext& commands = m_session.getCommands();
    EXPECT_TRUE(commands.isAvailable("select-all"));
    EXPECT_FALSE(commands.isAvailable("select-parent"));
    EXPECT_FALSE(commands.isAvailable("select-children"));
    EXPECT_FALSE(commands.isAvailable("select-none"));

    m_user.click(at(-5, 0));
    EXPECT_TRUE(commands.isAvailable("select-parent"));
    EXPECT_TRUE(commands.isAvailable("select-children"));
    m_session.setModel(osg::NullFC);
    EXPECT_FALSE(commands.isAvailable("select-all"));
    EXPECT_FALSE(commands.isAvailable("invert"));
}

TEST_F(SelectionToolTest, EverySelectionCommandIsOneStepThatCanBeTakenBack)
{
    m_user.click(at(-5, 0));
    for (const char* command : {"select-all", "invert", "select-parent", "select-none"}) {
        m_session.getEditor().select({m_left});
        m_session.sendCommand(command);
        EXPECT_THAT(selection(), ::testing::Not(ElementsAre(m_left))) << command;

        m_session.sendCommand("undo");

        EXPECT_THAT(selection(), ElementsAre(m_left)) << command;
    }
}

TEST_F(SelectionToolTest, ThePointerIsACrossWhileARectangleIsDrawn)
{
    EXPECT_EQ(m_viewport.cursor().shape(), Qt::ArrowCursor);
    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    m_user.move(at(-3, -2), Qt::ShiftModifier);
    EXPECT_EQ(m_viewport.cursor().shape(), Qt::CrossCursor);

    m_user.release(at(-3, -2), Qt::LeftButton, Qt::ShiftModifier);

    EXPECT_EQ(m_viewport.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(SelectionToolTest, ThePointerGetsItsShapeOnlyWhereThatChanges)
{
    EventCounter changes(QEvent::CursorChange);
    m_viewport.installEventFilter(&changes);

    m_user.move(at(-7, 2));
    m_user.move(at(-3, -2));
    m_user.click(at(-5, 0));
    EXPECT_EQ(changes.count, 0);

    m_user.press(at(-7, 2), Qt::LeftButton, Qt::ShiftModifier);
    m_user.move(at(-5, 0), Qt::ShiftModifier);
    const int begun = changes.count;
    EXPECT_GT(begun, 0);
    m_user.move(at(-4, -1), Qt::ShiftModifier);
    m_user.move(at(-3, -2), Qt::ShiftModifier);
    EXPECT_EQ(changes.count, begun);

    m_user.release(at(-3, -2), Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_GT(changes.count, begun);
}

TEST_F(SelectionToolTest, TheRectangleIsBlueAndSolidToTheRightGreenAndDashedToTheLeft)
{
    // High enough for the rectangle to lie above the notifications.
    m_viewport.resize(300, 300);
    const auto lineColours = [&](const QPoint& from, const QPoint& to) {
        m_user.press(from, Qt::LeftButton, Qt::ShiftModifier);
        m_user.move(to, Qt::ShiftModifier);
        const QImage picture = m_viewport.grabPicture();
        m_user.release(to, Qt::LeftButton, Qt::ShiftModifier);
        std::array<int, 2> counts{};
        for (int x = std::min(from.x(), to.x()) + 5; x < std::max(from.x(), to.x()) - 5; ++x) {
            const QColor pixel(picture.pixel(x, from.y()));
            counts[0] += pixel.blue() > 180 && pixel.red() < 60 ? 1 : 0;
            counts[1] += pixel.green() > 120 && pixel.red() < 60 && pixel.blue() < 120 ? 1 : 0;
        }
        return counts;
    };

    EXPECT_THAT(lineColours(QPoint(100, 5), QPoint(200, 60)), ElementsAre(90, 0));
    const auto toTheLeft = lineColours(QPoint(200, 5), QPoint(100, 60));
    EXPECT_EQ(toTheLeft[0], 0);
    EXPECT_GT(toTheLeft[1], 40);
    EXPECT_LT(toTheLeft[1], 70);
}

} // namespace

} // namespace quon::testing
