// `kovalune colors --where` and `--json`: where each colour lies, and the pairs.

#include "tests/cli/ErrorCase.h"
#include "tests/pictures/PictureMaker.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace kovalune::test {

using namespace pictures;
using Json = nlohmann::json;

namespace {

class ColorPlaces : public ErrorCase {
protected:
    /// Greys, one letter a colour; '.' is transparent.
    void draw(const std::string& name, const std::vector<std::string>& rows) {
        PngPicture png = blankPng(PngColor::kGreyAlpha, 8, static_cast<uint32_t>(rows[0].size()),
                                  static_cast<uint32_t>(rows.size()));
        png.rows.clear();
        for (const std::string& row : rows) {
            for (const char letter : row) {
                png.rows.push_back(static_cast<uint8_t>(letter));
                png.rows.push_back(letter == '.' ? 0 : 255);
            }
        }
        writePng(folder_ / name, png);
    }

    std::string colors(const std::vector<std::string>& words) const { return printedBy("colors", words); }
};

TEST_F(ColorPlaces, AreBoxPiecesThicknessOutlineAndBorders) {
    draw("a.png", {"AAAB", "AB..", "ABAA"});
    EXPECT_EQ(colors({"a.png", "--where"}),
              " 58.333 %   7  #414141\n"
              "             in 0,0,4,3, 2 pieces, 0.8 thick, outline 18\n"
              "             borders on #424242 5, transparent 3, the picture's edge 10\n"
              " 25.000 %   3  #424242\n"
              "             in 1,0,3,3, 2 pieces, 0.6 thick, outline 10\n"
              "             borders on #414141 5, transparent 2, the picture's edge 3\n"
              " 16.667 %   2  transparent\n");
}

TEST_F(ColorPlaces, OfColoursThatAreNotListedStandAtTheBordersAllTheSame) {
    draw("a.png", {"AAAAA", "BCDEF", "GHIJK", "AAAAA"});
    EXPECT_EQ(colors({"a.png", "--where", "--most", "1"}),
              " 50.000 %  10  #414141\n"
              "             in 0,0,5,4, 2 pieces, 0.8 thick, outline 24\n"
              "             borders on #424242 1, #434343 1, #444444 1, #454545 1, #464646 1, #474747 1, "
              "4 more colours 4, the picture's edge 14\n"
              " 50.000 %  10  in 10 more colours\n");
}

TEST_F(ColorPlaces, EndWithPairsOfLightAndShadow) {
    std::vector<std::string> rows(20, std::string(30, 'z') + std::string(20, 'Z'));
    draw("a.png", rows);
    const std::string text = colors({"a.png", "--where"});
    EXPECT_NE(text.find("Pairs that look like light and shadow:\n"
                        "  #5A5A5A  shadow of     #7A7A7A  border 20, 25.0 % of its outline; hue 0.0 degrees "
                        "apart, 12.6 % darker\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(colors({"a.png"}).find("Pairs"), std::string::npos);
}

TEST_F(ColorPlaces, AsJsonHaveAllOfIt) {
    std::vector<std::string> rows(20, std::string(30, 'z') + std::string(20, 'Z') + "..");
    draw("a.png", rows);
    const Json json = Json::parse(colors({"a.png", "--where", "--json", "--most", "1"}));
    EXPECT_EQ(json.at("input"), "a.png");
    EXPECT_EQ(json.at("pixels"), 1040);
    EXPECT_EQ(json.at("transparent"), 40);
    EXPECT_EQ(json.at("colorCount"), 2);
    ASSERT_EQ(json.at("colors").size(), 1U);
    const Json& color = json.at("colors").at(0);
    EXPECT_EQ(color.at("color"), "#7A7A7A");
    EXPECT_EQ(color.at("pixels"), 600);
    EXPECT_EQ(color.at("box"), (Json{0, 0, 30, 20}));
    EXPECT_EQ(color.at("pieces"), 1);
    EXPECT_EQ(color.at("outline"), 100);
    EXPECT_EQ(color.at("thickness"), 12.0);
    EXPECT_EQ(color.at("toEdge"), 80);
    EXPECT_EQ(color.at("borders"), (Json{{{"color", "#5A5A5A"}, {"length", 20}}}));
    ASSERT_EQ(json.at("pairs").size(), 1U);
    EXPECT_EQ(json.at("pairs").at(0).at("kind"), "shadow");
    EXPECT_EQ(json.at("pairs").at(0).at("second"), "#5A5A5A");
    const Json plain = Json::parse(colors({"a.png", "--json"}));
    EXPECT_EQ(plain.at("colors").size(), 2U);
    EXPECT_FALSE(plain.contains("pairs"));
    EXPECT_FALSE(plain.at("colors").at(0).contains("box"));
}

TEST_F(ColorPlaces, AreNotFollowedForMoreColoursThanDrawingsHave) {
    PngPicture many = blankPng(PngColor::kRgb, 8, 60, 40);
    for (std::size_t i = 0; i < many.rows.size() / 3; ++i) {
        many.rows[i * 3] = static_cast<uint8_t>(i % 256);
        many.rows[i * 3 + 1] = static_cast<uint8_t>(i / 256);
    }
    writePng(folder_ / "many.png", many);
    const std::string text = colors({"many.png", "--where", "--most", "0"});
    EXPECT_NE(text.find("not followed"), std::string::npos);
    EXPECT_NE(text.find("colours not followed"), std::string::npos);
}

} // namespace
} // namespace kovalune::test
