// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Session/ModelSettings.h"
#include "Viewer/Session/ViewerSession.h"

#include <Interaction/NodeSelectionModel.h>

#include <QSettings>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using viewer::LengthUnit;
using viewer::ModelLoader;
using viewer::ModelSettings;
using viewer::UpAxis;

// Four wide, two deep and one high where z is up.
const char* const Wedge = "o wedge\nv 0 0 0\nv 4 0 0\nv 0 2 0\nv 0 0 1\nf 1 2 3\nf 1 2 4\n";

const char* const Gltf = R"({"asset": {"version": "2.0"}, "scene": 0, "scenes": [{"nodes": [0]}],
 "nodes": [{"name": "plate", "mesh": 0}], "meshes": [{"primitives": [{"attributes": {"POSITION": 0}}]}],
 "accessors": [{"bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                "min": [0, 0, 0], "max": [1, 1, 0]}],
 "bufferViews": [{"buffer": 0, "byteLength": 36}],
 "buffers": [{"byteLength": 36,
   "uri": "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]})";

class ModelSettingsTest : public ::testing::Test {
protected:
    ModelSettingsTest()
        : m_remembered(QString::fromStdString(m_folder.path("settings.ini")), QSettings::IniFormat)
        , m_settings(m_session)
    {
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
        m_settings.useSettings(&m_remembered);
    }

    ~ModelSettingsTest() override { QLocale::setDefault(QLocale::c()); }

    void show(const std::string& name, const std::string& content)
    {
        m_settings.show(ModelLoader().load(m_folder.write(name, content)));
    }

    osg::Vec3f size() const { return m_session.getModelMaximum() - m_session.getModelMinimum(); }

    TemporaryFolder m_folder;
    QSettings m_remembered;
    viewer::ViewerSession m_session;
    ModelSettings m_settings;
};

TEST_F(ModelSettingsTest, AModelIsTurnedAndLookedAtAnew)
{
    show("wedge.obj", Wedge);
    EXPECT_EQ(size(), osg::Vec3f(4, 2, 1));
    const osg::Matrix view = m_session.getCamera().getWorldToClip();
    m_session.toggleNode(m_session.findNode("wedge"));
    int changes = 0;
    QObject::connect(&m_settings, &ModelSettings::changed, [&] { ++changes; });

    m_settings.setUpAxis(UpAxis::Z);

    EXPECT_EQ(size(), osg::Vec3f(4, 1, 2));
    EXPECT_NE(m_session.getCamera().getWorldToClip(), view);
    EXPECT_EQ(m_session.getSelection().getSelection().size(), 1U) << "the selection stays";
    EXPECT_EQ(changes, 1);
    m_settings.setUpAxis(UpAxis::Z);
    EXPECT_EQ(changes, 1);
    m_settings.setUpAxis(UpAxis::Y);
    EXPECT_EQ(size(), osg::Vec3f(4, 2, 1));
}

TEST_F(ModelSettingsTest, TheUnitOfAFileThatDoesNotSayIsTheUsersChoice)
{
    show("wedge.obj", Wedge);
    EXPECT_EQ(m_settings.describeSize(), QStringLiteral("4.000 × 2.000 × 1.000 units"));

    m_settings.setMetresPerUnit(0.0254);
    EXPECT_EQ(m_settings.describeSize(), QStringLiteral("0.1016 × 0.05080 × 0.02540 m"));
    m_settings.setLengthUnit(LengthUnit::Inch);
    EXPECT_EQ(m_settings.describeSize(), QStringLiteral("4.000 × 2.000 × 1.000 in"));
    m_settings.setMetresPerUnit(0);
    EXPECT_EQ(m_settings.describeSize(), QStringLiteral("4.000 × 2.000 × 1.000 units"));
}

TEST_F(ModelSettingsTest, ChoicesAreRememberedByExtension)
{
    show("wedge.obj", Wedge);
    m_settings.setUpAxis(UpAxis::Z);
    m_settings.setMetresPerUnit(0.001);
    m_settings.setLengthUnit(LengthUnit::Millimetre);

    ModelSettings later(m_session);
    later.useSettings(&m_remembered);
    later.show(ModelLoader().load(m_folder.write("other.OBJ", Wedge)));

    EXPECT_EQ(later.getPlacement().upAxis, UpAxis::Z);
    EXPECT_EQ(later.describeSize(), QStringLiteral("4.000 × 1.000 × 2.000 mm"));

    later.show(ModelLoader().load(m_folder.write(
        "plate.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                     "endloop\nendfacet\nendsolid a\n")));
    EXPECT_EQ(later.getPlacement().upAxis, UpAxis::Y) << "another extension";
    EXPECT_EQ(later.getPlacement().metresPerUnit, 0);
}

TEST_F(ModelSettingsTest, WhatAFileSaysHoldsUntilTheUserKnowsBetterAndIsNotRemembered)
{
    show("plate.gltf", Gltf);
    EXPECT_TRUE(m_settings.isUpAxisStated());
    EXPECT_TRUE(m_settings.isUnitStated());
    EXPECT_EQ(m_settings.getPlacement().metresPerUnit, 1);

    m_settings.setUpAxis(UpAxis::Z);
    m_settings.setMetresPerUnit(0.001);
    EXPECT_EQ(m_settings.getPlacement().upAxis, UpAxis::Z);
    EXPECT_EQ(m_settings.describeSize(), QStringLiteral("0.001000 × 0 × 0.001000 m"));

    show("plate.gltf", Gltf);
    EXPECT_EQ(m_settings.getPlacement().upAxis, UpAxis::Y);
    EXPECT_EQ(m_settings.getPlacement().metresPerUnit, 1);
}

TEST_F(ModelSettingsTest, WithoutAModelNothingHappens)
{
    EXPECT_FALSE(m_settings.isPlaceable());
    m_settings.setUpAxis(UpAxis::Z);
    m_settings.setMetresPerUnit(1);
    EXPECT_EQ(m_settings.describeSize(), QString());
    m_session.modelMoved();
    EXPECT_EQ(m_session.getModel(), osg::NullFC);
}

TEST_F(ModelSettingsTest, MeasurementsAreWrittenInTheUnitOfTheModelWithoutAnyWindow)
{
    const auto written = [this] { return m_session.getMeasureTool().getLengthFormat().format(2).toStdString(); };

    show("plate.gltf", Gltf);
    EXPECT_EQ(written(), "2.000 m");

    show("wedge.obj", Wedge);
    EXPECT_EQ(written(), "2.000 units");

    m_settings.setMetresPerUnit(1);
    m_settings.setLengthUnit(viewer::LengthUnit::Millimetre);
    EXPECT_EQ(written(), "2,000 mm");

    m_settings.show(osg::NodePtr(osg::NullFC));
    EXPECT_EQ(written(), "2,000 mm");
}

TEST_F(ModelSettingsTest, AMadeUpModelStaysAsItWasMade)
{
    show("wedge.obj", Wedge);
    const osg::RefPtr<osg::NodePtr> model(m_session.getModel());

    m_settings.show(model.get());

    EXPECT_FALSE(m_settings.isPlaceable());
    m_settings.setUpAxis(UpAxis::Z);
    EXPECT_EQ(size(), osg::Vec3f(4, 2, 1));
    EXPECT_EQ(m_settings.describeSize(), QStringLiteral("4.000 × 2.000 × 1.000 m"));
}

} // namespace

} // namespace quon::testing
