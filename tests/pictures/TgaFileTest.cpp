// Every kind of TGA file in, and out again to the sample; files that are wrong in their header or their length.

#include "pictures/tga/TgaFile.h"
#include "pictures/PictureFile.h"
#include "tests/pictures/Pictures.h"
#include "tests/pictures/TgaMaker.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

#include <string>

namespace kovalune::test {

using namespace pictures;
using namespace text;

namespace {

using Bytes = std::vector<uint8_t>;

Picture decoded(const Bytes& bytes) {
    return decodePicture(FileFormat::kTga, bytes, "in.tga");
}

std::string refusal(const Bytes& bytes) {
    try {
        decoded(bytes);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.kind(), FailureKind::kFile);
        const std::string text = failure.what();
        EXPECT_TRUE(text.starts_with("cannot read 'in.tga': ")) << text;
        return text;
    }
    return {};
}

/// 2 x 2 pixels of colour, rows from the top.
TgaParts fourColours() {
    TgaParts parts;
    parts.width = 2;
    parts.height = 2;
    parts.pixels = {3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10};
    return parts;
}

const Bytes kFourColours = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

TgaParts paletteFile(int indexBytes) {
    TgaParts parts;
    parts.type = 1;
    parts.width = 3;
    parts.height = 1;
    parts.depth = 8 * indexBytes;
    parts.palette = {3, 2, 1, 6, 5, 4};
    for (const uint8_t index : Bytes{1, 0, 1}) {
        parts.pixels.push_back(index);
        parts.pixels.resize(parts.pixels.size() + static_cast<std::size_t>(indexBytes) - 1);
    }
    return parts;
}

/// 5 x 2 pixels: a run over the end of the row, then single ones.
TgaParts runs() {
    TgaParts parts;
    parts.type = 10;
    parts.width = 5;
    parts.height = 2;
    parts.depth = 32;
    parts.descriptor = 0x28;
    parts.pixels = {0x86, 3, 2, 1, 0, 0x02, 6, 5, 4, 7, 9, 8, 7, 0, 1, 1, 1, 255};
    return parts;
}

class OutAndIn : public testing::TestWithParam<std::tuple<Channels, AlphaKind>> {};

TEST_P(OutAndIn, KeepsEverySample) {
    const auto& [channels, kind] = GetParam();
    for (const uint32_t width : {1U, 2U, 3U, 127U, 128U, 129U, 300U}) {
        Picture picture = randomPicture(SampleType::kUint8, channels, width, 5, width);
        // Runs of every length, with all that random samples have between them.
        const std::size_t step = channelCount(channels);
        for (std::size_t place = step; place < picture.samples.size(); ++place) {
            if (picture.samples[place / step / 7] % 3 != 0) {
                picture.samples[place] = picture.samples[place - step];
            }
        }
        picture.alphaKind = kind;
        picture.format = FileFormat::kTga;
        const Picture again = decoded(encodePicture(FileFormat::kTga, picture));
        EXPECT_EQ(again.samples, picture.samples);
        EXPECT_EQ(again.channels, channels);
        EXPECT_EQ(again.width, width);
        EXPECT_EQ(again.height, 5U);
        EXPECT_EQ(again.sampleType, SampleType::kUint8);
        EXPECT_EQ(again.format, FileFormat::kTga);
        EXPECT_EQ(again.alphaKind, hasAlpha(channels) ? kind : AlphaKind::kStraight);
    }
}

INSTANTIATE_TEST_SUITE_P(TgaFile, OutAndIn,
                         testing::Combine(testing::Values(Channels::kGrey, Channels::kGreyAlpha,
                                                          Channels::kRgb, Channels::kRgbAlpha),
                                          testing::Values(AlphaKind::kStraight, AlphaKind::kPremultiplied)));

TEST(TgaFile, RandomSamplesStayToo) {
    for (const Channels channels :
         {Channels::kGrey, Channels::kGreyAlpha, Channels::kRgb, Channels::kRgbAlpha}) {
        const Picture picture = randomPicture(SampleType::kUint8, channels, 301, 7, 5);
        EXPECT_EQ(decoded(encodeTga(picture)).samples, picture.samples);
    }
}

TEST(TgaFile, AlphaOfZeroEverywhereStaysAlphaInAFileOfOurs) {
    const Picture picture = pictureWith(SampleType::kUint8, Channels::kRgbAlpha, 2, {1, 2, 3, 0, 4, 5, 6, 0});
    EXPECT_EQ(decoded(encodeTga(picture)).samples, picture.samples);
}

TEST(TgaFile, TheFirstPixelMayBeInAnyCorner) {
    TgaParts parts = fourColours();
    EXPECT_EQ(decoded(tgaFile(parts)).samples, kFourColours);
    parts.descriptor = 0x00; // bottom left
    parts.pixels = {9, 8, 7, 12, 11, 10, 3, 2, 1, 6, 5, 4};
    EXPECT_EQ(decoded(tgaFile(parts)).samples, kFourColours);
    parts.descriptor = 0x10; // bottom right
    parts.pixels = {12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1};
    EXPECT_EQ(decoded(tgaFile(parts)).samples, kFourColours);
    parts.descriptor = 0x30; // top right
    parts.pixels = {6, 5, 4, 3, 2, 1, 12, 11, 10, 9, 8, 7};
    EXPECT_EQ(decoded(tgaFile(parts)).samples, kFourColours);
}

TEST(TgaFile, GreyIsReadWithAlphaAndWithout) {
    TgaParts parts;
    parts.type = 3;
    parts.width = 3;
    parts.height = 1;
    parts.depth = 8;
    parts.pixels = {1, 2, 3};
    EXPECT_EQ(decoded(tgaFile(parts)).channels, Channels::kGrey);
    EXPECT_EQ(decoded(tgaFile(parts)).samples, (Bytes{1, 2, 3}));
    parts.depth = 16;
    parts.descriptor = 0x28;
    parts.pixels = {1, 200, 2, 0, 3, 255};
    EXPECT_EQ(decoded(tgaFile(parts)).channels, Channels::kGreyAlpha);
    EXPECT_EQ(decoded(tgaFile(parts)).samples, parts.pixels);
}

TEST(TgaFile, APaletteComesOutAsItsColours) {
    for (const int indexBytes : {1, 2}) {
        const TgaParts parts = paletteFile(indexBytes);
        EXPECT_EQ(decoded(tgaFile(parts)).channels, Channels::kRgb);
        EXPECT_EQ(decoded(tgaFile(parts)).samples, (Bytes{4, 5, 6, 1, 2, 3, 4, 5, 6}));
    }
    TgaParts parts = paletteFile(1);
    parts.palette = {3, 2, 1, 0, 6, 5, 4, 9};
    parts.paletteDepth = 32;
    EXPECT_EQ(decoded(tgaFile(parts)).channels, Channels::kRgbAlpha);
    EXPECT_EQ(decoded(tgaFile(parts)).samples, (Bytes{4, 5, 6, 9, 1, 2, 3, 0, 4, 5, 6, 9}));
    parts = paletteFile(1);
    parts.type = 9;
    parts.pixels = {0x81, 1, 0x00, 0};
    EXPECT_EQ(decoded(tgaFile(parts)).samples, (Bytes{4, 5, 6, 4, 5, 6, 1, 2, 3}));
}

TEST(TgaFile, RunsMayGoOverTheEndOfARow) {
    const Picture picture = decoded(tgaFile(runs()));
    ASSERT_EQ(picture.samples.size(), 40U);
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_EQ((Bytes{picture.samples.begin() + 4 * static_cast<std::ptrdiff_t>(i),
                         picture.samples.begin() + 4 * static_cast<std::ptrdiff_t>(i) + 4}),
                  (Bytes{1, 2, 3, 0}));
    }
    EXPECT_EQ((Bytes{picture.samples.begin() + 28, picture.samples.end()}),
              (Bytes{4, 5, 6, 7, 7, 8, 9, 0, 1, 1, 1, 255}));
}

