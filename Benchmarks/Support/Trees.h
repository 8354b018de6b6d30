// SPDX-License-Identifier: MIT
#pragma once

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <cstddef>

namespace quon::benchmarks {

/** Returns a tree of @p count groups, each below the one before. */
testing::NodeRef makeDeepTree(std::size_t count);

/** Returns a tree of @p count groups, all others below the first. */
testing::NodeRef makeWideTree(std::size_t count);

/** Returns a machine of @p count parts, which share their shapes; see PartScene. */
testing::NodeRef makeMixedTree(std::size_t count);

/** Returns the number of nodes of a tree. */
std::size_t countNodes(const osg::NodePtr& root);

} // namespace quon::benchmarks
