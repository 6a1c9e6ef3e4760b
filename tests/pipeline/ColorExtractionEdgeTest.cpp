#include "effect/pipeline/ColorExtraction.h"

#include "tests/pipeline/ConversionWatch.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/TestWorld.h"

#include <array>
#include <bit>
#include <gtest/gtest.h>
#include <limits>

namespace kovalune::test {
namespace {

/// A one-row picture and what the extraction makes of it.
template <class Pixel>
class Row {
public:
    Row(PF_PixelFormat format, const std::vector<Pixel>& pixels, int iterations = 1)
        : host_(shuffledOptions(iterations, 1, 1)),
          world_(host_, format, static_cast<int32_t>(pixels.size()), 1) {
        for (int32_t x = 0; x < world_.width(); ++x) {
            world_.at<Pixel>(x, 0) = pixels[static_cast<std::size_t>(x)];
        }
    }

    template <class Extract>
    std::vector<uint8_t> extract(Extract function, const ColorMatches& list) {
        const ConversionWatch watch(host_);
        MaskPlane plane;
        EXPECT_EQ(function(plane, host_.in(), world_.get(), wholeRect(world_.width(), 1), list, nullptr),
                  PF_Err_NONE);
        colors_ = watch.colors();
        return elementsOf(plane).elements;
    }

    ColorMatch match(PF_Pixel color, double range) { return makeColorMatch(host_.in(), color, range); }

