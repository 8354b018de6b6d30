// SPDX-License-Identifier: MIT
#include <OpenSG/OSGGroup.h>

namespace osg {

FieldContainerType Group::_type(
    "Group", "NodeCore", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(Group, GroupPtr)
OSG_FIELD_CONTAINER_DEF(Group, GroupPtr)

Group::~Group() = default;

} // namespace osg
