// The finished bundle as files: its folders, what its library exports and what it needs.

#include "tests/architecture/ProgramOutput.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace kovalune::test {
namespace {

const std::string kFile = KOVALUNE_OFX;

TEST(OpenFxHabits, TheBundleHasTheNameTwiceAndTheSystemsFolder) {
    const std::filesystem::path file(kFile);
    EXPECT_EQ(file.filename(), "Kovalune.ofx");
    EXPECT_EQ(file.parent_path().filename().string().find("Linux-"), 0U);
    EXPECT_EQ(file.parent_path().parent_path().filename(), "Contents");
    EXPECT_EQ(file.parent_path().parent_path().parent_path().filename(), "Kovalune.ofx.bundle");
}

TEST(OpenFxHabits, TheLibraryExportsItsInterfaceUnmangledAndNothingElse) {
    std::set<std::string> exported;
    for (const std::string& line : outputLines("nm -D --defined-only '" + kFile + "'")) {
        exported.insert(line.substr(line.find_last_of(' ') + 1));
    }
    EXPECT_EQ(exported, (std::set<std::string>{"OfxGetNumberOfPlugins", "OfxGetPlugin", "OfxSetHost"}));
}

/// The loader is the C library's own part that has thread-local storage.
TEST(OpenFxHabits, TheLibraryNeedsNoRuntimeThatAHostMayLack) {
    const std::set<std::string> allowed = {"libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"};
    int needed = 0;
    for (const std::string& line : outputLines("readelf -dW '" + kFile + "'")) {
        if (line.find("(NEEDED)") == std::string::npos) {
            continue;
        }
        ++needed;
        const std::size_t open = line.find('[');
        const std::string library = line.substr(open + 1, line.find(']') - open - 1);
        EXPECT_EQ(allowed.count(library), 1U) << library;
    }
    EXPECT_GT(needed, 0);
}

TEST(OpenFxFile, HasNothingThatKeepsItLoaded) {
    for (const std::string& line : outputLines("nm -D '" + kFile + "'")) {
        EXPECT_EQ(line.find(" u "), std::string::npos) << line;
    }
}

} // namespace
} // namespace kovalune::test
