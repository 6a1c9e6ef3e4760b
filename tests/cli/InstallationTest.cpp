// What is installed, where, and that it works there.

#include "tests/cli/CommandProcess.h"
#include "tests/cli/TestFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace kovalune::tests {
namespace {

int shell(const std::string& line) {
    return std::system(line.c_str());
}

TEST(Installation, HoldsTheCommandThePlugInAndTheCompletion) {
    const TestFolder folder;
    const std::string prefix = (folder / "a prefix").string();
    ASSERT_EQ(shell("'" KOVALUNE_CMAKE "' --install '" KOVALUNE_BUILD_FOLDER "' --prefix '" + prefix +
                    "' >/dev/null"),
              0);
    const std::string plugIn = prefix + "/" KOVALUNE_LIBRARY_FOLDER "/kovalune/Kovalune.so";
    const std::string command = prefix + "/bin/kovalune";
    EXPECT_EQ(shell("'" + command + "' params --factory --plugin '" + plugIn + "' >'" + prefix + "/table'"),
              0);
    const std::vector<uint8_t> table = bytesOf(prefix + "/table");
    EXPECT_EQ(std::string(table.begin(), table.end()), runCommand({"params", "--factory"}).out);
    EXPECT_EQ(bytesOf(prefix + "/share/bash-completion/completions/kovalune"), bytesOf(KOVALUNE_COMPLETION));
}

} // namespace
} // namespace kovalune::tests
