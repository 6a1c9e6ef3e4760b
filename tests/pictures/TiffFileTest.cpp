#include "pictures/tiff/TiffFile.h"

#include "tests/pictures/DamagedBytes.h"
#include "tests/pictures/Pictures.h"
#include "tests/pictures/TiffMaker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace kovalune::test {

using namespace pictures;

namespace {

/// The bits of every sample.
std::vector<uint32_t> bitsOf(const Picture& picture) {
    const std::size_t bytes = bytesPerSample(picture.sampleType);
    std::vector<uint32_t> bits(picture.samples.size() / bytes);
    for (std::size_t i = 0; i < bits.size(); ++i) {
        std::memcpy(&bits[i], picture.samples.data() + i * bytes, bytes); // low bytes first
    }
    return bits;
}

TiffPage pageOf(uint16_t photometric, uint16_t bits, uint32_t width, const std::vector<uint32_t>& values,
                uint16_t samples = 1) {
    TiffPage page;
    page.photometric = photometric;
    page.bits = bits;
    page.samples = samples;
    page.width = width;
    page.height = static_cast<uint32_t>(values.size()) / samples / width;
    page.values = values;
    return page;
}

Picture decode(const std::vector<uint8_t>& bytes) {
    return decodeTiff(bytes, "in.tif");
}

std::vector<double> read(const TiffPage& page) {
    return valuesOf(decode(tiffOf(page)));
}

using Values = std::vector<double>;
using Tags = std::vector<uint16_t>; // their values

bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

void expectRefused(const std::vector<uint8_t>& bytes, const std::vector<std::string>& parts) {
    const std::string text = refusalOf(decodeTiff, bytes);
    EXPECT_NE(text, "");
    for (const std::string& part : parts) {
        EXPECT_TRUE(holds(text, part)) << text << " lacks " << part;
    }
}

void expectSame(const Picture& picture, const Picture& expected) {
    EXPECT_EQ(picture.width, expected.width);
    EXPECT_EQ(picture.height, expected.height);
    EXPECT_EQ(picture.channels, expected.channels);
    EXPECT_EQ(picture.sampleType, expected.sampleType);
    EXPECT_EQ(picture.alphaKind, expected.alphaKind);
    EXPECT_TRUE(picture.samples == expected.samples);
    EXPECT_EQ(picture.format, FileFormat::kTiff);
    EXPECT_TRUE(picture.notes == expected.notes);
}

constexpr SampleType kAllTypes[] = {SampleType::kUint8, SampleType::kUint16, SampleType::kHalf,
                                    SampleType::kFloat};
constexpr Channels kAllChannels[] = {Channels::kGrey, Channels::kGreyAlpha, Channels::kRgb,
                                     Channels::kRgbAlpha};

TiffPage randomPage(Channels channels, SampleType type, uint32_t seed) {
    TiffPage page;
    page.width = 37;
    page.height = 21;
    page.bits = static_cast<uint16_t>(8 * bytesPerSample(type));
    page.format = isFloat(type) ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT;
    page.samples = static_cast<uint16_t>(channelCount(channels));
    page.photometric = isGrey(channels) ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
    if (hasAlpha(channels)) {
        page.extras = {EXTRASAMPLE_UNASSALPHA};
    }
    fillRandomly(page, seed);
    return page;
}

struct Storage {
    const char* name;
    const char* mode;
    uint16_t compression;
    uint16_t planar;
    uint32_t rowsPerStrip;
    uint32_t tileWidth;
    uint32_t tileHeight;
};

class TiffStorage : public testing::TestWithParam<Storage> {};

TEST_P(TiffStorage, GivesTheSamplesOfEveryKind) {
    uint32_t seed = 1;
    for (const SampleType type : kAllTypes) {
        for (const Channels channels : kAllChannels) {
            TiffPage page = randomPage(channels, type, ++seed);
            page.mode = GetParam().mode;
            page.compression = GetParam().compression;
            page.planar = GetParam().planar;
            page.rowsPerStrip = GetParam().rowsPerStrip;
            page.tileWidth = GetParam().tileWidth;
            page.tileHeight = GetParam().tileHeight;
            const Picture picture = decode(tiffOf(page));
            EXPECT_EQ(picture.width, 37U);
            EXPECT_EQ(picture.height, 21U);
            EXPECT_EQ(picture.channels, channels);
            EXPECT_EQ(picture.sampleType, type);
            EXPECT_EQ(picture.alphaKind, AlphaKind::kStraight);
            EXPECT_TRUE(bitsOf(picture) == page.values)
                << static_cast<int>(type) << static_cast<int>(channels);
            EXPECT_TRUE(picture.leftOut.empty());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Each, TiffStorage,
    testing::Values(
        Storage{"Strips", "wl", COMPRESSION_NONE, PLANARCONFIG_CONTIG, 4, 0, 0},
        Storage{"HighByteFirst", "wb", COMPRESSION_NONE, PLANARCONFIG_CONTIG, 4, 0, 0},
        Storage{"BigTiff", "wl8", COMPRESSION_NONE, PLANARCONFIG_CONTIG, 1, 0, 0},
        Storage{"BigTiffHighByteFirst", "wb8", COMPRESSION_LZW, PLANARCONFIG_SEPARATE, 21, 0, 0},
        Storage{"OneStripInPlanes", "wl", COMPRESSION_NONE, PLANARCONFIG_SEPARATE, 1000, 0, 0},
        Storage{"Tiles", "wl", COMPRESSION_NONE, PLANARCONFIG_CONTIG, 0, 16, 32},
        Storage{"TilesInPlanes", "wb", COMPRESSION_ADOBE_DEFLATE, PLANARCONFIG_SEPARATE, 0, 32, 16},
        Storage{"TileLargerThanThePicture", "wl", COMPRESSION_LZW, PLANARCONFIG_CONTIG, 0, 256, 128},
        Storage{"Lzw", "wl", COMPRESSION_LZW, PLANARCONFIG_CONTIG, 4, 0, 0},
        Storage{"Deflate", "wb", COMPRESSION_ADOBE_DEFLATE, PLANARCONFIG_CONTIG, 4, 0, 0},
        Storage{"OldDeflate", "wl", COMPRESSION_DEFLATE, PLANARCONFIG_CONTIG, 4, 0, 0},
        Storage{"PackBits", "wb", COMPRESSION_PACKBITS, PLANARCONFIG_CONTIG, 4, 0, 0},
        Storage{"Lzma", "wl", COMPRESSION_LZMA, PLANARCONFIG_CONTIG, 21, 0, 0},
        Storage{"Zstandard", "wl", COMPRESSION_ZSTD, PLANARCONFIG_CONTIG, 4, 0, 0}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(TiffPredictor, IsUndone) {
    struct Case {
        uint16_t predictor;
        SampleType type;
        const char* mode;
    };
    for (const Case& each : {Case{PREDICTOR_HORIZONTAL, SampleType::kUint8, "wl"},
                             Case{PREDICTOR_HORIZONTAL, SampleType::kUint16, "wl"},
                             Case{PREDICTOR_HORIZONTAL, SampleType::kUint16, "wb"},
                             Case{PREDICTOR_FLOATINGPOINT, SampleType::kHalf, "wl"},
                             Case{PREDICTOR_FLOATINGPOINT, SampleType::kFloat, "wl"}}) {
        TiffPage page = randomPage(Channels::kRgbAlpha, each.type, 3);
        page.compression = COMPRESSION_LZW;
        page.mode = each.mode;
        page.moreTags = [&each](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_PREDICTOR, each.predictor); };
        EXPECT_TRUE(bitsOf(decode(tiffOf(page))) == page.values);
    }
}

TEST(TiffGrey, OfFewBitsIsWidened) {
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_MINISBLACK, 1, 3, {0, 1, 1, 1, 0, 0})),
              (Values{0, 255, 255, 255, 0, 0}));
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_MINISBLACK, 2, 5, {0, 1, 2, 3, 1})), (Values{0, 85, 170, 255, 85}));
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_MINISBLACK, 4, 3, {0, 7, 15, 1, 2, 3})),
              (Values{0, 119, 255, 17, 34, 51}));
}

