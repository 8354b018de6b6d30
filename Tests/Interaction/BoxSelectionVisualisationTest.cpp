// SPDX-License-Identifier: MIT
#include <Interaction/BoxSelectionVisualisation.h>

#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include "Support/StandardError.h"

#include <Extensions/SceneExtensions.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace quon::interaction {

namespace {

using quon::testing::addChild;
using quon::testing::exists;
using quon::testing::makeExtent;
using quon::testing::makeNode;
using quon::testing::makeTranslation;
using quon::testing::NodeRef;
using quon::testing::SceneFixture;
using quon::testing::setTranslation;
using quon::testing::StandardError;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr osg::BitVector allFields = osg::FieldBits::AllFields;

using Corner = std::array<float, 3>;

Corner cornerOf(const osg::GeoPositionsPtr& positions, osg::UInt32 index)
{
    const osg::Pnt3f point = positions->getValue(index);
    return {point[0], point[1], point[2]};
}

osg::GeometryPtr geometryOf(const osg::NodePtr& box)
{
    return osg::GeometryPtr::dcast(box->getCore());
}

std::vector<Corner> cornersOf(const osg::NodePtr& box)
{
    const osg::GeoPositionsPtr positions = geometryOf(box)->getPositions();
    std::vector<Corner> corners;
    for (osg::UInt32 i = 0; i < positions->getSize(); ++i) {
        corners.push_back(cornerOf(positions, i));
    }
    return corners;
}

// Written out: x changes fastest, z slowest.
std::vector<Corner> cornersBetween(const Corner& min, const Corner& max)
{
    return {{min[0], min[1], min[2]}, {max[0], min[1], min[2]}, {min[0], max[1], min[2]}, {max[0], max[1], min[2]},
            {min[0], min[1], max[2]}, {max[0], min[1], max[2]}, {min[0], max[1], max[2]}, {max[0], max[1], max[2]}};
}

class BoxSelectionVisualisationTest : public SceneFixture {
protected:
    BoxSelectionVisualisationTest()
        : m_scene(makeNode(osg::Group::create()))
    {
        createInstance();
    }

    // The boxes still in use go back to the stack first: an instance does not release those.
    ~BoxSelectionVisualisationTest() override
    {
        if (m_boxes != nullptr) {
            m_boxes->removeAllNodes();
            destroyInstance();
        }
    }

    void createInstance()
    {
        const osg::UInt32 first = nextId();
        takeChanges();
        m_boxes = std::make_unique<BoxSelectionVisualisation>();
        m_constructorChanges = takeChanges();
        const osg::UInt32 last = nextId();
        takeChanges();
        for (osg::UInt32 id = first; id < last; ++id) {
            const osg::FieldContainerPtr container = osg::FieldContainerFactory::the()->getContainer(id);
            const osg::SimpleMaterialPtr material =
                container == osg::NullFC ? osg::SimpleMaterialPtr() : osg::SimpleMaterialPtr::dcast(container);
            if (material != osg::NullFC && koMaterials::getName(material) == "koScenegraph::m_highlightMaterial") {
                m_highlightMaterial = material;
            }
            if (material != osg::NullFC && koMaterials::getName(material) == "koScenegraph::m_lockedNodeMaterial") {
                m_lockedNodeMaterial = material;
            }
        }
    }

    // Releases in place of the instance what it keeps on purpose beyond its end: one reference to each material.
    void destroyInstance()
    {
        m_boxes.reset();
        osg::subRefCP(m_highlightMaterial);
        osg::subRefCP(m_lockedNodeMaterial);
    }

    static osg::UInt32 nextId()
    {
        osg::NodePtr probe = osg::Node::create();
        const osg::UInt32 id = osg::getContainerId(probe);
        osg::addRefCP(probe);
        osg::subRefCP(probe);
        return id + 1;
    }

    // A node with a box of its own, (1, 2, 3) to (4, 6, 8) unless stated.
    osg::NodePtr addExtent(const osg::Pnt3f& min = osg::Pnt3f(1.0F, 2.0F, 3.0F),
                           const osg::Pnt3f& max = osg::Pnt3f(4.0F, 6.0F, 8.0F))
    {
        return addChild(m_scene, makeExtent(min, max));
    }

    osg::NodePtr root() { return m_boxes->getVisualisation(); }

    osg::NodePtr boxOf(const osg::NodePtr& node)
    {
        m_boxes->addNode(node);
        return root()->getChild(root()->getNChildren() - 1);
    }

    static std::vector<Change> of(const std::vector<Change>& changes, const std::vector<osg::UInt32>& ids)
    {
        std::vector<Change> some;
        for (const Change& change : changes) {
            if (std::find(ids.begin(), ids.end(), change.first) != ids.end()) {
                some.push_back(change);
            }
        }
        return some;
    }

    osg::StateChunkPtr chunk(osg::UInt32 index) { return (*m_highlightMaterial->getMFChunks())[index]; }

