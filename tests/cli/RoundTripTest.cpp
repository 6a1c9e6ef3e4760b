// Pictures of every kind through the command with the effect's blur turned off: what comes out is what went
// in, sample for sample.

#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kovalune::test {
namespace {

PngPicture passedThrough(const PngPicture& picture) {
    const TestFolder folder;
    writePng(folder / "in.png", picture);
    const CommandOutcome outcome = runCommand(
        {"render", folder / "in.png", "-o", folder / "out.png", "--set", "Enable 1=off", "--threads", "2"});
    EXPECT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"in.png", "out.png"}));
    return readPngFile(folder / "out.png");
}

void expectSame(const PngPicture& actual, const PngPicture& expected) {
    EXPECT_EQ(actual.color, expected.color);
    EXPECT_EQ(actual.depth, expected.depth);
    EXPECT_EQ(actual.width, expected.width);
    EXPECT_EQ(actual.height, expected.height);
    EXPECT_FALSE(actual.interlaced);
    EXPECT_TRUE(actual.rows == expected.rows) << "other samples";
}

struct Kind {
    PngColor color;
    int depth;
    bool interlaced;
};

std::string nameOf(const Kind& kind) {
    const std::vector<std::string> colors = {"Grey", "", "Rgb", "Palette", "GreyAlpha", "", "RgbAlpha"};
    return colors[static_cast<std::size_t>(kind.color)] + std::to_string(kind.depth) +
           (kind.interlaced ? "Interlaced" : "");
}

void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << nameOf(kind);
}

std::string kindName(const testing::TestParamInfo<Kind>& info) {
    return nameOf(info.param);
}

std::vector<Kind> withAndWithoutInterlace(const std::vector<std::pair<PngColor, int>>& kinds) {
    std::vector<Kind> result;
    for (const auto& [color, depth] : kinds) {
        result.push_back({color, depth, false});
        result.push_back({color, depth, true});
    }
    return result;
}

class WholeSamples : public testing::TestWithParam<Kind> {};

TEST_P(WholeSamples, StayAsTheyAre) {
    PngPicture picture = randomPng(GetParam().color, GetParam().depth, 37, 23, 1);
    picture.interlaced = GetParam().interlaced;
    expectSame(passedThrough(picture), picture);
}

INSTANTIATE_TEST_SUITE_P(RoundTrip, WholeSamples,
                         testing::ValuesIn(withAndWithoutInterlace({{PngColor::kGrey, 8},
                                                                    {PngColor::kGrey, 16},
                                                                    {PngColor::kGreyAlpha, 8},
                                                                    {PngColor::kGreyAlpha, 16},
                                                                    {PngColor::kRgb, 8},
                                                                    {PngColor::kRgb, 16},
                                                                    {PngColor::kRgbAlpha, 8},
                                                                    {PngColor::kRgbAlpha, 16}})),
                         kindName);

class PackedGrey : public testing::TestWithParam<Kind> {};

/// The picture in 8 bits, with alpha after each sample for a transparent grey of `key`.
PngPicture widened(const PngPicture& picture, int key) {
    const int white = (1 << picture.depth) - 1;
    PngPicture wide =
        blankPng(key < 0 ? PngColor::kGrey : PngColor::kGreyAlpha, 8, picture.width, picture.height);
    wide.rows.clear();
    for (uint32_t y = 0; y < picture.height; ++y) {
        for (uint32_t x = 0; x < picture.width; ++x) {
            const int sample = picture.sample(y, x);
            wide.rows.push_back(static_cast<uint8_t>(sample * 255 / white));
            if (key >= 0) {
                wide.rows.push_back(sample == key ? 0 : 255);
            }
        }
    }
    return wide;
}

TEST_P(PackedGrey, BecomesEightBits) {
    PngPicture picture = randomPng(PngColor::kGrey, GetParam().depth, 37, 23, 2);
    picture.interlaced = GetParam().interlaced;
    expectSame(passedThrough(picture), widened(picture, -1));
}

TEST_P(PackedGrey, GetsAlphaForItsTransparentGrey) {
    PngPicture picture = randomPng(PngColor::kGrey, GetParam().depth, 37, 23, 3);
    picture.interlaced = GetParam().interlaced;
    picture.transparency = {0, 1};
    expectSame(passedThrough(picture), widened(picture, 1));
}