TEST(TiffGrey, WithWhiteAsZeroIsTurnedRound) {
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_MINISWHITE, 1, 3, {0, 1, 1})), (Values{255, 0, 0}));
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_MINISWHITE, 4, 2, {0, 3})), (Values{255, 204}));
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_MINISWHITE, 8, 3, {0, 10, 255})), (Values{255, 245, 0}));
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_MINISWHITE, 16, 3, {0, 256, 65535})), (Values{65535, 65279, 0}));
    TiffPage page = pageOf(PHOTOMETRIC_MINISWHITE, 8, 2, {1, 2, 3, 4}, 2);
    page.extras = {EXTRASAMPLE_UNASSALPHA};
    EXPECT_EQ(read(page), (Values{254, 2, 252, 4}));
}

TEST(TiffColours, OfFewBitsAreWidened) {
    EXPECT_EQ(read(pageOf(PHOTOMETRIC_RGB, 4, 2, {0, 1, 2, 13, 14, 15}, 3)),
              (Values{0, 17, 34, 221, 238, 255}));
    TiffPage page = pageOf(PHOTOMETRIC_RGB, 2, 3, {0, 1, 2, 3, 2, 1, 3, 3, 3}, 3);
    page.planar = PLANARCONFIG_SEPARATE;
    EXPECT_EQ(read(page), (Values{0, 85, 170, 255, 170, 85, 255, 255, 255}));
}