TEST(TgaFile, FifteenBitsOfColourAreWidened) {
    TgaParts parts;
    parts.width = 3;
    parts.height = 1;
    parts.depth = 16;
    parts.pixels = {0xff, 0x7f, 0x00, 0x7c, 0x21, 0x84}; // white, red, a dark grey with the sixteenth bit
    for (const int depth : {15, 16}) {
        parts.depth = depth;
        EXPECT_EQ(decoded(tgaFile(parts)).channels, Channels::kRgb);
        EXPECT_EQ(decoded(tgaFile(parts)).samples, (Bytes{255, 255, 255, 255, 0, 0, 8, 8, 8}));
    }
}

TEST(TgaFile, ATextInTheFileIsPassedOver) {
    TgaParts parts = fourColours();
    parts.text = Bytes(255, 'x');
    EXPECT_EQ(decoded(tgaFile(parts)).samples, kFourColours);
}

TEST(TgaFile, AlphaThatTheHeaderDeniesCountsUnlessItIsZeroEverywhere) {
    TgaParts parts;
    parts.width = 2;
    parts.height = 1;
    parts.depth = 32;
    parts.descriptor = 0x20;
    parts.pixels = {3, 2, 1, 0, 6, 5, 4, 9};
    EXPECT_EQ(decoded(tgaFile(parts)).samples, (Bytes{1, 2, 3, 0, 4, 5, 6, 9}));
    parts.pixels[7] = 0;
    EXPECT_EQ(decoded(tgaFile(parts)).channels, Channels::kRgb);
    EXPECT_EQ(decoded(tgaFile(parts)).samples, (Bytes{1, 2, 3, 4, 5, 6}));
    parts.descriptor = 0x28;
    EXPECT_EQ(decoded(tgaFile(parts)).channels, Channels::kRgbAlpha);
}

