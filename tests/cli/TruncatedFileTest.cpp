#include "pictures/png/PngFile.h"
#include "tests/cli/ErrorCase.h"
#include "text/Failure.h"

#include <span>

namespace kovalune::test {

using namespace pictures;
using namespace text;

namespace {

std::vector<PngPicture> tinyPictures() {
    PngPicture palette = randomPng(PngColor::kPalette, 2, 3, 2, 1);
    palette.palette = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    palette.transparency = {0, 9};
    PngPicture interlaced = randomPng(PngColor::kRgbAlpha, 16, 3, 2, 2);
    interlaced.interlaced = true;
    interlaced.notes = {{"gAMA", {0, 0, 1, 2}}, {"iCCP", {'p', 0, 0, 1, 2, 3}}};
    return {randomPng(PngColor::kGrey, 8, 3, 2, 3), palette, interlaced};
}

TEST(TruncatedFile, IsRefusedWhereverItEnds) {
    const TestFolder folder;
    for (const PngPicture& picture : tinyPictures()) {
        writePng(folder / "tiny.png", picture);
        const std::vector<uint8_t> bytes = bytesOf(folder / "tiny.png");
        EXPECT_NO_THROW(decodePng(bytes, "tiny.png"));
        for (std::size_t count = 0; count < bytes.size(); ++count) {
            try {
                decodePng(std::span(bytes).first(count), "tiny.png");
                ADD_FAILURE() << count << " of " << bytes.size() << " bytes were enough";
            } catch (const Failure& failure) {
                EXPECT_EQ(failure.kind(), FailureKind::kFile);
                EXPECT_NE(std::string(failure.what()).find("'tiny.png': it is cut short"), std::string::npos)
                    << count << ": " << failure.what();
            }
        }
    }
}

TEST(TruncatedFile, AnyByteMayBeWrong) {
    const TestFolder folder;
    for (const PngPicture& picture : tinyPictures()) {
        writePng(folder / "tiny.png", picture);
        const std::vector<uint8_t> sound = bytesOf(folder / "tiny.png");
        for (std::size_t place = 0; place < sound.size(); ++place) {
            for (const int flip : {0x01, 0x20, 0x80, 0xff}) {
                std::vector<uint8_t> bytes = sound;
                bytes[place] = static_cast<uint8_t>(bytes[place] ^ flip);
                try {
                    // Damage to what is optional in a file may go unnoticed; the picture is whole then.
                    const Picture read = decodePng(bytes, "tiny.png");
                    EXPECT_EQ(read.samples.size(), read.rowBytes() * read.height);
                    EXPECT_EQ(read.width, 3U);
                    EXPECT_EQ(read.height, 2U);
                } catch (const Failure& failure) {
                    EXPECT_EQ(failure.kind(), FailureKind::kFile);
                }
            }
        }
    }
}

using TruncatedInput = ErrorCase;

TEST_F(TruncatedInput, EndsTheCommandAtEveryByte) {
    writePng(folder_ / "in.png", randomPng(PngColor::kGrey, 8, 3, 2, 3));
    const std::vector<uint8_t> bytes = bytesOf(folder_ / "in.png");
    for (std::size_t count = 0; count < bytes.size(); ++count) {
        writeBytes(folder_ / "cut.png", {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)});
        expectFailure({"render", "cut.png", "-o", "old.png"}, 3, {"'cut.png'"});
    }
}

} // namespace
} // namespace kovalune::test
