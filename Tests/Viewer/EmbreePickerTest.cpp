// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/CountingPicker.h"
#include "Support/DrawnScene.h"

#include "Viewer/Model/Matrix4.h"
#include "Viewer/Model/PreparedGeometries.h"
#include "Viewer/Tools/CameraController.h"
#include "Viewer/Tools/EmbreePicker.h"
#include "Viewer/Tools/RegionOption.h"

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::EmbreePicker;
using viewer::Matrix4;
using viewer::SceneChanges;

constexpr int Size = 100;

class EmbreePickerTest : public SceneFixture {
protected:
    EmbreePickerTest()
        : m_root(makeGroup())
    {
        // Sees -1 to 1 in x and y; a larger z is nearer to the viewer.
        osg::Matrix camera;
        camera[2][2] = -1;
        m_picker.setViewportSize(Size, Size);
        m_picker.setCamera(camera);
        m_picker.setRoot(m_root.get());
        pointAt(0, 0);
    }

    ~EmbreePickerTest() override
    {
        m_picker.setRoot(osg::NullFC);
        m_root = osg::NullFC;
    }

    osg::NodePtr add(const osg::NodeCorePtr& core)
    {
        const osg::NodePtr node = makeNode(core);
        add(node);
        return node;
    }

    void add(const osg::NodePtr& node)
    {
        beginEditCP(m_root, osg::Node::ChildrenFieldMask);
        m_root->addChild(node);
        endEditCP(m_root, osg::Node::ChildrenFieldMask);
    }

    // A place from -1 to 1.
    void pointAt(const float x, const float y)
    {
        m_picker.setPointer(osg::Pnt2f(std::floor((x + 1) / 2 * Size), std::floor((1 - y) / 2 * Size)));
    }

    osg::NodePtr pick()
    {
        report();
        return m_picker.getPickedNode(nullptr);
    }

    void report() { m_picker.sceneChanged(SceneChanges::take()); }

    std::vector<osg::NodePtr> multiPick(const EmbreePicker::MultiMode mode)
    {
        report();
        std::vector<osg::NodePtr> nodes;
        m_picker.getMultiPicked(mode, &nodes, nullptr, nullptr, nullptr);
        return nodes;
    }

    std::vector<osg::NodePtr> pickParts(const viewer::PixelRectangle& rectangle)
    {
        viewer::RegionOption option(rectangle);
        return m_picker.getPickedNodes(&option);
    }

    static osg::GeometryPtr rectangle(const float z = 0, const osg::MaterialPtr& material = osg::NullFC)
    {
        return makeRectangle(-0.5F, -0.5F, 0.5F, 0.5F, z, material);
    }

    osg::RefPtr<osg::NodePtr> m_root;
    CountingPicker m_picker;
};

TEST_F(EmbreePickerTest, ThePointerHitsTheNearestNode)
{
    add(rectangle(-0.5F));
    const osg::NodePtr nearest = add(rectangle(0.5F));
    add(rectangle(0));

    EXPECT_EQ(pick(), nearest);
    EXPECT_EQ(m_picker.getPickedPoint(nullptr).z(), 0.5F);
}

TEST_F(EmbreePickerTest, WhatWasPreparedCountsUntilTheGeometryChanges)
{
    const osg::GeometryPtr near = rectangle(0.5F);
    const osg::RefPtr<osg::GeometryPtr> far(rectangle(-0.5F));
    viewer::PreparedGeometries prepared;
    prepared.add(near, std::make_shared<viewer::GeometryContent>(viewer::GeometryData::read(far.get())));
    m_picker.setPrepared(&prepared);
    add(near);
    report();
    ASSERT_EQ(m_picker.getPickedPoint(nullptr).z(), -0.5F);

    const osg::GeoPositionsPtr positions = near->getPositions();
    beginEditCP(positions);
    positions->setValue(osg::Pnt3f(-0.5F, -0.5F, 0.5F), 0);
    endEditCP(positions);
    const SceneChanges changes = SceneChanges::take();
    prepared.sceneChanged(changes);
    m_picker.sceneChanged(changes);

    EXPECT_EQ(m_picker.getPickedPoint(nullptr).z(), 0.5F);
    m_picker.setPrepared(nullptr);
}

TEST_F(EmbreePickerTest, BesideEverythingNothingIsHit)
{
    add(rectangle());
    pointAt(0.8F, 0);

    EXPECT_EQ(pick(), osg::NullFC);
    EXPECT_EQ(m_picker.getPickedPoint(nullptr), osg::Pnt3f());
    EXPECT_EQ(m_picker.getPickedNormal(nullptr), osg::Vec3f());
    EXPECT_EQ(m_picker.getPickedMaterial(nullptr), osg::NullFC);
}

