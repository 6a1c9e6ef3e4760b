// What a picture's notes tell in one format, told in another.

#include "pictures/NoteConversion.h"

#include "pictures/ColourProfile.h"
#include "pictures/PictureFile.h"
#include "pictures/Resolution.h"
#include "tests/pictures/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace kovalune::test {

using namespace pictures;

namespace {

using Bytes = std::vector<uint8_t>;
using Unit = Resolution::Unit;

constexpr FileFormat kAll[] = {FileFormat::kPng, FileFormat::kTiff, FileFormat::kExr, FileFormat::kTga};

Picture noted(FileFormat format, const std::vector<PictureNote>& notes) {
    Picture picture = pictureWith(SampleType::kUint8, Channels::kRgb, 1, {1, 2, 3});
    picture.format = format;
    picture.notes = notes;
    return picture;
}

template <class Value>
Bytes native(std::initializer_list<Value> values) {
    Bytes bytes(values.size() * sizeof(Value));
    std::memcpy(bytes.data(), values.begin(), bytes.size());
    return bytes;
}

PictureNote pngSize(const Bytes& bytes) {
    return {"pHYs", {}, bytes};
}

std::vector<PictureNote> tiffSize(uint32_t across, uint32_t down, uint32_t below, uint16_t unit) {
    return {{"282", "5", native({across, below})},
            {"283", "5", native({down, below})},
            {"296", "3", native({unit})}};
}

/// 2835 and 5670 pixels a metre.
const Bytes kPngSize = {0, 0, 0x0b, 0x13, 0, 0, 0x16, 0x26, 1};

Bytes anyProfile() {
    Bytes profile(3000);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        profile[i] = static_cast<uint8_t>(i * i / 7);
    }
    return profile;
}

TEST(NoteConversion, TheSameFormatKeepsItsNotesByteForByte) {
    const std::vector<PictureNote> notes = {{"any", "thing", {1, 2}}, pngSize({9})};
    for (const FileFormat format : kAll) {
        EXPECT_EQ(notesFor(format, noted(format, notes)), notes);
    }
}

TEST(NoteConversion, WhatOneFormatAloneHasIsLeftOut) {
    const std::vector<PictureNote> notes = {{"gAMA", {}, {0, 0, 1, 0}}, {"305", "2", {'x', 0}}};
    for (const FileFormat from : kAll) {
        for (const FileFormat to : kAll) {
            if (from != to) {
                EXPECT_TRUE(notesFor(to, noted(from, notes)).empty());
            }
        }
    }
}

TEST(NoteConversion, PixelsAMetreBecomeFractionsACentimetreAndComeBack) {
    const std::vector<PictureNote> tiff =
        notesFor(FileFormat::kTiff, noted(FileFormat::kPng, {pngSize(kPngSize)}));
    EXPECT_EQ(tiff, tiffSize(283500, 567000, 10000, 3));
    EXPECT_EQ(notesFor(FileFormat::kPng, noted(FileFormat::kTiff, tiff)), std::vector{pngSize(kPngSize)});
}

TEST(NoteConversion, EveryResolutionOfAPngComesBackFromATiff) {
    for (uint32_t value : {1U, 2U, 99U, 11811U, 3937008U, 0x7fffffffU}) {
        Bytes bytes = kPngSize;
        for (uint32_t i = 0; i < 4; ++i) {
            bytes[i] = static_cast<uint8_t>(value >> (24 - 8 * i));
        }
        const auto tiff = notesFor(FileFormat::kTiff, noted(FileFormat::kPng, {pngSize(bytes)}));
        EXPECT_EQ(notesFor(FileFormat::kPng, noted(FileFormat::kTiff, tiff)), std::vector{pngSize(bytes)})
            << value;
    }
}

TEST(NoteConversion, PixelsAnInchBecomeOnesAMetre) {
    const auto png = notesFor(FileFormat::kPng, noted(FileFormat::kTiff, tiffSize(72, 144, 1, 2)));
    EXPECT_EQ(png, (std::vector{pngSize({0, 0, 0x0b, 0x13, 0, 0, 0x16, 0x25, 1})})); // 2834.6, 5669.3
    // A file without a unit means inches.
    std::vector<PictureNote> unsaid = tiffSize(72, 144, 1, 2);
    unsaid.pop_back();
    EXPECT_EQ(notesFor(FileFormat::kPng, noted(FileFormat::kTiff, unsaid)), png);
}

TEST(NoteConversion, ARelationWithoutAUnitStaysOne) {
    const Bytes relation = {0, 0, 0, 2, 0, 0, 0, 1, 0};
    const auto tiff = notesFor(FileFormat::kTiff, noted(FileFormat::kPng, {pngSize(relation)}));
    EXPECT_EQ(tiff, tiffSize(20000, 10000, 10000, 1));
    const auto exr = notesFor(FileFormat::kExr, noted(FileFormat::kPng, {pngSize(relation)}));
    EXPECT_EQ(exr, (std::vector<PictureNote>{{"pixelAspectRatio", "float", {0, 0, 0, 0x3f}}}));
    EXPECT_EQ(notesFor(FileFormat::kPng, noted(FileFormat::kExr, exr)),
              (std::vector{pngSize({0, 0, 0x27, 0x10, 0, 0, 0x13, 0x88, 0})}));
}

