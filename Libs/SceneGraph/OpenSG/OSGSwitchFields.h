// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGGroupFields.h>

namespace osg {

class Switch;

typedef FCPtr<GroupPtr, Switch> SwitchPtr;
typedef RefPtr<SwitchPtr> SwitchRefPtr;

template <>
struct FieldDataTraits<SwitchPtr> {
    static const Char8* getName() { return "SwitchPtr"; }
};

typedef SField<SwitchPtr> SFSwitchPtr;
typedef MField<SwitchPtr> MFSwitchPtr;

} // namespace osg
