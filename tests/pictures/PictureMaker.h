// Pictures of floats for tests of the command, written as TIFF, and pictures built sample by sample.
#pragma once

#include "pictures/Picture.h"
#include "pictures/PictureFile.h"
#include "tests/support/TestFolder.h"

#include <filesystem>
#include <vector>

namespace kovalune::test {

template <class Sample>
pictures::Picture pictureOfSamples(uint32_t width, uint32_t height, pictures::Channels channels,
                                   pictures::SampleType type, const std::vector<Sample>& samples) {
    pictures::Picture picture;
    picture.width = width;
    picture.height = height;
    picture.channels = channels;
    picture.sampleType = type;
    picture.samples = std::vector<uint8_t>(picture.byteCount());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        picture.setSample(i, samples[i]);
    }
    return picture;
}

inline void writeFloats(const std::filesystem::path& file, uint32_t width, uint32_t height,
                        pictures::Channels channels, const std::vector<float>& samples) {
    writeBytes(file, pictures::encodePicture(
                         pictures::FileFormat::kTiff,
                         pictureOfSamples(width, height, channels, pictures::SampleType::kFloat, samples)));
}

} // namespace kovalune::test
