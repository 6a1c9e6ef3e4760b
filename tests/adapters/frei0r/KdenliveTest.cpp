// The description for Kdenlive beside the plug-in that it describes.

#include "tests/adapters/frei0r/TestHost.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

using Attributes = std::map<std::string, std::string>;

Attributes attributesIn(const std::string& text) {
    static const std::regex pattern("([a-z]+)=\"([^\"]*)\"");
    Attributes attributes;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
        attributes[(*match)[1].str()] = (*match)[2].str();
    }
    return attributes;
}

std::vector<Attributes> describedParameters() {
    std::ifstream file(KOVALUNE_KDENLIVE_FILE);
    std::vector<Attributes> parameters;
    for (std::string line; std::getline(file, line);) {
        if (line.find("<parameter ") != std::string::npos) {
            parameters.push_back(attributesIn(line));
        }
    }
    return parameters;
}

std::string colorText(const frei0r::Color& color) {
    const auto level = [](float channel) { return static_cast<unsigned>(std::lround(channel * 255.0F)); };
    char text[32];
    std::snprintf(text, sizeof text, "0x%02x%02x%02xff", level(color.red), level(color.green),
                  level(color.blue));
    return text;
}

TEST(KdenliveDescription, HasTheParametersInTheirOrder) {
    const Ready file;
    const std::vector<Attributes> described = describedParameters();
    ASSERT_EQ(described.size(), 48U);
    for (std::size_t place = 0; place < described.size(); ++place) {
        frei0r::ParamInfo info{};
        file.getParamInfo(&info, static_cast<int>(place));
        EXPECT_EQ(described[place].at("name"), info.name);
    }
}

TEST(KdenliveDescription, HasTheDefaultsAndRealUnits) {
    const Ready file;
    const LoadedFilter filter(file, 8, 8);
    for (const Attributes& parameter : describedParameters()) {
        const std::string name = parameter.at("name");
        const std::string initial = parameter.at("default");
        frei0r::ParamInfo info{};
        file.getParamInfo(&info, placeOf(file, name));
        switch (info.type) {
        case frei0r::kColor:
            EXPECT_EQ(initial, colorText(filter.color(name))) << name;
            break;
        case frei0r::kString:
            EXPECT_EQ(initial, filter.text(name)) << name;
            break;
        default:
            EXPECT_NEAR(std::stod(initial), filter.number(name), 1e-6) << name;
            break;
        }
        if (parameter.at("type") == "animated") {
            EXPECT_EQ(parameter.at("min"), "0") << name;
            EXPECT_EQ(parameter.at("max"), parameter.at("factor")) << name;
            EXPECT_EQ(std::string(info.explanation).rfind("0 to " + parameter.at("max") + ',', 0), 0U)
                << name;
        }
    }
}

/// Every choice of a list is one that the plug-in takes as it stands.
TEST(KdenliveDescription, HasListsThatCanBeChosen) {
    const Ready file;
    LoadedFilter filter(file, 8, 8);
    testing::internal::CaptureStderr();
    int lists = 0;
    for (const Attributes& parameter : describedParameters()) {
        if (parameter.at("type") != "list") {
            continue;
        }
        ++lists;
        std::istringstream choices(parameter.at("paramlist"));
        int number = 0;
        for (std::string choice; std::getline(choices, choice, ';'); ++number) {
            if (parameter.at("name") == "View") {
                filter.set("View", choice);
                EXPECT_EQ(filter.text("View"), choice);
            } else {
                filter.set(parameter.at("name"), std::stod(choice));
                EXPECT_DOUBLE_EQ(filter.number(parameter.at("name")), number / 9.0);
            }
        }
        EXPECT_EQ(number, parameter.at("name") == "View" ? 7 : 10);
    }
    EXPECT_EQ(lists, 6);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace kovalune::test
