#include "effect/platform/Platform.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

namespace kovalune::test {
using namespace platform;
namespace {

CriticalSection processWide;

TEST(CriticalSection, LetsOneThreadInAtATime) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 5000;
    int inside = 0;
    int most = 0;
    int total = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                const std::lock_guard guard(processWide);
                ++inside;
                most = inside > most ? inside : most;
                ++total;
                --inside;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(total, kThreads * kRounds);
}

TEST(CriticalSection, LetsItsOwnThreadInAgainAndOthersAfterTheLastLeave) {
    CriticalSection section;
    std::atomic<bool> entered = false;
    section.lock();
    section.lock();
    std::thread other([&] {
        const std::lock_guard guard(section);
        entered = true;
    });
    section.unlock();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(entered);
    section.unlock();
    other.join();
    EXPECT_TRUE(entered);
}

TEST(PathSeparator, IsTheSystems) {
#ifdef _WIN32
    EXPECT_EQ(kPathSeparator, '\\');
#else
    EXPECT_EQ(kPathSeparator, '/');
#endif
}

} // namespace
} // namespace kovalune::test
