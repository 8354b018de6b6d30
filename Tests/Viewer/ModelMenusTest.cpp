// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Session/ModelSettings.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/ModelMenus.h"

#include <QAction>
#include <QMenu>
#include <QtTest>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using viewer::LengthUnit;
using viewer::UpAxis;

class ModelMenusTest : public ::testing::Test {
protected:
    ModelMenusTest()
        : m_settings(m_session)
        , m_menus(m_settings, m_menu)
    {}

    QMenu* find(const char* name) const { return m_menu.findChild<QMenu*>(QLatin1String(name)); }

    // The text of what is chosen in a menu; empty when nothing is.
    QString chosenIn(const char* name) const
    {
        for (const QAction* action : find(name)->actions()) {
            if (action->isChecked()) {
                return action->text();
            }
        }
        return {};
    }

    void click(const char* name, const int entry) const
    {
        QMenu* menu = find(name);
        menu->popup(QPoint(0, 0));
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                          menu->actionGeometry(menu->actions().at(entry)).center());
    }

    TemporaryFolder m_folder;
    viewer::ViewerSession m_session;
    viewer::ModelSettings m_settings;
    QMenu m_menu;
    viewer::ModelMenus m_menus;
};

TEST_F(ModelMenusTest, WithoutAModelThereIsNothingToPlace)
{
    EXPECT_FALSE(find("upAxisMenu")->isEnabled());
    EXPECT_FALSE(find("modelUnitMenu")->isEnabled());
    EXPECT_TRUE(find("lengthUnitMenu")->isEnabled());
    EXPECT_EQ(chosenIn("lengthUnitMenu"), QStringLiteral("Metres (m)"));
}

TEST_F(ModelMenusTest, TheMenusShowAndChangeThePlaceOfTheModel)
{
    m_settings.show(viewer::ModelLoader().load(m_folder.write("a.obj", "o a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")));
    EXPECT_TRUE(find("upAxisMenu")->isEnabled());
    EXPECT_EQ(chosenIn("upAxisMenu"), QStringLiteral("&y up"));
    EXPECT_EQ(chosenIn("modelUnitMenu"), QStringLiteral("Not known"));

    click("upAxisMenu", 1);
    EXPECT_EQ(m_settings.getPlacement().upAxis, UpAxis::Z);
    EXPECT_EQ(chosenIn("upAxisMenu"), QStringLiteral("&z up"));

    click("modelUnitMenu", 3);
    EXPECT_EQ(m_settings.getPlacement().metresPerUnit, 0.001);
    EXPECT_EQ(chosenIn("modelUnitMenu"), QStringLiteral("Millimetres"));

    click("lengthUnitMenu", 2);
    EXPECT_EQ(m_settings.getLengthUnit(), LengthUnit::Inch);
    EXPECT_EQ(chosenIn("lengthUnitMenu"), QStringLiteral("Inches (in)"));
}

} // namespace

} // namespace quon::testing
