// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGLog.h>

namespace osg {

enum SystemState { Startup = 0, Running = 1, Shutdown = 2 };

/// Startup until osgInit(), Running from then on, Shutdown from osgExit() on.
extern OSG_BASE_DLLMAPPING SystemState GlobalSystemState;

/**
 * Starts the scene graph: makes one prototype of each container type and the change list.
 *
 * Before this call no container can be created: every create() returns null. Calling it again while running changes
 * nothing but initialises types that were registered since. `osgInit(0, nullptr)` is legal.
 *
 * The scene graph keeps one copy of every container's data and has no locks: use it from one thread.
 *
 * @param argc not used
 * @param argv not used
 * @param major version the client was compiled against; leave the three to their defaults
 * @return true; the process ends when the client was compiled against another version
 */
OSG_BASE_DLLMAPPING bool osgInit(Int32 argc = 0, Char8** argv = nullptr, UInt16 major = OSG_MAJOR_VERSION,
                                 UInt16 minor = OSG_MINOR_VERSION, UInt16 release = OSG_RELEASE_VERSION);

/**
 * Ends the scene graph: destroys the prototypes, so that create() returns null again, and so do the functions that make
 * copies, nodes for cores and simple geometries.
 *
 * Containers that are still referenced stay usable and may be released afterwards. osgInit() may start it anew;
 * identifiers go on where they were.
 */
OSG_BASE_DLLMAPPING bool osgExit();

} // namespace osg