    NodeRef m_scene;
    std::unique_ptr<BoxSelectionVisualisation> m_boxes;
    osg::SimpleMaterialPtr m_highlightMaterial;
    osg::SimpleMaterialPtr m_lockedNodeMaterial;
    std::vector<Change> m_constructorChanges;
};

// Render state

TEST_F(BoxSelectionVisualisationTest, TheHighlightMaterialHasItsRenderState)
{
    ASSERT_NE(m_highlightMaterial, osg::NullFC);

    EXPECT_EQ(koMaterials::getName(m_highlightMaterial), "koScenegraph::m_highlightMaterial");
    EXPECT_TRUE(koMaterials::isNameGivenByProgram(m_highlightMaterial));
    EXPECT_EQ(m_highlightMaterial->getDiffuse()[0], 0.956F);
    EXPECT_EQ(m_highlightMaterial->getDiffuse()[1], 0.521F);
    EXPECT_EQ(m_highlightMaterial->getDiffuse()[2], 0.086F);
    EXPECT_FALSE(m_highlightMaterial->getLit());
    EXPECT_FALSE(extensions::getHostOption(m_highlightMaterial));
    EXPECT_EQ(m_highlightMaterial->getSortKey(), 60000);
    EXPECT_EQ(m_highlightMaterial->getTransparency(), 0.001F);
    EXPECT_EQ(m_highlightMaterial->getTransparencyMode(), osg::Int32(osg::Material::TransparencyForceTransparent));
}

TEST_F(BoxSelectionVisualisationTest, TheLockedNodeMaterialDiffersInNameAndColourOnly)
{
    ASSERT_NE(m_lockedNodeMaterial, osg::NullFC);

    EXPECT_EQ(koMaterials::getName(m_lockedNodeMaterial), "koScenegraph::m_lockedNodeMaterial");
    EXPECT_TRUE(koMaterials::isNameGivenByProgram(m_lockedNodeMaterial));
    EXPECT_EQ(m_lockedNodeMaterial->getDiffuse()[0], 0.046F);
    EXPECT_EQ(m_lockedNodeMaterial->getDiffuse()[1], 0.046F);
    EXPECT_EQ(m_lockedNodeMaterial->getDiffuse()[2], 0.046F);
    EXPECT_FALSE(m_lockedNodeMaterial->getLit());
    EXPECT_FALSE(extensions::getHostOption(m_lockedNodeMaterial));
    EXPECT_EQ(m_lockedNodeMaterial->getSortKey(), 60000);
    EXPECT_EQ(m_lockedNodeMaterial->getTransparency(), 0.001F);
    EXPECT_EQ(m_lockedNodeMaterial->getTransparencyMode(), osg::Int32(osg::Material::TransparencyForceTransparent));
}

TEST_F(BoxSelectionVisualisationTest, TheChunksAreDepthTestLineAndBlendInThisOrder)
{
    ASSERT_EQ(m_highlightMaterial->getMFChunks()->size(), 3U);

    const osg::DepthTestChunkPtr depthTest = osg::DepthTestChunkPtr::dcast(chunk(0));
    ASSERT_NE(depthTest, osg::NullFC);
    EXPECT_EQ(depthTest->getFunc(), GLenum(GL_ALWAYS));
    const osg::LineChunkPtr line = osg::LineChunkPtr::dcast(chunk(1));
    ASSERT_NE(line, osg::NullFC);
    EXPECT_EQ(line->getWidth(), 1.0F);
    EXPECT_TRUE(line->getSmooth());
    const osg::BlendChunkPtr blend = osg::BlendChunkPtr::dcast(chunk(2));
    ASSERT_NE(blend, osg::NullFC);
    EXPECT_EQ(blend->getSrcFactor(), 770U);
    EXPECT_EQ(blend->getDestFactor(), 771U);
}

TEST_F(BoxSelectionVisualisationTest, BothMaterialsShareTheChunks)
{
    ASSERT_EQ(m_lockedNodeMaterial->getMFChunks()->size(), 3U);

    for (osg::UInt32 i = 0; i < 3; ++i) {
        EXPECT_EQ((*m_lockedNodeMaterial->getMFChunks())[i], chunk(i)) << i;
    }
    // Automatic slots leave no trace.
    EXPECT_EQ(m_highlightMaterial->getMFSlots()->size(), 0U);
    EXPECT_EQ(m_lockedNodeMaterial->getMFSlots()->size(), 0U);
}

TEST_F(BoxSelectionVisualisationTest, TheRootIsANamedMaterialGroupWithTheHighlightMaterial)
{
    const osg::MaterialGroupPtr group = osg::MaterialGroupPtr::dcast(root()->getCore());

    ASSERT_NE(group, osg::NullFC);
    EXPECT_EQ(group->getMaterial(), m_highlightMaterial);
    EXPECT_EQ(NodeUtils::getName(root()), "VisualisationRootMaterialGroup");
    EXPECT_TRUE(NodeUtils::isNameGivenByProgram(root()));
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_TRUE(m_boxes->isVisible());
    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(root()));
}

TEST_F(BoxSelectionVisualisationTest, TheConstructorBuildsAndClosesInOrder)
{
    const osg::UInt32 rootId = osg::getContainerId(root());
    const std::vector<osg::UInt32> ids = {
        osg::getContainerId(chunk(0)),          osg::getContainerId(chunk(1)),
        osg::getContainerId(chunk(2)),          osg::getContainerId(m_highlightMaterial),
        osg::getContainerId(root()->getCore()), osg::getContainerId(m_lockedNodeMaterial)};

    std::vector<Change> closed;
    for (const Change& change : m_constructorChanges) {
        const bool isOurs = std::find(ids.begin(), ids.end(), change.first) != ids.end();
        if ((isOurs && change.second == allFields) ||
            (change.first == rootId && change.second == osg::Node::CoreFieldMask)) {
            closed.push_back(change);
        }
    }
    EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end())) << "created in this order";
    EXPECT_THAT(closed,
                ElementsAre(
                    // The group core that the base built.
                    Change(rootId, osg::Node::CoreFieldMask), Change(ids[0], allFields), Change(ids[1], allFields),
                    Change(ids[2], allFields), Change(ids[3], allFields), Change(ids[4], allFields),
                    Change(ids[5], allFields), Change(rootId, osg::Node::CoreFieldMask)));
}

TEST_F(BoxSelectionVisualisationTest, TheRootIsNamedAfterItHasItsMaterialGroup)
{
    std::vector<osg::BitVector> edits;
    for (const Change& change : of(m_constructorChanges, {osg::getContainerId(root())})) {
        if (change.second != osg::Node::VolumeFieldMask) {
            edits.push_back(change.second);
        }
    }

    ASSERT_GE(edits.size(), 3U);
    EXPECT_EQ(edits[0], osg::Node::CoreFieldMask) << "the group core that the base built";
    EXPECT_EQ(edits[1], osg::Node::CoreFieldMask);
    EXPECT_THAT(std::vector<osg::BitVector>(edits.begin() + 2, edits.end()),
                ::testing::Each(osg::AttachmentContainer::AttachmentsFieldMask));
}

TEST_F(BoxSelectionVisualisationTest, TheRootAloneHoldsTheGroupAndTheMaterialsAloneTheChunks)
{
    EXPECT_EQ(root()->getCore().getRefCount(), 1);
    EXPECT_EQ(chunk(0).getRefCount(), chunk(1).getRefCount()) << "the instance holds none, also not the switch";
    EXPECT_EQ(chunk(1).getRefCount(), chunk(2).getRefCount());
}

TEST_F(BoxSelectionVisualisationTest, DefaultsAreReadBack)
{
    EXPECT_EQ(m_boxes->getMarkerSize(), 1.0F);
    EXPECT_EQ(m_boxes->getColor().red(), 0.956F);
    EXPECT_EQ(m_boxes->getColor().green(), 0.521F);
    EXPECT_EQ(m_boxes->getColor().blue(), 0.086F);
    EXPECT_TRUE(m_boxes->getOverlay());
}

// Settings

TEST_F(BoxSelectionVisualisationTest, SettingTheColourEditsTheHighlightMaterialAlone)
{
    m_boxes->setColor(osg::Color3f(0.25F, 0.5F, 0.75F));

    EXPECT_EQ(m_boxes->getColor(), osg::Color3f(0.25F, 0.5F, 0.75F));
    EXPECT_EQ(m_highlightMaterial->getDiffuse(), osg::Color3f(0.25F, 0.5F, 0.75F));
    EXPECT_EQ(m_lockedNodeMaterial->getDiffuse(), osg::Color3f(0.046F, 0.046F, 0.046F));
    const osg::UInt32 id = osg::getContainerId(m_highlightMaterial);
    EXPECT_THAT(of(takeChanges(), {id, osg::getContainerId(m_lockedNodeMaterial)}), ElementsAre(Change(id, allFields)));
}

TEST_F(BoxSelectionVisualisationTest, SettingTheLockedColourEditsTheLockedNodeMaterialAlone)
{
    m_boxes->setLockedColor(osg::Color3f(0.25F, 0.5F, 0.75F));

    EXPECT_EQ(m_lockedNodeMaterial->getDiffuse(), osg::Color3f(0.25F, 0.5F, 0.75F));
    EXPECT_EQ(m_boxes->getColor(), osg::Color3f(0.956F, 0.521F, 0.086F));
    const osg::UInt32 id = osg::getContainerId(m_lockedNodeMaterial);
    EXPECT_THAT(of(takeChanges(), {id, osg::getContainerId(m_highlightMaterial)}), ElementsAre(Change(id, allFields)));
}