    /// Of the last extraction.
    const std::vector<PF_Pixel>& converted() const { return colors_; }

private:
    StrictHost host_;
    TestWorld world_;
    std::vector<PF_Pixel> colors_;
};

using Row8 = Row<PF_Pixel>;
using Row16 = Row<PF_Pixel16>;
using Row32 = Row<PF_PixelFloat>;

TEST(ExtractionEdges, EmptyListMarksNothingButStillConverts) {
    Row8 row(PF_PixelFormat_ARGB32, {{255, 1, 2, 3}, {255, 1, 2, 3}, {255, 9, 9, 9}});
    EXPECT_EQ(row.extract(extractColors8, {}), (std::vector<uint8_t>{0, 0, 0}));
    EXPECT_EQ(row.converted().size(), 2U);
}

TEST(ExtractionEdges, FullRangeMarksAllButTransparentPixels) {
    Row8 row(PF_PixelFormat_ARGB32, {{255, 255, 0, 0}, {1, 0, 255, 255}, {0, 255, 0, 0}, {128, 0, 0, 0}});
    EXPECT_EQ(row.extract(extractColors8, {row.match({0, 12, 200, 90}, 1.0)}),
              (std::vector<uint8_t>{1, 1, 0, 1}));
}

TEST(ExtractionEdges, ListedColourMatchesAtRangeZero) {
    Row8 row(PF_PixelFormat_ARGB32, {{255, 10, 200, 30}, {255, 11, 200, 30}, {1, 10, 200, 30}});
    EXPECT_EQ(row.extract(extractColors8, {row.match({0, 10, 200, 30}, 0.0)}),
              (std::vector<uint8_t>{1, 0, 1}));
}

TEST(ExtractionEdges, AnyOfTheListedColoursMatches) {
    Row8 row(PF_PixelFormat_ARGB32, {{255, 10, 200, 30}, {255, 99, 0, 0}, {255, 0, 0, 250}});
    EXPECT_EQ(row.extract(extractColors8, {row.match({0, 0, 0, 250}, 0.0), row.match({0, 10, 200, 30}, 0.0)}),
              (std::vector<uint8_t>{1, 0, 1}));
}

TEST(ExtractionEdges, RunGoesOnAcrossTransparentHoles) {
    Row8 row(PF_PixelFormat_ARGB32, {{255, 5, 5, 5}, {0, 7, 7, 7}, {255, 5, 5, 5}, {9, 5, 5, 5}});
    EXPECT_EQ(row.extract(extractColors8, {row.match({0, 5, 5, 5}, 0.0)}),
              (std::vector<uint8_t>{1, 0, 1, 1}));
    EXPECT_EQ(row.converted().size(), 1U);
}

TEST(ExtractionEdges, ConvertsWithFullAlpha) {
    Row8 row(PF_PixelFormat_ARGB32, {{3, 10, 20, 30}});
    row.extract(extractColors8, {});
    ASSERT_EQ(row.converted().size(), 1U);
    EXPECT_EQ(row.converted()[0].alpha, 255);
    EXPECT_EQ(row.converted()[0].red, 10);
    EXPECT_EQ(row.converted()[0].green, 20);
    EXPECT_EQ(row.converted()[0].blue, 30);
}

TEST(ExtractionEdges, SeedOfATransparentPixelHidesTheColourItIsEqualTo) {
    Row8 low(PF_PixelFormat_ARGB32, {{0, 10, 20, 30}, {255, 255, 20, 30}, {255, 255, 20, 30}});
    EXPECT_EQ(low.extract(extractColors8, {low.match({0, 255, 20, 30}, 1.0)}),
              (std::vector<uint8_t>{0, 0, 0}));
    EXPECT_TRUE(low.converted().empty());
    Row8 high(PF_PixelFormat_ARGB32, {{0, 255, 20, 30}, {255, 0, 20, 30}});
    EXPECT_EQ(high.extract(extractColors8, {high.match({0, 0, 20, 30}, 1.0)}), (std::vector<uint8_t>{0, 0}));

    Row16 low16(PF_PixelFormat_ARGB64, {{0, 10, 20, 30}, {32768, 32768, 20, 30}});
    EXPECT_EQ(low16.extract(extractColors16, {low16.match({}, 1.0)}), (std::vector<uint8_t>{0, 0}));
    Row16 high16(PF_PixelFormat_ARGB64, {{0, 32768, 20, 30}, {32768, 0, 20, 30}});
    EXPECT_EQ(high16.extract(extractColors16, {high16.match({}, 1.0)}), (std::vector<uint8_t>{0, 0}));
    Row16 beyond16(PF_PixelFormat_ARGB64, {{0, 40000, 20, 30}, {32768, 32768, 20, 30}});
    EXPECT_EQ(beyond16.extract(extractColors16, {beyond16.match({}, 1.0)}), (std::vector<uint8_t>{0, 0}));

    Row32 low32(PF_PixelFormat_ARGB128, {{0, 0.5F, 0.25F, 0}, {1, 1.0F, 0.25F, 0}});
    EXPECT_EQ(low32.extract(extractColors32, {low32.match({}, 1.0)}), (std::vector<uint8_t>{0, 0}));
    Row32 high32(PF_PixelFormat_ARGB128, {{0, 1.0F, 0.25F, 0}, {1, 0.0F, 0.25F, 0}});
    EXPECT_EQ(high32.extract(extractColors32, {high32.match({}, 1.0)}), (std::vector<uint8_t>{0, 0}));
}

TEST(ExtractionEdges, SeedNeverEqualsAnOpaqueFirstPixel) {
    for (const uint8_t red : std::array<uint8_t, 4>{0, 1, 254, 255}) {
        Row8 row(PF_PixelFormat_ARGB32, {{255, red, 20, 30}});
        EXPECT_EQ(row.extract(extractColors8, {row.match({}, 1.0)}), (std::vector<uint8_t>{1}));
    }
    for (const uint16_t red : std::array<uint16_t, 5>{0, 32767, 32768, 32769, 65535}) {
        Row16 row(PF_PixelFormat_ARGB64, {{32768, red, 20, 30}});
        EXPECT_EQ(row.extract(extractColors16, {row.match({}, 1.0)}), (std::vector<uint8_t>{1}));
    }
    for (const float red : {0.0F, -0.0F, 1.0F, 2.0F, std::numeric_limits<float>::quiet_NaN()}) {
        Row32 row(PF_PixelFormat_ARGB128, {{1, red, 0, 0}});
        EXPECT_EQ(row.extract(extractColors32, {row.match({}, 1.0)}), (std::vector<uint8_t>{1}));
    }
}

TEST(ExtractionEdges, BandsStartAnewWithTheirOwnSeed) {
    // Two rows of one colour: a conversion in each band, but one in all where a band holds both rows.
    for (const int iterations : {1, 2}) {
        StrictHost host(shuffledOptions(iterations, 1, 1));
        TestWorld world(host, PF_PixelFormat_ARGB32, 3, 2);
        for (int32_t i = 0; i < 6; ++i) {
            world.at<PF_Pixel>(i % 3, i / 3) = {255, 7, 8, 9};
        }
        const ConversionWatch watch(host);
        MaskPlane plane;
        EXPECT_EQ(extractColors8(plane, host.in(), world.get(), wholeRect(3, 2), {}), PF_Err_NONE);
        EXPECT_EQ(watch.count(), iterations);
    }
}

TEST(ExtractionEdges, MoreIterationsThanRowsReadNothingBeyond) {
    StrictHost host(shuffledOptions(16, 1, 1));
    TestWorld world(host, PF_PixelFormat_ARGB128, 1, 1);
    world.at<PF_PixelFloat>(0, 0) = {1, 1, 1, 1};
    MaskPlane plane;
    EXPECT_EQ(
        extractColors32(plane, host.in(), world.get(), wholeRect(1, 1), {makeColorMatch(HlsColor(), 1.0)}),
        PF_Err_NONE);
    EXPECT_EQ(elementsOf(plane), Mask(1, 1, 1));
}

TEST(ExtractionEdges, SixteenBitsAreNarrowedForTheConversion) {
    Row16 row(PF_PixelFormat_ARGB64, {{1, 64, 65, 32768}, {1, 16384, 32704, 32703}});
    row.extract(extractColors16, {});
    ASSERT_EQ(row.converted().size(), 2U);
    EXPECT_EQ(row.converted()[0].red, 0);
    EXPECT_EQ(row.converted()[0].green, 1);
    EXPECT_EQ(row.converted()[0].blue, 255);
    EXPECT_EQ(row.converted()[1].red, 128);
    EXPECT_EQ(row.converted()[1].green, 255);
    EXPECT_EQ(row.converted()[1].blue, 254);
}

TEST(ExtractionEdges, DifferenceBelowEightBitsCostsAConversionAndGivesTheSameMatch) {
    Row16 row(PF_PixelFormat_ARGB64, {{1, 12800, 0, 0}, {1, 12801, 0, 0}});
    EXPECT_EQ(row.extract(extractColors16, {row.match({0, 100, 0, 0}, 0.0)}), (std::vector<uint8_t>{1, 1}));
    EXPECT_EQ(row.converted().size(), 2U);
}

/// The 8 bits that a float red is converted as.
int convertedRed(float red) {
    Row32 row(PF_PixelFormat_ARGB128, {{1, red, 0, 0}});
    row.extract(extractColors32, {});
    return row.converted().at(0).red;
}

TEST(ExtractionEdges, FloatsRoundAndWrapAround) {
    EXPECT_EQ(convertedRed(0.0F), 0);
    EXPECT_EQ(convertedRed(1.0F), 255);
    EXPECT_EQ(convertedRed(0.5F), 128);
    EXPECT_EQ(convertedRed(1.5F), 127);
    EXPECT_EQ(convertedRed(-0.1F), 231);
    EXPECT_EQ(convertedRed(-0.001F), 0) << "truncation is towards zero";
    EXPECT_EQ(convertedRed(256.0F / 255.0F), 0);
    EXPECT_EQ(convertedRed(1.0e6F), 255000000 % 256);
}

TEST(ExtractionEdges, FloatsThatDoNotFit32BitsCountAsZero) {
    EXPECT_EQ(convertedRed(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(convertedRed(std::numeric_limits<float>::infinity()), 0);
    EXPECT_EQ(convertedRed(-std::numeric_limits<float>::infinity()), 0);
    EXPECT_EQ(convertedRed(3.0e38F), 0);
    EXPECT_EQ(convertedRed(1.0e8F), 0);
    EXPECT_EQ(convertedRed(-1.0e8F), 0);
}

TEST(ExtractionEdges, OverbrightFloatMatchesLikeItsWrappedValue) {
    Row32 row(PF_PixelFormat_ARGB128, {{1, 1.5F, 0, 0}, {1, 127.0F / 255.0F, 0, 0}, {1, 1.0F, 0, 0}});
    EXPECT_EQ(row.extract(extractColors32, {row.match({0, 127, 0, 0}, 0.0)}),
              (std::vector<uint8_t>{1, 1, 0}));
}

TEST(ExtractionEdges, FloatColoursAreTheSameBitForBitOnly) {
    const auto conversions = [](float first, float second) {
        Row32 row(PF_PixelFormat_ARGB128, {{1, 0.5F, first, 0}, {1, 0.5F, second, 0}});
        row.extract(extractColors32, {});
        return row.converted().size();
    };
    const auto nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(conversions(0.0F, 0.0F), 1U);
    EXPECT_EQ(conversions(0.0F, -0.0F), 2U);
    EXPECT_EQ(conversions(nan, nan), 1U);
    EXPECT_EQ(conversions(nan, std::bit_cast<float>(0x7FC00001U)), 2U);
}

TEST(ExtractionEdges, FloatIsTransparentAtZeroOnly) {
    const auto nan = std::numeric_limits<float>::quiet_NaN();
    Row32 row(PF_PixelFormat_ARGB128,
              {{nan, 1, 0, 0}, {-0.0F, 1, 0, 0}, {-1.0F, 1, 0, 0}, {0.0F, 1, 0, 0}, {1.0e-45F, 1, 0, 0}});
    EXPECT_EQ(row.extract(extractColors32, {row.match({}, 1.0)}), (std::vector<uint8_t>{1, 0, 1, 0, 1}));
}

TEST(ExtractionEdges, FailingConversionIsNotNoticed) {
    StrictHost host;
    TestWorld world(host, PF_PixelFormat_ARGB32, 2, 1);
    world.at<PF_Pixel>(0, 0) = {255, 1, 0, 0};
    world.at<PF_Pixel>(1, 0) = {255, 2, 0, 0};
    const ConversionWatch watch(host, [](const PF_Pixel& color, PF_Fixed* hls) {
        hls[0] = 0;
        hls[1] = color.red == 1 ? 30000 : 0;
        hls[2] = 0;
        return PF_Err{77};
    });
    MaskPlane plane;
    EXPECT_EQ(extractColors8(plane, host.in(), world.get(), wholeRect(2, 1),
                             {makeColorMatch(HlsColor{0, 30000, 0}, 0.0)}),
              PF_Err_NONE);
    EXPECT_EQ(elementsOf(plane).elements, (std::vector<uint8_t>{1, 0})) << "what stands in the result counts";
}

TEST(ExtractionEdges, UndefinedHueIsBorne) {
    StrictHost host;
    TestWorld world(host, PF_PixelFormat_ARGB32, 1, 1);
    world.at<PF_Pixel>(0, 0) = {255, 8, 8, 8};
    const ConversionWatch watch(host, [](const PF_Pixel&, PF_Fixed* hls) {
        hls[0] = std::numeric_limits<int32_t>::min();
        hls[1] = 2056;
        hls[2] = 0;
        return PF_Err{PF_Err_NONE};
    });
    MaskPlane plane;
    const ColorMatch grey = makeColorMatch(host.in(), {0, 8, 8, 8}, 0.0);
    EXPECT_EQ(extractColors8(plane, host.in(), world.get(), wholeRect(1, 1), {grey}), PF_Err_NONE);
    EXPECT_EQ(elementsOf(plane), Mask(1, 1, 1));
}

} // namespace
} // namespace kovalune::test