TEST(TgaFile, TheExtensionAreaTellsWhetherAlphaWasMultiplied) {
    TgaParts parts = runs();
    EXPECT_EQ(decoded(tgaFile(parts)).alphaKind, AlphaKind::kStraight);
    parts.extension = tgaExtensionArea(3);
    EXPECT_EQ(decoded(tgaFile(parts)).alphaKind, AlphaKind::kStraight);
    parts.extension = tgaExtensionArea(4);
    EXPECT_EQ(decoded(tgaFile(parts)).alphaKind, AlphaKind::kPremultiplied);
}

TEST(TgaFile, TheExtensionAreaStaysButForTheTablesItPointsTo) {
    TgaParts parts = runs();
    parts.extension = tgaExtensionArea(4);
    Picture picture = decoded(tgaFile(parts));
    const Picture again = decoded(encodeTga(picture));
    ASSERT_EQ(again.notes.size(), 1U);
    Bytes expected = parts.extension;
    expected[482] = 0;
    EXPECT_EQ(again.notes[0].bytes, expected);
    EXPECT_EQ(again.alphaKind, AlphaKind::kPremultiplied);
    picture.alphaKind = AlphaKind::kStraight;
    EXPECT_EQ(decoded(encodeTga(picture)).alphaKind, AlphaKind::kStraight);
}

TEST(TgaFile, AnAreaThatIsNotWhereTheFooterSaysIsNone) {
    TgaParts parts = runs();
    parts.extension = tgaExtensionArea(4);
    const Bytes sound = tgaFile(parts);
    const std::size_t place = sound.size() - 26;
    for (const uint32_t wrong : {0U, 17U, 0xffffffffU, static_cast<uint32_t>(place - 494)}) {
        Bytes bytes = sound;
        for (std::size_t i = 0; i < 4; ++i) {
            bytes[place + i] = static_cast<uint8_t>(wrong >> 8 * i);
        }
        EXPECT_EQ(decoded(bytes).alphaKind, AlphaKind::kStraight) << wrong;
        EXPECT_TRUE(decoded(bytes).notes.empty()) << wrong;
    }
}

class CutTga : public testing::TestWithParam<TgaParts> {};

