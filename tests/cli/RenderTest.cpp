// What the options of `kovalune render` do to a picture that the effect really changes.

#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kovalune::test {
namespace {

constexpr uint32_t kWidth = 48;
constexpr uint32_t kHeight = 40;

/// A block of two near reds, chequered, on plain green.
PngPicture drawing(PngColor color = PngColor::kRgb) {
    PngPicture picture = blankPng(color, 8, kWidth, kHeight);
    picture.rows.clear();
    for (uint32_t y = 0; y < kHeight; ++y) {
        for (uint32_t x = 0; x < kWidth; ++x) {
            const bool inside = x >= 8 && x < 40 && y >= 8 && y < 32;
            const uint8_t red = (x / 4 + y / 4) % 2 == 0 ? 200 : 212;
            const std::vector<uint8_t> rgb =
                inside ? std::vector<uint8_t>{red, 30, 30} : std::vector<uint8_t>{0, 160, 0};
            picture.rows.insert(picture.rows.end(), rgb.begin(), rgb.end());
            if (color == PngColor::kRgbAlpha) {
                picture.rows.push_back(255);
            }
        }
    }
    return picture;
}

class Render : public testing::Test {
protected:
    Render() { writePng(input(), drawing()); }

    std::string input() const { return folder_ / "in.png"; }

    /// With settings under which the block is blurred.
    PngPicture render(const std::vector<std::string>& more, const CommandSetting& setting = {}) const {
        const std::string output = folder_ / "out.png";
        std::vector<std::string> words = {
            "render",           input(), "-o",           output, "--set", "Color 1=206,30,30", "--set",
            "Color 1 Range=20", "--set", "Blur Amount=6"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return readPngFile(output);
    }

    TestFolder folder_;
};

TEST_F(Render, BlursTheRegionAndLeavesTheRest) {
    const PngPicture before = drawing();
    const PngPicture after = render({});
    EXPECT_EQ(after.color, PngColor::kRgb);
    EXPECT_FALSE(after.rows == before.rows);
    for (uint32_t x = 0; x < 3 * kWidth; ++x) {
        ASSERT_EQ(after.sample(2, x), before.sample(2, x)) << x;
    }
    // In the middle, at 22 and 26 across, the two reds have come nearer to each other.
    const auto [least, most] = std::minmax({after.sample(20, 66), after.sample(20, 78)});
    EXPECT_GT(least, 200);
    EXPECT_LT(most, 212);
}

TEST_F(Render, IsTheSameWithThePlugInFile) {
    const PngPicture builtIn = render({});
    EXPECT_TRUE(render({"--plugin", KOVALUNE_PLUGIN}).rows == builtIn.rows);
}

TEST_F(Render, FindsAPlugInFileOfTheCurrentFolder) {
    const std::filesystem::path plugin(KOVALUNE_PLUGIN);
    const PngPicture builtIn = render({});
    CommandSetting setting;
    setting.folder = plugin.parent_path();
    EXPECT_TRUE(render({"--plugin", plugin.filename().string()}, setting).rows == builtIn.rows);
}

TEST_F(Render, IsTheSameForEveryThreadCount) {
    const PngPicture one = render({"--threads", "1"});
    for (const char* threads : {"2", "5", "64"}) {
        EXPECT_TRUE(render({"--threads", threads}).rows == one.rows) << threads;
    }
}

// The pixel after a transparent one comes out by the bands that the picture is divided into.
TEST_F(Render, IsTheSameForEveryThreadCountBehindATransparentPixel) {
    PngPicture picture = blankPng(PngColor::kRgbAlpha, 8, 4, 8);
    for (std::size_t at = 0; at < picture.rows.size(); at += 4) {
        const bool transparent = at == std::size_t{4} * 4 * 4;
        const std::vector<uint8_t> pixel =
            transparent ? std::vector<uint8_t>{0, 30, 30, 0} : std::vector<uint8_t>{255, 30, 30, 255};
        std::copy(pixel.begin(), pixel.end(), picture.rows.begin() + static_cast<std::ptrdiff_t>(at));
    }
    writePng(input(), picture);
    const std::vector<std::string> words = {"--view", "Extract", "--set", "Color 1=255,30,30", "--threads"};
    const auto with = [&](const char* threads) {
        std::vector<std::string> all = words;
        all.emplace_back(threads);
        return render(all).rows;
    };
    const std::vector<uint8_t> one = with("1");
    EXPECT_TRUE(with("2") == one);
    EXPECT_TRUE(with("5") == one);
}

TEST_F(Render, TheLastOfTwoSettingsHolds) {
    EXPECT_TRUE(render({"--set", "Blur Amount=0", "--set", "blur amount = 6"}).rows == render({}).rows);
    EXPECT_FALSE(render({"--set", "Blur Amount=20"}).rows == render({}).rows);
}

TEST_F(Render, AViewWithTransparencyGetsAlpha) {
    const PngPicture base = render({"--view", "base"});
    EXPECT_EQ(base.color, PngColor::kRgbAlpha);
    EXPECT_EQ(base.sample(2, 4 * 2 + 3), 0);
    EXPECT_EQ(base.sample(20, 4 * 22 + 3), 255);
}

TEST_F(Render, TheViewOptionIsTheViewParameter) {
    const PngPicture extract = render({"--set", "View=Extract"});
    EXPECT_TRUE(render({"--view", "EXTRACT"}).rows == extract.rows);
    EXPECT_TRUE(render({"--view", "3"}).rows == extract.rows);
    EXPECT_TRUE(render({"--set", "View=Normal", "--view", "Extract"}).rows == extract.rows);
    EXPECT_FALSE(render({"--view", "Normal"}).rows == extract.rows);
}

TEST_F(Render, ValuesOfTheProcessStagesMayBeSet) {
    EXPECT_TRUE(render({"--set", "2 : Boundary Blur=30", "--set", "3 : Color=#102030"}).rows ==
                render({}).rows);
}

TEST_F(Render, ReadsNumbersWithAPointWhereTheLocaleHasAComma) {
    const std::string locale = folder_ / "de_DE.UTF-8";
    if (std::system(("localedef -i de_DE -f UTF-8 '" + locale + "' >/dev/null 2>&1").c_str()) != 0) {
        GTEST_SKIP() << "no locale with a decimal comma can be made here";
    }
    CommandSetting comma;
    comma.environment = {{"LOCPATH", folder_.path()}, {"LC_ALL", "de_DE.UTF-8"}, {"LANG", "de_DE.UTF-8"}};
    EXPECT_TRUE(render({"--set", "Blur Amount=3.5"}, comma).rows ==
                render({"--set", "Blur Amount=3.5"}).rows);
    EXPECT_FALSE(render({"--set", "Blur Amount=3"}).rows == render({"--set", "Blur Amount=3.5"}).rows);
    EXPECT_EQ(runCommand({"params"}, comma).out, runCommand({"params"}).out);
}

TEST_F(Render, APlugInOfTheOldRoadAndEightBitsWorks) {
    const CommandOutcome outcome =
        runCommand({"render", input(), "-o", folder_ / "out.png", "--plugin", KOVALUNE_TEST_EFFECT});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    const PngPicture result = readPngFile(folder_ / "out.png");
    EXPECT_EQ(result.color, PngColor::kRgbAlpha);
    EXPECT_EQ(result.rows, std::vector<uint8_t>(std::size_t{4} * kWidth * kHeight, 0x77));
}

} // namespace
} // namespace kovalune::test
