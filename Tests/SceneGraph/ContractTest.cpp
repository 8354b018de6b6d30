// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGDepthChunk.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <stack>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// Which expressions compile, and which do not: sources that hosts have must go on compiling, and sources that compile
// here must compile with an installed OpenSG.
namespace {

using namespace osg;
using quon::testing::hold;

template <template <class...> class ExpressionT, class VoidT, class... ArgumentsT>
struct Detector : std::false_type {};

template <template <class...> class ExpressionT, class... ArgumentsT>
struct Detector<ExpressionT, std::void_t<ExpressionT<ArgumentsT...>>, ArgumentsT...> : std::true_type {};

template <template <class...> class ExpressionT, class... ArgumentsT>
constexpr bool compiles = Detector<ExpressionT, void, ArgumentsT...>::value;

template <class LeftT, class RightT>
using Greater = decltype(std::declval<LeftT>() > std::declval<RightT>());
template <class LeftT, class RightT>
using Less = decltype(std::declval<LeftT>() < std::declval<RightT>());
template <class LeftT, class RightT>
using Equal = decltype(std::declval<LeftT>() == std::declval<RightT>());
template <class LeftT, class RightT>
using NotEqual = decltype(std::declval<LeftT>() != std::declval<RightT>());
template <class LeftT, class RightT>
using Chain = decltype(std::declval<LeftT&>() = (std::declval<LeftT&>() = std::declval<RightT>()));
template <class HandleT>
using SetName = decltype(osg::setName(std::declval<HandleT>(), "name"));
template <class NodeT>
using GetParent = decltype(std::declval<NodeT>().getParent());
template <class NodeT>
using GetChild = decltype(std::declval<NodeT>().getChild(0U));
template <class NodeT>
using GetToWorld = decltype(std::declval<NodeT>().getToWorld());
template <class NodeT>
using GetCore = decltype(std::declval<NodeT>().getCore());
template <class NodeT>
using GetNChildren = decltype(std::declval<NodeT>().getNChildren());
template <class NodeT>
using GetTravMask = decltype(std::declval<NodeT>().getTravMask());
template <class NodeT>
using AddressOfGetWorldVolume = decltype(&NodeT::getWorldVolume);
template <class PointT>
using FromZero = decltype(PointT(0));
template <class PointT>
using FromThreeZeros = decltype(PointT(0, 0, 0));

// Null.
static_assert(std::is_convertible_v<NullFieldContainerPtr, NodePtr>, "NodePtr p = NullFC");
static_assert(std::is_constructible_v<NodePtr, std::nullptr_t>, "NodePtr p(nullptr)");
static_assert(!std::is_convertible_v<std::nullptr_t, NodePtr>, "NodePtr p = nullptr");
static_assert(std::is_assignable_v<NodePtr&, NullFieldContainerPtr>, "n = NullFC");
static_assert(!std::is_assignable_v<NodePtr&, std::nullptr_t>, "n = nullptr");
static_assert(!std::is_assignable_v<RefPtr<NodePtr>&, std::nullptr_t>, "r = nullptr");
static_assert(std::is_assignable_v<RefPtr<NodePtr>&, NullFieldContainerPtr>, "r = NullFC");
static_assert(std::is_constructible_v<RefPtr<NodePtr>, NullFieldContainerPtr>, "RefPtr<NodePtr> r(NullFC)");

// Assignment of handles gives nothing back.
static_assert(std::is_void_v<decltype(std::declval<NodePtr&>() = std::declval<const NodePtr&>())>, "n = m");
static_assert(std::is_void_v<decltype(std::declval<NodePtr&>() = NullFC)>, "n = NullFC");
static_assert(!compiles<Chain, NodePtr, NodePtr>, "a = b = n");
static_assert(std::is_assignable_v<NodePtr&, RefPtr<NodePtr>>, "n = r");
static_assert(std::is_assignable_v<RefPtr<NodePtr>&, NodePtr>, "r = n");

// From a derived handle to a base one, and not back.
static_assert(std::is_convertible_v<NodePtr, FieldContainerPtr>);
static_assert(std::is_convertible_v<NodePtr, AttachmentContainerPtr>);
static_assert(std::is_convertible_v<GroupPtr, NodeCorePtr>);
static_assert(std::is_convertible_v<TransformPtr, GroupPtr>);
static_assert(std::is_convertible_v<MaterialGroupPtr, GroupPtr>);
static_assert(std::is_convertible_v<GeometryPtr, MaterialDrawablePtr>);
static_assert(std::is_convertible_v<MaterialDrawablePtr, DrawablePtr>);
static_assert(std::is_convertible_v<DrawablePtr, NodeCorePtr>);
static_assert(std::is_convertible_v<SimpleMaterialPtr, MaterialPtr>);
static_assert(std::is_convertible_v<DepthChunkPtr, StateChunkPtr>);
static_assert(std::is_convertible_v<StateChunkPtr, AttachmentPtr>);
static_assert(std::is_convertible_v<GeoPositions3fPtr, GeoPositionsPtr>);
static_assert(std::is_convertible_v<GeoPositionsPtr, AttachmentPtr>);
static_assert(!std::is_convertible_v<GeometryPtr, GroupPtr>);
static_assert(!std::is_constructible_v<NodePtr, FieldContainerPtr>, "NodePtr q = fc");
static_assert(!std::is_constructible_v<GroupPtr, NodeCorePtr>, "GroupPtr g(core)");
static_assert(!std::is_assignable_v<GroupPtr&, NodeCorePtr>, "g = node->getCore()");
static_assert(!std::is_assignable_v<SimpleMaterialPtr&, MaterialPtr>, "sm = mg->getMaterial()");
static_assert(!std::is_convertible_v<const Node*, NodePtr>, "NodePtr p = pointer");
static_assert(!std::is_convertible_v<const Node&, NodePtr>, "NodePtr p = reference");

// References.
static_assert(!std::is_convertible_v<NodePtr, RefPtr<NodePtr>>, "RefPtr<NodePtr> r = n");
static_assert(std::is_constructible_v<RefPtr<NodePtr>, NodePtr>, "RefPtr<NodePtr> r(n)");
static_assert(std::is_convertible_v<RefPtr<NodePtr>, NodePtr>, "NodePtr n = r");
static_assert(std::is_constructible_v<RefPtr<MaterialPtr>, SimpleMaterialPtr>, "RefPtr<MaterialPtr> r(sm)");

// Comparisons.
static_assert(compiles<Less, NodePtr, NodePtr>);
static_assert(!compiles<Greater, NodePtr, NodePtr>, "n > m");
static_assert(compiles<Equal, NodePtr, GroupPtr>);
static_assert(compiles<Equal, NodePtr, FieldContainerPtr>);
static_assert(compiles<Equal, NodePtr, std::nullptr_t>);
static_assert(compiles<Equal, NodePtr, RefPtr<NodePtr>>);
static_assert(compiles<Equal, RefPtr<NodePtr>, NodePtr>);
static_assert(compiles<NotEqual, RefPtr<NodePtr>, NodePtr>);
static_assert(compiles<NotEqual, NodePtr, RefPtr<NodePtr>>);
static_assert(!std::is_default_constructible_v<std::hash<NodePtr>>, "std::unordered_set<NodePtr>");

// Names.
static_assert(compiles<SetName, NodePtr>);
static_assert(compiles<SetName, SimpleMaterialPtr>);
static_assert(compiles<SetName, GroupPtr>);
static_assert(compiles<SetName, RefPtr<NodePtr>>);
static_assert(!compiles<SetName, DepthChunkPtr>, "osg::setName(chunk, name)");

// What a constant node has.
static_assert(compiles<GetCore, const Node&>);
static_assert(compiles<GetNChildren, const Node&>);
static_assert(compiles<GetTravMask, const Node&>);
static_assert(!compiles<GetParent, const Node&>, "constant.getParent()");
static_assert(!compiles<GetChild, const Node&>, "constant.getChild(0)");
static_assert(!compiles<GetToWorld, const Node&>, "constant.getToWorld()");
static_assert(compiles<AddressOfGetWorldVolume, Node>, "exactly one overload, so that helpers can deduce its volume");

// Points.
static_assert(compiles<FromThreeZeros, Pnt3f>, "Pnt3f(0, 0, 0)");
static_assert(!compiles<FromZero, Pnt3f>, "Pnt3f(0) is ambiguous");
static_assert(std::is_convertible_v<Vec4f, Vec3f>);
static_assert(std::is_convertible_v<Vec3f, Pnt3f>);
static_assert(std::is_convertible_v<Pnt3f, Vec3f>);

class ContractTest : public quon::testing::SceneFixture {};

TEST_F(ContractTest, HandlesAreTestedInEveryUsualSpelling)
{
    const auto held = hold(Node::create());
    const NodePtr node = held;
    const NodePtr null(nullptr);
    const bool isNode = node;

    EXPECT_TRUE(isNode);
    EXPECT_TRUE(null == nullptr);
    EXPECT_TRUE(null == 0);
    EXPECT_FALSE(node == nullptr);
    EXPECT_TRUE(NullFC == null);
    EXPECT_TRUE(!null);
    EXPECT_TRUE(node ? true : false);
}

TEST_F(ContractTest, ReferencesPassWhereverHandlesPass)
{
    RefPtr<NodePtr> node(Node::create());
    const RefPtr<NodePtr> child(Node::create());
    const RefPtr<MaterialGroupPtr> group(MaterialGroup::create());

    beginEditCP(node, Node::CoreFieldMask | Node::ChildrenFieldMask);
    node->setCore(group);
    node->addChild(child);
    endEditCP(node, Node::CoreFieldMask | Node::ChildrenFieldMask);
    EXPECT_TRUE(child->getParent() == node);
    EXPECT_FALSE(child->getParent() != node);

    node->subChild(child);
    addRefCP(node);
    EXPECT_EQ(osg::getRefCount(node.get()), 2);
    NodePtr handle = node;
    clearRefCP(handle);
    node->setCore(NullFC);
    osg::setName(node, "name");
    osg::setName(node, std::string("other"));
    EXPECT_STREQ(osg::getName(node), "other");
}

TEST_F(ContractTest, HandlesLiveInContainersOfTheStandardLibrary)
{
    const auto held = hold(Node::create());
    const NodePtr node = held;
    std::set<NodePtr> set{node};
    std::map<NodePtr, NodePtr> map{{node, NullFC}};
    std::vector<NodePtr> vector{NodePtr(NullFC), node, node};
    std::stack<NodePtr> stack;

    stack.push(node);
    vector.erase(vector.begin());
    vector.insert(vector.end(), 2, node);
    const std::vector<NodePtr> moved(std::move(vector));
    std::set<NodePtr> assigned;
    assigned = set;

    EXPECT_EQ(assigned.erase(held), 1U);
    EXPECT_EQ(moved.size(), 4U);
    EXPECT_TRUE(map.begin()->second == NullFC);
    EXPECT_TRUE(stack.top() == node);
}

TEST_F(ContractTest, MaterialsAndChunksTakeDerivedHandles)
{
    const auto group = hold(MaterialGroup::create());
    const SimpleMaterialPtr material = SimpleMaterial::create();
    const DepthChunkPtr chunk = DepthChunk::create();
    MaterialPtr base;

    group->setMaterial(material);
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(chunk, -2);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    beginEditCP(chunk);
    endEditCP(chunk);
    setRefdCP(base, material);
    EXPECT_EQ(material.getRefCount(), 2);
    setRefdCP(base, NullFC);

    EXPECT_EQ(material.getRefCount(), 1);
}

TEST_F(ContractTest, GeometriesTakeFreshProperties)
{
    const auto geometry = hold(Geometry::create());
    geometry->setPositions(GeoPositions3f::create());
    const GeoPositions3fPtr positions = GeoPositions3fPtr::dcast(geometry->getPositions());
    positions->resize(1);

    positions->setValue(Pnt3f(1, 2, 3), 0);
    positions->setValue(Pnt3f(1, 2, 3), 0U);
    positions->addValue(Vec3f(4, 5, 6));
    beginEditCP(geometry, MaterialDrawable::MaterialFieldMask);
    endEditCP(geometry, MaterialDrawable::MaterialFieldMask);

    EXPECT_EQ(geometry->getPositions()->getValue(1), Pnt3f(4, 5, 6));
}

TEST_F(ContractTest, TheFourthColumnOfTheWorldMatrixIsReadAsVectorAndPoint)
{
    const auto node = hold(quon::testing::makeNode(quon::testing::makeTranslation(1, 2, 3)));

    const Vec4f column = node->getToWorld()[3];
    const Vec3f vector(column);
    const Pnt3f point(column);

    EXPECT_EQ(vector, Vec3f(1, 2, 3));
    EXPECT_EQ(point, Pnt3f(1, 2, 3));
}

TEST_F(ContractTest, TheVolumeTypeOfNodesIsNamed)
{
    const auto node = hold(quon::testing::makeNode(quon::testing::makeCube()));
    Node::VolumeType volume;

    node->getWorldVolume(volume);

    EXPECT_FALSE(volume.isEmpty());
}

TEST_F(ContractTest, TheNamespaceIsSpelledInCapitalsAsWell)
{
    static_assert(std::is_same_v<OSG::Node, osg::Node>);
    static_assert(OSG_MAJOR_VERSION == 1 && OSG_MINOR_VERSION == 8);
    static_assert(OSG_VERSION >= 0x010800);

    const auto node = hold(OSG::Node::create());

    EXPECT_TRUE(node != OSG::NullFC);
}

} // namespace