TEST_F(BoxSelectionVisualisationTest, TheSortKeyOffsetAccumulates)
{
    const osg::UInt32 highlightId = osg::getContainerId(m_highlightMaterial);
    const osg::UInt32 lockedId = osg::getContainerId(m_lockedNodeMaterial);

    m_boxes->setTransparency(0.5F, 5);

    EXPECT_EQ(m_highlightMaterial->getTransparency(), 0.5F);
    EXPECT_EQ(m_lockedNodeMaterial->getTransparency(), 0.5F);
    EXPECT_EQ(m_highlightMaterial->getSortKey(), 60005);
    EXPECT_EQ(m_lockedNodeMaterial->getSortKey(), 60005);
    EXPECT_THAT(of(takeChanges(), {highlightId, lockedId}),
                ElementsAre(Change(highlightId, allFields), Change(lockedId, allFields)));

    m_boxes->setTransparency(0.25F, 5);

    EXPECT_EQ(m_lockedNodeMaterial->getTransparency(), 0.25F);
    EXPECT_EQ(m_highlightMaterial->getSortKey(), 60010);
    EXPECT_EQ(m_lockedNodeMaterial->getSortKey(), 60010);

    m_boxes->setTransparency(0.25F, -60010);

    EXPECT_EQ(m_highlightMaterial->getSortKey(), 0);
    EXPECT_EQ(m_lockedNodeMaterial->getSortKey(), 0);
}

TEST_F(BoxSelectionVisualisationTest, TheSortKeyWrapsAround)
{
    m_boxes->setTransparency(0.5F, std::numeric_limits<int>::max());
    EXPECT_EQ(m_highlightMaterial->getSortKey(), std::numeric_limits<int>::min() + 59999);
    EXPECT_EQ(m_lockedNodeMaterial->getSortKey(), std::numeric_limits<int>::min() + 59999);

    m_boxes->setTransparency(0.5F, std::numeric_limits<int>::min());
    EXPECT_EQ(m_highlightMaterial->getSortKey(), 59999);
}

TEST_F(BoxSelectionVisualisationTest, TheLockedNodeMaterialTakesOverTheHighlightSortKey)
{
    m_lockedNodeMaterial->setSortKey(7);

    m_boxes->setTransparency(0.5F, 1);

    EXPECT_EQ(m_lockedNodeMaterial->getSortKey(), 60001) << "its own key does not count";
}

TEST_F(BoxSelectionVisualisationTest, TheOverlayIsTheDepthFunctionOfTheSharedChunk)
{
    const osg::DepthTestChunkPtr depthTest = osg::DepthTestChunkPtr::dcast(chunk(0));
    const osg::UInt32 id = osg::getContainerId(depthTest);

    m_boxes->setOverlay(false);

    EXPECT_EQ(depthTest->getFunc(), 515U);
    EXPECT_FALSE(m_boxes->getOverlay());
    EXPECT_THAT(of(takeChanges(), {id}), ElementsAre(Change(id, allFields)));

    m_boxes->setOverlay(true);

    EXPECT_EQ(depthTest->getFunc(), 519U);
    EXPECT_TRUE(m_boxes->getOverlay());

    depthTest->setFunc(GL_LESS);
    EXPECT_FALSE(m_boxes->getOverlay()) << "true for GL_ALWAYS only";
}

// The shape of a box

TEST_F(BoxSelectionVisualisationTest, ABoxIsANamedAuxiliaryNodeWithTwelveEdges)
{
    const osg::NodePtr box = boxOf(addExtent());

    EXPECT_EQ(NodeUtils::getName(box), "VisualizationHighlightNode");
    EXPECT_TRUE(NodeUtils::isNameGivenByProgram(box));
    EXPECT_TRUE(koNodeUtils::isAuxiliaryNode(box));
    EXPECT_EQ(extensions::getHostFlags(box), 8U);
    EXPECT_EQ(box->getNChildren(), 0U);
    EXPECT_EQ(box->getTravMask(), 0xFFFFFFFFU);
    const osg::GeometryPtr geometry = geometryOf(box);
    ASSERT_NE(geometry, osg::NullFC);
    EXPECT_EQ(geometry->getMaterial(), m_highlightMaterial);
    EXPECT_FALSE(extensions::getOverwriteMaterial(geometry));

    const osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8Ptr::dcast(geometry->getTypes());
    ASSERT_NE(types, osg::NullFC);
    ASSERT_EQ(types->getSize(), 2U);
    EXPECT_EQ(types->getValue(0), 3U) << "GL_LINE_STRIP";
    EXPECT_EQ(types->getValue(1), 1U) << "GL_LINES";
    const osg::GeoPLengthsUI32Ptr lengths = osg::GeoPLengthsUI32Ptr::dcast(geometry->getLengths());
    ASSERT_NE(lengths, osg::NullFC);
    ASSERT_EQ(lengths->getSize(), 2U);
    EXPECT_EQ(lengths->getValue(0), 10U);
    EXPECT_EQ(lengths->getValue(1), 6U);
    const osg::GeoIndicesUI32Ptr indices = osg::GeoIndicesUI32Ptr::dcast(geometry->getIndices());
    ASSERT_NE(indices, osg::NullFC);
    std::vector<osg::UInt32> values;
    for (osg::UInt32 i = 0; i < indices->getSize(); ++i) {
        values.push_back(indices->getValue(i));
    }
    EXPECT_THAT(values, ElementsAre(0, 1, 3, 2, 0, 4, 5, 7, 6, 4, 1, 5, 2, 6, 3, 7));
    ASSERT_NE(osg::GeoPositions3fPtr::dcast(geometry->getPositions()), osg::NullFC);
}

// Lets the boxes keep the corners they are built with.
class TemplateBoxes : public BoxSelectionVisualisation {
public:
    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        m_updates.emplace_back(node, visualisation);
    }

    std::vector<std::pair<osg::NodePtr, osg::NodePtr>> m_updates;
};

// Empties the stack of spare boxes from inside each update.
class ClearingBoxes : public BoxSelectionVisualisation {
public:
    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        clear();
        BoxSelectionVisualisation::updateVisualisation(node, visualisation);
    }
};

TEST_F(BoxSelectionVisualisationTest, ASpareBoxIsOffTheStackBeforeItIsRefitted)
{
    const osg::NodePtr node = addExtent();
    koNodeUtils::setIsEditable(node, false);
    auto boxes = std::make_unique<ClearingBoxes>();
    osg::MaterialPtr highlightMaterial =
        osg::MaterialGroupPtr::dcast(boxes->getVisualisation()->getCore())->getMaterial();
    boxes->addNode(node);
    boxes->removeNode(node);

    boxes->addNode(node);

    ASSERT_EQ(boxes->getVisualisation()->getNChildren(), 1U);
    const osg::NodePtr box = boxes->getVisualisation()->getChild(0);
    EXPECT_EQ(box.getRefCount(), 3);

    // This second instance keeps its materials.
    osg::MaterialPtr lockedNodeMaterial = geometryOf(box)->getMaterial();
    boxes->removeNode(node);
    boxes.reset();
    osg::subRefCP(highlightMaterial);
    osg::subRefCP(lockedNodeMaterial);
}

