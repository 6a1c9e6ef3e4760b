// Frames with known results through the command: the settings as --set, the pictures as files.

#include "tests/cli/CommandProcess.h"
#include "tests/cli/VectorPictures.h"
#include "tests/support/TestFolder.h"
#include "tests/vectors/VectorFile.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

std::vector<std::string> commandFor(const FrameVector& vector, const TestFolder& folder) {
    std::vector<std::string> words = {
        "render",       folder / "in.tif",
        "-o",           folder / "out.tif",
        "--downsample", vector.settings.at("downsample_x") + "," + vector.settings.at("downsample_y")};
    for (const auto& [label, value] : vector.settings) {
        if (label == "iterations" || label.starts_with("downsample_")) {
            continue;
        }
        words.emplace_back("--set");
        words.push_back(std::string(label).append("=").append(value));
    }
    return words;
}

class FrameVectorCommand : public testing::TestWithParam<std::string> {};

TEST_P(FrameVectorCommand, GivesTheKnownPictures) {
    int rendered = 0;
    for (const std::string& name : vectorNames(KOVALUNE_VECTORS)) {
        if (!name.starts_with(GetParam())) {
            continue;
        }
        const FrameVector vector = readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / name);
        const TestFolder folder;
        writeImage(folder / "in.tif", vector.input);
        const CommandOutcome outcome = runCommand(commandFor(vector, folder));
        ASSERT_TRUE(outcome.ok()) << name << ": " << outcome.err;
        EXPECT_EQ(firstDifference(readImage(folder / "out.tif"), vector.expected), "") << name;
        ++rendered;
    }
    EXPECT_GE(rendered, 18);
}

std::string groupName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, FrameVectorCommand,
                         testing::Values("base-plain", "base-smooth", "process-one", "process-many"),
                         groupName);

} // namespace
} // namespace kovalune::test
