// How many pixels a file may have: refused before memory is taken for them, in every format.

#include "pictures/PictureFile.h"
#include "tests/pictures/DamagedBytes.h"
#include "tests/pictures/TiffMaker.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <tiffio.h>

namespace kovalune::test {

using namespace pictures;

namespace {

Decode limited(FileFormat format, int mostPixels) {
    return [format, options = DecodeOptions{.mostPixels = mostPixels}](std::span<const uint8_t> bytes,
                                                                       const std::string& name) {
        return decodePicture(format, bytes, name, options);
    };
}

/// Those that the fuzz targets start from; the first byte is theirs.
class PixelLimit : public testing::TestWithParam<std::pair<FileFormat, const char*>> {};

TEST_P(PixelLimit, IsTheLargestPictureThatIsRead) {
    const auto& [format, file] = GetParam();
    std::vector<uint8_t> bytes = bytesOf(std::filesystem::path(KOVALUNE_SEEDS) / file);
    bytes.erase(bytes.begin());
    const Picture picture = decodePicture(format, bytes, "in.file");
    const auto pixels = static_cast<int>(picture.width * picture.height);
    EXPECT_EQ(refusalOf(limited(format, pixels), bytes), "");
    const std::string size = std::to_string(picture.width) + " x " + std::to_string(picture.height);
    EXPECT_EQ(refusalOf(limited(format, pixels - 1), bytes),
              "cannot read 'in.file': it is " + size + " pixels, " + std::to_string(pixels) +
                  " in all, and --max-pixels, 1 to 900000000, allows " + std::to_string(pixels - 1));
}

INSTANTIATE_TEST_SUITE_P(
    Formats, PixelLimit,
    testing::Values(std::pair{FileFormat::kPng, "png-rgba"}, std::pair{FileFormat::kTiff, "tif-lzw"},
                    std::pair{FileFormat::kExr, "exr-half"}, std::pair{FileFormat::kTga, "tga"},
                    std::pair{FileFormat::kBmp, "bmp"}, std::pair{FileFormat::kWebp, "webp"},
                    std::pair{FileFormat::kJpeg, "jpeg"}),
    [](const auto& format) { return std::string(formatName(format.param.first)); });

/// Packed files of flat colour say truly how large they are, and cost nothing.
TEST(PixelLimitOfFlatColour, IsFoundBeforeMemoryIsTaken) {
    constexpr uint32_t kSide = 4000;
    for (const FileFormat format : {FileFormat::kPng, FileFormat::kTiff, FileFormat::kExr}) {
        Picture flat;
        flat.width = flat.height = kSide;
        flat.channels = Channels::kGrey;
        flat.sampleType = sampleTypeIn(format, SampleType::kUint8);
        flat.samples.resize(flat.byteCount());
        const std::vector<uint8_t> bytes = encodePicture(format, flat);
        const std::string text =
            refusalInLittleMemory(limited(format, kSide * kSide - 1), bytes, std::size_t{8} << 20);
        EXPECT_NE(text.find("16000000 in all"), std::string::npos) << text;
    }
}

/// A tile is decoded as a whole, however small its picture.
TEST(PixelLimitOfTiles, LeavesRoomForUsualOnesAlone) {
    const auto tiled = [](uint32_t side) {
        TiffPage page;
        page.width = page.height = 1;
        page.values = {7};
        page.tileWidth = page.tileHeight = side;
        page.compression = COMPRESSION_ADOBE_DEFLATE;
        return tiffOf(page);
    };
    EXPECT_EQ(refusalOf(limited(FileFormat::kTiff, 1), tiled(2048)), "");
    EXPECT_EQ(
        refusalOf(limited(FileFormat::kTiff, 1), tiled(2064)),
        "cannot read 'in.file': its tiles are 2064 x 2064 pixels, 4260096 in all, and --max-pixels, 1 to "
        "900000000, allows 4194304");
}

} // namespace
} // namespace kovalune::test
