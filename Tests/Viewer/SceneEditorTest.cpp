// SPDX-License-Identifier: MIT
#include <InteractionTesting/RecordingVisualisation.h>
#include <InteractionTesting/SceneBuilder.h>

#include "Viewer/Model/NodeWalk.h"
#include "Viewer/Session/SceneEditor.h"

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGGroup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

constexpr osg::UInt32 Shown = 0xFFFFFFFF;
constexpr osg::UInt32 Hidden = 0;
constexpr osg::UInt32 Partial = 0x0000000F;

void setMask(const osg::NodePtr& node, const osg::UInt32 mask)
{
    beginEditCP(node, osg::Node::TravMaskFieldMask);
    node->setTravMask(mask);
    endEditCP(node, osg::Node::TravMaskFieldMask);
}

/**
 * A model of two groups and a part:
 *
 *     root - car  - wheel - wheel geometry
 *          |      \ seat  - seat geometry
 *          |- boat - oar  - oar geometry
 *          \- sign
 */
class SceneEditorTest : public ::testing::Test {
protected:
    SceneEditorTest()
        : m_root(makeNode(osg::Group::create()))
        , m_selection("selection")
        , m_editor(m_selection)
    {
        m_car = addChild(m_root.get(), osg::Group::create());
        m_wheel = addPart(m_car, 0);
        m_seat = addPart(m_car, 4);
        m_boat = addChild(m_root.get(), osg::Group::create());
        m_oar = addPart(m_boat, 8);
        m_sign = addPart(m_root.get(), 12);
        m_selection.addVisualisation(&m_boxes);
        m_editor.setRoot(m_root.get());
        m_editor.setStateChanged([this] { ++m_stateChanges; });
    }

    ~SceneEditorTest() override
    {
        m_selection.clearSelection();
        m_selection.removeVisualisation(&m_boxes);
    }

    static osg::NodePtr addPart(const osg::NodePtr& parent, const float x)
    {
        const osg::NodePtr part = addChild(parent, makeTranslation(x, 0, 0));
        addChild(part, makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 1)));
        return part;
    }

    const std::set<osg::NodePtr>& selection() const { return m_selection.getSelection(); }

    std::vector<osg::NodePtr> allNodes() const
    {
        std::vector<osg::NodePtr> nodes;
        viewer::walkNodes(m_root.get(), [&](const osg::NodePtr& node) { return nodes.push_back(node), true; });
        return nodes;
    }

    std::set<osg::NodePtr> hidden() const
    {
        std::set<osg::NodePtr> nodes;
        for (const osg::NodePtr& node : allNodes()) {
            if (node->getTravMask() == Hidden) {
                nodes.insert(node);
            }
        }
        return nodes;
    }

    static std::set<osg::NodePtr> withGeometry(const std::vector<osg::NodePtr>& parts)
    {
        std::set<osg::NodePtr> nodes(parts.begin(), parts.end());
        for (const osg::NodePtr& part : parts) {
            nodes.insert(part->getChild(0));
        }
        return nodes;
    }

    // The boxes that are drawn.
    int shownBoxes()
    {
        const osg::NodePtr boxes = m_boxes.getVisualisation();
        int shown = 0;
        for (osg::UInt32 i = 0; i < boxes->getNChildren(); ++i) {
            shown += boxes->getChild(i)->getTravMask() == Shown ? 1 : 0;
        }
        return shown;
    }

    int stepCount() const { return m_editor.getHistory().count(); }

    NodeRef m_root;
    osg::NodePtr m_car;
    osg::NodePtr m_wheel;
    osg::NodePtr m_seat;
    osg::NodePtr m_boat;
    osg::NodePtr m_oar;
    osg::NodePtr m_sign;
    interaction::NodeSelectionModel m_selection;
    interaction::BoxSelectionVisualisation m_boxes;
    viewer::SceneEditor m_editor;
    int m_stateChanges = 0;
};

// The selection.

TEST_F(SceneEditorTest, SelectingReplacesAddingJoinsAndRemovingTakesOut)
{
    m_editor.select({m_wheel, m_seat});
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_seat));

    m_editor.add({m_seat, m_oar, m_sign});
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_seat, m_oar, m_sign));

    m_editor.remove({m_seat, m_boat, m_sign});
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_oar));

    m_editor.select({});
    EXPECT_THAT(selection(), IsEmpty());
}

