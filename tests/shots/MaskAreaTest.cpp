// What of a mask's picture is inside, in every kind of sample.

#include "pictures/PictureFile.h"
#include "render/shots/ShotAreas.h"
#include "tests/support/TestFolder.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <optional>

namespace kovalune::test {

using namespace shots;
using pictures::Channels;
using pictures::SampleType;
using render::MaskBy;

namespace {

class MaskArea : public testing::Test {
protected:
    /// Of one row: a sample for each channel of each pixel.
    template <class Sample>
    void write(const std::string& name, Channels channels, SampleType type,
               const std::vector<Sample>& samples) {
        pictures::Picture picture;
        picture.channels = channels;
        picture.sampleType = type;
        picture.height = 1;
        picture.width = static_cast<uint32_t>(samples.size() / pictures::channelCount(channels));
        picture.samples.resize(picture.byteCount());
        std::memcpy(picture.samples.data(), samples.data(), picture.samples.size());
        const pictures::FileFormat format = *pictures::formatOfName(name);
        picture.alphaKind = pictures::usualAlphaKind(format);
        writeBytes(folder_ / name, pictures::encodePicture(format, picture));
    }

    /// '#' inside, '.' outside.
    std::string inside(const std::string& name, std::optional<MaskBy> by = std::nullopt,
                       bool invert = false) const {
        const render::FrameArea area = maskArea((folder_ / name).string(), by, invert);
        std::string text;
        for (int32_t x = 0; x < area.width(); ++x) {
            text += area.isInside(x, 0) ? '#' : '.';
        }
        return text;
    }

    TestFolder folder_;
};

TEST_F(MaskArea, IsAllButZero) {
    write<uint8_t>("grey.png", Channels::kGrey, SampleType::kUint8, {0, 1, 255, 0});
    EXPECT_EQ(inside("grey.png"), ".##.");
    EXPECT_EQ(inside("grey.png", MaskBy::kGrey, true), "#..#");
    EXPECT_EQ(inside("grey.png", MaskBy::kAlpha), "####") << "missing alpha is full";
    EXPECT_EQ(inside("grey.png", MaskBy::kAlpha, true), "....");
    write<uint16_t>("deep.png", Channels::kGrey, SampleType::kUint16, {0, 1, 256});
    EXPECT_EQ(inside("deep.png"), ".##");
}

TEST_F(MaskArea, GoesByAlphaWhereThereIsOne) {
    write<uint8_t>("a.png", Channels::kGreyAlpha, SampleType::kUint8, {9, 0, 0, 9, 0, 0});
    EXPECT_EQ(inside("a.png"), ".#.");
    EXPECT_EQ(inside("a.png", MaskBy::kGrey), "#..");
}

TEST_F(MaskArea, GoesByAnyColour) {
    write<uint8_t>("c.png", Channels::kRgb, SampleType::kUint8, {0, 0, 0, 1, 0, 0, 0, 0, 7});
    EXPECT_EQ(inside("c.png"), ".##");
}

TEST_F(MaskArea, TakesNegativeZeroForZeroAndNaNForInside) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    write<float>("f.tif", Channels::kGrey, SampleType::kFloat, {0.0F, -0.0F, 1e-30F, -1.0F, nan});
    EXPECT_EQ(inside("f.tif"), "..###");
    write<uint16_t>("h.exr", Channels::kGrey, SampleType::kHalf, {0x0000, 0x8000, 0x0001, 0x3C00});
    EXPECT_EQ(inside("h.exr"), "..##");
}

} // namespace
} // namespace kovalune::test
