// Smoothing a picture without a host: the very pixels that the smoothing makes in one, and what it refuses.

#include "tests/facade/OwnPicture.h"

#include <functional>

namespace kovalune::test {
namespace {

std::vector<SmoothOptions> optionsWith(SmoothKey key) {
    SmoothOptions plain;
    SmoothOptions other = {.threshold = 40, .strength = 100, .curve = -60};
    SmoothOptions weak = {.threshold = 0, .strength = 35, .curve = 100};
    SmoothOptions copyOnly = {.strength = 0};
    for (SmoothOptions* const options : {&plain, &other, &weak, &copyOnly}) {
        options->key = key;
    }
    other.keyTolerance = 12;
    weak.keyTolerance = 255;
    return {plain, other, weak, copyOnly};
}

class SmoothPicture : public testing::TestWithParam<FacadeCase> {};

INSTANTIATE_TEST_SUITE_P(All, SmoothPicture, allFacadeCases(), caseName);

TEST_P(SmoothPicture, IsWhatTheSmoothingMakesInAHost) {
    const auto [format, key, padding] = GetParam();
    Random random(17);
    int changed = 0;
    for (const auto& [width, height] : kSizes) {
        for (SmoothOptions options : optionsWith(key)) {
            StrictHost host;
            TestWorld input(host, format, width, height);
            TestWorld expected(host, format, width, height);
            const PlainPicture content = flatPicture(format, width, height, random);
            write(content, input);
            keyOn(options, content);
            ASSERT_EQ(smoothInHost(host, input, expected, options), PF_Err_NONE);

            OwnPicture source(format, width, height, padding);
            OwnPicture destination(format, width, height, padding + 2);
            source.copyFrom(input);
            ASSERT_EQ(smoothPicture(source.view(), destination.writable(), options), PF_Err_NONE);
            EXPECT_TRUE(destination.pixelsEqual(expected)) << width << "x" << height;
            EXPECT_TRUE(destination.paddingUntouched());
            EXPECT_TRUE(source.pixelsEqual(input));
            changed += destination.pixelsEqual(input) ? 0 : 1;
        }
    }
    EXPECT_GT(changed, 3) << "the pictures give nothing to smooth";
}

TEST(SmoothPictureOptions, StartFromWhatFramesAreSmoothedWith) {
    const SmoothOptions options;
    const SmoothParams params;
    EXPECT_EQ(options.threshold, params.threshold);
    EXPECT_EQ(options.strength, params.strength);
    EXPECT_EQ(options.curve, params.curve);
    EXPECT_EQ(options.key, SmoothKey::kNone);
    EXPECT_EQ(options.keyRed, params.keyRed);
    EXPECT_EQ(options.keyGreen, params.keyGreen);
    EXPECT_EQ(options.keyBlue, params.keyBlue);
    EXPECT_EQ(options.keyTolerance, params.keyTolerance);
}

TEST(SmoothPictureOptions, AreAcceptedAtBothEndsOfTheirRangesAndNotBeyond) {
    struct Option {
        int32_t SmoothOptions::*field;
        IntRange range;
    };
    constexpr Option all[] = {{&SmoothOptions::threshold, kThresholdRange},
                              {&SmoothOptions::strength, kStrengthRange},
                              {&SmoothOptions::curve, kCurveRange},
                              {&SmoothOptions::keyRed, kKeyChannelRange},
                              {&SmoothOptions::keyGreen, kKeyChannelRange},
                              {&SmoothOptions::keyBlue, kKeyChannelRange},
                              {&SmoothOptions::keyTolerance, kKeyToleranceRange}};
    const OwnPicture source(PF_PixelFormat_ARGB32, 5, 4, 0);
    for (const Option& option : all) {
        for (const int32_t value : {option.range.lowest, option.range.highest}) {
            SmoothOptions options;
            options.*option.field = value;
            OwnPicture destination(PF_PixelFormat_ARGB32, 5, 4, 0);
            EXPECT_EQ(smoothPicture(source.view(), destination.writable(), options), PF_Err_NONE);
        }
        for (const int32_t value : {option.range.lowest - 1, option.range.highest + 1}) {
            SmoothOptions options;
            options.*option.field = value;
            OwnPicture destination(PF_PixelFormat_ARGB32, 5, 4, 0);
            EXPECT_EQ(smoothPicture(source.view(), destination.writable(), options),
                      PF_Err_BAD_CALLBACK_PARAM);
        }
    }
}

struct BadCall {
    const char* name;
    PF_Err code;
    std::function<void(PictureView&, WritablePictureView&)> spoil;
};

class SmoothPictureRefuses : public testing::TestWithParam<BadCall> {};

const BadCall kBadCalls[] = {
    {"NoFormat", PF_Err_UNRECOGNIZED_PARAM_TYPE,
     [](PictureView& s, WritablePictureView&) { s.format = PF_PixelFormat_INVALID; }},
    {"AnUnknownFormatBeforeASize", PF_Err_UNRECOGNIZED_PARAM_TYPE,
     [](PictureView& s, WritablePictureView& d) { s.format = 7, d.format = 7, d.width = 3; }},
    {"TwoFormats", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView&, WritablePictureView& d) { d.format = PF_PixelFormat_ARGB32; }},
    {"AnotherWidth", PF_Err_BAD_CALLBACK_PARAM, [](PictureView&, WritablePictureView& d) { --d.width; }},
    {"AnotherHeight", PF_Err_BAD_CALLBACK_PARAM, [](PictureView&, WritablePictureView& d) { --d.height; }},
    {"AnotherWidthThanNone", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView&) { s.width = 0; }},
    {"AnotherHeightThanNone", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView&) { s.height = 0; }},
    {"NegativeSides", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) { s.width = d.width = -1, s.height = d.height = -4; }},
    {"ANegativeWidthAlone", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) { s.width = d.width = -1; }},
    {"ANegativeHeightAlone", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) { s.height = d.height = -1; }},
    {"ALongSideOfNoPixel", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) {
         s.width = d.width = 0, s.height = d.height = kLongestSide + 1;
     }},
    {"SidesTooLong", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) { s.height = d.height = kLongestSide + 1; }},
    {"AWidthBeyondThatOfWorlds", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) {
         s.width = d.width = 32768, s.height = d.height = 1;
         s.rowbytes = d.rowbytes = 32768 * 8;
     }},
    {"RowsShorterThanTheirPixels", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView&) { s.rowbytes = 5 * 8 - 2; }},
    {"NegativeRows", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView&, WritablePictureView& d) { d.rowbytes = -d.rowbytes; }},
    {"RowsThatLeaveChannelsUnaligned", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView&, WritablePictureView& d) { ++d.rowbytes; }},
    {"AnUnalignedStart", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView&) {
         s.pixels = static_cast<const uint8_t*>(s.pixels) + 1, s.height = 4;
     }},
    {"NoSource", PF_Err_BAD_CALLBACK_PARAM, [](PictureView& s, WritablePictureView&) { s.pixels = nullptr; }},
    {"NoDestination", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView&, WritablePictureView& d) { d.pixels = nullptr; }},
    {"OnePictureAsBoth", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) { s.pixels = d.pixels; }},
    {"PicturesThatOverlap", PF_Err_BAD_CALLBACK_PARAM,
     [](PictureView& s, WritablePictureView& d) {
         s.pixels = static_cast<const uint8_t*>(d.pixels) + d.rowbytes * (d.height - 1);
     }},
};

