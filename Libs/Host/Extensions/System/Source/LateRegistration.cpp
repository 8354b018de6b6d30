// SPDX-License-Identifier: MIT
#include "LateRegistration.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGFieldContainerFactory.h>

namespace quon::extensions {

LateRegistration::LateRegistration()
{
    if (osg::GlobalSystemState == osg::Running) {
        osg::FieldContainerFactory::the()->initializePendingTypes();
    }
}

} // namespace quon::extensions
