// How pairs are dealt out to passes and stages, and what the settings' text says of them.

#include "render/suggest/SuggestedPasses.h"

#include "render/OpenEffect.h"
#include "render/SettingsText.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kovalune::test {

using namespace pictures;
using namespace suggest;

namespace {

/// Colours 0, 1, 2, ... from the larger to the smaller ones, each 20 pixels thick, and the pairs among them.
class Drawing {
public:
    explicit Drawing(std::size_t colors) : regions_(colors) {
        for (std::size_t i = 0; i < colors; ++i) {
            regions_[i].color = {{0, 0, static_cast<uint32_t>(i)}, 10000 - 10 * i};
            regions_[i].outline = 1000 - i;
        }
    }

    Drawing& pair(std::size_t neighbour, std::size_t second, uint64_t border = 100) {
        pairs_.push_back(
            {.neighbour = neighbour, .second = second, .border = border, .lightnessApart = -10.0});
        return touch(neighbour, second, border);
    }

    Drawing& touch(std::size_t a, std::size_t b, uint64_t border = 1) {
        regions_[a].borders.push_back({b, border});
        regions_[b].borders.push_back({a, border});
        return *this;
    }

    std::vector<SuggestedPass> passes() const { return suggestedPasses(regions_, pairs_); }
    std::string text() const { return suggestedText(passes(), regions_, {"drawing.png"}); }

