// SPDX-License-Identifier: MIT
#pragma once

namespace quon::extensions {

/**
 * Makes types usable that are registered while OpenSG is running already.
 *
 * osgInit() creates the prototypes of all types registered until then. A library that is loaded later brings its types
 * too late for that: one static object of this class after the types of each source file catches up.
 */
class LateRegistration {
public:
    LateRegistration();
};

} // namespace quon::extensions
