// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneBuilder.h>

#include "Support/UserInput.h"

#include "Viewer/Session/QtVersions.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/SceneTreeModel.h"
#include "Viewer/Window/SceneTreePanel.h"
#include "Viewer/Window/SceneTreeView.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QHoverEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>
#include <QTranslator>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using viewer::SceneTreeModel;

osg::NodePtr addPart(const osg::NodePtr& parent, const std::string& name)
{
    const osg::NodePtr part = addChild(parent, osg::Group::create());
    NodeUtils::setName(part, name, false);
    addChild(part, makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 1)));
    return part;
}

osg::NodePtr addGroup(const osg::NodePtr& parent, const std::string& name)
{
    const osg::NodePtr group = addChild(parent, osg::Group::create());
    NodeUtils::setName(group, name, false);
    return group;
}

/** Answers every text of one context with the same word. */
class OneWordTranslator : public QTranslator {
public:
    QString translate(const char* context, const char*, const char*, int) const override
    {
        return QLatin1String(context) == QLatin1String("quon::viewer::SceneTreePanel") ? QStringLiteral("Wort")
                                                                                       : QString();
    }
    bool isEmpty() const override { return false; }
};

class SceneTreePanelTest : public ::testing::Test {
protected:
    SceneTreePanelTest()
        : m_model(makeNode(osg::Group::create()))
        , m_window(m_session)
        , m_panel(*m_window.findChild<viewer::SceneTreePanel*>())
        , m_view(*m_window.findChild<viewer::SceneTreeView*>())
        , m_search(*m_panel.findChild<QLineEdit*>(QStringLiteral("search")))
        , m_matchCount(*m_panel.findChild<QLabel*>(QStringLiteral("matchCount")))
    {
        NodeUtils::setName(m_model, "machine", false);
        m_box = addGroup(m_model, "box");
        m_gear1 = addPart(m_box, "gear 1");
        m_gear2 = addPart(m_box, "gear 2");
        m_pin = addPart(m_box, "pin");
        m_shaft = addPart(m_model, "shaft");
        m_session.getCommands().setCommand("fit-selection", {[this] { ++m_fits; }, {}, {}});
        m_window.show();
        m_window.activateWindow();
        m_session.setModel(m_model);
    }

    /** The names of the rows that are to be seen when one scrolls, from top to bottom. */
    std::vector<std::string> rows() const
    {
        std::vector<std::string> names;
        QModelIndex index = m_view.model()->index(0, 0);
        for (; index.isValid(); index = m_view.indexBelow(index)) {
            names.push_back(index.data().toString().toStdString());
        }
        return names;
    }

    QModelIndex indexOf(const osg::NodePtr& node, int column = SceneTreeModel::Name) const
    {
        return static_cast<const SceneTreeModel*>(m_view.model())->getIndex(node).siblingAtColumn(column);
    }

    QPoint placeOf(const osg::NodePtr& node, int column = SceneTreeModel::Name) const
    {
        return m_view.visualRect(indexOf(node, column)).center();
    }

    void click(const osg::NodePtr& node, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               int column = SceneTreeModel::Name)
    {
        QTest::mouseClick(m_view.viewport(), Qt::LeftButton, modifiers, placeOf(node, column));
    }

    QToolButton& button(const char* name) const { return *m_panel.findChild<QToolButton*>(QString::fromLatin1(name)); }

