// The key colour: what the first fill and every later read make transparent.

#include "effect/smoothing/PixelSource.h"
#include "effect/smoothing/SmoothOf.h"
#include "tests/smoothing/BareHost.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kovalune::test {
namespace {

/// Levels of 8 bits in the format's scale, as a key colour is converted.
double scaled(PF_PixelFormat format, int level) {
    if (format == PF_PixelFormat_ARGB32) {
        return level;
    }
    return format == PF_PixelFormat_ARGB64 ? level * 32768 / 255
                                           : static_cast<double>(static_cast<float>(level) / 255.0F);
}

struct Rgb {
    int red, green, blue;
};

class KeyModes : public testing::TestWithParam<PF_PixelFormat> {
protected:
    static PF_PixelFormat format() { return GetParam(); }

    static PlainPixel pixelOf(const Rgb& c) {
        return {fullScale(format()), scaled(format(), c.red), scaled(format(), c.green),
                scaled(format(), c.blue)};
    }

    static SmoothParams keyed(const Rgb& key, int32_t tolerance, bool only) {
        SmoothParams params;
        params.pixelFormat = format();
        params.strength = 0;
        params.keyEnabled = 1;
        params.keyOnly = only ? 1 : 0;
        params.keyRed = key.red;
        params.keyGreen = key.green;
        params.keyBlue = key.blue;
        params.keyTolerance = tolerance;
        return params;
    }

