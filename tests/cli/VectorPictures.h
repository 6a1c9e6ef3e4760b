// The pictures of vectors as files that hold every value of theirs: TIFF, RGBA with straight alpha.
#pragma once

#include "cli/picture/PictureConversion.h"
#include "cli/picture/PictureFile.h"
#include "tests/cli/TestFolder.h"

namespace kovalune::tests {

/// What the file holds for white is 255, 65535 or 1; it reads back as the same image.
inline Picture filePicture(const host::Image& image) {
    Picture blank;
    blank.width = static_cast<uint32_t>(image.width());
    blank.height = static_cast<uint32_t>(image.height());
    blank.channels = Channels::kRgbAlpha;
    blank.sampleType = sampleTypeFor(image.format(), SampleType::kFloat);
    blank.samples.assign(blank.byteCount(), 0);
    const host::Image none(image.format(), image.width(), image.height());
    return pictureOf(image, none, blank, {blank.sampleType, AlphaKind::kStraight});
}

inline void writeImage(const std::filesystem::path& file, const host::Image& image) {
    writeBytes(file, encodePicture(FileFormat::kTiff, filePicture(image)));
}

inline host::Image readImage(const std::filesystem::path& file) {
    const Picture picture = readPicture(file);
    return imageOf(picture, workingFormat(picture.sampleType));
}

} // namespace kovalune::tests
