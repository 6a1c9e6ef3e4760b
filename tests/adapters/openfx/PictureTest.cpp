// The very bits that `kovalune render` writes of the same pixels, where the host's form is one that picture files have.

#include "pictures/PictureConversion.h"
#include "tests/adapters/openfx/Stage.h"

#include <array>
#include <cstring>

namespace kovalune::test {

using namespace openfx;

namespace {

pictures::Picture fileOf(const TestPicture& picture, bool isLinear) {
    pictures::Picture file;
    file.width = static_cast<uint32_t>(picture.width());
    file.height = static_cast<uint32_t>(picture.height());
    file.channels = pictures::Channels::kRgbAlpha;
    file.sampleType = picture.form().depth == kDepths[0]   ? pictures::SampleType::kUint8
                      : picture.form().depth == kDepths[1] ? pictures::SampleType::kUint16
                                                           : pictures::SampleType::kFloat;
    file.alphaKind = picture.form().premultiplication == "OfxImageAlphaPremultiplied"
                         ? pictures::AlphaKind::kPremultiplied
                         : pictures::AlphaKind::kStraight;
    file.isLinear = isLinear;
    file.samples.resize(file.byteCount());
    for (int y = 0; y < picture.height(); ++y) {
        std::memcpy(file.samples.data() + static_cast<std::size_t>(y) * file.rowBytes(), picture.at(0, y),
                    file.rowBytes());
    }
    return file;
}

class OpenFxPictures : public testing::Test {
protected:
    void SetUp() override {
        chooseColours(*stage_.instance);
        stage_.instance->set("baseColor1Range", {60.0});
        stage_.instance->set("process1ColorRange", {20.0});
    }

    /// Renders by the bundle and by the command's libraries; how many samples the effect has changed.
    int compare(TestPicture& source, bool isLinear) {
        TestPicture output(source.form(), source.width(), source.height());
        stage_.instance->set("pixelValues", {isLinear ? 1.0 : 0.0});
        EXPECT_EQ(stage_.render(&source, output), kOk);
        const pictures::Picture file = fileOf(source, isLinear);
        const host::Image image = imageOf(file, pictures::workingFormat(file.sampleType));
        host::ParamValues values = stage_.reference.valuesOf(*stage_.instance);
        if (isLinear) {
            bendColours(values);
        }
        const host::Image result = stage_.reference.render(image, values);
        const pictures::Picture expected =
            pictureOf(result, image, file, {file.sampleType, file.alphaKind, isLinear});
        const pictures::Picture found = fileOf(output, isLinear);
        EXPECT_TRUE(found.samples == expected.samples);
        int changed = 0;
        for (std::size_t i = 0; i < file.samples.size(); ++i) {
            changed += found.samples[i] == file.samples[i] ? 0 : 1;
        }
        return changed;
    }

    void bendColours(host::ParamValues& values) {
        for (auto& [index, value] : values) {
            if (auto* const color = std::get_if<PF_Pixel>(&value)) {
                for (A_u_char* const part : {&color->red, &color->green, &color->blue}) {
                    *part = static_cast<A_u_char>(srgbOfLinear(*part / 255.0) * 255.0 + 0.5);
                }
            }
        }
    }

    Stage stage_;
};

TEST_F(OpenFxPictures, EveryValueOfAShortComesOutAsTheCommandWritesIt) {
    for (const char* const alpha : {"OfxImageAlphaUnPremultiplied", "OfxImageAlphaPremultiplied"}) {
        TestPicture source({.depth = kDepths[1], .premultiplication = alpha, .isTopFirst = true}, 256, 256);
        for (int y = 0; y < 256; ++y) {
            for (int x = 0; x < 256; ++x) {
                const auto value = static_cast<uint16_t>(y * 256 + x);
                const auto full = static_cast<uint16_t>((x + y) % 7 == 0 ? value : 65535);
                const std::array<uint16_t, 4> pixel = {value, static_cast<uint16_t>(65535 - value), value,
                                                       full};
                std::memcpy(source.at(x, y), &pixel, sizeof pixel);
            }
        }
        source.keep();
        for (const bool isLinear : {false, true}) {
            EXPECT_GT(compare(source, isLinear), 1000) << alpha << isLinear;
        }
    }
}

TEST_F(OpenFxPictures, EveryPairOfColourAndAlphaOfAByteComesOutAsTheCommandWritesIt) {
    for (const char* const alpha : {"OfxImageAlphaUnPremultiplied", "OfxImageAlphaPremultiplied"}) {
        TestPicture source({.premultiplication = alpha}, 256, 256);
        for (int y = 0; y < 256; ++y) {
            for (int x = 0; x < 256; ++x) {
                const std::array<uint8_t, 4> pixel = {static_cast<uint8_t>(x), static_cast<uint8_t>(x / 2),
                                                      static_cast<uint8_t>(255 - x), static_cast<uint8_t>(y)};
                std::memcpy(source.at(x, y), &pixel, sizeof pixel);
            }
        }
        source.keep();
        for (const bool isLinear : {false, true}) {
            EXPECT_GT(compare(source, isLinear), 1000) << alpha << isLinear;
        }
    }
}

TEST_F(OpenFxPictures, FloatsOfEveryKindKeepTheirBits) {
    for (const char* const alpha : {"OfxImageAlphaUnPremultiplied", "OfxImageAlphaPremultiplied"}) {
        TestPicture source({.depth = kDepths[2], .premultiplication = alpha}, 64, 64);
        const std::array<uint32_t, 10> bits = {0x00000000, 0x80000000, 0x3F800000, 0x7FC12345, 0x7F800000,
                                               0xFF800000, 0x00000001, 0x3F000000, 0xBF000000, 0x40400000};
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x) {
                const auto at = [&](int i) { return bits[static_cast<std::size_t>(i) % bits.size()]; };
                const std::array<uint32_t, 4> pixel = {at(x), at(x / 10), at(y), at(y / 10 + x)};
                std::memcpy(source.at(x, y), &pixel, sizeof pixel);
            }
        }
        source.keep();
        compare(source, false);
    }
}

} // namespace
} // namespace kovalune::test