TEST_F(BoxSelectionVisualisationTest, ANewBoxIsRefittedThroughTheVirtualTableFromATemplateOfOnes)
{
    const osg::NodePtr node = addExtent();
    auto boxes = std::make_unique<TemplateBoxes>();
    const osg::MaterialPtr highlightMaterial =
        osg::MaterialGroupPtr::dcast(boxes->getVisualisation()->getCore())->getMaterial();

    osg::NodePtr box = boxes->createVisualisation(node);

    EXPECT_EQ(cornersOf(box), cornersBetween({-1.0F, -1.0F, -1.0F}, {1.0F, 1.0F, 1.0F}));
    EXPECT_THAT(boxes->m_updates, ElementsAre(std::make_pair(node, box)));
    boxes->removeVisualisation(node, box);
    EXPECT_EQ(boxes->createVisualisation(node), box);
    EXPECT_THAT(boxes->m_updates, ElementsAre(std::make_pair(node, box), std::make_pair(node, box)));

    // This second instance keeps its materials too; the locked one is found on a locked box of the real update.
    koNodeUtils::setIsEditable(node, false);
    boxes->BoxSelectionVisualisation::updateVisualisation(node, box);
    osg::MaterialPtr lockedNodeMaterial = geometryOf(box)->getMaterial();
    boxes.reset();
    osg::subRefCP(box);
    osg::MaterialPtr kept = highlightMaterial;
    osg::subRefCP(kept);
    osg::subRefCP(lockedNodeMaterial);
}

TEST_F(BoxSelectionVisualisationTest, ANewBoxIsBuiltAndClosedInOrder)
{
    const osg::NodePtr node = addExtent();
    takeChanges();

    osg::NodePtr box = m_boxes->createVisualisation(node);

    const std::vector<Change> changes = takeChanges();
    const osg::GeometryPtr geometry = geometryOf(box);
    const std::vector<osg::UInt32> ids = {osg::getContainerId(geometry->getTypes()),
                                          osg::getContainerId(geometry->getLengths()),
                                          osg::getContainerId(geometry->getIndices()),
                                          osg::getContainerId(geometry->getPositions()),
                                          osg::getContainerId(geometry),
                                          osg::getContainerId(box)};
    std::vector<Change> closed;
    for (const Change& change : of(changes, ids)) {
        if (change.second == allFields) {
            closed.push_back(change);
        }
    }
    EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end())) << "created in this order";
    EXPECT_THAT(closed, ElementsAre(Change(ids[0], allFields), Change(ids[1], allFields), Change(ids[2], allFields),
                                    Change(ids[3], allFields), Change(ids[4], allFields), Change(ids[5], allFields),
                                    // The refit of the template corners.
                                    Change(ids[3], allFields)));
    osg::subRefCP(box);
}

TEST_F(BoxSelectionVisualisationTest, ANewBoxIsClosedThenNamedAndMarkedThenFitted)
{
    const osg::NodePtr node = addExtent();
    takeChanges();

    osg::NodePtr box = m_boxes->createVisualisation(node);

    const osg::UInt32 id = osg::getContainerId(box);
    const osg::UInt32 geometry = osg::getContainerId(geometryOf(box));
    std::vector<Change> changes;
    for (const Change& change : of(takeChanges(), {id, geometry})) {
        if (change == Change(id, allFields) || change == Change(geometry, osg::Geometry::PositionsFieldMask) ||
            change == Change(id, osg::AttachmentContainer::AttachmentsFieldMask)) {
            changes.push_back(change);
        }
    }
    ASSERT_GE(changes.size(), 3U);
    EXPECT_EQ(changes.front(), Change(id, allFields));
    EXPECT_THAT(std::vector<Change>(changes.begin() + 1, changes.begin() + 3),
                ::testing::Each(Change(id, osg::AttachmentContainer::AttachmentsFieldMask)));
    EXPECT_EQ(changes.back(), Change(geometry, osg::Geometry::PositionsFieldMask));
    osg::subRefCP(box);
}

TEST_F(BoxSelectionVisualisationTest, ANewBoxIsNamedBeforeItIsMarked)
{
    const osg::NodePtr node = addExtent();
    takeChanges();

    osg::NodePtr box = m_boxes->createVisualisation(node);

    const osg::UInt32 id = osg::getContainerId(box);
    const osg::UInt32 name = osg::getContainerId(box->findAttachment(osg::Name::getClassType()));
    const std::vector<Change> changes = of(takeChanges(), {id, name});
    const auto closed = std::find(changes.begin(), changes.end(), Change(id, allFields));
    ASSERT_GE(changes.end() - closed, 2);
    EXPECT_EQ((closed + 1)->first, name) << "the first attachment after the node is closed";
    osg::subRefCP(box);
}

TEST_F(BoxSelectionVisualisationTest, ANewBoxIsReferredToBeforeAnythingIsPutIntoIt)
{
    const osg::NodePtr node = addExtent();
    takeChanges();

    osg::NodePtr box = m_boxes->createVisualisation(node);

    const osg::ChangeList* list = osg::Thread::getCurrentChangeList();
    const std::vector<osg::UInt32> referredTo(list->beginAddRefd(), list->endAddRefd());
    const auto boxPlace = std::find(referredTo.begin(), referredTo.end(), osg::getContainerId(box));
    const auto corePlace = std::find(referredTo.begin(), referredTo.end(), osg::getContainerId(box->getCore()));
    ASSERT_NE(corePlace, referredTo.end());
    EXPECT_LT(boxPlace, corePlace);
    EXPECT_EQ(box.getRefCount(), 1);
    osg::subRefCP(box);
}

TEST_F(BoxSelectionVisualisationTest, ANullNodeHasNoBox)
{
    osg::NodePtr box = boxOf(addExtent());
    const std::vector<Corner> corners = cornersOf(box);
    m_boxes->removeAllNodes();
    takeChanges();

    EXPECT_EQ(m_boxes->createVisualisation(osg::NodePtr()), osg::NullFC);
    m_boxes->updateVisualisation(osg::NodePtr(), box);

    EXPECT_EQ(cornersOf(box), corners);
    EXPECT_THAT(takeChanges(), IsEmpty());
    EXPECT_EQ(box.getRefCount(), 1) << "still on the stack";
}

// References

TEST_F(BoxSelectionVisualisationTest, TheInstanceHoldsEachMaterialOnce)
{
    EXPECT_EQ(m_highlightMaterial.getRefCount(), 2) << "instance, material group";
    EXPECT_EQ(m_lockedNodeMaterial.getRefCount(), 1) << "instance";
}

TEST_F(BoxSelectionVisualisationTest, ABoxCarriesAReferenceOfItsOwnThroughItsWholeCycle)
{
    const osg::NodePtr node = addExtent();

    osg::NodePtr box = m_boxes->createVisualisation(node);
    EXPECT_EQ(box.getRefCount(), 1) << "its own";
    m_boxes->removeVisualisation(node, box);
    EXPECT_EQ(box.getRefCount(), 1) << "handed to the stack";

    m_boxes->addNode(node);
    ASSERT_EQ(root()->getChild(0), box);
    EXPECT_EQ(box.getRefCount(), 3) << "its own, entry, root";
    m_boxes->addNode(node);
    m_boxes->updateNode(node);
    EXPECT_EQ(box.getRefCount(), 3);
    m_boxes->removeNode(node);
    EXPECT_EQ(box.getRefCount(), 1) << "handed to the stack";
    m_boxes->addNode(node);
    EXPECT_EQ(box.getRefCount(), 3);
    m_boxes->removeAllNodes();
    EXPECT_EQ(box.getRefCount(), 1) << "handed to the stack";

    const osg::UInt32 id = osg::getContainerId(box);
    m_boxes->clear();
    EXPECT_FALSE(exists(id));
}

