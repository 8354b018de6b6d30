// SPDX-License-Identifier: MIT
#include <OpenSG/OSGSwitch.h>

namespace osg {

FieldDescription* Switch::_desc[] = {
    describeField<&Switch::m_sfChoice>("choice", ChoiceFieldId),
};

FieldContainerType Switch::_type(
    "Switch", "Group", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr, _desc, sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(Switch, SwitchPtr)
OSG_FIELD_CONTAINER_DEF(Switch, SwitchPtr)

Switch::~Switch() = default;

} // namespace osg
