// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <utility>

namespace quon::viewer {

/** Thrown by what a LoadControl has cancelled. No error: nobody asked for a reason. */
struct LoadCancelled {};

/**
 * The line between a load and whoever waits for it: what it is at goes out, the wish to end it goes in.
 *
 * Every operation may be called from any thread. The load has to look here; nothing is interrupted.
 */
class LoadControl {
public:
    /** What a load is doing. */
    enum class Step {
        Reading,   ///< the file is being read
        Preparing, ///< what was read is being made fit to be drawn
        Indexing,  ///< it is being sorted, to be picked in
        Building,  ///< the scene graph is being built
    };

    /**
     * Hears what is being done, and how much of this step is: from 0 to 1, or below 0 when nobody knows. Called in the
     * thread of the load.
     */
    using Progress = std::function<void(Step step, double share)>;

    LoadControl() = default;
    explicit LoadControl(Progress progress)
        : m_progress(std::move(progress))
    {}

    LoadControl(const LoadControl&) = delete;
    LoadControl& operator=(const LoadControl&) = delete;

    /** Asks the load to end at its next opportunity. A second call changes nothing. */
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }

    /** @throws LoadCancelled after cancel() */
    void throwIfCancelled() const
    {
        if (m_cancelled) {
            throw LoadCancelled();
        }
    }

    /** Called by the load. */
    void report(const Step step, const double share) const
    {
        if (m_progress) {
            m_progress(step, share);
        }
    }

private:
    std::atomic<bool> m_cancelled{false};
    Progress m_progress;
};

} // namespace quon::viewer