TEST_F(BoxSelectionVisualisationTest, BoxesAndTheirMaterialsCountUpAndDown)
{
    const osg::NodePtr editable = addExtent();
    const osg::NodePtr locked = addExtent();
    koNodeUtils::setIsEditable(locked, false);

    m_boxes->addNode(editable);
    m_boxes->addNode(locked);
    EXPECT_EQ(m_highlightMaterial.getRefCount(), 3) << "instance, material group, one box";
    EXPECT_EQ(m_lockedNodeMaterial.getRefCount(), 2) << "instance, one box";

    m_boxes->removeAllNodes();
    EXPECT_EQ(m_highlightMaterial.getRefCount(), 3) << "spare boxes keep their material";
    m_boxes->clear();
    EXPECT_EQ(m_highlightMaterial.getRefCount(), 2);
    EXPECT_EQ(m_lockedNodeMaterial.getRefCount(), 1);
}

TEST_F(BoxSelectionVisualisationTest, TheBoxHandedBackLastIsReusedFirstAndRefitted)
{
    const osg::NodePtr first = addExtent();
    const osg::NodePtr second = addExtent();
    const osg::NodePtr third = addExtent(osg::Pnt3f(-3.0F, -2.0F, -1.0F), osg::Pnt3f(5.0F, 6.0F, 7.0F));
    const osg::NodePtr firstBox = boxOf(first);
    const osg::NodePtr secondBox = boxOf(second);
    m_boxes->removeNode(first);
    m_boxes->removeNode(second);
    const std::size_t live = quon::testing::countLiveContainers();

    m_boxes->addNode(third);
    m_boxes->addNode(first);

    EXPECT_EQ(root()->getChild(0), secondBox);
    EXPECT_EQ(root()->getChild(1), firstBox);
    EXPECT_EQ(quon::testing::countLiveContainers(), live) << "no new containers";
    EXPECT_EQ(cornersOf(secondBox), cornersBetween({-3.0F, -2.0F, -1.0F}, {5.0F, 6.0F, 7.0F}));
}

TEST_F(BoxSelectionVisualisationTest, ReusingABoxTakesItOffTheStack)
{
    const osg::NodePtr first = addExtent();
    const osg::NodePtr second = addExtent();
    m_boxes->addNode(first);
    m_boxes->removeNode(first);

    m_boxes->addNode(first);
    m_boxes->addNode(second);

    EXPECT_NE(root()->getChild(0), root()->getChild(1));
    m_boxes->clear();
    EXPECT_EQ(root()->getChild(0).getRefCount(), 3) << "clear() leaves boxes in use alone";
}

TEST_F(BoxSelectionVisualisationTest, ASpareBoxKeepsItsLastBoxAndColourUntilItIsReused)
{
    const osg::NodePtr locked = addExtent();
    koNodeUtils::setIsEditable(locked, false);
    const osg::NodePtr box = boxOf(locked);
    const std::vector<Corner> corners = cornersOf(box);
    m_boxes->removeNode(locked);

    EXPECT_EQ(cornersOf(box), corners);
    EXPECT_EQ(geometryOf(box)->getMaterial(), m_lockedNodeMaterial);
    EXPECT_TRUE(extensions::getOverwriteMaterial(geometryOf(box)));

    m_boxes->addNode(addExtent());

    ASSERT_EQ(root()->getChild(0), box);
    EXPECT_EQ(geometryOf(box)->getMaterial(), m_highlightMaterial);
    EXPECT_FALSE(extensions::getOverwriteMaterial(geometryOf(box)));
}

TEST_F(BoxSelectionVisualisationTest, RemovingAVisualisationDetachesAndEditsNothing)
{
    const osg::NodePtr node = addExtent();
    osg::NodePtr box = boxOf(node);
    takeChanges();

    m_boxes->removeVisualisation(node, box);

    EXPECT_EQ(box->getParent(), root());
    EXPECT_EQ(box.getRefCount(), 3);
    EXPECT_THAT(takeChanges(), IsEmpty());
    // Takes it off the stack again, for the same node.
    EXPECT_EQ(m_boxes->createVisualisation(node), box);
}

TEST_F(BoxSelectionVisualisationTest, RemovingANullVisualisationIsIgnored)
{
    const osg::NodePtr node = addExtent();

    m_boxes->removeVisualisation(node, osg::NodePtr());

    m_boxes->addNode(node);
    EXPECT_EQ(root()->getNChildren(), 1U);
    m_boxes->clear();
}

TEST_F(BoxSelectionVisualisationTest, ClearingSparesABoxThatSomebodyElseHolds)
{
    const osg::NodePtr node = addExtent();
    const NodeRef box(boxOf(node));
    m_boxes->removeNode(node);
    EXPECT_EQ(box.get().getRefCount(), 2);

    m_boxes->clear();
    m_boxes->clear();

    EXPECT_EQ(box.get().getRefCount(), 1);
}

TEST_F(BoxSelectionVisualisationTest, TheBoxOfADestroyedNodeIsNotRecycledAndKeepsItsOwnReference)
{
    const osg::NodePtr node = addExtent();
    const osg::NodePtr other = addExtent();
    osg::NodePtr box = boxOf(node);
    m_scene->subChild(node);

    m_boxes->removeAllNodes();

    // Nobody hands it back: the hook is left out for a node that does not exist any more.
    EXPECT_EQ(box.getRefCount(), 1) << "its own";
    EXPECT_NE(StandardError::take(), "");
    EXPECT_NE(boxOf(other), box);
    m_boxes->removeAllNodes();
    m_boxes->clear();
    EXPECT_EQ(box.getRefCount(), 1) << "its own";
    osg::subRefCP(box);
}

TEST_F(BoxSelectionVisualisationTest, ASpareBoxThatIsSelectedMayBecomeItsOwnBox)
{
    const osg::NodePtr node = addExtent();
    const NodeRef box(boxOf(node));
    m_boxes->removeNode(node);

    m_boxes->addNode(box);
    m_boxes->updateAllNodes();

    ASSERT_EQ(root()->getNChildren(), 1U);
    EXPECT_EQ(root()->getChild(0), box);
    EXPECT_EQ(box.get().getRefCount(), 4) << "test, its own, entry, root";
    EXPECT_EQ(cornersOf(box), cornersBetween({1.0F, 2.0F, 3.0F}, {4.0F, 6.0F, 8.0F}));
    m_boxes->removeNode(box);
    EXPECT_EQ(box.get().getRefCount(), 2) << "test, its own";
}

TEST_F(BoxSelectionVisualisationTest, TheDestructorReleasesSpareBoxes)
{
    const osg::NodePtr first = addExtent();
    const osg::NodePtr second = addExtent();
    const osg::UInt32 firstId = osg::getContainerId(boxOf(first));
    const osg::UInt32 secondId = osg::getContainerId(boxOf(second));
    m_boxes->removeAllNodes();

    destroyInstance();

    EXPECT_FALSE(exists(firstId));
    EXPECT_FALSE(exists(secondId));
}

