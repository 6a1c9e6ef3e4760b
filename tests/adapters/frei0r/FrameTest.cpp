// Frames through the plug-in: the very pixels that every other tool makes, or the picture as it was.

#include "render/selfcheck/GoldenHash.h"
#include "render/selfcheck/GoldenPicture.h"
#include "render/selfcheck/GoldenScene.h"
#include "render/selfcheck/SelfCheck.h"
#include "tests/adapters/frei0r/TestHost.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <variant>

namespace kovalune::test {
namespace {

using selfcheck::GoldenScene;
using selfcheck::GoldenSetting;

struct Range {
    double lowest;
    double highest;
};

/// Of the numbers, by the words of their labels.
Range rangeOf(const std::string& label) {
    if (label.ends_with("Repeat Num")) {
        return {1, 10};
    }
    return label.ends_with("Range") || label.ends_with("Bias") ? Range{0, 100} : Range{0, 1000};
}

bool isCheckBox(const std::string& label) {
    return label.find("Enable") != std::string::npos || label.find("Keep") != std::string::npos;
}

double realNumber(const host::ParamValue& value) {
    const auto* const amount = std::get_if<double>(&value);
    return amount != nullptr ? *amount : static_cast<double>(std::get<A_long>(value));
}

/// The interface has thousandths of a unit, in range.
bool canBeSaid(const GoldenSetting& setting) {
    if (std::holds_alternative<PF_Pixel>(setting.value)) {
        return std::get<PF_Pixel>(setting.value).alpha == 255;
    }
    if (isCheckBox(setting.label)) {
        return true;
    }
    const double value = realNumber(setting.value);
    const Range range = rangeOf(setting.label);
    return value >= range.lowest && value <= range.highest && std::round(value * 1000.0) / 1000.0 == value;
}

/// Whole pictures of 8 bits by the usual way, with the number of iterations that every tool has.
bool canBeSaid(const GoldenScene& scene) {
    bool can = scene.what == GoldenScene::What::kFrame && scene.format == PF_PixelFormat_ARGB32 &&
               scene.flow == host::RenderFlow::kSmart && scene.wholeScale() == 1 && !scene.rect &&
               (scene.iterations == 0 || scene.iterations == 64);
    for (const GoldenSetting& setting : scene.settings) {
        can = can && canBeSaid(setting);
    }
    return can;
}

void apply(LoadedFilter& filter, const GoldenSetting& setting) {
    if (const auto* const color = std::get_if<PF_Pixel>(&setting.value)) {
        const auto channel = [](uint8_t level) { return static_cast<float>(level) / 255.0F; };
        filter.set(setting.label,
                   frei0r::Color{channel(color->red), channel(color->green), channel(color->blue)});
        return;
    }
    const double value = realNumber(setting.value);
    const Range range = isCheckBox(setting.label) ? Range{0, 1} : rangeOf(setting.label);
    filter.set(setting.label, (value - range.lowest) / (range.highest - range.lowest));
}

RgbaPicture rgbaOf(const host::Image& image) {
    RgbaPicture picture{static_cast<unsigned>(image.width()), static_cast<unsigned>(image.height())};
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const auto& p = image.at<PF_Pixel>(x, y);
            picture.pixels.push_back({p.red, p.green, p.blue, p.alpha});
        }
    }
    return picture;
}

host::Image imageOf(const RgbaPicture& picture) {
    host::Image image(PF_PixelFormat_ARGB32, static_cast<A_long>(picture.width),
                      static_cast<A_long>(picture.height));
    auto pixel = picture.pixels.begin();
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x, ++pixel) {
            image.at<PF_Pixel>(x, y) = {pixel->alpha, pixel->red, pixel->green, pixel->blue};
        }
    }
    return image;
}

std::string hashThrough(const LoadedFile& file, const GoldenScene& scene) {
    const RgbaPicture input = rgbaOf(
        selfcheck::drawGoldenPicture(scene.picture, scene.format, scene.width, scene.height, scene.seed)
            .image);
    LoadedFilter filter(file, input.width, input.height);
    filter.set("View", std::to_string(scene.view));
    for (const GoldenSetting& setting : scene.settings) {
        apply(filter, setting);
    }
    return selfcheck::pictureHash(imageOf(filter.update(input)));
}

