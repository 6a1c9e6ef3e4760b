// `kovalune smooth` as a user runs it: known results, the map of the edges, and every wrong option.

#include "pictures/PictureFile.h"
#include "tests/cli/ErrorCase.h"
#include "tests/cli/VectorPictures.h"
#include "tests/vectors/VectorFile.h"

#include <map>

namespace kovalune::test {

using namespace pictures;

namespace {

std::vector<std::string> commandFor(const std::map<std::string, std::string>& settings,
                                    const TestFolder& folder) {
    std::vector<std::string> words = {
        "smooth",      folder / "in.tif",        "-o",         folder / "out.tif",
        "--threshold", settings.at("threshold"), "--strength", settings.at("strength"),
        "--curve",     settings.at("curve")};
    if (settings.at("keyEnabled") != "0") {
        const std::string color =
            settings.at("keyRed") + "," + settings.at("keyGreen") + "," + settings.at("keyBlue");
        words.insert(words.end(), {"--key", settings.at("keyOnly") == "0" ? "remove" : "only", "--key-color",
                                   color, "--key-tolerance", settings.at("keyTolerance")});
    }
    return words;
}

TEST(SmoothCommand, GivesTheKnownPictures) {
    const std::filesystem::path vectors(KOVALUNE_SMOOTH_VECTORS);
    int smoothed = 0;
    for (const std::string& name : vectorNames(vectors)) {
        const TestFolder folder;
        writeImage(folder / "in.tif", readPicture(vectors / name / "input.kvw"));
        const CommandOutcome outcome =
            runCommand(commandFor(readSettings(vectors / name / "settings.txt"), folder));
        ASSERT_TRUE(outcome.ok()) << name << ": " << outcome.err;
        EXPECT_EQ(
            firstDifference(readImage(folder / "out.tif"), readPicture(vectors / name / "expected.kvw")), "")
            << name;
        ++smoothed;
    }
    EXPECT_EQ(smoothed, 45);
}

class SmoothFiles : public ErrorCase {
protected:
    /// A dark square of 4 by 4 at 3, 2 on white.
    SmoothFiles() { writePng(folder_ / "square.png", square()); }

    template <class IsDark>
    static PngPicture drawn(const IsDark& isDark) {
        PngPicture picture = blankPng(PngColor::kRgb, 8, 10, 8);
        for (std::size_t y = 0; y < 8; ++y) {
            for (std::size_t x = 0; x < 10; ++x) {
                for (std::size_t c = 0; c < 3; ++c) {
                    picture.rows[(y * 10 + x) * 3 + c] = isDark(x, y) ? 20 : 255;
                }
            }
        }
        return picture;
    }

    static PngPicture square() {
        return drawn([](std::size_t x, std::size_t y) { return x >= 3 && x < 7 && y >= 2 && y < 6; });
    }

