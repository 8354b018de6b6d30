// SPDX-License-Identifier: MIT
#include "Viewer/Model/WorkerPool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Each;
using viewer::WorkerPool;

TEST(WorkerPoolTest, EachNumberIsWorkedOnOnce)
{
    WorkerPool pool(3);

    for (const std::size_t count : {std::size_t(0), std::size_t(1), std::size_t(2), std::size_t(1000)}) {
        std::vector<std::atomic<int>> calls(count);
        pool.forEach(count, [&](const std::size_t i) { ++calls[i]; });
        EXPECT_THAT(std::vector<int>(calls.begin(), calls.end()), Each(1)) << count;
    }
}

TEST(WorkerPoolTest, NothingIsAtWorkAnyMoreAfterwards)
{
    WorkerPool pool(3);

    for (std::size_t round = 1; round <= 2000; ++round) {
        std::vector<std::size_t> values(7);
        pool.forEach(values.size(), [&](const std::size_t i) { values[i] = round; });
        ASSERT_THAT(values, Each(round));
    }
}

TEST(WorkerPoolTest, SeveralThreadsWorkAtTheSameTime)
{
    WorkerPool pool(2);
    std::mutex mutex;
    std::set<std::thread::id> threads;
    std::atomic<std::size_t> waiting{0};

    // Each piece waits for the others: one thread alone would never come back.
    pool.forEach(pool.getWidth(), [&](std::size_t) {
        ++waiting;
        while (waiting < pool.getWidth()) {
            std::this_thread::yield();
        }
        const std::lock_guard<std::mutex> lock(mutex);
        threads.insert(std::this_thread::get_id());
    });

    EXPECT_EQ(pool.getWidth(), 3U);
    EXPECT_EQ(threads.size(), 3U);
}

TEST(WorkerPoolTest, WithoutHelpersTheCallerDoesEverything)
{
    WorkerPool pool(0);
    std::set<std::thread::id> threads;

    pool.forEach(10, [&](std::size_t) { threads.insert(std::this_thread::get_id()); });

    EXPECT_EQ(threads, std::set<std::thread::id>{std::this_thread::get_id()});
}

TEST(WorkerPoolTest, WhatACallThrowsReachesTheCaller)
{
    WorkerPool pool(2);
    const auto fail = [](const std::size_t i) {
        if (i == 5) {
            throw std::runtime_error("five");
        }
    };

    EXPECT_THROW(pool.forEach(1000, fail), std::runtime_error);
    EXPECT_THROW(WorkerPool(0).forEach(1000, fail), std::runtime_error);

    std::atomic<int> calls{0};
    pool.forEach(100, [&](std::size_t) { ++calls; });
    EXPECT_EQ(calls, 100);
}

TEST(WorkerPoolTest, TheCallerMayDoSomethingElseMeanwhile)
{
    for (const std::size_t helpers : {std::size_t(0), std::size_t(2)}) {
        for (const std::size_t count : {std::size_t(0), std::size_t(1), std::size_t(5)}) {
            WorkerPool pool(helpers);
            std::thread::id thread;
            std::atomic<std::size_t> calls{0};
            pool.forEach(
                count, [&](std::size_t) { ++calls; }, [&] { thread = std::this_thread::get_id(); });
            EXPECT_EQ(thread, std::this_thread::get_id());
            EXPECT_EQ(calls, count);
        }
    }
}

TEST(WorkerPoolTest, OthersBeginBeforeTheCallerIsReady)
{
    WorkerPool pool(1);
    std::atomic<bool> isBegun{false};
    std::thread::id worker;

    pool.forEach(
        1,
        [&](std::size_t) {
            worker = std::this_thread::get_id();
            isBegun = true;
        },
        [&] {
            while (!isBegun) {
                std::this_thread::yield();
            }
        });

    EXPECT_TRUE(isBegun);
    EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(WorkerPoolTest, WhatTheCallerThrowsMeanwhileReachesItself)
{
    WorkerPool pool(2);
    const auto fail = [] { throw std::runtime_error("meanwhile"); };
    std::atomic<int> calls{0};

    EXPECT_THROW(pool.forEach(
                     10, [&](std::size_t) { ++calls; }, fail),
                 std::runtime_error);

    EXPECT_LE(calls, 10);
}

} // namespace

} // namespace quon::testing
