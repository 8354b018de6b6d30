// SPDX-License-Identifier: MIT
#include <Interaction/HighlightSelectionVisualisation.h>

#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include <Extensions/SceneExtensions.h>
#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koMaterials.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGMaterialPool.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace quon::interaction {

// Cores of a host that go their own way.
#define KO_DERIVED_CORE(Derived, Base)                                                                                 \
    class Derived;                                                                                                     \
    using Derived##Ptr = osg::FCPtr<osg::Base##Ptr, Derived>;                                                          \
    class Derived : public osg::Base {                                                                                 \
    public:                                                                                                            \
        OSG_FIELD_CONTAINER_DECL(Derived##Ptr)                                                                         \
    private:                                                                                                           \
        static osg::FieldContainerType _type;                                                                          \
    };                                                                                                                 \
    osg::FieldContainerType Derived::_type(                                                                            \
        #Derived, #Base, nullptr, []() -> osg::FieldContainerPtr { return createEmpty(); }, nullptr);                  \
    OSG_FIELD_CONTAINER_INL_DEF(Derived, Derived##Ptr)                                                                 \
    OSG_FIELD_CONTAINER_DEF(Derived, Derived##Ptr)

KO_DERIVED_CORE(DerivedLight, UberLight)
KO_DERIVED_CORE(DerivedCamera, UberCamera)
KO_DERIVED_CORE(DerivedMaterialGroup, MaterialGroup)
KO_DERIVED_CORE(DerivedMaterialPool, MaterialPool)
KO_DERIVED_CORE(DerivedGeometry, Geometry)
KO_DERIVED_CORE(DerivedTransform, Transform)

#undef KO_DERIVED_CORE

namespace {

using quon::testing::addChild;
using quon::testing::exists;
using quon::testing::makeExtent;
using quon::testing::makeNode;
using quon::testing::makeTranslation;
using quon::testing::NodeRef;
using quon::testing::SceneFixture;
using quon::testing::setTranslation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr osg::UInt32 allOnes = 0xFFFFFFFF;
constexpr osg::BitVector allFields = osg::FieldBits::AllFields;

osg::GeometryPtr makeUnitExtent()
{
    return makeExtent(osg::Pnt3f(0.0F, 0.0F, 0.0F), osg::Pnt3f(1.0F, 1.0F, 1.0F));
}

bool isPlainGroup(const osg::NodePtr& node)
{
    return node->getCore()->getTypeId() == osg::Group::getClassTypeId();
}

osg::Matrix translation(float x, float y, float z)
{
    osg::Matrix matrix;
    matrix.setTranslate(x, y, z);
    return matrix;
}

// cloneSelectionTree

class CloneSelectionTreeTest : public SceneFixture {
protected:
    CloneSelectionTreeTest()
        : m_scene(makeNode(osg::Group::create()))
    {}

    NodeRef m_scene;
};

TEST_F(CloneSelectionTreeTest, ANullNodeHasNoCopy)
{
    EXPECT_EQ(cloneSelectionTree(osg::NodePtr()), osg::NullFC);
}

TEST_F(CloneSelectionTreeTest, ANodeWithoutCoreHasNoCopy)
{
    const NodeRef node(osg::Node::create());
    addChild(node, osg::Group::create());

    EXPECT_EQ(cloneSelectionTree(node), osg::NullFC);
}

TEST_F(CloneSelectionTreeTest, ACopySharesTheCoreAndHasTheSameMask)
{
    const osg::GeometryPtr geometry = makeUnitExtent();
    const osg::NodePtr node = addChild(m_scene, geometry);
    node->setTravMask(0xF0);

    osg::NodePtr copy = cloneSelectionTree(node);

    ASSERT_NE(copy, osg::NullFC);
    EXPECT_NE(copy, node);
    EXPECT_EQ(copy.getRefCount(), 0) << "whoever attaches it holds it";
    EXPECT_EQ(copy->getTravMask(), 0xF0U);
    EXPECT_EQ(copy->getCore(), geometry);
    EXPECT_EQ(geometry->getParents().size(), 2U);
    EXPECT_EQ(copy->getParent(), osg::NullFC);
    osg::subRefCP(copy);
    EXPECT_EQ(geometry->getParents().size(), 1U);
}

TEST_F(CloneSelectionTreeTest, NamesAndMarksAreNotCopied)
{
    const osg::NodePtr node = addChild(m_scene, osg::Group::create());
    NodeUtils::setName(node, "engine", false);
    koNodeUtils::setIsAuxiliaryNode(node, true);
    koNodeUtils::setIsEditable(node, false);
    extensions::setHostFlags(node, 4);

    const NodeRef copy(cloneSelectionTree(node));

    EXPECT_EQ(NodeUtils::getName(copy), "");
    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(copy));
    EXPECT_TRUE(koNodeUtils::isEditable(copy));
    EXPECT_EQ(extensions::getHostFlags(copy), 0U);
}

TEST_F(CloneSelectionTreeTest, ChildrenAreCopiedInOrderAndThoseWithoutCoreLeftOut)
{
    const osg::TransformPtr first = makeTranslation(1.0F, 0.0F, 0.0F);
    const osg::GroupPtr second = osg::Group::create();
    const osg::GeometryPtr third = makeUnitExtent();
    const osg::GeometryPtr inner = makeUnitExtent();
    addChild(addChild(m_scene, first), inner);
    const osg::NodePtr coreless = addChild(m_scene, osg::NodeCorePtr());
    addChild(coreless, osg::Group::create());
    addChild(m_scene, second);
    addChild(m_scene, third)->setTravMask(0);

    const NodeRef copy(cloneSelectionTree(m_scene));

    ASSERT_EQ(copy->getNChildren(), 3U);
    EXPECT_EQ(copy->getChild(0)->getCore(), first);
    EXPECT_EQ(copy->getChild(1)->getCore(), second);
    EXPECT_EQ(copy->getChild(2)->getCore(), third);
    EXPECT_EQ(copy->getChild(2)->getTravMask(), 0U);
    ASSERT_EQ(copy->getChild(0)->getNChildren(), 1U);
    EXPECT_EQ(copy->getChild(0)->getChild(0)->getCore(), inner);
    EXPECT_EQ(copy->getChild(0).getRefCount(), 1) << "held by its parent";
    EXPECT_EQ(m_scene->getNChildren(), 4U) << "the original stays as it is";
}

TEST_F(CloneSelectionTreeTest, ACopyIsClosedAfterItsChildrenAndThenAttached)
{
    const osg::NodePtr x = addChild(m_scene, osg::Group::create());
    addChild(x, osg::Group::create());
    addChild(m_scene, osg::Group::create());
    takeChanges();

    const NodeRef copy(cloneSelectionTree(m_scene));

    const osg::UInt32 root = osg::getContainerId(copy.get());
    const osg::UInt32 copyOfX = osg::getContainerId(copy->getChild(0));
    const osg::UInt32 copyOfY = osg::getContainerId(copy->getChild(0)->getChild(0));
    const osg::UInt32 copyOfZ = osg::getContainerId(copy->getChild(1));
    EXPECT_TRUE(root < copyOfX && copyOfX < copyOfY && copyOfY < copyOfZ) << "created depth first";
    std::vector<Change> changes;
    for (const Change& change : takeChanges()) {
        if (change.second == allFields || change.second == osg::Node::ParentFieldMask) {
            changes.push_back(change);
        }
    }
    const osg::BitVector parent = osg::Node::ParentFieldMask;
    EXPECT_THAT(changes, ElementsAre(Change(copyOfY, allFields), Change(copyOfY, parent), Change(copyOfX, allFields),
                                     Change(copyOfX, parent), Change(copyOfZ, allFields), Change(copyOfZ, parent),
                                     Change(root, allFields)));
}

TEST_F(CloneSelectionTreeTest, ATreeDeeperThanTheStackIsCopied)
{
    constexpr int depth = 100000;
    osg::NodePtr deepest = m_scene.get();
    const osg::GroupPtr shared = osg::Group::create();
    for (int i = 0; i < depth; ++i) {
        const osg::NodePtr child = osg::Node::create();
        child->setCore(shared);
        deepest->addChild(child);
        deepest = child;
    }

    const NodeRef copy(cloneSelectionTree(m_scene));

    int copied = 0;
    for (osg::NodePtr node = copy.get(); node->getNChildren() > 0; node = node->getChild(0)) {
        ++copied;
    }
    EXPECT_EQ(copied, depth);
}

struct ReplacedCoreRow {
    const char* name;
    osg::NodeCorePtr (*create)();
};

void PrintTo(const ReplacedCoreRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class ReplacedCoreTest : public CloneSelectionTreeTest, public ::testing::WithParamInterface<ReplacedCoreRow> {};

TEST_P(ReplacedCoreTest, TheCopyHasANewEmptyGroup)
{
    const osg::NodeCorePtr core = GetParam().create();
    const osg::NodePtr node = addChild(m_scene, core);
    const osg::GeometryPtr geometry = makeUnitExtent();
    addChild(node, geometry);
    node->setTravMask(3);

    const NodeRef copy(cloneSelectionTree(m_scene));

    ASSERT_EQ(copy->getNChildren(), 1U);
    const osg::NodePtr replaced = copy->getChild(0);
    EXPECT_TRUE(isPlainGroup(replaced));
    EXPECT_EQ(replaced->getTravMask(), 3U);
    EXPECT_EQ(replaced->getCore().getRefCount(), 1) << "new and not shared";
    EXPECT_EQ(core.getRefCount(), 1) << "not shared";
    ASSERT_EQ(replaced->getNChildren(), 1U) << "what is below is copied";
    EXPECT_EQ(replaced->getChild(0)->getCore(), geometry);
}

INSTANTIATE_TEST_SUITE_P(
    Cores, ReplacedCoreTest,
    ::testing::Values(
        ReplacedCoreRow{"UberLight", [] { return osg::NodeCorePtr(osg::UberLight::create()); }},
        ReplacedCoreRow{"DerivedFromUberLight", [] { return osg::NodeCorePtr(DerivedLight::create()); }},
        ReplacedCoreRow{"UberCamera", [] { return osg::NodeCorePtr(osg::UberCamera::create()); }},
        ReplacedCoreRow{"DerivedFromUberCamera", [] { return osg::NodeCorePtr(DerivedCamera::create()); }},
        ReplacedCoreRow{"MaterialGroup", [] { return osg::NodeCorePtr(osg::MaterialGroup::create()); }},
        ReplacedCoreRow{"DerivedFromMaterialGroup", [] { return osg::NodeCorePtr(DerivedMaterialGroup::create()); }},
        ReplacedCoreRow{"MaterialPool", [] { return osg::NodeCorePtr(osg::MaterialPool::create()); }},
        ReplacedCoreRow{"DerivedFromMaterialPool", [] { return osg::NodeCorePtr(DerivedMaterialPool::create()); }}),
    [](const auto& row) { return std::string(row.param.name); });

// The visualisation

class HighlightSelectionVisualisationTest : public SceneFixture {
protected:
    HighlightSelectionVisualisationTest()
        : m_scene(makeNode(osg::Group::create()))
    {
        takeChanges();
        m_highlight = std::make_unique<HighlightSelectionVisualisation>();
        m_constructorChanges = takeChanges();
        m_material = osg::SimpleMaterialPtr::dcast(m_highlight->getMaterial());
    }

    ~HighlightSelectionVisualisationTest() override
    {
        m_highlight.reset();
        // In place of the instance, which keeps its reference to the material on purpose.
        osg::subRefCP(m_material);
    }

    osg::NodePtr root() { return m_highlight->getVisualisation(); }

    osg::MaterialGroupPtr group() { return osg::MaterialGroupPtr::dcast(root()->getCore()); }

    osg::StateChunkPtr chunk(osg::UInt32 index) { return (*m_material->getMFChunks())[index]; }

    static osg::Matrix matrixOf(const osg::NodePtr& visualisation)
    {
        return osg::TransformPtr::dcast(visualisation->getCore())->getMatrix();
    }

    static std::vector<osg::BitVector> editsOf(osg::UInt32 id, const std::vector<Change>& changes)
    {
        std::vector<osg::BitVector> masks;
        for (const Change& change : changes) {
            if (change.first == id && change.second != osg::Node::VolumeFieldMask) {
                masks.push_back(change.second);
            }
        }
        return masks;
    }

    static void expectWorldBounds(const osg::NodePtr& node, const osg::Pnt3f& min, const osg::Pnt3f& max)
    {
        osg::Pnt3f actualMin;
        osg::Pnt3f actualMax;
        extensions::getWorldBounds(node, actualMin, actualMax);
        EXPECT_EQ(actualMin, min);
        EXPECT_EQ(actualMax, max);
    }

    NodeRef m_scene;
    std::unique_ptr<HighlightSelectionVisualisation> m_highlight;
    osg::SimpleMaterialPtr m_material;
    std::vector<Change> m_constructorChanges;
};

TEST_F(HighlightSelectionVisualisationTest, TheMaterialHasItsRenderState)
{
    ASSERT_NE(m_material, osg::NullFC);

    EXPECT_EQ(koMaterials::getName(m_material), "koScenegraph::m_highlightMaterial");
    EXPECT_TRUE(koMaterials::isNameGivenByProgram(m_material));
    EXPECT_EQ(m_material->getDiffuse()[0], 0.956F);
    EXPECT_EQ(m_material->getDiffuse()[1], 0.521F);
    EXPECT_EQ(m_material->getDiffuse()[2], 0.086F);
    EXPECT_FALSE(m_material->getLit());
    EXPECT_EQ(m_material->getSortKey(), 60000);
    EXPECT_EQ(m_material->getTransparency(), 0.001F);
    EXPECT_EQ(m_material->getTransparencyMode(), osg::Int32(osg::Material::TransparencyForceTransparent));
}

TEST_F(HighlightSelectionVisualisationTest, TheChunksArePolygonAndDepthTestInThisOrder)
{
    ASSERT_EQ(m_material->getMFChunks()->size(), 2U) << "no line and no blend chunk, unlike the boxes";

    const osg::PolygonChunkPtr polygon = osg::PolygonChunkPtr::dcast(chunk(0));
    ASSERT_NE(polygon, osg::NullFC);
    EXPECT_EQ(polygon->getFrontMode(), 6913U) << "GL_LINE";
    EXPECT_EQ(polygon->getBackMode(), 6913U) << "GL_LINE";
    EXPECT_EQ(polygon->getOffsetFactor(), -1.0F);
    EXPECT_EQ(polygon->getOffsetBias(), -100.0F);
    EXPECT_TRUE(polygon->getOffsetLine());
    EXPECT_FALSE(polygon->getOffsetFill());
    EXPECT_FALSE(polygon->getOffsetPoint());
    const osg::DepthTestChunkPtr depthTest = osg::DepthTestChunkPtr::dcast(chunk(1));
    ASSERT_NE(depthTest, osg::NullFC);
    EXPECT_EQ(depthTest->getFunc(), GLenum(GL_ALWAYS));
    EXPECT_EQ(m_material->getMFSlots()->size(), 0U) << "automatic slots leave no trace";
}

TEST_F(HighlightSelectionVisualisationTest, TheRootIsANamelessMaterialGroup)
{
    ASSERT_NE(group(), osg::NullFC);

    EXPECT_EQ(group()->getMaterial(), m_material);
    EXPECT_EQ(NodeUtils::getName(root()), "") << "unlike the root of the boxes";
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_TRUE(m_highlight->isVisible());
}

TEST_F(HighlightSelectionVisualisationTest, TheConstructorBuildsAndClosesInOrder)
{
    const osg::UInt32 rootId = osg::getContainerId(root());
    const std::vector<osg::UInt32> ids = {osg::getContainerId(chunk(0)), osg::getContainerId(chunk(1)),
                                          osg::getContainerId(m_material), osg::getContainerId(group())};

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
                    Change(ids[2], allFields), Change(ids[3], allFields), Change(rootId, osg::Node::CoreFieldMask)));
}

TEST_F(HighlightSelectionVisualisationTest, TheInstanceHoldsMaterialAndGroupOnce)
{
    EXPECT_EQ(m_material.getRefCount(), 2) << "instance, material group";
    EXPECT_EQ(group().getRefCount(), 2) << "instance, root";
}

TEST_F(HighlightSelectionVisualisationTest, TheMaterialAloneHoldsTheChunks)
{
    EXPECT_EQ(chunk(1).getRefCount(), chunk(0).getRefCount()) << "the instance holds none, also not the switch";
}

TEST_F(HighlightSelectionVisualisationTest, TheDestructorReleasesTheGroupButNotTheMaterial)
{
    const osg::UInt32 groupId = osg::getContainerId(group());
    const osg::UInt32 rootId = osg::getContainerId(root());

    m_highlight.reset();

    EXPECT_FALSE(exists(groupId));
    EXPECT_FALSE(exists(rootId));
    EXPECT_EQ(m_material.getRefCount(), 1) << "taken in the constructor";
    EXPECT_EQ(m_material->getMFChunks()->size(), 2U);
}

TEST_F(HighlightSelectionVisualisationTest, ARootHeldByTheHostKeepsTheGroup)
{
    const NodeRef host(root());

    m_highlight.reset();

    EXPECT_EQ(host->getCore().getRefCount(), 1);
    EXPECT_EQ(osg::MaterialGroupPtr::dcast(host->getCore())->getMaterial(), m_material);
}

// Settings

TEST_F(HighlightSelectionVisualisationTest, SettingTheColourEditsTheMaterial)
{
    takeChanges();

    m_highlight->setColor(osg::Color3f(0.25F, 0.5F, 0.75F));

    EXPECT_EQ(m_material->getDiffuse(), osg::Color3f(0.25F, 0.5F, 0.75F));
    EXPECT_EQ(m_highlight->getColor(), osg::Color3f(0.25F, 0.5F, 0.75F));
    EXPECT_THAT(editsOf(osg::getContainerId(m_material), takeChanges()), ElementsAre(allFields));
}

TEST_F(HighlightSelectionVisualisationTest, TheDefaultColourIsReadBack)
{
    EXPECT_EQ(m_highlight->getColor().red(), 0.956F);
    EXPECT_EQ(m_highlight->getColor().green(), 0.521F);
    EXPECT_EQ(m_highlight->getColor().blue(), 0.086F);
}

TEST_F(HighlightSelectionVisualisationTest, TheColourIsNotThatOfAnInstalledMaterial)
{
    const osg::SimpleMaterialPtr other = osg::SimpleMaterial::create();
    other->setDiffuse(osg::Color3f(0.125F, 0.125F, 0.125F));
    m_highlight->setMaterial(other);

    m_highlight->setColor(osg::Color3f(0.25F, 0.5F, 0.75F));

    EXPECT_EQ(other->getDiffuse(), osg::Color3f(0.125F, 0.125F, 0.125F));
    EXPECT_EQ(m_highlight->getColor(), osg::Color3f(0.25F, 0.5F, 0.75F));
    EXPECT_EQ(m_highlight->getMaterial(), other);
}

TEST_F(HighlightSelectionVisualisationTest, AnInstalledMaterialIsHeldByTheGroup)
{
    const osg::RefPtr<osg::MaterialPtr> other(osg::SimpleMaterial::create());
    takeChanges();

    m_highlight->setMaterial(other);

    EXPECT_EQ(m_highlight->getMaterial(), other);
    EXPECT_EQ(group()->getMaterial(), other);
    EXPECT_EQ(other.get().getRefCount(), 2) << "test, group";
    EXPECT_EQ(m_material.getRefCount(), 1) << "instance";
    EXPECT_THAT(editsOf(osg::getContainerId(group()), takeChanges()), ElementsAre(allFields));
    m_highlight->setMaterial(m_material);
    EXPECT_EQ(other.get().getRefCount(), 1) << "test";
}

TEST_F(HighlightSelectionVisualisationTest, ANullMaterialIsIgnoredAndTheGroupClosedAllTheSame)
{
    takeChanges();

    m_highlight->setMaterial(osg::MaterialPtr());

    EXPECT_EQ(m_highlight->getMaterial(), m_material);
    EXPECT_THAT(editsOf(osg::getContainerId(group()), takeChanges()), ElementsAre(allFields));
}

TEST_F(HighlightSelectionVisualisationTest, TheOverlayIsTheDepthFunctionOfTheChunk)
{
    const osg::DepthTestChunkPtr depthTest = osg::DepthTestChunkPtr::dcast(chunk(1));
    EXPECT_TRUE(m_highlight->getOverlay());
    takeChanges();

    m_highlight->setOverlay(false);

    EXPECT_EQ(depthTest->getFunc(), 515U);
    EXPECT_FALSE(m_highlight->getOverlay());
    EXPECT_THAT(editsOf(osg::getContainerId(depthTest), takeChanges()), ElementsAre(allFields));

    m_highlight->setOverlay(true);

    EXPECT_EQ(depthTest->getFunc(), 519U);
    EXPECT_TRUE(m_highlight->getOverlay());

    depthTest->setFunc(GL_LESS);
    EXPECT_FALSE(m_highlight->getOverlay()) << "true for GL_ALWAYS only";
}

// createVisualisation

TEST_F(HighlightSelectionVisualisationTest, ANullNodeHasNoVisualisation)
{
    EXPECT_EQ(m_highlight->createVisualisation(osg::NodePtr()), osg::NullFC);
}

TEST_F(HighlightSelectionVisualisationTest, AVisualisationIsACopyInTheWorldOfTheParent)
{
    const osg::NodePtr outer = addChild(m_scene, makeTranslation(1.0F, 2.0F, 3.0F));
    const osg::TransformPtr own = makeTranslation(10.0F, 0.0F, 0.0F);
    const osg::NodePtr node = addChild(outer, own);
    const osg::GeometryPtr geometry = makeUnitExtent();
    addChild(node, geometry);

    osg::NodePtr visualisation = m_highlight->createVisualisation(node);

    // A transform below a transform has no level in between: that is for geometries.
    EXPECT_EQ(visualisation.getRefCount(), 0) << "held by whoever attaches it";
    EXPECT_EQ(visualisation->getTravMask(), allOnes);
    EXPECT_TRUE(matrixOf(visualisation) == translation(1.0F, 2.0F, 3.0F));
    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getCore(), own);
    ASSERT_EQ(visualisation->getChild(0)->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getChild(0)->getCore(), geometry);
    expectWorldBounds(visualisation, osg::Pnt3f(11.0F, 2.0F, 3.0F), osg::Pnt3f(12.0F, 3.0F, 4.0F));
    osg::subRefCP(visualisation);
}

TEST_F(HighlightSelectionVisualisationTest, BuildingClosesTransformAndTopNodeOverAllFields)
{
    const osg::NodePtr node = addChild(m_scene, osg::Group::create());
    takeChanges();

    const NodeRef visualisation(m_highlight->createVisualisation(node));

    const osg::UInt32 copy = osg::getContainerId(visualisation->getChild(0));
    const osg::UInt32 transform = osg::getContainerId(visualisation->getCore());
    const osg::UInt32 top = osg::getContainerId(visualisation.get());
    std::vector<Change> closed;
    for (const Change& change : takeChanges()) {
        if (change.second == allFields) {
            closed.push_back(change);
        }
    }
    EXPECT_THAT(closed, ElementsAre(Change(copy, allFields), Change(transform, allFields), Change(top, allFields)));
}

TEST_F(HighlightSelectionVisualisationTest, AGeometryBelowATransformSharesThatTransform)
{
    const osg::NodePtr outer = addChild(m_scene, makeTranslation(1.0F, 2.0F, 3.0F));
    const osg::TransformPtr parentTransform = makeTranslation(10.0F, 0.0F, 0.0F);
    const osg::NodePtr parent = addChild(outer, parentTransform);
    const osg::GeometryPtr geometry = makeUnitExtent();
    const osg::NodePtr node = addChild(parent, geometry);
    addChild(parent, makeUnitExtent());
    takeChanges();

    const NodeRef visualisation(m_highlight->createVisualisation(node));

    EXPECT_TRUE(matrixOf(visualisation) == translation(1.0F, 2.0F, 3.0F)) << "of the parent's parent";
    ASSERT_EQ(visualisation->getNChildren(), 1U);
    const osg::NodePtr between = visualisation->getChild(0);
    EXPECT_EQ(between->getCore(), parentTransform);
    ASSERT_EQ(between->getNChildren(), 1U) << "the siblings of the node are not copied";
    EXPECT_EQ(between->getChild(0)->getCore(), geometry);
    EXPECT_THAT(editsOf(osg::getContainerId(between), takeChanges()),
                ElementsAre(allFields, osg::BitVector(osg::Node::ParentFieldMask)));
}

TEST_F(HighlightSelectionVisualisationTest, CoresDerivedFromGeometryAndTransformCountAsSuch)
{
    const DerivedTransformPtr parentTransform = DerivedTransform::create();
    setTranslation(parentTransform, 10.0F, 0.0F, 0.0F);
    const osg::NodePtr parent = addChild(m_scene, parentTransform);
    const DerivedGeometryPtr geometry = DerivedGeometry::create();
    const osg::NodePtr node = addChild(parent, geometry);

    const NodeRef visualisation(m_highlight->createVisualisation(node));

    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getCore(), parentTransform);
    ASSERT_EQ(visualisation->getChild(0)->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getChild(0)->getCore(), geometry);
}

TEST_F(HighlightSelectionVisualisationTest, TheLevelInBetweenIsShownWhateverTheMaskOfTheParent)
{
    const osg::NodePtr parent = addChild(m_scene, makeTranslation(10.0F, 0.0F, 0.0F));
    const osg::NodePtr node = addChild(parent, makeUnitExtent());
    parent->setTravMask(0);
    node->setTravMask(2);

    const NodeRef visualisation(m_highlight->createVisualisation(node));

    EXPECT_EQ(visualisation->getTravMask(), allOnes);
    EXPECT_EQ(visualisation->getChild(0)->getTravMask(), allOnes);
    EXPECT_EQ(visualisation->getChild(0)->getChild(0)->getTravMask(), 2U) << "that of the node itself is copied";
}

TEST_F(HighlightSelectionVisualisationTest, AGeometryBelowAGroupHasNoLevelInBetween)
{
    const osg::GeometryPtr geometry = makeUnitExtent();
    const osg::NodePtr node = addChild(m_scene, geometry);

    const NodeRef visualisation(m_highlight->createVisualisation(node));

    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getCore(), geometry);
}

