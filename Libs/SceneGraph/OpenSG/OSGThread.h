// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>

namespace osg {

/// Leads to the change list. The scene graph itself knows one thread only.
class OSG_SYSTEM_DLLMAPPING Thread {
public:
    /// Never null once osgInit() was called, null before.
    static ChangeList* getCurrentChangeList() { return s_changeList; }

private:
    friend bool osgInit(Int32, Char8**, UInt16, UInt16, UInt16);

    static ChangeList* s_changeList;
};

} // namespace osg
