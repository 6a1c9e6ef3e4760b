// What is installed, where, and that it works there.

#include "tests/cli/CommandProcess.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kovalune::test {
namespace {

int shell(const std::string& line) {
    return std::system(line.c_str());
}

/// Of one component, or of all.
void install(const std::string& prefix, const std::string& component = {}) {
    ASSERT_EQ(shell("'" KOVALUNE_CMAKE "' --install '" KOVALUNE_BUILD_FOLDER "' --prefix '" + prefix + "'" +
                    (component.empty() ? "" : " --component " + component) + " >/dev/null"),
              0);
}

/// The files below a folder, by their paths in it, sorted.
std::vector<std::string> filesIn(const std::filesystem::path& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_directory()) {
            files.push_back(std::filesystem::relative(entry.path(), folder).string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(Installation, HoldsACommandAndAPlugInThatWork) {
    const TestFolder folder;
    const std::string prefix = (folder / "a prefix").string();
    install(prefix);
    const std::string plugIn = prefix + "/" KOVALUNE_LIBRARY_FOLDER "/kovalune/Kovalune.so";
    const std::string command = prefix + "/bin/kovalune";
    EXPECT_EQ(shell("'" + command + "' params --factory --plugin '" + plugIn + "' >'" + prefix + "/table'"),
              0);
    const std::vector<uint8_t> table = bytesOf(prefix + "/table");
    EXPECT_EQ(std::string(table.begin(), table.end()), runCommand({"params", "--factory"}).out);
}

TEST(Installation, TheCommandComesWithItsCompletionsAndItsPage) {
    const TestFolder folder;
    install(folder.path().string(), "command");
    EXPECT_EQ(filesIn(folder.path()),
              (std::vector<std::string>{"bin/kovalune", "bin/kovalune-slurm",
                                        "share/bash-completion/completions/kovalune",
                                        "share/fish/vendor_completions.d/kovalune.fish",
                                        "share/man/man1/kovalune.1", "share/zsh/site-functions/_kovalune"}));
    EXPECT_EQ(bytesOf(folder / "share/bash-completion/completions/kovalune"), bytesOf(KOVALUNE_COMPLETION));
}

TEST(Installation, ThePlugInIsAComponentOfItsOwn) {
    const TestFolder folder;
    install(folder.path().string(), "plugin");
    EXPECT_EQ(filesIn(folder.path()),
              std::vector<std::string>{KOVALUNE_LIBRARY_FOLDER "/kovalune/Kovalune.so"});
}

// Links of README.md lead to files that are installed too.
TEST(Installation, DocumentsAndExampleLieSideBySide) {
    const TestFolder folder;
    install(folder.path().string(), "documents");
    install(folder.path().string(), "example");
    for (const char* file : {"README.md", "CHANGELOG.md", "copyright", "docs/using.md",
                             "farm/kovalune.openjd.json", "docs/images/before-after.png", "examples/cel1.png",
                             "examples/cel1.params", "examples/smoothing/step.png"}) {
        EXPECT_TRUE(std::filesystem::exists(folder / ("share/doc/kovalune/" + std::string(file)))) << file;
    }
    for (const std::string& file : filesIn(folder.path())) {
        EXPECT_TRUE(file.starts_with("share/doc/kovalune/")) << file;
        EXPECT_FALSE(file.ends_with("CMakeLists.txt")) << file;
    }
}

} // namespace
} // namespace kovalune::test
