// Which passes a boundary blur asks the host for, what it reports, and what ends it.
#include "tests/blur/BoundaryBlurDrivers.h"

#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
namespace {

struct SeenPass {
    PF_IterateGenericFunc pass;
    PF_EffectWorld* src;
    PF_EffectWorld* dst; ///< or the world that gained alpha
    std::size_t taps;
    A_long iterations;
    double amount; ///< of a gain
};

std::vector<SeenPass>& seenPasses() {
    static std::vector<SeenPass> passes;
    return passes;
}

PF_Err notePass(A_long iterations, void* refcon, PF_IterateGenericFunc pass) {
    if (pass == alphaGain16 || pass == alphaGain32) {
        const auto& gain = *static_cast<const AlphaGainRecord*>(refcon);
        seenPasses().push_back({pass, nullptr, gain.world, 0, iterations, gain.amount});
        return PF_Err_NONE;
    }
    const auto& record = *static_cast<const BoundaryPassRecord*>(refcon);
    seenPasses().push_back(
        {pass, record.src, record.dst, static_cast<std::size_t>(record.kernel.tapCount), iterations, 0.0});
    return PF_Err_NONE;
}

std::vector<SeenPass> passesOf(const BoundaryDriver& driver, BoundaryScene& scene, int32_t repeat,
                               double amount) {
    seenPasses().clear();
    scene.host.utils().iterate_generic = notePass;
    EXPECT_EQ(scene.run(driver, repeat, amount), PF_Err_NONE);
    return seenPasses();
}

class BoundarySequence : public testing::TestWithParam<BoundaryDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BoundarySequence, testing::ValuesIn(kBoundaryDrivers), boundaryDriverName);

TEST_P(BoundarySequence, OfRepeatTwoGoesToDstTmpDst) {
    const BoundaryDriver driver = GetParam();
    Random random(251);
    BoundaryScene scene(driver, Mask(4, 4, 1), random);
    const std::vector<SeenPass> passes = passesOf(driver, scene, 2, 100.0);
    ASSERT_EQ(passes.size(), 4U);
    EXPECT_EQ(passes[0].pass, driver.horizontal);
    EXPECT_EQ(passes[0].src, scene.src.get());
    EXPECT_EQ(passes[0].dst, scene.dst.get());
    EXPECT_EQ(passes[0].taps, 100U);
    EXPECT_EQ(passes[1].pass, driver.gain);
    EXPECT_EQ(passes[1].dst, scene.dst.get());
    EXPECT_EQ(passes[1].amount, 100.0);
    EXPECT_EQ(passes[2].pass, driver.vertical);
    EXPECT_EQ(passes[2].src, scene.dst.get());
    EXPECT_EQ(passes[2].dst, scene.tmp.get());
    EXPECT_EQ(passes[2].taps, 100U);
    EXPECT_EQ(passes[3].pass, driver.horizontal);
    EXPECT_EQ(passes[3].src, scene.tmp.get());
    EXPECT_EQ(passes[3].dst, scene.dst.get());
    EXPECT_EQ(passes[3].taps, 10U);
}

TEST_P(BoundarySequence, AlternatesWithOneGainAndEndsInTheDestination) {
    const BoundaryDriver driver = GetParam();
    Random random(252);
    BoundaryScene scene(driver, Mask(4, 4, 1), random);
    for (int32_t repeat = 1; repeat <= 10; ++repeat) {
        std::vector<SeenPass> passes = passesOf(driver, scene, repeat, 40.0);
        ASSERT_EQ(passes.size(), static_cast<std::size_t>(repeat) + 2);
        EXPECT_EQ(passes[1].pass, driver.gain);
        EXPECT_EQ(passes[1].dst, passes[0].dst);
        EXPECT_EQ(passes[1].iterations, PF_Iterations_ONCE_PER_PROCESSOR);
        passes.erase(passes.begin() + 1);
        EXPECT_EQ(passes.front().src, scene.src.get());
        EXPECT_EQ(passes.back().dst, scene.dst.get());
        for (std::size_t i = 0; i < passes.size(); ++i) {
            EXPECT_EQ(passes[i].pass, i % 2 == 0 ? driver.horizontal : driver.vertical);
            EXPECT_EQ(passes[i].iterations, PF_Iterations_ONCE_PER_PROCESSOR);
            if (i > 0) {
                EXPECT_EQ(passes[i].src, passes[i - 1].dst);
                EXPECT_NE(passes[i].src, passes[i].dst);
            }
        }
    }
}

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

BoundaryScene observedScene(const BoundaryDriver& driver, std::vector<int>& percents, Random& random) {
    return {driver, observed(percents), wholeRect(9, 9), Mask(9, 9, 1), Mask(9, 9, 0), random};
}

