// The commands that look at pictures, over shots: colors, suggest and compare.

#include "tests/cli/ErrorCase.h"

#include <nlohmann/json.hpp>

namespace kovalune::test {

using Json = nlohmann::json;

namespace {

/// Has shot.0001.png to shot.0003.png, 70 by 40: a light of 30 wide with a shadow beside it, and a third colour.
class ShotLooks : public ErrorCase {
protected:
    ShotLooks() {
        for (int frame = 1; frame <= 3; ++frame) {
            write("shot.000" + std::to_string(frame) + ".png", frame == 3 ? 30 : 0, 8);
        }
    }

    /// The third colour is blue below the shadow; `green` is of another one.
    void write(const std::string& name, int green, int depth) const {
        PngPicture png = blankPng(PngColor::kRgb, depth, 70, 40);
        const auto bytes = static_cast<std::size_t>(depth) / 8;
        for (std::size_t at = 0; at < png.rows.size(); ++at) {
            const std::size_t pixel = at / bytes / 3;
            const std::size_t channel = at / bytes % 3;
            const std::array<int, 3> rgb = pixel % 70 < 40   ? std::array{200, 100, 100}
                                           : pixel / 70 < 20 ? std::array{160, 60, 60}
                                                             : std::array{20, green, 220};
            png.rows[at] = static_cast<uint8_t>(rgb[channel]);
        }
        writePng(folder_ / name, png);
    }

    CommandOutcome run(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }
};

TEST_F(ShotLooks, ColorsAreSummedAndTellTheirFrames) {
    const CommandOutcome outcome = run({"colors", "shot.####.png", "--where"});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find("Pairs")),
              " 57.143 %  4800  #C86464\n"
              "             in 0,0,40,40, 1 piece, 20.0 thick, outline 480\n"
              "             borders on #A03C3C 60, #1400DC 40, #141EDC 20, the picture's edge 360\n"
              "             frames 0001-0003\n"
              " 21.429 %  1800  #A03C3C\n"
              "             in 40,0,30,20, 1 piece, 12.0 thick, outline 300\n"
              "             borders on #C86464 60, #1400DC 60, #141EDC 30, the picture's edge 150\n"
              "             frames 0001-0003\n"
              " 14.286 %  1200  #1400DC\n"
              "             in 40,20,30,20, 1 piece, 12.0 thick, outline 200\n"
              "             borders on #A03C3C 60, #C86464 40, the picture's edge 100\n"
              "             frames 0001-0002\n"
              "  7.143 %   600  #141EDC\n"
              "             in 40,20,30,20, 1 piece, 12.0 thick, outline 100\n"
              "             borders on #A03C3C 30, #C86464 20, the picture's edge 50\n"
              "             frames 0003\n");
    const Json document = Json::parse(run({"colors", "shot.%04d.png", "--where", "--json"}).out);
    EXPECT_EQ(document.at("frames"), 3);
    EXPECT_EQ(document.at("input"), "shot.####.png");
    EXPECT_EQ(document.at("colors").at(2).at("frames"), (Json{{1, 2}}));
}

TEST_F(ShotLooks, TakeFoldersListsAndFrames) {
    const std::string first = run({"colors", "shot.0001.png"}).out;
    EXPECT_EQ(run({"colors", "shot.####.png", "--frames", "1"}).out, first);
    const std::string all = run({"colors", "shot.####.png"}).out;
    EXPECT_EQ(run({"colors", "shot.0001.png", "shot.0002.png", "shot.0003.png"}).out, all);
    std::filesystem::create_directory(folder_ / "in");
    std::filesystem::copy_file(folder_ / "shot.0001.png", folder_ / "in" / "a.0001.png");
    EXPECT_EQ(run({"colors", "in"}).out, first);
    const CommandOutcome skipped = run({"colors", "shot.####.png", "--frames", "1,9", "--missing", "skip"});
    EXPECT_EQ(skipped.exitCode, 0);
    EXPECT_EQ(skipped.out, first);
    const CommandOutcome held =
        run({"colors", "shot.####.png", "--frames", "2,9", "--missing", "hold", "--where"});
    EXPECT_NE(held.out.find("frames 0002,0009"), std::string::npos) << held.out << held.err;
}

