// What the documents show of the command is what it prints: every transcript is typed again.

#include "tests/docs/Transcript.h"
#include "tests/cli/CommandProcess.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>
#include <regex>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace kovalune::test {
namespace {

const std::filesystem::path kDocuments = KOVALUNE_DOCUMENTS;

std::vector<std::string> documentsWithTranscripts() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kDocuments)) {
        if (entry.path().extension() == ".md" && !transcriptOf(entry.path()).empty()) {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Programs beside the command that transcripts call, by the names of Debian's packages.
std::string missingPackages() {
    std::string missing;
    for (const auto& [program, package] :
         {std::pair("/usr/bin/convert", "imagemagick"), std::pair("/usr/bin/time", "time")}) {
        if (!std::filesystem::exists(program)) {
            missing += std::string(missing.empty() ? "" : ", ") + package;
        }
    }
    return missing;
}

/// A folder that looks like the project's own after a build.
class Project {
public:
    Project() {
        std::filesystem::create_directories(folder_ / "build/demo/bin");
        std::filesystem::create_directory(folder_ / "home");
        std::filesystem::create_symlink(KOVALUNE_COMMAND, folder_ / "build/demo/bin/kovalune");
        std::filesystem::create_symlink(KOVALUNE_PLUGIN, folder_ / "build/demo/bin/Kovalune.so");
        std::filesystem::copy(KOVALUNE_EXAMPLES, folder_ / "examples",
                              std::filesystem::copy_options::recursive);
    }

    /// What a terminal shows. Documents write the folder "config" as "@".
    std::string typed(const std::string& command) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        setting.program = "/usr/bin/env";
        setting.environment = {{"PATH", (folder_ / "build/demo/bin").string() + ":/usr/bin:/bin"},
                               {"HOME", (folder_ / "home").string()},
                               {"LC_ALL", "C.UTF-8"}};
        // Whoever started the tests may have had the keyboard's interrupt ignored.
        std::string shown =
            runCommand({"--default-signal=INT", "/bin/bash", "-c", "exec 2>&1\n" + command}, setting).out;
        const std::string config = (folder_ / "config").string();
        for (std::size_t at = 0; (at = shown.find(config, at)) != std::string::npos;) {
            shown.replace(at, config.size(), "@");
        }
        return shown;
    }

private:
    const TestFolder folder_;
};

class Transcripts : public testing::TestWithParam<std::string> {};

/// A run that takes more than five seconds here, and elsewhere fewer, tells how far it is.
std::string withoutProgress(const std::string& text) {
    static const std::regex kProgress("kovalune: frame [0-9]+ of [0-9]+ [^\n]* left\n");
    return std::regex_replace(text, kProgress, "");
}

TEST_P(Transcripts, PrintWhatTheDocumentShows) {
    const std::string missing = missingPackages();
    const char* const isCi = std::getenv("CI");
    if (!missing.empty()) {
        ASSERT_FALSE(isCi != nullptr && std::string(isCi) == "true") << "not installed: " << missing;
        GTEST_SKIP() << "not installed: " << missing;
    }
    const Project project;
    const std::string document = GetParam() + ".md";
    for (const TranscriptCommand& each : transcriptOf(kDocuments / document)) {
        const std::string shown = withoutProgress(project.typed(each.command));
        const auto comparable = [&](const std::string& text) {
            return each.varies ? withoutNumbers(text) : text;
        };
        EXPECT_EQ(comparable(shown), comparable(each.printed))
            << "docs/" << document << ':' << each.line << ": $ " << each.command;
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, Transcripts, testing::ValuesIn(documentsWithTranscripts()),
                         [](const auto& tested) { return tested.param; });

std::string failureOf(const std::string& text) {
    const TestFolder folder;
    const std::filesystem::path document = folder / "a.md";
    std::ofstream(document) << text;
    try {
        transcriptOf(document);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

TEST(Transcript, CommandsOutsideAMarkedBlockAndBrokenBlocksAreErrors) {
    EXPECT_EQ(failureOf("```\n$ kovalune\n```\n"),
              "a.md:2: a command in a block that is not marked as ```console");
    EXPECT_EQ(failureOf("```console\nprinted\n```\n"), "a.md:2: text before the block's first command");
    EXPECT_EQ(failureOf("```console\n$ kovalune\n"), "a.md:2: the block does not end");
    EXPECT_EQ(failureOf("```consoles\n$ kovalune\n```\n"),
              "a.md:1: a block marked as 'consoles'; it takes 'console' or 'console varies'");
    EXPECT_EQ(failureOf("```\nkovalune\n```\n"), "");
}

TEST(Transcript, CommandsHaveTheirLinesAndWhatTheyPrint) {
    const TestFolder folder;
    const std::filesystem::path document = folder / "a.md";
    std::ofstream(document) << "text\n```console varies\n$ a \\\n  b\n1\n2\n$ c\n```\n```console\n$ d\n```\n";
    const std::vector<TranscriptCommand> commands = transcriptOf(document);
    ASSERT_EQ(commands.size(), 3U);
    EXPECT_EQ(commands[0].line, 3);
    EXPECT_EQ(commands[0].command, "a \\\n  b");
    EXPECT_EQ(commands[0].printed, "1\n2\n");
    EXPECT_TRUE(commands[0].varies && commands[1].varies);
    EXPECT_EQ(commands[1].command, "c");
    EXPECT_EQ(commands[1].printed, "");
    EXPECT_FALSE(commands[2].varies);
    EXPECT_EQ(commands[2].line, 10);
}

TEST(Transcript, NumbersAreMaskedWhole) {
    EXPECT_EQ(withoutNumbers("reading 46.203 ms, 7."), "reading # ms, #.");
}

} // namespace
} // namespace kovalune::test