TEST_F(EmbreePickerTest, WithoutARootNothingIsHit)
{
    add(rectangle());

    m_picker.setRoot(osg::NullFC);

    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, TheRayGoesThroughTheMiddleOfThePixelWithTheOriginTopLeft)
{
    add(rectangle());

    m_picker.setPointer(osg::Pnt2f(25, 74));
    const osg::Pnt3f point = m_picker.getPickedPoint(nullptr);

    EXPECT_NEAR(point.x(), -0.49F, 1e-5F);
    EXPECT_NEAR(point.y(), -0.49F, 1e-5F);
    m_picker.setPointer(osg::Pnt2f(24, 74));
    EXPECT_EQ(pick(), osg::NullFC);
    m_picker.setPointer(osg::Pnt2f(25, 75));
    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, WhatLiesInFrontOfTheNearPlaneOrBehindTheFarPlaneIsNotHit)
{
    add(rectangle(1.5F));
    add(rectangle(-1.5F));

    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, AllThePickedValuesBelongToTheHit)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(osg::Color3f(1, 0, 0));
    const osg::GeometryPtr geometry = rectangle(0, material);
    const osg::GeoTexCoords2fPtr texCoords = osg::GeoTexCoords2f::create();
    for (const osg::Vec2f& texCoord : {osg::Vec2f(0, 0), osg::Vec2f(10, 0), osg::Vec2f(10, 20), osg::Vec2f(0, 20)}) {
        texCoords->push_back(texCoord);
    }
    geometry->setTexCoords(texCoords);
    add(makeTransform(translation(0.25F, 0, 0.125F), {makeNode(geometry)}));
    m_picker.setPointer(osg::Pnt2f(74, 49));

    osg::NodePtr node;
    osg::Pnt3f point;
    osg::Vec3f normal;
    m_picker.getPicked(node, point, normal, nullptr);

    EXPECT_EQ(node, m_root->getChild(0)->getChild(0));
    EXPECT_NEAR(point.x(), 0.49F, 1e-5F);
    EXPECT_NEAR(point.y(), 0.01F, 1e-5F);
    EXPECT_NEAR(point.z(), 0.125F, 1e-5F);
    EXPECT_EQ(normal, osg::Vec3f(0, 0, 1));
    EXPECT_NEAR(m_picker.getPickedUV(nullptr).x(), 7.4F, 1e-3F);
    EXPECT_NEAR(m_picker.getPickedUV(nullptr).y(), 10.2F, 1e-3F);
    EXPECT_EQ(m_picker.getPickedMaterial(nullptr), material);
}

TEST_F(EmbreePickerTest, TheMaterialIsTheOneThatIsSeen)
{
    const osg::SimpleMaterialPtr seen = makePlainMaterial(osg::Color3f(1, 0, 0));
    const osg::MaterialGroupPtr group = osg::MaterialGroup::create();
    group->setMaterial(seen);
    add(makeNode(group, {makeNode(rectangle(0, makePlainMaterial(osg::Color3f(0, 1, 0))))}));

    report();

    EXPECT_EQ(m_picker.getPickedMaterial(nullptr), seen);
}

TEST_F(EmbreePickerTest, AConsistentNormalPointsToTheSideOfTheViewer)
{
    osg::Matrix turned;
    turned.setScale(-1, 1, 1);
    add(makeTransform(turned, {makeNode(rectangle())}));
    report();
    EXPECT_EQ(m_picker.getPickedNormal(nullptr), osg::Vec3f(0, 0, 1));

    m_picker.setMakeNormalsConsistent(false);
    m_picker.invalidate();

    EXPECT_EQ(m_picker.getPickedNormal(nullptr), osg::Vec3f(0, 0, -1));
}

TEST_F(EmbreePickerTest, HiddenNodesAreNotHit)
{
    const osg::NodePtr back = add(rectangle(0));
    const osg::NodePtr front = makeGroup({makeNode(rectangle(0.5F))});
    add(front);
    EXPECT_EQ(pick(), front->getChild(0));

    setTravMask(front, 0);

    EXPECT_EQ(pick(), back);
}

TEST_F(EmbreePickerTest, AuxiliaryNodesAreNotHitNorWhatIsBelowThem)
{
    const osg::NodePtr back = add(rectangle(0));
    const osg::NodePtr front = makeGroup({makeNode(rectangle(0.5F))});
    koNodeUtils::setIsAuxiliaryNode(front, true);
    add(front);

    EXPECT_EQ(pick(), back);
}

