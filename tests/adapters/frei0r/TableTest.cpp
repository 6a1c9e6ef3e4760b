// The parameters as hosts and projects know them, by place and by name: a line that changes here breaks them.

#include "tests/adapters/frei0r/TestHost.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

struct Expected {
    const char* name;
    frei0r::ParamType type;
};

const std::vector<Expected> kTable = {
    {"Settings File", frei0r::kString},
    {"View", frei0r::kString},
    {"Blur Amount", frei0r::kDouble},
    {"Blur Repeat Num", frei0r::kDouble},
    {"Keep Division", frei0r::kBool},
    {"Enable 1", frei0r::kBool},
    {"Color 1", frei0r::kColor},
    {"Color 1 Range", frei0r::kDouble},
    {"Enable 2", frei0r::kBool},
    {"Color 2", frei0r::kColor},
    {"Color 2 Range", frei0r::kDouble},
    {"Enable 3", frei0r::kBool},
    {"Color 3", frei0r::kColor},
    {"Color 3 Range", frei0r::kDouble},
    {"Enable 4", frei0r::kBool},
    {"Color 4", frei0r::kColor},
    {"Color 4 Range", frei0r::kDouble},
    {"1 : Enable Process", frei0r::kBool},
    {"1 : Color", frei0r::kColor},
    {"1 : Color Range", frei0r::kDouble},
    {"1 : Boundary Blur", frei0r::kDouble},
    {"1 : Blur Repeat Num", frei0r::kDouble},
    {"1 : Boundary Bias", frei0r::kDouble},
    {"1 : Keep Division", frei0r::kBool},
    {"2 : Enable Process", frei0r::kBool},
    {"2 : Color", frei0r::kColor},
    {"2 : Color Range", frei0r::kDouble},
    {"2 : Boundary Blur", frei0r::kDouble},
    {"2 : Blur Repeat Num", frei0r::kDouble},
    {"2 : Boundary Bias", frei0r::kDouble},
    {"2 : Keep Division", frei0r::kBool},
    {"2 : Keep Process", frei0r::kBool},
    {"3 : Enable Process", frei0r::kBool},
    {"3 : Color", frei0r::kColor},
    {"3 : Color Range", frei0r::kDouble},
    {"3 : Boundary Blur", frei0r::kDouble},
    {"3 : Blur Repeat Num", frei0r::kDouble},
    {"3 : Boundary Bias", frei0r::kDouble},
    {"3 : Keep Division", frei0r::kBool},
    {"3 : Keep Process", frei0r::kBool},
    {"4 : Enable Process", frei0r::kBool},
    {"4 : Color", frei0r::kColor},
    {"4 : Color Range", frei0r::kDouble},
    {"4 : Boundary Blur", frei0r::kDouble},
    {"4 : Blur Repeat Num", frei0r::kDouble},
    {"4 : Boundary Bias", frei0r::kDouble},
    {"4 : Keep Division", frei0r::kBool},
    {"4 : Keep Process", frei0r::kBool},
};

frei0r::ParamInfo infoAt(const LoadedFile& file, int place) {
    frei0r::ParamInfo info{};
    file.getParamInfo(&info, place);
    return info;
}

TEST(Frei0rTable, KeepsNamesTypesAndOrder) {
    const Ready file;
    frei0r::PluginInfo plugin{};
    file.getPluginInfo(&plugin);
    ASSERT_EQ(static_cast<std::size_t>(plugin.paramCount), kTable.size());
    for (std::size_t place = 0; place < kTable.size(); ++place) {
        const frei0r::ParamInfo info = infoAt(file, static_cast<int>(place));
        EXPECT_STREQ(info.name, kTable[place].name);
        EXPECT_EQ(info.type, kTable[place].type) << info.name;
    }
}

TEST(Frei0rTable, SaysTheRealRanges) {
    const Ready file;
    const auto says = [&file](const char* name, const std::string& text) {
        const std::string explanation = infoAt(file, placeOf(file, name)).explanation;
        EXPECT_NE(explanation.find(text), std::string::npos) << name << ": " << explanation;
    };
    says("Settings File", "Path of a settings file");
    says("View", "Normal, Extract, Base, Process 1, Process 2, Process 3, Process 4; or 1, 3, 4, 5, 6, 7, 8");
    says("Blur Amount", "0 to 1000, given as 0 to 1. How far colour travels inside the region");
    says("Blur Repeat Num", "1 to 10, given as 0 to 1");
    says("Color 1 Range", "0 to 100, given as 0 to 1");
    says("Enable 2", "Makes this colour a part of the Base region.");
    says("3 : Boundary Bias", "0 to 100, given as 0 to 1");
}

TEST(Frei0rTable, ExplainsEverything) {
    const Ready file;
    for (int place = 0; place < 48; ++place) {
        const std::string explanation = infoAt(file, place).explanation;
        EXPECT_TRUE(explanation.ends_with('.')) << infoAt(file, place).name << ": " << explanation;
    }
}

TEST(Frei0rTable, HasNoMoreThanItSays) {
    const Ready file;
    for (const int place : {-1, 48, 1 << 30}) {
        EXPECT_STREQ(infoAt(file, place).name, "") << place;
    }
    file.getParamInfo(nullptr, 0);
}

TEST(Frei0rTable, StartsFromTheFactorysValues) {
    const Ready file;
    const LoadedFilter filter(file, 8, 8);
    EXPECT_EQ(filter.text("Settings File"), "");
    EXPECT_EQ(filter.text("View"), "Normal");
    EXPECT_DOUBLE_EQ(filter.number("Blur Amount"), 0.01);
    EXPECT_DOUBLE_EQ(filter.number("Blur Repeat Num"), 4.0 / 9.0);
    EXPECT_EQ(filter.number("Keep Division"), 1.0);
    EXPECT_EQ(filter.number("Enable 1"), 1.0);
    EXPECT_EQ(filter.number("Enable 2"), 0.0);
    EXPECT_EQ(filter.number("1 : Enable Process"), 1.0);
    EXPECT_EQ(filter.number("4 : Enable Process"), 0.0);
    const frei0r::Color color = filter.color("Color 1");
    EXPECT_EQ(color.red, 3 / 255.0F);
    EXPECT_EQ(color.green, 180 / 255.0F);
    EXPECT_EQ(color.blue, 245 / 255.0F);
}

} // namespace
} // namespace kovalune::test
