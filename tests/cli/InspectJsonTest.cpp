// `--json` of pick, compare and info, and what compare makes of a tolerance.

#include "tests/cli/ErrorCase.h"
#include "tests/pictures/PictureMaker.h"

#include <nlohmann/json.hpp>

namespace kovalune::test {

using namespace pictures;
using Json = nlohmann::json;

namespace {

class InspectJson : public ErrorCase {
protected:
    CommandOutcome run(const std::string& command, const std::vector<std::string>& words) const {
        const CommandOutcome outcome = runHere(command, words);
        EXPECT_EQ(outcome.err, "");
        return outcome;
    }
};

TEST_F(InspectJson, OfPickHasEveryPoint) {
    writeRow("a.png", PngColor::kRgbAlpha, 8, 2, {12, 34, 56, 78, 255, 0, 0, 255});
    const Json json = Json::parse(run("pick", {"a.png", "1,0", "0,0", "--json"}).out);
    EXPECT_EQ(json.at("picture").at("width"), 2);
    EXPECT_EQ(json.at("picture").at("alpha"), "straight");
    ASSERT_EQ(json.at("points").size(), 2U);
    const Json& second = json.at("points").at(1);
    EXPECT_EQ(second.at("x"), 0);
    EXPECT_EQ(second.at("file"), (Json{{"red", 12}, {"green", 34}, {"blue", 56}, {"alpha", 78}}));
    EXPECT_EQ(second.at("effect").at("white"), 255);
    EXPECT_EQ(second.at("color"), "#0C2238");
    EXPECT_EQ(second.at("hue"), 210.0);
    EXPECT_EQ(json.at("points").at(0).at("color"), "#FF0000");
}

TEST_F(InspectJson, HasFloatsByTheirDigitsAndWhatIsNoNumberAsText) {
    writeFloats(folder_ / "a.tif", 1, 1, Channels::kRgb, {0.1F, -2.5F, std::bit_cast<float>(0x7fc00000U)});
    const std::string text = run("pick", {"a.tif", "0,0", "--json"}).out;
    EXPECT_NE(text.find("\"red\": 0.1,"), std::string::npos) << text;
    EXPECT_EQ(Json::parse(text).at("points").at(0).at("file").at("blue"), "nan(0x7fc00000)");
}

TEST_F(InspectJson, OfCompareTellsWhatDiffers) {
    writeRow("a.png", PngColor::kGrey, 8, 3, {1, 2, 3});
    writeRow("b.png", PngColor::kGrey, 8, 3, {1, 5, 4});
    const CommandOutcome outcome = run("compare", {"a.png", "b.png", "--json", "--tolerance", "1"});
    EXPECT_EQ(outcome.exitCode, 1);
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(json.at("a").at("file"), "a.png");
    EXPECT_EQ(json.at("same"), false);
    EXPECT_EQ(json.at("tolerance"), 1.0);
    EXPECT_EQ(json.at("pixels"), 3);
    EXPECT_EQ(json.at("different"), 1);
    EXPECT_EQ(json.at("withinTolerance"), 1);
    EXPECT_EQ(json.at("largest").at(0).at("units"), 3.0);
    EXPECT_EQ(json.at("first"), (Json{{"x", 1}, {"y", 0}, {"a", {{"grey", 2}}}, {"b", {{"grey", 5}}}}));
    const Json same = Json::parse(run("compare", {"a.png", "a.png", "--json"}).out);
    EXPECT_EQ(same.at("same"), true);
    EXPECT_FALSE(same.contains("first"));
    EXPECT_EQ(Json::parse(run("compare", {"a.png", "in.png", "--json"}).out).at("reason"),
              "the sizes differ");
}

TEST_F(InspectJson, OfInfoHasEffectAndCommand) {
    const Json json = Json::parse(run("info", {"--json"}).out);
    EXPECT_TRUE(json.at("effect").at("plugin").is_null());
    EXPECT_EQ(json.at("effect").at("depths"), (Json{8, 16, 32}));
    EXPECT_EQ(json.at("effect").at("smartRender"), true);
    EXPECT_EQ(json.at("command").at("version"), KOVALUNE_VERSION);
    EXPECT_FALSE(json.at("command").at("libraries").empty());
    const Json& sets = json.at("command").at("instructionSets");
    EXPECT_NE(std::find(sets.begin(), sets.end(), json.at("command").at("instructionSet")), sets.end());
}

class Tolerance : public InspectJson {};

TEST_F(Tolerance, OfAnyChannelAndAlphaTooCountsWhatIsBeyondIt) {
    writeRow("a.png", PngColor::kRgbAlpha, 8, 2, {10, 20, 30, 40, 0, 0, 0, 255});
    writeRow("b.png", PngColor::kRgbAlpha, 8, 2, {10, 22, 30, 40, 0, 0, 0, 252});
    const auto code = [this](const std::string& tolerance) {
        return run("compare", {"a.png", "b.png", "--tolerance", tolerance}).exitCode;
    };
    EXPECT_EQ(code("0"), 1);
    EXPECT_EQ(code("2.99"), 1);
    EXPECT_EQ(code("3"), 0);
    EXPECT_EQ(code("255"), 0);
    const CommandOutcome within = run("compare", {"a.png", "b.png", "--tolerance", "3"});
    EXPECT_NE(within.out.find("\nsame within 3 of 255: 2 pixels differ by no more\n"
                              "Largest difference, of 255 (of 1): red 0 (0), green 2"),
              std::string::npos)
        << within.out;
    const CommandOutcome beyond = run("compare", {"a.png", "b.png", "--tolerance", "2"});
    EXPECT_NE(beyond.out.find("\ndifferent: 1 of 2 pixels (50.000 %) by more than 2 of 255\n"),
              std::string::npos)
        << beyond.out;
    EXPECT_NE(beyond.out.find("\nFirst at 1,0\n"), std::string::npos);
}

TEST_F(Tolerance, IsOf255InEveryDepth) {
    writeRow("8.png", PngColor::kGrey, 8, 1, {100});
    writeRow("16.png", PngColor::kGrey, 16, 1, {100, 228}); // 25828, half a step more than 25700
    EXPECT_EQ(run("compare", {"8.png", "16.png", "--tolerance", "0.5"}).exitCode, 0);
    EXPECT_EQ(run("compare", {"8.png", "16.png", "--tolerance", "0.49"}).exitCode, 1);
}

TEST_F(Tolerance, DrawsWhatIsBeyondItAlone) {
    writeRow("a.png", PngColor::kRgb, 8, 2, {200, 101, 3, 10, 20, 30});
    writeRow("b.png", PngColor::kRgb, 8, 2, {202, 101, 3, 10, 20, 40});
    EXPECT_EQ(run("compare", {"a.png", "b.png", "--tolerance", "5", "--diff", "d.png"}).exitCode, 1);
    EXPECT_EQ(readPngFile(folder_ / "d.png").rows, (std::vector<uint8_t>{50, 25, 0, 255, 64, 224}));
}

TEST_F(Tolerance, IsANumberOfStepsOf255) {
    for (const char* const wrong : {"-1", "256", "some", "", "nan", "inf", "1,5", "0x1"}) {
        expectFailure({"compare", "in.png", "in.png", "--tolerance", wrong}, 2,
                      {"--tolerance takes a number, 0 to 255, not '" + std::string(wrong) + "'"});
    }
}

} // namespace
} // namespace kovalune::test
