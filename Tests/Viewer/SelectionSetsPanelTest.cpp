// SPDX-License-Identifier: MIT
#include "Support/DrawnScene.h"

#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/SelectionSetsPanel.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QSlider>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>
#include <QTreeWidget>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using viewer::SelectionLook;
using viewer::SelectionSets;

class SelectionSetsPanelTest : public ::testing::Test {
protected:
    SelectionSetsPanelTest()
        : m_window(m_session)
        , m_panel(*m_window.findChild<viewer::SelectionSetsPanel*>())
        , m_sets(m_session.getSets())
        , m_list(*find<QTreeWidget>("sets"))
    {
        m_window.show();
        QApplication::setActiveWindow(&m_window);
        const osg::NodePtr model = makeGroup();
        for (int i = 0; i < 4; ++i) {
            const float x = static_cast<float>(i) * 4;
            const osg::NodePtr part =
                makeNode(makeBox(osg::Pnt3f(x, -1, -1), osg::Pnt3f(x + 2, 1, 1), makePlainMaterial(osg::Color3f())));
            NodeUtils::setName(part, "part " + std::to_string(i), false);
            model->addChild(part);
            m_parts.push_back(part);
        }
        m_session.setModel(model);
        m_session.processSceneChanges();
    }

    template <class Widget>
    Widget* find(const char* objectName)
    {
        return m_panel.findChild<Widget*>(QString::fromLatin1(objectName));
    }

    void select(const std::vector<osg::NodePtr>& nodes)
    {
        m_session.getEditor().select(nodes);
        m_session.processSceneChanges();
    }

    void clickButton(const char* objectName) { QTest::mouseClick(find<QToolButton>(objectName), Qt::LeftButton); }

    void clickRow(const int row)
    {
        QTest::mouseClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier,
                          m_list.visualItemRect(m_list.topLevelItem(row)).center());
    }

    void clickCheckBox(const int row)
    {
        const QRect rect = m_list.visualItemRect(m_list.topLevelItem(row));
        QTest::mouseClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(rect.left() + 9, rect.center().y()));
    }

    // Types a new name into the current row and ends with the key.
    void renameTo(const QString& name, const Qt::Key end = Qt::Key_Return)
    {
        QTest::keyClick(&m_list, Qt::Key_F2);
        QWidget* editor = m_list.indexWidget(m_list.currentIndex());
        ASSERT_NE(editor, nullptr);
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, name);
        QTest::keyClick(editor, end);
        QApplication::processEvents();
    }

    // The rows as they are to be read: "Set 1 (2)".
    std::vector<std::string> rows()
    {
        std::vector<std::string> rows;
        for (int row = 0; row < m_list.topLevelItemCount(); ++row) {
            const QTreeWidgetItem* item = m_list.topLevelItem(row);
            rows.push_back((item->text(0) + QStringLiteral(" (") + item->text(1) + QStringLiteral(")")).toStdString());
        }
        return rows;
    }

    void addThreeSets()
    {
        select({m_parts[0], m_parts[1]});
        clickButton("new");
        select({m_parts[1], m_parts[2]});
        clickButton("new");
        select({m_parts[3]});
        clickButton("new");
    }

    // Chooses an entry of the menu of combinations, "Unite with/Set 2" for one of a menu in it.
    void combine(const QString& path)
    {
        QMenu* menu = find<QToolButton>("combine")->menu();
        QTimer::singleShot(0, menu, [menu, path] {
            QMenu* current = menu;
            for (const QString& text : path.split(QLatin1Char('/'))) {
                for (QAction* action : current->actions()) {
                    if (action->text() == text) {
                        if (action->menu() != nullptr) {
                            current = action->menu();
                            break;
                        }
                        action->trigger();
                        menu->close();
                        return;
                    }
                }
            }
            ADD_FAILURE() << "no entry " << path.toStdString();
            menu->close();
        });
        clickButton("combine");
    }

    const std::set<osg::NodePtr>& selection() { return m_session.getSelection().getSelection(); }
    const std::set<osg::NodePtr>& nodesOfRow(const int row)
    {
        return m_sets.getModel(m_sets.getAll().at(static_cast<std::size_t>(row - 1)).id)->getSelection();
    }
    SelectionLook lookOfRow(const int row) { return m_sets.getAll().at(static_cast<std::size_t>(row - 1)).look; }

    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
    viewer::SelectionSetsPanel& m_panel;
    SelectionSets& m_sets;
    QTreeWidget& m_list;
    std::vector<osg::NodePtr> m_parts;
};