ProgressCounter counterOf(BoundaryScene& scene) {
    return {scene.host.in(), scene.host.in()->effect_ref, 10, 3};
}

TEST_P(BoundarySequence, ReportsAfterEachPassButNotAfterTheGain) {
    const BoundaryDriver driver = GetParam();
    Random random(253);
    std::vector<int> percents;
    BoundaryScene scene = observedScene(driver, percents, random);
    const ProgressCounter counter = counterOf(scene);
    scene.host.clearCalls();
    EXPECT_EQ(scene.run(driver, 3, 9.0, &counter), PF_Err_NONE);
    EXPECT_EQ(percents, (std::vector<int>{30, 30, 30, 30}));
    EXPECT_EQ(counter.current, 3);
    const std::string pass = "iterate_generic";
    const std::string report = "progress";
    EXPECT_EQ(scene.host.callNames(),
              (std::vector<std::string>{pass, report, pass, pass, report, pass, report, pass, report}));
}

TEST_P(BoundarySequence, IsSilentWithoutACounterAndInACopy) {
    const BoundaryDriver driver = GetParam();
    Random random(254);
    std::vector<int> percents;
    BoundaryScene scene = observedScene(driver, percents, random);
    EXPECT_EQ(scene.run(driver, 2, 9.0, nullptr), PF_Err_NONE);
    const ProgressCounter withoutHost;
    EXPECT_EQ(scene.run(driver, 2, 9.0, &withoutHost), PF_Err_NONE);
    const ProgressCounter counter = counterOf(scene);
    EXPECT_EQ(scene.run(driver, 0, 9.0, &counter), PF_Err_NONE);
    EXPECT_TRUE(percents.empty());
}

TEST_P(BoundarySequence, CancelEndsItBehindThePassThatWasReported) {
    const BoundaryDriver driver = GetParam();
    Random random(255);
    for (int32_t cancelled = 1; cancelled <= 4; ++cancelled) {
        std::vector<int> percents;
        BoundaryScene scene = observedScene(driver, percents, random);
        PlainPicture dst = read(scene.dst);
        PlainPicture tmp = read(scene.tmp);
        PlainBoundaryBlur job = scene.plainJob(driver, 3, 20.0);
        job.steps = cancelled == 1 ? 1 : cancelled + 1; // the gain follows the first report
        plainBoundaryBlur(job, read(scene.src), dst, tmp);
        host::judge::FaultPlan plan;
        plan.cancelAtProgress = cancelled;
        scene.host.arm(plan);
        const ProgressCounter counter = counterOf(scene);
        EXPECT_EQ(scene.run(driver, 3, 20.0, &counter), PF_Interrupt_CANCEL);
        EXPECT_EQ(percents.size(), static_cast<std::size_t>(cancelled));
        EXPECT_EQ(difference(dst, scene.dst), "");
        EXPECT_EQ(difference(tmp, scene.tmp), "");
    }
}

TEST_P(BoundarySequence, FailingHostCallEndsItWithItsCode) {
    const BoundaryDriver driver = GetParam();
    Random random(256);
    // Of a repeat of 2: pass, report, gain, pass, report, pass, report; and how many steps were then done.
    const int done[] = {0, 1, 1, 2, 3, 3, 4};
    for (int call = 1; call <= 7; ++call) {
        std::vector<int> percents;
        BoundaryScene scene = observedScene(driver, percents, random);
        PlainPicture dst = read(scene.dst);
        PlainPicture tmp = read(scene.tmp);
        PlainBoundaryBlur job = scene.plainJob(driver, 2, 20.0);
        job.steps = done[call - 1];
        plainBoundaryBlur(job, read(scene.src), dst, tmp);
        host::judge::FaultPlan plan;
        plan.failCall = call;
        plan.failCode = 1234;
        scene.host.arm(plan);
        scene.host.clearCalls();
        const ProgressCounter counter = counterOf(scene);
        EXPECT_EQ(scene.run(driver, 2, 20.0, &counter), 1234) << "call " << call;
        EXPECT_EQ(static_cast<int>(scene.host.callNames().size()), call) << "nothing is called behind it";
        EXPECT_EQ(difference(dst, scene.dst), "") << "call " << call;
        EXPECT_EQ(difference(tmp, scene.tmp), "") << "call " << call;
    }
}

TEST_P(BoundarySequence, FailingCopyHandsBackTheHostsCode) {
    const BoundaryDriver driver = GetParam();
    Random random(257);
    std::vector<int> percents;
    BoundaryScene scene = observedScene(driver, percents, random);
    host::judge::FaultPlan plan;
    plan.failCall = 1;
    plan.failCode = 77;
    scene.host.arm(plan);
    EXPECT_EQ(scene.run(driver, 0, 20.0), 77);
}

} // namespace
} // namespace kovalune::test