TEST_F(EmbreePickerTest, LinesAndPointsAreNotHit)
{
    add(makeGeometry(GL_LINES, {osg::Pnt3f(-1, 0.01F, 0), osg::Pnt3f(1, 0.01F, 0)}, {}, osg::NullFC));
    add(makeGeometry(GL_POINTS, {osg::Pnt3f(0.01F, 0.01F, 0)}, {}, osg::NullFC));

    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, TheRayPassesWhatIsWhollyTransparent)
{
    const osg::NodePtr back = add(rectangle(0));
    const osg::NodePtr glass = add(rectangle(0.5F, makePlainMaterial(osg::Color3f(), 1)));
    EXPECT_EQ(pick(), back);
    EXPECT_THAT(multiPick(EmbreePicker::AllHits), ElementsAre(back));

    m_picker.setTransparencyEvaluationEnabled(false);

    EXPECT_EQ(pick(), glass);
}

TEST_F(EmbreePickerTest, AMaterialThatBecomesWhollyTransparentLetsTheRayThrough)
{
    const osg::SimpleMaterialPtr material = makePlainMaterial(osg::Color3f(1, 1, 1));
    const osg::NodePtr front = add(rectangle(0.5F, material));
    const osg::NodePtr behind = add(rectangle(0));
    m_picker.setTransparencyEvaluationEnabled(true);
    EXPECT_EQ(pick(), front);

    beginEditCP(material);
    material->setTransparency(1);
    endEditCP(material);

    EXPECT_EQ(pick(), behind);
}

TEST_F(EmbreePickerTest, WhatIsPartlyTransparentIsHit)
{
    add(rectangle(0));
    const osg::NodePtr glass = add(rectangle(0.5F, makePlainMaterial(osg::Color3f(), 0.9F)));

    EXPECT_EQ(pick(), glass);
}

TEST_F(EmbreePickerTest, AllHitsAreEverySurfaceAlongTheRayNearestFirst)
{
    const osg::NodePtr far = add(rectangle(-0.5F));
    const osg::NodePtr box = add(makeBox(osg::Pnt3f(-0.5F, -0.5F, 0), osg::Pnt3f(0.5F, 0.5F, 0.25F), osg::NullFC));
    const osg::NodePtr nearest = add(rectangle(0.5F));
    pointAt(0.3F, 0.1F);
    report();

    std::vector<osg::NodePtr> nodes;
    std::vector<osg::Pnt3f> points;
    std::vector<osg::Vec3f> normals;
    std::vector<osg::MaterialPtr> materials;
    m_picker.getMultiPicked(EmbreePicker::AllHits, &nodes, &points, &normals, &materials);

    EXPECT_THAT(nodes, ElementsAre(nearest, box, box, far));
    ASSERT_EQ(points.size(), 4U);
    EXPECT_EQ(points[0].z(), 0.5F);
    EXPECT_EQ(points[1].z(), 0.25F);
    EXPECT_EQ(points[2].z(), 0);
    EXPECT_EQ(points[3].z(), -0.5F);
    EXPECT_THAT(normals, ::testing::Each(osg::Vec3f(0, 0, 1)));
    EXPECT_EQ(materials.size(), 4U);
}

TEST_F(EmbreePickerTest, AnUnknownModeFindsNothing)
{
    add(rectangle());

    EXPECT_THAT(multiPick(static_cast<EmbreePicker::MultiMode>(17)), IsEmpty());
}

TEST_F(EmbreePickerTest, ARegionFindsEveryNodeThatReachesIntoItNearestFirst)
{
    const osg::NodePtr left = add(makeRectangle(-1, -0.05F, -0.15F, 0.05F, -0.5F, osg::NullFC));
    const osg::NodePtr right = add(makeRectangle(0.15F, -0.05F, 1, 0.05F, 0.5F, osg::NullFC));
    const osg::NodePtr above = add(makeRectangle(-1, 0.9F, 1, 1, 0.7F, osg::NullFC));

    m_picker.setSelectionRegion(5);
    EXPECT_THAT(multiPick(EmbreePicker::Region), IsEmpty());

    m_picker.setSelectionRegion(10);
    EXPECT_THAT(multiPick(EmbreePicker::Region), ElementsAre(right, left));

    m_picker.setSelectionRegion(50);
    EXPECT_THAT(multiPick(EmbreePicker::Region), ElementsAre(above, right, left));
}

TEST_F(EmbreePickerTest, ARegionFindsATriangleThatCoversItWithoutACornerInside)
{
    const osg::NodePtr node = add(makeGeometry(
        GL_TRIANGLES, {osg::Pnt3f(-5, -4, 0), osg::Pnt3f(5, -4, 0), osg::Pnt3f(0, 6, 0)}, {}, osg::NullFC));
    m_picker.setSelectionRegion(3);

    EXPECT_THAT(multiPick(EmbreePicker::Region), ElementsAre(node));
}