TEST_F(HighlightSelectionVisualisationTest, AMovedParentMovesTheHighlightOfAGeometryBeforeAnyUpdate)
{
    const osg::TransformPtr parentTransform = makeTranslation(10.0F, 0.0F, 0.0F);
    const osg::NodePtr parent = addChild(m_scene, parentTransform);
    const osg::NodePtr node = addChild(parent, makeUnitExtent());
    m_highlight->addNode(node);
    expectWorldBounds(root(), osg::Pnt3f(10.0F, 0.0F, 0.0F), osg::Pnt3f(11.0F, 1.0F, 1.0F));

    setTranslation(parentTransform, 20.0F, 0.0F, 0.0F);

    expectWorldBounds(root(), osg::Pnt3f(20.0F, 0.0F, 0.0F), osg::Pnt3f(21.0F, 1.0F, 1.0F));
}

TEST_F(HighlightSelectionVisualisationTest, AnUpdateTurnsTheSharedTransformIntoPartOfTheMatrix)
{
    const osg::NodePtr outer = addChild(m_scene, makeTranslation(1.0F, 2.0F, 3.0F));
    const osg::TransformPtr parentTransform = makeTranslation(10.0F, 0.0F, 0.0F);
    const osg::NodePtr parent = addChild(outer, parentTransform);
    const osg::GeometryPtr geometry = makeUnitExtent();
    const osg::NodePtr node = addChild(parent, geometry);
    m_highlight->addNode(node);
    const osg::NodePtr visualisation = root()->getChild(0);
    expectWorldBounds(root(), osg::Pnt3f(11.0F, 2.0F, 3.0F), osg::Pnt3f(12.0F, 3.0F, 4.0F));

    m_highlight->updateNode(node);

    EXPECT_TRUE(matrixOf(visualisation) == translation(11.0F, 2.0F, 3.0F));
    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getCore(), geometry);
    EXPECT_EQ(parentTransform->getParents().size(), 1U);
    expectWorldBounds(root(), osg::Pnt3f(11.0F, 2.0F, 3.0F), osg::Pnt3f(12.0F, 3.0F, 4.0F));
}