TEST_F(SceneEditorTest, UndoAndRedoWalkThroughTheSelections)
{
    m_editor.select({m_wheel, m_seat});
    m_editor.toggle(m_oar);
    m_editor.toggle(m_seat);
    m_editor.select({m_sign});

    m_editor.undo();
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_oar));
    m_editor.undo();
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_seat, m_oar));
    m_editor.undo();
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_seat));
    m_editor.undo();
    EXPECT_THAT(selection(), IsEmpty());
    EXPECT_FALSE(m_editor.canUndo());

    for (int i = 0; i < 4; ++i) {
        m_editor.redo();
    }
    EXPECT_THAT(selection(), ElementsAre(m_sign));
    EXPECT_FALSE(m_editor.canRedo());
}

TEST_F(SceneEditorTest, ChangesThatChangeNothingMakeNoStep)
{
    m_editor.select({});
    m_editor.add({});
    m_editor.remove({m_wheel});
    m_editor.toggle(osg::NullFC);
    m_editor.select({osg::NullFC});
    EXPECT_EQ(stepCount(), 0);

    m_editor.select({m_wheel, m_seat});
    m_editor.select({m_seat, m_wheel, m_seat, osg::NullFC});
    m_editor.add({m_wheel});
    m_editor.showAll();
    m_editor.setLocked({m_wheel}, false);
    m_editor.show({m_wheel});
    m_editor.isolate({m_root.get()});

    EXPECT_EQ(stepCount(), 1);
    EXPECT_EQ(m_stateChanges, 0);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_seat));
}

TEST_F(SceneEditorTest, VisualisationsHearOfOneSelectedNodeAndNotOfAll)
{
    CallLog log;
    ObjectNames names;
    names.add(m_wheel, "wheel");
    names.add(m_seat, "seat");
    names.add(m_oar, "oar");
    RecordingVisualisation recording(log, names, "v");
    m_editor.select({m_wheel, m_seat});
    m_selection.addVisualisation(&recording);
    log.clear();

    m_editor.add({m_wheel, m_oar});
    EXPECT_THAT(log.take(), ElementsAre("v.addNode(oar)"));
    m_editor.undo();
    EXPECT_THAT(log.take(), ElementsAre("v.removeNode(oar)"));
    m_editor.select({m_oar});
    EXPECT_THAT(log.take(), ElementsAre("v.removeAllNodes()", "v.addNode(oar)"));

    m_selection.removeVisualisation(&recording);
}

// Gestures.

TEST_F(SceneEditorTest, AGestureIsOneStep)
{
    m_editor.select({m_sign});

    m_editor.beginGesture();
    m_editor.select({m_wheel});
    m_editor.select({m_wheel, m_seat});
    m_editor.select({m_seat, m_oar});
    EXPECT_THAT(selection(), UnorderedElementsAre(m_seat, m_oar));
    EXPECT_EQ(stepCount(), 1);
    m_editor.endGesture();

    EXPECT_EQ(stepCount(), 2);
    EXPECT_EQ(m_editor.getUndoText(), QStringLiteral("Select 2 parts"));
    m_editor.undo();
    EXPECT_THAT(selection(), ElementsAre(m_sign));
    m_editor.redo();
    EXPECT_THAT(selection(), UnorderedElementsAre(m_seat, m_oar));
}

TEST_F(SceneEditorTest, AGestureThatEndsWhereItBeganIsNoStep)
{
    m_editor.select({m_sign});
    m_editor.undo();

    m_editor.beginGesture();
    m_editor.add({m_wheel});
    m_editor.remove({m_wheel});
    m_editor.endGesture();

    EXPECT_EQ(stepCount(), 1);
    EXPECT_TRUE(m_editor.canRedo());
}

TEST_F(SceneEditorTest, GesturesWithinAGestureAreOneStepTogether)
{
    m_editor.beginGesture();
    m_editor.add({m_wheel});
    m_editor.beginGesture();
    m_editor.add({m_seat});
    m_editor.endGesture();
    EXPECT_TRUE(m_editor.isInGesture());
    m_editor.endGesture();
    m_editor.endGesture();

    EXPECT_FALSE(m_editor.isInGesture());
    EXPECT_EQ(stepCount(), 1);
}

