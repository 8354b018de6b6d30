// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

namespace quon::viewer {

/**
 * Returns the part that @p node belongs to: what a user takes for one thing and selects as a whole.
 *
 * That is the nearest node with a name, upwards from the node itself: geometry without a name is a piece of what it
 * hangs below, for example one of the colours of a screw. Without any name above, the node is a part of its own.
 *
 * @param node null gives null
 */
osg::NodePtr findPart(const osg::NodePtr& node);

} // namespace quon::viewer