TEST_F(SelectionSetsPanelTest, TheSelectionIsTheFirstEntryAndThereAreNoSetsYet)
{
    EXPECT_THAT(rows(), ElementsAre("Selection (0)"));
    EXPECT_TRUE(find<QLabel>("hint")->isVisible());
    for (const char* button : {"new", "recall", "addToSelection", "combine", "rename", "delete"}) {
        EXPECT_FALSE(find<QToolButton>(button)->isEnabled()) << button;
    }
}

TEST_F(SelectionSetsPanelTest, TheButtonMakesASetOfTheSelectionAndItIsTheCurrentOne)
{
    select({m_parts[0], m_parts[2]});
    EXPECT_THAT(rows(), ElementsAre("Selection (2)"));

    clickButton("new");

    EXPECT_THAT(rows(), ElementsAre("Selection (2)", "Set 1 (2)"));
    EXPECT_EQ(m_panel.getCurrent(), m_sets.getAll().front().id);
    EXPECT_FALSE(find<QLabel>("hint")->isVisible());
    EXPECT_TRUE(find<QToolButton>("recall")->isEnabled());
}

TEST_F(SelectionSetsPanelTest, ASetIsRenamedInPlace)
{
    addThreeSets();
    clickRow(2);

    renameTo(QStringLiteral("  Wheels "));
    EXPECT_THAT(rows(), ElementsAre("Selection (1)", "Set 1 (2)", "Wheels (2)", "Set 3 (1)"));
    // The key that ended it has not recalled the set.
    EXPECT_THAT(selection(), ElementsAre(m_parts[3]));

    renameTo(QStringLiteral("Seats"), Qt::Key_Escape);
    EXPECT_THAT(rows(), Contains("Wheels (2)"));
    EXPECT_THAT(selection(), ElementsAre(m_parts[3]));
}

TEST_F(SelectionSetsPanelTest, ANameThatCannotBeIsToldAboutAndNotTaken)
{
    addThreeSets();
    clickRow(2);
    auto* problem = find<QLabel>("problem");
    EXPECT_FALSE(problem->isVisible());

    renameTo(QStringLiteral("set 1"));
    EXPECT_EQ(problem->text(), QStringLiteral("There is a set called Set 1 already."));
    EXPECT_TRUE(problem->isVisible());
    renameTo(QStringLiteral("  "));
    EXPECT_EQ(problem->text(), QStringLiteral("A set needs a name."));
    EXPECT_THAT(rows(), Contains("Set 2 (2)"));

    renameTo(QStringLiteral("Wheels"));
    EXPECT_FALSE(problem->isVisible());
    EXPECT_THAT(rows(), Contains("Wheels (2)"));

    renameTo(QStringLiteral("Set 3"));
    EXPECT_TRUE(problem->isVisible());
    clickRow(1);
    EXPECT_FALSE(problem->isVisible());
}

TEST_F(SelectionSetsPanelTest, TheSelectionCannotBeRenamedOrDeleted)
{
    addThreeSets();
    clickRow(0);

    QTest::keyClick(&m_list, Qt::Key_F2);
    EXPECT_EQ(m_list.indexWidget(m_list.currentIndex()), nullptr);
    QTest::keyClick(&m_list, Qt::Key_Delete);

    EXPECT_EQ(rows().size(), 4U);
    EXPECT_FALSE(find<QToolButton>("delete")->isEnabled());
}

TEST_F(SelectionSetsPanelTest, EnterDoubleClickAndButtonRecall)
{
    addThreeSets();
    clickRow(1);
    QTest::keyClick(&m_list, Qt::Key_Return);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_parts[0], m_parts[1]));
    EXPECT_THAT(rows(), Contains("Selection (2)"));

    const QPoint onSecond = m_list.visualItemRect(m_list.topLevelItem(2)).center();
    QTest::mouseClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, onSecond);
    QTest::mouseDClick(m_list.viewport(), Qt::LeftButton, Qt::NoModifier, onSecond);
    EXPECT_THAT(selection(), UnorderedElementsAre(m_parts[1], m_parts[2]));

    clickRow(3);
    clickButton("recall");
    EXPECT_THAT(selection(), ElementsAre(m_parts[3]));
    clickRow(1);
    clickButton("addToSelection");
    EXPECT_THAT(selection(), UnorderedElementsAre(m_parts[0], m_parts[1], m_parts[3]));
}

