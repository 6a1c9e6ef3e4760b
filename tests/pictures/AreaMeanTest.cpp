// Smaller pictures by area means: beside means taken pixel by pixel, and at their edges.

#include "pictures/AreaMean.h"

#include "tests/pictures/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace kovalune::test {

using namespace pictures;

namespace {

/// By the definition: each pixel of the result over all pixels of the picture.
std::vector<double> plainMeans(const Picture& picture, uint32_t width, uint32_t height) {
    const std::vector<double> values = valuesOf(picture);
    const std::size_t channels = channelCount(picture.channels);
    const auto overlap = [](uint32_t index, uint32_t cell, uint32_t large, uint32_t small) {
        const double first = std::max(static_cast<double>(index) * small, static_cast<double>(cell) * large);
        const double last =
            std::min((static_cast<double>(index) + 1) * small, (static_cast<double>(cell) + 1) * large);
        return std::max(last - first, 0.0);
    };
    std::vector<double> means;
    for (uint32_t row = 0; row < height; ++row) {
        for (uint32_t column = 0; column < width; ++column) {
            std::vector<double> sums(channels, 0.0);
            double area = 0.0;
            double cover = 0.0;
            for (uint32_t y = 0; y < picture.height; ++y) {
                for (uint32_t x = 0; x < picture.width; ++x) {
                    const double weight =
                        overlap(x, column, picture.width, width) * overlap(y, row, picture.height, height);
                    const std::size_t first = (std::size_t{y} * picture.width + x) * channels;
                    const double alpha = hasAlpha(picture.channels) ? values[first + channels - 1] : 1.0;
                    area += weight;
                    cover += weight * alpha;
                    for (std::size_t i = 0; i < channels; ++i) {
                        sums[i] += weight * alpha * values[first + i];
                    }
                }
            }
            for (std::size_t i = 0; i < channels; ++i) {
                means.push_back(cover == 0.0 ? 0.0 : sums[i] / cover);
            }
            if (hasAlpha(picture.channels)) {
                means.back() = cover / area;
            }
        }
    }
    return means;
}

class AreaMean : public testing::TestWithParam<std::tuple<SampleType, Channels>> {};

TEST_P(AreaMean, IsThatOfThePixelsBelow) {
    const auto [type, channels] = GetParam();
    for (const auto& [width, height] :
         {std::pair(13U, 9U), {13U, 1U}, {1U, 9U}, {5U, 4U}, {7U, 9U}, {1U, 1U}}) {
        std::vector<double> values = countedValues(std::size_t{13} * 9 * channelCount(channels));
        for (double& value : values) {
            value = std::fmod(value * 37.0, 251.0);
        }
        const Picture picture = pictureWith(type, channels, 13, values);
        const Picture small = shrunk(picture, width, height);
        EXPECT_EQ(small.width, width);
        EXPECT_EQ(small.height, height);
        EXPECT_EQ(small.channels, channels);
        EXPECT_EQ(small.sampleType, type);
        const std::vector<double> found = valuesOf(small);
        const std::vector<double> expected = plainMeans(picture, width, height);
        ASSERT_EQ(found.size(), expected.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_NEAR(found[i], expected[i], isFloat(type) ? 1e-4 : 0.5 + 1e-9) << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Pictures, AreaMean,
                         testing::Combine(testing::Values(SampleType::kUint8, SampleType::kUint16,
                                                          SampleType::kFloat),
                                          testing::Values(Channels::kGrey, Channels::kGreyAlpha,
                                                          Channels::kRgb, Channels::kRgbAlpha)));

TEST(AreaMean, OfOneColourIsThatColour) {
    const Picture picture = pictureWith(SampleType::kUint8, Channels::kRgb, 97,
                                        std::vector<double>(std::size_t{97} * 31 * 3, 201.0));
    for (const double value : valuesOf(shrunk(picture, 38, 7))) {
        EXPECT_EQ(value, 201.0);
    }
}

TEST(AreaMean, ColoursOfTransparentPixelsDoNotCount) {
    const Picture picture = pictureWith(SampleType::kUint8, Channels::kGreyAlpha, 2, {200, 255, 10, 0});
    EXPECT_EQ(valuesOf(shrunk(picture, 1, 1)), (std::vector<double>{200, 128}));
}

TEST(AreaMean, OfTheSameSizeIsTheSame) {
    const Picture picture = randomPicture(SampleType::kUint16, Channels::kRgb, 9, 7, 5);
    EXPECT_EQ(shrunk(picture, 9, 7).samples, picture.samples);
}

} // namespace
} // namespace kovalune::test