TEST(TiffFillOrder, MayBeTheOther) {
    TiffPage page = pageOf(PHOTOMETRIC_MINISBLACK, 1, 4, {1, 1, 0, 1});
    page.moreTags = [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_LSB2MSB); };
    EXPECT_EQ(read(page), (Values{255, 255, 0, 255}));
}

class TiffFax : public testing::TestWithParam<uint16_t> {};

TEST_P(TiffFax, IsRead) {
    TiffPage page = pageOf(PHOTOMETRIC_MINISWHITE, 1, 40, {});
    page.height = 30;
    page.compression = GetParam();
    fillRandomly(page, 5);
    const Picture picture = decode(tiffOf(page));
    ASSERT_EQ(picture.samples.size(), page.values.size());
    for (std::size_t i = 0; i < page.values.size(); ++i) {
        ASSERT_EQ(picture.samples[i], page.values[i] != 0 ? 0 : 255);
    }
    EXPECT_TRUE(picture.notes.empty());
}

INSTANTIATE_TEST_SUITE_P(Each, TiffFax,
                         testing::Values(COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4));

TEST(TiffPalette, GivesItsColours) {
    const std::vector<uint32_t> indices = {0, 3, 2, 1};
    TiffPage page = pageOf(PHOTOMETRIC_PALETTE, 2, 4, indices);
    // Bytes repeated, bytes in the high half, bytes as they are.
    for (const int factor : {257, 256, 1}) {
        page.palette.clear();
        for (const int value : {0, 10, 20, 255, 1, 11, 21, 254, 2, 12, 22, 253}) {
            page.palette.push_back(static_cast<uint16_t>(value * factor));
        }
        const Picture picture = decode(tiffOf(page));
        EXPECT_EQ(picture.channels, Channels::kRgb);
        EXPECT_EQ(picture.sampleType, SampleType::kUint8);
        EXPECT_EQ(valuesOf(picture), (Values{0, 1, 2, 255, 254, 253, 20, 21, 22, 10, 11, 12})) << factor;
    }
}

TEST(TiffPalette, OfFinerColoursIsOf16Bits) {
    TiffPage page = pageOf(PHOTOMETRIC_PALETTE, 1, 3, {1, 0, 1});
    page.palette = {1, 65535, 300, 40000, 0, 257};
    const Picture picture = decode(tiffOf(page));
    EXPECT_EQ(picture.sampleType, SampleType::kUint16);
    EXPECT_EQ(valuesOf(picture), (Values{65535, 40000, 257, 1, 300, 0, 65535, 40000, 257}));
}

