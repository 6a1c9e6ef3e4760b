// `kovalune sheet` over a shot and over passes: a frame a cell, a pass a row, each as `kovalune render` writes it.

#include "cli/files/SheetLayout.h"
#include "pictures/TextDrawing.h"
#include "tests/cli/ErrorCase.h"

#include <fstream>

namespace kovalune::test {

using namespace cli;

namespace {

constexpr uint32_t kWide = 60;
constexpr uint32_t kHigh = 30;

/// Has cel.0001.png to cel.0005.png.
class SheetOfShot : public ErrorCase {
protected:
    SheetOfShot() {
        for (unsigned frame = 1; frame <= 5; ++frame) {
            writePng(folder_ / name("cel", frame), drawing(frame));
        }
        std::ofstream(folder_ / "two.params") << "[Version=2.0]\n"
                                                 "[Pass line]\n"
                                                 "Color 1=#202020\n"
                                                 "Blur Amount@1=2\n"
                                                 "Blur Amount@5=10\n"
                                                 "[Pass skin]\n"
                                                 "Color 1=#C08060\n"
                                                 "Blur Amount=4\n"
                                                 "1 : Enable Process=off\n";
    }

    static std::string name(const std::string& stem, unsigned frame) {
        return stem + ".000" + std::to_string(frame) + ".png";
    }

    /// Chequered in two colours, wider from frame to frame.
    static PngPicture drawing(unsigned frame) {
        PngPicture picture = blankPng(PngColor::kRgb, 8, kWide, kHigh);
        for (uint32_t y = 0; y < kHigh; ++y) {
            for (uint32_t x = 0; x < kWide; ++x) {
                const bool dark = (x / (3 + frame) + y / 5) % 2 == 0;
                const std::size_t at = (std::size_t{y} * kWide + x) * 3;
                picture.rows[at] = dark ? 0x20 : 0xC0;
                picture.rows[at + 1] = dark ? 0x20 : 0x80;
                picture.rows[at + 2] = dark ? 0x20 : 0x60;
            }
        }
        return picture;
    }

    PngPicture made(std::vector<std::string> words, const std::vector<std::string>& more = {}) const {
        words.insert(words.end(), more.begin(), more.end());
        words.insert(words.end(), {"-o", "made.png", "--quiet"});
        const CommandOutcome outcome = runHere(words.front(), {words.begin() + 1, words.end()});
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return readPngFile(folder_ / "made.png");
    }

    /// Without text that is wider than a picture.
    static SheetLayout layoutOf(std::size_t count, std::size_t columns, const std::string& caption,
                                int64_t lines = 1) {
        return sheetLayout({.count = count,
                            .width = kWide,
                            .height = kHigh,
                            .textWidth = pictures::textSize(caption, 1).width,
                            .textLines = lines},
                           {.columns = columns});
    }

