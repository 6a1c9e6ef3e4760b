// Every format's library tells its own lack of memory from a damaged file, reading and writing.

#include "pictures/PictureFile.h"
#include "tests/pictures/LittleMemory.h"
#include "tests/pictures/Pictures.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace pictures;

namespace {

#ifndef KOVALUNE_SANITIZED

class LibraryMemory : public testing::TestWithParam<FileFormat> {
protected:
    /// Rows so long that each of a library's own takes memory anew.
    static Picture widePicture() {
        return randomPicture(sampleTypeIn(GetParam(), SampleType::kUint16), Channels::kRgbAlpha, 30000, 3, 1);
    }
};

TEST_P(LibraryMemory, OfAReaderIsNoDamageOfTheFile) {
    const std::vector<uint8_t> bytes = encodePicture(GetParam(), widePicture());
    EXPECT_EQ(endWithLittleMemory([&] { decodePicture(GetParam(), bytes, "wide"); }),
              LittleMemoryEnd::kSuccess);
}

TEST_P(LibraryMemory, OfAWriterIsNoFailureOfTheFile) {
    const Picture picture = widePicture();
    EXPECT_EQ(endWithLittleMemory([&] { encodePicture(GetParam(), picture); }), LittleMemoryEnd::kSuccess);
}

INSTANTIATE_TEST_SUITE_P(PictureFile, LibraryMemory,
                         testing::Values(FileFormat::kPng, FileFormat::kTiff, FileFormat::kExr,
                                         FileFormat::kTga));

#endif

} // namespace
} // namespace kovalune::test