TEST_F(EmbreePickerTest, FullyEnclosedLeavesOutWhatSticksOutOfTheRegion)
{
    const osg::NodePtr inside = add(makeRectangle(-0.05F, -0.05F, 0.05F, 0.05F, 0, osg::NullFC));
    add(makeRectangle(-0.05F, -0.05F, 0.9F, 0.05F, 0.5F, osg::NullFC));
    m_picker.setSelectionRegion(10);
    EXPECT_EQ(multiPick(EmbreePicker::Region).size(), 2U);

    m_picker.setFullyEnclosed(true);
    m_picker.invalidate();

    EXPECT_THAT(multiPick(EmbreePicker::Region), ElementsAre(inside));
}

TEST_F(EmbreePickerTest, WithoutDepthSelectionWhatIsHiddenAtEveryPixelIsLeftOut)
{
    const osg::NodePtr front = add(rectangle(0.5F));
    add(rectangle(0));
    const osg::NodePtr peeping = add(makeRectangle(-0.7F, -0.5F, 0.5F, 0.5F, -0.5F, osg::NullFC));
    pointAt(-0.5F, 0);
    m_picker.setSelectionRegion(4);
    EXPECT_EQ(multiPick(EmbreePicker::Region).size(), 3U);

    m_picker.setDepthSelection(false);
    m_picker.invalidate();

    EXPECT_THAT(multiPick(EmbreePicker::Region), ElementsAre(front, peeping));
}

TEST_F(EmbreePickerTest, TheNodeListIsThatOfTheRegion)
{
    const osg::NodePtr back = add(rectangle(0));
    const osg::NodePtr front = add(rectangle(0.5F));
    report();

    EXPECT_THAT(m_picker.getPickedNodes(nullptr), ElementsAre(front, back));
}

TEST_F(EmbreePickerTest, ARectangleGivesThePartsInTheOrderOfTheScene)
{
    const osg::NodePtr back = makeGroup({makeNode(rectangle(-0.5F)), makeNode(rectangle(-0.6F))});
    NodeUtils::setName(back, "back", false);
    add(back);
    const osg::NodePtr lines =
        add(makeGeometry(GL_LINES, {osg::Pnt3f(-0.1F, 0, 0), osg::Pnt3f(0.1F, 0, 0)}, {}, osg::NullFC));
    add(rectangle(0.6F, makePlainMaterial(osg::Color3f(1, 0, 0), 1)));
    const osg::NodePtr front = add(rectangle(0.5F));
    const osg::NodePtr hidden = add(rectangle(0.5F));
    setTravMask(hidden, 0);
    report();

    EXPECT_THAT(pickParts({40, 40, 60, 60}), ElementsAre(back, lines, front));
    m_picker.setFullyEnclosed(true);
    EXPECT_THAT(pickParts({40, 40, 60, 60}), ElementsAre(lines));
    EXPECT_THAT(pickParts({20, 20, 80, 80}), ElementsAre(back, lines, front));
    m_picker.setDepthSelection(false);
    EXPECT_THAT(pickParts({20, 20, 80, 80}), ElementsAre(front));
}

TEST_F(EmbreePickerTest, OfARectangleOnlyWhatLiesInTheViewportCounts)
{
    const osg::NodePtr node = add(makeRectangle(0.5F, -0.5F, 1.5F, 0.5F, 0, osg::NullFC));
    report();

    EXPECT_THAT(pickParts({0, 0, 1000, 100}), ElementsAre(node));
    EXPECT_THAT(pickParts({101, 0, 1000, 100}), IsEmpty());
    EXPECT_THAT(pickParts({-10, -10, 0, 0}), IsEmpty());
    m_picker.setFullyEnclosed(true);
    EXPECT_THAT(pickParts({0, 0, 1000, 100}), IsEmpty());
}

TEST_F(EmbreePickerTest, WhatIsInFrontInALargeRectangleIsFoundOnARaster)
{
    m_picker.setViewportSize(4000, 4000);
    const osg::NodePtr front = add(rectangle(0.5F));
    add(rectangle(0));
    report();
    m_picker.setDepthSelection(false);

    EXPECT_THAT(pickParts({0, 0, 4000, 4000}), ElementsAre(front));
}

