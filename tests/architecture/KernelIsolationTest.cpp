// What is compiled for an instruction set shares no function with anything else: of two copies the linker keeps one, and a
// machine might meet instructions there that it lacks.

#include "tests/architecture/ProgramOutput.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> kernelObjects() {
    std::istringstream list(KOVALUNE_KERNEL_OBJECTS);
    std::vector<std::string> objects;
    for (std::string object; std::getline(list, object, ':');) {
        objects.push_back(object);
    }
    return objects;
}

/// The letters by which `nm` tells symbols that a linker merges, or that another file may replace.
constexpr const char* kMerged = "CVWuvw";

TEST(KernelIsolation, HasNoSymbolThatALinkerMerges) {
    const std::vector<std::string> objects = kernelObjects();
    ASSERT_GE(objects.size(), 1U);
    for (const std::string& object : objects) {
        int tables = 0;
        for (const std::string& line : outputLines("nm '" + object + "'")) {
            std::smatch match;
            ASSERT_TRUE(std::regex_match(line, match, std::regex("[0-9a-f ]* ([A-Za-z]) (.*)"))) << line;
            EXPECT_EQ(std::string(kMerged).find(match[1].str()), std::string::npos) << object << ": " << line;
            tables += match[2].str().find("Kernels") != std::string::npos && match[1] != "U" ? 1 : 0;
        }
        EXPECT_GE(tables, 1) << object;
    }
}

TEST(KernelIsolation, IncludesNothingThatOthersCompileToo) {
    const std::regex pattern(R"(^\s*#\s*include\s*[<"]([^>"]+)[>"])");
    const std::set<std::string> standard = {"cstdint", "immintrin.h"};
    const fs::path room = fs::path(KOVALUNE_SOURCE_DIR) / "effect/kernels";
    std::vector<fs::path> files = {room / "Kernels.h", room / "Sets.h"};
    for (const auto& entry : fs::recursive_directory_iterator(room)) {
        if (entry.is_regular_file() && entry.path().parent_path() != room) {
            files.push_back(entry.path());
        }
    }
    ASSERT_GE(files.size(), 9U);
    for (const fs::path& path : files) {
        std::ifstream file(path);
        ASSERT_TRUE(file) << path;
        std::smatch match;
        for (std::string line; std::getline(file, line);) {
            if (std::regex_search(line, match, pattern)) {
                const std::string included = match[1];
                EXPECT_TRUE(standard.count(included) == 1 || included.starts_with("effect/kernels/"))
                    << path << " includes " << included;
            }
        }
    }
}

} // namespace
} // namespace kovalune::test
