// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGFieldContainerType.h>

namespace quon::extensions {

/** Lets OpenSG's actions treat @p type, derived from osg::Group, like a group: their functors are not inherited. */
void registerGroupActions(const osg::FieldContainerType& type);

} // namespace quon::extensions
