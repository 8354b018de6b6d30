// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quon::testing {

/**
 * Captures what the process writes to standard error while a test runs.
 *
 * The main function of the tests starts a capture before each test and fails the test when anything is left in it at
 * the end. A test that expects a message takes it out and compares it.
 */
class StandardError {
public:
    /** Starts capturing; called by the main function before each test. */
    static void startCapture();

    /** Returns what was written since the start of the test or the last call of take(), and forgets it. */
    static std::string take();

    /** Ends capturing, restores the real standard error and returns what nobody took. */
    static std::string endCapture();
};

} // namespace quon::testing
