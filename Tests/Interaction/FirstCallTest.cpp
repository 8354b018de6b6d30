// SPDX-License-Identifier: MIT
#include <Interaction/SelectionManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace quon::interaction {

namespace {

// The first calls of a process: a program of its own.
TEST(FirstCallTest, TheSelectionManagerMayBeAskedForBySeveralThreadsAtOnce)
{
    constexpr std::size_t threads = 8;
    std::atomic<std::size_t> ready{0};
    std::vector<SelectionManager*> instances(threads);
    std::vector<std::thread> running;
    for (std::size_t thread = 0; thread < threads; ++thread) {
        running.emplace_back([&ready, &instance = instances[thread]] {
            ++ready;
            while (ready != threads) {
                std::this_thread::yield();
            }
            instance = SelectionManager::getInstance();
        });
    }
    for (std::thread& thread : running) {
        thread.join();
    }

    EXPECT_THAT(instances, ::testing::Each(SelectionManager::getInstance()));
    EXPECT_EQ(SelectionManager::getInstance()->getSelectionModel("none"), nullptr);
}

} // namespace

} // namespace quon::interaction
