// Pictures of floats for tests of the command, written as TIFF, and pictures built sample by sample.
#pragma once

#include "cli/picture/Picture.h"
#include "cli/picture/PictureFile.h"
#include "tests/cli/TestFolder.h"

#include <filesystem>
#include <vector>

namespace kovalune::tests {

template <class Sample>
Picture pictureOfSamples(uint32_t width, uint32_t height, Channels channels, SampleType type,
                         const std::vector<Sample>& samples) {
    Picture picture;
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

inline void writeFloats(const std::filesystem::path& file, uint32_t width, uint32_t height, Channels channels,
                        const std::vector<float>& samples) {
    writeBytes(file, encodePicture(FileFormat::kTiff,
                                   pictureOfSamples(width, height, channels, SampleType::kFloat, samples)));
}

} // namespace kovalune::tests
