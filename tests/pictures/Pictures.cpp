#include "tests/pictures/Pictures.h"

#include <Imath/half.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace kovalune::test {

using namespace pictures;

namespace {

void setValue(Picture& picture, std::size_t index, double value) {
    switch (picture.sampleType) {
    case SampleType::kUint8:
        picture.setSample(index, static_cast<uint8_t>(value));
        break;
    case SampleType::kUint16:
        picture.setSample(index, static_cast<uint16_t>(value));
        break;
    case SampleType::kHalf:
        picture.setSample(index, Imath::half(static_cast<float>(value)).bits());
        break;
    default:
        picture.setSample(index, static_cast<float>(value));
    }
}

double valueOf(const Picture& picture, std::size_t index) {
    switch (picture.sampleType) {
    case SampleType::kUint8:
        return picture.sample<uint8_t>(index);
    case SampleType::kUint16:
        return picture.sample<uint16_t>(index);
    case SampleType::kHalf: {
        Imath::half value;
        value.setBits(picture.sample<uint16_t>(index));
        return static_cast<double>(static_cast<float>(value));
    }
    default:
        return static_cast<double>(picture.sample<float>(index));
    }
}

Picture blank(SampleType type, Channels channels, uint32_t width, uint32_t height) {
    Picture picture;
    picture.width = width;
    picture.height = height;
    picture.channels = channels;
    picture.sampleType = type;
    picture.samples.resize(picture.byteCount());
    return picture;
}

double white(SampleType type) {
    return type == SampleType::kUint8 ? 255.0 : type == SampleType::kUint16 ? 65535.0 : 1.0;
}

} // namespace

Picture pictureWith(SampleType type, Channels channels, uint32_t width, const std::vector<double>& values) {
    const std::size_t rowSamples = width * channelCount(channels);
    const std::size_t rows = std::max<std::size_t>(1, values.size() / rowSamples);
    Picture picture = blank(type, channels, width, static_cast<uint32_t>(rows));
    for (std::size_t i = 0; i < values.size(); ++i) {
        setValue(picture, i, values[i]);
    }
    return picture;
}

Picture randomPicture(SampleType type, Channels channels, uint32_t width, uint32_t height, uint32_t seed) {
    Picture picture = blank(type, channels, width, height);
    std::mt19937 random(seed);
    for (uint8_t& byte : picture.samples) {
        byte = static_cast<uint8_t>(random() >> 24);
    }
    const std::size_t count = channelCount(channels);
    for (std::size_t pixel = 0; hasAlpha(channels) && pixel < std::size_t{width} * height; pixel += 3) {
        setValue(picture, pixel * count + count - 1, pixel % 2 == 0 ? 0.0 : white(type));
    }
    return picture;
}

std::vector<double> valuesOf(const Picture& picture) {
    std::vector<double> values(picture.samples.size() / bytesPerSample(picture.sampleType));
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = valueOf(picture, i);
    }
    return values;
}

std::vector<double> countedValues(std::size_t count) {
    std::vector<double> values(count);
    std::iota(values.begin(), values.end(), 0.0);
    return values;
}

} // namespace kovalune::test