TEST(Frei0rFrames, HaveTheGoldenHashes) {
    const Ready file;
    const std::vector<GoldenScene> scenes = selfcheck::goldenScenes();
    const auto lines = selfcheck::goldenLines();
    ASSERT_EQ(scenes.size(), lines.size());
    int rendered = 0;
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        if (canBeSaid(scenes[i])) {
            ++rendered;
            EXPECT_EQ(hashThrough(file, scenes[i]) + ' ' + scenes[i].text(), lines[i]);
        }
    }
    EXPECT_GE(rendered, 40);
}

/// (200, 100, 50, a 128) and (10, 20, 30, a 0) come and go as they are.
TEST(Frei0rFrames, HaveStraightAlpha) {
    const Ready file;
    const RgbaPicture picture{2, 1, {{200, 100, 50, 128}, {10, 20, 30, 0}}};
    LoadedFilter filter(file, 2, 1);
    EXPECT_TRUE(filter.update(picture) == picture);
    filter.set("Color 1", frei0r::Color{200 / 255.0F, 100 / 255.0F, 50 / 255.0F});
    filter.set("View", "Extract");
    EXPECT_EQ(filter.update(picture).pixels[0], (Rgba{200, 100, 50, 128}));
}

TEST(Frei0rFrames, ThatFailLeaveTheInputAndSayWhyOnce) {
    const Ready file;
    const RgbaPicture picture = blocks(30001, 1);
    LoadedFilter filter(file, picture.width, picture.height);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(filter.update(picture) == picture);
    EXPECT_TRUE(filter.update(picture) == picture);
    RgbaPicture both = picture;
    auto* const pixels = static_cast<uint32_t*>(static_cast<void*>(both.pixels.data()));
    file.update(filter.instance(), 0.0, pixels, pixels);
    EXPECT_TRUE(both == picture);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "kovalune: a picture of 30001x1 cannot be rendered: no side may be above 30000 pixels\n");
}

#ifndef KOVALUNE_SANITIZED

/// With 64 MB more than the process has, where a frame takes several times as much.
void renderWithLittleMemory() {
    const Ready file;
    const RgbaPicture picture = blocks(3000, 3000);
    RgbaPicture output = picture;
    LoadedFilter filter(file, picture.width, picture.height);
    filter.set("Color 1", frei0r::Color{50 / 255.0F, 100 / 255.0F, 180 / 255.0F});
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const auto bytes = static_cast<rlim_t>(pages) * 4096 + (64U << 20);
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
    const auto* const from = static_cast<const uint32_t*>(static_cast<const void*>(picture.pixels.data()));
    auto* const to = static_cast<uint32_t*>(static_cast<void*>(output.pixels.data()));
    std::fill_n(to, output.pixels.size(), 7U);
    file.update(filter.instance(), 0.0, from, to);
    file.update(filter.instance(), 1.0, from, to);
    std::_Exit(output == picture ? 0 : 1);
}

TEST(Frei0rFramesDeathTest, WithoutMemoryLeaveTheInput) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(renderWithLittleMemory(), testing::ExitedWithCode(0), "^kovalune: [^\n]*\n$");
}

#endif

TEST(Frei0rFrames, OfASizeThatNobodyHasAreNotTouched) {
    const Ready file;
    LoadedFilter filter(file, ~0U, ~0U);
    uint32_t pixel = 7;
    const uint32_t input = 3;
    file.update(filter.instance(), 0.0, &input, &pixel);
    EXPECT_EQ(pixel, 7U);
}

TEST(Frei0rFrames, ChangeNoParameter) {
    const Ready file;
    LoadedFilter filter(file, 48, 40);
    filter.set("Blur Amount", 0.033);
    filter.set("View", "Base");
    filter.update(blocks(48, 40));
    EXPECT_DOUBLE_EQ(filter.number("Blur Amount"), 0.033);
    EXPECT_EQ(filter.text("View"), "Base");
}

} // namespace
} // namespace kovalune::test