    CommandOutcome run(std::vector<std::string> words) const {
        words.insert(words.begin(), "smooth");
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    std::vector<int> pixel(const std::string& file, uint32_t x, uint32_t y) const {
        const PngPicture picture = readPngFile(folder_ / file);
        std::vector<int> samples;
        for (std::size_t c = 0; c < picture.channels(); ++c) {
            samples.push_back(picture.sample(y, x * picture.channels() + c));
        }
        return samples;
    }
};

TEST_F(SmoothFiles, WithStrengthZeroStayAsTheyAre) {
    EXPECT_TRUE(run({"square.png", "-o", "out.png", "--strength", "0"}).ok());
    EXPECT_TRUE(readPngFile(folder_ / "out.png").rows == square().rows);
}

TEST_F(SmoothFiles, ChangeByTheDefaults) {
    const PngPicture stairs = drawn([](std::size_t x, std::size_t y) { return y >= 3 + x / 5; });
    writePng(folder_ / "stairs.png", stairs);
    EXPECT_TRUE(run({"stairs.png", "-o", "out.png"}).ok());
    EXPECT_FALSE(readPngFile(folder_ / "out.png").rows == stairs.rows);
    EXPECT_TRUE(
        run({"stairs.png", "-o", "same.png", "--threshold", "10", "--strength", "70", "--curve", "0"}).ok());
    EXPECT_TRUE(readPngFile(folder_ / "out.png").rows == readPngFile(folder_ / "same.png").rows);
    EXPECT_TRUE(run({"stairs.png", "-o", "weak.png", "--strength", "20"}).ok());
    EXPECT_FALSE(readPngFile(folder_ / "out.png").rows == readPngFile(folder_ / "weak.png").rows);
}

TEST_F(SmoothFiles, LoseTheKeyColourToTransparency) {
    EXPECT_TRUE(run({"square.png", "-o", "out.png", "--key", "remove"}).ok());
    EXPECT_EQ(pixel("out.png", 0, 0).at(3), 0);
    EXPECT_EQ(pixel("out.png", 5, 4), (std::vector<int>{20, 20, 20, 255}));
    EXPECT_TRUE(run({"square.png", "-o", "only.png", "--key", "ONLY", "--key-color", "#141414"}).ok());
    EXPECT_EQ(pixel("only.png", 0, 0).at(3), 0);
    EXPECT_EQ(pixel("only.png", 5, 4).at(3), 255);
}

TEST_F(SmoothFiles, ShowTheirEdgesInColours) {
    EXPECT_TRUE(run({"square.png", "-o", "out.png", "--flag-map", "map.png"}).ok());
    EXPECT_EQ(pixel("map.png", 0, 0), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(pixel("map.png", 2, 4)[0], 255) << "a step to the right, on the square's left";
    EXPECT_EQ(pixel("map.png", 2, 4)[1], 0);
    EXPECT_EQ(pixel("map.png", 5, 1)[0], 0);
    EXPECT_EQ(pixel("map.png", 5, 1)[1], 255) << "a step downward, on its top";
    EXPECT_GT(pixel("map.png", 2, 1)[2], 0) << "a diagonal, at its corner";
}

TEST_F(SmoothFiles, KeepWhatNoRampTouches) {
    PngPicture deep = randomPng(PngColor::kRgbAlpha, 16, 9, 7, 5);
    writePng(folder_ / "deep.png", deep);
    EXPECT_TRUE(run({"deep.png", "-o", "out.png", "--strength", "0"}).ok());
    EXPECT_TRUE(readPngFile(folder_ / "out.png").rows == deep.rows);
    EXPECT_TRUE(run({"square.png", "-o", "deeper.png", "--depth", "16", "--strength", "0"}).ok());
    EXPECT_EQ(readPngFile(folder_ / "deeper.png").depth, 16);
    EXPECT_EQ(pixel("deeper.png", 5, 4), (std::vector<int>{20 * 257, 20 * 257, 20 * 257}));
}

TEST_F(SmoothFiles, OfWrongOptionsAreRefused) {
    const auto refused = [this](const std::vector<std::string>& options,
                                const std::vector<std::string>& named) {
        std::vector<std::string> words = {"smooth", "square.png", "-o", "old.png"};
        words.insert(words.end(), options.begin(), options.end());
        expectFailure(words, 2, named);
    };
    refused({"--threshold", "256"}, {"--threshold", "0", "255"});
    refused({"--threshold", "-1"}, {"--threshold", "0", "255"});
    refused({"--strength", "101"}, {"--strength", "0", "100"});
    refused({"--curve", "-101"}, {"--curve", "-100", "100"});
    refused({"--curve", "1.5"}, {"--curve"});
    refused({"--key", "both"}, {"--key", "only or remove", "'both'"});
    refused({"--alpha", "odd"}, {"--alpha", "premultiplied or straight", "'odd'"});
    refused({"--flag-map", "./old.png"}, {"'./old.png'", "'old.png'"});
    refused({"--flag-map", "square.png"}, {"'square.png'"});
    refused({"--strength", "0x10"}, {"--strength", "'0x10'"});
    refused({"--key", "remove", "--key-tolerance", "256"}, {"--key-tolerance", "0", "255"});
    refused({"--key", "remove", "--key-color", "white"}, {"--key-color", "'white'", "#RRGGBB"});
    refused({"--key-color", "#000000"}, {"--key-color", "--key"});
    refused({"--strenght", "50"}, {"'--strenght'", "'--strength'"});
}

TEST_F(SmoothFiles, AreNotTheirOwnMapsAlsoWhereNeitherExists) {
    expectFailure({"smooth", "square.png", "-o", "new.png", "--flag-map", "./new.png"}, 2, {"'new.png'"});
    expectFailure({"smooth", "square.png", "-o", "new.png", "--flag-map", folder_ / "new.png"}, 2,
                  {"'new.png'"});
    std::filesystem::create_symlink("new.png", folder_ / "link.png");
    expectFailure({"smooth", "square.png", "-o", "new.png", "--flag-map", "link.png"}, 2, {"'new.png'"});
}

TEST_F(SmoothFiles, TakeWholeNumbersAsDecimal) {
    EXPECT_TRUE(run({"square.png", "-o", "a.png", "--strength", "010"}).ok());
    EXPECT_TRUE(run({"square.png", "-o", "b.png", "--strength", "10"}).ok());
    EXPECT_TRUE(readPngFile(folder_ / "a.png").rows == readPngFile(folder_ / "b.png").rows);
}

struct DepthAndTolerance {
    const char* depth;
    const char* tolerance;
};

class KeyDepth : public SmoothFiles, public testing::WithParamInterface<DepthAndTolerance> {};

TEST_P(KeyDepth, RemovesTheColourThatIsNamed) {
    PngPicture picture = blankPng(PngColor::kRgb, 8, 2, 1);
    picture.rows = {255, 0, 0, 0, 0, 255};
    writePng(folder_ / "two.png", picture);
    EXPECT_TRUE(run({"two.png", "-o", "out.png", "--key", "remove", "--key-color", "#FF0000", "--depth",
                     GetParam().depth, "--key-tolerance", GetParam().tolerance, "--strength", "0"})
                    .ok());
    EXPECT_EQ(pixel("out.png", 0, 0).at(3), 0);
    EXPECT_GT(pixel("out.png", 1, 0).at(3), 0);
}

INSTANTIATE_TEST_SUITE_P(SmoothFiles, KeyDepth,
                         testing::Values(DepthAndTolerance{"8", "1"}, DepthAndTolerance{"16", "0"},
                                         DepthAndTolerance{"32", "0"}),
                         [](const auto& test) { return std::string("Bits") + test.param.depth; });

TEST_F(SmoothFiles, RefuseAColouredKeyThatEightBitsWouldMistake) {
    expectFailure({"smooth", "square.png", "-o", "old.png", "--key", "only", "--key-color", "#FF0000"}, 2,
                  {"--key-color", "--key-tolerance", "1 to 255", "--depth 16"});
}

TEST_F(SmoothFiles, ThatCannotBeReadOrWrittenAreRefused) {
    expectFailure({"smooth", "none.png", "-o", "old.png"}, 3, {"'none.png'"});
    expectFailure({"smooth", "square.png", "-o", "none/out.png"}, 3, {"'none/out.png'"});
    expectFailure({"smooth", "square.png", "-o", "out.jpg"}, 3, {"'out.jpg'"});
    expectFailure({"smooth", "square.png", "-o", "out.png", "--flag-map", "none/map.png"}, 3,
                  {"'none/map.png'"});
}

TEST_F(SmoothFiles, AreBothLeftAloneWhenOneDoesNotFitTheDisk) {
    writePng(folder_ / "noise.png", randomPng(PngColor::kGrey, 1, 64, 64, 1));
    CommandSetting setting;
    setting.mostFileBytes = 5000; // enough for a grey picture, not for one of three colours
    expectFailure({"smooth", "noise.png", "-o", "old.png", "--strength", "0", "--flag-map", "map.tga"}, 3,
                  {"'map.tga'", "File too large"}, setting);
}

} // namespace
} // namespace kovalune::test