    static void expectInCell(const PngPicture& sheet, const SheetLayout& layout, std::size_t cell,
                             const PngPicture& picture) {
        ASSERT_EQ(sheet.width, layout.width());
        ASSERT_EQ(sheet.height, layout.height());
        const auto top = static_cast<std::size_t>(layout.top(cell) + layout.captionHeight);
        const auto left = static_cast<std::size_t>(layout.left(cell));
        for (std::size_t y = 0; y < picture.height; ++y) {
            const auto row =
                sheet.rows.begin() + static_cast<std::ptrdiff_t>(((top + y) * sheet.width + left) * 3);
            const auto of = picture.rows.begin() + static_cast<std::ptrdiff_t>(y * picture.width * 3);
            ASSERT_TRUE(std::equal(of, of + static_cast<std::ptrdiff_t>(picture.width) * 3, row))
                << "cell " << cell << ", row " << y;
        }
    }
};

const std::vector<std::string> kKeyed = {"--set",           "Color 1=#202020", "--set",
                                         "Blur Amount@1=2", "--set",           "Blur Amount@5=12"};

TEST_F(SheetOfShot, HoldsEveryFrameWithItsOwnValues) {
    std::vector<std::string> shot = {"cel.####.png", "-o", "soft.####.png", "--quiet"};
    shot.insert(shot.end(), kKeyed.begin(), kKeyed.end());
    ASSERT_EQ(runHere("render", shot).exitCode, 0);
    for (const std::vector<std::string>& form : {std::vector<std::string>{}, {"--columns", "2"}}) {
        std::vector<std::string> more = kKeyed;
        more.insert(more.end(), form.begin(), form.end());
        const PngPicture sheet = made({"sheet", "cel.####.png"}, more);
        const SheetLayout layout = layoutOf(5, form.empty() ? 3 : 2, "0001");
        for (unsigned frame = 1; frame <= 5; ++frame) {
            expectInCell(sheet, layout, frame - 1, readPngFile(folder_ / name("soft", frame)));
        }
    }
}

TEST_F(SheetOfShot, DrawsOneViewOfTheFramesThatAreAskedFor) {
    std::vector<std::string> more = kKeyed;
    more.insert(more.end(), {"--frames", "4,2", "--view", "Base"});
    const PngPicture sheet = made({"sheet", "cel.####.png"}, more);
    const SheetLayout layout = layoutOf(2, 2, "0001");
    ASSERT_EQ(sheet.width, layout.width());
    // A list of pictures has no numbers, and names instead.
    writePng(folder_ / "...her-with-a-long-name.png", drawing(2));
    const PngPicture named = made({"sheet", name("cel", 2), "...her-with-a-long-name.png"});
    EXPECT_EQ(named.width, layoutOf(2, 2, "...her-with-a-long-name.png").width());
}

TEST_F(SheetOfShot, GivesEachPassARow) {
    const std::vector<std::string> settings = {"--params", "two.params", "--frame", "3"};
    std::vector<std::string> more = settings;
    more.insert(more.end(), {"--views", "Normal,Process 1"});
    const PngPicture sheet = made({"sheet", name("cel", 2)}, more);
    // The colour of "Process 1" is below its name.
    const SheetLayout layout = layoutOf(4, 2, "skin: Process 1 (off)", 2);
    const auto rendered = [&](std::vector<std::string> options) {
        // A frame number is for pictures without one.
        std::filesystem::copy_file(folder_ / name("cel", 2), folder_ / "plain.png",
                                   std::filesystem::copy_options::overwrite_existing);
        options.insert(options.end(), settings.begin(), settings.end());
        return made({"render", "plain.png"}, options);
    };
    expectInCell(sheet, layout, 0, rendered({"--until", "line"}));
    expectInCell(sheet, layout, 2, rendered({}));
    more.insert(more.end(), {"--columns", "1"});
    const PngPicture column = made({"sheet", name("cel", 2)}, more);
    expectInCell(column, layoutOf(4, 1, "skin: Process 1 (off)", 2), 2, rendered({}));
    const CommandOutcome report = runHere("sheet", {name("cel", 2), "-o", "x.png", "--params", "two.params",
                                                    "--frame", "3", "--views", "Base", "--report"});
    EXPECT_NE(report.out.find("Pass line\nStage"), std::string::npos) << report.out;
    EXPECT_NE(report.out.find("Pass skin\nStage"), std::string::npos) << report.out;
}

TEST_F(SheetOfShot, KeepsToTheArea) {
    for (const std::vector<std::string>& input :
         {std::vector<std::string>{name("cel", 2), "--views", "Normal"}, {"cel.####.png", "--frames", "2"}}) {
        std::vector<std::string> words = {"sheet"};
        words.insert(words.end(), input.begin(), input.end());
        std::vector<std::string> more = {"--set", "Color 1=#202020", "--region", "10,0,20,30"};
        const PngPicture sheet = made(words, more);
        const PngPicture frame = made({"render", name("cel", 2)}, more);
        expectInCell(sheet, layoutOf(1, 1, input[1] == "--views" ? "Normal" : "0002"), 0, frame);
    }
}

TEST_F(SheetOfShot, TellsItsNotesAndCountsTogether) {
    const std::vector<std::string> words = {"cel.####.png", "-o", "x.png", "--set", "Color 1=#123456"};
    const auto with = [&words](const std::vector<std::string>& more) {
        std::vector<std::string> all = words;
        all.insert(all.end(), more.begin(), more.end());
        return all;
    };
    const CommandOutcome outcome = runHere("sheet", with({"--report"}));
    EXPECT_TRUE(outcome.exitCode == 0) << outcome.err;
    EXPECT_NE(outcome.notes.find("selects no pixel in 5 of 5 frames (0001-0005)"), std::string::npos)
        << outcome.err;
    EXPECT_NE(outcome.out.find("Selected"), std::string::npos) << outcome.out;
    std::filesystem::remove(folder_ / "x.png");
    const CommandOutcome strict = runHere("sheet", with({"--strict"}));
    EXPECT_EQ(strict.exitCode, 4);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "x.png"));
}

TEST_F(SheetOfShot, RefusesWhatDoesNotGoTogether) {
    const auto expectRefused = [this](const std::vector<std::string>& words, int code,
                                      const std::vector<std::string>& named) {
        std::vector<std::string> all = {"sheet", "-o", "old.png", "--quiet"};
        all.insert(all.end(), words.begin(), words.end());
        expectFailure(all, code, named);
    };
    expectRefused({"cel.####.png", "--views", "Base"}, 2, {"--views: is for one picture"});
    expectRefused({"in.png", "--view", "Base"}, 2, {"--view: is for a shot"});
    expectRefused({"in.png", "--frames", "1"}, 2, {"--frames"});
    expectRefused({"in.png", "--set", "Blur Amount@1=2"}, 2, {"--frame N"});
    expectRefused({"cel.####.png", "--frame", "1"}, 2, {"--frame: is for a picture without a number"});
    expectRefused({"cel.####.png", "--frames", "9"}, 3, {"0009"});
    expectRefused({"cel.####.png", "--view", "Bass"}, 2, {"'Bass'"});
    expectRefused({"none.####.png"}, 3, {"none.####.png"});
    writePng(folder_ / name("cel", 3), randomPng(PngColor::kRgb, 8, 7, 5, 1));
    expectRefused({"cel.####.png"}, 3, {"cel.0003.png", "7 x 5", "60 x 30"});
    std::ofstream(folder_ / name("cel", 4)) << "no picture";
    expectRefused({"cel.####.png", "--frames", "4"}, 3, {"cel.0004.png"});
    expectFailure({"sheet", "cel.####.png", "-o", name("cel", 2), "--quiet"}, 2, {name("cel", 2)});
}

} // namespace
} // namespace kovalune::test
