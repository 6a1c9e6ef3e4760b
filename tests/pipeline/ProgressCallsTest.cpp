// How often a frame will report its progress, told beforehand from its settings.

#include "effect/Kovalune.h"
#include "tests/pipeline/ProcessScene.h"

#include <gtest/gtest.h>
#include <numeric>
#include <set>

namespace kovalune::test {
namespace {

using Calls = std::array<int32_t, kStageCount>;

ProgressSettings settingsOf(ProcessScene& scene) {
    ProgressSettings settings;
    settings.view = scene.settings.view;
    settings.downsampleX = scene.host.in()->downsample_x;
    settings.downsampleY = scene.host.in()->downsample_y;
    for (std::size_t number = 0; number < kStageCount; ++number) {
        const StageSettings& stage = scene.settings.stages[number];
        settings.stages[number] = {stage.enableProcess != 0,
                                   number == 0 ? stage.blurAmount : stage.boundaryBlur, stage.repeat};
    }
    return settings;
}

class ProgressCalls : public testing::TestWithParam<FrameDriver> {
protected:
    /// Of one render, which must succeed.
    int callsOf(ProcessScene& scene) {
        calls_ = 0;
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        return calls_;
    }

    host::judge::JudgeOptions options() {
        host::judge::JudgeOptions options = strictOptions();
        options.onProgress = [this](int, int) {
            ++calls_;
            return true;
        };
        return options;
    }

private:
    int calls_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Formats, ProgressCalls, testing::ValuesIn(kFrameDrivers), frameName);

/// The views end one stage after the other, so that the sums tell each stage's calls.
TEST_P(ProgressCalls, AreThoseThatTheFrameMakesInEveryView) {
    Random random(231);
    std::set<int> sums;
    for (int round = 0; round < 60 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        ProcessScene scene(GetParam(), options(), random.between(1, 12), random.between(1, 12), random);
        scene.randomise(random);
        for (const int32_t view : kViews) {
            scene.settings.view = view;
            const Calls calls = progressCalls(settingsOf(scene));
            const int sum = std::accumulate(calls.begin(), calls.end(), 0);
            EXPECT_EQ(sum, callsOf(scene)) << "view " << view;
            sums.insert(sum);
        }
    }
    EXPECT_GT(sums.size(), 20U);
}

TEST(ProgressCallCount, AreOneForAStageThatOnlyCopies) {
    ProgressSettings settings;
    settings.stages[0] = {true, 0.4, 5};
    settings.stages[1] = {true, 2.4, 5};
    settings.stages[2] = {true, 2.5, 5};
    settings.stages[3] = {false, 40.0, 5};
    settings.stages[4] = {true, 40.0, 1};
    EXPECT_EQ(progressCalls(settings), (Calls{1, 1, 7, 0, 3}));
    settings.stages[0].amount = 0.5;
    EXPECT_EQ(progressCalls(settings), (Calls{7, 1, 7, 0, 3}));
    settings.downsampleY = {1, 4};
    EXPECT_EQ(progressCalls(settings), (Calls{1, 1, 1, 0, 3}));
}

} // namespace
} // namespace kovalune::test