TEST(TiffPalette, MayHaveAlpha) {
    for (const uint16_t planar : Tags{PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
        TiffPage page = pageOf(PHOTOMETRIC_PALETTE, 8, 2, {7, 100, 255, 3}, 2);
        page.planar = planar;
        page.extras = {EXTRASAMPLE_UNASSALPHA};
        page.palette.assign(768, 0);
        page.palette[7] = 5 * 257;
        page.palette[255] = 6 * 257;
        page.palette[256 + 7] = 8 * 257;
        EXPECT_EQ(read(page), (Values{5, 8, 0, 100, 6, 0, 0, 3}));
        page.palette[7] = 500;
        EXPECT_EQ(read(page), (Values{500, 2056, 0, 25700, 1542, 0, 0, 771}));
    }
}

TEST(TiffAlpha, IsOfTheKindThatTheFileSays) {
    TiffPage page = pageOf(PHOTOMETRIC_RGB, 8, 1, {1, 2, 3, 4}, 4);
    page.extras = {EXTRASAMPLE_ASSOCALPHA};
    EXPECT_EQ(decode(tiffOf(page)).alphaKind, AlphaKind::kPremultiplied);
    page.extras = {EXTRASAMPLE_UNASSALPHA};
    EXPECT_EQ(decode(tiffOf(page)).alphaKind, AlphaKind::kStraight);
    page.extras = {EXTRASAMPLE_UNSPECIFIED};
    const Picture unspecified = decode(tiffOf(page));
    EXPECT_EQ(unspecified.alphaKind, AlphaKind::kStraight);
    EXPECT_EQ(unspecified.channels, Channels::kRgbAlpha);
    std::vector<uint8_t> unnamed = tiffOf(page);
    unnamed[entryPlace(unnamed, TIFFTAG_EXTRASAMPLES)] ^= 0x40; // a tag that nobody knows
    EXPECT_EQ(decode(unnamed).channels, Channels::kRgbAlpha);
    EXPECT_EQ(decode(unnamed).alphaKind, AlphaKind::kStraight);
}

TEST(TiffAlpha, IsFoundAmongOtherSamplesWhichAreNamed) {
    for (const uint16_t planar : Tags{PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
        TiffPage page = pageOf(PHOTOMETRIC_RGB, 16, 2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 6);
        page.planar = planar;
        page.extras = {EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_ASSOCALPHA, EXTRASAMPLE_UNSPECIFIED};
        Picture picture = decode(tiffOf(page));
        EXPECT_EQ(valuesOf(picture), (Values{1, 2, 3, 5, 7, 8, 9, 11}));
        EXPECT_EQ(picture.alphaKind, AlphaKind::kPremultiplied);
        EXPECT_EQ(picture.leftOut, (std::vector<std::string>{"extra sample 1", "extra sample 3"}));
        page.extras = {EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_UNSPECIFIED};
        picture = decode(tiffOf(page));
        EXPECT_EQ(valuesOf(picture), (Values{1, 2, 3, 4, 7, 8, 9, 10}));
        EXPECT_EQ(picture.leftOut, (std::vector<std::string>{"extra sample 2", "extra sample 3"}));
    }
}

TEST(TiffPages, BehindTheFirstAreNamedOnly) {
    const Picture picture = decode(
        tiffOf({pageOf(PHOTOMETRIC_MINISBLACK, 8, 2, {1, 2}), pageOf(PHOTOMETRIC_MINISBLACK, 8, 1, {9})}));
    EXPECT_EQ(valuesOf(picture), (Values{1, 2}));
    EXPECT_EQ(picture.leftOut, std::vector<std::string>{"further pages"});
}

// JPEG keeps flat colours nearly.
TEST(TiffJpeg, IsReadAsGreyOrRgb) {
    struct Case {
        uint16_t photometric;
        uint16_t samples;
    };
    for (const Case& each :
         {Case{PHOTOMETRIC_MINISBLACK, 1}, Case{PHOTOMETRIC_RGB, 3}, Case{PHOTOMETRIC_YCBCR, 3}}) {
        TiffPage page;
        page.width = 40;
        page.height = 35;
        page.rowsPerStrip = 16;
        page.photometric = each.photometric;
        page.samples = each.samples;
        page.compression = COMPRESSION_JPEG;
        page.moreTags = [](TIFF* tiff) {
            TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, 100);
            TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        };
        const uint32_t colour[] = {200, 90, 30};
        for (std::size_t i = 0; i < std::size_t{40} * 35 * each.samples; ++i) {
            page.values.push_back(colour[i % each.samples]);
        }
        const Picture picture = decode(tiffOf(page));
        EXPECT_EQ(picture.channels, each.samples == 1 ? Channels::kGrey : Channels::kRgb);
        ASSERT_EQ(picture.samples.size(), page.values.size());
        for (std::size_t i = 0; i < page.values.size(); ++i) {
            ASSERT_NEAR(picture.samples[i], static_cast<int>(colour[i % each.samples]), 2) << i;
        }
        EXPECT_TRUE(picture.notes.empty());
    }
}

TEST(TiffRefusal, NamesWhatIsNotRead) {
    const TiffPage grey = pageOf(PHOTOMETRIC_MINISBLACK, 8, 2, {1, 2});
    TiffPage page = grey;
    page.format = SAMPLEFORMAT_INT;
    expectRefused(tiffOf(page), {"8-bit signed numbers"});
    page = pageOf(PHOTOMETRIC_MINISBLACK, 64, 2, {1, 2});
    page.format = SAMPLEFORMAT_IEEEFP;
    expectRefused(tiffOf(page), {"64-bit floats"});
    expectRefused(tiffOf(pageOf(PHOTOMETRIC_MINISBLACK, 32, 2, {1, 2})), {"32-bit numbers"});
    expectRefused(tiffOf(pageOf(PHOTOMETRIC_MINISBLACK, 12, 2, {1, 2})), {"12-bit numbers"});
    page = pageOf(PHOTOMETRIC_MINISBLACK, 32, 2, {1, 2});
    page.format = SAMPLEFORMAT_COMPLEXINT;
    expectRefused(tiffOf(page), {"complex"});
    expectRefused(tiffOf(pageOf(PHOTOMETRIC_SEPARATED, 8, 1, {1, 2, 3, 4}, 4)), {"CMYK"});
    expectRefused(tiffOf(pageOf(PHOTOMETRIC_CIELAB, 8, 1, {1, 2, 3}, 3)), {"L*a*b*"});
    expectRefused(tiffOf(pageOf(PHOTOMETRIC_MASK, 1, 2, {1, 0})), {"transparency mask"});
    expectRefused(tiffOf(pageOf(PHOTOMETRIC_RGB, 8, 1, {1, 2}, 2)), {"damaged"});
    page = pageOf(PHOTOMETRIC_MINISWHITE, 32, 2, {1, 2});
    page.format = SAMPLEFORMAT_IEEEFP;
    expectRefused(tiffOf(page), {"white is 0", "floats"});
    page = pageOf(PHOTOMETRIC_MINISWHITE, 8, 1, {1, 2}, 2);
    page.extras = {EXTRASAMPLE_ASSOCALPHA};
    expectRefused(tiffOf(page), {"white is 0", "premultiplied"});
}

TEST(TiffRefusal, NamesTheCompressionAndTheColours) {
    const std::vector<uint8_t> sound = tiffOf(pageOf(PHOTOMETRIC_RGB, 8, 1, {1, 2, 3}, 3));
    const auto with = [&sound](uint16_t tag, uint32_t value) {
        std::vector<uint8_t> bytes = sound;
        patchEntry(bytes, tag, value);
        return bytes;
    };
    expectRefused(with(TIFFTAG_COMPRESSION, COMPRESSION_WEBP), {"WebP"});
    expectRefused(with(TIFFTAG_COMPRESSION, COMPRESSION_LERC), {"LERC"});
    expectRefused(with(TIFFTAG_COMPRESSION, COMPRESSION_OJPEG), {"old-style JPEG"});
    expectRefused(with(TIFFTAG_COMPRESSION, COMPRESSION_CCITTRLEW), {"CCITT RLE in words"});
    expectRefused(with(TIFFTAG_COMPRESSION, 12345), {"compression 12345"});
    expectRefused(with(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_YCBCR), {"YCbCr"});
    expectRefused(with(TIFFTAG_PHOTOMETRIC, 777), {"777"});
    std::vector<uint8_t> without = sound;
    without[entryPlace(without, TIFFTAG_PHOTOMETRIC)] ^= 0x08;
    expectRefused(without, {"photometric"});
}

TEST(TiffSize, OfAHeaderIsCheckedFirst) {
    for (const uint16_t compression : Tags{COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        TiffPage page = pageOf(PHOTOMETRIC_RGB, 8, 1, {1, 2, 3}, 3);
        page.compression = compression;
        page.rowsPerStrip = 0xffffffff;
        const std::vector<uint8_t> sound = tiffOf(page);
        const auto sized = [&sound](uint32_t width, uint32_t height) {
            std::vector<uint8_t> bytes = sound;
            patchEntry(bytes, TIFFTAG_IMAGEWIDTH, width);
            patchEntry(bytes, TIFFTAG_IMAGELENGTH, height);
            return bytes;
        };
        expectRefused(sized(0, 5), {"0 x 5 pixels"});
        expectRefused(sized(5, 0), {"5 x 0 pixels"});
        expectRefused(sized(30001, 1), {"30001 x 1 pixels", "30000 x 30000"});
        expectRefused(sized(1, 30001), {"1 x 30001 pixels", "30000 x 30000"});
        expectRefused(sized(0xffffffff, 0xffffffff), {"4294967295 x 4294967295 pixels"});
        expectRefused(sized(30000, 30000), {"cut short: 30000 x 30000 pixels need more bytes"});
    }
}

TEST(TiffSize, OfATileIsCheckedToo) {
    TiffPage page = pageOf(PHOTOMETRIC_MINISBLACK, 8, 2, {1, 2});
    page.tileWidth = page.tileHeight = 16;
    std::vector<uint8_t> bytes = tiffOf(page);
    patchEntry(bytes, TIFFTAG_TILEWIDTH, 0x7ffffff0);
    expectRefused(bytes, {});
    patchEntry(bytes, TIFFTAG_TILEWIDTH, 30000);
    patchEntry(bytes, TIFFTAG_TILELENGTH, 30000);
    expectRefused(bytes, {"cut short"});
}

TEST(TiffSize, MayBeHeldByFewBytesOfFlatColour) {
    TiffPage page = pageOf(PHOTOMETRIC_MINISBLACK, 8, 3000, std::vector<uint32_t>(3000 * 700, 7));
    page.rowsPerStrip = 700;
    for (const uint16_t compression : Tags{COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS,
                                           COMPRESSION_LZMA, COMPRESSION_ZSTD, COMPRESSION_JPEG}) {
        page.compression = compression;
        const Picture picture = decode(tiffOf(page));
        EXPECT_EQ(picture.samples.size(), page.values.size()) << compression;
    }
    page.bits = 1;
    page.values.assign(page.values.size(), 0);
    for (const uint16_t compression :
         Tags{COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4, COMPRESSION_CCITTRLE}) {
        page.compression = compression;
        const Picture picture = decode(tiffOf(page));
        EXPECT_EQ(picture.samples.size(), page.values.size()) << compression;
    }
}

TEST(TiffKind, IsKnownByItsBeginning) {
    expectRefused({}, {"it is empty"});
    expectRefused({'I', 'I'}, {"not a TIFF"});
    expectRefused({0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0, 0}, {"not a TIFF"});
    expectRefused({'I', 'I', 42, 0, 0, 0}, {"cut short"});
    EXPECT_TRUE(beginsAsTiff(tiffOf(pageOf(PHOTOMETRIC_MINISBLACK, 8, 1, {1}))));
    EXPECT_FALSE(beginsAsTiff(std::vector<uint8_t>{'I', 'I', 0, 42}));
}

struct Form {
    SampleType type;
    Channels channels;
    AlphaKind alphaKind;
};

std::vector<Form> allForms() {
    std::vector<Form> forms;
    for (const SampleType type : kAllTypes) {
        for (const Channels channels : kAllChannels) {
            forms.push_back({type, channels, AlphaKind::kStraight});
            if (hasAlpha(channels)) {
                forms.push_back({type, channels, AlphaKind::kPremultiplied});
            }
        }
    }
    return forms;
}

Picture randomTiff(const Form& form, uint32_t width, uint32_t height, uint32_t seed) {
    Picture picture = randomPicture(form.type, form.channels, width, height, seed);
    picture.alphaKind = form.alphaKind;
    picture.format = FileFormat::kTiff;
    return picture;
}

std::vector<uint8_t> shortBytes(uint16_t value) {
    std::vector<uint8_t> bytes(2);
    std::memcpy(bytes.data(), &value, 2);
    return bytes;
}

PictureNote compressionNote(uint16_t compression) {
    return {"259", "3", shortBytes(compression)};
}

TEST(TiffRoundTrip, IsExact) {
    uint32_t seed = 100;
    for (const Form& form : allForms()) {
        for (const uint32_t width : {1U, 2U, 7U, 301U}) {
            const Picture picture = randomTiff(form, width, 1 + seed % 150, seed);
            ++seed;
            expectSame(decode(encodeTiff(picture)), picture);
        }
    }
}

TEST(TiffRoundTrip, KeepsALosslessCompression) {
    uint32_t seed = 300;
    for (const uint16_t compression :
         Tags{COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_LZMA, COMPRESSION_ZSTD}) {
        for (const Form& form : allForms()) {
            Picture picture = randomTiff(form, 33, 17, ++seed);
            picture.notes = {compressionNote(compression)};
            const std::vector<uint8_t> bytes = encodeTiff(picture);
            EXPECT_EQ(shortTagOf(bytes, TIFFTAG_COMPRESSION), compression);
            expectSame(decode(bytes), picture);
        }
    }
}

TEST(TiffRoundTrip, UsesDeflateForTheOthers) {
    TiffPage fax = pageOf(PHOTOMETRIC_MINISWHITE, 1, 3, {0, 1, 1});
    fax.compression = COMPRESSION_CCITTFAX4;
    const Picture picture = decode(tiffOf(fax));
    EXPECT_EQ(shortTagOf(encodeTiff(picture), TIFFTAG_COMPRESSION), COMPRESSION_ADOBE_DEFLATE);
    Picture other = picture;
    other.format = FileFormat::kPng;
    other.notes = {compressionNote(COMPRESSION_NONE)};
    EXPECT_EQ(shortTagOf(encodeTiff(other), TIFFTAG_COMPRESSION), COMPRESSION_ADOBE_DEFLATE);
}

TEST(TiffOutput, StoresDifferencesWhereThatHelps) {
    const auto predictorOf = [](SampleType type, uint16_t compression) {
        Picture picture = randomTiff({type, Channels::kRgb, AlphaKind::kStraight}, 5, 5, 1);
        picture.notes = {compressionNote(compression)};
        return shortTagOf(encodeTiff(picture), TIFFTAG_PREDICTOR);
    };
    EXPECT_EQ(predictorOf(SampleType::kUint8, COMPRESSION_LZW), PREDICTOR_HORIZONTAL);
    EXPECT_EQ(predictorOf(SampleType::kUint16, COMPRESSION_ZSTD), PREDICTOR_HORIZONTAL);
    EXPECT_EQ(predictorOf(SampleType::kHalf, COMPRESSION_LZW), PREDICTOR_FLOATINGPOINT);
    EXPECT_EQ(predictorOf(SampleType::kFloat, 8), PREDICTOR_FLOATINGPOINT);
}

TEST(TiffOutput, SaysWhatTheAlphaIs) {
    for (const AlphaKind kind : {AlphaKind::kStraight, AlphaKind::kPremultiplied}) {
        Picture picture = randomTiff({SampleType::kUint8, Channels::kRgbAlpha, kind}, 2, 2, 1);
        const std::vector<uint8_t> bytes = encodeTiff(picture);
        const std::size_t entry = entryPlace(bytes, TIFFTAG_EXTRASAMPLES);
        ASSERT_NE(entry, 0U);
        EXPECT_EQ(bytes[entry + 8], kind == AlphaKind::kPremultiplied ? 1 : 2);
    }
}

std::vector<uint8_t> longs(const std::vector<uint32_t>& values) {
    std::vector<uint8_t> bytes(values.size() * 4);
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

std::vector<uint8_t> text(const std::string& value) {
    std::vector<uint8_t> bytes(value.begin(), value.end());
    bytes.push_back(0);
    return bytes;
}

std::vector<PictureNote> someNotes() {
    return {{"270", "2", text("a \xe7\xb5\xb5")},
            {"274", "3", shortBytes(6)},
            {"282", "5", longs({720090, 10000})},
            {"283", "5", longs({4294967295, 7})},
            {"286", "5", longs({0, 0})},
            {"287", "5", longs({6, 4})},
            {"296", "3", shortBytes(3)},
            {"315", "2", text("me")},
            {"318", "5", longs({3127, 10000, 329, 1000})},
            {"319", "5", longs({64, 100, 33, 100, 30, 100, 60, 100, 15, 100, 6, 100})},
            {"33300", "4", longs({4096})},
            {"33301", "4", longs({2160})},
            {"33432", "2", text("mine")},
            {"34675", "7", {0, 1, 2, 3, 4, 5, 0, 7, 8}},
            compressionNote(COMPRESSION_LZW)};
}

TEST(TiffNotes, GoThroughUnchanged) {
    for (const Form& form : allForms()) {
        Picture picture = randomTiff(form, 5, 4, 9);
        picture.notes = someNotes();
        const Picture once = decode(encodeTiff(picture));
        expectSame(once, picture);
        expectSame(decode(encodeTiff(once)), picture);
    }
}

TEST(TiffNotes, AreTakenFromBothByteOrders) {
    for (const char* const mode : {"wl", "wb", "wl8", "wb8"}) {
        TiffPage page = pageOf(PHOTOMETRIC_MINISBLACK, 8, 2, {1, 2});
        page.mode = mode;
        page.moreTags = [](TIFF* tiff) {
            TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 300.5);
            TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 72.0);
            TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_CENTIMETER);
            TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_BOTRIGHT);
            TIFFSetField(tiff, TIFFTAG_ICCPROFILE, 5, "\1\2\3\4\5");
            TIFFSetField(tiff, TIFFTAG_SOFTWARE, "not kept");
        };
        const Picture picture = decode(tiffOf(page));
        const std::vector<PictureNote> expected = {
            {"274", "3", shortBytes(3)}, {"282", "5", longs({601, 2})},   {"283", "5", longs({72, 1})},
            {"296", "3", shortBytes(3)}, {"34675", "7", {1, 2, 3, 4, 5}}, compressionNote(COMPRESSION_NONE)};
        EXPECT_TRUE(picture.notes == expected) << mode;
        EXPECT_EQ(valuesOf(picture), (Values{1, 2}));
    }
}