INSTANTIATE_TEST_SUITE_P(RoundTrip, PackedGrey,
                         testing::ValuesIn(withAndWithoutInterlace(
                             {{PngColor::kGrey, 1}, {PngColor::kGrey, 2}, {PngColor::kGrey, 4}})),
                         kindName);

class PaletteFile : public testing::TestWithParam<Kind> {
protected:
    static PngPicture picture() {
        const int depth = GetParam().depth;
        PngPicture made = randomPng(PngColor::kPalette, depth, 37, 23, 4);
        made.interlaced = GetParam().interlaced;
        made.palette = randomPng(PngColor::kRgb, 8, 1U << depth, 1, 5).rows;
        return made;
    }

    /// With the alpha of the transparency, which may be shorter than the palette.
    static PngPicture spread(const PngPicture& from) {
        const bool alpha = !from.transparency.empty();
        PngPicture to = blankPng(alpha ? PngColor::kRgbAlpha : PngColor::kRgb, 8, from.width, from.height);
        to.rows.clear();
        for (uint32_t y = 0; y < from.height; ++y) {
            for (uint32_t x = 0; x < from.width; ++x) {
                const std::size_t entry = from.sample(y, x);
                for (std::size_t channel = 0; channel < 3; ++channel) {
                    to.rows.push_back(from.palette[3 * entry + channel]);
                }
                if (alpha) {
                    to.rows.push_back(entry < from.transparency.size() ? from.transparency[entry] : 255);
                }
            }
        }
        return to;
    }
};

TEST_P(PaletteFile, BecomesRgb) {
    expectSame(passedThrough(picture()), spread(picture()));
}

TEST_P(PaletteFile, BecomesRgbAlphaWithTransparency) {
    PngPicture from = picture();
    from.transparency = GetParam().depth == 1 ? std::vector<uint8_t>{0} : std::vector<uint8_t>{0, 128, 7};
    expectSame(passedThrough(from), spread(from));
}

INSTANTIATE_TEST_SUITE_P(RoundTrip, PaletteFile,
                         testing::ValuesIn(withAndWithoutInterlace({{PngColor::kPalette, 1},
                                                                    {PngColor::kPalette, 2},
                                                                    {PngColor::kPalette, 4},
                                                                    {PngColor::kPalette, 8}})),
                         kindName);

class TransparentColor : public testing::TestWithParam<Kind> {};

/// Half of the pixels have the colour, a quarter differ from it in the lowest bit of the last sample.
PngPicture withKey(PngColor color, int depth) {
    PngPicture picture = randomPng(color, depth, 32, 8, 6);
    const std::size_t pixelBytes = picture.rowBytes() / picture.width;
    for (std::size_t pixel = 0; pixel < 256; pixel += 2) {
        for (std::size_t i = 0; i < pixelBytes; ++i) {
            picture.rows[pixel * pixelBytes + i] = picture.rows[i];
        }
        if (pixel % 4 == 2) {
            picture.rows[(pixel + 1) * pixelBytes - 1] ^= 1;
        }
    }
    for (std::size_t i = 0; i < picture.channels(); ++i) {
        const uint16_t sample = picture.sample(0, i);
        picture.transparency.push_back(static_cast<uint8_t>(sample >> 8));
        picture.transparency.push_back(static_cast<uint8_t>(sample & 0xff));
    }
    return picture;
}

TEST_P(TransparentColor, BecomesAlphaAndKeepsItsSamples) {
    const PngPicture from = withKey(GetParam().color, GetParam().depth);
    const std::size_t sampleBytes = GetParam().depth == 16 ? 2 : 1;
    const std::size_t pixelBytes = from.channels() * sampleBytes;
    PngPicture to = blankPng(from.color == PngColor::kGrey ? PngColor::kGreyAlpha : PngColor::kRgbAlpha,
                             from.depth, from.width, from.height);
    to.rows.clear();
    for (std::size_t at = 0; at < from.rows.size(); at += pixelBytes) {
        const auto first = from.rows.begin() + static_cast<std::ptrdiff_t>(at);
        const auto last = first + static_cast<std::ptrdiff_t>(pixelBytes);
        to.rows.insert(to.rows.end(), first, last);
        const bool transparent = std::equal(first, last, from.rows.begin());
        to.rows.insert(to.rows.end(), sampleBytes, transparent ? 0 : 255);
    }
    ASSERT_EQ(std::count(to.rows.begin(), to.rows.end(), 0) >= 64, true);
    expectSame(passedThrough(from), to);
}