TEST_F(SelectionSetsPanelTest, DeleteDeletesAndUndoBringsBack)
{
    addThreeSets();
    clickRow(2);

    QTest::keyClick(&m_list, Qt::Key_Delete);
    EXPECT_THAT(rows(), ElementsAre("Selection (1)", "Set 1 (2)", "Set 3 (1)"));
    EXPECT_EQ(m_panel.getCurrent(), m_sets.getAll().back().id);
    clickButton("delete");
    EXPECT_THAT(rows(), ElementsAre("Selection (1)", "Set 1 (2)"));

    // Keys that the list has no use for go to the window.
    QTest::keyClick(&m_list, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&m_list, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(rows(), ElementsAre("Selection (1)", "Set 1 (2)", "Set 2 (2)", "Set 3 (1)"));
}

TEST_F(SelectionSetsPanelTest, LettersAreCommandsAlsoInTheList)
{
    addThreeSets();
    clickRow(1);

    QTest::keyClick(&m_list, Qt::Key_D);
    EXPECT_TRUE(m_session.isDark());
    QTest::keyClick(&m_list, Qt::Key_H);
    EXPECT_EQ(m_parts[3]->getTravMask(), 0U);
    EXPECT_EQ(m_list.currentItem()->text(0), QStringLiteral("Set 1"));
}

TEST_F(SelectionSetsPanelTest, ArrowKeysWalkThroughTheList)
{
    addThreeSets();
    clickRow(0);

    QTest::keyClick(&m_list, Qt::Key_Down);
    EXPECT_EQ(m_list.currentItem()->text(0), QStringLiteral("Set 1"));
    QTest::keyClick(&m_list, Qt::Key_End);
    EXPECT_EQ(m_list.currentItem()->text(0), QStringLiteral("Set 3"));
}

TEST_F(SelectionSetsPanelTest, TheCheckBoxAndSpaceShowAndHideASet)
{
    addThreeSets();

    clickCheckBox(2);
    EXPECT_FALSE(lookOfRow(2).visible);
    EXPECT_TRUE(lookOfRow(1).visible);
    clickRow(2);
    QTest::keyClick(&m_list, Qt::Key_Space);
    EXPECT_TRUE(lookOfRow(2).visible);
}

TEST_F(SelectionSetsPanelTest, SetsAreCombinedFromTheMenu)
{
    addThreeSets();
    clickRow(1);

    combine(QStringLiteral("Unite with selection"));
    EXPECT_THAT(nodesOfRow(1), UnorderedElementsAre(m_parts[0], m_parts[1], m_parts[3]));
    combine(QStringLiteral("Subtract/Set 2"));
    EXPECT_THAT(nodesOfRow(1), UnorderedElementsAre(m_parts[0], m_parts[3]));
    combine(QStringLiteral("Intersect with selection"));
    EXPECT_THAT(nodesOfRow(1), ElementsAre(m_parts[3]));
    combine(QStringLiteral("Unite with/Set 2"));
    EXPECT_THAT(nodesOfRow(1), UnorderedElementsAre(m_parts[1], m_parts[2], m_parts[3]));
    combine(QStringLiteral("Subtract selection"));
    EXPECT_THAT(nodesOfRow(1), UnorderedElementsAre(m_parts[1], m_parts[2]));
    combine(QStringLiteral("Intersect with/Set 3"));
    EXPECT_THAT(nodesOfRow(1), IsEmpty());
    combine(QStringLiteral("Replace by selection"));
    EXPECT_THAT(nodesOfRow(1), ElementsAre(m_parts[3]));
}

TEST_F(SelectionSetsPanelTest, TheContextMenuHasWhatFitsTheEntry)
{
    addThreeSets();
    const auto entries = [&] {
        std::vector<std::string> texts;
        QTimer::singleShot(0, &m_panel, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (const QAction* action : menu->actions()) {
                if (!action->isSeparator()) {
                    texts.push_back(action->text().toStdString());
                }
            }
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, m_list.visualItemRect(m_list.currentItem()).center(),
                                QPoint());
        QApplication::sendEvent(m_list.viewport(), &event);
        return texts;
    };

    clickRow(1);
    EXPECT_THAT(entries(), ElementsAre("Recall", "Add to selection", "Combine", "Rename", "Delete"));
    clickRow(0);
    EXPECT_THAT(entries(), ElementsAre("New set"));
}

TEST_F(SelectionSetsPanelTest, TheFieldsChangeHowTheCurrentSetIsDrawnAndNoOther)
{
    addThreeSets();
    clickRow(2);
    const SelectionLook first = lookOfRow(1);
    const SelectionLook selected = m_session.getSelectionLook();

    QTest::keyClick(find<QComboBox>("kind"), Qt::Key_Down);
    QTest::mouseClick(find<QCheckBox>("overlay"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    auto* transparency = find<QSlider>("transparency");
    QTest::keyClick(transparency, Qt::Key_PageUp);
    QTest::keyClick(transparency, Qt::Key_PageUp);
    QTest::keyClick(transparency, Qt::Key_Right);

    const SelectionLook look = lookOfRow(2);
    EXPECT_EQ(look.kind, SelectionLook::Kind::Wireframe);
    EXPECT_FALSE(look.overlay);
    EXPECT_FLOAT_EQ(look.transparency, 0.21F);
    EXPECT_EQ(lookOfRow(1), first);
    EXPECT_EQ(m_session.getSelectionLook(), selected);
    EXPECT_FALSE(find<QDoubleSpinBox>("markerSize")->isEnabled());

    clickRow(1);
    EXPECT_EQ(find<QComboBox>("kind")->currentText(), QStringLiteral("Boxes"));
    EXPECT_EQ(transparency->value(), 0);
    EXPECT_TRUE(find<QDoubleSpinBox>("markerSize")->isEnabled());
}

TEST_F(SelectionSetsPanelTest, TheMarkerSizeIsMeasuredByTheModel)
{
    addThreeSets();
    clickRow(1);
    auto* field = find<QDoubleSpinBox>("markerSize");
    const float before = lookOfRow(1).markerSize;
    EXPECT_NEAR(field->value(), static_cast<double>(before), 0.01 * static_cast<double>(before));

    QTest::keyClick(field, Qt::Key_Up);
    EXPECT_GT(lookOfRow(1).markerSize, before);
    EXPECT_LT(lookOfRow(1).markerSize, 3 * before);

    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, QLocale().toString(0.5, 'f', 1));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_FLOAT_EQ(lookOfRow(1).markerSize, 0.5F);
    EXPECT_LT(field->maximum(), 20.0);
}

TEST_F(SelectionSetsPanelTest, WhatIsTypedOutlastsAnotherSelection)
{
    addThreeSets();
    clickRow(1);
    auto* field = find<QDoubleSpinBox>("markerSize");
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, QLocale().toString(0.5, 'f', 1));

    select({m_parts[2]});
    EXPECT_EQ(field->text(), QLocale().toString(0.5, 'f', 1));
    QTest::keyClick(field, Qt::Key_Return);

    EXPECT_FLOAT_EQ(lookOfRow(1).markerSize, 0.5F);
}

TEST_F(SelectionSetsPanelTest, WhatIsTypedForASetThatGoesIsNotThatOfTheNext)
{
    addThreeSets();
    clickRow(3);
    auto* field = find<QDoubleSpinBox>("markerSize");
    const QString before = field->text();
    const SelectionLook second = lookOfRow(2);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, QLocale().toString(0.5, 'f', 1));

    m_session.getEditor().undo();
    EXPECT_EQ(field->text(), before);
    QTest::keyClick(field, Qt::Key_Return);

    EXPECT_EQ(lookOfRow(2), second);
}

