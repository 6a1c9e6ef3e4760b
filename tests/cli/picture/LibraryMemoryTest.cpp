// Every format's library tells its own lack of memory from a damaged file, reading and writing.

#include "cli/picture/PictureFile.h"
#include "tests/cli/LittleMemory.h"
#include "tests/cli/picture/Pictures.h"

#include <gtest/gtest.h>

namespace kovalune::tests {
namespace {

#ifndef KOVALUNE_SANITIZED

class LibraryMemory : public testing::TestWithParam<FileFormat> {
protected:
    // Rows so long that each of a library's own takes memory anew.
    static Picture widePicture() {
        return randomPicture(sampleTypeIn(GetParam(), SampleType::Uint16), Channels::RgbAlpha, 30000, 3, 1);
    }
};

TEST_P(LibraryMemory, OfAReaderIsNoDamageOfTheFile) {
    const std::vector<std::uint8_t> bytes = encodePicture(GetParam(), widePicture());
    EXPECT_EQ(endWithLittleMemory([&] { decodePicture(GetParam(), bytes, "wide"); }),
              LittleMemoryEnd::Success);
}

TEST_P(LibraryMemory, OfAWriterIsNoFailureOfTheFile) {
    const Picture picture = widePicture();
    EXPECT_EQ(endWithLittleMemory([&] { encodePicture(GetParam(), picture); }), LittleMemoryEnd::Success);
}

INSTANTIATE_TEST_SUITE_P(PictureFile, LibraryMemory,
                         testing::Values(FileFormat::Png, FileFormat::Tiff, FileFormat::Exr,
                                         FileFormat::Tga));

#endif

} // namespace
} // namespace kovalune::tests
