// The template for farms by the Open Job Description, expanded by its rules and run with the command.

#include "tests/farm/JobTemplate.h"
#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace kovalune::test {

namespace {

nlohmann::json ownTemplate() {
    return nlohmann::json::parse(std::ifstream(KOVALUNE_JOB_TEMPLATE));
}

class JobTemplate : public testing::Test {
protected:
    JobTemplate() {
        std::filesystem::create_directory(folder_ / "the drawings");
        std::filesystem::create_directory(folder_ / "soft");
        std::ofstream(folder_ / "my.params") << "Enable 1=off\n1 : Enable Process=off\n";
        for (int frame = 1; frame <= 5; ++frame) {
            writePng(folder_ / "the drawings" / ("cel.000" + std::to_string(frame) + ".png"),
                     randomPng(PngColor::kRgb, 8, 9, 7, static_cast<uint32_t>(frame)));
        }
    }

    const TestFolder folder_;
    std::map<std::string, std::string> values_ = {{"InputFolder", folder_ / "the drawings"},
                                                  {"OutputFolder", folder_ / "soft"},
                                                  {"Settings", folder_ / "my.params"},
                                                  {"Frames", "1-5"},
                                                  {"Parts", "3"},
                                                  {"Command", KOVALUNE_COMMAND}};
};

CommandOutcome runTask(const TemplateTask& task) {
    CommandSetting setting;
    setting.program = task.words[0];
    return runCommand({task.words.begin() + 1, task.words.end()}, setting);
}

TEST_F(JobTemplate, RendersAShotInPartsAndChecksIt) {
    const std::vector<TemplateTask> tasks = expandedTemplate(ownTemplate(), values_);
    ASSERT_EQ(tasks.size(), 4U);
    for (const TemplateTask& task : tasks) {
        const CommandOutcome outcome = runTask(task);
        EXPECT_EQ(outcome.exitCode, 0) << task.step << ": " << outcome.err;
    }
    EXPECT_EQ(tasks.back().step, "Check");
    for (int frame = 1; frame <= 5; ++frame) {
        const std::string number = "000" + std::to_string(frame) + ".png";
        EXPECT_TRUE(std::filesystem::exists(folder_ / "soft" / ("soft." + number)));
    }
    std::filesystem::remove(folder_ / "soft/soft.0004.png");
    const CommandOutcome outcome = runTask(tasks.back());
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "0004\n");
}

/// What the check is worth: each of these breaks a rule.
TEST_F(JobTemplate, IsRefusedWhereItBreaksARule) {
    const auto refused = [this](const auto& breakIt) {
        nlohmann::json text = ownTemplate();
        auto values = values_;
        breakIt(text, values);
        EXPECT_THROW(expandedTemplate(text, values), std::runtime_error);
    };
    refused([](auto& text, auto&) { text["specificationVersion"] = "jobtemplate-2021"; });
    refused([](auto& text, auto&) { text["steps"][0]["parameters"] = 1; });
    refused([](auto& text, auto&) { text["steps"][1]["dependencies"][0]["dependsOn"] = "Rendr"; });
    refused([](auto& text, auto&) { text["steps"][1]["name"] = "Render"; });
    refused([](auto& text, auto&) {
        text["steps"][1]["script"]["actions"]["onRun"]["args"][0] = "{{Task.Param.Part}}";
    });
    refused([](auto& text, auto&) {
        text["steps"][0]["script"]["actions"]["onRun"]["args"][0] = "{{Param.Frames";
    });
    refused([](auto& text, auto&) { text["parameterDefinitions"][0]["objectType"] = "FOLDER"; });
    refused([](auto& text, auto&) { text["parameterDefinitions"][1]["name"] = "Input-Pattern"; });
    refused([](auto&, auto& values) { values["Parts"] = "0"; });
    refused([](auto&, auto& values) { values["Parts"] = "two"; });
    refused([](auto&, auto& values) { values["Frame"] = "1"; });
    refused([](auto&, auto& values) { values.erase("Settings"); });
}

} // namespace

} // namespace kovalune::test