TEST_F(SceneEditorTest, ACancelledGestureLeavesTheSelectionAsItWas)
{
    m_editor.select({m_sign, m_wheel});

    m_editor.beginGesture();
    m_editor.select({m_seat, m_oar, m_wheel});
    m_editor.cancelGesture();

    EXPECT_THAT(selection(), UnorderedElementsAre(m_sign, m_wheel));
    EXPECT_EQ(stepCount(), 1);
    EXPECT_FALSE(m_editor.isInGesture());
    m_editor.cancelGesture();
    EXPECT_THAT(selection(), UnorderedElementsAre(m_sign, m_wheel));
}

TEST_F(SceneEditorTest, NothingIsTakenBackWithinAGesture)
{
    m_editor.select({m_sign});
    m_editor.beginGesture();
    m_editor.select({m_wheel});

    EXPECT_FALSE(m_editor.canUndo());
    EXPECT_EQ(m_editor.getUndoText(), QString());
    m_editor.undo();

    EXPECT_THAT(selection(), ElementsAre(m_wheel));
    m_editor.endGesture();
    m_editor.undo();
    EXPECT_THAT(selection(), ElementsAre(m_sign));
}

TEST_F(SceneEditorTest, WhatIsHiddenWithinAGestureIsAStepBetweenTheTwoHalves)
{
    m_editor.beginGesture();
    m_editor.select({m_wheel});
    m_editor.hide({m_wheel});
    m_editor.select({m_seat});
    m_editor.endGesture();

    EXPECT_EQ(stepCount(), 3);
    m_editor.undo();
    EXPECT_THAT(selection(), ElementsAre(m_wheel));
    EXPECT_EQ(m_wheel->getTravMask(), Hidden);
    m_editor.undo();
    EXPECT_EQ(m_wheel->getTravMask(), Shown);
    m_editor.undo();
    EXPECT_THAT(selection(), IsEmpty());
}

// Visibility.

TEST_F(SceneEditorTest, HidingHidesWhatIsBelowByItsOwnMaskToo)
{
    m_editor.hide({m_car});

    EXPECT_EQ(hidden(), (std::set<osg::NodePtr>{m_car, m_wheel, m_wheel->getChild(0), m_seat, m_seat->getChild(0)}));
    EXPECT_EQ(m_stateChanges, 1);
}

TEST_F(SceneEditorTest, AHiddenPartStaysSelectedAndLosesItsBoxUntilItIsShown)
{
    m_editor.select({m_wheel, m_sign});
    ASSERT_EQ(shownBoxes(), 2);

    m_editor.hide({m_wheel});
    EXPECT_THAT(selection(), UnorderedElementsAre(m_wheel, m_sign));
    EXPECT_EQ(shownBoxes(), 1);

    m_editor.showAll();
    EXPECT_EQ(shownBoxes(), 2);
    EXPECT_THAT(hidden(), IsEmpty());
}

TEST_F(SceneEditorTest, NoBoxOfAPartFloatsAboutItsHiddenGroup)
{
    m_editor.select({m_wheel, m_seat, m_sign});

    m_editor.hide({m_car});
    EXPECT_EQ(shownBoxes(), 1);

    m_editor.undo();
    EXPECT_EQ(shownBoxes(), 3);
}

TEST_F(SceneEditorTest, APartThatIsSelectedWhileItsGroupIsHiddenHasNoBox)
{
    m_editor.hide({m_car});

    m_editor.select({m_wheel});

    EXPECT_EQ(shownBoxes(), 0);
}

TEST_F(SceneEditorTest, TheBoxOfAGroupFollowsWhatIsHiddenInIt)
{
    m_editor.select({m_car});
    const auto largestX = [&] {
        const auto geometry = osg::GeometryPtr::dcast(m_boxes.getVisualisation()->getChild(0)->getCore());
        return osg::GeoPositions3fPtr::dcast(geometry->getPositions())->getValue(7)[0];
    };
    ASSERT_EQ(largestX(), 5.0F);

    m_editor.hide({m_seat});
    EXPECT_EQ(largestX(), 1.0F);

    m_editor.undo();
    EXPECT_EQ(largestX(), 5.0F);
}

