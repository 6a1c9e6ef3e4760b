// Frames whose passes fail: which code comes back, what still runs and what stands in the output.
#include "tests/pipeline/FrameScene.h"
#include "tests/pipeline/IterateWatch.h"
#include "tests/reference/PlainFrame.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

class FrameFailure : public testing::TestWithParam<FrameDriver> {
protected:
    bool widens() const { return GetParam().format == PF_PixelFormat_ARGB32; }

    // Numbers of the passes of a frame of repeat 1.
    int extraction() const { return widens() ? 4 : 2; }
    int firstBlur() const { return extraction() + 1; }
    int secondBlur() const { return extraction() + 2; }
    int cut() const { return secondBlur() + (widens() ? 2 : 1); }
};

INSTANTIATE_TEST_SUITE_P(Formats, FrameFailure, testing::ValuesIn(kFrameDrivers), frameName);

TEST_P(FrameFailure, UpToTheExtractionLeavesTheCopyOfTheInputAndSkipsTheFinish) {
    Random random(161);
    for (int failing = 1; failing <= extraction(); ++failing) {
        FrameScene scene(GetParam(), random);
        scene.settings.view = kViewExtract;
        const IterateWatch watch(scene.host, failing);
        EXPECT_EQ(GetParam().render(scene.settings), IterateWatch::kCode) << "pass " << failing;
        EXPECT_EQ(watch.count(), failing) << "no pass runs behind it";
        EXPECT_EQ(difference(read(scene.input), scene.output), "") << "pass " << failing;
    }
}

TEST_P(FrameFailure, OfTheBlurStillCutsThePictureToItsRegion) {
    Random random(162);
    for (const int failing : {firstBlur(), secondBlur()}) {
        for (const int32_t view : {kViewNormal, kViewExtract, kViewBase}) {
            FrameScene scene(GetParam(), random);
            scene.listAColourOfTheInput();
            scene.settings.view = view;
            PlainFrame plain{scene.settings};
            plain.blurPasses = failing - firstBlur();
            plain.narrowed = false;
            const PlainPicture expected = plainOutput(plain, read(scene.input));
            const IterateWatch watch(scene.host, failing);
            EXPECT_EQ(GetParam().render(scene.settings), IterateWatch::kCode);
            EXPECT_EQ(watch.count(), failing + (view == kViewNormal ? 0 : 1))
                << "the cut alone runs behind it";
            EXPECT_EQ(difference(expected, scene.output), "") << "view " << view << ", pass " << failing;
        }
    }
}

TEST(FrameFailureOfEightBits, InTheNarrowingStillCutsThePicture) {
    Random random(163);
    FrameScene scene(kFrameDrivers[0], random);
    scene.listAColourOfTheInput();
    scene.settings.view = kViewBase;
    PlainFrame plain{scene.settings};
    plain.narrowed = false;
    const PlainPicture expected = plainOutput(plain, read(scene.input));
    constexpr int narrowing = 7; // coverage, two widenings, extraction and two blur passes come first
    const IterateWatch watch(scene.host, narrowing);
    EXPECT_EQ(renderFrame8(scene.settings), IterateWatch::kCode);
    EXPECT_EQ(watch.count(), narrowing + 1);
    EXPECT_EQ(difference(expected, scene.output), "");
}

TEST_P(FrameFailure, OfTheCutIsIgnored) {
    Random random(164);
    for (const int32_t view : {kViewExtract, kViewBase}) {
        FrameScene scene(GetParam(), random);
        scene.listAColourOfTheInput();
        scene.settings.view = view;
        PlainFrame plain{scene.settings};
        plain.cut = false;
        const PlainPicture expected = plainOutput(plain, read(scene.input));
        const IterateWatch watch(scene.host, cut());
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(watch.count(), cut());
        EXPECT_EQ(difference(expected, scene.output), "");
    }
}

TEST_P(FrameFailure, OfTheOpeningsCopyRunsNoPass) {
    Random random(165);
    FrameScene scene(GetParam(), random);
    scene.settings.view = kViewBase;
    const PlainPicture before = read(scene.output);
    host::judge::FaultPlan plan;
    plan.failCall = 2;
    plan.failCode = 99;
    scene.host.arm(plan);
    const IterateWatch watch(scene.host);
    EXPECT_EQ(GetParam().render(scene.settings), 99);
    EXPECT_EQ(scene.host.struckCall(), "copy_hq");
    EXPECT_EQ(watch.count(), 0);
    EXPECT_EQ(difference(before, scene.output), "");
}

TEST(FrameFailureOfDeepFrames, InTheCopyOfALayerIsTheFramesCode) {
    for (const FrameDriver& driver : {kFrameDrivers[1], kFrameDrivers[2]}) {
        host::judge::JudgeOptions options = strictOptions();
        options.recordCalls = true;
        Random random(166);
        FrameScene whole(driver, options, 14, 11, random);
        whole.settings.view = kViewProcess1;
        whole.host.clearCalls();
        EXPECT_EQ(driver.render(whole.settings), PF_Err_NONE);
        const std::vector<int> numbers = whole.host.faultNumbersOf("copy_hq");
        ASSERT_EQ(numbers.size(), 2U);
        Random sameRandom(166);
        FrameScene scene(driver, options, 14, 11, sameRandom);
        scene.settings.view = kViewProcess1;
        host::judge::FaultPlan plan;
        plan.failCall = numbers[1];
        plan.failCode = 99;
        scene.host.arm(plan);
        EXPECT_EQ(driver.render(scene.settings), 99);
        EXPECT_EQ(scene.host.struckCall(), "copy_hq");
    }
}

TEST_P(FrameFailure, OfTheTransformSuiteRaises) {
    Random random(167);
    host::judge::JudgeOptions options = strictOptions();
    options.withheldSuites = {{kPFWorldTransformSuite, kPFWorldTransformSuiteVersion1}};
    FrameScene scene(GetParam(), options, 14, 11, random);
    const PlainPicture before = read(scene.output);
    EXPECT_THROW(static_cast<void>(GetParam().render(scene.settings)), long);
    EXPECT_EQ(difference(before, scene.output), "");
}

} // namespace
} // namespace kovalune::test
