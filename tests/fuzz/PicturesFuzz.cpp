// Any bytes at all as a picture's file. They are refused with a Failure or are a picture; one of a format that is written too
// comes out of a file with the same samples. The first byte says which format.

#include "pictures/PictureFile.h"
#include "tests/fuzz/Require.h"
#include "text/Failure.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <span>

namespace kovalune::test {
namespace {

using pictures::FileFormat;

struct Format {
    FileFormat format;
    bool isWritten;
};
constexpr std::array kFormats = {Format{FileFormat::kPng, true},  Format{FileFormat::kTiff, true},
                                 Format{FileFormat::kExr, true},  Format{FileFormat::kTga, true},
                                 Format{FileFormat::kBmp, false}, Format{FileFormat::kWebp, false},
                                 Format{FileFormat::kJpeg, false}};

void requireWhole(const pictures::Picture& picture) {
    const auto isSide = [](uint32_t side) { return side >= 1 && side <= pictures::kMostPixelsASide; };
    require(isSide(picture.width) && isSide(picture.height), "sides are in range");
    require(picture.samples.size() == picture.byteCount(), "every sample is there");
}

void readPicture(const Format& format, std::span<const uint8_t> bytes) {
    const pictures::Picture picture = pictures::decodePicture(format.format, bytes, "fuzz");
    requireWhole(picture);
    if (!format.isWritten ||
        pictures::sampleTypeIn(format.format, picture.sampleType) != picture.sampleType) {
        return;
    }
    const pictures::Picture again = pictures::decodePicture(
        format.format, pictures::encodePicture(format.format, picture), "fuzz, written");
    requireWhole(again);
    require(again.width == picture.width && again.height == picture.height, "the size is the same");
    require(again.channels != picture.channels || again.samples == picture.samples,
            "the samples are the same");
}

} // namespace
} // namespace kovalune::test

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    using namespace kovalune;
    if (size > 0) {
        try {
            test::readPicture(test::kFormats[data[0] % test::kFormats.size()], {data + 1, data + size});
        } catch (const text::Failure&) {
        } catch (const std::bad_alloc&) {
        }
    }
    return 0;
}