TEST_F(SceneEditorTest, UndoOfVisibilityRestoresTheExactMasks)
{
    setMask(m_wheel, Partial);
    setMask(m_seat->getChild(0), Hidden);

    m_editor.hide({m_car});
    m_editor.showAll();
    EXPECT_EQ(m_wheel->getTravMask(), Shown);
    m_editor.undo();
    m_editor.undo();

    EXPECT_EQ(m_wheel->getTravMask(), Partial);
    EXPECT_EQ(hidden(), (std::set<osg::NodePtr>{m_seat->getChild(0)}));
    m_editor.redo();
    EXPECT_EQ(m_wheel->getTravMask(), Hidden);
}

TEST_F(SceneEditorTest, APartlyMaskedNodeIsTheHostsAndNotShownByShowAll)
{
    setMask(m_wheel, Partial);
    m_editor.hide({m_sign});

    m_editor.showAll();

    EXPECT_EQ(m_wheel->getTravMask(), Partial);
}

TEST_F(SceneEditorTest, HidingTwiceIsOneStep)
{
    m_editor.hide({m_wheel});
    m_editor.hide({m_wheel, m_wheel->getChild(0)});

    EXPECT_EQ(stepCount(), 1);
}

TEST_F(SceneEditorTest, ShowingAPartOfAHiddenGroupShowsTheWayToItAndNothingElseInTheGroup)
{
    m_editor.hide({m_car});

    m_editor.show({m_wheel});

    EXPECT_EQ(hidden(), withGeometry({m_seat}));
    m_editor.undo();
    EXPECT_EQ(hidden().count(m_car), 1U);
}

TEST_F(SceneEditorTest, ShowingAPartOfAGroupThatTheHostHidKeepsTheRestOutOfSight)
{
    setMask(m_car, Hidden);

    m_editor.show({m_wheel});
    EXPECT_EQ(hidden(), withGeometry({m_seat}));
    m_editor.undo();
    EXPECT_EQ(hidden(), (std::set<osg::NodePtr>{m_car}));

    m_editor.show({m_wheel, m_seat});
    EXPECT_THAT(hidden(), IsEmpty());
}

TEST_F(SceneEditorTest, ShowingAPartShowsNothingElseOfTheGroupsWithinAHiddenOne)
{
    setMask(m_root.get(), Hidden);

    m_editor.show({m_wheel});
    std::set<osg::NodePtr> expected = withGeometry({m_seat, m_oar, m_sign});
    expected.insert(m_boat);
    EXPECT_EQ(hidden(), expected);
    m_editor.undo();
    EXPECT_EQ(hidden(), (std::set<osg::NodePtr>{m_root.get()}));

    m_editor.show({m_wheel, m_seat});
    expected = withGeometry({m_oar, m_sign});
    expected.insert(m_boat);
    EXPECT_EQ(hidden(), expected);
}

TEST_F(SceneEditorTest, IsolatingShowsAPartAndTheWayToItOnly)
{
    m_editor.isolate({m_wheel});

    std::set<osg::NodePtr> expected = withGeometry({m_seat, m_oar, m_sign});
    expected.insert(m_boat);
    EXPECT_EQ(hidden(), expected);
}

TEST_F(SceneEditorTest, IsolatingAGroupKeepsWhatIsInIt)
{
    m_editor.hide({m_wheel});

    m_editor.isolate({m_car});

    std::set<osg::NodePtr> expected = withGeometry({m_oar, m_sign});
    expected.insert(m_boat);
    EXPECT_EQ(hidden(), expected);
}

TEST_F(SceneEditorTest, IsolatingTheSameTwiceIsOneStepAndAnotherPartTakesItsPlace)
{
    m_editor.isolate({m_wheel});
    m_editor.isolate({m_wheel});
    EXPECT_EQ(stepCount(), 1);

    m_editor.isolate({m_oar});
    EXPECT_EQ(hidden().count(m_oar), 0U);
    EXPECT_EQ(hidden().count(m_boat), 0U);
    EXPECT_EQ(hidden().count(m_wheel), 1U);

    m_editor.showAll();
    EXPECT_THAT(hidden(), IsEmpty());
    m_editor.undo();
    m_editor.undo();
    EXPECT_EQ(hidden().count(m_wheel), 0U);
    m_editor.undo();
    EXPECT_THAT(hidden(), IsEmpty());
}

TEST_F(SceneEditorTest, IsolatingNothingOrWhatIsElsewhereDoesNothing)
{
    const NodeRef elsewhere = makeNode(osg::Group::create());

    m_editor.isolate({});
    m_editor.isolate({osg::NullFC, elsewhere.get()});

    EXPECT_THAT(hidden(), IsEmpty());
    EXPECT_EQ(stepCount(), 0);
}