TEST(TiffNotes, OfTheTransferFunctionFitTheSamples) {
    std::vector<uint8_t> table;
    for (uint16_t i = 0; i < 3 * 256; ++i) {
        const std::vector<uint8_t> value = shortBytes(static_cast<uint16_t>(i * 50));
        table.insert(table.end(), value.begin(), value.end());
    }
    const PictureNote three{"301", "3", table};
    table.resize(512);
    const PictureNote one{"301", "3", table};
    const auto kept = [](SampleType type, Channels channels, const PictureNote& note) {
        Picture picture = randomTiff({type, channels, AlphaKind::kStraight}, 2, 2, 1);
        picture.notes = {note};
        return decode(encodeTiff(picture)).notes;
    };
    EXPECT_TRUE(kept(SampleType::kUint8, Channels::kGrey, one) == std::vector{one});
    EXPECT_TRUE(kept(SampleType::kUint8, Channels::kGreyAlpha, one) == std::vector{one});
    EXPECT_TRUE(kept(SampleType::kUint8, Channels::kRgb, three) == std::vector{three});
    EXPECT_TRUE(kept(SampleType::kUint8, Channels::kGrey, three).empty());
    EXPECT_TRUE(kept(SampleType::kUint16, Channels::kRgb, three).empty());
    EXPECT_TRUE(kept(SampleType::kFloat, Channels::kRgb, three).empty());
}

