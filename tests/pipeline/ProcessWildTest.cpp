// Float pictures with channels from beyond the scale: they end, stay in bounds, and what is wrong stays where it is.
#include "tests/pipeline/ProcessScene.h"

#include <gtest/gtest.h>
#include <limits>
#include <utility>

namespace kovalune::test {
namespace {

constexpr std::array kWildChannels = {-0.5,
                                      -1.0e30,
                                      3.0e38,
                                      1.0e-42,
                                      65504.0,
                                      std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::quiet_NaN()};

constexpr PF_PixelFormat kFloat = PF_PixelFormat_ARGB128;
constexpr int32_t kWidth = 30;
constexpr int32_t kHeight = 16;

/// Two regions of one colour with a gap of another between them that no stage lists. Base and all Process stages are on.
struct TwoIslands : ProcessScene {
    PlainPicture picture{kFloat, kWidth, kHeight};

    explicit TwoIslands(Random& random) : ProcessScene(kFrameDrivers[2], kWidth, kHeight, random) {
        palette = {{{0, 240, 240, 240},
                    {0, 200, 30, 30},
                    {0, 30, 60, 200},
                    {0, 0, 0, 0},
                    {0, 0, 0, 0},
                    {0, 0, 0, 0}}};
        for (int32_t y = 0; y < kHeight; ++y) {
            for (int32_t x = 0; x < kWidth; ++x) {
                const std::size_t colour = isGap(x, y) ? 0 : y < 8 ? 1 : 2;
                picture.at(x, y) = opaque(kFloat, palette[colour]);
            }
        }
        settings.stages[0].keepDivision = 1;
        settings.stages[0].blurAmount = 6.0;
        list(0, palette[1], 2.0);
        for (int32_t stage = 1; stage <= 4; ++stage) {
            enable(stage, stage % 2 != 0 ? 1 : 2, stage < 3 ? 5.0 : 35.0, 2).keepDivision = 1;
            settings.stages[stage].keepProcess = 1;
        }
    }

    static bool isGap(int32_t x, int32_t y) {
        return (x >= 13 && x < 17) || x == 0 || y == 0 || x == kWidth - 1 || y == kHeight - 1;
    }

    PlainPicture rendered(int32_t view) {
        write(picture, input);
        settings.view = view;
        EXPECT_EQ(renderFrame32(settings), PF_Err_NONE);
        return read(output);
    }
};

void makeWild(PlainPixel& pixel, double channel, Random& random) {
    for (double* const c : {&pixel.red, &pixel.green, &pixel.blue}) {
        *c = random.chance(70) ? static_cast<double>(static_cast<float>(channel)) : *c;
    }
}

bool same(const PlainPixel& a, const PlainPixel& b) {
    return a.alpha == b.alpha && a.red == b.red && a.green == b.green && a.blue == b.blue;
}

constexpr std::array kAllViews = {1, 3, 4, 5, 6, 7, 8};

TEST(WildFrame, HarmsNothingBesidePixelsThatNoStageLists) {
    Random random(241);
    for (const double channel : kWildChannels) {
        for (const int32_t view : kAllViews) {
            TwoIslands scene(random);
            const PlainPicture clean = scene.rendered(view);
            for (int n = 0; n < 20; ++n) {
                PlainPixel& pixel = scene.picture.at(random.between(13, 16), random.below(kHeight));
                pixel.red = pixel.green = pixel.blue = static_cast<double>(static_cast<float>(channel));
            }
            const PlainPicture shown = scene.rendered(view);
            const PlainPicture input = read(scene.input);
            for (int32_t y = 0; y < kHeight; ++y) {
                for (int32_t x = 0; x < kWidth; ++x) {
                    const bool isWild =
                        !same(input.at(x, y), opaque(kFloat, scene.palette[0])) && TwoIslands::isGap(x, y);
                    ASSERT_TRUE(isWild || same(clean.at(x, y), shown.at(x, y)))
                        << channel << ", view " << view << " at " << x << ", " << y;
                }
            }
        }
    }
}

TEST(WildFrame, HarmsNoOtherIslandThanItsOwn) {
    Random random(242);
    for (const double channel : kWildChannels) {
        for (const int32_t view : kAllViews) {
            TwoIslands scene(random);
            scene.settings.stages[0].colors[0].range = 100.0 / 3.0; // near enough for what is slightly off
            const PlainPicture clean = scene.rendered(view);
            for (int n = 0; n < 6; ++n) {
                makeWild(scene.picture.at(random.between(1, 12), random.between(1, kHeight - 2)), channel,
                         random);
            }
            const PlainPicture shown = scene.rendered(view);
            for (int32_t y = 0; y < kHeight; ++y) {
                for (int32_t x = 14; x < kWidth; ++x) {
                    ASSERT_TRUE(same(clean.at(x, y), shown.at(x, y)))
                        << channel << ", view " << view << " at " << x << ", " << y;
                }
            }
        }
    }
}

// Alpha counts where it is anything but 0, so also one that is not a number is part of a region.
TEST(WildFrame, WithWildAlphaIsLikeThePlainOne) {
    Random random(243);
    for (const double channel : kWildChannels) {
        for (const int32_t view : kAllViews) {
            TwoIslands scene(random);
            for (int n = 0; n < 6; ++n) {
                PlainPixel& pixel = scene.picture.at(random.below(kWidth), random.below(kHeight));
                pixel.alpha = static_cast<double>(static_cast<float>(channel));
                makeWild(pixel, channel, random);
            }
            const PlainPicture shown = scene.rendered(view);
            ASSERT_EQ(difference(scene.plain().output, shown), "") << channel << ", view " << view;
        }
    }
}

} // namespace
} // namespace kovalune::test
