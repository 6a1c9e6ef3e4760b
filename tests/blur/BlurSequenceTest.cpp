// Which passes a blur asks the host for, with which worlds and kernels, what it reports, and what ends it.
#include "tests/blur/BlurDrivers.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

struct SeenPass {
    PF_IterateGenericFunc pass;
    PF_EffectWorld* src;
    PF_EffectWorld* dst;
    std::vector<int32_t> taps;
    A_long iterations;
};

struct SeenGain {
    PF_IterateGenericFunc pass;
    PF_EffectWorld* world;
    double amount;
    A_long iterations;
    std::size_t after; ///< how many passes
};

/// What a host without pixels was asked for.
struct Seen {
    bool isBoundary = false;
    std::vector<SeenPass> passes;
    std::vector<SeenGain> gains;
};

Seen& seen() {
    static Seen all;
    return all;
}

template <class Record>
void noteRecord(A_long iterations, const Record& record, PF_IterateGenericFunc pass) {
    seen().passes.push_back({pass,
                             record.src,
                             record.dst,
                             {record.kernel.taps(), record.kernel.taps() + record.kernel.tapCount},
                             iterations});
}

PF_Err notePass(A_long iterations, void* refcon, PF_IterateGenericFunc pass) {
    if (pass == alphaGain16 || pass == alphaGain32) {
        const auto& gain = *static_cast<const AlphaGainRecord*>(refcon);
        seen().gains.push_back({pass, gain.world, gain.amount, iterations, seen().passes.size()});
    } else if (seen().isBoundary) {
        noteRecord(iterations, *static_cast<const BoundaryPassRecord*>(refcon), pass);
    } else {
        noteRecord(iterations, *static_cast<const BlurPassRecord*>(refcon), pass);
    }
    return PF_Err_NONE;
}

Seen seenIn(BlurScene& scene, const BlurJob& job) {
    seen() = {};
    seen().isBoundary = scene.driver.isBoundary();
    scene.host.utils().iterate_generic = notePass;
    EXPECT_EQ(scene.run(job), PF_Err_NONE);
    return seen();
}

class BlurSequenceTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurSequenceTest, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurSequenceTest, OfRepeatTwoGoesToDstTmpDst) {
    const BlurDriver driver = GetParam();
    Random random(41);
    BlurScene scene(driver, Mask(4, 4, 1), random);
    const std::vector<SeenPass> passes = seenIn(scene, scene.job(2, 100.0)).passes;
    ASSERT_EQ(passes.size(), 3U);
    EXPECT_EQ(passes[0].pass, driver.horizontal);
    EXPECT_EQ(passes[0].src, scene.src.get());
    EXPECT_EQ(passes[0].dst, scene.dst.get());
    EXPECT_EQ(passes[0].taps, plainKernel(100, 1250.0).taps);
    EXPECT_EQ(passes[1].pass, driver.vertical);
    EXPECT_EQ(passes[1].src, scene.dst.get());
    EXPECT_EQ(passes[1].dst, scene.tmp.get());
    EXPECT_EQ(passes[1].taps, plainKernel(100, 1250.0).taps);
    EXPECT_EQ(passes[2].pass, driver.horizontal);
    EXPECT_EQ(passes[2].src, scene.tmp.get());
    EXPECT_EQ(passes[2].dst, scene.dst.get());
    EXPECT_EQ(passes[2].taps, plainKernel(10, 100.0).taps);
}