TEST(TiffNotes, ThatMakeNoSenseAreLeftOut) {
    Picture picture = randomTiff({SampleType::kUint8, Channels::kRgb, AlphaKind::kStraight}, 2, 2, 1);
    picture.notes = {{"274", "3", {}},
                     {"274", "3", shortBytes(99)},
                     {"282", "3", {1, 2}},
                     {"282", "5", {1, 2, 3}},
                     {"286", "5", longs({1, 1})}, // without 287
                     {"pHYs", "", {1, 2, 3, 4, 5, 6, 7, 8, 9}},
                     {"256", "4", longs({1000})},
                     {"34675", "7", {}},
                     compressionNote(COMPRESSION_JPEG)};
    EXPECT_TRUE(decode(encodeTiff(picture)).notes.empty());
}

std::vector<TiffPage> tinyPages() {
    TiffPage plain = pageOf(PHOTOMETRIC_RGB, 8, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 4);
    plain.extras = {EXTRASAMPLE_ASSOCALPHA};
    plain.moreTags = [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 72.0); };
    std::vector<TiffPage> pages = {plain};
    for (const uint16_t compression : Tags{COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS,
                                           COMPRESSION_LZMA, COMPRESSION_ZSTD}) {
        TiffPage page = randomPage(Channels::kGreyAlpha, SampleType::kUint16, compression);
        page.width = 3;
        page.height = 5;
        page.compression = compression;
        page.rowsPerStrip = 2;
        page.mode = compression == COMPRESSION_LZW        ? "wb"
                    : compression == COMPRESSION_PACKBITS ? "wl8"
                                                          : "wl";
        if (compression == COMPRESSION_ADOBE_DEFLATE) {
            page.moreTags = [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL); };
        }
        fillRandomly(page, 8);
        pages.push_back(page);
    }
    TiffPage tiles = pageOf(PHOTOMETRIC_PALETTE, 1, 18, std::vector<uint32_t>(36, 1));
    tiles.palette = {0, 1, 2, 3, 4, 65535};
    tiles.tileWidth = tiles.tileHeight = 16;
    pages.push_back(tiles);
    TiffPage fax = pageOf(PHOTOMETRIC_MINISWHITE, 1, 20, {});
    fax.height = 4;
    fax.compression = COMPRESSION_CCITTFAX4;
    fillRandomly(fax, 3);
    pages.push_back(fax);
    TiffPage jpeg = pageOf(PHOTOMETRIC_YCBCR, 8, 8, std::vector<uint32_t>(8 * 8 * 3, 100), 3);
    jpeg.rowsPerStrip = 16;
    jpeg.compression = COMPRESSION_JPEG;
    jpeg.moreTags = [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB); };
    pages.push_back(jpeg);
    return pages;
}

class TinyTiff : public testing::TestWithParam<std::size_t> {};

// The tags follow the samples, and the last of them are values and the place of the next page.
TEST_P(TinyTiff, IsRefusedWhereverItEnds) {
    const std::vector<uint8_t> file = tiffOf(tinyPages()[GetParam()]);
    EXPECT_EQ(refusalOf(decodeTiff, file), "");
    uint32_t directory = 0;
    std::memcpy(&directory, file.data() + 4, 4);
    expectBeginningsRefused(decodeTiff, file, std::min<std::size_t>(directory, file.size()));
}

TEST_P(TinyTiff, MayHaveAnyByteWrong) {
    expectWrongBytesBorne(decodeTiff, tiffOf(tinyPages()[GetParam()]), std::size_t{256} << 20);
}

INSTANTIATE_TEST_SUITE_P(Each, TinyTiff, testing::Range(std::size_t{0}, std::size_t{9}));

} // namespace
} // namespace kovalune::test
