#include "tests/pipeline/FrameScene.h"
#include "tests/reference/PlainFrame.h"

#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
namespace {

class FrameProgress : public testing::TestWithParam<FrameDriver> {};

INSTANTIATE_TEST_SUITE_P(Formats, FrameProgress, testing::ValuesIn(kFrameDrivers), frameName);

/// Cancelled at the tick, nothing but the opening's copy has happened; later, the finish still cuts the
/// picture, but an 8-bit frame is not narrowed.
PlainPicture expectedWhenCancelled(const FrameScene& scene, int cancelled) {
    const PlainPicture input = read(scene.input);
    PlainFrame plain{scene.settings};
    plain.blurPasses = cancelled - 1;
    plain.narrowed = false;
    return cancelled == 1 ? input : plainOutput(plain, input);
}

TEST_P(FrameProgress, IsTheShareOfAllEnabledStages) {
    Random random(151);
    struct Case {
        int32_t repeat;
        std::vector<int> percents;
    };
    for (const Case& c : {Case{1, {25, 25, 25}}, Case{3, {10, 10, 10, 10, 10}}, Case{0, {100}}}) {
        std::vector<int> percents;
        host::judge::JudgeOptions options = strictOptions();
        options.onProgress = [&percents](int current, int total) {
            EXPECT_EQ(total, 100);
            percents.push_back(current);
            return true;
        };
        FrameScene scene(GetParam(), options, 14, 11, random);
        scene.settings.stages[0].repeat = c.repeat;
        scene.settings.view = kViewBase;
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(percents, c.percents);
    }
}

TEST_P(FrameProgress, CountsTheStepsOfEnabledProcessStagesToo) {
    Random random(152);
    std::vector<int> percents;
    host::judge::JudgeOptions options = strictOptions();
    options.onProgress = [&percents](int current, int /*total*/) {
        percents.push_back(current);
        return true;
    };
    FrameScene scene(GetParam(), options, 14, 11, random);
    scene.settings.stages[2].enableProcess = 1;
    scene.settings.stages[2].repeat = 2;
    scene.settings.stages[3].repeat = 100;
    scene.settings.view = kViewBase;
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    EXPECT_EQ(percents, (std::vector<int>{9, 9, 9})) << "one of 4 + 7 steps";
}

TEST_P(FrameProgress, CancelEndsTheFrameWhereverItComes) {
    Random random(153);
    for (const int32_t view : {kViewNormal, kViewExtract, kViewBase}) {
        for (int cancelled = 1; cancelled <= 4; ++cancelled) {
            FrameScene scene(GetParam(), random);
            scene.listAColourOfTheInput();
            scene.settings.view = view;
            scene.settings.stages[0].repeat = 2;
            const PlainPicture expected = expectedWhenCancelled(scene, cancelled);
            host::judge::FaultPlan plan;
            plan.cancelAtProgress = cancelled;
            scene.host.arm(plan);
            EXPECT_EQ(GetParam().render(scene.settings), PF_Interrupt_CANCEL);
            EXPECT_EQ(difference(expected, scene.output), "") << "view " << view << ", call " << cancelled;
        }
    }
}

} // namespace
} // namespace kovalune::test