TEST_F(HighlightSelectionVisualisationTest, WithoutAParentTheMatrixIsTheIdentity)
{
    const NodeRef node = makeNode(makeTranslation(10.0F, 0.0F, 0.0F));

    const NodeRef visualisation(m_highlight->createVisualisation(node));
    EXPECT_TRUE(matrixOf(visualisation) == osg::Matrix());
    EXPECT_EQ(visualisation->getNChildren(), 1U);

    m_highlight->updateVisualisation(node, visualisation);
    EXPECT_TRUE(matrixOf(visualisation) == osg::Matrix());
    EXPECT_EQ(visualisation->getNChildren(), 1U);
}

TEST_F(HighlightSelectionVisualisationTest, AGeometryWithoutAParentHasNoLevelInBetween)
{
    const NodeRef node = makeNode(makeUnitExtent());

    const NodeRef visualisation(m_highlight->createVisualisation(node));
    EXPECT_TRUE(matrixOf(visualisation) == osg::Matrix());
    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_TRUE(visualisation->getChild(0)->getCore() == node->getCore());

    m_highlight->updateVisualisation(node, visualisation);
    EXPECT_TRUE(matrixOf(visualisation) == osg::Matrix());
    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_TRUE(visualisation->getChild(0)->getCore() == node->getCore());
}