TEST_F(SceneEditorTest, TheRootCanBeHiddenAndComesBack)
{
    m_editor.hide({m_root.get()});
    EXPECT_EQ(hidden().size(), allNodes().size());

    m_editor.isolate({m_sign});
    EXPECT_EQ(m_root->getTravMask(), Shown);
    EXPECT_EQ(m_sign->getTravMask(), Shown);
    m_editor.showAll();
    EXPECT_THAT(hidden(), IsEmpty());
}

TEST_F(SceneEditorTest, AFollowersBoxesGoAndComeWithTheSelections)
{
    interaction::NodeSelectionModel other("other");
    interaction::BoxSelectionVisualisation boxes;
    other.addVisualisation(&boxes);
    other.addNode(m_wheel);
    const osg::NodePtr box = boxes.getVisualisation()->getChild(0);
    m_editor.addFollower(&other);

    m_editor.hide({m_car});
    EXPECT_EQ(box->getTravMask(), Hidden);
    m_editor.undo();
    EXPECT_EQ(box->getTravMask(), Shown);

    m_editor.removeFollower(&other);
    m_editor.redo();
    EXPECT_EQ(box->getTravMask(), Shown);
    other.removeVisualisation(&boxes);
}

TEST_F(SceneEditorTest, AWireframeComesBackWithItsPart)
{
    interaction::HighlightSelectionVisualisation wireframe;
    m_selection.addVisualisation(&wireframe);
    m_editor.select({m_wheel, m_car});
    const auto copies = [&] {
        int shown = 0;
        for (osg::UInt32 i = 0; i < wireframe.getVisualisation()->getNChildren(); ++i) {
            const osg::NodePtr copy = wireframe.getVisualisation()->getChild(i);
            shown +=
                copy->getTravMask() == Shown && copy->getNChildren() == 1 && copy->getChild(0)->getTravMask() == Shown
                    ? 1
                    : 0;
        }
        return shown;
    };
    ASSERT_EQ(copies(), 2);

    m_editor.hide({m_wheel});
    EXPECT_EQ(copies(), 1);
    m_editor.select({m_seat});
    m_editor.undo();
    EXPECT_EQ(copies(), 1);
    m_editor.showAll();
    EXPECT_EQ(copies(), 2);

    m_selection.removeVisualisation(&wireframe);
}

// Locks.

TEST_F(SceneEditorTest, LocksAreTakenBackExactly)
{
    koNodeUtils::setIsEditable(m_wheel, false);
    koNodeUtils::setIsEditable(m_car, false);

    m_editor.setLocked({m_wheel, m_seat, m_boat}, true);
    EXPECT_EQ(m_editor.getUndoText(), QStringLiteral("Lock 2 parts"));
    m_editor.undo();

    EXPECT_TRUE(viewer::SceneEditor::isLocked(m_wheel));
    EXPECT_TRUE(viewer::SceneEditor::isLocked(m_car));
    EXPECT_FALSE(viewer::SceneEditor::isLocked(m_seat));
    EXPECT_FALSE(viewer::SceneEditor::isLocked(m_boat));
    m_editor.redo();
    EXPECT_TRUE(viewer::SceneEditor::isLocked(m_seat));
    EXPECT_TRUE(viewer::SceneEditor::isLocked(m_boat));
}

TEST_F(SceneEditorTest, TheLockOfAGroupColoursTheBoxesOfItsParts)
{
    m_editor.select({m_wheel});
    const auto isNearBlack = [&] {
        const auto box = osg::GeometryPtr::dcast(m_boxes.getVisualisation()->getChild(0)->getCore());
        return osg::SimpleMaterialPtr::dcast(box->getMaterial())->getDiffuse() != m_boxes.getColor();
    };
    ASSERT_FALSE(isNearBlack());

    m_editor.setLocked({m_car}, true);
    EXPECT_TRUE(isNearBlack());
    m_editor.undo();
    EXPECT_FALSE(isNearBlack());
    EXPECT_EQ(m_stateChanges, 2);
}

// The history.