    /// Whether the first fill leaves a pixel visible; all else of it must stay.
    static bool isKept(const PlainPixel& pixel, SmoothParams params) {
        BareHost host(format());
        HandPicture source(format(), 1, 1);
        HandPicture destination(format(), 1, 1);
        source.set(0, 0, pixel);
        params.inData = host.in();
        params.srcWorld = &source.world();
        params.dstWorld = &destination.world();
        EXPECT_EQ(smoothBoundaries(params), PF_Err_NONE);
        EXPECT_EQ(host.copies, 0) << "a key mode copies by itself";
        const PlainPixel found = destination.get(0, 0);
        EXPECT_EQ(found.red, pixel.red);
        EXPECT_EQ(found.green, pixel.green);
        EXPECT_EQ(found.blue, pixel.blue);
        EXPECT_TRUE(found.alpha == 0.0 || found.alpha == pixel.alpha);
        return found.alpha != 0.0;
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, KeyModes,
                         testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                         PF_PixelFormat_ARGB128),
                         [](const auto& test) { return formatName(test.param); });

TEST_P(KeyModes, TakeAwayTheKeyOrAllButIt) {
    for (const Rgb key : {Rgb{255, 255, 255}, Rgb{0, 0, 0}, Rgb{7, 200, 7}}) {
        const PlainPixel same = pixelOf(key);
        const PlainPixel other = pixelOf({key.red, key.green == 0 ? 1 : key.green - 1, key.blue});
        EXPECT_FALSE(isKept(same, keyed(key, 0, false)));
        EXPECT_TRUE(isKept(other, keyed(key, 0, false)));
        EXPECT_TRUE(isKept(same, keyed(key, 0, true)));
        EXPECT_FALSE(isKept(other, keyed(key, 0, true)));
    }
}

TEST_P(KeyModes, ReachAsFarAsTheToleranceOverAllThreeColours) {
    const Rgb key = {100, 120, 140};
    const PlainPixel within = pixelOf({104, 117, 142});
    const PlainPixel beyond = pixelOf({104, 116, 143});
    EXPECT_FALSE(isKept(within, keyed(key, 10, false)));
    EXPECT_TRUE(isKept(beyond, keyed(key, 10, false)));
    EXPECT_TRUE(isKept(within, keyed(key, 10, true)));
    EXPECT_FALSE(isKept(beyond, keyed(key, 10, true)));
    EXPECT_FALSE(isKept(pixelOf({0, 0, 0}), keyed(key, 360 + 5, false)));
}

TEST_P(KeyModes, LookAtNoAlpha) {
    PlainPixel faint = pixelOf({10, 20, 10});
    faint.alpha = format() == PF_PixelFormat_ARGB128 ? 0.25 : 3.0;
    EXPECT_FALSE(isKept(faint, keyed({10, 20, 10}, 0, false)));
    EXPECT_FALSE(isKept(faint, keyed({10, 20, 10}, 5, false)));
    EXPECT_TRUE(isKept(faint, keyed({10, 20, 10}, 0, true)));
}

TEST_P(KeyModes, ReadTheLowByteOfTheKey) {
    EXPECT_FALSE(isKept(pixelOf({10, 20, 30}), keyed({10 + 256, 20 - 256, 30 + 512}, 2, false)));
    EXPECT_FALSE(isKept(pixelOf({255, 255, 255}), keyed({-1, -1, -1}, 0, false)));
}

TEST_P(KeyModes, AreEntered) {
    SmoothParams params = keyed({255, 255, 255}, 0, false);
    params.keyEnabled = -1;
    EXPECT_FALSE(isKept(pixelOf({255, 255, 255}), params)) << "by anything but 0";
    params.keyOnly = -1;
    EXPECT_TRUE(isKept(pixelOf({255, 255, 255}), params));
    EXPECT_FALSE(isKept(pixelOf({255, 255, 254}), params));
}

/// Only the first fill of `argb` without tolerance exchanges red and blue.
TEST_P(KeyModes, WithoutToleranceExchangeRedAndBlueAt8BitsAlone) {
    const Rgb key = {10, 20, 30};
    const bool exchanged = format() == PF_PixelFormat_ARGB32;
    EXPECT_EQ(isKept(pixelOf({10, 20, 30}), keyed(key, 0, false)), exchanged);
    EXPECT_EQ(isKept(pixelOf({30, 20, 10}), keyed(key, 0, false)), !exchanged);
    EXPECT_EQ(isKept(pixelOf({10, 20, 30}), keyed(key, 0, true)), !exchanged);
    EXPECT_EQ(isKept(pixelOf({30, 20, 10}), keyed(key, 0, true)), exchanged);
    EXPECT_FALSE(isKept(pixelOf({10, 20, 30}), keyed(key, 1, false)));
    EXPECT_TRUE(isKept(pixelOf({30, 20, 10}), keyed(key, 1, false)));
}

template <class Format>
class KeyFetch : public testing::Test {};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(KeyFetch, AllFormats);

TYPED_TEST(KeyFetch, NeverExchangesRedAndBlue) {
    const PF_PixelFormat format = formatOf<TypeParam>();
    HandPicture source(format, 2, 1);
    const double full = fullScale(format);
    source.set(0, 0, {full, scaled(format, 10), scaled(format, 20), scaled(format, 30)});
    source.set(1, 0, {full, scaled(format, 30), scaled(format, 20), scaled(format, 10)});
    SmoothParams params;
    params.srcWorld = &source.world();
    params.keyRed = 10;
    params.keyGreen = 20;
    params.keyBlue = 30;
    const PixelSource<TypeParam, KeyMode::kRemoved> removing(params);
    EXPECT_EQ(removing.keyFetch(0, 0).alpha, 0);
    EXPECT_NE(removing.keyFetch(1, 0).alpha, 0);
    EXPECT_EQ(double(removing.keyFetch(0, 0).red), source.get(0, 0).red) << "only alpha goes";
    const PixelSource<TypeParam, KeyMode::kOnly> keeping(params);
    EXPECT_NE(keeping.keyFetch(0, 0).alpha, 0);
    EXPECT_EQ(keeping.keyFetch(1, 0).alpha, 0);
    const PixelSource<TypeParam, KeyMode::kPlain> plain(params);
    EXPECT_NE(plain.keyFetch(0, 0).alpha, 0);
    EXPECT_NE(plain.keyFetch(1, 0).alpha, 0);
}

/// The border against the key colour is smoothed as one against transparency: the colour beyond it never comes in.
TEST_P(KeyModes, SmoothTheBorderOfTheKeyAsOneOfTransparency) {
    BareHost host(format());
    HandPicture source(format(), 24, 12);
    HandPicture destination(format(), 24, 12);
    for (int32_t y = 0; y < 12; ++y) {
        for (int32_t x = 0; x < 24; ++x) {
            source.set(x, y, x < 2 * y ? pixelOf({200, 30, 200}) : pixelOf({255, 255, 255}));
        }
    }
    SmoothParams params = keyed({255, 255, 255}, 0, false);
    params.strength = 70;
    params.inData = host.in();
    params.srcWorld = &source.world();
    params.dstWorld = &destination.world();
    ASSERT_EQ(smoothBoundaries(params), PF_Err_NONE);
    const PlainPixel inside = pixelOf({200, 30, 200});
    int softened = 0;
    for (int32_t y = 0; y < 12; ++y) {
        for (int32_t x = 0; x < 24; ++x) {
            const PlainPixel p = destination.get(x, y);
            softened += p.alpha != 0.0 && p.alpha != fullScale(format()) ? 1 : 0;
            if (p.alpha != 0.0) {
                EXPECT_NEAR(p.green, inside.green, fullScale(format()) / 255.0) << x << ", " << y;
            }
        }
    }
    EXPECT_GT(softened, 20);
}

} // namespace
} // namespace kovalune::test