TEST_F(HighlightSelectionVisualisationTest, WithoutAParentOfTheParentTheMatrixIsTheIdentity)
{
    const NodeRef parent = makeNode(makeTranslation(10.0F, 0.0F, 0.0F));
    const osg::NodePtr node = addChild(parent, makeUnitExtent());

    const NodeRef visualisation(m_highlight->createVisualisation(node));

    EXPECT_TRUE(matrixOf(visualisation) == osg::Matrix());
    expectWorldBounds(visualisation, osg::Pnt3f(10.0F, 0.0F, 0.0F), osg::Pnt3f(11.0F, 1.0F, 1.0F));
}

TEST_F(HighlightSelectionVisualisationTest, AGeometryBelowANodeWithoutCoreHasNoLevelInBetween)
{
    const NodeRef parent(osg::Node::create());
    const osg::NodePtr node = addChild(parent, makeUnitExtent());

    const NodeRef visualisation(m_highlight->createVisualisation(node));

    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getCore(), node->getCore());
}

TEST_F(HighlightSelectionVisualisationTest, ANodeWithoutCoreHasAVisualisationWithoutChild)
{
    const osg::NodePtr node = addChild(m_scene, osg::NodeCorePtr());

    m_highlight->addNode(node);

    ASSERT_EQ(root()->getNChildren(), 1U);
    EXPECT_EQ(root()->getChild(0)->getNChildren(), 0U);
    m_highlight->updateNode(node);
    EXPECT_EQ(root()->getChild(0)->getNChildren(), 0U);
}

