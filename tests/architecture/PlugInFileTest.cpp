// The finished plug-in as a file: what it exports and what it needs.

#include "tests/architecture/LibraryFile.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

const std::string kPlugIn = KOVALUNE_PLUGIN;

TEST(PlugInFile, ExportsExactlyTheEntryPoint) {
    const std::vector<std::string> symbols = outputLines("nm -D --defined-only '" + kPlugIn + "'");
    ASSERT_EQ(symbols.size(), 1U);
    EXPECT_NE(symbols[0].find(" T EntryPointFunc"), std::string::npos) << symbols[0];
}

TEST(PlugInFile, NeedsNothingButTheRuntimeOfTheLanguages) {
    const std::set<std::string> allowed = {"libstdc++.so.6", "libgcc_s.so.1", "libm.so.6", "libc.so.6",
                                           "ld-linux-x86-64.so.2"};
    const std::set<std::string> needed = librariesNeededBy(kPlugIn);
    EXPECT_FALSE(needed.empty());
    for (const std::string& library : needed) {
        EXPECT_EQ(allowed.count(library), 1U) << library;
    }
}

TEST(PlugInFile, CallsNoMathematicsOfTheCLibraryThatPixelsDependOn) {
    const std::set<std::string> undefined = symbolsOf(kPlugIn, "--undefined-only");
    ASSERT_FALSE(undefined.empty());
    const std::set<std::string> inexact = {"exp", "exp2", "expf", "pow", "powf", "cos", "cosf", "sin", "log"};
    for (const std::string& name : undefined) {
        EXPECT_EQ(inexact.count(name), 0U) << name;
    }
}

} // namespace
} // namespace kovalune::test