TEST_F(BoxSelectionVisualisationTest, TheDestructorReleasesNeitherMaterialsNorChunksNorBoxesInUse)
{
    osg::NodePtr box = boxOf(addExtent());
    const osg::UInt32 rootId = osg::getContainerId(root());
    const osg::UInt32 chunkIds[] = {osg::getContainerId(chunk(0)), osg::getContainerId(chunk(1)),
                                    osg::getContainerId(chunk(2))};

    m_boxes.reset();

    EXPECT_FALSE(exists(rootId));
    EXPECT_EQ(box.getRefCount(), 1) << "its own";
    EXPECT_EQ(box->getParent(), osg::NullFC);
    EXPECT_EQ(m_highlightMaterial.getRefCount(), 2) << "taken in the constructor, the box";
    EXPECT_EQ(m_lockedNodeMaterial.getRefCount(), 1) << "taken in the constructor";

    // What is kept on purpose goes here; the chunks are held by the materials alone.
    osg::subRefCP(box);
    osg::subRefCP(m_highlightMaterial);
    for (const osg::UInt32 id : chunkIds) {
        EXPECT_TRUE(exists(id));
    }
    osg::subRefCP(m_lockedNodeMaterial);
    for (const osg::UInt32 id : chunkIds) {
        EXPECT_FALSE(exists(id));
    }
}

// Bounds

TEST_F(BoxSelectionVisualisationTest, TheBoxIsTheWorldBoundsOfTheNode)
{
    const osg::NodePtr place = addChild(m_scene, makeTranslation(10.0F, 20.0F, 30.0F));
    const osg::NodePtr node = addChild(place, makeExtent(osg::Pnt3f(1.0F, 2.0F, 3.0F), osg::Pnt3f(4.0F, 6.0F, 8.0F)));

    const osg::NodePtr box = boxOf(node);

    EXPECT_EQ(cornersOf(box), cornersBetween({11.0F, 22.0F, 33.0F}, {14.0F, 26.0F, 38.0F}));
}

TEST_F(BoxSelectionVisualisationTest, TheBoxFollowsAMovedNodeAtItsUpdate)
{
    const osg::TransformPtr transform = makeTranslation(0.0F, 0.0F, 0.0F);
    const osg::NodePtr place = addChild(m_scene, transform);
    addChild(place, makeExtent(osg::Pnt3f(1.0F, 2.0F, 3.0F), osg::Pnt3f(4.0F, 6.0F, 8.0F)));
    const osg::NodePtr box = boxOf(place);
    setTranslation(transform, 100.0F, 0.0F, 0.0F);
    EXPECT_EQ(cornersOf(box), cornersBetween({1.0F, 2.0F, 3.0F}, {4.0F, 6.0F, 8.0F}));
    const osg::UInt32 geometryId = osg::getContainerId(geometryOf(box));
    const osg::UInt32 positionsId = osg::getContainerId(geometryOf(box)->getPositions());
    takeChanges();

    m_boxes->updateNode(place);

    EXPECT_EQ(cornersOf(box), cornersBetween({101.0F, 2.0F, 3.0F}, {104.0F, 6.0F, 8.0F}));
    std::vector<Change> changes = of(takeChanges(), {geometryId, positionsId});
    ASSERT_FALSE(changes.empty());
    EXPECT_EQ(changes.front(), Change(positionsId, allFields));
    EXPECT_EQ(changes.back(), Change(geometryId, osg::Geometry::PositionsFieldMask));
}

TEST_F(BoxSelectionVisualisationTest, ANodeWithoutExtentGetsAMarkerCubeAroundItsPlace)
{
    const osg::NodePtr outer = addChild(m_scene, makeTranslation(10.0F, 20.0F, 30.0F));
    const osg::NodePtr node = addChild(outer, makeTranslation(1.0F, 2.0F, 3.0F));

    const osg::NodePtr box = boxOf(node);

    EXPECT_EQ(cornersOf(box), cornersBetween({10.0F, 21.0F, 32.0F}, {12.0F, 23.0F, 34.0F}));
}

TEST_F(BoxSelectionVisualisationTest, ANodeWithoutCoreGetsAMarkerCube)
{
    const NodeRef node(osg::Node::create());

    const osg::NodePtr box = boxOf(node);

    EXPECT_EQ(cornersOf(box), cornersBetween({-1.0F, -1.0F, -1.0F}, {1.0F, 1.0F, 1.0F}));
    m_boxes->removeAllNodes();
}

TEST_F(BoxSelectionVisualisationTest, ANodeThatLostItsExtentKeepsItsLastBounds)
{
    const osg::NodePtr node = addChild(m_scene, osg::Group::create());
    const osg::NodePtr part = addChild(node, makeExtent(osg::Pnt3f(1.0F, 2.0F, 3.0F), osg::Pnt3f(4.0F, 6.0F, 8.0F)));
    const osg::NodePtr box = boxOf(node);
    osg::beginEditCP(node, osg::Node::ChildrenFieldMask);
    node->subChild(part);
    osg::endEditCP(node, osg::Node::ChildrenFieldMask);

    m_boxes->updateNode(node);

    // The scene graph empties bounds without zeroing them, and zeros alone make a marker cube.
    EXPECT_EQ(cornersOf(box), cornersBetween({1.0F, 2.0F, 3.0F}, {4.0F, 6.0F, 8.0F}));
}

TEST_F(BoxSelectionVisualisationTest, TheBoxFollowsANodeToAnotherParent)
{
    const osg::NodePtr near = addChild(m_scene, makeTranslation(10.0F, 0.0F, 0.0F));
    const osg::NodePtr far = addChild(m_scene, makeTranslation(100.0F, 0.0F, 0.0F));
    const NodeRef node(addChild(near, makeExtent(osg::Pnt3f(1.0F, 2.0F, 3.0F), osg::Pnt3f(4.0F, 6.0F, 8.0F))));
    const osg::NodePtr box = boxOf(node);
    EXPECT_EQ(cornersOf(box), cornersBetween({11.0F, 2.0F, 3.0F}, {14.0F, 6.0F, 8.0F}));

    far->addChild(node);
    m_boxes->updateNode(node);
    EXPECT_EQ(cornersOf(box), cornersBetween({101.0F, 2.0F, 3.0F}, {104.0F, 6.0F, 8.0F}));

    far->subChild(node);
    m_boxes->updateNode(node);
    EXPECT_EQ(cornersOf(box), cornersBetween({1.0F, 2.0F, 3.0F}, {4.0F, 6.0F, 8.0F}));
    m_boxes->removeAllNodes();
}

TEST_F(BoxSelectionVisualisationTest, NodesThatShareACoreHaveABoxEach)
{
    const osg::GeometryPtr shared = makeExtent(osg::Pnt3f(0.0F, 0.0F, 0.0F), osg::Pnt3f(1.0F, 1.0F, 1.0F));
    const osg::NodePtr first = addChild(addChild(m_scene, makeTranslation(10.0F, 0.0F, 0.0F)), shared);
    const osg::NodePtr second = addChild(addChild(m_scene, makeTranslation(20.0F, 0.0F, 0.0F)), shared);

    EXPECT_EQ(cornersOf(boxOf(first)), cornersBetween({10.0F, 0.0F, 0.0F}, {11.0F, 1.0F, 1.0F}));
    EXPECT_EQ(cornersOf(boxOf(second)), cornersBetween({20.0F, 0.0F, 0.0F}, {21.0F, 1.0F, 1.0F}));
}