    QMenu* openMenu(const osg::NodePtr& node)
    {
        const QPoint place = placeOf(node);
        QTest::mouseClick(m_view.viewport(), Qt::RightButton, Qt::NoModifier, place);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, m_view.viewport()->mapToGlobal(place));
        QApplication::sendEvent(m_view.viewport(), &event);
        return m_panel.findChild<QMenu*>();
    }

    // Moves the pointer, as events of the viewport below the rows.
    void hover(const QPoint& place)
    {
        QHoverEvent event = viewer::QtVersions::makeHover(m_pointer.isNull() ? QEvent::HoverEnter : QEvent::HoverMove,
                                                          place, m_pointer);
        m_pointer = place;
        QApplication::sendEvent(m_view.viewport(), &event);
    }

    void leave()
    {
        QHoverEvent event = viewer::QtVersions::makeHover(QEvent::HoverLeave, QPoint(-1, -1), m_pointer);
        QApplication::sendEvent(m_view.viewport(), &event);
    }

    const std::set<osg::NodePtr>& preselected() { return m_session.getPreselection().getModel().getSelection(); }
    const std::set<osg::NodePtr>& selected() { return m_session.getSelection().getSelection(); }
    int countSteps() { return m_session.getEditor().getHistory().count(); }

    NodeRef m_model;
    osg::NodePtr m_box, m_gear1, m_gear2, m_pin, m_shaft;
    int m_fits = 0;
    QPoint m_pointer;
    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
    viewer::SceneTreePanel& m_panel;
    viewer::SceneTreeView& m_view;
    QLineEdit& m_search;
    QLabel& m_matchCount;
};

TEST_F(SceneTreePanelTest, AModelOfAFewPartsIsShownCompletely)
{
    EXPECT_THAT(rows(), ElementsAre("machine", "box", "gear 1", "gear 2", "pin", "shaft"));
}

TEST_F(SceneTreePanelTest, ALargeModelIsExpandedAsFarAsItCanBeSeen)
{
    const NodeRef model = makeNode(osg::Group::create());
    NodeUtils::setName(model, "plant", false);
    for (int i = 0; i < 10; ++i) {
        const osg::NodePtr hall = addGroup(model, "hall");
        for (int j = 0; j < 10; ++j) {
            addPart(hall, "machine");
        }
    }

    m_session.setModel(model);

    EXPECT_EQ(rows().size(), 11U);
}

TEST_F(SceneTreePanelTest, AClickSelectsThePartAndNothingElse)
{
    click(m_gear1);
    click(m_pin);

    EXPECT_THAT(selected(), ElementsAre(m_pin));
    EXPECT_EQ(countSteps(), 2);
    EXPECT_TRUE(m_view.selectionModel()->isSelected(indexOf(m_pin)));
    EXPECT_FALSE(m_view.selectionModel()->isSelected(indexOf(m_gear1)));
}

