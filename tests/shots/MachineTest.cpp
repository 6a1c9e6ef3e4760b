// What a run takes of the machine by default.

#include "render/shots/Machine.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kovalune::test {

using namespace shots;

namespace {

TEST(Machine, HasTheProcessorsThatTheProcessWasGiven) {
    EXPECT_GE(usableProcessors(), 1);
    const pid_t child = ::fork();
    if (child == 0) {
        cpu_set_t all;
        CPU_ZERO(&all);
        ::sched_getaffinity(0, sizeof all, &all);
        std::size_t first = 0;
        while (CPU_ISSET(first, &all) == 0) {
            ++first;
        }
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(first, &one);
        ::sched_setaffinity(0, sizeof one, &one);
        ::_exit(usableProcessors());
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST(Machine, IsDividedByWhatHalfTheMemoryBears) {
    DivisionRequest request;
    request.frames = 100;
    request.pixels = 1000000;
    const uint64_t bytes = bytesOfFrame(request.pixels, request.format);
    const auto jobs = [&](uint64_t memory) { return divided(request, 8, memory).jobs; };
    EXPECT_EQ(jobs(100 * bytes), 8);
    EXPECT_EQ(jobs(6 * bytes), 3);
    EXPECT_EQ(divided(request, 8, 6 * bytes).threads, 2);
    EXPECT_EQ(jobs(bytes), 1) << "one frame, whatever there is";
    EXPECT_EQ(jobs(0), 1) << "nothing is known";
    request.frames = 2;
    EXPECT_EQ(jobs(100 * bytes), 2);
    request.jobs = 5;
    EXPECT_EQ(jobs(bytes), 5) << "what is asked for stays";
}

} // namespace

} // namespace kovalune::test