TEST_F(EmbreePickerTest, TheSameRectangleIsAnsweredFromTheCacheUntilASettingOrTheSceneChanges)
{
    const osg::NodePtr node = add(rectangle());
    report();
    EXPECT_THAT(pickParts({40, 40, 60, 60}), ElementsAre(node));
    m_picker.setPointer(osg::Pnt2f(40, 40));
    pickParts({40, 40, 60, 60});
    const int nodePicks = m_picker.nodePicks;
    pickParts({40, 40, 60, 60});
    EXPECT_EQ(m_picker.nodePicks, nodePicks);

    m_picker.setFullyEnclosed(true);
    EXPECT_THAT(pickParts({40, 40, 60, 60}), IsEmpty());
    EXPECT_EQ(m_picker.nodePicks, nodePicks + 1);
    EXPECT_THAT(pickParts({20, 20, 80, 80}), ElementsAre(node));
    EXPECT_EQ(m_picker.nodePicks, nodePicks + 2);

    setTravMask(node, 0);
    report();
    EXPECT_THAT(pickParts({20, 20, 80, 80}), IsEmpty());
    EXPECT_THAT(m_picker.getPickedNodes(nullptr), IsEmpty());
    EXPECT_EQ(m_picker.nodePicks, nodePicks + 4);
}

TEST_F(EmbreePickerTest, AnUnchangedQuestionIsAnsweredFromTheCache)
{
    add(rectangle());
    report();

    m_picker.getPickedNode(nullptr);
    m_picker.getPickedPoint(nullptr);
    m_picker.getPickedNormal(nullptr);

    EXPECT_EQ(m_picker.picks, 1);
}

TEST_F(EmbreePickerTest, AMovedPointerOrCameraOrAnotherViewportIsAnotherQuestion)
{
    add(rectangle());
    pick();

    pointAt(0.1F, 0);
    pick();
    EXPECT_EQ(m_picker.picks, 2);

    osg::Matrix camera = m_picker.getCamera();
    // Less than the tolerance with which matrices compare.
    camera[3][0] += 1e-7F;
    m_picker.setCamera(camera);
    pick();
    EXPECT_EQ(m_picker.picks, 3);

    m_picker.setViewportSize(Size + 1, Size);
    pick();
    EXPECT_EQ(m_picker.picks, 4);
}

