// Samples that differ and samples that do not, for every pair of sample types.

#include "pictures/PictureDifference.h"

#include "pictures/PixelValues.h"
#include "tests/pictures/PictureMaker.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace kovalune::test {

using namespace pictures;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

Picture bytes(const std::vector<uint8_t>& samples) {
    return pictureOfSamples(static_cast<uint32_t>(samples.size()), 1, Channels::kGrey, SampleType::kUint8,
                            samples);
}

Picture words(const std::vector<uint16_t>& samples, SampleType type = SampleType::kUint16) {
    return pictureOfSamples(static_cast<uint32_t>(samples.size()), 1, Channels::kGrey, type, samples);
}

Picture floats(const std::vector<float>& samples) {
    return pictureOfSamples(static_cast<uint32_t>(samples.size()), 1, Channels::kGrey, SampleType::kFloat,
                            samples);
}

PictureDifference difference(const Picture& a, const Picture& b) {
    std::size_t calls = 0;
    const PictureDifference there = differenceOf(a, b, [&calls](std::size_t) { ++calls; });
    EXPECT_EQ(calls, there.pixels);
    const PictureDifference back = differenceOf(b, a, [](std::size_t) {});
    EXPECT_EQ(there.pixels, back.pixels);
    return there;
}

TEST(PictureDifference, WholeNumbersOfOneFractionAreTheSame) {
    std::vector<uint8_t> all8(256);
    std::vector<uint16_t> all16(256);
    for (unsigned v = 0; v < 256; ++v) {
        all8[v] = static_cast<uint8_t>(v);
        all16[v] = static_cast<uint16_t>(v * 257);
    }
    EXPECT_EQ(difference(bytes(all8), words(all16)).pixels, 0U);
    for (uint16_t& value : all16) {
        value ^= 1;
    }
    EXPECT_EQ(difference(bytes(all8), words(all16)).pixels, 256U);
}

TEST(PictureDifference, FloatsAreTheSameWhereTheFractionIsExact) {
    EXPECT_EQ(difference(floats({0.0F, 1.0F}), bytes({0, 255})).pixels, 0U);
    EXPECT_EQ(difference(floats({0.2F}), bytes({51})).pixels, 1U);
    EXPECT_EQ(
        difference(floats({0.5F, 1.0F, -2.0F}), words({0x3800, 0x3c00, 0xc000}, SampleType::kHalf)).pixels,
        0U);
    EXPECT_EQ(difference(floats({0.1F}), words({0x2e66}, SampleType::kHalf)).pixels, 1U);
}

TEST(PictureDifference, NanIsTheSameWithTheSameBitsOnly) {
    const auto nan = std::bit_cast<float>(0x7fc00000U);
    const auto other = std::bit_cast<float>(0x7fc00001U);
    EXPECT_EQ(difference(floats({nan}), floats({nan})).pixels, 0U);
    EXPECT_EQ(difference(floats({nan, 0.0F}), floats({nan, 1.0F})).pixels, 1U);
    const PictureDifference different = difference(floats({nan, 0.0F}), floats({other, 5.0F}));
    EXPECT_EQ(different.pixels, 2U);
    EXPECT_TRUE(std::isnan(different.largest.at(0).fraction));
    EXPECT_EQ(difference(floats({nan}), floats({1.0F})).pixels, 1U);
    EXPECT_EQ(difference(words({0x7e00}, SampleType::kHalf), words({0x7e01}, SampleType::kHalf)).pixels, 1U);
}

TEST(PictureDifference, MinusZeroIsZeroAndInfinitiesAreThemselves) {
    EXPECT_EQ(difference(floats({-0.0F, kInfinity}), floats({0.0F, kInfinity})).pixels, 0U);
    const PictureDifference different = difference(floats({kInfinity}), floats({-kInfinity}));
    EXPECT_EQ(different.pixels, 1U);
    EXPECT_EQ(different.largest.at(0).units, static_cast<double>(kInfinity));
}

TEST(PictureDifference, KnowsTheFirstPixelAndTheLargestOfAll) {
    const PictureDifference found = difference(bytes({1, 2, 3, 4}), bytes({1, 4, 3, 9}));
    EXPECT_EQ(found.pixels, 2U);
    EXPECT_EQ(found.first, 1U);
    EXPECT_EQ(found.largest.at(0).name, "grey");
    EXPECT_EQ(found.largest.at(0).units, 5.0);
    EXPECT_EQ(found.largest.at(0).fraction, 9.0 / 255.0 - 4.0 / 255.0);
}

TEST(PictureDifference, ToleranceIsOf255AndTellsWhatIsWithin) {
    const auto within = [](const Picture& a, const Picture& b, double tolerance) {
        return differenceOf(
            a, b, [](std::size_t) {}, tolerance);
    };
    const PictureDifference found = within(bytes({1, 2, 3, 4}), bytes({1, 3, 5, 14}), 2.0);
    EXPECT_EQ(found.pixels, 1U);
    EXPECT_EQ(found.within, 2U);
    EXPECT_EQ(found.first, 3U);
    EXPECT_EQ(found.largest.at(0).units, 10.0);
    EXPECT_EQ(within(floats({0.0F}), floats({1.0F}), 255.0).pixels, 0U);
    EXPECT_EQ(within(floats({0.0F}), floats({std::nextafter(1.0F, 2.0F)}), 255.0).pixels, 1U);
    EXPECT_EQ(within(floats({std::bit_cast<float>(0x7fc00000U)}), floats({1.0F}), 255.0).pixels, 1U);
    EXPECT_EQ(within(floats({kInfinity}), floats({-kInfinity}), 255.0).pixels, 1U);
}

TEST(PixelValues, TextsReadBackAsTheSameSample) {
    const Picture picture =
        floats({0.1F, -0.0F, 1e-45F, 3.4028235e38F, -kInfinity, std::bit_cast<float>(0xffc12345U)});
    const std::vector<std::string> texts = {"0.1", "-0", "1e-45", "3.4028235e+38", "-inf", "nan(0xffc12345)"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(sampleText(picture, i), texts[i]);
    }
    EXPECT_EQ(sampleText(words({0x2e66}, SampleType::kHalf), 0), "0.099975586");
    EXPECT_EQ(sampleText(words({0x7e01}, SampleType::kHalf), 0), "nan(0x7e01)");
    EXPECT_EQ(sampleText(words({65535}), 0), "65535");
}

} // namespace
} // namespace kovalune::test
