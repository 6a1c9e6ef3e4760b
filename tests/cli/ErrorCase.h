// A command that must fail: with its exit code, one line, and nothing changed in its folder.
#pragma once

#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

namespace kovalune::test {

/// Has "in.png", a sound picture, and "old.png", something that must survive.
class ErrorCase : public testing::Test {
protected:
    ErrorCase() {
        writePng(folder_ / "in.png", randomPng(PngColor::kRgb, 8, 12, 9, 1));
        writeBytes(folder_ / "old.png", oldBytes());
    }

    static std::vector<uint8_t> oldBytes() { return {'o', 'l', 'd'}; }

    /// The words are run in the folder. The error line must hold each of `named`.
    void expectFailure(const std::vector<std::string>& words, int exitCode,
                       const std::vector<std::string>& named, CommandSetting setting = {}) {
        const std::vector<std::string> before = folder_.names();
        setting.folder = folder_.path();
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
        EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        for (const std::string& part : named) {
            EXPECT_NE(outcome.err.find(part), std::string::npos) << part << " is not in " << outcome.err;
        }
        EXPECT_EQ(folder_.names(), before);
        EXPECT_EQ(bytesOf(folder_ / "old.png"), oldBytes());
    }

    /// The command's own words, run in the folder.
    CommandOutcome runHere(const std::string& command, std::vector<std::string> words) const {
        words.insert(words.begin(), command);
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    /// What it prints, where nothing is wrong.
    std::string printedBy(const std::string& command, const std::vector<std::string>& words) const {
        const CommandOutcome outcome = runHere(command, words);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return outcome.out;
    }

    /// A picture of one row, of these samples' bytes.
    void writeRow(const std::string& name, PngColor color, int depth, uint32_t width,
                  const std::vector<uint8_t>& bytes) const {
        PngPicture png = blankPng(color, depth, width, 1);
        png.rows = bytes;
        writePng(folder_ / name, png);
    }

    TestFolder folder_;
};

} // namespace kovalune::test
