// SPDX-License-Identifier: MIT
#include <InteractionTesting/RecordingPicker.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;

class RecordingPickerTest : public SceneFixture {
protected:
    RecordingPickerTest() { m_names.add(m_wheel.get(), "wheel"); }

    RecordingPicker::Hit makeHit() const
    {
        RecordingPicker::Hit hit;
        hit.node = m_wheel.get();
        hit.point = osg::Pnt3f(1, 2, 3);
        hit.normal = osg::Vec3f(0, 1, 0);
        hit.uv = osg::Vec2f(0.25F, 0.75F);
        return hit;
    }

    NodeRef m_wheel = makeNode(osg::Group::create());
    CallLog m_log;
    ObjectNames m_names;
    RecordingPicker m_picker{m_log, m_names, "picker"};
};

TEST_F(RecordingPickerTest, HitsNothingAtFirst)
{
    EXPECT_EQ(m_picker.getPickedNode(nullptr), osg::NullFC);
    EXPECT_THAT(m_log, CallsInOrder("picker.updateSelectionOption(null)", "picker.computePicked(null)"));
}

TEST_F(RecordingPickerTest, GivesThePreparedHit)
{
    m_picker.setHit(makeHit());

    EXPECT_EQ(m_picker.getPickedNode(nullptr), m_wheel.get());
    EXPECT_EQ(m_picker.getPickedPoint(nullptr), osg::Pnt3f(1, 2, 3));
    EXPECT_EQ(m_picker.getPickedNormal(nullptr), osg::Vec3f(0, 1, 0));
    EXPECT_EQ(m_picker.getPickedUV(nullptr), osg::Vec2f(0.25F, 0.75F));
    EXPECT_EQ(m_picker.getPickedMaterial(nullptr), osg::NullFC);
}

TEST_F(RecordingPickerTest, AnswersFromItsCacheUntilThatIsStale)
{
    m_picker.getPickedNode(nullptr);
    m_picker.setHit(makeHit());

    EXPECT_EQ(m_picker.getPickedNode(nullptr), osg::NullFC);
    m_picker.setCacheValid(false);
    EXPECT_EQ(m_picker.getPickedNode(nullptr), m_wheel.get());

    m_picker.setHit(RecordingPicker::Hit());
    m_picker.setCacheValid(true);
    EXPECT_EQ(m_picker.getPickedNode(nullptr), m_wheel.get());
    m_picker.setOptionsChanged(true);
    EXPECT_EQ(m_picker.getPickedNode(nullptr), osg::NullFC);
}

TEST_F(RecordingPickerTest, GivesThePreparedListOfNodes)
{
    m_picker.setNodes({m_wheel.get()});

    EXPECT_THAT(m_picker.getPickedNodes(nullptr), ElementsAre(m_wheel.get()));
    EXPECT_THAT(m_log, CallsInOrder("picker.computePickedNodes([], null)"));
}

TEST_F(RecordingPickerTest, GivesThePreparedHitsOfAMultiPick)
{
    m_picker.setMultiHit({{m_wheel.get(), m_wheel.get()}, {}, {}, {}});

    std::vector<osg::NodePtr> nodes;
    m_picker.getMultiPicked(interaction::Picker::AllHits, &nodes, nullptr, nullptr, nullptr);

    EXPECT_THAT(nodes, ElementsAre(m_wheel.get(), m_wheel.get()));
    EXPECT_THAT(m_log, CallsInOrder("picker.computeMultiPicked(1, empty)"));
}

TEST_F(RecordingPickerTest, KeepsPointerAndCamera)
{
    osg::Matrix camera;
    camera.setTranslate(1, 2, 3);

    m_picker.setPointer(osg::Pnt2f(10, 20));
    m_picker.setCamera(camera);

    EXPECT_EQ(m_picker.getPointer(), osg::Pnt2f(10, 20));
    EXPECT_EQ(m_picker.getCamera(), camera);
}

TEST_F(RecordingPickerTest, RunsAnActionFromInsideTheUpdateOfItsOptions)
{
    int runs = 0;
    m_picker.onUpdateSelectionOption([&] { ++runs; });

    m_picker.getPickedNode(nullptr);

    EXPECT_EQ(runs, 1);
}

} // namespace

} // namespace quon::testing