TEST_F(BoxSelectionVisualisationTest, APointAtTheOriginGetsAMarkerCubeWhereItsNodeStands)
{
    const osg::NodePtr node = addExtent(osg::Pnt3f(0.0F, 0.0F, 0.0F), osg::Pnt3f(-0.0F, 0.0F, -0.0F));

    EXPECT_EQ(cornersOf(boxOf(node)), cornersBetween({-1.0F, -1.0F, -1.0F}, {1.0F, 1.0F, 1.0F}));
}

TEST_F(BoxSelectionVisualisationTest, TheMarkerSizeIsHalfTheEdgeFromTheNextUpdateOn)
{
    const osg::NodePtr node = addChild(m_scene, makeTranslation(5.0F, 5.0F, 5.0F));
    const osg::NodePtr box = boxOf(node);
    takeChanges();

    m_boxes->setMarkerSize(2.5F);

    EXPECT_EQ(m_boxes->getMarkerSize(), 2.5F);
    EXPECT_THAT(takeChanges(), IsEmpty());
    EXPECT_EQ(cornersOf(box), cornersBetween({4.0F, 4.0F, 4.0F}, {6.0F, 6.0F, 6.0F}));
    m_boxes->updateNode(node);
    EXPECT_EQ(cornersOf(box), cornersBetween({2.5F, 2.5F, 2.5F}, {7.5F, 7.5F, 7.5F}));
}

TEST_F(BoxSelectionVisualisationTest, ABoxThatTouchesTheOriginIsDrawnAsItIs)
{
    const osg::NodePtr flat = addExtent(osg::Pnt3f(0.0F, 0.0F, 0.0F), osg::Pnt3f(0.0F, 0.0F, 2.0F));
    const osg::NodePtr tiny = addExtent(osg::Pnt3f(-1e-7F, 0.0F, 0.0F), osg::Pnt3f(0.0F, 0.0F, 0.0F));

    EXPECT_EQ(cornersOf(boxOf(flat)), cornersBetween({0.0F, 0.0F, 0.0F}, {0.0F, 0.0F, 2.0F}));
    EXPECT_EQ(cornersOf(boxOf(tiny)), cornersBetween({-1e-7F, 0.0F, 0.0F}, {0.0F, 0.0F, 0.0F}))
        << "zero means exactly zero";
}

// One of the six coordinates is not zero: corner and axis.
class NearlyNoExtentTest : public BoxSelectionVisualisationTest,
                           public ::testing::WithParamInterface<std::tuple<bool, osg::UInt32>> {};

TEST_P(NearlyNoExtentTest, OneCoordinateThatIsNotZeroMakesABoxOfItsOwn)
{
    const auto [isMax, axis] = GetParam();
    osg::Pnt3f min;
    osg::Pnt3f max;
    (isMax ? max : min)[axis] = isMax ? 2.0F : -2.0F;

    EXPECT_EQ(cornersOf(boxOf(addExtent(min, max))),
              cornersBetween({min[0], min[1], min[2]}, {max[0], max[1], max[2]}));
}

INSTANTIATE_TEST_SUITE_P(AllCoordinates, NearlyNoExtentTest,
                         ::testing::Combine(::testing::Bool(), ::testing::Values(0U, 1U, 2U)), [](const auto& row) {
                             return std::string(std::get<0>(row.param) ? "Max" : "Min") + "XYZ"[std::get<1>(row.param)];
                         });

// One coordinate of the stored corners lies off the wanted place: corner, axis, distance.
class ToleranceTest : public BoxSelectionVisualisationTest,
                      public ::testing::WithParamInterface<std::tuple<osg::UInt32, osg::UInt32, float>> {
protected:
    // Displaces the stored coordinate and returns the box.
    osg::NodePtr arrange(float distance)
    {
        const auto [corner, axis, direction] = GetParam();
        // The looked-at corner is at zero, where the distances are exact.
        m_node = corner == 0 ? addExtent(osg::Pnt3f(0.0F, 0.0F, 0.0F), osg::Pnt3f(1.0F, 1.0F, 1.0F))
                             : addExtent(osg::Pnt3f(-1.0F, -1.0F, -1.0F), osg::Pnt3f(0.0F, 0.0F, 0.0F));
        const osg::NodePtr box = boxOf(m_node);
        const osg::GeoPositionsPtr positions = geometryOf(box)->getPositions();
        osg::Pnt3f point = positions->getValue(corner);
        point[axis] = direction * distance;
        positions->setValue(point, corner);
        takeChanges();
        return box;
    }

    osg::NodePtr m_node;
};

TEST_P(ToleranceTest, ACornerWithinAMillionthIsNotWrittenAgain)
{
    const osg::NodePtr box = arrange(1e-6F);
    const std::vector<Corner> corners = cornersOf(box);

    m_boxes->updateNode(m_node);

    EXPECT_EQ(cornersOf(box), corners);
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_P(ToleranceTest, ACornerWithinAMillionthDoesNotKeepTheLockColourFromFollowing)
{
    const osg::NodePtr box = arrange(1e-6F);
    const std::vector<Corner> corners = cornersOf(box);
    koNodeUtils::setIsEditable(m_node, false);

    m_boxes->updateNode(m_node);

    EXPECT_EQ(cornersOf(box), corners);
    EXPECT_EQ(geometryOf(box)->getMaterial(), m_lockedNodeMaterial);
}

TEST_P(ToleranceTest, ACornerFartherThanAMillionthIsWrittenAgain)
{
    const osg::NodePtr box = arrange(1.1e-6F);

    m_boxes->updateNode(m_node);

    EXPECT_EQ(cornerOf(geometryOf(box)->getPositions(), std::get<0>(GetParam())), (Corner{0.0F, 0.0F, 0.0F}));
}

INSTANTIATE_TEST_SUITE_P(AllSides, ToleranceTest,
                         ::testing::Combine(::testing::Values(0U, 7U), ::testing::Values(0U, 1U, 2U),
                                            ::testing::Values(-1.0F, 1.0F)),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param) == 0 ? "Min" : "Max") +
                                    "XYZ"[std::get<1>(row.param)] + (std::get<2>(row.param) < 0.0F ? "Below" : "Above");
                         });

TEST_F(BoxSelectionVisualisationTest, OnlyTheFirstAndTheLastCornerAreCompared)
{
    const osg::NodePtr node = addExtent();
    const osg::NodePtr box = boxOf(node);
    geometryOf(box)->getPositions()->setValue(osg::Pnt3f(50.0F, 50.0F, 50.0F), 3);

    m_boxes->updateNode(node);

    EXPECT_EQ(cornerOf(geometryOf(box)->getPositions(), 3), (Corner{50.0F, 50.0F, 50.0F}));
}

TEST_F(BoxSelectionVisualisationTest, BoundsThatAreNoNumbersDoNoHarm)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    const osg::NodePtr unknown = addExtent(osg::Pnt3f(nan, nan, nan), osg::Pnt3f(nan, nan, nan));
    const osg::NodePtr endless =
        addExtent(osg::Pnt3f(-infinity, -infinity, -infinity), osg::Pnt3f(infinity, infinity, infinity));

    m_boxes->addNode(unknown);
    m_boxes->addNode(endless);
    m_boxes->updateAllNodes();
    m_boxes->updateAllNodes();

    EXPECT_EQ(root()->getNChildren(), 2U);
    // Infinity times the zeros of a matrix is no number either.
    for (const float coordinate : cornerOf(geometryOf(root()->getChild(1))->getPositions(), 7)) {
        EXPECT_TRUE(std::isnan(coordinate)) << coordinate;
    }
}