TEST_F(SceneEditorTest, StepsSayWhatTheyDo)
{
    const auto text = [&] { return m_editor.getUndoText().toStdString(); };
    EXPECT_EQ(text(), "");

    m_editor.select({m_wheel, m_seat, m_sign});
    EXPECT_EQ(text(), "Select 3 parts");
    m_editor.add({m_oar, m_car});
    EXPECT_EQ(text(), "Add 2 parts to the selection");
    m_editor.remove({m_oar, m_car});
    EXPECT_EQ(text(), "Deselect 2 parts");
    m_editor.hide({m_wheel, m_seat, m_sign});
    EXPECT_EQ(text(), "Hide 3 parts");
    m_editor.show({m_wheel, m_seat});
    EXPECT_EQ(text(), "Show 2 parts");
    m_editor.isolate({m_wheel, m_oar});
    EXPECT_EQ(text(), "Isolate 2 parts");
    m_editor.showAll();
    EXPECT_EQ(text(), "Show all");
    m_editor.setLocked({m_wheel, m_oar}, true);
    EXPECT_EQ(text(), "Lock 2 parts");
    m_editor.setLocked({m_wheel, m_oar}, false);
    EXPECT_EQ(text(), "Unlock 2 parts");
    m_editor.select({});
    EXPECT_EQ(text(), "Clear selection");

    EXPECT_EQ(m_editor.getRedoText(), QString());
    m_editor.undo();
    EXPECT_EQ(m_editor.getRedoText(), QStringLiteral("Clear selection"));
}

TEST_F(SceneEditorTest, AnotherModelForgetsTheHistoryAndEndsAGesture)
{
    m_editor.select({m_wheel});
    m_editor.hide({m_wheel});
    m_editor.undo();
    m_editor.beginGesture();

    m_editor.setRoot(m_root.get());

    EXPECT_FALSE(m_editor.canUndo());
    EXPECT_FALSE(m_editor.canRedo());
    EXPECT_FALSE(m_editor.isInGesture());
}

TEST_F(SceneEditorTest, TheHistoryHasAnEnd)
{
    for (int i = 0; i < viewer::SceneEditor::HistoryLimit + 10; ++i) {
        m_editor.toggle(m_wheel);
    }

    EXPECT_EQ(stepCount(), viewer::SceneEditor::HistoryLimit);
}

TEST_F(SceneEditorTest, ANodeThatIsGoneIsLeftOut)
{
    m_editor.select({m_wheel, m_seat});
    m_editor.setLocked({m_wheel, m_seat}, true);
    m_editor.hide({m_wheel, m_seat});
    m_editor.select({});
    const osg::UInt32 id = osg::getContainerId(m_wheel);
    m_car->subChild(m_wheel);
    ASSERT_FALSE(exists(id));

    for (int i = 0; i < 4; ++i) {
        m_editor.undo();
    }
    EXPECT_FALSE(m_editor.canUndo());
    EXPECT_FALSE(viewer::SceneEditor::isLocked(m_seat));
    EXPECT_EQ(m_seat->getTravMask(), Shown);
    EXPECT_THAT(selection(), IsEmpty());
    for (int i = 0; i < 3; ++i) {
        m_editor.redo();
    }
    EXPECT_TRUE(viewer::SceneEditor::isLocked(m_seat));
    EXPECT_EQ(m_seat->getTravMask(), Hidden);
    EXPECT_THAT(selection(), ElementsAre(m_seat));
}

TEST_F(SceneEditorTest, ANodeThatLeftTheModelIsLeftOutWhileItIsAway)
{
    m_editor.select({m_wheel});
    m_editor.select({});
    const NodeRef held(m_wheel);
    m_car->subChild(m_wheel);

    // Nothing is left of the step: the one before it is taken back as well, of which nothing is left either.
    m_editor.undo();
    EXPECT_THAT(selection(), IsEmpty());

    m_car->addChild(held.get());
    m_editor.redo();
    EXPECT_THAT(selection(), ElementsAre(m_wheel));
}

TEST_F(SceneEditorTest, StepsOfWhichNothingIsLeftArePassedOver)
{
    m_editor.hide({m_sign});
    m_editor.hide({m_wheel});
    m_car->subChild(m_wheel);

    m_editor.undo();

    EXPECT_EQ(m_sign->getTravMask(), Shown);
    EXPECT_FALSE(m_editor.canUndo());
}