TEST_F(HighlightSelectionVisualisationTest, ASelectedLightOrCameraIsAnEmptyGroup)
{
    const osg::NodePtr light = addChild(m_scene, osg::UberLight::create());
    const osg::NodePtr camera = addChild(m_scene, osg::UberCamera::create());

    m_highlight->addNode(light);
    m_highlight->addNode(camera);

    ASSERT_EQ(root()->getNChildren(), 2U);
    for (osg::UInt32 i = 0; i < 2; ++i) {
        ASSERT_EQ(root()->getChild(i)->getNChildren(), 1U);
        EXPECT_TRUE(isPlainGroup(root()->getChild(i)->getChild(0)));
    }
}

TEST_F(HighlightSelectionVisualisationTest, AMaterialGroupWithinTheSelectionDoesNotReachTheCopy)
{
    const osg::NodePtr selected = addChild(m_scene, osg::Group::create());
    const osg::MaterialGroupPtr red = osg::MaterialGroup::create();
    red->setMaterial(osg::SimpleMaterial::create());
    addChild(addChild(selected, red), makeUnitExtent());

    m_highlight->addNode(selected);

    const osg::NodePtr copy = root()->getChild(0)->getChild(0);
    ASSERT_EQ(copy->getNChildren(), 1U);
    EXPECT_TRUE(isPlainGroup(copy->getChild(0)));
    EXPECT_EQ(copy->getChild(0)->getNChildren(), 1U);
}