TEST_F(EmbreePickerTest, EveryEditThatMovesSomethingIsSeen)
{
    const osg::TransformPtr transform = osg::Transform::create();
    const osg::GeometryPtr geometry = rectangle();
    const osg::NodePtr node = makeNode(geometry);
    add(makeNode(transform, {node}));
    EXPECT_EQ(pick(), node);

    transform->setMatrix(translation(5, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    EXPECT_EQ(pick(), osg::NullFC);

    transform->setMatrix(translation(0, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    EXPECT_EQ(pick(), node);

    const osg::GeoPositionsPtr positions = geometry->getPositions();
    for (osg::UInt32 i = 0; i < 4; ++i) {
        positions->setValue(positions->getValue(i) + osg::Vec3f(0, 5, 0), i);
    }
    endEditCP(positions);
    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, APropertyThatTwoGeometriesShareMovesBoth)
{
    const osg::GeometryPtr first = makeRectangle(-0.5F, -0.5F, 0, 0.5F, 0, osg::NullFC);
    const osg::GeometryPtr second = makeRectangle(9, 9, 10, 10, 0, osg::NullFC);
    second->setPositions(first->getPositions());
    endEditCP(second);
    add(first);
    add(makeTransform(translation(0.5F, 0, 0), {makeNode(second)}));
    pointAt(-0.2F, 0);
    EXPECT_NE(pick(), osg::NullFC);
    pointAt(0.2F, 0);
    EXPECT_NE(pick(), osg::NullFC);

    const osg::GeoPositionsPtr positions = first->getPositions();
    for (osg::UInt32 i = 0; i < 4; ++i) {
        positions->setValue(positions->getValue(i) + osg::Vec3f(0, 5, 0), i);
    }
    endEditCP(positions);

    EXPECT_EQ(pick(), osg::NullFC);
    pointAt(-0.2F, 0);
    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, ARemovedNodeIsGone)
{
    const osg::NodePtr back = add(rectangle(0));
    const osg::NodePtr front = add(rectangle(0.5F));
    EXPECT_EQ(pick(), front);

    beginEditCP(m_root, osg::Node::ChildrenFieldMask);
    m_root->subChild(m_root->getChild(1));
    endEditCP(m_root, osg::Node::ChildrenFieldMask);

    EXPECT_EQ(pick(), back);
}

TEST_F(EmbreePickerTest, EditsElsewhereAndCopiesThatShareAGeometryLeaveTheAnswersValid)
{
    const osg::NodePtr node = add(rectangle());
    const osg::RefPtr<osg::NodePtr> elsewhere(makeGroup());
    pick();

    beginEditCP(elsewhere, osg::Node::ChildrenFieldMask);
    elsewhere->addChild(makeNode(node->getCore()));
    elsewhere->addChild(makeNode(rectangle()));
    endEditCP(elsewhere, osg::Node::ChildrenFieldMask);
    pick();

    EXPECT_EQ(m_picker.picks, 1);
}

TEST_F(EmbreePickerTest, ANodeListAskedAfterInvalidationDoesNotPassForAPick)
{
    const osg::NodePtr node = add(rectangle());
    EXPECT_EQ(pick(), node);

    m_picker.invalidate();
    m_picker.getPickedNodes(nullptr);

    EXPECT_EQ(m_picker.getPickedNode(nullptr), node);
}

TEST_F(EmbreePickerTest, ANodeListIsNotTakenFromBeforeAPick)
{
    add(rectangle());
    report();
    m_picker.getPickedNodes(nullptr);

    pointAt(0.8F, 0);
    m_picker.getPickedNode(nullptr);

    EXPECT_THAT(m_picker.getPickedNodes(nullptr), IsEmpty());
}

TEST_F(EmbreePickerTest, PicksAndNodeListsInTurnAreComputedOnceEach)
{
    add(rectangle());
    report();

    for (int i = 0; i < 3; ++i) {
        m_picker.getPickedNode(nullptr);
        m_picker.getPickedNodes(nullptr);
    }

    EXPECT_EQ(m_picker.nodePicks, 1);
    EXPECT_EQ(m_picker.picks, 1);
}

TEST_F(EmbreePickerTest, FindingANodeElsewhereLeavesThePickAlone)
{
    const osg::NodePtr node = add(rectangle());
    EXPECT_EQ(pick(), node);

    EXPECT_EQ(m_picker.findNodeAt(osg::Pnt2f(2, 2)), osg::NullFC);

    EXPECT_EQ(m_picker.getPickedNode(nullptr), node);
    EXPECT_EQ(m_picker.picks, 1);
}

TEST_F(EmbreePickerTest, ASceneAndACameraThatAreNotNumbersHitNothing)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    add(makeTransform(translation(nan, 0, 0), {makeNode(rectangle(0.5F))}));
    add(makeGeometry(GL_TRIANGLES, {osg::Pnt3f(nan, 0, 0), osg::Pnt3f(1, 0, 0), osg::Pnt3f(0, 1, 0)}, {}, osg::NullFC));
    const osg::NodePtr sound = add(rectangle());
    EXPECT_EQ(pick(), sound);

    osg::Matrix camera;
    camera[0][0] = nan;
    m_picker.setCamera(camera);
    EXPECT_EQ(pick(), osg::NullFC);
    EXPECT_THAT(multiPick(EmbreePicker::Region), IsEmpty());

    camera.setScale(0);
    m_picker.setCamera(camera);
    EXPECT_EQ(pick(), osg::NullFC);

    m_picker.setCamera(osg::Matrix());
    m_picker.setPointer(osg::Pnt2f(nan, nan));
    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, WhatATransformMakesFlatIsHitWhereItIsSeen)
{
    const auto scaled = [](const float x, const float y, const float z) {
        osg::Matrix matrix;
        matrix.setScale(x, y, z);
        return matrix;
    };
    osg::Matrix tilted;
    tilted.setRotate(osg::Quaternion(osg::Vec3f(1, 1, 0), 0.3F));
    tilted.mult(scaled(1, 1, 0));
    const osg::GeometryPtr box = makeBox(osg::Pnt3f(-0.2F, -0.2F, 1), osg::Pnt3f(0.2F, 0.2F, 4), osg::NullFC);
    const osg::NodePtr flat = makeNode(box);
    const osg::NodePtr slanting = makeNode(box);
    add(makeTransform(translation(-0.5F, 0, 0), {makeTransform(scaled(1, 1, 0), {flat})}));
    add(makeTransform(translation(0.5F, 0, 0), {makeTransform(tilted, {slanting})}));
    add(makeTransform(scaled(0, 0, 0), {makeNode(box)}));
    add(makeTransform(scaled(1e-30F, 1e-30F, 1e-30F), {makeNode(box)}));

    pointAt(-0.4F, 0.1F);
    EXPECT_EQ(pick(), flat);
    EXPECT_EQ(m_picker.getPickedPoint(nullptr).z(), 0);
    EXPECT_EQ(std::abs(m_picker.getPickedNormal(nullptr).z()), 1);
    EXPECT_THAT(multiPick(EmbreePicker::AllHits), Contains(flat));
    pointAt(0.6F, 0.1F);
    EXPECT_EQ(pick(), slanting);
    pointAt(0, 0);
    EXPECT_EQ(pick(), osg::NullFC);
    pointAt(-0.4F, 0.3F);
    EXPECT_EQ(pick(), osg::NullFC);

    // It follows the scene as all others do.
    beginEditCP(box->getPositions());
    box->getPositions()->setValue(osg::Pnt3f(-0.2F, 0.6F, 4), 0);
    endEditCP(box->getPositions());
    pointAt(-0.68F, 0.3F);
    EXPECT_EQ(pick(), flat);
}

TEST_F(EmbreePickerTest, FromFartherAwayThanRaysReachNothingIsHit)
{
    const osg::NodePtr node = add(rectangle());
    osg::Matrix camera;
    camera.setScale(1, 1, 1e-10F);
    m_picker.setCamera(camera);
    EXPECT_EQ(pick(), node);

    camera.setScale(1, 1, 1e-25F);
    m_picker.setCamera(camera);
    EXPECT_EQ(pick(), osg::NullFC);

    m_picker.setCamera(osg::Matrix());
    osg::Matrix small;
    small.setScale(1e-8F);
    const osg::NodePtr far = makeNode(rectangle());
    add(makeTransform(small, {far}));
    EXPECT_EQ(pick(), node);
    camera.setScale(1, 1, 1e-10F);
    m_picker.setCamera(camera);
    EXPECT_EQ(pick(), osg::NullFC) << "the small one is as far away as rays reach";
}

TEST_F(EmbreePickerTest, ARootBelowATransformIsPickedInItsPlace)
{
    const osg::NodePtr inner = makeGroup({makeNode(rectangle())});
    const osg::TransformPtr transform = osg::Transform::create();
    transform->setMatrix(translation(0.9F, 0, 0));
    add(makeNode(transform, {inner}));
    m_picker.setRoot(inner);
    pointAt(0.95F, 0);
    EXPECT_EQ(pick(), inner->getChild(0));

    transform->setMatrix(translation(-0.9F, 0, 0));
    endEditCP(transform, osg::Transform::MatrixFieldMask);
    EXPECT_EQ(pick(), osg::NullFC);
}

TEST_F(EmbreePickerTest, AChainOfAHundredThousandNodesIsPickedIn)
{
    const osg::NodePtr leaf = makeNode(rectangle());
    osg::NodePtr node = leaf;
    for (int i = 0; i < 100000; ++i) {
        node = makeGroup({node});
    }
    add(node);

    EXPECT_EQ(pick(), leaf);
}

// Compares with every triangle of the scene, one after the other, in double precision.
class EmbreePickerRandomTest : public EmbreePickerTest {
protected:
    struct Triangle {
        osg::NodePtr node;
        viewer::Vector4 corners[3];
    };

    struct Hit {
        osg::NodePtr node;
        double distance;
        bool doubtful; ///< so close to an edge that rounding may decide
    };

    float uniform(const float low, const float high)
    {
        return std::uniform_real_distribution<float>(low, high)(m_random);
    }

    osg::Pnt3f place(const float reach)
    {
        return osg::Pnt3f(uniform(-reach, reach), uniform(-reach, reach), uniform(-reach, reach));
    }

    void addRandomNode()
    {
        std::vector<osg::Pnt3f> corners;
        for (int i = 0; i < 20; ++i) {
            const osg::Pnt3f middle = place(1);
            for (int corner = 0; corner < 3; ++corner) {
                corners.push_back(middle + place(0.4F).subZero());
            }
        }
        osg::Matrix matrix;
        osg::Quaternion rotation(osg::Vec3f(uniform(-1, 1), uniform(-1, 1), uniform(0.1F, 1)), uniform(0, 6));
        matrix.setTransform(place(0.5F).subZero(), rotation,
                            osg::Vec3f(uniform(0.3F, 2), uniform(-2, -0.3F), uniform(0.3F, 2)));
        const osg::NodePtr node = makeNode(makeGeometry(GL_TRIANGLES, corners, {}, osg::NullFC));
        add(makeTransform(matrix, {node}));
        for (std::size_t i = 0; i < corners.size(); i += 3) {
            m_triangles.push_back({node,
                                   {Matrix4(matrix).transform(corners[i]), Matrix4(matrix).transform(corners[i + 1]),
                                    Matrix4(matrix).transform(corners[i + 2])}});
        }
    }

    std::vector<Hit> intersectAll(const osg::Pnt2f& pointer) const
    {
        const Matrix4 clipToWorld = Matrix4(m_picker.getCamera()).inverted();
        const double x = (static_cast<double>(pointer[0]) + 0.5) / Size * 2 - 1;
        const double y = 1 - (static_cast<double>(pointer[1]) + 0.5) / Size * 2;
        viewer::Vector4 from = clipToWorld * viewer::Vector4{x, y, -1, 1};
        viewer::Vector4 to = clipToWorld * viewer::Vector4{x, y, 1, 1};
        double origin[3];
        double direction[3];
        double length = 0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            origin[axis] = from[axis] / from[3];
            direction[axis] = to[axis] / to[3] - origin[axis];
            length += direction[axis] * direction[axis];
        }
        length = std::sqrt(length);

        std::vector<Hit> hits;
        for (const Triangle& triangle : m_triangles) {
            double edge1[3];
            double edge2[3];
            double offset[3];
            for (std::size_t axis = 0; axis < 3; ++axis) {
                edge1[axis] = triangle.corners[1][axis] - triangle.corners[0][axis];
                edge2[axis] = triangle.corners[2][axis] - triangle.corners[0][axis];
                offset[axis] = origin[axis] - triangle.corners[0][axis];
            }
            double p[3];
            double q[3];
            cross(direction, edge2, p);
            cross(offset, edge1, q);
            const double determinant = dot(edge1, p);
            const double u = dot(offset, p) / determinant;
            const double v = dot(direction, q) / determinant;
            const double t = dot(edge2, q) / determinant;
            const double inside = std::min({u, v, 1 - u - v});
            if (inside > -1e-3 && t > 0 && t < 1) {
                hits.push_back({triangle.node, t * length, inside < 1e-3});
            }
        }
        std::sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.distance < b.distance; });
        return hits;
    }

    static void cross(const double a[3], const double b[3], double result[3])
    {
        result[0] = a[1] * b[2] - a[2] * b[1];
        result[1] = a[2] * b[0] - a[0] * b[2];
        result[2] = a[0] * b[1] - a[1] * b[0];
    }

    static double dot(const double a[3], const double b[3]) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

    std::mt19937 m_random{20240517};
    std::vector<Triangle> m_triangles;
};

