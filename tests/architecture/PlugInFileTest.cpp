// The finished plug-in as a file: what it exports and what it needs.

#include "tests/architecture/ProgramOutput.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

using test::outputLines;

const std::string kPlugIn = KOVALUNE_PLUGIN;

TEST(PlugInFile, ExportsExactlyTheEntryPoint) {
    const std::vector<std::string> symbols = outputLines("nm -D --defined-only '" + kPlugIn + "'");
    ASSERT_EQ(symbols.size(), 1U);
    EXPECT_NE(symbols[0].find(" T EntryPointFunc"), std::string::npos) << symbols[0];
}

TEST(PlugInFile, NeedsNothingButTheRuntimeOfTheLanguages) {
    const std::set<std::string> allowed = {"libstdc++.so.6", "libgcc_s.so.1", "libm.so.6", "libc.so.6",
                                           "ld-linux-x86-64.so.2"};
    int needed = 0;
    for (const std::string& line : outputLines("readelf -d '" + kPlugIn + "'")) {
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

/// "pow" for "                 U pow@GLIBC_2.29".
std::string symbolName(const std::string& line) {
    const std::string name = line.substr(line.find_last_of(' ') + 1);
    return name.substr(0, name.find('@'));
}

TEST(PlugInFile, CallsNoMathematicsOfTheCLibraryThatPixelsDependOn) {
    const std::vector<std::string> undefined = outputLines("nm -D --undefined-only '" + kPlugIn + "'");
    ASSERT_FALSE(undefined.empty());
    const std::set<std::string> inexact = {"exp", "exp2", "expf", "pow", "powf", "cos", "cosf", "sin", "log"};
    for (const std::string& line : undefined) {
        EXPECT_EQ(inexact.count(symbolName(line)), 0U) << line;
    }
}

} // namespace
} // namespace kovalune::test