INSTANTIATE_TEST_SUITE_P(RoundTrip, TransparentColor,
                         testing::Values(Kind{PngColor::kGrey, 8, false}, Kind{PngColor::kGrey, 16, false},
                                         Kind{PngColor::kRgb, 8, false}, Kind{PngColor::kRgb, 16, false}),
                         kindName);

TEST(RoundTrip, ColourUnderFullTransparencyStays) {
    for (const int depth : {8, 16}) {
        PngPicture picture = randomPng(PngColor::kRgbAlpha, depth, 40, 40, 7);
        const std::size_t pixelBytes = depth == 16 ? 8 : 4;
        for (std::size_t at = pixelBytes; at <= picture.rows.size(); at += 2 * pixelBytes) {
            std::fill_n(picture.rows.begin() + static_cast<std::ptrdiff_t>(at - pixelBytes / 4),
                        pixelBytes / 4, uint8_t{0});
        }
        expectSame(passedThrough(picture), picture);
    }
}

TEST(RoundTrip, AllValuesOfSixteenBitsStay) {
    PngPicture picture = blankPng(PngColor::kGrey, 16, 256, 256);
    for (std::size_t i = 0; i < picture.rows.size(); ++i) {
        picture.rows[i] = static_cast<uint8_t>(i % 2 == 0 ? i / 512 : i / 2 % 256);
    }
    expectSame(passedThrough(picture), picture);
}

TEST(RoundTrip, AllValuesOfSixteenBitsStayInEveryChannel) {
    PngPicture picture = blankPng(PngColor::kRgbAlpha, 16, 256, 256);
    for (std::size_t sample = 0; sample < 262144; ++sample) {
        // Odd factors visit every value, in another order for each channel.
        const std::size_t value = sample / 4 * (2 * (sample % 4) + 1) % 65536;
        picture.rows[2 * sample] = static_cast<uint8_t>(value >> 8);
        picture.rows[2 * sample + 1] = static_cast<uint8_t>(value & 0xff);
    }
    expectSame(passedThrough(picture), picture);
}

TEST(RoundTrip, APictureOfOnePixelStays) {
    for (const PngColor color : {PngColor::kGrey, PngColor::kRgb, PngColor::kRgbAlpha}) {
        const PngPicture picture = randomPng(color, 8, 1, 1, 8);
        expectSame(passedThrough(picture), picture);
    }
}

TEST(RoundTrip, WhatTheFileSaysAboutColourAndResolutionStays) {
    PngPicture picture = randomPng(PngColor::kRgb, 8, 5, 4, 9);
    std::vector<uint8_t> chromaticities(32, 0);
    for (std::size_t i = 0; i < 8; ++i) {
        chromaticities[4 * i + 2] = static_cast<uint8_t>(0x50 + i);
    }
    picture.notes = {{"cHRM", chromaticities},
                     {"gAMA", {0, 0, 0xff, 0xff}},
                     {"sRGB", {1}},
                     {"pHYs", {0, 0, 0x0b, 0x13, 0, 0, 0x0b, 0x12, 1}}};
    const PngPicture out = passedThrough(picture);
    expectSame(out, picture);
    EXPECT_EQ(out.notes, picture.notes);
}

TEST(RoundTrip, AColourProfileStays) {
    PngPicture picture = randomPng(PngColor::kRgbAlpha, 16, 5, 4, 10);
    std::vector<uint8_t> profile = {'a', 'n', 'y', 0, 0};
    for (int i = 0; i < 3000; ++i) {
        profile.push_back(static_cast<uint8_t>(i * 7));
    }
    picture.notes = {{"iCCP", profile}};
    const PngPicture out = passedThrough(picture);
    expectSame(out, picture);
    EXPECT_EQ(out.notes, picture.notes);
}

} // namespace
} // namespace kovalune::test