// References

TEST_F(HighlightSelectionVisualisationTest, TheBaseAloneHoldsAVisualisation)
{
    const osg::GeometryPtr geometry = makeUnitExtent();
    const osg::NodePtr node = addChild(m_scene, geometry);
    const std::size_t live = quon::testing::countLiveContainers();

    m_highlight->addNode(node);

    const osg::NodePtr visualisation = root()->getChild(0);
    EXPECT_EQ(visualisation.getRefCount(), 2) << "entry, root";
    EXPECT_EQ(visualisation->getChild(0).getRefCount(), 1) << "its parent";
    EXPECT_EQ(geometry.getRefCount(), 2) << "original, copy";
    m_highlight->updateNode(node);
    EXPECT_EQ(geometry.getRefCount(), 2) << "original, new copy";
    EXPECT_EQ(visualisation->getChild(0).getRefCount(), 1) << "its parent";
    m_highlight->removeNode(node);
    EXPECT_EQ(geometry.getRefCount(), 1);
    EXPECT_EQ(quon::testing::countLiveContainers(), live);
}

TEST_F(HighlightSelectionVisualisationTest, RemovingAVisualisationDoesNothing)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    m_highlight->addNode(node);
    const osg::NodePtr visualisation = root()->getChild(0);
    takeChanges();

    m_highlight->removeVisualisation(node, visualisation);
    m_highlight->removeVisualisation(osg::NodePtr(), osg::NodePtr());

    EXPECT_EQ(visualisation.getRefCount(), 2);
    EXPECT_EQ(visualisation->getParent(), root());
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(HighlightSelectionVisualisationTest, EveryNodeShouldHaveAVisualisation)
{
    EXPECT_TRUE(m_highlight->shouldHaveVisualization(addChild(m_scene, osg::UberCamera::create())));
}

// updateVisualisation

