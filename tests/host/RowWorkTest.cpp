#include "host/RowWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

constexpr std::size_t kManyBytes = std::size_t{1} << 20; ///< of a row, far beyond what is left to one thread

HostOptions ofThreads(int threads) {
    HostOptions options;
    options.threads = threads;
    return options;
}

TEST(RowWork, EveryRowIsInOnePart) {
    ThreadPool threads;
    const HostOptions options = ofThreads(3);
    const RowWork work(threads, options);
    for (const A_long rows : {0, 1, 2, 7, 1000}) {
        for (const std::size_t bytesPerRow :
             {std::size_t{0}, std::size_t{1}, std::size_t{4097}, kManyBytes}) {
            std::vector<std::atomic<int>> hits(static_cast<std::size_t>(rows));
            work.run(rows, bytesPerRow, [&](A_long first, A_long end) {
                EXPECT_LT(first, end);
                for (A_long row = first; row < end; ++row) {
                    ++hits[static_cast<std::size_t>(row)];
                }
            });
            for (const std::atomic<int>& hit : hits) {
                EXPECT_EQ(hit, 1) << rows << " rows of " << bytesPerRow;
            }
        }
    }
}

// Each part waits until both are inside, so the call ends only if two threads take part.
TEST(RowWork, LargeRowsAreDividedOverTheThreads) {
    ThreadPool threads;
    const HostOptions options = ofThreads(2);
    std::atomic<int> inside{0};
    RowWork(threads, options).run(2, kManyBytes, [&](A_long, A_long) {
        ++inside;
        while (inside < 2) {
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(inside, 2);
}

TEST(RowWork, FewBytesStayOnTheCallersThread) {
    ThreadPool threads;
    const HostOptions options = ofThreads(4);
    int parts = 0;
    RowWork(threads, options).run(16, 1024, [&](A_long first, A_long end) {
        ++parts;
        EXPECT_EQ(first, 0);
        EXPECT_EQ(end, 16);
    });
    EXPECT_EQ(parts, 1);
    EXPECT_EQ(threads.startedThreads(), 0);
}

TEST(RowWork, AHostWithoutThreadsStartsNone) {
    ThreadPool threads;
    HostOptions options = ofThreads(4);
    options.threaded = false;
    A_long rows = 0;
    RowWork(threads, options).run(8, kManyBytes, [&](A_long first, A_long end) { rows += end - first; });
    EXPECT_EQ(rows, 8);
    EXPECT_EQ(threads.startedThreads(), 0);
}

} // namespace
} // namespace kovalune::test
