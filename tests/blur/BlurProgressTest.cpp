#include "tests/blur/BlurDrivers.h"

#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
namespace {

class BlurProgress : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurProgress, testing::ValuesIn(kBlurDrivers), driverName);

host::judge::JudgeOptions observed(std::vector<int>& percents) {
    host::judge::JudgeOptions options = strictOptions();
    options.recordCalls = true;
    options.onProgress = [&percents](int current, int total) {
        EXPECT_EQ(total, 100);
        percents.push_back(current);
        return true;
    };
    return options;
}

ProgressCounter counterOf(BlurScene& scene, int32_t total, int32_t current) {
    return {scene.host.in(), scene.host.in()->effect_ref, total, current};
}

TEST_P(BlurProgress, IsReportedAfterEachPassAndNotCounted) {
    const BlurDriver driver = GetParam();
    Random random(51);
    std::vector<int> percents;
    BlurScene scene(driver, observed(percents), wholeRect(8, 8), Mask(8, 8, 1), random);
    const ProgressCounter counter = counterOf(scene, 10, 3);
    EXPECT_EQ(scene.run(driver, 3, 9.0, &counter), PF_Err_NONE);
    EXPECT_EQ(percents, (std::vector<int>{30, 30, 30, 30}));
    EXPECT_EQ(counter.current, 3);
    std::vector<std::string> order;
    for (const std::string& call : scene.host.callNames()) {
        if (call == "iterate_generic" || call == "progress") {
            order.push_back(call);
        }
    }
    ASSERT_EQ(order.size(), 8U);
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(order[i], i % 2 == 0 ? "iterate_generic" : "progress");
    }
}

TEST_P(BlurProgress, IsCutAtAHundred) {
    const BlurDriver driver = GetParam();
    Random random(52);
    std::vector<int> percents;
    BlurScene scene(driver, observed(percents), wholeRect(8, 8), Mask(8, 8, 1), random);
    const ProgressCounter beyond = counterOf(scene, 2, 5);
    EXPECT_EQ(scene.run(driver, 1, 9.0, &beyond), PF_Err_NONE);
    const ProgressCounter nothing = counterOf(scene, 0, 0);
    EXPECT_EQ(scene.run(driver, 1, 9.0, &nothing), PF_Err_NONE);
    EXPECT_EQ(percents, (std::vector<int>{100, 100, 100, 100}));
}

TEST_P(BlurProgress, IsSilentWithoutACounterOrItsHost) {
    const BlurDriver driver = GetParam();
    Random random(53);
    std::vector<int> percents;
    BlurScene scene(driver, observed(percents), wholeRect(8, 8), Mask(8, 8, 1), random);
    EXPECT_EQ(scene.run(driver, 2, 9.0, nullptr), PF_Err_NONE);
    const ProgressCounter withoutHost;
    EXPECT_EQ(scene.run(driver, 2, 9.0, &withoutHost), PF_Err_NONE);
    EXPECT_TRUE(percents.empty());
}

TEST_P(BlurProgress, IsNotReportedByACopy) {
    const BlurDriver driver = GetParam();
    Random random(54);
    std::vector<int> percents;
    BlurScene scene(driver, observed(percents), wholeRect(8, 8), Mask(8, 8, 1), random);
    const ProgressCounter counter = counterOf(scene, 10, 3);
    EXPECT_EQ(scene.run(driver, 0, 9.0, &counter), PF_Err_NONE);
    EXPECT_TRUE(percents.empty());
}

TEST_P(BlurProgress, CancelEndsTheBlurBehindThePassThatWasReported) {
    const BlurDriver driver = GetParam();
    Random random(55);
    for (int32_t cancelled = 1; cancelled <= 4; ++cancelled) {
        std::vector<int> percents;
        BlurScene scene(driver, observed(percents), wholeRect(9, 9), Mask(9, 9, 1), random);
        PlainPicture dst = read(scene.dst);
        PlainPicture tmp = read(scene.tmp);
        PlainBlur job = scene.plainJob(driver, 3, 20.0);
        job.passes = cancelled;
        plainBlur(job, read(scene.src), dst, tmp);
        host::judge::FaultPlan plan;
        plan.cancelAtProgress = cancelled;
        scene.host.arm(plan);
        const ProgressCounter counter = counterOf(scene, 10, 3);
        EXPECT_EQ(scene.run(driver, 3, 20.0, &counter), PF_Interrupt_CANCEL);
        EXPECT_EQ(percents.size(), static_cast<std::size_t>(cancelled));
        EXPECT_EQ(difference(dst, scene.dst), "");
        EXPECT_EQ(difference(tmp, scene.tmp), "");
    }
}

TEST_P(BlurProgress, FailingHostCallEndsTheBlurWithItsCode) {
    const BlurDriver driver = GetParam();
    Random random(56);
    // With a repeat of 2, host calls are iterate_generic and progress in turn, three times.
    for (int call = 1; call <= 6; ++call) {
        std::vector<int> percents;
        BlurScene scene(driver, observed(percents), wholeRect(9, 9), Mask(9, 9, 1), random);
        PlainPicture dst = read(scene.dst);
        PlainPicture tmp = read(scene.tmp);
        PlainBlur job = scene.plainJob(driver, 2, 20.0);
        job.passes = call / 2;
        plainBlur(job, read(scene.src), dst, tmp);
        host::judge::FaultPlan plan;
        plan.failCall = call;
        plan.failCode = 1234;
        scene.host.arm(plan);
        scene.host.clearCalls();
        const ProgressCounter counter = counterOf(scene, 10, 3);
        EXPECT_EQ(scene.run(driver, 2, 20.0, &counter), 1234) << "call " << call;
        EXPECT_EQ(static_cast<int>(scene.host.callNames().size()), call) << "nothing is called behind it";
        EXPECT_EQ(difference(dst, scene.dst), "") << "call " << call;
        EXPECT_EQ(difference(tmp, scene.tmp), "") << "call " << call;
    }
}

} // namespace
} // namespace kovalune::test
