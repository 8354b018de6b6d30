// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGGroup.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

// An installed OpenSG rejects these inside of a function template, where no test can see it; ours rejects the call.
namespace {

using namespace osg;

template <class ArgumentT, class = void>
struct HasContainerId : std::false_type {};
template <class ArgumentT>
struct HasContainerId<ArgumentT, std::void_t<decltype(osg::getContainerId(std::declval<ArgumentT>()))>>
    : std::true_type {};

template <class ArgumentT, class = void>
struct IsCast : std::false_type {};
template <class ArgumentT>
struct IsCast<ArgumentT, std::void_t<decltype(NodePtr::dcast(std::declval<ArgumentT>()))>> : std::true_type {};

static_assert(HasContainerId<NodePtr>::value);
static_assert(HasContainerId<FieldContainerPtr>::value);
static_assert(!HasContainerId<RefPtr<NodePtr>>::value, "getContainerId(r)");
static_assert(IsCast<FieldContainerPtr>::value);
static_assert(!IsCast<RefPtr<NodePtr>>::value, "NodePtr::dcast(r)");

TEST(EmbeddedContractTest, WorldVolumesAreBoxes)
{
    static_assert(std::is_same_v<Node::VolumeType, BoxVolume>);
    static_assert(std::is_same_v<Pnt2f, Point<Real32, 2>>);
    static_assert(std::is_same_v<decltype(&Node::getWorldVolume), void (Node::*)(BoxVolume&)>);
}

TEST(EmbeddedContractTest, HandlesAreNoLargerThanPointers)
{
    static_assert(sizeof(NodePtr) == sizeof(void*));
    static_assert(sizeof(GroupPtr) == sizeof(void*));
}

} // namespace