TEST_F(SceneTreePanelTest, TheRowUnderThePointerIsPreselectedInTheViewFromTheNextFrameOn)
{
    hover(placeOf(m_gear1));
    EXPECT_THAT(preselected(), IsEmpty());
    m_session.beginFrame();
    EXPECT_THAT(preselected(), ElementsAre(m_gear1));

    hover(placeOf(m_pin, SceneTreeModel::Lock));
    hover(placeOf(m_shaft));
    EXPECT_THAT(preselected(), ElementsAre(m_gear1));
    m_session.beginFrame();
    EXPECT_THAT(preselected(), ElementsAre(m_shaft));
    m_session.beginFrame();
    EXPECT_THAT(preselected(), ElementsAre(m_shaft));
    EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(SceneTreePanelTest, PointingAtARowAsksForAFrame)
{
    hover(placeOf(m_gear1));

    EXPECT_TRUE(QTest::qWaitFor([this] { return preselected().count(m_gear1) != 0; }));
}

TEST_F(SceneTreePanelTest, NothingIsPreselectedOnceThePointerHasLeftTheTree)
{
    hover(placeOf(m_gear1));
    m_session.beginFrame();

    leave();
    m_session.beginFrame();

    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(SceneTreePanelTest, BelowTheLastRowNothingIsPreselected)
{
    hover(placeOf(m_shaft));
    m_session.beginFrame();

    hover(placeOf(m_shaft) + QPoint(0, 60));
    m_session.beginFrame();

    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(SceneTreePanelTest, APreselectionEndsWhenTheTreeGoesAwayUnderThePointer)
{
    hover(placeOf(m_gear1));
    m_session.beginFrame();

    m_panel.hide();
    m_session.beginFrame();

    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(SceneTreePanelTest, APartThatIsTakenOutUnderThePointerIsNotPreselectedAnyMore)
{
    hover(placeOf(m_pin));
    m_session.beginFrame();

    beginEditCP(m_box, osg::Node::ChildrenFieldMask);
    m_box->subChild(m_pin);
    endEditCP(m_box, osg::Node::ChildrenFieldMask);
    m_session.beginFrame();

    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(SceneTreePanelTest, OverTheViewThePartThereCountsAndNotTheRow)
{
    auto& viewport = *m_window.findChild<viewer::Viewport*>();
    hover(placeOf(m_gear1));

    UserInput(viewport).move(QPoint(1, 1));
    m_session.beginFrame();

    EXPECT_THAT(preselected(), IsEmpty());
}

TEST_F(SceneTreePanelTest, ControlClicksAddARowAndTakeItOut)
{
    click(m_gear1);
    click(m_pin, Qt::ControlModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre(m_gear1, m_pin));

    click(m_gear1, Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre(m_pin));
    EXPECT_EQ(countSteps(), 3);
}

TEST_F(SceneTreePanelTest, AShiftClickSelectsARangeInOneStep)
{
    click(m_gear1);
    click(m_pin, Qt::ShiftModifier);

    EXPECT_THAT(selected(), UnorderedElementsAre(m_gear1, m_gear2, m_pin));
    EXPECT_EQ(countSteps(), 2);
}

TEST_F(SceneTreePanelTest, DraggingOverRowsIsOneStep)
{
    QTest::mousePress(m_view.viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(m_gear1));
    for (const osg::NodePtr& node : {m_gear1, m_gear2, m_pin}) {
        QMouseEvent move(QEvent::MouseMove, placeOf(node), m_view.viewport()->mapToGlobal(placeOf(node)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_view.viewport(), &move);
    }
    EXPECT_TRUE(m_session.getEditor().isInGesture());
    QTest::mouseRelease(m_view.viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(m_pin));

    EXPECT_THAT(selected(), UnorderedElementsAre(m_gear1, m_gear2, m_pin));
    EXPECT_FALSE(m_session.getEditor().isInGesture());
    EXPECT_EQ(countSteps(), 1);
}

TEST_F(SceneTreePanelTest, AGestureEndsWhenTheTreeGoesAwayUnderIt)
{
    QTest::mousePress(m_view.viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(m_gear1));

    m_panel.hide();

    EXPECT_FALSE(m_session.getEditor().isInGesture());
}

TEST_F(SceneTreePanelTest, ArrowKeysMoveTheSelection)
{
    click(m_gear1);
    QTest::keyClick(&m_view, Qt::Key_Down);
    EXPECT_THAT(selected(), ElementsAre(m_gear2));

    QTest::keyClick(&m_view, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(selected(), UnorderedElementsAre(m_gear2, m_pin));

    QTest::keyClick(&m_view, Qt::Key_Home);
    EXPECT_THAT(selected(), ElementsAre(m_model.get()));
    QTest::keyClick(&m_view, Qt::Key_Left);
    EXPECT_THAT(rows(), ElementsAre("machine"));
}

TEST_F(SceneTreePanelTest, KeysThatTheTreeDoesNotNeedAreCommands)
{
    click(m_gear1);
    m_view.setFocus();

    QTest::keyClick(&m_view, Qt::Key_H);
    EXPECT_EQ(m_gear1->getTravMask(), 0U);

    // The first letter of another row: nothing is searched for.
    QTest::keyClick(&m_view, Qt::Key_S);
    EXPECT_THAT(selected(), ElementsAre(m_gear1));

    QTest::keyClick(&m_view, Qt::Key_Escape);
    EXPECT_THAT(selected(), IsEmpty());
    EXPECT_FALSE(m_view.selectionModel()->hasSelection());
}

TEST_F(SceneTreePanelTest, WhatIsSelectedElsewhereIsSelectedHere)
{
    QSignalSpy changes(m_view.selectionModel(), &QItemSelectionModel::selectionChanged);

    m_session.getEditor().select({m_gear1, m_gear2, m_shaft});
    m_session.processSceneChanges();

    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(m_view.selectionModel()->selection().size(), 2);
    EXPECT_TRUE(m_view.selectionModel()->isSelected(indexOf(m_gear2)));
    EXPECT_EQ(countSteps(), 1);

    m_session.sendCommand("undo");
    EXPECT_EQ(changes.count(), 2);
    EXPECT_FALSE(m_view.selectionModel()->hasSelection());
}

TEST_F(SceneTreePanelTest, OnePartThatIsSelectedElsewhereIsScrolledToAndItsGroupsExpanded)
{
    osg::NodePtr last;
    for (int i = 0; i < 200; ++i) {
        last = addPart(m_box, "part");
    }
    m_session.processSceneChanges();
    m_view.collapseAll();

    m_session.toggleNode(last);

    EXPECT_TRUE(m_view.isExpanded(indexOf(m_box)));
    EXPECT_TRUE(m_view.viewport()->rect().contains(placeOf(last)));
    EXPECT_GT(m_view.verticalScrollBar()->value(), 0);
    EXPECT_EQ(m_view.currentIndex(), indexOf(last));

    // Again, though it is the current row already.
    m_session.toggleNode(last);
    m_view.scrollToTop();
    m_session.toggleNode(last);
    EXPECT_TRUE(m_view.viewport()->rect().contains(placeOf(last)));
}

TEST_F(SceneTreePanelTest, SeveralPartsThatAreSelectedElsewhereExpandNothing)
{
    m_view.collapseAll();

    m_session.getEditor().select({m_gear1, m_pin});
    m_session.processSceneChanges();

    EXPECT_THAT(rows(), ElementsAre("machine"));
    EXPECT_TRUE(m_view.selectionModel()->isSelected(indexOf(m_pin)));
}

TEST_F(SceneTreePanelTest, TheEyeHidesAndShowsWithoutSelecting)
{
    click(m_shaft);

    click(m_gear1, Qt::NoModifier, SceneTreeModel::Visibility);
    EXPECT_EQ(m_gear1->getTravMask(), 0U);
    EXPECT_THAT(selected(), ElementsAre(m_shaft));

    click(m_gear1, Qt::NoModifier, SceneTreeModel::Visibility);
    EXPECT_NE(m_gear1->getTravMask(), 0U);
    EXPECT_THAT(selected(), ElementsAre(m_shaft));
    EXPECT_EQ(countSteps(), 3);
}

TEST_F(SceneTreePanelTest, ThePadlockLocksAndUnlocksWithoutSelecting)
{
    click(m_gear1, Qt::NoModifier, SceneTreeModel::Lock);
    EXPECT_FALSE(koNodeUtils::isEditable(m_gear1));
    EXPECT_THAT(selected(), IsEmpty());

    click(m_gear1, Qt::NoModifier, SceneTreeModel::Lock);
    EXPECT_TRUE(koNodeUtils::isEditable(m_gear1));
}

TEST_F(SceneTreePanelTest, TwoQuickClicksOnTheEyeHideAndShow)
{
    click(m_gear1);
    UserInput user(*m_view.viewport());
    const QPoint eye = placeOf(m_gear1, SceneTreeModel::Visibility);

    user.click(eye);
    EXPECT_EQ(m_gear1->getTravMask(), 0U);
    // The second press of two quick clicks comes as a double click.
    user.doubleClick(eye);
    user.release(eye);

    EXPECT_NE(m_gear1->getTravMask(), 0U);
    EXPECT_EQ(m_fits, 0);
}

TEST_F(SceneTreePanelTest, ADoubleClickAndTheEnterKeyFitThePart)
{
    click(m_gear1);
    QTest::mouseDClick(m_view.viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(m_gear1));
    EXPECT_EQ(m_fits, 1);

    QTest::keyClick(&m_view, Qt::Key_Return);
    EXPECT_EQ(m_fits, 2);
    EXPECT_THAT(selected(), ElementsAre(m_gear1));
}

TEST_F(SceneTreePanelTest, KeysAreSaidByTheSearchFieldAndByTheMenu)
{
    m_session.getBindings().setKey("find", {Qt::Key_J, 0});
    m_session.getBindings().setKey("show", {});

    EXPECT_TRUE(m_search.toolTip().endsWith(QStringLiteral(" (J)"))) << m_search.toolTip().toStdString();
    QMenu* menu = openMenu(m_gear2);
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->findChild<QAction*>(QStringLiteral("hide"))->text(), QStringLiteral("Hide\tH"));
    EXPECT_EQ(menu->findChild<QAction*>(QStringLiteral("show"))->text(), QStringLiteral("Show"));
    menu->close();
}

TEST_F(SceneTreePanelTest, TheMenuHasTheCommandsForTheRow)
{
    QMenu* menu = openMenu(m_gear2);
    ASSERT_NE(menu, nullptr);
    EXPECT_THAT(selected(), ElementsAre(m_gear2));

    auto* hide = menu->findChild<QAction*>(QStringLiteral("hide"));
    ASSERT_NE(hide, nullptr);
    EXPECT_TRUE(hide->isEnabled());
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(hide).center());

    EXPECT_EQ(m_gear2->getTravMask(), 0U);
}

TEST_F(SceneTreePanelTest, TheMenuShowsWhatIsHidden)
{
    m_session.getEditor().hide({m_gear2});

    QMenu* menu = openMenu(m_gear2);
    ASSERT_NE(menu, nullptr);
    auto* show = menu->findChild<QAction*>(QStringLiteral("show"));
    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(show).center());

    EXPECT_NE(m_gear2->getTravMask(), 0U);
}

TEST_F(SceneTreePanelTest, TypingANameLeavesTheRowsWithIt)
{
    QTest::keyClicks(&m_search, QStringLiteral("GEAR"));

    EXPECT_THAT(rows(), ElementsAre("machine", "box", "gear 1", "gear 2"));
    EXPECT_EQ(m_matchCount.text(), QStringLiteral("2 found"));
    EXPECT_TRUE(m_matchCount.isVisible());
    EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(SceneTreePanelTest, AVeryLargeModelIsSearchedWhenTheUserPauses)
{
    const NodeRef plant = makeNode(osg::Group::create());
    NodeUtils::setName(plant, "plant", false);
    for (int i = 0; i < viewer::SceneTreePanel::InstantSearchLimit; ++i) {
        addGroup(plant, i % 2 == 0 ? "pump" : "valve");
    }
    m_session.setModel(plant);
    QSignalSpy resets(m_view.model(), &QAbstractItemModel::modelReset);

    QTest::keyClicks(&m_search, QStringLiteral("pump"));
    EXPECT_EQ(resets.count(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return resets.count() > 0; }, 60000));
    EXPECT_EQ(m_matchCount.text(), QStringLiteral("%L1 found").arg(50000));

    // The enter key and the end of the search do not wait.
    QTest::keyClicks(&m_search, QStringLiteral("s"));
    QTest::keyClick(&m_search, Qt::Key_Return);
    EXPECT_EQ(m_matchCount.text(), QStringLiteral("Nothing found"));
    QTest::keyClick(&m_search, Qt::Key_Escape);
    EXPECT_EQ(rows().size(), viewer::SceneTreePanel::InstantSearchLimit + 1U);
}

TEST_F(SceneTreePanelTest, TheEnterKeyGoesFromMatchToMatchAndAround)
{
    QTest::keyClicks(&m_search, QStringLiteral("gear"));

    QTest::keyClick(&m_search, Qt::Key_Return);
    EXPECT_THAT(selected(), ElementsAre(m_gear1));
    EXPECT_EQ(m_matchCount.text(), QStringLiteral("1 of 2"));
    QTest::keyClick(&m_search, Qt::Key_Return);
    EXPECT_THAT(selected(), ElementsAre(m_gear2));
    EXPECT_EQ(m_matchCount.text(), QStringLiteral("2 of 2"));
    QTest::keyClick(&m_search, Qt::Key_Enter);
    EXPECT_THAT(selected(), ElementsAre(m_gear1));
    QTest::keyClick(&m_search, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre(m_gear2));

    EXPECT_EQ(m_fits, 4);
    EXPECT_EQ(m_search.text(), QStringLiteral("gear"));
}

TEST_F(SceneTreePanelTest, TheButtonsGoFromMatchToMatch)
{
    QTest::keyClicks(&m_search, QStringLiteral("gear"));

    QTest::mouseClick(&button("previousMatch"), Qt::LeftButton);
    EXPECT_THAT(selected(), ElementsAre(m_gear2));
    QTest::mouseClick(&button("nextMatch"), Qt::LeftButton);
    EXPECT_THAT(selected(), ElementsAre(m_gear1));
    QTest::mouseClick(&button("selectMatches"), Qt::LeftButton);
    EXPECT_THAT(selected(), UnorderedElementsAre(m_gear1, m_gear2));
    EXPECT_EQ(m_matchCount.text(), QStringLiteral("2 found"));
}

TEST_F(SceneTreePanelTest, ANameThatNoPartHasIsSaid)
{
    QTest::keyClicks(&m_search, QStringLiteral("screw"));
    QTest::keyClick(&m_search, Qt::Key_Return);

    EXPECT_THAT(rows(), IsEmpty());
    EXPECT_EQ(m_matchCount.text(), QStringLiteral("Nothing found"));
    EXPECT_FALSE(button("nextMatch").isEnabled());
    EXPECT_FALSE(button("selectMatches").isEnabled());
    EXPECT_EQ(m_fits, 0);
}

TEST_F(SceneTreePanelTest, EscapeEndsTheSearchAndGivesTheFocusToTheView)
{
    click(m_pin);
    m_search.setFocus();
    QTest::keyClicks(&m_search, QStringLiteral("gear"));

    QTest::keyClick(&m_search, Qt::Key_Escape);

    EXPECT_EQ(m_search.text(), QString());
    EXPECT_FALSE(m_matchCount.isVisible());
    EXPECT_EQ(rows().size(), 6U);
    EXPECT_EQ(m_window.focusWidget(), &m_window.getViewport());
    EXPECT_THAT(selected(), ElementsAre(m_pin));
    EXPECT_TRUE(m_view.selectionModel()->isSelected(indexOf(m_pin)));
}

TEST_F(SceneTreePanelTest, TheEndOfASearchBringsBackWhatWasExpanded)
{
    m_view.collapse(indexOf(m_box));
    ASSERT_EQ(rows().size(), 3U);

    QTest::keyClicks(&m_search, QStringLiteral("gear"));
    ASSERT_EQ(rows().size(), 4U);
    QTest::keyClick(&m_search, Qt::Key_Escape);

    EXPECT_THAT(rows(), ElementsAre("machine", "box", "shaft"));
}

TEST_F(SceneTreePanelTest, ThePartThatWasFoundStaysInSightWhenTheSearchEnds)
{
    m_view.collapseAll();
    QTest::keyClicks(&m_search, QStringLiteral("pin"));
    QTest::keyClick(&m_search, Qt::Key_Return);

    QTest::keyClick(&m_search, Qt::Key_Escape);

    EXPECT_TRUE(m_view.isExpanded(indexOf(m_box)));
    EXPECT_EQ(m_view.currentIndex(), indexOf(m_pin));
}

TEST_F(SceneTreePanelTest, TheDownKeyGoesFromTheSearchToTheRows)
{
    m_search.setFocus();

    QTest::keyClick(&m_search, Qt::Key_Down);

    EXPECT_EQ(m_window.focusWidget(), &m_view);
}

TEST_F(SceneTreePanelTest, SlashAndControlFStartASearch)
{
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    for (const auto& [key, modifiers] :
         {std::pair(Qt::Key_Slash, Qt::NoModifier), std::pair(Qt::Key_F, Qt::ControlModifier)}) {
        m_window.getViewport().setFocus();
        m_panel.window()->findChild<QDockWidget*>(QStringLiteral("sceneTreePanel"))->hide();

        QTest::keyClick(&m_window.getViewport(), key, modifiers);

        EXPECT_TRUE(m_panel.isVisible());
        EXPECT_EQ(m_window.focusWidget(), &m_search);
        EXPECT_EQ(m_search.text(), QString());
    }
}

TEST_F(SceneTreePanelTest, AnotherModelHasOtherRowsAndNoSearch)
{
    QTest::keyClicks(&m_search, QStringLiteral("gear"));
    const NodeRef other = makeNode(osg::Group::create());
    NodeUtils::setName(other, "other", false);

    m_session.setModel(other);
    EXPECT_THAT(rows(), ElementsAre("other"));
    EXPECT_EQ(m_search.text(), QString());

    m_session.setModel(osg::NullFC);
    EXPECT_THAT(rows(), IsEmpty());
}

TEST_F(SceneTreePanelTest, ReadingAModelTakesOneReset)
{
    QSignalSpy resets(m_view.model(), &QAbstractItemModel::modelReset);

    m_session.setModel(m_model);
    m_session.processSceneChanges();

    // One that forgets the old model, one for the new one.
    EXPECT_EQ(resets.count(), 2);
}

TEST_F(SceneTreePanelTest, APartThatIsAddedAppearsAndTheRestStaysAsItWas)
{
    m_view.collapse(indexOf(m_box));
    click(m_shaft);

    m_session.addEmptyGroup("bearing", osg::Pnt3f(0, 0, 0));
    m_session.processSceneChanges();

    EXPECT_THAT(rows(), ElementsAre("machine", "box", "shaft", "bearing"));
    EXPECT_TRUE(m_view.selectionModel()->isSelected(indexOf(m_shaft)));
    EXPECT_THAT(selected(), ElementsAre(m_shaft));
}

TEST_F(SceneTreePanelTest, WhileItIsHiddenItFollowsNothingAndCatchesUp)
{
    m_panel.hide();
    QSignalSpy changes(m_view.selectionModel(), &QItemSelectionModel::selectionChanged);
    QSignalSpy resets(m_view.model(), &QAbstractItemModel::modelReset);
    m_session.toggleNode(m_pin);
    m_session.addEmptyGroup("bearing", osg::Pnt3f(0, 0, 0));
    m_session.processSceneChanges();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(resets.count(), 0);

    m_panel.show();

    EXPECT_EQ(rows().size(), 7U);
    EXPECT_TRUE(m_view.selectionModel()->isSelected(indexOf(m_pin)));
}

TEST_F(SceneTreePanelTest, TextsFollowTheLanguage)
{
    OneWordTranslator translator;
    QApplication::installTranslator(&translator);
    QApplication::processEvents();

    EXPECT_EQ(m_panel.windowTitle(), QStringLiteral("Wort"));
    EXPECT_EQ(m_search.placeholderText(), QStringLiteral("Wort"));
    EXPECT_EQ(button("nextMatch").toolTip(), QStringLiteral("Wort"));

    QApplication::removeTranslator(&translator);
    QApplication::processEvents();
    EXPECT_EQ(m_panel.windowTitle(), QStringLiteral("Scene"));
}

} // namespace

} // namespace quon::testing