    std::vector<ColorRegion> regions_;
    std::vector<ColorPair> pairs_;
};

/// "0 2 | 1 3+" is a pass with 0 and 2 in Base, and 1 and 3 in stages, the last with "Keep Process".
std::string textOf(const std::vector<SuggestedPass>& passes) {
    std::string text;
    for (const SuggestedPass& pass : passes) {
        for (const std::size_t color : pass.base) {
            text += std::to_string(color) + ' ';
        }
        text += '|';
        for (const SuggestedStage& stage : pass.stages) {
            text += ' ' + std::to_string(stage.second) + (stage.keepProcess ? "+" : "");
        }
        text += '\n';
    }
    return text;
}

TEST(SuggestedPasses, PairsOfTheirOwnTakeAStageEach) {
    EXPECT_EQ(textOf(Drawing(2).pair(0, 1).passes()), "0 | 1\n");
    EXPECT_EQ(
        textOf(Drawing(12).pair(0, 6).pair(1, 7).pair(2, 8).pair(3, 9).pair(4, 10).pair(5, 11).passes()),
        "0 1 2 3 | 6 7 8 9\n4 5 | 10 11\n");
    EXPECT_EQ(textOf(Drawing(3).passes()), "");
}

TEST(SuggestedPasses, ShadowAndHighlightOfOneColourStayTogether) {
    EXPECT_EQ(textOf(Drawing(8)
                         .pair(0, 4)
                         .pair(1, 5)
                         .pair(2, 6)
                         .pair(3, 7)
                         .pair(3, 6) // 2, 3, 6 and 7 hang together
                         .passes()),
              "0 1 2 3 | 4 5 6 7\n");
    EXPECT_EQ(textOf(Drawing(9).pair(0, 4).pair(1, 5).pair(2, 6).pair(3, 7).pair(3, 8).passes()),
              "0 1 2 | 4 5 6\n3 | 7 8\n");
}

TEST(SuggestedPasses, AShadowInAShadowFollowsItAndKeepsToIt) {
    EXPECT_EQ(textOf(Drawing(3).pair(0, 1).pair(1, 2).passes()), "0 | 1 2+\n");
    EXPECT_EQ(textOf(Drawing(3).pair(0, 1).pair(1, 2).touch(0, 2).passes()), "0 | 1 2\n");
    // 1 and 2 lie in 0, 3 lies in 1.
    EXPECT_EQ(textOf(Drawing(4).pair(0, 1).pair(0, 2).pair(1, 3).passes()), "0 | 1 3+ 2\n");
}

TEST(SuggestedPasses, MoreThanAPassHoldsAreSplit) {
    EXPECT_EQ(textOf(Drawing(7).pair(0, 1).pair(0, 2).pair(0, 3).pair(0, 4).pair(0, 5).pair(0, 6).passes()),
              "0 | 1 2 3 4\n0 | 5 6\n");
    // A chain that goes on in the second pass has its middle in Base there.
    EXPECT_EQ(textOf(Drawing(6).pair(0, 1).pair(1, 2).pair(2, 3).pair(3, 4).pair(4, 5).passes()),
              "0 | 1 2+ 3+ 4+\n4 | 5\n");
    // One second with more neighbours than Base has colours, the longest borders first.
    EXPECT_EQ(
        textOf(Drawing(6).pair(0, 5, 1).pair(1, 5, 9).pair(2, 5, 8).pair(3, 5, 7).pair(4, 5, 6).passes()),
        "1 2 3 4 | 5\n0 | 5\n");
}

TEST(SuggestedPasses, BlurHalfOfTheThicknessWithinLimits) {
    Drawing drawing(3);
    drawing.pair(0, 1).pair(0, 2);
    const auto blurOf = [&drawing](std::size_t pixels, uint64_t outline) {
        drawing.regions_[1].color.pixels = pixels;
        drawing.regions_[1].outline = outline;
        return drawing.passes().at(0).stages.at(0).boundaryBlur;
    };
    EXPECT_EQ(blurOf(1000, 100), 10.0);
    EXPECT_EQ(blurOf(1234, 100), 12.3);
    EXPECT_EQ(blurOf(400, 100), 5.0);
    EXPECT_EQ(blurOf(90000, 100), 80.0);
}

TEST(SuggestedText, IsAFileOfSettingsThatTheEffectTakes) {
    const std::string text = Drawing(4).pair(0, 1).pair(1, 2).pair(0, 3).text();
    render::OpenEffect effect(1, render::Defaults::kFactory);
    render::applyParamsText(effect.session(), text, "suggested");
    const std::string all = render::paramsFileText(effect.session());
    for (const char* const line :
         {"Blur Amount=0\n", "Enable 1=on\n", "Color 1=#000000\n", "Enable 2=off\n", "1 : Color=#000001\n",
          "1 : Boundary Blur=10\n", "2 : Enable Process=on\n", "2 : Color=#000002\n", "2 : Keep Process=on\n",
          "3 : Keep Process=off\n", "4 : Enable Process=off\n"}) {
        EXPECT_NE(all.find(line), std::string::npos) << line;
    }
}

TEST(SuggestedText, TellsTheFiguresOfEveryLine) {
    const std::string text = Drawing(3).pair(0, 1, 250).pair(0, 2).text();
    EXPECT_EQ(text.rfind("[Version=1.0]\n; Suggested for drawing.png;", 0), 0U) << text;
    EXPECT_NE(text.find("; #000001: 9990 pixels, 20.0 pixels thick; hue 240.0 degrees, lightness 0.2 %, "
                        "saturation 100.0 %\n; shadow of #000000: common border of 250 pixels, 0.0 % of its "
                        "outline; hue 0.0 degrees apart, 10.0 % darker\n"),
              std::string::npos)
        << text;
    // A setting stands right after a remark or after another setting of the same colour.
    EXPECT_EQ(text.find("\n\n;") == std::string::npos, false);
    EXPECT_EQ(text.find("\n\n1"), std::string::npos);
}

TEST(SuggestedText, HasSectionsForSeveralPassesAlone) {
    Drawing drawing(10);
    for (std::size_t i = 0; i < 5; ++i) {
        drawing.pair(i, 5 + i);
    }
    const std::string text = drawing.text();
    EXPECT_EQ(text.rfind("[Version=2.0]\n", 0), 0U);
    const std::size_t first = text.find("\n[Pass 1]\n");
    const std::size_t second = text.find("\n[Pass 2]\n");
    EXPECT_LT(text.find("\nBlur Amount=0\n"), first);
    EXPECT_LT(first, second);
    EXPECT_EQ(text.find("[Pass", second + 2), std::string::npos);
    EXPECT_GT(text.find("1 : Color=#000009"), second);
    EXPECT_EQ(Drawing(2).pair(0, 1).text().find("[Pass"), std::string::npos);
}

} // namespace
} // namespace kovalune::test
