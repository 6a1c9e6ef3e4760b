// What the colour extension asks of its host, and what it does where that is refused.
#include "tests/blur/ColorExtensionScene.h"

#include "effect/share/AEUtil/AEException.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class ExtensionFailure : public testing::TestWithParam<ExtensionDriver> {
protected:
    static PlainExtension someJob() {
        Random random(301);
        return {wholeRect(21, 17), makeMask(MaskShape::kSparse, 21, 17, random), Mask(21, 17, 1), 8.0, false};
    }
    static host::judge::JudgeOptions recordingOptions() {
        host::judge::JudgeOptions options = shuffledOptions(3, 2, 1);
        options.recordCalls = true;
        return options;
    }
};

INSTANTIATE_TEST_SUITE_P(Drivers, ExtensionFailure, testing::ValuesIn(kExtensionDrivers), extensionName);

TEST_P(ExtensionFailure, ThreeStepsRunInOneIterationCallEach) {
    Random random(302);
    ExtensionScene scene(GetParam(), recordingOptions(), someJob(), random);
    scene.host.clearCalls();
    EXPECT_EQ(scene.run(GetParam()), PF_Err_NONE);
    EXPECT_EQ(scene.host.countCalls("iterate_generic"), 3);
}

TEST_P(ExtensionFailure, OfAnIterationCallEndsTheSequenceWithItsCode) {
    for (int step = 0; step < 3; ++step) {
        Random random(303);
        ExtensionScene scene(GetParam(), recordingOptions(), someJob(), random);
        scene.host.clearCalls();
        ASSERT_EQ(scene.run(GetParam()), PF_Err_NONE);
        const std::vector<int> numbers = scene.host.faultNumbersOf("iterate_generic");
        ASSERT_EQ(numbers.size(), 3U);

        const PlainPicture before = read(scene.dst);
        host::judge::FaultPlan plan;
        plan.failCall = numbers[static_cast<std::size_t>(step)];
        scene.host.arm(plan);
        scene.host.clearCalls();
        EXPECT_NE(scene.run(GetParam()), PF_Err_NONE);
        EXPECT_EQ(scene.host.struckCall(), "iterate_generic");
        EXPECT_EQ(scene.host.countCalls("iterate_generic"), step + 1);
        EXPECT_EQ(difference(before, scene.dst), "") << "only the last step writes";
    }
}

TEST_P(ExtensionFailure, OfAHostAllocationIsThrownAndLeavesNothingBehind) {
    Random random(304);
    ExtensionScene scene(GetParam(), recordingOptions(), someJob(), random);
    scene.host.clearCalls();
    ASSERT_EQ(scene.run(GetParam()), PF_Err_NONE);
    const std::vector<int> numbers = scene.host.faultNumbersOf("host_new_handle");
    for (const int number : numbers) {
        host::judge::FaultPlan plan;
        plan.failCall = number;
        scene.host.arm(plan);
        scene.host.clearCalls();
        try {
            scene.run(GetParam());
            ADD_FAILURE() << "call " << number;
        } catch (const AEUtil::AEException& exception) {
            EXPECT_EQ(exception.code(), PF_Err_OUT_OF_MEMORY);
        }
        EXPECT_EQ(scene.host.countCalls("iterate_generic"), 0);
    }
    EXPECT_FALSE(numbers.empty());
}

TEST_P(ExtensionFailure, OfAMissingWorldIsOutOfMemory) {
    Random random(305);
    ExtensionScene scene(GetParam(), recordingOptions(), someJob(), random);
    for (int missing = 0; missing < 3; ++missing) {
        PF_EffectWorld* worlds[] = {scene.src.get(), scene.dst.get(), scene.spread.get()};
        worlds[missing] = nullptr;
        EXPECT_EQ(GetParam().run(scene.host.in(), {.dst = worlds[1],
                                                   .src = worlds[0],
                                                   .spreadWorld = worlds[2],
                                                   .rect = scene.job.rect,
                                                   .limitMask = scene.limit,
                                                   .seedMask = scene.seed,
                                                   .reach = 8.0,
                                                   .stopAtGap = false}),
                  PF_Err_OUT_OF_MEMORY);
    }
}

TEST_P(ExtensionFailure, OfAnyKindKeepsTheMasksWithTheCaller) {
    Random random(306);
    ExtensionScene scene(GetParam(), recordingOptions(), someJob(), random);
    ASSERT_EQ(scene.run(GetParam()), PF_Err_NONE);
    EXPECT_EQ(scene.seed.useCount(), 1);
    EXPECT_EQ(scene.limit.useCount(), 1);
    EXPECT_EQ(elementsOf(scene.seed), scene.job.seed);
    EXPECT_EQ(elementsOf(scene.limit), scene.job.limit);
}

} // namespace
} // namespace kovalune::test
