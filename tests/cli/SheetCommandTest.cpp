// `kovalune sheet`: every view is in it as `kovalune render` draws it, at its place.

#include "cli/files/SheetLayout.h"
#include "pictures/Canvas.h"
#include "pictures/TextDrawing.h"
#include "tests/cli/ErrorCase.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace kovalune::test {

using namespace cli;
using namespace pictures;

namespace {

SheetContent contentOf(std::size_t count, int64_t width, int64_t height) {
    return {.count = count, .width = width, .height = height, .textWidth = 60};
}

TEST(SheetLayout, PutsUpToFourInARowWithMarginsAround) {
    const SheetLayout three = sheetLayout(contentOf(3, 100, 40), {});
    EXPECT_EQ(three.width(), 8 + 3 * 108);
    EXPECT_EQ(three.height(), 8 + 14 + 40 + 8);
    EXPECT_EQ(three.left(2), 8 + 2 * 108);
    EXPECT_EQ(three.top(2), 8);
    const SheetLayout seven = sheetLayout(contentOf(7, 100, 40), {});
    EXPECT_EQ(seven.width(), 8 + 4 * 108);
    EXPECT_EQ(seven.height(), 8 + 2 * (14 + 40 + 8));
    EXPECT_EQ(seven.left(5), 8 + 108);
    EXPECT_EQ(seven.top(5), 8 + 62);
    EXPECT_EQ(sheetLayout(contentOf(7, 100, 40), {.columns = 7}).width(), 8 + 7 * 108);
    EXPECT_EQ(sheetLayout(contentOf(3, 100, 40), {.columns = 7}).columns, 3U);
}

TEST(SheetLayout, GivesNarrowPicturesTheWidthOfTheText) {
    EXPECT_EQ(sheetLayout(contentOf(2, 1, 1), {}).width(), 8 + 2 * 68);
}

TEST(SheetLayout, TakesFewerColumnsWhereTheScaleLeavesNoRoom) {
    const SheetLayout large = sheetLayout(contentOf(7, 7680, 4320), {.scale = 1.0, .mostWidth = 30000});
    EXPECT_EQ(large.columns, 3U);
    EXPECT_LE(large.width(), 30000);
    EXPECT_EQ(large.pictureWidth, 7680);
}

TEST(SheetLayout, GrowsTextAndMarginsWithThePicture) {
    SheetContent content = contentOf(1, 1920, 1080);
    content.textLines = 3;
    const SheetLayout layout = sheetLayout(content, {});
    EXPECT_EQ(layout.textScale, 6);
    EXPECT_EQ(layout.margin, 48);
    EXPECT_EQ(layout.lineHeight, 84);
    EXPECT_EQ(layout.captionHeight, 252);
}

TEST(SheetLayout, ShrinksPicturesToTheWidthAndEnlargesNone) {
    for (const int64_t most : {4096, 1000, 400}) {
        const SheetLayout layout = sheetLayout(contentOf(7, 1920, 1080), {.mostWidth = most});
        EXPECT_EQ(layout.columns, 4U);
        EXPECT_LE(layout.width(), most);
        EXPECT_GT(layout.width(), most - 60);
        EXPECT_NEAR(static_cast<double>(layout.pictureHeight),
                    static_cast<double>(layout.pictureWidth) * 9.0 / 16.0, 0.5);
    }
    EXPECT_EQ(sheetLayout(contentOf(7, 100, 40), {.mostWidth = 30000}).pictureWidth, 100);
    const SheetLayout half = sheetLayout(contentOf(2, 101, 41), {.scale = 0.5});
    EXPECT_EQ(half.pictureWidth, 51);
    EXPECT_EQ(half.pictureHeight, 21);
    EXPECT_EQ(sheetLayout(contentOf(2, 101, 41), {.scale = 0.001}).pictureHeight, 1);
}

class Sheet : public ErrorCase {
protected:
    /// The names on a sheet: the views that the command says there are, and which of them the factory's settings switch
    /// off.
    static std::vector<std::string> labels() {
        std::vector<std::string> names = views();
        for (std::string& name : names) {
            if (name >= "Process 2") {
                name += " (off)";
            }
        }
        return names;
    }

