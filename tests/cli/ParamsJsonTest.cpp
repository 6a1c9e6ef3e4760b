// The parameters as JSON, read back as a program would.

#include "tests/cli/ErrorCase.h"

#include <nlohmann/json.hpp>

namespace kovalune::test {
namespace {

using nlohmann::json;

json parametersOf(std::vector<std::string> words, const CommandSetting& setting = {}) {
    words.insert(words.begin(), {"params", "--json"});
    const CommandOutcome outcome = runCommand(words, setting);
    EXPECT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_TRUE(outcome.out.ends_with("}\n"));
    return json::parse(outcome.out).at("parameters");
}

json labelled(const json& parameters, const std::string& label) {
    for (const json& parameter : parameters) {
        if (parameter.at("label") == label) {
            return parameter;
        }
    }
    ADD_FAILURE() << "no parameter " << label;
    return {};
}

TEST(ParamsJson, HasEveryParameterInOrder) {
    const json parameters = parametersOf({});
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        EXPECT_EQ(parameters[i].at("index"), i + 1);
    }
    const json view = parameters.at(0);
    EXPECT_EQ(view.at("label"), "View");
    EXPECT_EQ(view.at("kind"), "popup");
    EXPECT_EQ(view.at("default"), 1);
    EXPECT_EQ(view.at("choices").at(0), (json{{"value", 1}, {"label", "Normal"}, {"selectable", true}}));
    EXPECT_EQ(view.at("choices").at(1).at("selectable"), false);
    const json amount = labelled(parameters, "Blur Amount");
    EXPECT_EQ(amount.at("kind"), "number");
    EXPECT_EQ(amount.at("default"), 10.0);
    EXPECT_EQ(amount.at("min"), 0.0);
    EXPECT_EQ(amount.at("max"), 1000.0);
    const json base = labelled(parameters, "Base");
    EXPECT_EQ(base.at("kind"), "group");
    EXPECT_EQ(amount.at("groups"), json::array({base.at("index")}));
    EXPECT_EQ(labelled(parameters, "Enable 2").at("default"), false);
    EXPECT_EQ(labelled(parameters, "Color 1").at("default"), "#03B4F5");
}

TEST(ParamsJson, HasTheLabelsOfTheTable) {
    const std::string table = runCommand({"params"}).out;
    for (const json& parameter : parametersOf({})) {
        if (parameter.at("kind") != "group end") {
            EXPECT_NE(table.find(parameter.at("label").get<std::string>()), std::string::npos);
        }
    }
}

TEST(ParamsJson, HasAHintInTwoLanguagesForEachControlAndGroup) {
    for (const json& parameter : parametersOf({})) {
        const bool named = parameter.at("kind") != "group end";
        ASSERT_EQ(parameter.contains("hint"), named) << parameter;
        if (named) {
            EXPECT_TRUE(parameter.at("hint").at("en").get<std::string>().ends_with('.')) << parameter;
            EXPECT_TRUE(parameter.at("hint").at("ja").get<std::string>().ends_with("。")) << parameter;
        }
    }
    EXPECT_EQ(labelled(parametersOf({}), "Enable 3").at("hint").at("en"),
              "Makes this colour a part of the Base region.");
}

class KindsInJson : public testing::Test {
protected:
    const json parameters_ = parametersOf({"--plugin", KOVALUNE_JSON_EFFECT});
};

TEST_F(KindsInJson, NumbersAreNumbersWithTheDigitsThatTheEffectGave) {
    EXPECT_EQ(parameters_.at(0), json::parse(R"({"index": 1, "id": 7, "label": "Whole", "kind": "integer",
        "type": 1, "groups": [], "default": 3, "min": -2147483647, "max": 2147483647, "sliderMin": -5,
        "sliderMax": 5})"));
    const json number = parameters_.at(2);
    EXPECT_EQ(number.at("id"), -1);
    EXPECT_EQ(number.at("default"), 0.3);
    EXPECT_EQ(number.at("min"), 0.1);
    EXPECT_EQ(number.at("max"), 1000.0);
    EXPECT_EQ(number.at("sliderMin"), 0.25);
    EXPECT_EQ(number.at("sliderMax"), 99.9);
    EXPECT_EQ(number.at("precision"), 2);
}

TEST_F(KindsInJson, GroupsNest) {
    const std::vector<json> groups = {{}, {}, {2}, {2}, {2, 4}, {2}, {2}, {}, {}, {}};
    ASSERT_EQ(parameters_.size(), groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        EXPECT_EQ(parameters_[i].at("groups"), groups[i].is_null() ? json::array() : groups[i]) << i;
    }
    EXPECT_EQ(parameters_.at(5).at("kind"), "group end");
}

TEST_F(KindsInJson, BytesThatAreNoUtf8AreReplaced) {
    EXPECT_EQ(parameters_.at(3).at("label"), "\xef\xbf\xbdJ\xef\xbf\xbd\xef\xbf\xbd");
    EXPECT_EQ(parameters_.at(6).at("label"), "\xe8\x89\xb2");
    const json choices = parameters_.at(4).at("choices");
    ASSERT_EQ(choices.size(), 4U);
    EXPECT_EQ(choices.at(2).at("label"), "\xef\xbf\xbdJ\xef\xbf\xbd");
    EXPECT_EQ(choices.at(3).at("label"), "\"Quoted\"\n");
}

TEST_F(KindsInJson, ColoursHaveTheirAlpha) {
    EXPECT_EQ(parameters_.at(6).at("kind"), "color");
    EXPECT_EQ(parameters_.at(6).at("default"), "#0AABFF");
    EXPECT_EQ(parameters_.at(6).at("defaultAlpha"), 128);
}

TEST_F(KindsInJson, WhatHasNoValueHasNoDefault) {
    EXPECT_EQ(parameters_.at(8).at("kind"), "other");
    for (const std::size_t place : {1U, 3U, 5U, 8U}) {
        EXPECT_FALSE(parameters_.at(place).contains("default")) << place;
    }
}

TEST(ParamsFactory, HidesTheRememberedDefaults) {
    const TestFolder config;
    const std::filesystem::path file = config / "ORVEL" / "Tavik" / "Kovalune.ini";
    std::filesystem::create_directories(file.parent_path());
    const std::string text = "[Version=1.0]\r\nBlur Amount=2.5\r\n";
    writeBytes(file, {text.begin(), text.end()});
    CommandSetting setting;
    setting.environment = {{"XDG_CONFIG_HOME", config.path()}};
    EXPECT_EQ(labelled(parametersOf({}, setting), "Blur Amount").at("default"), 2.5);
    EXPECT_EQ(labelled(parametersOf({"--factory"}, setting), "Blur Amount").at("default"), 10.0);
    EXPECT_EQ(runCommand({"params", "--factory"}, setting).out, runCommand({"params"}).out);
}

} // namespace
} // namespace kovalune::test