TEST_F(EmbreePickerRandomTest, EveryRayHitsWhatATestOfAllTrianglesHits)
{
    for (int i = 0; i < 30; ++i) {
        addRandomNode();
    }
    viewer::CameraController camera;
    camera.setViewportSize(Size, Size);
    camera.setSceneBounds(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1));
    camera.setStandardView("iso");
    m_picker.setCamera(camera.getWorldToClip());
    report();

    int compared = 0;
    int hitRays = 0;
    for (int y = 1; y < Size; y += 3) {
        for (int x = 1; x < Size; x += 3) {
            const osg::Pnt2f pointer(static_cast<float>(x), static_cast<float>(y));
            const std::vector<Hit> expected = intersectAll(pointer);
            if (std::any_of(expected.begin(), expected.end(), [](const Hit& hit) { return hit.doubtful; })) {
                continue;
            }
            m_picker.setPointer(pointer);
            std::vector<osg::NodePtr> nodes;
            m_picker.getMultiPicked(EmbreePicker::AllHits, &nodes, nullptr, nullptr, nullptr);

            std::vector<osg::NodePtr> expectedNodes;
            for (const Hit& hit : expected) {
                expectedNodes.push_back(hit.node);
            }
            ASSERT_EQ(nodes, expectedNodes) << "at " << x << ", " << y;
            ASSERT_EQ(m_picker.getPickedNode(nullptr),
                      expected.empty() ? osg::NodePtr(osg::NullFC) : expected.front().node);
            ++compared;
            hitRays += expected.empty() ? 0 : 1;
        }
    }

    EXPECT_GT(compared, 900);
    EXPECT_GT(hitRays, 300);
}

