// BMP, WebP and JPEG in, and Photoshop files refused. The files are made by the formats' libraries, or byte by byte.

#include "pictures/ColourProfile.h"
#include "pictures/NoteConversion.h"
#include "pictures/PictureFile.h"
#include "pictures/bmp/BmpFile.h"
#include "pictures/jpeg/JpegFile.h"
#include "pictures/webp/WebpFile.h"
#include "tests/pictures/DamagedBytes.h"
#include "tests/pictures/Pictures.h"
#include "tests/support/TestFolder.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>
#include <webp/encode.h>

namespace kovalune::test {

using namespace pictures;

namespace {

using Bytes = std::vector<uint8_t>;

void put(Bytes& bytes, uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<uint8_t>(value >> 8 * i));
    }
}

struct BmpSheet {
    uint32_t width = 0;
    int32_t height = 0; ///< negative: from the top down
    uint32_t depth = 24;
    Bytes rows; ///< as they are stored, filled up to four bytes each
    uint32_t packing = 0;
    Bytes palette; ///< blue, green, red, nothing; or three masks
};

Bytes bmpOf(const BmpSheet& sheet) {
    Bytes bytes = {'B', 'M'};
    const auto place = static_cast<uint32_t>(54 + sheet.palette.size());
    put(bytes, static_cast<uint32_t>(place + sheet.rows.size()), 4);
    put(bytes, 0, 4);
    put(bytes, place, 4);
    put(bytes, 40, 4);
    put(bytes, sheet.width, 4);
    put(bytes, static_cast<uint32_t>(sheet.height), 4);
    put(bytes, 1, 2);
    put(bytes, sheet.depth, 2);
    put(bytes, sheet.packing, 4);
    for (int i = 0; i < 5; ++i) {
        put(bytes, 0, 4);
    }
    bytes.insert(bytes.end(), sheet.palette.begin(), sheet.palette.end());
    bytes.insert(bytes.end(), sheet.rows.begin(), sheet.rows.end());
    return bytes;
}

/// Blue, green, red from the bottom up, as 2 x 2 pixels with two bytes to fill each row.
BmpSheet smallBmp() {
    return {2, 2, 24, {7, 8, 9, 10, 11, 12, 0, 0, 1, 2, 3, 4, 5, 6, 0, 0}, 0, {}};
}

TEST(Bmp, GivesTheSamplesOfEveryKind) {
    const std::vector<double> expected = {3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10};
    const Picture plain = decodeBmp(bmpOf(smallBmp()), "a.bmp");
    EXPECT_EQ(plain.channels, Channels::kRgb);
    EXPECT_EQ(plain.sampleType, SampleType::kUint8);
    EXPECT_FALSE(plain.isLossy);
    EXPECT_EQ(valuesOf(plain), expected);
    BmpSheet down = smallBmp();
    down.height = -2;
    EXPECT_EQ(valuesOf(decodeBmp(bmpOf(down), "a")),
              (std::vector<double>{9, 8, 7, 12, 11, 10, 3, 2, 1, 6, 5, 4}));
    const BmpSheet bits{9, 1, 1, {0x80, 0x80, 0, 0}, 0, {1, 2, 3, 0, 4, 5, 6, 0}};
    const std::vector<double> ofBits = valuesOf(decodeBmp(bmpOf(bits), "a"));
    ASSERT_EQ(ofBits.size(), 27U);
    EXPECT_EQ(ofBits[0], 6);
    EXPECT_EQ(ofBits[3], 3);
    EXPECT_EQ(ofBits[24], 6);
    const BmpSheet nibbles{3, 1, 4, {0x01, 0x10, 0, 0}, 0, {1, 2, 3, 0, 4, 5, 6, 0}};
    EXPECT_EQ(valuesOf(decodeBmp(bmpOf(nibbles), "a")), (std::vector<double>{3, 2, 1, 6, 5, 4, 6, 5, 4}));
    const BmpSheet fifteen{1, 1, 16, {0xff, 0x7f, 0, 0}, 0, {}};
    EXPECT_EQ(valuesOf(decodeBmp(bmpOf(fifteen), "a")), (std::vector<double>{255, 255, 255}));
}

TEST(Bmp, AnAlphaThatSaysNothingIsNone) {
    const auto channels = [](uint8_t first, uint8_t second) {
        const BmpSheet sheet{2, 1, 32, {1, 2, 3, first, 4, 5, 6, second}, 0, {}};
        const Picture picture = decodeBmp(bmpOf(sheet), "a");
        EXPECT_EQ(picture.samples[2], 1);
        return picture.channels;
    };
    EXPECT_EQ(channels(0, 0), Channels::kRgb);
    EXPECT_EQ(channels(255, 255), Channels::kRgb);
    EXPECT_EQ(channels(255, 0), Channels::kRgbAlpha);
    EXPECT_EQ(channels(0, 9), Channels::kRgbAlpha);
}