TEST_P(BlurSequenceTest, AlternatesAndEndsInTheDestination) {
    const BlurDriver driver = GetParam();
    Random random(42);
    BlurScene scene(driver, Mask(4, 4, 1), random);
    for (int32_t repeat = 1; repeat <= 10; ++repeat) {
        const std::vector<SeenPass> passes = seenIn(scene, scene.job(repeat, 40.0)).passes;
        ASSERT_EQ(passes.size(), static_cast<std::size_t>(repeat) + 1);
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

/// A boundary blur's one gain follows the first pass, over what that wrote.
TEST_P(BlurSequenceTest, GainsAlphaOnceAndOnlyInABoundaryBlur) {
    const BlurDriver driver = GetParam();
    Random random(43);
    BlurScene scene(driver, Mask(4, 4, 1), random);
    for (int32_t repeat = 1; repeat <= 10; ++repeat) {
        const Seen all = seenIn(scene, scene.job(repeat, 40.0));
        ASSERT_EQ(all.gains.size(), driver.isBoundary() ? 1U : 0U);
        for (const SeenGain& gain : all.gains) {
            EXPECT_EQ(gain.pass, driver.gain);
            EXPECT_EQ(gain.world, all.passes[0].dst);
            EXPECT_EQ(gain.amount, 40.0);
            EXPECT_EQ(gain.iterations, PF_Iterations_ONCE_PER_PROCESSOR);
            EXPECT_EQ(gain.after, 1U);
        }
    }
}

TEST_P(BlurSequenceTest, ShrinksByTheRootOfTheAmount) {
    Random random(44);
    BlurScene scene(GetParam(), Mask(4, 4, 1), random);
    // The cube root of 27 is 3, or as near as a double comes.
    const std::vector<SeenPass> passes = seenIn(scene, scene.job(3, 27.0)).passes;
    ASSERT_EQ(passes.size(), 4U);
    EXPECT_EQ(passes[0].taps.size(), 27U);
    EXPECT_EQ(passes[1].taps.size(), 27U);
    EXPECT_NEAR(static_cast<double>(passes[2].taps.size()), 9.0, 1.0);
    EXPECT_NEAR(static_cast<double>(passes[3].taps.size()), 3.0, 1.0);
    for (std::size_t pass = 2; pass < 4; ++pass) {
        EXPECT_LT(passes[pass].taps[0], 2 * passes[pass].taps.back()) << "later kernels are flat-topped";
    }
}

TEST_P(BlurSequenceTest, AsksForAsManyIterationsAsItIsGiven) {
    Random random(45);
    BlurScene scene(GetParam(), Mask(4, 4, 1), random);
    BlurJob job = scene.job(1, 5.0);
    job.iterations = 6;
    const std::vector<SeenPass> passes = seenIn(scene, job).passes;
    ASSERT_EQ(passes.size(), 2U);
    EXPECT_EQ(passes[0].iterations, 6);
    EXPECT_EQ(passes[1].iterations, 6);
}

/// The host calls of a blur in order; a gain is a step, and is not reported.
struct HostCall {
    bool isStep;
};

std::vector<HostCall> hostCallsOf(const BlurDriver& driver, int32_t repeat) {
    std::vector<HostCall> calls;
    for (int32_t pass = 0; pass <= repeat; ++pass) {
        calls.push_back({true});
        calls.push_back({false});
        if (pass == 0 && driver.isBoundary()) {
            calls.push_back({true});
        }
    }
    return calls;
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

/// A blur whose reports are watched.
struct Observed {
    std::vector<int> percents;
    BlurScene scene;

    explicit Observed(const BlurDriver& driver, Random& random)
        : scene(driver, observed(percents), wholeRect(9, 9), Mask(9, 9, 1), Mask(9, 9, 0), random) {
        scene.host.clearCalls();
    }

    ProgressCounter counter(int32_t total, int32_t current) {
        return {scene.host.in(), scene.host.in()->effect_ref, total, current};
    }
};

class BlurProgressTest : public testing::TestWithParam<BlurDriver> {};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurProgressTest, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurProgressTest, IsReportedAfterEachPassAndNotCounted) {
    Random random(51);
    Observed blur(GetParam(), random);
    const ProgressCounter counter = blur.counter(10, 3);
    EXPECT_EQ(blur.scene.run(3, 9.0, &counter), PF_Err_NONE);
    EXPECT_EQ(blur.percents, (std::vector<int>{30, 30, 30, 30}));
    EXPECT_EQ(counter.current, 3);
    std::vector<std::string> expected;
    for (const HostCall& call : hostCallsOf(GetParam(), 3)) {
        expected.push_back(call.isStep ? "iterate_generic" : "progress");
    }
    EXPECT_EQ(blur.scene.host.callNames(), expected);
}

TEST_P(BlurProgressTest, IsCutAtAHundred) {
    Random random(52);
    Observed blur(GetParam(), random);
    const ProgressCounter beyond = blur.counter(2, 5);
    EXPECT_EQ(blur.scene.run(1, 9.0, &beyond), PF_Err_NONE);
    const ProgressCounter nothing = blur.counter(0, 0);
    EXPECT_EQ(blur.scene.run(1, 9.0, &nothing), PF_Err_NONE);
    EXPECT_EQ(blur.percents, (std::vector<int>{100, 100, 100, 100}));
}

TEST_P(BlurProgressTest, IsSilentWithoutACounterOrItsHost) {
    Random random(53);
    Observed blur(GetParam(), random);
    EXPECT_EQ(blur.scene.run(2, 9.0, nullptr), PF_Err_NONE);
    const ProgressCounter withoutHost;
    EXPECT_EQ(blur.scene.run(2, 9.0, &withoutHost), PF_Err_NONE);
    EXPECT_TRUE(blur.percents.empty());
}

TEST_P(BlurProgressTest, IsNotReportedByACopy) {
    Random random(54);
    Observed blur(GetParam(), random);
    const ProgressCounter counter = blur.counter(10, 3);
    EXPECT_EQ(blur.scene.run(0, 9.0, &counter), PF_Err_NONE);
    EXPECT_TRUE(blur.percents.empty());
}

/// Runs it as far as `steps` and under a fault, and compares what both have written.
void expectEndedAfter(Observed& blur, int32_t repeat, int32_t steps, const host::judge::FaultPlan& plan,
                      PF_Err code) {
    BlurScene& scene = blur.scene;
    SCOPED_TRACE(describe(scene, repeat, 20.0) + ", " + std::to_string(steps) + " steps");
    PlainPicture dst = read(scene.dst);
    PlainPicture tmp = read(scene.tmp);
    scene.plain(repeat, 20.0, read(scene.src), dst, tmp, steps);
    scene.host.arm(plan);
    scene.host.clearCalls();
    const ProgressCounter counter = blur.counter(10, 3);
    EXPECT_EQ(scene.run(repeat, 20.0, &counter), code);
    EXPECT_EQ(difference(dst, scene.dst), "") << "in the destination";
    EXPECT_EQ(difference(tmp, scene.tmp), "") << "in the scratch world";
}

TEST_P(BlurProgressTest, CancelEndsTheBlurAfterThePassThatWasReported) {
    Random random(55);
    for (int32_t cancelled = 1; cancelled <= 4; ++cancelled) {
        Observed blur(GetParam(), random);
        host::judge::FaultPlan plan;
        plan.cancelAtProgress = cancelled;
        // The gain follows the first report.
        const int32_t steps = cancelled > 1 && GetParam().isBoundary() ? cancelled + 1 : cancelled;
        expectEndedAfter(blur, 3, steps, plan, PF_Interrupt_CANCEL);
        EXPECT_EQ(blur.percents.size(), static_cast<std::size_t>(cancelled));
    }
}

TEST_P(BlurProgressTest, FailingHostCallEndsTheBlurWithItsCode) {
    Random random(56);
    int32_t steps = 0;
    int call = 0;
    for (const HostCall& failing : hostCallsOf(GetParam(), 2)) {
        ++call;
        Observed blur(GetParam(), random);
        host::judge::FaultPlan plan;
        plan.failCall = call;
        plan.failCode = 1234;
        expectEndedAfter(blur, 2, steps, plan, 1234);
        EXPECT_EQ(static_cast<int>(blur.scene.host.callNames().size()), call) << "nothing is called after it";
        steps += failing.isStep ? 1 : 0;
    }
}

TEST_P(BlurProgressTest, FailingCopyHandsBackTheHostsCode) {
    Random random(57);
    Observed blur(GetParam(), random);
    host::judge::FaultPlan plan;
    plan.failCall = 1;
    plan.failCode = 77;
    blur.scene.host.arm(plan);
    EXPECT_EQ(blur.scene.run(0, 20.0), 77);
}

} // namespace
} // namespace kovalune::test
