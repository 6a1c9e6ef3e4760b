// What a command says that was built without TIFF, OpenEXR, WebP and JPEG: this program has the table of formats as such a build has it.

#include "pictures/LibraryVersions.h"
#include "pictures/PictureFile.h"
#include "tests/support/TestFolder.h"
#include "text/Failure.h"

#include <gtest/gtest.h>

#include <array>

namespace kovalune::test {

using namespace pictures;
using namespace text;

namespace {

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

struct Missing {
    FileFormat format;
    const char* name;
    const char* end;
    std::array<uint8_t, 20> bytes; ///< a file of it begins so
    bool isWritten = true;
};

constexpr Missing kMissing[] = {
    {FileFormat::kTiff, "TIFF", ".tif", {'I', 'I', 42}},
    {FileFormat::kExr, "OpenEXR", ".exr", {0x76, 0x2f, 0x31, 0x01}},
    {FileFormat::kWebp, "WebP", ".webp", {'R', 'I', 'F', 'F', 0, 0, 0, 0, 'W', 'E', 'B', 'P'}, false},
    {FileFormat::kJpeg, "JPEG", ".jpg", {0xff, 0xd8, 0xff}, false}};

std::string writtenTo(const std::filesystem::path& file, const Missing& missing) {
    writeBytes(file, {missing.bytes.begin(), missing.bytes.end()});
    return file.string();
}

TEST(MissingFormat, ReadingNamesTheFormatThatIsNotBuiltIn) {
    const TestFolder folder;
    for (const Missing& missing : kMissing) {
        for (const std::string& name : {std::string("a") + missing.end, std::string("a")}) {
            const std::string file = writtenTo(folder / name, missing);
            EXPECT_EQ(failureOf([&] { readPicture(file); }),
                      "cannot read '" + file + "': this command was built without " + missing.name);
        }
        EXPECT_EQ(failureOf([&] { decodePicture(missing.format, missing.bytes, "b"); }),
                  std::string("cannot read 'b': this command was built without ") + missing.name);
    }
}

TEST(MissingFormat, WritingNamesItBeforeAnythingIsDone) {
    const TestFolder folder;
    for (const Missing& missing : kMissing) {
        if (!missing.isWritten) {
            continue;
        }
        const std::filesystem::path file = folder / (std::string("a") + missing.end);
        EXPECT_EQ(failureOf([&] { formatToWrite(file); }),
                  "cannot write '" + file.string() + "': this command was built without " + missing.name);
        EXPECT_EQ(failureOf([&] { encodePicture(missing.format, Picture()); }),
                  std::string("cannot write the picture: this command was built without ") + missing.name);
        EXPECT_FALSE(std::filesystem::exists(file));
    }
}

TEST(MissingFormat, AFileOfAnotherFormatIsToldAsSuch) {
    const TestFolder folder;
    const std::string file = writtenTo(folder / "a.png", kMissing[0]);
    EXPECT_EQ(failureOf([&] { readPicture(file); }),
              "cannot read '" + file + "': it is not a PNG file but a TIFF file");
}

TEST(MissingFormat, ListsHoldWhatIsBuiltIn) {
    const TestFolder folder;
    EXPECT_EQ(formatNames(), "PNG, TGA or BMP");
    EXPECT_EQ(usualNameEnds(), ".png .tga");
    EXPECT_EQ(failureOf([&] { formatToWrite(folder / "a.jpg"); }),
              "cannot write '" + (folder / "a.jpg").string() +
                  "': the end of its name says what is written, and must be .png or .tga");
    for (const LibraryVersion& library : pictureLibraries()) {
        if (library.name != "libpng" && library.name != "stb_image") {
            EXPECT_EQ(library.version, "not built in") << library.name;
        }
    }
}

} // namespace
} // namespace kovalune::test