TEST_F(BoxSelectionVisualisationTest, BoxesAndTheirRootMayBeSelectedThemselves)
{
    const osg::NodePtr node = addExtent();
    const osg::NodePtr box = boxOf(node);
    m_scene->addChild(root());

    m_boxes->addNode(box);
    m_boxes->addNode(root());
    m_boxes->addNode(m_scene);
    m_boxes->updateAllNodes();
    m_boxes->updateAllNodes();

    EXPECT_EQ(root()->getNChildren(), 4U);
    EXPECT_EQ(cornersOf(root()->getChild(1)), cornersOf(box)) << "the box around a box";
    m_boxes->removeNode(box);
    m_boxes->removeAllNodes();
    EXPECT_EQ(root()->getNChildren(), 0U);
    m_scene->subChild(root());
}

// Lock colour

TEST_F(BoxSelectionVisualisationTest, TheColourFollowsTheLockAtEachUpdate)
{
    const osg::NodePtr node = addExtent();
    const osg::NodePtr box = boxOf(node);
    const osg::GeometryPtr geometry = geometryOf(box);
    const osg::UInt32 id = osg::getContainerId(geometry);
    const osg::BitVector mask = osg::MaterialDrawable::MaterialFieldMask | extensions::getOverwriteMaterialFieldMask();

    koNodeUtils::setIsEditable(node, false);
    takeChanges();
    m_boxes->updateNode(node);
    EXPECT_EQ(geometry->getMaterial(), m_lockedNodeMaterial);
    EXPECT_TRUE(extensions::getOverwriteMaterial(geometry));
    EXPECT_THAT(takeChanges(), ElementsAre(Change(id, mask)));

    m_boxes->updateNode(node);
    EXPECT_THAT(takeChanges(), IsEmpty()) << "the state is the same";

    koNodeUtils::setIsEditable(node, true);
    takeChanges();
    m_boxes->updateNode(node);
    EXPECT_EQ(geometry->getMaterial(), m_highlightMaterial);
    EXPECT_FALSE(extensions::getOverwriteMaterial(geometry));
    EXPECT_THAT(takeChanges(), ElementsAre(Change(id, mask)));

    m_boxes->updateNode(node);
    EXPECT_THAT(takeChanges(), IsEmpty()) << "the state is the same";
}

TEST_F(BoxSelectionVisualisationTest, ANodeUnderALockedOneIsDrawnLocked)
{
    const osg::NodePtr node = addExtent();
    koNodeUtils::setIsEditable(m_scene, false);

    EXPECT_EQ(geometryOf(boxOf(node))->getMaterial(), m_lockedNodeMaterial);
}

TEST_F(BoxSelectionVisualisationTest, TheOverwriteFlagIsTheRecordOfTheMaterial)
{
    const osg::NodePtr node = addExtent();
    const osg::GeometryPtr geometry = geometryOf(boxOf(node));
    geometry->setMaterial(m_lockedNodeMaterial);

    m_boxes->updateNode(node);

    // The flag says editable and is not contradicted by the node: the material is not looked at.
    EXPECT_EQ(geometry->getMaterial(), m_lockedNodeMaterial);
}

// Visualisations that are no boxes

TEST_F(BoxSelectionVisualisationTest, ANullVisualisationIsIgnored)
{
    const osg::NodePtr node = addExtent();
    takeChanges();

    m_boxes->updateVisualisation(node, osg::NodePtr());

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(BoxSelectionVisualisationTest, AVisualisationThatIsNoGeometryIsLeftAlone)
{
    const osg::NodePtr node = addExtent();
    const NodeRef withoutCore(osg::Node::create());
    const NodeRef group = makeNode(osg::Group::create());
    m_boxes->updateVisualisation(node, withoutCore);
    takeChanges();

    m_boxes->updateVisualisation(node, withoutCore);
    m_boxes->updateVisualisation(node, group);

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(BoxSelectionVisualisationTest, AGeometryWithoutFittingPositionsIsLeftAlone)
{
    const osg::NodePtr node = addExtent();
    koNodeUtils::setIsEditable(node, false);
    const NodeRef withoutPositions = makeNode(osg::Geometry::create());
    const NodeRef tooFew = makeNode(makeExtent(osg::Pnt3f(0.0F, 0.0F, 0.0F), osg::Pnt3f(1.0F, 1.0F, 1.0F)));
    const osg::GeoPositions3dPtr doubles = osg::GeoPositions3d::create();
    doubles->resize(8);
    const osg::GeometryPtr geometry = osg::Geometry::create();
    geometry->setPositions(doubles);
    const NodeRef otherType = makeNode(geometry);
    takeChanges();

    for (const NodeRef& visualisation : {withoutPositions, tooFew, otherType}) {
        m_boxes->updateVisualisation(node, visualisation);

        EXPECT_FALSE(extensions::getOverwriteMaterial(geometryOf(visualisation))) << "not even the colour";
        EXPECT_EQ(geometryOf(visualisation)->getMaterial(), osg::NullFC);
    }
    EXPECT_EQ(doubles->getValue(7), osg::Pnt3f(0.0F, 0.0F, 0.0F));
    for (const Change& change : takeChanges()) {
        EXPECT_EQ(change.first, osg::getContainerId(node)) << "the bounds of the selected node at most";
    }
}

// Filter

TEST_F(BoxSelectionVisualisationTest, CamerasOfTheHostGetNoBox)
{
    const osg::NodePtr camera = addChild(m_scene, osg::UberCamera::create());
    const osg::NodePtr light = addChild(m_scene, osg::UberLight::create());

    EXPECT_FALSE(m_boxes->shouldHaveVisualization(camera));
    EXPECT_TRUE(m_boxes->shouldHaveVisualization(light));
    EXPECT_TRUE(m_boxes->shouldHaveVisualization(addExtent()));
    EXPECT_TRUE(m_boxes->shouldHaveVisualization(osg::NodePtr()));

    m_boxes->addNode(camera);
    EXPECT_TRUE(m_boxes->hasNode(camera));
    EXPECT_EQ(root()->getNChildren(), 0U);
}

// Together with the base

TEST_F(BoxSelectionVisualisationTest, ABoxIsFittedBeforeItIsShown)
{
    const osg::NodePtr node = addExtent();
    m_boxes->setVisible(false);
    m_boxes->addNode(node);
    EXPECT_EQ(root()->getNChildren(), 0U);

    m_boxes->setVisible(true);

    ASSERT_EQ(root()->getNChildren(), 1U);
    EXPECT_EQ(cornersOf(root()->getChild(0)), cornersBetween({1.0F, 2.0F, 3.0F}, {4.0F, 6.0F, 8.0F}));
}

TEST_F(BoxSelectionVisualisationTest, AHiddenNodesBoxIsHiddenAndShownAgainAfterReuse)
{
    const osg::NodePtr hidden = addExtent();
    hidden->setTravMask(0);
    const osg::NodePtr box = boxOf(hidden);
    EXPECT_EQ(box->getTravMask(), 0U);
    m_boxes->removeNode(hidden);

    m_boxes->addNode(addExtent());

    ASSERT_EQ(root()->getChild(0), box);
    EXPECT_EQ(box->getTravMask(), 0xFFFFFFFFU);
}

} // namespace

} // namespace quon::interaction
