#include "host/ThreadPool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

TEST(ThreadPool, RunsEveryPieceOnce) {
    ThreadPool pool;
    std::vector<std::atomic<int>> hits(200);
    pool.run(200, 3, [&](int, int piece) { ++hits[static_cast<std::size_t>(piece)]; });
    for (const std::atomic<int>& hit : hits) {
        EXPECT_EQ(hit, 1);
    }
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
        while (inside < 4) {
            std::this_thread::yield();
        }
        const std::lock_guard lock(mutex);
        slots.insert(slot);
    });
    EXPECT_EQ(slots, (std::set<int>{0, 1, 2, 3}));
}

/// All eight threads meet, so that as many wait for the job that follows.
void startSevenWorkers(ThreadPool& pool) {
    std::atomic<int> inside{0};
    pool.run(8, 7, [&](int, int) {
        ++inside;
        while (inside < 8) {
            std::this_thread::yield();
        }
    });
}

TEST(ThreadPool, SlotsStayBelowTheNumberOfHelpersAndCaller) {
    ThreadPool pool;
    startSevenWorkers(pool);
    std::atomic<int> highest{0};
    pool.run(64, 1, [&](int slot, int) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1)); // time for all that may come in
        int seen = highest;
        while (slot > seen && !highest.compare_exchange_weak(seen, slot)) {
        }
    });
    EXPECT_EQ(highest, 1);
}

// A thread for every slot but the caller's, so what is not started is no slot either.
TEST(ThreadPool, ThreadsAreStartedForPiecesOnly) {
    ThreadPool pool;
    pool.run(1, 7, [](int, int) {});
    EXPECT_EQ(pool.startedThreads(), 0);
    pool.run(2, 7, [](int, int) {});
    EXPECT_EQ(pool.startedThreads(), 1);
    pool.run(20, 3, [](int, int) {});
    EXPECT_EQ(pool.startedThreads(), 3);
}

TEST(ThreadPool, WhatTheCallersPieceThrowsComesOutAfterTheHelpersHaveLeft) {
    ThreadPool pool;
    std::atomic<int> inside{0};
    std::atomic<int> left{0};
    const auto work = [&](int slot, int) {
        ++inside;
        while (inside < 4) {
            std::this_thread::yield();
        }
        if (slot == 0) {
            throw std::runtime_error("the caller's piece");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        ++left;
    };
    EXPECT_THROW(pool.run(4, 3, work), std::runtime_error);
    EXPECT_EQ(left, 3);
    std::atomic<int> done{0};
    pool.run(8, 3, [&](int, int) { ++done; });
    EXPECT_EQ(done, 8);
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
    for (int i = 0; i < 3; ++i) {
        callers.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                pool.run(8, 2, [&](int, int) { ++done; });
            }
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(done, 3 * 20 * 8);
}

/// Lends so many threads, whatever is asked for.
class Lender : public LentThreads {
public:
    explicit Lender(int threads) : threads_(threads) {}

    void lend(int most, void (*work)(void*), void* argument) override {
        asked_ = most;
        std::vector<std::thread> threads;
        for (int i = 0; i < threads_; ++i) {
            threads.emplace_back(work, argument);
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

    int asked() const { return asked_; }

private:
    int threads_;
    std::atomic<int> asked_{0};
};

TEST(LentThreads, FewerOrMoreThanAskedForRunEveryPieceOnce) {
    for (const int lent : {0, 1, 3, 9}) {
        Lender lender(lent);
        ThreadPool pool(&lender);
        std::vector<std::atomic<int>> hits(200);
        std::atomic<int> highestSlot{0};
        pool.run(200, 3, [&](int slot, int piece) {
            ++hits[static_cast<std::size_t>(piece)];
            highestSlot = std::max(highestSlot.load(), slot);
        });
        for (const std::atomic<int>& hit : hits) {
            EXPECT_EQ(hit, 1) << lent;
        }
        EXPECT_EQ(lender.asked(), 4);
        EXPECT_LT(highestSlot, 4) << lent;
        EXPECT_EQ(pool.startedThreads(), 0) << lent;
    }
}

TEST(LentThreads, AreNotAskedForWithoutHelpers) {
    Lender lender(2);
    ThreadPool pool(&lender);
    pool.run(5, 0, [](int, int) {});
    EXPECT_EQ(lender.asked(), 0);
}

TEST(LentThreads, WhatTheyThrowComesOutOnTheCallersThread) {
    Lender lender(2);
    ThreadPool pool(&lender);
    EXPECT_THROW(pool.run(100, 3, [](int, int) { throw std::runtime_error("piece"); }), std::runtime_error);
}

} // namespace
} // namespace kovalune::test
