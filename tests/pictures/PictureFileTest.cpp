// Formats by name and by content, and what a file of each can hold.

#include "pictures/PictureFile.h"
#include "tests/pictures/Pictures.h"
#include "tests/support/TestFolder.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace kovalune::test {

using namespace pictures;
using namespace text;

namespace {

constexpr FileFormat kAll[] = {FileFormat::kPng, FileFormat::kTiff, FileFormat::kExr, FileFormat::kTga};
constexpr SampleType kTypes[] = {SampleType::kUint8, SampleType::kUint16, SampleType::kHalf,
                                 SampleType::kFloat};

std::string endOf(FileFormat format) {
    const char* const ends[] = {".png", ".tif", ".exr", ".tga"};
    return ends[static_cast<int>(format)];
}

Picture smallPicture(FileFormat format) {
    Picture picture = randomPicture(sampleTypeIn(format, SampleType::kUint8), Channels::kRgbAlpha, 9, 7, 1);
    picture.alphaKind = usualAlphaKind(format);
    return picture;
}

std::vector<uint8_t> fileOf(FileFormat format) {
    return encodePicture(format, smallPicture(format));
}

template <class Work>
std::string failureOf(Work work) {
    try {
        work();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.kind(), FailureKind::kFile);
        return failure.what();
    }
    return {};
}

TEST(PictureFile, TheEndOfANameTellsItsFormatWithoutCase) {
    EXPECT_EQ(formatOfName("a/b.png"), FileFormat::kPng);
    EXPECT_EQ(formatOfName("b.x.PNG"), FileFormat::kPng);
    EXPECT_EQ(formatOfName("b.tif"), FileFormat::kTiff);
    EXPECT_EQ(formatOfName("b.Tiff"), FileFormat::kTiff);
    EXPECT_EQ(formatOfName("b.exr"), FileFormat::kExr);
    EXPECT_EQ(formatOfName("絵 1.TGA"), FileFormat::kTga);
    for (const char* other : {"png", ".png", "a.gif", "a.png/b", "a.pn", "", "a."}) {
        EXPECT_FALSE(formatOfName(other)) << other;
    }
}