TEST_F(EmbreePickerRandomTest, ARegionHoldsWhatTheRaysThroughItsPixelsHit)
{
    for (int i = 0; i < 12; ++i) {
        addRandomNode();
    }
    viewer::CameraController camera;
    camera.setViewportSize(Size, Size);
    camera.setSceneBounds(osg::Pnt3f(-3, -3, -3), osg::Pnt3f(3, 3, 3));
    camera.setStandardView("front");
    m_picker.setCamera(camera.getWorldToClip());
    m_picker.setSelectionRegion(2);
    report();

    for (int step = 10; step < Size - 10; step += 7) {
        std::set<osg::NodePtr> hit;
        for (int y = -2; y <= 2; ++y) {
            for (int x = -2; x <= 2; ++x) {
                for (const Hit& entry :
                     intersectAll(osg::Pnt2f(static_cast<float>(step + x), static_cast<float>(step + y)))) {
                    if (!entry.doubtful) {
                        hit.insert(entry.node);
                    }
                }
            }
        }
        m_picker.setPointer(osg::Pnt2f(static_cast<float>(step), static_cast<float>(step)));
        const std::vector<osg::NodePtr> nodes = m_picker.getPickedNodes(nullptr);

        // A region may hold more than its pixels' middles hit, each node once.
        const std::set<osg::NodePtr> found(nodes.begin(), nodes.end());
        EXPECT_EQ(found.size(), nodes.size());
        EXPECT_TRUE(std::includes(found.begin(), found.end(), hit.begin(), hit.end())) << "at " << step;
    }
}

} // namespace

} // namespace quon::testing
