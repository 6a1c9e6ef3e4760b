// What hosts do that the interface does not promise: each habit that was seen of ffmpeg or melt, by its name.

#include "tests/adapters/frei0r/TestHost.h"

#include <cfenv>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace kovalune::test {
namespace {

TEST(Frei0rHosts, OfWhichMeltAsksForTheDescriptionBeforeInit) {
    const LoadedFile file;
    frei0r::PluginInfo info{};
    file.getPluginInfo(&info);
    EXPECT_STREQ(info.name, "Kovalune");
    EXPECT_STREQ(info.author, "Kovalune");
    EXPECT_EQ(info.pluginType, frei0r::kFilter);
    EXPECT_EQ(info.colorModel, frei0r::kRgba8888);
    EXPECT_EQ(info.frei0rVersion, 1);
    EXPECT_EQ(info.majorVersion, 1);
    EXPECT_EQ(info.minorVersion, 0);
    EXPECT_EQ(info.paramCount, 48);
    EXPECT_NE(info.explanation, nullptr);
    file.getPluginInfo(nullptr);
}

/// init, init, construct, construct, destruct, deinit, destruct, deinit.
TEST(Frei0rHosts, OfWhichFfmpegInitsOncePerInstanceAndDeinitsBetween) {
    const LoadedFile file;
    const RgbaPicture picture = blocks(32, 24);
    EXPECT_EQ(file.init(), 1);
    EXPECT_EQ(file.init(), 1);
    {
        LoadedFilter second(file, 32, 24);
        {
            LoadedFilter first(file, 32, 24);
            EXPECT_TRUE(first.update(picture) == second.update(picture));
        }
        file.deinit();
        second.set("Blur Amount", 0.02);
        EXPECT_EQ(second.update(picture).pixels.size(), picture.pixels.size());
        EXPECT_DOUBLE_EQ(second.number("Blur Amount"), 0.02);
    }
    file.deinit();
    EXPECT_EQ(file.init(), 1);
    LoadedFilter later(file, 32, 24);
    EXPECT_DOUBLE_EQ(later.number("Blur Amount"), 0.01);
}

TEST(Frei0rHosts, OfWhichMeltNeverDeinits) {
    const RgbaPicture picture = blocks(16, 16);
    for (int load = 0; load < 3; ++load) {
        const LoadedFile file;
        EXPECT_EQ(file.init(), 1);
        LoadedFilter filter(file, 16, 16);
        filter.update(picture);
    }
}

/// melt reads the defaults of an instance of 720x576 that never renders.
TEST(Frei0rHosts, OfWhichMeltReadsDefaultsFromAnInstance) {
    const Ready file;
    const LoadedFilter filter(file, 720, 576);
    EXPECT_EQ(filter.text("Settings File"), "");
    EXPECT_DOUBLE_EQ(filter.number("2 : Boundary Blur"), 0.01);
}

/// melt describes the plug-in again and sets every parameter before each frame.
TEST(Frei0rHosts, OfWhichMeltSetsAllParametersForEachFrame) {
    const Ready file;
    const RgbaPicture picture = blocks(48, 40);
    LoadedFilter filter(file, 48, 40);
    LoadedFilter other(file, 48, 40);
    for (const double amount : {0.0, 0.004, 0.02}) {
        frei0r::PluginInfo info{};
        file.getPluginInfo(&info);
        for (LoadedFilter* each : {&filter, &other}) {
            each->set("Color 1", frei0r::Color{50 / 255.0F, 100 / 255.0F, 180 / 255.0F});
            each->set("Blur Amount", amount);
            each->set("View", "Normal");
        }
        EXPECT_TRUE(filter.update(picture) == other.update(picture)) << amount;
    }
}

/// ffmpeg passes milliseconds, melt seconds, and once a huge negative number.
TEST(Frei0rHosts, WhoseTimeHasNoKnownUnit) {
    const Ready file;
    const RgbaPicture picture = blocks(48, 40);
    LoadedFilter filter(file, 48, 40);
    const RgbaPicture expected = filter.update(picture);
    for (const double time : {40.0, 0.04, -9.2e15, std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_TRUE(filter.update(picture, time) == expected) << time;
    }
}

/// Two files of one name: what is loaded twice are two plug-ins, which know nothing of each other.
TEST(Frei0rHosts, OfWhichSomeLoadTheFileTwice) {
    const Ready first;
    const Ready second;
    LoadedFilter one(first, 16, 16);
    LoadedFilter two(second, 16, 16);
    const RgbaPicture picture = blocks(16, 16);
    EXPECT_TRUE(one.update(picture) == two.update(picture));
}

/// Multiples of 8 up to 2048 on paper; 1x1 was seen, melt's bands may have no row at all.
TEST(Frei0rHosts, WhoseSizesAreAny) {
    const Ready file;
    for (const auto& [width, height] : {std::pair(1U, 1U),
                                        {101U, 57U},
                                        {324U, 3U},
                                        {7U, 200U},
                                        {2056U, 2U},
                                        {0U, 0U},
                                        {0U, 16U},
                                        {16U, 0U}}) {
        const RgbaPicture picture = blocks(width, height);
        LoadedFilter filter(file, width, height);
        filter.set("View", "Extract");
        filter.set("Color 1", frei0r::Color{3 / 255.0F, 180 / 255.0F, 245 / 255.0F});
        const RgbaPicture output = filter.update(picture);
        ASSERT_EQ(output.pixels.size(), picture.pixels.size());
        for (std::size_t i = 0; i < output.pixels.size(); ++i) {
            const bool selected = picture.pixels[i] == Rgba{3, 180, 245, 255};
            ASSERT_EQ(output.pixels[i].alpha, selected ? 255 : 0) << width << 'x' << height << ' ' << i;
        }
    }
}

/// A new size is another instance, and the old one may go before or after.
TEST(Frei0rHosts, WhichConstructAgainForAnotherSize) {
    const Ready file;
    for (unsigned side = 8; side < 40; side += 5) {
        LoadedFilter filter(file, side, side);
        EXPECT_EQ(filter.update(blocks(side, side)).pixels.size(), std::size_t{side} * side);
    }
}

/// Some hosts use one buffer.
TEST(Frei0rHosts, WhoseOutputMayBeTheInput) {
    const Ready file;
    const RgbaPicture picture = blocks(48, 40);
    LoadedFilter filter(file, 48, 40);
    filter.set("Color 1", frei0r::Color{50 / 255.0F, 100 / 255.0F, 180 / 255.0F});
    const RgbaPicture expected = filter.update(picture);
    EXPECT_FALSE(expected == picture);
    RgbaPicture both = picture;
    auto* const pixels = static_cast<uint32_t*>(static_cast<void*>(both.pixels.data()));
    file.update(filter.instance(), 0.0, pixels, pixels);
    EXPECT_TRUE(both == expected);
}

/// Hosts keep the pointers; melt's hosts even after f0r_deinit.
TEST(Frei0rHosts, WhichKeepTheTextsGetTheSameOnes) {
    const LoadedFile file;
    ASSERT_EQ(file.init(), 1);
    frei0r::ParamInfo before{};
    file.getParamInfo(&before, 2);
    file.deinit();
    ASSERT_EQ(file.init(), 1);
    frei0r::ParamInfo after{};
    file.getParamInfo(&after, 2);
    EXPECT_EQ(before.name, after.name);
    EXPECT_EQ(before.explanation, after.explanation);
    EXPECT_STREQ(before.name, "Blur Amount");
}

TEST(Frei0rHosts, GetTheirFloatingPointStateBack) {
    const Ready file;
    LoadedFilter filter(file, 48, 40);
    filter.set("Color 1", frei0r::Color{50 / 255.0F, 100 / 255.0F, 180 / 255.0F});
    ASSERT_EQ(std::fesetround(FE_UPWARD), 0);
    filter.update(blocks(48, 40));
    EXPECT_EQ(std::fegetround(), FE_UPWARD);
    std::fesetround(FE_TONEAREST);
}

TEST(Frei0rHosts, WithoutAnInstanceOrPicturesGetNothing) {
    const Ready file;
    LoadedFilter filter(file, 1, 1);
    uint32_t pixel = 7;
    file.update(nullptr, 0.0, &pixel, &pixel);
    file.update(filter.instance(), 0.0, nullptr, &pixel);
    file.update(filter.instance(), 0.0, &pixel, nullptr);
    EXPECT_EQ(pixel, 7U);
}

} // namespace
} // namespace kovalune::test
