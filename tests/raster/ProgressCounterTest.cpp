#include "effect/raster/ProgressCounter.h"

#include "tests/support/StrictHost.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace kovalune::test {
namespace {

using Calls = std::vector<std::pair<int, int>>;

host::judge::JudgeOptions recordingOptions(Calls& calls) {
    host::judge::JudgeOptions options = strictOptions();
    options.onProgress = [&calls](int current, int total) {
        calls.emplace_back(current, total);
        return true;
    };
    return options;
}

TEST(ProgressCounter, ReportsPercentagesAndDoesNotCount) {
    Calls calls;
    StrictHost host(recordingOptions(calls));
    ProgressCounter counter{host.in(), host.in()->effect_ref, 7, 2};
    EXPECT_EQ(counter.report(), PF_Err_NONE);
    EXPECT_EQ(counter.report(), PF_Err_NONE);
    EXPECT_EQ(counter.current, 2);
    EXPECT_EQ(calls, (Calls{{28, 100}, {28, 100}}));
}

TEST(ProgressCounter, TickCountsFirst) {
    Calls calls;
    StrictHost host(recordingOptions(calls));
    ProgressCounter counter{host.in(), host.in()->effect_ref, 4, 0};
    EXPECT_EQ(counter.tick(), PF_Err_NONE);
    EXPECT_EQ(counter.tick(), PF_Err_NONE);
    EXPECT_EQ(counter.current, 2);
    EXPECT_EQ(calls, (Calls{{25, 100}, {50, 100}}));
}

TEST(ProgressCounter, StopsAtAHundredAndTakesATotalOfZeroForDone) {
    Calls calls;
    StrictHost host(recordingOptions(calls));
    ProgressCounter beyond{host.in(), host.in()->effect_ref, 3, 9};
    EXPECT_EQ(beyond.report(), PF_Err_NONE);
    ProgressCounter nothing{host.in(), host.in()->effect_ref, 0, 0};
    EXPECT_EQ(nothing.report(), PF_Err_NONE);
    EXPECT_EQ(calls, (Calls{{100, 100}, {100, 100}}));
}

TEST(ProgressCounter, WithoutAHostIsSilentAndDoesNotCount) {
    ProgressCounter counter;
    counter.total = 5;
    EXPECT_EQ(counter.tick(), PF_Err_NONE);
    EXPECT_EQ(counter.report(), PF_Err_NONE);
    EXPECT_EQ(counter.current, 0);
}

TEST(ProgressCounter, HandsBackTheHostsAnswer) {
    StrictHost host;
    host::judge::FaultPlan plan;
    plan.cancelAtProgress = 2;
    host.arm(plan);
    ProgressCounter counter{host.in(), host.in()->effect_ref, 4, 0};
    EXPECT_EQ(counter.tick(), PF_Err_NONE);
    EXPECT_EQ(counter.tick(), PF_Interrupt_CANCEL);
    EXPECT_EQ(counter.current, 2) << "the step was made before the host was asked";
}

} // namespace
} // namespace kovalune::test
