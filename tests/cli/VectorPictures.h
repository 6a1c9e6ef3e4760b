// The pictures of vectors as files that hold every value of theirs: TIFF, RGBA with straight alpha.
#pragma once

#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "tests/support/TestFolder.h"

namespace kovalune::test {

/// What the file holds for white is 255, 65535 or 1; it reads back as the same image.
inline pictures::Picture filePicture(const host::Image& image) {
    pictures::Picture blank;
    blank.width = static_cast<uint32_t>(image.width());
    blank.height = static_cast<uint32_t>(image.height());
    blank.channels = pictures::Channels::kRgbAlpha;
    blank.sampleType = pictures::sampleTypeFor(image.format(), pictures::SampleType::kFloat);
    blank.samples.assign(blank.byteCount(), 0);
    const host::Image none(image.format(), image.width(), image.height());
    return pictures::pictureOf(image, none, blank, {blank.sampleType, pictures::AlphaKind::kStraight});
}

inline void writeImage(const std::filesystem::path& file, const host::Image& image) {
    writeBytes(file, pictures::encodePicture(pictures::FileFormat::kTiff, filePicture(image)));
}

inline host::Image readImage(const std::filesystem::path& file) {
    const pictures::Picture picture = pictures::readPicture(file);
    return pictures::imageOf(picture, pictures::workingFormat(picture.sampleType));
}

} // namespace kovalune::test
