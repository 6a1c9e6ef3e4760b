// Pictures as wide as drawings are, of which whole blocks of columns are of one colour: what passes over them at once against
// the twin, with single pixels at the places where a block, a group or a row begins and ends.

#include "effect/smoothing/PixelProcedure.h"
#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

#include <string>

namespace kovalune::test {
namespace {

class WidePictures : public testing::TestWithParam<PF_PixelFormat> {
protected:
    static PF_PixelFormat format() { return GetParam(); }

    static PlainPixel randomColor(Random& random) {
        const double unit = fullScale(format()) / 255.0;
        const auto level = [&] { return static_cast<double>(static_cast<float>(random.below(256) * unit)); };
        const auto whole = [&] {
            const double value = level();
            return format() == PF_PixelFormat_ARGB128 ? value : static_cast<double>(static_cast<int>(value));
        };
        return {random.chance(15) ? 0.0 : fullScale(format()), whole(), whole(), whole()};
    }

    /// Bars and single pixels on one colour.
    static PlainPicture randomDrawing(int32_t width, int32_t height, Random& random) {
        PlainPicture picture(format(), width, height);
        const PlainPixel ground = randomColor(random);
        picture.pixels.assign(picture.pixels.size(), ground);
        for (int n = random.below(5); n > 0; --n) {
            const PlainPixel color = randomColor(random);
            const int32_t left = random.below(width);
            const int32_t top = random.below(height);
            const int32_t right = random.chance(50) ? left : random.between(left, width - 1);
            const int32_t bottom = random.chance(50) ? top : random.between(top, height - 1);
            for (int32_t y = top; y <= bottom; ++y) {
                for (int32_t x = left; x <= right; ++x) {
                    picture.at(x, y) = color;
                }
            }
        }
        return picture;
    }

    static void fill(HandMap& map, HandPicture& picture) {
        if (format() == PF_PixelFormat_ARGB32) {
            fillEdgeFlags<Argb8>(map.map(), picture.world(), SmoothOf<Argb8>::limitOf(10));
        } else if (format() == PF_PixelFormat_ARGB64) {
            fillEdgeFlags<Argb16>(map.map(), picture.world(), SmoothOf<Argb16>::limitOf(10));
        } else {
            fillEdgeFlags<Argb32>(map.map(), picture.world(), SmoothOf<Argb32>::limitOf(10));
        }
    }

    template <class Format>
    static void visitIn(const SmoothParams& params, HandMap& map) {
        const PixelSource<Format, KeyMode::kPlain> pixels(params);
        visitFlagged(SmoothContext<Format, KeyMode::kPlain>(params, pixels, map.map()));
    }

    static void visit(const SmoothParams& params, HandMap& map) {
        if (format() == PF_PixelFormat_ARGB32) {
            visitIn<Argb8>(params, map);
        } else if (format() == PF_PixelFormat_ARGB64) {
            visitIn<Argb16>(params, map);
        } else {
            visitIn<Argb32>(params, map);
        }
    }

    static void compareMaps(const PlainPicture& picture, int32_t padding) {
        HandMap map(picture.width, picture.height);
        HandPicture source(picture, padding);
        fill(map, source);
        const PlainFlags expected = plainFlagMap(picture, 10);
        for (int32_t y = 0; y < picture.height; ++y) {
            for (int32_t x = 0; x < picture.width; ++x) {
                ASSERT_EQ(map.map()(x, y), expected.at(x, y)) << x << ", " << y << " of " << picture.width;
            }
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, WidePictures,
                         testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                         PF_PixelFormat_ARGB128),
                         [](const auto& test) { return formatName(test.param); });

TEST_P(WidePictures, HaveTheFlagsOfTheTwin) {
    Random random(71);
    for (int round = 0; round < 400 && !HasFatalFailure(); ++round) {
        compareMaps(randomDrawing(random.between(1, 150), random.between(1, 7), random),
                    16 * random.below(2));
    }
}

TEST_P(WidePictures, ShowASinglePixelWhereverItStands) {
    Random random(72);
    for (const int32_t width : {40, 64, 65, 130}) {
        for (int32_t x = 0; x < width && !HasFatalFailure(); ++x) {
            PlainPicture picture(format(), width, 5);
            picture.pixels.assign(picture.pixels.size(), {fullScale(format()), 0.0, 0.0, 0.0});
            picture.at(x, random.below(5)).red = fullScale(format());
            compareMaps(picture, 0);
        }
    }
}

TEST_P(WidePictures, AreSmoothedAsTheTwinDoes) {
    Random random(73);
    for (int round = 0; round < 150; ++round) {
        const PlainPicture picture = randomDrawing(random.between(60, 200), random.between(1, 20), random);
        HandMap map(picture.width, picture.height);
        HandPicture source(picture);
        HandPicture destination(picture);
        SmoothParams params;
        params.pixelFormat = format();
        params.srcWorld = &source.world();
        params.dstWorld = &destination.world();
        PatternCounts counts;
        const PlainPicture expected = PlainSmooth(params, picture, counts).run();
        fill(map, source);
        visit(params, map);
        ASSERT_EQ(difference(expected, destination.picture()), "") << "round " << round;
    }
}

} // namespace
} // namespace kovalune::test