INSTANTIATE_TEST_SUITE_P(All, SmoothPictureRefuses, testing::ValuesIn(kBadCalls),
                         [](const auto& call) { return std::string(call.param.name); });

TEST_P(SmoothPictureRefuses, AndWritesNothing) {
    const OwnPicture source(PF_PixelFormat_ARGB64, 5, 4, 1);
    OwnPicture destination(PF_PixelFormat_ARGB64, 5, 4, 1);
    PictureView from = source.view();
    WritablePictureView to = destination.writable();
    GetParam().spoil(from, to);
    EXPECT_EQ(smoothPicture(from, to, {}), GetParam().code);
    EXPECT_TRUE(destination.untouched());
}

TEST(SmoothPictureSides, MayBeAsLongAsThoseOfAWorld) {
    EXPECT_EQ(kLongestSide, 32767);
    for (const auto& [width, height] : {std::pair{kLongestSide, 1}, std::pair{1, kLongestSide}}) {
        const OwnPicture source(PF_PixelFormat_ARGB32, width, height, 0);
        OwnPicture destination(PF_PixelFormat_ARGB32, width, height, 0);
        EXPECT_EQ(smoothPicture(source.view(), destination.writable(), {.strength = 100}), PF_Err_NONE);
    }
}

TEST(SmoothPictureRows, MayFollowEachOtherInMemory) {
    OwnPicture both(PF_PixelFormat_ARGB32, 6, 8, 0);
    PictureView upper = both.view();
    WritablePictureView lower = both.writable();
    upper.height = lower.height = 4;
    lower.pixels = static_cast<uint8_t*>(lower.pixels) + lower.rowbytes * 4;
    EXPECT_EQ(smoothPicture(upper, lower, {}), PF_Err_NONE);
}

TEST(SmoothPictureRows, MayStartAtAnyByteAt8Bits) {
    std::vector<uint8_t> from(1 + 5 * 4 * 3, 90);
    std::vector<uint8_t> to(3 + 5 * 4 * 3, 0);
    const PictureView source = {PF_PixelFormat_ARGB32, 5, 3, 20, from.data() + 1};
    const WritablePictureView destination = {PF_PixelFormat_ARGB32, 5, 3, 20, to.data() + 3};
    EXPECT_EQ(smoothPicture(source, destination, {}), PF_Err_NONE);
    EXPECT_TRUE(std::equal(from.begin() + 1, from.end(), to.begin() + 3));
}

TEST(SmoothPictureRows, MayBeNoneAtAll) {
    for (const auto& [width, height] : {std::pair{0, 0}, std::pair{0, 5}, std::pair{5, 0}}) {
        const PictureView source = {PF_PixelFormat_ARGB128, width, height, 0, nullptr};
        const WritablePictureView destination = {PF_PixelFormat_ARGB128, width, height, 0, nullptr};
        EXPECT_EQ(smoothPicture(source, destination, {}), PF_Err_NONE);
        EXPECT_EQ(edgeFlags(source, {.key = SmoothKey::kRemove}, {}), PF_Err_NONE);
    }
}

} // namespace
} // namespace kovalune::test
