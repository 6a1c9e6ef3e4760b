// --cpu: the instruction set that the built-in effect works with.

#include "tests/cli/ErrorCase.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

/// "Instructions    avx2 (of plain, sse2, avx2)"
std::string instructionsLine() {
    const std::string text = runCommand({"info"}).out;
    const std::string title = "\nInstructions    ";
    const std::size_t at = text.find(title);
    EXPECT_NE(at, std::string::npos) << text;
    const std::size_t start = at + title.size();
    return text.substr(start, text.find('\n', start) - start);
}

bool has(const std::string& line, const std::string& set) {
    return line.find(set, line.find('(')) != std::string::npos;
}

class CpuOption : public ErrorCase {
protected:
    std::vector<uint8_t> made(std::vector<std::string> words, const std::string& set) {
        words.insert(words.end(), {"-o", "out.png"});
        if (!set.empty()) {
            words.insert(words.end(), {"--cpu", set});
        }
        CommandSetting setting;
        setting.folder = folder_.path();
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return bytesOf(folder_ / "out.png");
    }
};

const std::vector<std::string> kSets = {"plain", "sse2", "avx2", "avx512"};

TEST_F(CpuOption, EverySetOfTheMachineGivesTheSameFile) {
    const std::string line = instructionsLine();
    const std::vector<std::string> render = {"render", "in.png",       "--set", "Color 1 Range=100",
                                             "--set",  "Blur Amount=9"};
    const std::vector<std::string> smooth = {"smooth", "in.png"};
    for (const std::vector<std::string>& command : {render, smooth}) {
        const std::vector<uint8_t> expected = made(command, "");
        for (const std::string& set : kSets) {
            if (has(line, set)) {
                EXPECT_EQ(made(command, set), expected) << set;
            }
        }
    }
}

TEST_F(CpuOption, ASetThatTheMachineLacksIsRefusedWithThoseItHas) {
    const std::string line = instructionsLine();
    int lacking = 0;
    for (const std::string& set : kSets) {
        if (!has(line, set)) {
            expectFailure({"render", "in.png", "-o", "old.png", "--cpu", set}, 2,
                          {"--cpu: this machine has no " + set + ", but plain"});
            ++lacking;
        }
    }
    if (lacking == 0) {
        GTEST_SKIP() << "this machine lacks none";
    }
}

TEST_F(CpuOption, OtherWordsAndForeignEffectsAreRefused) {
    expectFailure({"render", "in.png", "-o", "old.png", "--cpu", "mmx"}, 2,
                  {"--cpu takes plain, sse2, avx2 or avx512, not 'mmx'"});
    expectFailure({"smooth", "in.png", "-o", "old.png", "--cpu", ""}, 2, {"--cpu"});
    for (const char* command : {"render", "sheet"}) {
        expectFailure(
            {command, "in.png", "-o", "old.png", "--cpu", "plain", "--plugin", KOVALUNE_TEST_EFFECT}, 2,
            {"--cpu: is for the built-in effect", "--plugin"});
    }
}

TEST(InfoInstructions, NamesTheWidestSetAndAllOfTheMachine) {
    const std::string line = instructionsLine();
    EXPECT_TRUE(has(line, "plain")) << line;
    const std::string last = line.substr(line.find_last_of(" ") + 1);
    EXPECT_EQ(line.substr(0, line.find(' ')) + ')', last) << line;
}

} // namespace
} // namespace kovalune::test
