// What a test file shares with the effect, templates and inline functions, is compiled into both, and the linker keeps one
// copy. It has to be the effect's, as it ships. The linker's map of this program says which it kept.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

/// Where the copies of one section come from: object files, those of a library with its name before them.
struct Copies {
    std::string kept;
    std::vector<std::string> discarded;
};

bool isOfTheEffect(const std::string& file) {
    return file.find("libkovalune_effect.a(") != std::string::npos;
}

/// The sections of functions by name. A long name stands on a line of its own, before address, size and file.
std::map<std::string, Copies> functionSections(const std::string& mapFile) {
    std::ifstream in(mapFile);
    EXPECT_TRUE(in.is_open()) << mapFile;
    std::map<std::string, Copies> sections;
    bool discarded = false;
    std::string line;
    std::string name;
    while (std::getline(in, line)) {
        if (line == "Discarded input sections") {
            discarded = true;
        } else if (line == "Memory Configuration") {
            discarded = false;
        } else if (line.rfind(" .text._ZN", 0) == 0) {
            name = line.substr(1, line.find(' ', 1) - 1);
        }
        const std::size_t file = line.find_last_of(' ');
        if (!name.empty() && file != std::string::npos && file > 1 && line.find("0x") != std::string::npos) {
            Copies& copies = sections[name];
            if (discarded) {
                copies.discarded.push_back(line.substr(file + 1));
            } else {
                copies.kept = line.substr(file + 1);
            }
            name.clear();
        }
    }
    return sections;
}

TEST(ShippedCode, IsWhatTheTestsRunWhereBothHaveIt) {
    int shared = 0;
    for (const auto& [name, copies] : functionSections(KOVALUNE_LINK_MAP)) {
        // What is the standard library's alone is in other libraries too, in groups that differ by compiler.
        if (name.find("8kovalune") == std::string::npos) {
            continue;
        }
        bool effectHasIt = isOfTheEffect(copies.kept);
        bool testHasIt = !effectHasIt;
        for (const std::string& file : copies.discarded) {
            (isOfTheEffect(file) ? effectHasIt : testHasIt) = true;
        }
        if (effectHasIt && testHasIt) {
            ++shared;
            EXPECT_TRUE(isOfTheEffect(copies.kept)) << name << " is that of " << copies.kept;
        }
    }
    EXPECT_GT(shared, 10) << "functions of both";
}

} // namespace
} // namespace kovalune::test
