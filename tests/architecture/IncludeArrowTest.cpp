// Which room may include which: the arrows of docs/architecture.md, checked over every source file.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// A room may include itself and what stands here.
const std::map<std::string, std::vector<std::string>> kMayInclude = {
    {"hostapi", {}},
    {"host", {"hostapi"}},
    {"cli", {"host", "hostapi"}},
    {"effect/platform", {}},
    {"effect/share", {"effect/platform", "hostapi"}},
    {"effect/raster", {"effect/share", "hostapi"}},
    {"effect/smoothing", {"effect/raster", "effect/share", "hostapi"}},
    {"effect/blur", {"effect/raster", "effect/share", "hostapi"}},
    {"effect/params", {"effect/platform", "effect/share", "hostapi"}},
    {"effect/pipeline", {"effect/blur", "effect/smoothing", "effect/raster", "effect/share", "hostapi"}},
    {"effect/frame", {"effect/params", "effect/pipeline", "effect/platform", "effect/share", "hostapi"}},
};

/// "effect/blur" for "effect/blur/GaussKernel.h", "host" for "host/Image.h".
std::string roomOf(const std::string& path) {
    const std::size_t first = path.find('/');
    if (first == std::string::npos) {
        return path;
    }
    const std::string top = path.substr(0, first);
    return top == "effect" ? path.substr(0, path.find('/', first + 1)) : top;
}

struct Include {
    std::string file;
    std::string included;
};

std::vector<Include> projectIncludes() {
    static const std::regex pattern(R"(^\s*#\s*include\s*"([^"]+)\")");
    std::vector<Include> found;
    for (const char* const top : {"hostapi", "host", "cli", "effect"}) {
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(KOVALUNE_SOURCE_DIR) / top)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".h" && extension != ".cpp") {
                continue;
            }
            std::ifstream file(entry.path());
            std::string line;
            std::smatch match;
            while (std::getline(file, line)) {
                if (std::regex_search(line, match, pattern)) {
                    found.push_back(
                        {fs::relative(entry.path(), KOVALUNE_SOURCE_DIR).string(), match[1].str()});
                }
            }
        }
    }
    return found;
}

TEST(IncludeArrows, PointOneWay) {
    const std::vector<Include> includes = projectIncludes();
    ASSERT_GT(includes.size(), 100U);
    for (const Include& include : includes) {
        const std::string from = roomOf(include.file);
        const std::string to = roomOf(include.included);
        const auto allowed = kMayInclude.find(from);
        ASSERT_NE(allowed, kMayInclude.end()) << include.file << " lies in a room that nothing is known of";
        const bool points = from == to || std::find(allowed->second.begin(), allowed->second.end(), to) !=
                                              allowed->second.end();
        EXPECT_TRUE(points) << include.file << " may not include " << include.included;
    }
}

TEST(IncludeArrows, AreWrittenFromTheProjectsRoot) {
    for (const Include& include : projectIncludes()) {
        EXPECT_TRUE(fs::exists(fs::path(KOVALUNE_SOURCE_DIR) / include.included))
            << include.file << " includes " << include.included;
    }
}

} // namespace
