#include "pictures/PixelValues.h"
#include "tests/cli/ErrorCase.h"
#include "tests/pictures/PictureMaker.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

namespace kovalune::test {

using namespace pictures;

namespace {

class ColorsCommand : public ErrorCase {
protected:
    std::string colors(const std::vector<std::string>& words) { return printedBy("colors", words); }
};

TEST_F(ColorsCommand, ListsTheMostFrequentFirstAndTiesAsTheyAppear) {
    writeRow("a.png", PngColor::kRgb, 8, 7,
             {9, 9, 9, 255, 0, 128, 1, 2, 3, 9, 9, 9, 0, 0, 0, 1, 2, 3, 9, 9, 9});
    EXPECT_EQ(colors({"a.png"}), " 42.857 %  3  #090909\n"
                                 " 28.571 %  2  #010203\n"
                                 " 14.286 %  1  #FF0080\n"
                                 " 14.286 %  1  #000000\n");
}

TEST_F(ColorsCommand, TellsHowManyMoreThereAre) {
    writeRow("a.png", PngColor::kGrey, 8, 6, {1, 1, 1, 2, 2, 3});
    EXPECT_EQ(colors({"a.png", "--most", "1"}), " 50.000 %  3  #010101\n 50.000 %  3  in 2 more colours\n");
    EXPECT_EQ(colors({"a.png", "--most", "2"}),
              " 50.000 %  3  #010101\n 33.333 %  2  #020202\n 16.667 %  1  in 1 more colour\n");
    EXPECT_EQ(colors({"a.png", "--most", "3"}).find("more"), std::string::npos);
}

TEST_F(ColorsCommand, ListsAllOnDemand) {
    std::vector<uint8_t> ramp(100);
    for (std::size_t i = 0; i < ramp.size(); ++i) {
        ramp[i] = static_cast<uint8_t>(i);
    }
    writeRow("a.png", PngColor::kGrey, 8, 100, ramp);
    const auto lines = [](const std::string& text) { return std::count(text.begin(), text.end(), '\n'); };
    EXPECT_EQ(lines(colors({"a.png"})), 33);
    EXPECT_EQ(lines(colors({"a.png", "--most", "0"})), 100);
}

TEST_F(ColorsCommand, TransparentPixelsAreCountedApartAndCoverDoesNotMatter) {
    writeRow("a.png", PngColor::kRgbAlpha, 8, 5,
             {1, 2, 3, 0, 7, 8, 9, 255, 7, 8, 9, 1, 4, 5, 6, 0, 7, 8, 9, 128});
    EXPECT_EQ(colors({"a.png"}), " 60.000 %  3  #070809\n 40.000 %  2  transparent\n");
    writeRow("b.png", PngColor::kGreyAlpha, 8, 1, {1, 0});
    EXPECT_EQ(colors({"b.png"}), "100.000 %  1  transparent\n");
}

TEST_F(ColorsCommand, PremultipliedColoursAreDivided) {
    writeRow("a.png", PngColor::kRgbAlpha, 8, 2, {200, 100, 50, 255, 100, 50, 25, 128});
    EXPECT_EQ(colors({"a.png"}), " 50.000 %  1  #C86432\n 50.000 %  1  #643219\n");
    EXPECT_EQ(colors({"a.png", "--alpha", "premultiplied"}),
              " 50.000 %  1  #C86432\n 50.000 %  1  #C76432\n");
}

TEST_F(ColorsCommand, ShowsExactValuesOfMoreThan8Bits) {
    writeRow("a.png", PngColor::kRgb, 16, 2, {0x80, 0, 0, 0, 0xff, 0xff, 0x80, 0, 0, 1, 0xff, 0xff});
    EXPECT_EQ(colors({"a.png"}), " 50.000 %  1  #8000FF  32768, 0, 65535\n"
                                 " 50.000 %  1  #8000FF  32768, 1, 65535\n");
    writeFloats(folder_ / "b.tif", 3, 1, Channels::kRgb, {0.1F, 2, -1, 0.1F, 2, -1, 0, -0.0F, 0});
    EXPECT_EQ(colors({"b.tif"}), " 66.667 %  2  #1AFF00  0.1, 2, -1\n 33.333 %  1  #000000  0, 0, 0\n");
}

class ManyColors : public ColorsCommand, public testing::WithParamInterface<uint8_t> {};

TEST_P(ManyColors, AreCountedAsASlowCountDoes) {
    PngPicture png = randomPng(PngColor::kRgb, 8, 60, 50, 5);
    for (uint8_t& byte : png.rows) {
        byte &= GetParam();
    }
    writePng(folder_ / "a.png", png);
    std::map<std::array<uint8_t, 3>, int> counts;
    for (std::size_t i = 0; i < png.rows.size(); i += 3) {
        ++counts[{png.rows[i], png.rows[i + 1], png.rows[i + 2]}];
    }
    const std::string text = colors({"a.png", "--most", "0"});
    EXPECT_EQ(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')), counts.size());
    for (const auto& [rgb, count] : counts) {
        char line[64];
        std::snprintf(line, sizeof line, "  %4d  #%02X%02X%02X\n", count, rgb[0], rgb[1], rgb[2]);
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
}

// From 64 colours to nearly as many as there are pixels.
INSTANTIATE_TEST_SUITE_P(Masks, ManyColors, testing::Values(0x81, 0x87, 0xff));

TEST_F(ColorsCommand, DrawsThemAsAPicture) {
    writeRow("a.png", PngColor::kRgbAlpha, 8, 4,
             {200, 10, 20, 255, 200, 10, 20, 255, 0, 99, 0, 255, 0, 0, 0, 0});
    for (const std::string name : {"色 見本.png", "colors.tif", "colors.tga", "colors.exr"}) {
        colors({"a.png", "-o", name});
        const Picture picture = readPicture(folder_ / name);
        ASSERT_EQ(picture.channels, Channels::kRgb) << name;
        std::map<std::array<uint8_t, 3>, int> found;
        for (std::size_t pixel = 0; pixel < std::size_t{picture.width} * picture.height; ++pixel) {
            ++found[{nearestByte(picture, 3 * pixel), nearestByte(picture, 3 * pixel + 1),
                     nearestByte(picture, 3 * pixel + 2)}];
        }
        // Two patches of one size, and a checkerboard of that size for the transparent pixels.
        const int patch = found[{200, 10, 20}];
        EXPECT_GT(patch, 500) << name;
        EXPECT_EQ((found[{0, 99, 0}]), patch) << name;
        EXPECT_EQ((found[{255, 255, 255}] + found[{191, 191, 191}]), patch) << name;
        EXPECT_GT((found[{235, 235, 235}]), 100) << name << " has no letters";
    }
}

TEST_F(ColorsCommand, DrawsNoMoreThanAPictureHolds) {
    writePng(folder_ / "many.png", randomPng(PngColor::kRgb, 8, 80, 60, 3));
    colors({"many.png", "--most", "2047", "-o", "many.tga"});
    expectFailure({"colors", "many.png", "--most", "2048", "-o", "old.png"}, 2,
                  {"2047", "old.png", "--most"});
    expectFailure({"colors", "many.png", "--most", "0", "-o", "old.png"}, 2, {"2047", "old.png", "--most"});
}

TEST_F(ColorsCommand, FailuresNameTheFile) {
    expectFailure({"colors", "missing.png"}, 3, {"missing.png"});
    expectFailure({"colors", "old.png"}, 3, {"old.png"});
    expectFailure({"colors"}, 2, {"INPUT"});
    expectFailure({"colors", "in.png", "--most", "-1"}, 2, {"--most"});
    expectFailure({"colors", "in.png", "--most", "many"}, 2, {"--most", "many"});
    expectFailure({"colors", "in.png", "-o", "colors.jpeg"}, 3, {"colors.jpeg"});
    expectFailure({"colors", "in.png", "-o", "none/colors.png"}, 3, {"none/colors.png"});
    CommandSetting full;
    full.standardOutput = "/dev/full";
    expectFailure({"colors", "in.png"}, 3, {"standard output"}, full);
}

} // namespace
} // namespace kovalune::test
