// What ships ends at once where memory is overwritten, and has nothing at known places: read from the finished files.

#include "tests/architecture/ProgramOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::test {
namespace {

class Hardening : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (std::string_view(KOVALUNE_BUILD_TYPE) != "Release") {
            GTEST_SKIP() << "of what ships, and this is built for " KOVALUNE_BUILD_TYPE;
        }
    }

    static std::vector<std::string> linesOf(const std::string& program) {
        return outputLines(program + " '" + GetParam() + "'");
    }

    static std::size_t count(const std::vector<std::string>& lines, const std::string& part) {
        return static_cast<std::size_t>(std::count_if(lines.begin(), lines.end(), [&part](const auto& line) {
            return line.find(part) != std::string::npos;
        }));
    }
};

TEST_P(Hardening, IsLoadedAnywhere) {
    EXPECT_EQ(count(linesOf("readelf -hW"), "Type:                              DYN"), 1U);
}

TEST_P(Hardening, HasNoWritableTableOfCallsAndRunsNoData) {
    EXPECT_EQ(count(linesOf("readelf -lW"), "GNU_RELRO"), 1U);
    EXPECT_EQ(count(linesOf("readelf -dW"), "BIND_NOW"), 1U);
    for (const std::string& line : linesOf("readelf -lW")) {
        if (line.find("GNU_STACK") != std::string::npos) {
            EXPECT_EQ(line.find("RWE"), std::string::npos) << line;
        }
    }
}

TEST_P(Hardening, WatchesItsStackAndItsBuffers) {
    const std::vector<std::string> needed = linesOf("nm -D --undefined-only");
    EXPECT_EQ(count(needed, "__stack_chk_fail"), 1U);
    EXPECT_GE(count(needed, "_chk@GLIBC"), 1U) << "a function of the C library that knows its buffer's size";
}

INSTANTIATE_TEST_SUITE_P(, Hardening, testing::Values(KOVALUNE_PLUGIN, KOVALUNE_COMMAND),
                         [](const auto& tested) {
                             return std::string(tested.param).ends_with(".so") ? "PlugIn" : "Command";
                         });

} // namespace
} // namespace kovalune::test
