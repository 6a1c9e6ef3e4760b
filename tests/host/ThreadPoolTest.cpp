#include "host/ThreadPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <set>
#include <thread>

namespace kovalune::host {
namespace {

TEST(ThreadPool, RunsEveryPieceOnce) {
    ThreadPool pool;
    std::vector<std::atomic<int>> hits(200);
    pool.run(200, 3, [&](int, int piece) { ++hits[static_cast<std::size_t>(piece)]; });
    for (const std::atomic<int>& hit : hits)
        EXPECT_EQ(hit, 1);
}

TEST(ThreadPool, WithoutHelpersTheCallerWorksInOrder) {
    ThreadPool pool;
    std::vector<int> order;
    const std::thread::id caller = std::this_thread::get_id();
    pool.run(4, 0, [&](int slot, int piece) {
        EXPECT_EQ(slot, 0);
        EXPECT_EQ(std::this_thread::get_id(), caller);
        order.push_back(piece);
    });
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3}));
}

// Each piece waits until all four are inside, so the call ends only if four threads take part.
TEST(ThreadPool, HelpersAndCallerWorkAtOnceInSlotsOfTheirOwn) {
    ThreadPool pool;
    std::atomic<int> inside{0};
    std::mutex mutex;
    std::set<int> slots;
    pool.run(4, 3, [&](int slot, int) {
        ++inside;
        while (inside < 4)
            std::this_thread::yield();
        const std::lock_guard lock(mutex);
        slots.insert(slot);
    });
    EXPECT_EQ(slots, (std::set<int>{0, 1, 2, 3}));
}

TEST(ThreadPool, SlotsStayBelowTheNumberOfPieces) {
    ThreadPool pool;
    std::atomic<int> highest{0};
    for (int round = 0; round < 50; ++round) {
        pool.run(2, 7, [&](int slot, int) {
            int seen = highest;
            while (slot > seen && !highest.compare_exchange_weak(seen, slot)) {
            }
        });
    }
    EXPECT_LE(highest, 1);
}

TEST(ThreadPool, NestedCallsFinish) {
    ThreadPool pool;
    std::atomic<int> done{0};
    pool.run(4, 1, [&](int, int) { pool.run(4, 1, [&](int, int) { ++done; }); });
    EXPECT_EQ(done, 16);
}

TEST(ThreadPool, SeveralCallersShareTheWorkers) {
    ThreadPool pool;
    std::atomic<int> done{0};
    std::vector<std::thread> callers;
    callers.reserve(3);
    for (int i = 0; i < 3; ++i)
        callers.emplace_back([&] {
            for (int round = 0; round < 20; ++round)
                pool.run(8, 2, [&](int, int) { ++done; });
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(done, 3 * 20 * 8);
}

} // namespace
} // namespace kovalune::host
