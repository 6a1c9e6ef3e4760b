// A command that something happens to on its way: whatever that is, no output is half a file, no older file is lost, nothing else is
// left behind, and the command ends with a code and one line.
#pragma once

#include "tests/cli/CommandProcess.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace kovalune::test {

struct OutputCommand {
    std::vector<std::string> words;
    std::vector<std::string> outputs; ///< in the folder; all of them, also in folders of it
};

/// Has small pictures: "in.png", "near.png", which differs from it in one row, and the shot "cel.0001.png" to "cel.0003.png". The
/// configuration is in the folder "config".
class FaultCase : public testing::Test {
protected:
    FaultCase();

    /// One more input, for commands that are learned from here on.
    void addInput(const std::string& name, const std::vector<uint8_t>& bytes) { inputs_[name] = bytes; }

    /// Runs the command unharmed and remembers what it writes.
    void learn(const OutputCommand& command);

    /// An older file in the place of each output, and nothing else beside the pictures.
    void restore() const;

    /// In the folder.
    CommandOutcome run(const std::vector<std::string>& words, CommandSetting setting = {}) const;

    /// `run` is what the command came to after restore().
    void expectNothingHalf(const CommandOutcome& run) const;

    /// Of files beside the inputs and the outputs.
    void expectNothingElse() const;

    [[nodiscard]] bool isOld(const std::string& output) const;
    [[nodiscard]] bool isWhole(const std::string& output) const;

    const OutputCommand& command() const { return command_; }

    TestFolder folder_;

private:
    std::vector<std::string> filesThere() const;

    OutputCommand command_;
    int code_ = 0;                                      ///< of the unharmed command
    std::string out_;                                   ///< likewise what it prints
    std::map<std::string, std::vector<uint8_t>> whole_; ///< likewise the outputs
    std::map<std::string, std::vector<uint8_t>> inputs_;
};

/// Commands that write files of every kind, one or several.
std::vector<OutputCommand> outputCommands();

} // namespace kovalune::test
