// Settings in a picture's notes: in and out of every format that has a place for them, beside what the user wrote there.

#include "pictures/EmbeddedSettings.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "tests/pictures/Pictures.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace pictures;

namespace {

constexpr FileFormat kFormats[] = {FileFormat::kPng, FileFormat::kTiff, FileFormat::kExr};
constexpr char kSettings[] = "[Version=2.0]\nView=Normal\n[Pass \xe7\xb5\xb5]\nBlur Amount=12\n";
constexpr char kWhole[] = "; Kovalune settings\n"
                          "[Version=2.0]\nView=Normal\n[Pass \xe7\xb5\xb5]\nBlur Amount=12\n";

Picture plain() {
    return pictureWith(SampleType::kHalf, Channels::kGrey, 2, {0, 1});
}

/// In a file and out again.
Picture filed(FileFormat format, const Picture& picture, const std::string& settings) {
    Picture fitting = picture;
    if (format == FileFormat::kPng && isFloat(picture.sampleType)) {
        fitting.sampleType = SampleType::kUint16;
    }
    EncodeOptions options;
    options.settings = settings;
    return decodePicture(format, encodePicture(format, fitting, options), "in");
}

/// As the effect gives it back, unchanged.
Picture rendered(const Picture& picture) {
    const host::Image image = imageOf(picture, workingFormat(picture.sampleType));
    return pictureOf(image, image, picture, {picture.sampleType, picture.alphaKind});
}

TEST(EmbeddedSettings, ComeOutAsTheyWentIn) {
    for (const FileFormat format : kFormats) {
        EXPECT_EQ(embeddedSettings(filed(format, plain(), kSettings)), kWhole);
        EXPECT_TRUE(holdsSettings(filed(format, plain(), kSettings), kSettings));
        EXPECT_FALSE(holdsSettings(filed(format, plain(), kSettings), "View=Base\n"));
        EXPECT_FALSE(holdsSettings(filed(format, plain(), ""), ""));
        EXPECT_EQ(embeddedSettings(filed(format, plain(), "")), std::nullopt);
        Picture other = plain();
        other.format = FileFormat::kTga;
        EXPECT_EQ(embeddedSettings(filed(format, other, kSettings)), kWhole);
    }
}

TEST(EmbeddedSettings, NewOnesTakeThePlaceOfOldOnes) {
    for (const FileFormat format : kFormats) {
        const Picture once = filed(format, plain(), "View=Base\n");
        const Picture twice = filed(format, once, kSettings);
        EXPECT_EQ(embeddedSettings(twice), kWhole);
        EXPECT_EQ(twice.notes.size(), once.notes.size());
    }
}

TEST(EmbeddedSettings, AreGoneFromWhatIsRenderedOfThePicture) {
    for (const FileFormat format : kFormats) {
        const Picture picture = filed(format, plain(), kSettings);
        EXPECT_EQ(embeddedSettings(rendered(picture)), std::nullopt);
        EXPECT_EQ(rendered(picture).notes.size(), picture.notes.size() - 1);
    }
}

TEST(EmbeddedSettings, StandAfterTheUsersDescriptionOfATiff) {
    Picture picture = plain();
    picture.format = FileFormat::kTiff;
    const std::string text = "Scene 4; Kovalune settings\nby hand";
    PictureNote note{"270", "2", {text.begin(), text.end()}};
    note.bytes.push_back(0);
    picture.notes = {note};
    EXPECT_EQ(embeddedSettings(picture), std::nullopt);
    const Picture once = filed(FileFormat::kTiff, picture, "View=Base\n");
    const Picture twice = filed(FileFormat::kTiff, once, kSettings);
    EXPECT_EQ(embeddedSettings(twice), kWhole);
    EXPECT_EQ(rendered(twice).notes, picture.notes);
}

TEST(EmbeddedSettings, OtherTextsOfAPngStay) {
    Picture picture = pictureWith(SampleType::kUint8, Channels::kGrey, 1, {1});
    const std::string title = std::string("Title") + '\0' + "One";
    picture.notes = {{"tEXt", {}, {title.begin(), title.end()}}};
    const Picture told = filed(FileFormat::kPng, picture, kSettings);
    EXPECT_EQ(told.notes.size(), 2U);
    EXPECT_EQ(rendered(told).notes, picture.notes);
}

TEST(EmbeddedSettings, HaveNoPlaceInTga) {
    const Picture picture = pictureWith(SampleType::kUint8, Channels::kGrey, 1, {1});
    EXPECT_FALSE(canEmbedSettings(FileFormat::kTga));
    EXPECT_THROW(filed(FileFormat::kTga, picture, kSettings), text::Failure);
}

} // namespace
} // namespace kovalune::test
