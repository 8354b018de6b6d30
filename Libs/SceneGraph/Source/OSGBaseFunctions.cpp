// SPDX-License-Identifier: MIT
#include <OpenSG/OSGBaseFunctions.h>

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGFieldMemory.h>
#include <OpenSG/OSGThread.h>

#include <cstdlib>

namespace osg {

SystemState GlobalSystemState = Startup;

bool osgInit(Int32, Char8**, const UInt16 major, const UInt16 minor, const UInt16 release)
{
    if (major != OSG_MAJOR_VERSION || minor != OSG_MINOR_VERSION || release != OSG_RELEASE_VERSION) {
        FFATAL(("osgInit: compiled against version %d.%d.%d, but this is %s.\n", int(major), int(minor), int(release),
                OSG_VERSION_STRING));
        std::exit(1);
    }
    if (GlobalSystemState != Running) {
        GlobalSystemState = Running;
        FieldMemory::startPools();
        if (Thread::s_changeList == nullptr) {
            Thread::s_changeList = new ChangeList; // lives as long as the process, as containers may
        }
        Thread::s_changeList->setReadOnly(true);
        FieldContainerFactory::the()->initializePendingTypes();
        Thread::s_changeList->clearAll();
        Thread::s_changeList->setReadOnly(ChangeList().isReadOnly());
    } else {
        FieldContainerFactory::the()->initializePendingTypes();
    }
    return true;
}

bool osgExit()
{
    if (GlobalSystemState == Running) {
        GlobalSystemState = Shutdown;
        FieldContainerFactory::the()->destroyPrototypes();
    }
    return true;
}

} // namespace osg
