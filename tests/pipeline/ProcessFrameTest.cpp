// Whole frames with Process stages against the plain twin: pictures, progress and the calls made of the host.
#include "tests/pipeline/IterateWatch.h"
#include "tests/pipeline/ProcessScene.h"
#include "tests/support/Effort.h"

#include <gtest/gtest.h>
#include <optional>

namespace kovalune::test {
namespace {

class ProcessFrame : public testing::TestWithParam<FrameDriver> {};

INSTANTIATE_TEST_SUITE_P(Formats, ProcessFrame, testing::ValuesIn(kFrameDrivers), frameName);

/// What the rounds came by.
struct Seen {
    int views[9] = {};
    int smaller = 0; ///< rectangles than the world
    int changed = 0;
};

class Round {
public:
    Round(const FrameDriver& driver, Random& random)
        : driver_(driver),
          scene_(driver, options(random), random.between(1, 40), random.between(1, 40), random) {
        scene_.randomise(random);
        TestWorld& input = scene_.input;
        if (driver.format == PF_PixelFormat_ARGB128 && random.chance(50)) {
            write(drawnPicture(driver.format, input.width(), input.height(), scene_.palette, random,
                               Range::kWild),
                  input);
        }
        if (random.chance(25)) {
            const int32_t left = random.below(input.width());
            const int32_t top = random.below(input.height());
            scene_.settings.extentRect = rectAt(left, top, random.between(1, input.width() - left),
                                                random.between(1, input.height() - top));
        }
    }

    void run(Seen& seen) {
        const PlainPicture input = read(scene_.input);
        const PlainRendered expected = scene_.plain();
        const IterateWatch watch(scene_.host);
        scene_.host.clearCalls();
        ASSERT_EQ(driver_.render(scene_.settings), PF_Err_NONE);
        ASSERT_EQ(difference(expected.output, scene_.output), "");
        ASSERT_EQ(difference(input, scene_.input), "") << "the input is only read";
        EXPECT_EQ(watch.count(), expected.passes);
        EXPECT_EQ(scene_.host.countCalls("copy_hq"), expected.copies);
        EXPECT_EQ(scene_.host.countCalls("fill"), expected.clears);
        EXPECT_EQ(percents_, expected.percents);
        seen.views[scene_.settings.view] += 1;
        const FrameRect& rect = scene_.settings.extentRect;
        seen.smaller += rect.width() < input.width || rect.height() < input.height ? 1 : 0;
        seen.changed += difference(input, scene_.output).empty() ? 0 : 1;
    }

private:
    host::judge::JudgeOptions options(Random& random) {
        host::judge::JudgeOptions options =
            shuffledOptions(random.between(1, 8), random.between(1, 3), random.next());
        options.recordCalls = true;
        options.rowPadding = 4 * random.below(6);
        options.onProgress = [this](int percent, int /*total*/) {
            percents_.push_back(percent);
            return true;
        };
        return options;
    }

    const FrameDriver& driver_;
    std::vector<int> percents_;
    ProcessScene scene_;
};

TEST_P(ProcessFrame, IsLikeThePlainOne) {
    Random random(201);
    Seen seen;
    for (int round = 0; round < cases(600) && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        Round(GetParam(), random).run(seen);
    }
    for (const int32_t view : kViews) {
        EXPECT_GT(seen.views[view], cases(40)) << "view " << view;
    }
    EXPECT_GT(seen.changed, cases(400));
    EXPECT_GT(seen.smaller, cases(100));
}

TEST_P(ProcessFrame, IsTheSameForEveryDivisionOfTheWork) {
    Random random(202);
    for (int round = 0; round < 6; ++round) {
        const auto seed = random.next();
        std::optional<PlainPicture> alone;
        for (int n = 1; n <= 8; ++n) {
            Random same(seed);
            host::judge::JudgeOptions options = shuffledOptions(n, n, seed + static_cast<uint32_t>(n));
            ProcessScene scene(GetParam(), options, 31, 23, same);
            scene.randomise(same);
            scene.settings.view = kViews[static_cast<std::size_t>(round) % 3];
            ASSERT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
            if (alone) {
                ASSERT_EQ(difference(*alone, scene.output), "") << n << " iterations and threads";
            }
            alone = read(scene.output);
        }
    }
}

} // namespace
} // namespace kovalune::test