TEST_F(SelectionSetsPanelTest, AColourShowsWhileItIsChosenAndStaysWhenItIsTaken)
{
    addThreeSets();
    clickRow(1);
    // Not one of those that the dialog has.
    SelectionLook look = lookOfRow(1);
    look.colour = osg::Color3f(0.1F, 0.2F, 0.3F);
    m_sets.setLook(m_sets.getAll().front().id, look);
    const auto openDialog = [&] {
        clickButton("colour");
        return m_panel.findChild<QColorDialog*>();
    };

    QColorDialog* dialog = openDialog();
    ASSERT_NE(dialog, nullptr);
    dialog->setCurrentColor(QColor(0, 255, 0));
    EXPECT_EQ(lookOfRow(1).colour, osg::Color3f(0, 1, 0));
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_EQ(lookOfRow(1), look);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    dialog = openDialog();
    ASSERT_NE(dialog, nullptr);
    dialog->setCurrentColor(QColor(255, 0, 0));
    QTest::keyClick(dialog, Qt::Key_Return);
    EXPECT_EQ(lookOfRow(1).colour, osg::Color3f(1, 0, 0));
}

TEST_F(SelectionSetsPanelTest, AColourDialogEndsWithItsSet)
{
    addThreeSets();
    clickRow(3);
    const SelectionLook second = lookOfRow(2);
    clickButton("colour");
    m_panel.findChild<QColorDialog*>()->setCurrentColor(QColor(1, 2, 3));

    m_session.getEditor().undo();

    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(m_panel.findChild<QColorDialog*>(), nullptr);
    EXPECT_EQ(lookOfRow(2), second);
}

