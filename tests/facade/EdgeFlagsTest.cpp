// The edge flags of a picture: one byte a pixel, the same as in the map that the smoothing builds.

#include "tests/facade/OwnPicture.h"

#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/SmoothOf.h"

namespace kovalune::test {
namespace {

using Flags = std::vector<uint8_t>;

std::size_t areaOf(int32_t width, int32_t height) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

template <class Format>
Flags mapOf(StrictHost& host, const TestWorld& keyed, int32_t threshold) {
    const int32_t width = keyed.width();
    const int32_t height = keyed.height();
    const TestWorld memory(host, PF_PixelFormat_ARGB32, EdgeFlagMap::rowCells(width) / 4,
                           EdgeFlagMap::rowCount(height));
    EdgeFlagMap map(memory.world(), width, height);
    fillEdgeFlags<Format>(map, keyed.world(), SmoothOf<Format>::limitOf(threshold));
    Flags flags;
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            flags.push_back(map(x, y));
        }
    }
    return flags;
}

Flags mapOf(StrictHost& host, const TestWorld& keyed, int32_t threshold) {
    switch (keyed.format()) {
    case PF_PixelFormat_ARGB32:
        return mapOf<Argb8>(host, keyed, threshold);
    case PF_PixelFormat_ARGB64:
        return mapOf<Argb16>(host, keyed, threshold);
    default:
        return mapOf<Argb32>(host, keyed, threshold);
    }
}

class EdgeFlags : public testing::TestWithParam<FacadeCase> {};

INSTANTIATE_TEST_SUITE_P(All, EdgeFlags, allFacadeCases(), caseName);

TEST_P(EdgeFlags, AreThoseOfTheMapOnTheKeyedPicture) {
    const auto [format, key, padding] = GetParam();
    Random random(23);
    int marked = 0;
    for (const auto& [width, height] : kSizes) {
        for (const int32_t threshold : {10, 0, 200}) {
            StrictHost host;
            TestWorld input(host, format, width, height);
            TestWorld keyed(host, format, width, height);
            const PlainPicture content = flatPicture(format, width, height, random);
            write(content, input);
            SmoothOptions options = {.threshold = threshold, .strength = 0, .key = key};
            options.keyTolerance = 20;
            keyOn(options, content);
            ASSERT_EQ(smoothInHost(host, input, keyed, options), PF_Err_NONE);
            const Flags expected = mapOf(host, keyed, threshold);

            OwnPicture picture(format, width, height, padding);
            picture.copyFrom(input);
            Flags flags(areaOf(width, height), 0xff);
            ASSERT_EQ(edgeFlags(picture.view(), options, flags), PF_Err_NONE);
            EXPECT_EQ(flags, expected) << width << "x" << height;
            marked += std::any_of(flags.begin(), flags.end(), [](uint8_t f) { return f != 0; }) ? 1 : 0;
        }
    }
    EXPECT_GT(marked, 5) << "the pictures have no edges";
}

PictureView viewOf(const std::vector<PF_Pixel>& pixels, int32_t width) {
    return {PF_PixelFormat_ARGB32, width, static_cast<int32_t>(pixels.size()) / width, width * 4,
            pixels.data()};
}

/// 4 by 3, grey, with one lighter pixel at (1, 1).
std::vector<PF_Pixel> spot(A_u_char level) {
    std::vector<PF_Pixel> pixels(12, PF_Pixel{255, 100, 100, 100});
    pixels[5] = {255, level, 100, 100};
    return pixels;
}

TEST(EdgeFlagBits, NameThePairsThatDiffer) {
    const std::vector<PF_Pixel> pixels = spot(200);
    Flags flags(12, 0xff);
    ASSERT_EQ(edgeFlags(viewOf(pixels, 4), {}, flags), PF_Err_NONE);
    const uint8_t up = kEdgeDown | kEdgeRising;
    const uint8_t left = kEdgeRight | kEdgeRising;
    const uint8_t own = kEdgeRight | kEdgeDown | kEdgeFalling;
    const Flags expected = {kEdgeFalling, up, 0, 0, left, own, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(flags, expected);
}

TEST(EdgeFlagBits, ComeAboveTheThreshold) {
    const std::vector<PF_Pixel> pixels = spot(120);
    Flags flags(12, 0xff);
    ASSERT_EQ(edgeFlags(viewOf(pixels, 4), {.threshold = 20}, flags), PF_Err_NONE);
    EXPECT_EQ(flags, Flags(12, 0));
    ASSERT_EQ(edgeFlags(viewOf(pixels, 4), {.threshold = 19}, flags), PF_Err_NONE);
    EXPECT_NE(flags, Flags(12, 0));
}

TEST(EdgeFlagBits, AreNoneWhereTheKeyLeavesNothing) {
    const std::vector<PF_Pixel> pixels = spot(200);
    Flags flags(12, 0xff);
    ASSERT_EQ(edgeFlags(viewOf(pixels, 4), {.key = SmoothKey::kOnly}, flags), PF_Err_NONE);
    EXPECT_EQ(flags, Flags(12, 0));
}

TEST(EdgeFlagBits, DoNotDependOnTheStrength) {
    const std::vector<PF_Pixel> pixels = spot(200);
    Flags none(12, 0xff);
    Flags full(12, 0xff);
    ASSERT_EQ(edgeFlags(viewOf(pixels, 4), {.strength = 0}, none), PF_Err_NONE);
    ASSERT_EQ(edgeFlags(viewOf(pixels, 4), {.strength = 100}, full), PF_Err_NONE);
    EXPECT_EQ(none, full);
}

TEST(EdgeFlagBits, StayAsTheyWereInABadCall) {
    const std::vector<PF_Pixel> pixels = spot(200);
    const PictureView picture = viewOf(pixels, 4);
    PictureView unknown = picture;
    unknown.format = PF_PixelFormat_INVALID;
    PictureView shortRows = picture;
    shortRows.rowbytes = 15;
    Flags flags(12, 0xff);
    EXPECT_EQ(edgeFlags(unknown, {}, flags), PF_Err_UNRECOGNIZED_PARAM_TYPE);
    EXPECT_EQ(edgeFlags(shortRows, {}, flags), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(edgeFlags(picture, {.threshold = 256}, flags), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(edgeFlags(picture, {}, std::span(flags).first(11)), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(flags, Flags(12, 0xff));
}

} // namespace
} // namespace kovalune::test
