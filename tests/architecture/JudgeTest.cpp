// The judge belongs to the tests: no symbol of it is in what ships.

#include "tests/architecture/ProgramOutput.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {
namespace {

/// How many symbols of a file have this in their names, as the compiler writes them.
std::ptrdiff_t symbolsWith(const std::string& part, const std::string& file) {
    const std::vector<std::string> lines = outputLines("nm '" + file + "'");
    return std::count_if(lines.begin(), lines.end(),
                         [&part](const std::string& line) { return line.find(part) != std::string::npos; });
}

TEST(Judge, IsNotInTheCommand) {
    EXPECT_GT(symbolsWith("8kovalune4host7Session", KOVALUNE_COMMAND), 0) << "a file without symbols";
    EXPECT_EQ(symbolsWith("8kovalune4host5judge", KOVALUNE_COMMAND), 0);
}

TEST(Judge, IsNotInTheHostsLibrary) {
    EXPECT_GT(symbolsWith("8kovalune4host7Session", KOVALUNE_HOST_LIBRARY), 0);
    EXPECT_EQ(symbolsWith("8kovalune4host5judge", KOVALUNE_HOST_LIBRARY), 0);
    EXPECT_GT(symbolsWith("8kovalune4host5judge", KOVALUNE_JUDGE_LIBRARY), 0);
}

} // namespace
} // namespace kovalune::test
