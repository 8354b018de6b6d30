// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/LoadControl.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace quon::testing {

/** A door that a reader waits at, in its thread, until somebody opens it. */
class LoadGate {
public:
    void open()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }

    /** Waits like a reader that notices when it is cancelled. Who cancels does not know of the door: it is asked for.
     */
    void pass(const viewer::LoadControl& control)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_open) {
            control.throwIfCancelled();
            m_changed.wait_for(lock, std::chrono::milliseconds(1));
        }
    }

    /** Waits like a reader that cannot be cancelled. */
    void passStubbornly()
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open = false;
};

} // namespace quon::testing