TEST_F(SceneEditorTest, TheTextsNameTheStepThatWillBeTakenBackOrDoneAgain)
{
    m_editor.setLocked({m_sign, m_seat}, true);
    m_editor.hide({m_wheel});
    m_editor.setLocked({m_oar, m_boat, m_car}, true);
    m_editor.undo();
    const NodeRef held(m_wheel);
    m_car->subChild(m_wheel);

    EXPECT_EQ(m_editor.getUndoText(), QStringLiteral("Lock 2 parts"));
    m_editor.undo();
    EXPECT_EQ(m_editor.getUndoText(), QString());
    EXPECT_EQ(m_editor.getRedoText(), QStringLiteral("Lock 2 parts"));

    m_editor.redo();
    EXPECT_EQ(m_editor.getRedoText(), QStringLiteral("Lock 3 parts"));
    m_editor.redo();
    EXPECT_TRUE(viewer::SceneEditor::isLocked(m_oar));
    EXPECT_EQ(m_editor.getRedoText(), QString());

    // Of the only step that is left, nothing is.
    m_editor.clearHistory();
    m_car->addChild(m_wheel);
    m_editor.setLocked({m_wheel}, true);
    m_car->subChild(m_wheel);
    EXPECT_EQ(m_editor.getUndoText(), QString());
    m_editor.undo();
    EXPECT_EQ(m_editor.getRedoText(), QString());
}

// Whatever is done in whatever order: undoing all leads back to the start, redoing all to the end, and each step in
// between to what was there.
TEST_F(SceneEditorTest, AnySequenceCanBeWalkedBackAndForth)
{
    using State = std::tuple<std::set<osg::NodePtr>, std::vector<osg::UInt32>, std::vector<bool>>;
    const std::vector<osg::NodePtr> nodes = allNodes();
    const auto state = [&] {
        State result;
        std::get<0>(result) = selection();
        for (const osg::NodePtr& node : nodes) {
            std::get<1>(result).push_back(node->getTravMask());
            std::get<2>(result).push_back(viewer::SceneEditor::isLocked(node));
        }
        return result;
    };
    // What is shown of the selection is what the masks say, whatever led there.
    const auto expectBoxesToFit = [&] {
        const auto shown = std::count_if(selection().begin(), selection().end(),
                                         [](const osg::NodePtr& node) { return node->getTravMask() == Shown; });
        EXPECT_EQ(shownBoxes(), shown);
    };

    for (unsigned int seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto draw = [&](const std::size_t end) { return random() % end; };
        for (const osg::NodePtr& node : nodes) {
            setMask(node, draw(4) == 0 ? Partial : Shown);
            koNodeUtils::setIsEditable(node, true);
        }
        m_editor.setRoot(m_root.get());
        m_selection.clearSelection();

        std::vector<State> states{state()};
        for (int operation = 0; operation < 30; ++operation) {
            std::vector<osg::NodePtr> some;
            for (std::size_t i = draw(4); i > 0; --i) {
                some.push_back(nodes[draw(nodes.size())]);
            }
            switch (draw(10)) {
            case 0:
                m_editor.select(some);
                break;
            case 1:
                m_editor.add(some);
                break;
            case 2:
                m_editor.remove(some);
                break;
            case 3:
                m_editor.toggle(nodes[draw(nodes.size())]);
                break;
            case 4:
                m_editor.hide(some);
                break;
            case 5:
                m_editor.show(some);
                break;
            case 6:
                m_editor.isolate(some);
                break;
            case 7:
                m_editor.showAll();
                break;
            case 8:
                m_editor.setLocked(some, draw(2) == 0);
                break;
            default:
                m_editor.beginGesture();
                m_editor.select(some);
                m_editor.toggle(nodes[draw(nodes.size())]);
                m_editor.endGesture();
                break;
            }
            expectBoxesToFit();
            // One step for what changed something, none for the rest.
            if (state() != states.back()) {
                states.push_back(state());
            }
            ASSERT_EQ(static_cast<std::size_t>(stepCount()) + 1, states.size());
        }

        for (std::size_t i = states.size() - 1; i > 0; --i) {
            m_editor.undo();
            ASSERT_EQ(state(), states[i - 1]);
            expectBoxesToFit();
        }
        for (std::size_t i = 1; i < states.size(); ++i) {
            m_editor.redo();
            ASSERT_EQ(state(), states[i]);
            expectBoxesToFit();
        }
    }
}

} // namespace

} // namespace quon::testing