TEST(PictureFile, AnOutputNeedsANameThatTellsAFormat) {
    const TestFolder folder;
    for (const FileFormat format : kAll) {
        EXPECT_EQ(formatToWrite(folder / ("new" + endOf(format))), format);
    }
    const std::string text = failureOf([&] { formatToWrite(folder / "new.jpg"); });
    for (const char* part : {"new.jpg'", ".png", ".tif", ".tiff", ".exr", ".tga"}) {
        EXPECT_NE(text.find(part), std::string::npos) << text;
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(PictureFile, EveryFormatHasANearestTypeForEverySample) {
    using enum SampleType;
    const SampleType expected[4][4] = {{kUint8, kUint16, kUint16, kUint16},
                                       {kUint8, kUint16, kHalf, kFloat},
                                       {kHalf, kFloat, kHalf, kFloat},
                                       {kUint8, kUint8, kUint8, kUint8}};
    for (const FileFormat format : kAll) {
        for (const SampleType type : kTypes) {
            EXPECT_EQ(sampleTypeIn(format, type), expected[static_cast<int>(format)][static_cast<int>(type)]);
        }
        EXPECT_EQ(usualAlphaKind(format),
                  format == FileFormat::kExr ? AlphaKind::kPremultiplied : AlphaKind::kStraight);
    }
}

/// A drawing: runs of one colour that end at another place in every row.
Picture flatDrawing() {
    Picture picture;
    picture.width = 400;
    picture.height = 300;
    picture.channels = Channels::kRgbAlpha;
    picture.samples.resize(picture.byteCount());
    for (std::size_t i = 0; i < picture.samples.size(); ++i) {
        const std::size_t pixel = i / 4;
        picture.samples[i] = static_cast<uint8_t>((pixel % 400 + 7 * (pixel / 400) % 31) / 23 * (i % 4 + 29));
    }
    return picture;
}

TEST(PictureFile, APngOfEveryLevelHoldsTheSamePicture) {
    const Picture pictures[] = {flatDrawing(), randomPicture(SampleType::kUint16, Channels::kRgb, 33, 17, 3),
                                randomPicture(SampleType::kUint8, Channels::kGreyAlpha, 33, 17, 4)};
    for (const Picture& picture : pictures) {
        for (int level = 0; level <= kHighestPngLevel; ++level) {
            const std::vector<uint8_t> bytes = encodePicture(FileFormat::kPng, picture, {.pngLevel = level});
            const Picture again = decodePicture(FileFormat::kPng, bytes, "in");
            EXPECT_TRUE(again.samples == picture.samples) << "level " << level;
            EXPECT_EQ(again.channels, picture.channels);
        }
    }
}

TEST(PictureFile, APngOfAHigherLevelIsSmaller) {
    const Picture picture = flatDrawing();
    const auto bytesAt = [&](int level) {
        return encodePicture(FileFormat::kPng, picture, {.pngLevel = level}).size();
    };
    EXPECT_GT(bytesAt(0), picture.samples.size());
    EXPECT_LT(bytesAt(kUsualPngLevel), bytesAt(0) / 10);
    EXPECT_LT(bytesAt(kSmallPngLevel), bytesAt(kUsualPngLevel));
    EXPECT_EQ(encodePicture(FileFormat::kPng, picture).size(), bytesAt(kUsualPngLevel));
}

class EachFormat : public testing::TestWithParam<FileFormat> {};

TEST_P(EachFormat, KeepsEverySampleOfEveryTypeAndKindOfPicture) {
    for (const SampleType type : kTypes) {
        if (sampleTypeIn(GetParam(), type) != type) {
            continue;
        }
        for (const Channels channels :
             {Channels::kGrey, Channels::kGreyAlpha, Channels::kRgb, Channels::kRgbAlpha}) {
            Picture picture = randomPicture(type, channels, 33, 17, 3);
            picture.alphaKind = usualAlphaKind(GetParam());
            const Picture again = decodePicture(GetParam(), encodePicture(GetParam(), picture), "in");
            EXPECT_EQ(again.samples, picture.samples);
            EXPECT_EQ(again.channels, channels);
            EXPECT_EQ(again.sampleType, type);
            EXPECT_EQ(again.format, GetParam());
            if (hasAlpha(channels)) {
                EXPECT_EQ(again.alphaKind, picture.alphaKind);
            }
        }
    }
}

TEST_P(EachFormat, IsReadUnderItsNameAndUnderOneThatTellsNothing) {
    const TestFolder folder;
    const Picture picture = smallPicture(GetParam());
    for (const std::string& name : {"絵 1" + endOf(GetParam()), std::string("絵 2"), std::string("x.dat")}) {
        writeBytes(folder / name, fileOf(GetParam()));
        const Picture read = readPicture(folder / name);
        EXPECT_EQ(read.format, GetParam());
        EXPECT_EQ(read.samples, picture.samples);
    }
}

TEST_P(EachFormat, IsRefusedUnderTheNameOfAnother) {
    const TestFolder folder;
    for (const FileFormat other : kAll) {
        if (other == GetParam()) {
            continue;
        }
        const std::filesystem::path file = folder / ("wrong" + endOf(other));
        writeBytes(file, fileOf(GetParam()));
        const std::string text = failureOf([&] { readPicture(file); });
        EXPECT_NE(text.find(file.string()), std::string::npos) << text;
        EXPECT_NE(text.find(std::string(formatName(other)) + " file but"), std::string::npos) << text;
        EXPECT_TRUE(text.ends_with(std::string(formatName(GetParam())) + " file")) << text;
    }
}

TEST_P(EachFormat, IsRefusedIfEmptyOrOfNoKnownKind) {
    const TestFolder folder;
    const std::filesystem::path file = folder / ("in" + endOf(GetParam()));
    writeBytes(file, {});
    EXPECT_TRUE(failureOf([&] { readPicture(file); }).ends_with("it is empty"));
    writeBytes(file, std::vector<uint8_t>(1000, 'x'));
    const std::string text = failureOf([&] { readPicture(file); });
    EXPECT_TRUE(text.ends_with(std::string(formatName(GetParam())) + " file")) << text;
    std::filesystem::remove(file);
    EXPECT_NE(failureOf([&] { readPicture(file); }).find("No such file"), std::string::npos);
}

TEST_P(EachFormat, AnEndlessFileOfAnotherKindIsNotReadToItsEnd) {
    const TestFolder folder;
    const std::filesystem::path file = folder / ("in" + endOf(GetParam()));
    std::filesystem::create_symlink("/dev/zero", file);
    EXPECT_NE(failureOf([&] { readPicture(file); }).find("it is not "), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(PictureFile, EachFormat, testing::ValuesIn(kAll));

TEST(PictureFile, AnUnknownKindNamesThoseThatAreKnown) {
    const std::string text = failureOf([] { readPicture("/dev/zero"); });
    for (const FileFormat format : kAll) {
        EXPECT_NE(text.find(formatName(format)), std::string::npos) << text;
    }
}

TEST(PictureFile, NotesOfAnotherFormatAreNothingToAFile) {
    for (const FileFormat from : kAll) {
        for (const FileFormat to : kAll) {
            Picture picture = smallPicture(to);
            picture.format = from;
            picture.notes = {{"nonsense", "7", {1, 2, 3}}};
            if (from == to) {
                continue;
            }
            const Picture again = decodePicture(to, encodePicture(to, picture), "in");
            EXPECT_EQ(again.samples, picture.samples);
            EXPECT_TRUE(std::none_of(again.notes.begin(), again.notes.end(),
                                     [](const PictureNote& note) { return note.name == "nonsense"; }));
        }
    }
}

} // namespace
} // namespace kovalune::test