TEST_F(HighlightSelectionVisualisationTest, NullNodesAreNotUpdated)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    const NodeRef visualisation(m_highlight->createVisualisation(node));
    const osg::NodePtr copy = visualisation->getChild(0);
    takeChanges();

    m_highlight->updateVisualisation(node, osg::NodePtr());
    m_highlight->updateVisualisation(osg::NodePtr(), visualisation);

    EXPECT_EQ(visualisation->getChild(0), copy);
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(HighlightSelectionVisualisationTest, AnUpdateFollowsStructureAndPlace)
{
    const osg::TransformPtr place = makeTranslation(1.0F, 0.0F, 0.0F);
    const osg::NodePtr parent = addChild(m_scene, place);
    const osg::NodePtr node = addChild(parent, osg::Group::create());
    m_highlight->addNode(node);
    const osg::NodePtr visualisation = root()->getChild(0);
    const osg::UInt32 oldCopy = osg::getContainerId(visualisation->getChild(0));
    const osg::UInt32 transform = osg::getContainerId(visualisation->getCore());
    addChild(node, makeUnitExtent());
    setTranslation(place, 5.0F, 0.0F, 0.0F);
    takeChanges();

    m_highlight->updateNode(node);

    const std::vector<Change> changes = takeChanges();
    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0)->getNChildren(), 1U);
    EXPECT_FALSE(exists(oldCopy));
    EXPECT_TRUE(matrixOf(visualisation) == translation(5.0F, 0.0F, 0.0F));
    EXPECT_THAT(editsOf(transform, changes), ElementsAre(allFields));
    EXPECT_THAT(editsOf(osg::getContainerId(visualisation), changes), ElementsAre(allFields));
}

TEST_F(HighlightSelectionVisualisationTest, AnUpdateClosesCopyThenTransformThenVisualisation)
{
    const osg::NodePtr node = addChild(m_scene, osg::Group::create());
    const NodeRef visualisation(m_highlight->createVisualisation(node));
    takeChanges();

    m_highlight->updateVisualisation(node, visualisation);

    const osg::UInt32 copy = osg::getContainerId(visualisation->getChild(0));
    std::vector<Change> changes;
    for (const Change& change : takeChanges()) {
        if (change.second == allFields || change == Change(copy, osg::Node::ParentFieldMask)) {
            changes.push_back(change);
        }
    }
    EXPECT_THAT(changes,
                ElementsAre(Change(copy, allFields), Change(osg::getContainerId(visualisation->getCore()), allFields),
                            Change(copy, osg::Node::ParentFieldMask),
                            Change(osg::getContainerId(visualisation.get()), allFields)));
}

TEST_F(HighlightSelectionVisualisationTest, AnUpdateFollowsANodeToAnotherParent)
{
    const osg::NodePtr near = addChild(m_scene, makeTranslation(1.0F, 0.0F, 0.0F));
    const osg::NodePtr far = addChild(m_scene, makeTranslation(100.0F, 0.0F, 0.0F));
    const NodeRef node(addChild(near, makeUnitExtent()));
    m_highlight->addNode(node);
    const osg::NodePtr visualisation = root()->getChild(0);

    far->addChild(node);
    m_highlight->updateNode(node);
    EXPECT_TRUE(matrixOf(visualisation) == translation(100.0F, 0.0F, 0.0F));

    far->subChild(node);
    m_highlight->updateNode(node);
    EXPECT_TRUE(matrixOf(visualisation) == osg::Matrix());
    m_highlight->removeNode(node);
}

TEST_F(HighlightSelectionVisualisationTest, ANodeThatLostItsCoreKeepsItsLastCopy)
{
    const osg::GeometryPtr geometry = makeUnitExtent();
    const osg::NodePtr node = addChild(m_scene, geometry);
    m_highlight->addNode(node);
    const osg::NodePtr copy = root()->getChild(0)->getChild(0);
    node->setCore(osg::NodeCorePtr());

    m_highlight->updateNode(node);

    // A null copy replaces nothing.
    ASSERT_EQ(root()->getChild(0)->getNChildren(), 1U);
    EXPECT_EQ(root()->getChild(0)->getChild(0), copy);
    EXPECT_EQ(copy->getCore(), geometry);
}

TEST_F(HighlightSelectionVisualisationTest, AnUpdateReplacesTheFirstChildOnly)
{
    const osg::NodePtr node = addChild(m_scene, osg::Group::create());
    const NodeRef visualisation(m_highlight->createVisualisation(node));
    const osg::NodePtr further = addChild(visualisation, osg::Group::create());
    const osg::NodePtr copy = visualisation->getChild(0);
    const osg::UInt32 copyId = osg::getContainerId(copy);

    m_highlight->updateVisualisation(node, visualisation);

    ASSERT_EQ(visualisation->getNChildren(), 2U);
    EXPECT_FALSE(exists(copyId));
    EXPECT_EQ(visualisation->getChild(0)->getCore(), node->getCore());
    EXPECT_EQ(visualisation->getChild(1), further);
}

TEST_F(HighlightSelectionVisualisationTest, AVisualisationThatIsNoTransformKeepsItsCoreAndGetsItsCopy)
{
    const osg::NodePtr parent = addChild(m_scene, makeTranslation(1.0F, 0.0F, 0.0F));
    const osg::NodePtr node = addChild(parent, osg::Group::create());
    const osg::GroupPtr group = osg::Group::create();
    const NodeRef grouped = makeNode(group);
    const NodeRef coreless(osg::Node::create());

    for (const NodeRef& visualisation : {grouped, coreless}) {
        addChild(visualisation, osg::Group::create());
        m_highlight->updateVisualisation(node, visualisation);

        ASSERT_EQ(visualisation->getNChildren(), 1U);
        EXPECT_EQ(visualisation->getChild(0)->getCore(), node->getCore());
    }
    EXPECT_EQ(grouped->getCore(), group);
    EXPECT_EQ(coreless->getCore(), osg::NullFC);
}

class HiddenNodeTest : public HighlightSelectionVisualisationTest, public ::testing::WithParamInterface<osg::UInt32> {};

TEST_P(HiddenNodeTest, AnUpdateRemovesTheCopy)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    const NodeRef visualisation(m_highlight->createVisualisation(node));
    const osg::UInt32 copy = osg::getContainerId(visualisation->getChild(0));
    node->setTravMask(GetParam());
    takeChanges();

    m_highlight->updateVisualisation(node, visualisation);

    EXPECT_EQ(visualisation->getNChildren(), 0U);
    EXPECT_FALSE(exists(copy));
    EXPECT_THAT(editsOf(osg::getContainerId(visualisation.get()), takeChanges()), ElementsAre(allFields));
}

