// `kovalune sheet`: every view is in it as `kovalune render` draws it, at its place.

#include "cli/files/SheetLayout.h"
#include "pictures/TextDrawing.h"
#include "tests/cli/ErrorCase.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace kovalune::test {

using namespace cli;
using namespace pictures;

namespace {

TEST(SheetLayout, PutsUpToFourInARowWithMarginsAround) {
    const SheetLayout three = sheetLayout(3, 100, 40, 60, 30000);
    EXPECT_EQ(three.width(), 8 + 3 * 108);
    EXPECT_EQ(three.height(), 8 + 14 + 40 + 8);
    EXPECT_EQ(three.left(2), 8 + 2 * 108);
    EXPECT_EQ(three.top(2), 8);
    const SheetLayout seven = sheetLayout(7, 100, 40, 60, 30000);
    EXPECT_EQ(seven.width(), 8 + 4 * 108);
    EXPECT_EQ(seven.height(), 8 + 2 * (14 + 40 + 8));
    EXPECT_EQ(seven.left(5), 8 + 108);
    EXPECT_EQ(seven.top(5), 8 + 62);
}

TEST(SheetLayout, GivesNarrowPicturesTheWidthOfTheText) {
    const SheetLayout narrow = sheetLayout(7, 7680, 4320, 60, 30000);
    EXPECT_EQ(narrow.columns, 3U);
    EXPECT_LE(narrow.width(), 30000);
    EXPECT_EQ(sheetLayout(2, 1, 1, 60, 30000).width(), 8 + 2 * 68);
}

TEST(SheetLayout, GrowsTextAndMarginsWithThePicture) {
    const SheetLayout layout = sheetLayout(1, 1920, 1080, 60, 30000);
    EXPECT_EQ(layout.textScale, 6);
    EXPECT_EQ(layout.margin, 48);
    EXPECT_EQ(layout.lineHeight, 84);
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
        int64_t textWidth = 0;
        for (const std::string& name : labels()) {
            textWidth = std::max(textWidth, textSize(name, 1).width);
        }
        return sheetLayout(names.size(), picture.width, picture.height, textWidth, 30000);
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
                    ASSERT_EQ(colorAt(drawn, layout.left(cell) + x, layout.top(cell) + layout.lineHeight + y),
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
                    colorAt(drawn, layout.left(cell) + x, layout.top(cell) + layout.lineHeight + y));
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
    const int64_t top = layout.top(0) + layout.lineHeight;
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
    expectFailure({"sheet", "wide.png", "-o", "old.png"}, 3, {"'wide.png'", "30000"});
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