TEST(Bmp, RefusesWhatIsNotReadAndDamage) {
    const auto refused = [](const BmpSheet& sheet, const std::string& reason) {
        const std::string text = refusalOf(decodeBmp, bmpOf(sheet));
        EXPECT_NE(text.find(reason), std::string::npos) << text;
    };
    BmpSheet sheet = smallBmp();
    sheet.packing = 1;
    refused(sheet, "it is packed in run lengths, which are not read");
    sheet.packing = 4;
    refused(sheet, "it is packed in way 4, which is not read");
    sheet = smallBmp();
    sheet.depth = 2;
    refused(sheet, "it has 2 bits a pixel, which is not read");
    sheet = smallBmp();
    sheet.width = 0;
    refused(sheet, "it is damaged: a picture of 0 x 2 pixels");
    sheet = smallBmp();
    sheet.width = 30001;
    refused(sheet, "the largest picture is 30000 x 30000");
    sheet.width = 30000;
    sheet.height = 30000;
    refused(sheet, "it is cut short: 30000 x 30000 pixels need more bytes");
    refused({1, 1, 8, {2, 0, 0, 0}, 0, {1, 2, 3, 0, 4, 5, 6, 0}},
            "it is damaged: a colour beyond its palette");
    const Bytes file = bmpOf(smallBmp());
    expectBeginningsRefused(decodeBmp, file, file.size());
    expectWrongBytesBorne(decodeBmp, file, std::size_t{16} << 20);
}

Bytes webpOf(const Picture& picture, bool lossless) {
    uint8_t* memory = nullptr;
    const uint8_t* const samples = picture.samples.data();
    const int width = static_cast<int>(picture.width), height = static_cast<int>(picture.height);
    const int stride = static_cast<int>(picture.rowBytes());
    const std::size_t count = lossless ? WebPEncodeLosslessRGBA(samples, width, height, stride, &memory)
                                       : WebPEncodeRGBA(samples, width, height, stride, 80, &memory);
    const Bytes bytes(memory, memory + count);
    WebPFree(memory);
    return bytes;
}

Picture slopes() {
    std::vector<double> values;
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 32; ++x) {
            values.insert(values.end(), {x * 8.0, y * 10.0, 128.0, x < 4 ? 100.0 : 255.0});
        }
    }
    return pictureWith(SampleType::kUint8, Channels::kRgbAlpha, 32, values);
}

TEST(Webp, LosslessComesAsItIs) {
    const Picture picture = slopes();
    const Picture read = decodeWebp(webpOf(picture, true), "a.webp");
    EXPECT_EQ(read.channels, Channels::kRgbAlpha);
    EXPECT_EQ(read.alphaKind, AlphaKind::kStraight);
    EXPECT_TRUE(read.samples == picture.samples);
    EXPECT_FALSE(read.isLossy);
    Picture opaque = picture;
    for (std::size_t i = 3; i < opaque.samples.size(); i += 4) {
        opaque.samples[i] = 255;
    }
    EXPECT_EQ(decodeWebp(webpOf(opaque, true), "a").channels, Channels::kRgb);
}

TEST(Webp, LossyIsToldAsSuch) {
    const Picture read = decodeWebp(webpOf(slopes(), false), "a.webp");
    EXPECT_TRUE(read.isLossy);
    EXPECT_EQ(read.width, 32U);
    EXPECT_EQ(read.height, 24U);
    EXPECT_EQ(read.channels, Channels::kRgbAlpha);
}

TEST(Webp, DamageIsBorne) {
    for (const bool lossless : {true, false}) {
        const Bytes file = webpOf(slopes(), lossless);
        expectBeginningsRefused(decodeWebp, file, file.size() - 1);
        expectWrongBytesBorne(decodeWebp, file, std::size_t{512} << 20);
    }
}

// One colour takes next to no bytes in this format, whatever the size.
TEST(Webp, LargePlainPicturesAreRead) {
    const Picture plain = pictureWith(SampleType::kUint8, Channels::kRgbAlpha, 2000,
                                      std::vector<double>(std::size_t{2000} * 1000 * 4, 255));
    const Bytes file = webpOf(plain, true);
    EXPECT_LT(file.size(), 200U);
    EXPECT_EQ(decodeWebp(file, "a").samples.size(), 2000U * 1000 * 3);
}

struct JpegSheet {
    int width = 32;
    int height = 24;
    int channels = 3;
    J_COLOR_SPACE colours = JCS_RGB;
    bool isProgressive = false;
    bool isArithmetic = false;
    Bytes profile;
};

Bytes jpegOf(const JpegSheet& sheet) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* memory = nullptr;
    unsigned long count = 0;
    jpeg_mem_dest(&info, &memory, &count);
    info.image_width = static_cast<JDIMENSION>(sheet.width);
    info.image_height = static_cast<JDIMENSION>(sheet.height);
    info.input_components = sheet.channels;
    info.in_color_space = sheet.colours;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 95, TRUE);
    info.arith_code = sheet.isArithmetic ? TRUE : FALSE;
    if (sheet.isProgressive) {
        jpeg_simple_progression(&info);
    }
    jpeg_start_compress(&info, TRUE);
    if (!sheet.profile.empty()) {
        jpeg_write_icc_profile(&info, sheet.profile.data(), static_cast<unsigned>(sheet.profile.size()));
    }
    Bytes row(static_cast<std::size_t>(sheet.width * sheet.channels), 200);
    while (info.next_scanline < info.image_height) {
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const Bytes bytes(memory, memory + count);
    std::free(memory);
    return bytes;
}