TEST(NoteConversion, OpenExrHasADensityAnInchAndTheRelationOfTheSides) {
    const auto exr = notesFor(FileFormat::kExr, noted(FileFormat::kTiff, tiffSize(72, 144, 1, 2)));
    EXPECT_EQ(exr, (std::vector<PictureNote>{{"xDensity", "float", {0, 0, 0x90, 0x42}},
                                             {"pixelAspectRatio", "float", {0, 0, 0, 0x40}}}));
    EXPECT_EQ(notesFor(FileFormat::kTiff, noted(FileFormat::kExr, exr)), tiffSize(720000, 1440000, 10000, 2));
}

TEST(NoteConversion, AResolutionThatIsNoneIsLeftOut) {
    for (const Bytes& bytes :
         {Bytes{0, 0, 0, 0, 0, 0, 0, 1, 1}, Bytes{0, 0, 0, 1, 0, 0, 0, 0, 0}, Bytes{1, 2}}) {
        EXPECT_TRUE(notesFor(FileFormat::kTiff, noted(FileFormat::kPng, {pngSize(bytes)})).empty());
        EXPECT_TRUE(notesFor(FileFormat::kExr, noted(FileFormat::kPng, {pngSize(bytes)})).empty());
    }
    EXPECT_TRUE(notesFor(FileFormat::kPng, noted(FileFormat::kTiff, tiffSize(72, 72, 0, 2))).empty());
    EXPECT_TRUE(notesFor(FileFormat::kPng, noted(FileFormat::kTiff, tiffSize(0, 72, 1, 2))).empty());
    for (const float density : {0.0F, -72.0F, 1e30F, std::numeric_limits<float>::infinity(),
                                std::numeric_limits<float>::quiet_NaN()}) {
        const Picture picture = noted(FileFormat::kExr, {{"xDensity", "float", native({density})}});
        EXPECT_TRUE(notesFor(FileFormat::kPng, picture).empty()) << density;
        EXPECT_TRUE(notesFor(FileFormat::kTiff, picture).empty()) << density;
    }
}

TEST(NoteConversion, AProfileGoesFromTiffToPngAndBack) {
    const std::vector<PictureNote> tiff = {{"34675", "7", anyProfile()}};
    const auto png = notesFor(FileFormat::kPng, noted(FileFormat::kTiff, tiff));
    ASSERT_EQ(png.size(), 1U);
    EXPECT_EQ(png[0].name, "iCCP");
    EXPECT_LT(png[0].bytes.size(), anyProfile().size());
    EXPECT_TRUE(isColourProfile(png[0], FileFormat::kPng));
    EXPECT_EQ(notesFor(FileFormat::kTiff, noted(FileFormat::kPng, png)), tiff);
}

TEST(NoteConversion, ADamagedProfileIsLeftOut) {
    const auto png = notesFor(FileFormat::kPng, noted(FileFormat::kTiff, {{"34675", "7", anyProfile()}}));
    for (std::size_t count = 0; count < png[0].bytes.size(); ++count) {
        PictureNote cut = png[0];
        cut.bytes.resize(count);
        ASSERT_TRUE(notesFor(FileFormat::kTiff, noted(FileFormat::kPng, {cut})).empty()) << count;
    }
    PictureNote wrong = png[0];
    wrong.bytes[20] ^= 0x55;
    wrong.bytes[40] ^= 0x55;
    EXPECT_TRUE(notesFor(FileFormat::kTiff, noted(FileFormat::kPng, {wrong})).empty());
    EXPECT_TRUE(notesFor(FileFormat::kPng, noted(FileFormat::kTiff, {{"34675", "7", {}}})).empty());
}

// Through whole files, as the formats' own code has the notes.
TEST(NoteConversion, ResolutionAndProfileGoThroughFilesOfTheOtherFormats) {
    Picture source = noted(FileFormat::kPng, {pngSize(kPngSize)});
    const Picture tiff = decodePicture(FileFormat::kTiff, encodePicture(FileFormat::kTiff, source), "a.tif");
    EXPECT_EQ(tiff.format, FileFormat::kTiff);
    const Picture png = decodePicture(FileFormat::kPng, encodePicture(FileFormat::kPng, tiff), "a.png");
    EXPECT_EQ(png.notes, source.notes);

    Picture withProfile = noted(FileFormat::kTiff, {{"34675", "7", anyProfile()}});
    const Picture packed =
        decodePicture(FileFormat::kPng, encodePicture(FileFormat::kPng, withProfile), "a.png");
    const Picture again = decodePicture(FileFormat::kTiff, encodePicture(FileFormat::kTiff, packed), "a.tif");
    EXPECT_NE(std::find(again.notes.begin(), again.notes.end(), withProfile.notes[0]), again.notes.end());

    source.sampleType = SampleType::kHalf;
    source.samples.resize(6);
    const Picture exr = decodePicture(FileFormat::kExr, encodePicture(FileFormat::kExr, source), "a.exr");
    const std::optional<Resolution> resolution = resolutionOf(exr);
    ASSERT_TRUE(resolution);
    EXPECT_EQ(resolution->unit, Unit::kInch);
    EXPECT_NEAR(resolution->across, 72.009, 1e-4);
    EXPECT_NEAR(resolution->down, 144.018, 1e-4);
}

} // namespace
} // namespace kovalune::test