TEST_F(SelectionSetsPanelTest, TheSelectionsOwnLookAndTheCommandsStayInStep)
{
    clickRow(0);

    QTest::keyClick(find<QComboBox>("kind"), Qt::Key_Down);
    EXPECT_TRUE(m_session.getHighlight().isVisible());
    EXPECT_TRUE(m_window.getAction("visualisation")->isChecked());
    QTest::keyClick(&m_window, Qt::Key_B);
    EXPECT_EQ(find<QComboBox>("kind")->currentText(), QStringLiteral("Boxes"));

    QTest::keyClick(&m_window, Qt::Key_O);
    EXPECT_FALSE(find<QCheckBox>("overlay")->isChecked());
    QTest::mouseClick(find<QCheckBox>("overlay"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_TRUE(m_session.getBoxes().getOverlay());
    EXPECT_TRUE(m_window.getAction("overlay")->isChecked());
}

TEST_F(SelectionSetsPanelTest, AnotherModelHasNoSets)
{
    addThreeSets();

    m_session.setModel(makeGroup());

    EXPECT_THAT(rows(), ElementsAre("Selection (0)"));
    EXPECT_TRUE(find<QLabel>("hint")->isVisible());
}

TEST_F(SelectionSetsPanelTest, EveryFieldHasANameForThoseWhoCannotSeeIt)
{
    EXPECT_FALSE(m_list.accessibleName().isEmpty());
    for (const char* name : {"kind", "transparency", "markerSize"}) {
        const auto labels = m_panel.findChildren<QLabel*>();
        EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->buddy() == find<QWidget>(name);
        })) << name;
    }
    for (const QToolButton* button : m_panel.findChildren<QToolButton*>()) {
        EXPECT_FALSE(button->toolTip().isEmpty()) << button->objectName().toStdString();
    }
}

TEST_F(SelectionSetsPanelTest, TheButtonForANewSetSaysItsKey)
{
    auto* button = find<QToolButton>("new");
    EXPECT_EQ(button->toolTip(), QStringLiteral("Keep the selected parts as a set (K)"));

    m_session.getBindings().setKey("new-set", {Qt::Key_J, 0});
    EXPECT_EQ(button->toolTip(), QStringLiteral("Keep the selected parts as a set (J)"));
    m_session.getBindings().setKey("new-set", {});
    EXPECT_EQ(button->toolTip(), QStringLiteral("Keep the selected parts as a set"));
}

// Stands for any other language.
class Brackets : public QTranslator {
public:
    QString translate(const char*, const char* source, const char*, int) const override
    {
        return QStringLiteral("<") + QString::fromUtf8(source) + QStringLiteral(">");
    }
    bool isEmpty() const override { return false; }
};

TEST_F(SelectionSetsPanelTest, TheTextsFollowTheLanguage)
{
    addThreeSets();
    Brackets brackets;
    QApplication::installTranslator(&brackets);
    QApplication::processEvents();

    EXPECT_EQ(m_panel.windowTitle(), QStringLiteral("<Selection sets>"));
    EXPECT_THAT(rows(), Contains("<Selection> (1)"));
    // What a set is called is the user's.
    EXPECT_THAT(rows(), Contains("Set 1 (2)"));
    EXPECT_EQ(find<QCheckBox>("overlay")->text(), QStringLiteral("<Over everything>"));
    EXPECT_EQ(find<QComboBox>("kind")->currentText(), QStringLiteral("<Boxes>"));
    QApplication::removeTranslator(&brackets);
}

} // namespace

} // namespace quon::testing