    /// The views that the command says there are.
    static std::vector<std::string> views() {
        const std::string text = runCommand({"params"}).out;
        const std::size_t start = text.find("View ");
        std::string line = text.substr(start, text.find('\n', start) - start);
        line.erase(0, line.find("Normal", line.find("Normal") + 1)); // behind the default
        std::vector<std::string> names;
        std::istringstream list(line);
        for (std::string name; std::getline(list >> std::ws, name, ',');) {
            names.push_back(name);
        }
        return names;
    }

    CommandOutcome run(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    PngPicture sheet(const std::string& input, const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words = {"sheet", input, "-o", "sheet.png"};
        words.insert(words.end(), more.begin(), more.end());
        const CommandOutcome outcome = run(words);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return readPngFile(folder_ / "sheet.png");
    }

    PngPicture view(const std::string& input, const std::string& name,
                    const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words = {"render", input, "-o", "view.png", "--view", name};
        words.insert(words.end(), more.begin(), more.end());
        const CommandOutcome outcome = run(words);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return readPngFile(folder_ / "view.png");
    }

    static SheetLayout layoutOf(const std::vector<std::string>& names, const PngPicture& picture) {
        return sheetLayout(contentOf(names, picture), {});
    }

    /// With the factory's settings: a colour in Base, and one in Process 1.
    static SheetContent contentOf(const std::vector<std::string>& names, const PngPicture& picture) {
        const std::string caption = "#000000 " + std::to_string(std::size_t{picture.width} * picture.height);
        SheetContent content{.count = names.size(), .width = picture.width, .height = picture.height};
        content.textWidth = 14 + textSize(caption, 1).width;
        content.textLines = 2;
        for (const std::string& name : labels()) {
            content.textWidth = std::max(content.textWidth, textSize(name, 1).width);
        }
        return content;
    }
};

std::vector<uint16_t> colorAt(const PngPicture& picture, int64_t x, int64_t y) {
    std::vector<uint16_t> color;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        color.push_back(picture.sample(static_cast<uint32_t>(y),
                                       static_cast<std::size_t>(x) * picture.channels() + channel));
    }
    return color;
}

bool isOpaque(const PngPicture& picture, int64_t x, int64_t y) {
    const int white = picture.depth == 8 ? 255 : 65535;
    return picture.color != PngColor::kRgbAlpha ||
           picture.sample(static_cast<uint32_t>(y), static_cast<std::size_t>(x) * 4 + 3) == white;
}

/// Two near greys, chequered, beside random colours.
PngPicture art(int depth) {
    PngPicture picture = randomPng(PngColor::kRgb, depth, 100, 40, 3);
    const std::size_t pixelBytes = 3 * static_cast<std::size_t>(depth) / 8;
    for (std::size_t at = 0; at < picture.rows.size(); ++at) {
        const std::size_t x = at / pixelBytes % 100;
        const std::size_t y = at / pixelBytes / 100;
        if (x < 60) {
            picture.rows[at] = (x / 4 + y / 4) % 2 == 0 ? 120 : 136;
        }
    }
    return picture;
}

/// Bytes as something that sets hold well.
std::string textOf(const std::vector<uint8_t>& bytes) {
    std::string text;
    for (const uint8_t byte : bytes) {
        text += static_cast<char>(byte);
    }
    return text;
}

const std::vector<std::string> kSettings = {"--set", "Color 1=#808080", "--set", "Color 1 Range=60"};

class SheetOfDepth : public Sheet, public testing::WithParamInterface<int> {};

TEST_P(SheetOfDepth, HoldsEveryViewPixelForPixel) {
    writePng(folder_ / "art.png", art(GetParam()));
    const std::vector<std::string> names = views();
    ASSERT_GE(names.size(), 3U);
    const PngPicture drawn = sheet("art.png", kSettings);
    EXPECT_EQ(drawn.depth, GetParam());
    EXPECT_EQ(drawn.color, PngColor::kRgb);
    std::set<std::string> different;
    for (std::size_t cell = 0; cell < names.size(); ++cell) {
        if (names[cell] >= "Process 2") {
            continue; // switched off
        }
        const PngPicture picture = view("art.png", names[cell], kSettings);
        different.insert(textOf(picture.rows));
        const SheetLayout layout = layoutOf(names, picture);
        ASSERT_EQ(drawn.width, layout.width());
        ASSERT_EQ(drawn.height, layout.height());
        for (int64_t y = 0; y < 40; ++y) {
            for (int64_t x = 0; x < 100; ++x) {
                if (isOpaque(picture, x, y)) {
                    ASSERT_EQ(
                        colorAt(drawn, layout.left(cell) + x, layout.top(cell) + layout.captionHeight + y),
                        colorAt(picture, x, y))
                        << names[cell] << " at " << x << ", " << y;
                }
            }
        }
    }
    EXPECT_GE(different.size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(, SheetOfDepth, testing::Values(8, 16),
                         [](const auto& tested) { return std::to_string(tested.param) + "Bits"; });

TEST_P(SheetOfDepth, LeavesViewsOfStagesThatAreOffEmpty) {
    writePng(folder_ / "art.png", art(GetParam()));
    const PngPicture drawn = sheet("art.png", kSettings);
    const SheetLayout layout = layoutOf(views(), art(GetParam()));
    const uint16_t byte = GetParam() == 8 ? 1 : 257;
    for (std::size_t cell = 4; cell < views().size(); ++cell) {
        std::set<std::vector<uint16_t>> colors;
        for (int64_t y = 0; y < 40; ++y) {
            for (int64_t x = 0; x < 100; ++x) {
                colors.insert(
                    colorAt(drawn, layout.left(cell) + x, layout.top(cell) + layout.captionHeight + y));
            }
        }
        const auto grey = [byte](int level) {
            return std::vector<uint16_t>(3, static_cast<uint16_t>(level * byte));
        };
        EXPECT_EQ(colors, (std::set<std::vector<uint16_t>>{grey(112), grey(160)})) << views()[cell];
    }
}

TEST_F(Sheet, ShowsTransparentPartsOverAChequeredGround) {
    PngPicture art = blankPng(PngColor::kRgbAlpha, 8, 60, 40);
    for (std::size_t at = 0; at < art.rows.size(); at += 4) {
        art.rows[at] = 200;
        art.rows[at + 3] = at < art.rows.size() / 2 ? 0 : 128;
    }
    writePng(folder_ / "art.png", art);
    const std::vector<std::string> none = {"--set", "Enable 1=off"};
    const PngPicture drawn = sheet("art.png", none);
    EXPECT_EQ(drawn.color, PngColor::kRgb);
    const SheetLayout layout = layoutOf(views(), art);
    const int64_t left = layout.left(0);
    const int64_t top = layout.top(0) + layout.captionHeight;
    std::set<std::vector<uint16_t>> clear;
    std::set<std::vector<uint16_t>> half;
    for (int64_t x = 0; x < 60; ++x) {
        clear.insert(colorAt(drawn, left + x, top));
        half.insert(colorAt(drawn, left + x, top + 39));
    }
    EXPECT_EQ(clear, (std::set<std::vector<uint16_t>>{{112, 112, 112}, {160, 160, 160}}));
    // 200, 0, 0 with 128 of 255 over either square.
    EXPECT_EQ(half, (std::set<std::vector<uint16_t>>{{156, 56, 56}, {180, 80, 80}}));
}

TEST_F(Sheet, HasANameAboveEveryView) {
    const PngPicture drawn = sheet("in.png");
    const std::vector<std::string> names = views();
    const SheetLayout layout = layoutOf(names, readPngFile(folder_ / "in.png"));
    std::set<std::string> lines;
    for (std::size_t cell = 0; cell < names.size(); ++cell) {
        std::vector<uint8_t> line;
        for (int64_t y = 0; y < layout.lineHeight; ++y) {
            for (int64_t x = 0; x < layout.columnWidth; ++x) {
                line.push_back(
                    static_cast<uint8_t>(colorAt(drawn, layout.left(cell) + x, layout.top(cell) + y)[0]));
            }
        }
        EXPECT_GT(std::count(line.begin(), line.end(), 240), 10) << names[cell];
        lines.insert(textOf(line));
    }
    EXPECT_EQ(lines.size(), names.size());
}

TEST_F(Sheet, HasColoursAndCountsBelowTheNames) {
    writePng(folder_ / "art.png", art(8));
    const std::vector<std::string> settings = {"--set",           "Color 1=#787878", "--set",
                                               "Color 1 Range=0", "--set",           "1 : Color=#888888"};
    const PngPicture drawn = sheet("art.png", settings);
    const SheetLayout layout = layoutOf(views(), art(8));
    const auto patch = [&](std::size_t cell) {
        return colorAt(drawn, layout.left(cell) + 1, layout.top(cell) + layout.lineHeight + 1);
    };
    EXPECT_EQ(patch(2), (std::vector<uint16_t>{0x78, 0x78, 0x78}));
    EXPECT_EQ(patch(3), (std::vector<uint16_t>{0x88, 0x88, 0x88}));
    EXPECT_EQ(patch(0), (std::vector<uint16_t>{96, 96, 96})) << "a view of no stage has no colours";
    EXPECT_EQ(patch(4), (std::vector<uint16_t>{96, 96, 96})) << "nor has one that is off";
    Canvas canvas(200, 20, {96, 96, 96});
    drawText(canvas, 0, 0, "#787878 1200", {240, 240, 240}, 1);
    for (int64_t y = 0; y < 12; ++y) {
        for (int64_t x = 0; x < textSize("#787878 1200", 1).width; ++x) {
            ASSERT_EQ(colorAt(drawn, layout.left(2) + 14 + x, layout.top(2) + layout.lineHeight + y)[0],
                      canvas.picture().samples[static_cast<std::size_t>(y * 200 + x) * 3])
                << x << ", " << y;
        }
    }
}

TEST_F(Sheet, DrawsTheViewsThatAreAskedForInTheirOrder) {
    writePng(folder_ / "art.png", art(8));
    std::vector<std::string> more = kSettings;
    more.insert(more.end(), {"--views", "base, Normal"});
    const PngPicture drawn = sheet("art.png", more);
    const PngPicture base = view("art.png", "Base", kSettings);
    const PngPicture normal = view("art.png", "Normal", kSettings);
    const SheetLayout layout = layoutOf({"Base", "Normal"}, base);
    ASSERT_EQ(drawn.width, layout.width());
    EXPECT_EQ(colorAt(drawn, layout.left(0), layout.top(0) + layout.captionHeight), colorAt(base, 0, 0));
    EXPECT_EQ(colorAt(drawn, layout.left(1) + 99, layout.top(1) + layout.captionHeight + 39),
              colorAt(normal, 99, 39));
    const PngPicture column = sheet("art.png", {"--views", "Base,Normal", "--columns", "1"});
    EXPECT_LT(column.width, drawn.width);
    EXPECT_GT(column.height, drawn.height);
    // The notes and the report go by "Normal" all the same.
    CommandSetting setting;
    setting.folder = folder_.path();
    const std::string report =
        runCommand({"sheet", "art.png", "-o", "x.png", "--views", "Base", "--report"}, setting).out;
    EXPECT_EQ(report.find("not in this view"), std::string::npos) << report;
}

TEST_F(Sheet, ShrinksByAreaMeans) {
    PngPicture lines = blankPng(PngColor::kRgb, 8, 400, 100);
    for (std::size_t at = 0; at < lines.rows.size(); ++at) {
        lines.rows[at] = at / 3 % 2 == 0 ? 40 : 200;
    }
    writePng(folder_ / "lines.png", lines);
    for (const std::vector<std::string>& size :
         {std::vector<std::string>{"--scale", "0.5"}, {"--width", "840", "--columns", "4"}}) {
        const PngPicture drawn = sheet("lines.png", size);
        const SheetLayout layout = sheetLayout(contentOf(views(), lines), {.scale = 0.5});
        ASSERT_EQ(drawn.width, layout.width()) << size[0];
        const int64_t top = layout.top(0) + layout.captionHeight;
        EXPECT_EQ(colorAt(drawn, layout.left(0), top), (std::vector<uint16_t>{120, 120, 120}));
        EXPECT_EQ(colorAt(drawn, layout.left(0) + 199, top + 49), (std::vector<uint16_t>{120, 120, 120}));
    }
}

TEST_F(Sheet, RefusesSizesAndViewsThatThereAreNot) {
    const auto expectRefused = [this](const std::vector<std::string>& options,
                                      const std::vector<std::string>& named) {
        std::vector<std::string> words = {"sheet", "in.png", "-o", "old.png"};
        words.insert(words.end(), options.begin(), options.end());
        expectFailure(words, 2, named);
    };
    expectRefused({"--views", "Bass"}, {"'Bass'", "Normal, Extract, Base"});
    expectRefused({"--views", "Base,"}, {"''"});
    expectRefused({"--views", "2"}, {"'(-'"});
    expectRefused({"--scale", "0"}, {"--scale takes a number above 0, at most 1, not '0'"});
    expectRefused({"--scale", "1.5"}, {"--scale", "'1.5'"});
    expectRefused({"--scale", "half"}, {"--scale", "'half'"});
    expectRefused({"--width", "63"}, {"--width", "64 to 30000"});
    expectRefused({"--width", "30001"}, {"--width", "64 to 30000"});
    expectRefused({"--columns", "0"}, {"--columns", "1 to 64"});
    expectRefused({"--columns", "65"}, {"--columns", "1 to 64"});
    expectRefused({"--scale", "1", "--width", "100"}, {"--scale", "--width", "one of them"});
    expectRefused({"--columns", "7", "--width", "100"}, {"--width: 7 views beside each other need"});
}

TEST_F(Sheet, IsWrittenInTheFormatOfItsName) {
    const PngPicture png = sheet("in.png");
    const CommandOutcome outcome = run({"sheet", "in.png", "-o", "sheet.tga"});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_EQ(run({"compare", "sheet.png", "sheet.tga"}).exitCode, 0);
}

TEST_F(Sheet, NeedsNoViewOfTheRememberedDefaults) {
    const TestFolder config;
    const std::filesystem::path remembered = config / "ORVEL" / "Tavik" / "Kovalune.ini";
    std::filesystem::create_directories(remembered.parent_path());
    const std::string text = "[Version=1.0]\nView=2\n";
    writeBytes(remembered, {text.begin(), text.end()});
    CommandSetting setting;
    setting.folder = folder_.path();
    setting.environment = {{"XDG_CONFIG_HOME", config.path()}};
    EXPECT_TRUE(runCommand({"sheet", "in.png", "-o", "sheet.png"}, setting).ok());
}

TEST_F(Sheet, ThatWouldBeTooLargeIsRefused) {
    writePng(folder_ / "wide.png", randomPng(PngColor::kGrey, 8, 29990, 1, 1));
    expectFailure({"sheet", "wide.png", "-o", "old.png", "--scale", "1"}, 3, {"'wide.png'", "30000"});
    EXPECT_LE(sheet("wide.png").width, 4096U);
    writePng(folder_ / "high.png", randomPng(PngColor::kGrey, 8, 1, 30000, 1));
    expectFailure({"sheet", "high.png", "-o", "old.png"}, 3, {"'high.png'", "30000"});
}

TEST_F(Sheet, FailsAsARenderDoes) {
    expectFailure({"sheet", "missing.png", "-o", "old.png"}, 3, {"'missing.png'"});
    expectFailure({"sheet", "in.png", "-o", "old.jpg"}, 3, {"'old.jpg'"});
    expectFailure({"sheet", "in.png", "-o", "old.png", "--set", "Blur Amount=x"}, 2, {"'Blur Amount'"});
    expectFailure({"sheet", "in.png", "-o", "old.png", "--plugin", KOVALUNE_TEST_EFFECT}, 2, {"'View'"});
    expectFailure({"sheet", "in.png"}, 2, {"--output"});
    expectFailure({"sheet", "-o", "old.png"}, 2, {"INPUT"});
}

} // namespace
} // namespace kovalune::test
