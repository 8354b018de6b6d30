// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>

namespace quon::benchmarks {

/** Forgets the changes of the scene recorded so far, as a host does after each frame; their memory is kept. */
inline void forgetChanges()
{
    osg::Thread::getCurrentChangeList()->clearAll();
}

} // namespace quon::benchmarks
