// The depth, the proxy factor, the road, the kind of alpha and the times of `kovalune render`.

#include "tests/cli/ErrorCase.h"

#include <algorithm>
#include <regex>

namespace kovalune::test {
namespace {

class RenderOptions : public ErrorCase {
protected:
    /// The output; `words` come after its name.
    PngPicture render(const std::string& input, const std::vector<std::string>& words) const {
        const CommandOutcome outcome = run(input, words);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        return readPngFile(folder_ / "out.png");
    }

    CommandOutcome run(const std::string& input, const std::vector<std::string>& words,
                       const std::map<std::string, std::string>& environment = {}) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        setting.environment = environment;
        std::vector<std::string> all = {"render", input, "-o", "out.png"};
        all.insert(all.end(), words.begin(), words.end());
        return runCommand(all, setting);
    }

    /// What the test effect notes of the frame.
    std::string noted(const std::vector<std::string>& words) const {
        const TestFolder notes;
        std::vector<std::string> all = {"--plugin", KOVALUNE_TEST_EFFECT};
        all.insert(all.end(), words.begin(), words.end());
        const CommandOutcome outcome = run("in.png", all, {{"TEST_EFFECT_FRAME", notes / "note"}});
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        const std::vector<uint8_t> bytes = bytesOf(notes / "note");
        return {bytes.begin(), bytes.end()};
    }
};

/// Two near reds side by side, which a blur mixes.
PngPicture reds(int depth) {
    PngPicture picture = blankPng(PngColor::kRgb, depth, 24, 16);
    const std::size_t bytes = static_cast<std::size_t>(depth) / 8;
    for (std::size_t at = 0; at < picture.rows.size(); at += bytes) {
        const std::size_t channel = at / bytes % 3;
        const std::size_t x = at / bytes / 3 % picture.width;
        const uint8_t value = channel != 0 ? 30 : x < 12 ? 200 : 206;
        std::fill_n(picture.rows.begin() + static_cast<std::ptrdiff_t>(at), bytes, value);
    }
    return picture;
}

const std::vector<std::string> kBlurReds = {"--set", "Color 1=203,30,30", "--set", "Color 1 Range=20"};

std::vector<std::string> with(std::vector<std::string> words, const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

struct DepthCase {
    int file;
    const char* option;
    int written;
};

class RenderDepth : public RenderOptions, public testing::WithParamInterface<DepthCase> {};

TEST_P(RenderDepth, DecidesTheFile) {
    const auto [file, option, written] = GetParam();
    writePng(folder_ / "reds.png", reds(file));
    const PngPicture still = render("reds.png", {"--depth", option, "--set", "Enable 1=off"});
    EXPECT_EQ(still.depth, written);
    EXPECT_TRUE(still.rows == reds(written).rows);
    const PngPicture blurred = render("reds.png", with(kBlurReds, {"--depth", option}));
    EXPECT_EQ(blurred.depth, written);
    EXPECT_FALSE(blurred.rows == reds(written).rows);
}

INSTANTIATE_TEST_SUITE_P(, RenderDepth,
                         testing::Values(DepthCase{8, "8", 8}, DepthCase{8, "16", 16}, DepthCase{8, "32", 16},
                                         DepthCase{8, "auto", 8}, DepthCase{16, "8", 8},
                                         DepthCase{16, "16", 16}, DepthCase{16, "32", 16},
                                         DepthCase{16, "auto", 16}),
                         [](const auto& tested) {
                             return std::to_string(tested.param.file) + "Bits" + tested.param.option;
                         });

TEST_F(RenderOptions, DepthIsThatOfTheEffectsWork) {
    writePng(folder_ / "reds.png", reds(8));
    const PngPicture deep = render("reds.png", with(kBlurReds, {"--depth", "16"}));
    const PngPicture floating = render("reds.png", with(kBlurReds, {"--depth", "32"}));
    // Values between those of 8 bits.
    bool between = false;
    for (std::size_t at = 0; at < deep.rows.size(); at += 2) {
        between = between || deep.rows[at] != deep.rows[at + 1];
    }
    EXPECT_TRUE(between);
    EXPECT_FALSE(deep.rows == floating.rows);
}

TEST_F(RenderOptions, DepthThatTheEffectCannotDoIsRefused) {
    const std::vector<std::string> words = {"render",  "in.png",   "-o",
                                            "old.png", "--plugin", KOVALUNE_TEST_EFFECT};
    expectFailure(with(words, {"--depth", "16"}), 4, {"16 bits"});
    expectFailure(with(words, {"--depth", "32"}), 4, {"32 bits"});
}

TEST_F(RenderOptions, DownsampleIsWhatTheEffectIsTold) {
    EXPECT_EQ(noted({}), "12x9 of 12x9, 1/1, 1/1");
    EXPECT_EQ(noted({"--downsample", "1/2"}), "12x9 of 24x18, 1/2, 1/2");
    EXPECT_EQ(noted({"--downsample", "3/4,1/3"}), "12x9 of 16x27, 3/4, 1/3");
}

TEST_F(RenderOptions, DownsampleShrinksNothingAndMakesBlursSmaller) {
    writePng(folder_ / "reds.png", reds(16));
    const PngPicture whole = render("reds.png", with(kBlurReds, {"--set", "Blur Amount=8"}));
    const PngPicture half =
        render("reds.png", with(kBlurReds, {"--set", "Blur Amount=8", "--downsample", "1/2"}));
    EXPECT_EQ(half.width, 24U);
    EXPECT_EQ(half.height, 16U);
    EXPECT_FALSE(half.rows == whole.rows);
    EXPECT_TRUE(half.rows == render("reds.png", with(kBlurReds, {"--set", "Blur Amount=4"})).rows);
}

TEST_F(RenderOptions, LegacyIsTheOldRoad) {
    const std::vector<std::string> words = {"--plugin", KOVALUNE_TEST_EFFECT};
    const std::map<std::string, std::string> oldOnly = {{"TEST_EFFECT", "old road only"}};
    EXPECT_EQ(run("in.png", words, oldOnly).exitCode, 4);
    const CommandOutcome outcome = run("in.png", with(words, {"--legacy"}), oldOnly);
    EXPECT_TRUE(outcome.ok()) << outcome.err;
    const std::vector<uint8_t> painted(std::size_t{4} * 12 * 9, 0x77);
    EXPECT_TRUE(readPngFile(folder_ / "out.png").rows == painted);
}

TEST_F(RenderOptions, LegacyIsTheSamePictureInEveryDepth) {
    writePng(folder_ / "reds.png", reds(8));
    for (const char* depth : {"8", "16", "32"}) {
        EXPECT_TRUE(render("reds.png", with(kBlurReds, {"--legacy", "--depth", depth})).rows ==
                    render("reds.png", with(kBlurReds, {"--depth", depth})).rows)
            << depth;
    }
}

TEST_F(RenderOptions, PremultipliedAlphaIsDividedForTheEffectAndMultipliedInTheFile) {
    // 100 under alpha 128 is 199 of 255.
    PngPicture half = blankPng(PngColor::kRgbAlpha, 8, 2, 1);
    half.rows = {100, 0, 0, 128, 7, 7, 7, 0};
    writePng(folder_ / "half.png", half);
    const std::vector<std::string> words = {"--view", "Extract", "--set", "Color 1=199,0,0"};
    EXPECT_EQ(render("half.png", with(words, {"--alpha", "straight"})).rows[3], 0);
    EXPECT_TRUE(render("half.png", words).rows ==
                render("half.png", with(words, {"--alpha", "straight"})).rows);
    const PngPicture divided = render("half.png", with(words, {"--alpha", "premultiplied"}));
    EXPECT_EQ(divided.rows[0], 100);
    EXPECT_EQ(divided.rows[3], 128);
    EXPECT_TRUE(render("half.png", {"--alpha", "premultiplied", "--set", "Enable 1=off"}).rows == half.rows);
}

TEST_F(RenderOptions, TimeIsThreeLinesOfMilliseconds) {
    const CommandOutcome outcome = run("in.png", {"--time"});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    const std::string number = R"( [0-9]+\.[0-9]{3} ms)";
    EXPECT_TRUE(std::regex_match(
        outcome.out, std::regex("reading" + number + "\neffect" + number + "\nwriting" + number + "\n")))
        << outcome.out;
}

TEST_F(RenderOptions, QuietChangesNothingElse) {
    EXPECT_TRUE(render("in.png", {"--quiet"}).rows == render("in.png", {}).rows);
}

TEST_F(RenderOptions, OfOtherFormsAreRefused) {
    const std::vector<std::string> words = {"render", "in.png", "-o", "old.png"};
    for (const char* depth : {"10", "", "08", "-8", "Auto16"}) {
        expectFailure(with(words, {"--depth", depth}), 2, {"--depth"});
    }
    for (const char* factor :
         {"2/1", "0/1", "1/0", "1", "", "1/2/3", "1/2,", "1/2,1/2,1/2", "1/40000", "-1/2"}) {
        expectFailure(with(words, {"--downsample", factor}), 2, {"--downsample"});
    }
    expectFailure(with(words, {"--alpha", "both"}), 2, {"--alpha", "both"});
    expectFailure({"render", "in.png", "--print-params"}, 2, {"--output"});
    expectFailure({"render", "-o", "old.png", "--print-params"}, 2, {"INPUT"});
    expectFailure({"render"}, 2, {"INPUT"});
}

} // namespace
} // namespace kovalune::test