TEST_F(ShotLooks, SuggestSumsFiguresOverTheFrames) {
    const CommandOutcome outcome = run({"suggest", "shot.####.png", "-o", "shot.params"});
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_EQ(outcome.out, "#A03C3C  shadow of     #C86464  Process 1, Boundary Blur 6\n");
    const std::vector<uint8_t> bytes = bytesOf(folder_ / "shot.params");
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_NE(text.find("Suggested for shot.####.png; figures are of 3 frames together"), std::string::npos);
    EXPECT_NE(text.find("; #C86464: 4800 pixels, 20.0 pixels thick"), std::string::npos) << text;
}

TEST_F(ShotLooks, CompareTellsFramesThatDifferAndThoseOfOneSide) {
    std::filesystem::create_directory(folder_ / "b");
    for (const char* const name : {"shot.0001.png", "shot.0003.png"}) {
        std::filesystem::copy_file(folder_ / name, folder_ / "b" / name);
    }
    write("b/shot.0002.png", 9, 8);
    const CommandOutcome outcome = run({"compare", "shot.####.png", "b"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "A: shot.####.png: 3 frames\n"
                           "B: b/shot.####.png: 3 frames\n"
                           "0002: different: 600 of 2800 pixels (21.429 %), by 9 of 255 at most\n"
                           "1 of 3 frames differ\n");
    EXPECT_EQ(run({"compare", "shot.####.png", "b", "--frames", "1,3"}).exitCode, 0);
    const CommandOutcome near = run({"compare", "shot.####.png", "b", "--tolerance", "9"});
    EXPECT_EQ(near.exitCode, 0);
    EXPECT_NE(near.out.find("\nsame within 9 of 255\n"), std::string::npos) << near.out;
    std::filesystem::remove(folder_ / "b/shot.0003.png");
    write("b/shot.0004.png", 0, 8);
    const CommandOutcome lacks = run({"compare", "shot.####.png", "b/shot.####.png", "--tolerance", "9"});
    EXPECT_EQ(lacks.exitCode, 1);
    EXPECT_NE(lacks.out.find("only in A: 0003\nonly in B: 0004\n2 of 4 frames differ\n"), std::string::npos)
        << lacks.out;
    const Json document = Json::parse(run({"compare", "shot.####.png", "b", "--json"}).out);
    EXPECT_EQ(document.at("same"), false);
    EXPECT_EQ(document.at("onlyInA"), (Json{3}));
    EXPECT_EQ(document.at("frames").at(1).at("largestOf255"), 9.0);
}

TEST_F(ShotLooks, RefuseWhatDoesNotGoTogether) {
    expectFailure({"colors", "none.####.png"}, 3, {"none.####.png"});
    expectFailure({"colors", "shot.####.png", "--frames", "1-9"}, 3, {"0004"});
    expectFailure({"colors", "shot.####.png", "--frames", "8,9", "--missing", "skip"}, 3, {"--frames"});
    expectFailure({"colors", "in.png", "--frames", "1"}, 2, {"--frames"});
    expectFailure({"colors", "in.png", "--frames", "x"}, 2, {"'x'"});
    expectFailure({"colors", "in.png", "--missing", "maybe"}, 2, {"--missing"});
    write("shot.0002.png", 0, 16);
    expectFailure({"colors", "shot.####.png"}, 3, {"'shot.0002.png' (16 bits)", "'shot.0001.png' (8 bits)"});
    expectFailure({"colors", "shot.####.png", "-o", "shot.0003.png"}, 2, {"shot.0003.png"});
    expectFailure({"suggest", "none.####.png", "-o", "new.params"}, 3, {"none.####.png"});
    expectFailure({"compare", "shot.####.png", "in.png"}, 2, {"'shot.####.png' is a shot", "'in.png'"});
    expectFailure({"compare", "shot.####.png", "shot.####.png", "--diff", "d.png"}, 2, {"--diff"});
    expectFailure({"compare", "shot.####.png", "shot.####.png", "--frames", "7"}, 3, {"0007"});
    expectFailure({"compare", "in.png", "in.png", "--frames", "7"}, 2, {"--frames"});
}

} // namespace
} // namespace kovalune::test