TEST_P(HiddenNodeTest, AnUpdateRemovesTheFirstChildOnlyAndLeavesTheMatrix)
{
    const osg::TransformPtr place = makeTranslation(1.0F, 0.0F, 0.0F);
    const osg::NodePtr node = addChild(addChild(m_scene, place), osg::Group::create());
    const NodeRef visualisation(m_highlight->createVisualisation(node));
    const osg::NodePtr further = addChild(visualisation, osg::Group::create());
    node->setTravMask(GetParam());
    setTranslation(place, 5.0F, 0.0F, 0.0F);

    m_highlight->updateVisualisation(node, visualisation);

    ASSERT_EQ(visualisation->getNChildren(), 1U);
    EXPECT_EQ(visualisation->getChild(0), further);
    EXPECT_TRUE(matrixOf(visualisation) == translation(1.0F, 0.0F, 0.0F));
}

TEST_P(HiddenNodeTest, AnUpdateOfANodeStillHiddenChangesNothing)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    const NodeRef visualisation(m_highlight->createVisualisation(node));
    node->setTravMask(GetParam());
    m_highlight->updateVisualisation(node, visualisation);
    takeChanges();

    m_highlight->updateVisualisation(node, visualisation);

    EXPECT_EQ(visualisation->getNChildren(), 0U);
    EXPECT_THAT(takeChanges(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Masks, HiddenNodeTest, ::testing::Values(0U, 0xFFFFFFFEU, 1U),
                         [](const auto& row) { return "Mask" + std::to_string(row.param); });

TEST_F(HighlightSelectionVisualisationTest, AnUpdateOnlyReplacesAndLeaksNoCopyThatFindsNoPlace)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    const NodeRef visualisation(m_highlight->createVisualisation(node));
    node->setTravMask(0);
    m_highlight->updateVisualisation(node, visualisation);
    node->setTravMask(allOnes);
    const std::size_t live = quon::testing::countLiveContainers();
    takeChanges();

    m_highlight->updateVisualisation(node, visualisation);

    EXPECT_EQ(visualisation->getNChildren(), 0U);
    EXPECT_EQ(node->getCore().getRefCount(), 1) << "the copy that found no place is gone";
    EXPECT_EQ(quon::testing::countLiveContainers(), live);
    const std::vector<Change> changes = takeChanges();
    EXPECT_THAT(editsOf(osg::getContainerId(visualisation.get()), changes), ElementsAre(allFields));
    EXPECT_THAT(editsOf(osg::getContainerId(visualisation->getCore()), changes), ElementsAre(allFields));
}

// Together with the base

TEST_F(HighlightSelectionVisualisationTest, AHiddenNodeKeepsItsCopyUnderAHiddenVisualisation)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    m_highlight->addNode(node);
    const osg::NodePtr visualisation = root()->getChild(0);

    node->setTravMask(0);
    m_highlight->updateNode(node);
    EXPECT_EQ(visualisation->getTravMask(), 0U);
    EXPECT_EQ(visualisation->getNChildren(), 1U) << "the base hides without calling the hook";

    node->setTravMask(allOnes);
    m_highlight->updateNode(node);
    EXPECT_EQ(visualisation->getTravMask(), allOnes);
    EXPECT_EQ(visualisation->getNChildren(), 1U);
}

TEST_F(HighlightSelectionVisualisationTest, AddingAHiddenNodeAgainRemovesItsCopy)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    m_highlight->addNode(node);
    node->setTravMask(0);

    m_highlight->addNode(node);

    ASSERT_EQ(root()->getNChildren(), 1U);
    EXPECT_EQ(root()->getChild(0)->getNChildren(), 0U);
}

TEST_F(HighlightSelectionVisualisationTest, CopiesMayBeSelectedThemselves)
{
    const osg::NodePtr node = addChild(m_scene, makeUnitExtent());
    m_highlight->addNode(node);
    const osg::NodePtr copy = root()->getChild(0)->getChild(0);
    m_highlight->addNode(copy);
    ASSERT_EQ(root()->getNChildren(), 2U);

    // Destroys the selected copy; the one of the copy stays until it is cleared.
    m_highlight->updateNode(node);
    m_highlight->updateAllNodes();

    EXPECT_EQ(root()->getNChildren(), 2U);
    m_highlight->removeNode(node);
    EXPECT_EQ(root()->getNChildren(), 1U);
}

TEST_F(HighlightSelectionVisualisationTest, TheSceneThatHoldsTheHighlightMayBeSelected)
{
    addChild(m_scene, makeUnitExtent());
    m_scene->addChild(root());

    m_highlight->addNode(m_scene);
    m_highlight->addNode(root());
    m_highlight->updateAllNodes();

    EXPECT_EQ(root()->getNChildren(), 2U);
    m_highlight->removeAllNodes();
    EXPECT_EQ(root()->getNChildren(), 0U);
    m_scene->subChild(root());
}

TEST_F(HighlightSelectionVisualisationTest, AboveTheRootEachUpdateCopiesTheCopyOfTheOneBefore)
{
    m_scene->addChild(root());
    m_highlight->addNode(m_scene);
    const auto depthOfCopy = [&] {
        int depth = 0;
        for (osg::NodePtr node = root()->getChild(0); node->getNChildren() > 0; node = node->getChild(0)) {
            ++depth;
        }
        return depth;
    };
    EXPECT_EQ(depthOfCopy(), 2) << "scene, root";

    m_highlight->updateNode(m_scene);
    EXPECT_EQ(depthOfCopy(), 5) << "scene, root, its visualisation, scene, root";

    m_highlight->updateNode(m_scene);
    EXPECT_EQ(depthOfCopy(), 8);

    m_scene->subChild(root());
}

} // namespace

} // namespace quon::interaction
