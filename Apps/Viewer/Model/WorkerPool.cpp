// SPDX-License-Identifier: MIT
#include "Viewer/Model/WorkerPool.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

namespace quon::viewer {

namespace {

// More than that wait for memory rather than for one another.
constexpr std::size_t MostHelpers = 7;

} // namespace

WorkerPool::WorkerPool(const std::size_t helpers)
    : m_helpers(helpers)
{}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ends = true;
    }
    m_wake.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

std::size_t WorkerPool::countHelpers()
{
    return std::min<std::size_t>(std::max(std::thread::hardware_concurrency(), 1U) - 1, MostHelpers);
}

void WorkerPool::forEach(const std::size_t count, const Work& work, const std::function<void()>& meanwhile)
{
    const bool isShared = count > (meanwhile ? 0U : 1U);
    if (isShared) {
        start();
    }
    m_next = 0;
    if (!isShared || m_threads.empty()) {
        if (meanwhile) {
            meanwhile();
        }
        for (std::size_t i = 0; i < count; ++i) {
            work(i);
        }
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_work = &work;
        m_count = count;
        ++m_generation;
    }
    m_wake.notify_all();
    if (meanwhile) {
        guard(meanwhile);
    }
    workOn(work, count);
    std::unique_lock<std::mutex> lock(m_mutex);
    // Who wakes up too late finds nothing and need not be waited for.
    m_work = nullptr;
    m_done.wait(lock, [this] { return m_busy == 0; });
    if (const std::exception_ptr error = std::exchange(m_error, nullptr); error != nullptr) {
        std::rethrow_exception(error);
    }
}

void WorkerPool::start()
{
    if (!m_threads.empty()) {
        return;
    }
    try {
        while (m_threads.size() < m_helpers) {
            m_threads.emplace_back([this] { run(); });
        }
    } catch (const std::system_error&) {
        // Fewer do as well.
        m_helpers = m_threads.size();
    }
}

void WorkerPool::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (std::uint64_t seen = 0; true;) {
        m_wake.wait(lock, [&] { return m_ends || (m_work != nullptr && m_generation != seen); });
        if (m_ends) {
            return;
        }
        seen = m_generation;
        const Work& work = *m_work;
        const std::size_t count = m_count;
        ++m_busy;
        lock.unlock();
        workOn(work, count);
        lock.lock();
        if (--m_busy == 0) {
            m_done.notify_one();
        }
    }
}

void WorkerPool::workOn(const Work& work, const std::size_t count)
{
    guard([&] {
        for (std::size_t i = m_next++; i < count; i = m_next++) {
            work(i);
        }
    });
}

/// Keeps what a call throws for the one who asked, and lets nobody begin anything any more.
template <class Call>
void WorkerPool::guard(const Call& call)
{
    try {
        call();
    } catch (...) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_next = std::numeric_limits<std::size_t>::max() / 2;
        if (m_error == nullptr) {
            m_error = std::current_exception();
        }
    }
}

} // namespace quon::viewer
