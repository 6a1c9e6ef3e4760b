// The finished bundle as files: its folders, what its library exports and what it needs.

#include "tests/architecture/LibraryFile.h"

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
    EXPECT_EQ(symbolsOf(kFile, "--defined-only"),
              (std::set<std::string>{"OfxGetNumberOfPlugins", "OfxGetPlugin", "OfxSetHost"}));
}

TEST(OpenFxHabits, TheLibraryNeedsNoRuntimeThatAHostMayLack) {
    const std::set<std::string> needed = librariesNeededBy(kFile);
    EXPECT_EQ(needed.count("libc.so.6"), 1U);
    for (const std::string& library : needed) {
        EXPECT_TRUE(isOfTheCLibrary(library)) << library;
    }
}

TEST(OpenFxFile, HasNothingThatKeepsItLoaded) {
    for (const std::string& line : outputLines("nm -D '" + kFile + "'")) {
        EXPECT_EQ(line.find(" u "), std::string::npos) << line;
    }
}

} // namespace
} // namespace kovalune::test