TEST_P(CutTga, IsRefusedWhereverItEnds) {
    const Bytes bytes = tgaFile(GetParam());
    EXPECT_EQ(refusal(bytes), "");
    EXPECT_NE(refusal({}).find("empty"), std::string::npos);
    for (std::size_t count = 1; count < bytes.size(); ++count) {
        const std::string text = refusal({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)});
        EXPECT_NE(text.find(count < 18 ? "not a TGA file" : "cut short"), std::string::npos)
            << count << ": " << text;
    }
}

TEST_P(CutTga, AnyByteMayBeWrong) {
    const Bytes sound = tgaFile(GetParam());
    for (std::size_t place = 0; place < sound.size(); ++place) {
        for (int value = 0; value < 256; ++value) {
            Bytes bytes = sound;
            bytes[place] = static_cast<uint8_t>(value);
            try {
                const Picture read = decoded(bytes);
                ASSERT_EQ(read.samples.size(), read.byteCount());
            } catch (const Failure& failure) {
                ASSERT_EQ(failure.kind(), FailureKind::kFile);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(TgaFile, CutTga,
                         testing::Values(fourColours(), paletteFile(1), paletteFile(2), runs()));

TEST(TgaFile, AHeaderThatIsWrongIsRefused) {
    const auto withByte = [](Bytes bytes, std::size_t place, uint8_t value) {
        bytes[place] = value;
        return bytes;
    };
    const Bytes sound = tgaFile(fourColours());
    const Bytes palette = tgaFile(paletteFile(1));
    const auto expectRefusal = [](const Bytes& bytes, const std::string& part) {
        EXPECT_NE(refusal(bytes).find(part), std::string::npos) << part << ": " << refusal(bytes);
    };
    expectRefusal(withByte(sound, 1, 1), "not a TGA file");   // a palette of colours
    expectRefusal(withByte(sound, 1, 2), "not a TGA file");   // neither with nor without one
    expectRefusal(withByte(palette, 1, 0), "not a TGA file"); // no palette
    for (const uint8_t type : Bytes{0, 1, 4, 8, 32, 255}) {
        expectRefusal(withByte(sound, 2, type), "not a TGA file");
    }
    for (const uint8_t depth : Bytes{0, 1, 8, 23, 64}) {
        expectRefusal(withByte(sound, 16, depth), "not a TGA file");
    }
    expectRefusal(withByte(sound, 17, 0x60), "not a TGA file"); // rows in another order
    expectRefusal(withByte(palette, 7, 9), "not a TGA file");
    expectRefusal(withByte(palette, 3, 1), "starts at entry 1");
    expectRefusal(withByte(palette, 5, 0), "palette is empty");
    expectRefusal(withByte(palette, 5, 1), "not in its palette");
    expectRefusal(withByte(sound, 12, 0), "0 x 2 pixels");
    expectRefusal(withByte(sound, 14, 0), "2 x 0 pixels");
    expectRefusal(withByte(sound, 13, 0xff), "65282 x 2 pixels, and the largest");
    expectRefusal(withByte(sound, 15, 0xff), "2 x 65282 pixels, and the largest");
    expectRefusal(withByte(sound, 13, 1), "cut short: 258 x 2 pixels");
    expectRefusal(withByte(sound, 0, 1), "cut short");
}

TEST(TgaFile, ARunBeyondTheLastPixelIsDamage) {
    TgaParts parts = runs();
    parts.pixels[0] = 0x8a;
    EXPECT_NE(refusal(tgaFile(parts)).find("damaged: it holds more pixels"), std::string::npos);
}

TEST(TgaFile, TwoGibibytesAreTooMuch) {
    TgaParts parts;
    parts.width = 30000;
    parts.height = 30000;
    EXPECT_NE(refusal(tgaFile(parts)).find("2 GiB"), std::string::npos);
    parts.height = 23000;
    EXPECT_NE(refusal(tgaFile(parts)).find("cut short"), std::string::npos);
}

} // namespace
} // namespace kovalune::test