TEST(Jpeg, GivesGreyAndColours) {
    for (const bool isProgressive : {false, true}) {
        JpegSheet sheet;
        sheet.isProgressive = isProgressive;
        const Picture colours = decodeJpeg(jpegOf(sheet), "a.jpg");
        EXPECT_EQ(colours.channels, Channels::kRgb);
        EXPECT_TRUE(colours.isLossy);
        EXPECT_EQ(colours.width, 32U);
        EXPECT_EQ(colours.height, 24U);
        EXPECT_TRUE(colours.samples == Bytes(32 * 24 * 3, 200));
        sheet.channels = 1;
        sheet.colours = JCS_GRAYSCALE;
        const Picture grey = decodeJpeg(jpegOf(sheet), "a.jpg");
        EXPECT_EQ(grey.channels, Channels::kGrey);
        EXPECT_TRUE(grey.samples == Bytes(32 * 24, 200));
    }
}

TEST(Jpeg, RefusesWhatIsNotRead) {
    JpegSheet inks;
    inks.channels = 4;
    inks.colours = JCS_CMYK;
    EXPECT_NE(
        refusalOf(decodeJpeg, jpegOf(inks)).find("its colours are CMYK or other inks, which is not read"),
        std::string::npos);
    JpegSheet arithmetic;
    arithmetic.isArithmetic = true;
    EXPECT_NE(refusalOf(decodeJpeg, jpegOf(arithmetic)).find("arithmetic coding, which is not read"),
              std::string::npos);
    Bytes wide = jpegOf(JpegSheet());
    const Bytes frame = {0xff, 0xc0};
    const auto place = std::search(wide.begin(), wide.end(), frame.begin(), frame.end());
    place[5] = place[7] = 0x70;
    EXPECT_NE(refusalOf(decodeJpeg, wide).find("need more bytes"), std::string::npos);
    place[5] = 0x7f;
    EXPECT_NE(refusalOf(decodeJpeg, wide).find("the largest picture is"), std::string::npos);
}

TEST(Jpeg, DamageIsBorne) {
    for (const bool isProgressive : {false, true}) {
        JpegSheet sheet;
        sheet.isProgressive = isProgressive;
        const Bytes file = jpegOf(sheet);
        expectBeginningsRefused(decodeJpeg, file, file.size() - 2);
        expectWrongBytesBorne(decodeJpeg, file, std::size_t{64} << 20);
    }
}

TEST(ReadOnlyFormats, TheProfileGoesToFormatsThatHaveOne) {
    JpegSheet sheet;
    sheet.profile = Bytes(200, 7);
    const Picture picture = decodeJpeg(jpegOf(sheet), "a.jpg");
    const std::vector<PictureNote> notes = notesFor(FileFormat::kTiff, picture);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_TRUE(notes[0].bytes == sheet.profile);
    EXPECT_TRUE(isColourProfile(notes[0], FileFormat::kTiff));
    EXPECT_EQ(notesFor(FileFormat::kPng, picture).size(), 1U);
    EXPECT_TRUE(notesFor(FileFormat::kExr, picture).empty());
}

TEST(ReadOnlyFormats, AreKnownByNameAndContentAndNeverWritten) {
    const TestFolder folder;
    const std::pair<const char*, Bytes> files[] = {{"a.bmp", bmpOf(smallBmp())},
                                                   {"a.webp", webpOf(slopes(), true)},
                                                   {"a.jpg", jpegOf({})},
                                                   {"a.JPEG", jpegOf({})}};
    for (const auto& [name, bytes] : files) {
        writeBytes(folder / name, bytes);
        writeBytes(folder / "unnamed", bytes);
        EXPECT_TRUE(readPicture(folder / name).samples == readPicture(folder / "unnamed").samples);
        EXPECT_THROW(formatToWrite(folder / name), text::Failure) << name;
        EXPECT_THROW(encodePicture(*formatOfName(name), slopes()), text::Failure) << name;
    }
    writeBytes(folder / "b.png", files[2].second);
    try {
        readPicture(folder / "b.png");
        ADD_FAILURE();
    } catch (const text::Failure& failure) {
        EXPECT_NE(std::string(failure.what()).find("it is not a PNG file but a JPEG file"),
                  std::string::npos);
    }
}

TEST(Photoshop, FilesAreRefusedByNameWithWhatToSave) {
    const TestFolder folder;
    for (const char* const name : {"a.psd", "a.png", "a"}) {
        writeBytes(folder / name, {'8', 'B', 'P', 'S', 0, 1, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 1, 0, 0});
        try {
            readPicture(folder / name);
            ADD_FAILURE();
        } catch (const text::Failure& failure) {
            EXPECT_EQ(failure.what(),
                      "cannot read '" + (folder / name).string() +
                          "': it is a Photoshop file, which is not read; save a copy of it as PNG, "
                          "or as TIFF where it has 16 or 32 bits");
        }
    }
}

} // namespace
} // namespace kovalune::test
