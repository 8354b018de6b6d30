// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quon::viewer {

/**
 * Shares work that falls into many independent pieces among the processors.
 *
 * The threads start with the first work and wait for the next one until the pool goes. What they work on must neither
 * edit a scene nor call OpenGL.
 */
class WorkerPool {
public:
    using Work = std::function<void(std::size_t)>;

    /** @param helpers how many threads work beside the one that asks; by default one for each further processor */
    explicit WorkerPool(std::size_t helpers = countHelpers());
    ~WorkerPool();

    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /** How many pieces are worked on at the same time. */
    std::size_t getWidth() const { return m_helpers + 1; }

    /**
     * Calls @p work once with each number below @p count, in any order and in several threads at once, and returns
     * when all calls have. Must not be called by two threads at once, nor by @p work itself.
     *
     * @param meanwhile called first in this thread, while the others begin; may be empty
     * @throws whatever a call threw first; numbers that nobody began with are left out then
     */
    void forEach(std::size_t count, const Work& work, const std::function<void()>& meanwhile = {});

private:
    static std::size_t countHelpers();

    void start();
    void run();
    void workOn(const Work& work, std::size_t count);
    template <class Call>
    void guard(const Call& call);

    std::size_t m_helpers;
    std::vector<std::thread> m_threads;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_done;
    std::atomic<std::size_t> m_next{0};
    const Work* m_work = nullptr; ///< null while there is nothing to begin with
    std::size_t m_count = 0;
    std::size_t m_busy = 0;         ///< threads that are at work
    std::uint64_t m_generation = 0; ///< of the work
    std::exception_ptr m_error;
    bool m_ends = false;
};

} // namespace quon::viewer
