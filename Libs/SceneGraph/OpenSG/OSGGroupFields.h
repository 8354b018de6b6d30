// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGNodeCoreFields.h>

namespace osg {

class Group;

typedef FCPtr<NodeCorePtr, Group> GroupPtr;
typedef RefPtr<GroupPtr> GroupRefPtr;

template <>
struct FieldDataTraits<GroupPtr> {
    static const Char8* getName() { return "GroupPtr"; }
};

typedef SField<GroupPtr> SFGroupPtr;
typedef MField<GroupPtr> MFGroupPtr;

} // namespace osg
