// Which room may include which: the table of docs/architecture.md, checked over every source file.

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

using Arrows = std::map<std::string, std::vector<std::string>>;

/// The texts in backticks, in order.
std::vector<std::string> quotedNames(const std::string& text) {
    static const std::regex quoted("`([^`]+)`");
    std::vector<std::string> names;
    for (std::sregex_iterator match(text.begin(), text.end(), quoted), end; match != end; ++match) {
        names.push_back((*match)[1].str());
    }
    return names;
}

/// The table under "Who may include whom": rooms in the first column, what they may include in the second. A room may
/// always include itself.
Arrows documentedArrows() {
    std::ifstream page(fs::path(KOVALUNE_SOURCE_DIR) / "docs/architecture.md");
    Arrows arrows;
    bool inSection = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("## ")) {
            inSection = line == "## Who may include whom";
        }
        const std::size_t bar = line.find('|', 1);
        if (!inSection || !line.starts_with("| `") || bar == std::string::npos) {
            continue;
        }
        for (const std::string& room : quotedNames(line.substr(0, bar))) {
            arrows[room] = quotedNames(line.substr(bar));
        }
    }
    return arrows;
}

/// The longest of the table's rooms that is this file or a folder around it: "render/shots" for
/// "render/shots/AtomicFile.h", "render" for "render/Stages.h"; otherwise the path itself.
std::string roomOf(const Arrows& mayInclude, const std::string& path) {
    for (std::string room = path; !room.empty();) {
        if (mayInclude.count(room) == 1) {
            return room;
        }
        const std::size_t slash = room.rfind('/');
        room.resize(slash == std::string::npos ? 0 : slash);
    }
    return path;
}

struct Include {
    std::string file;
    std::string included;
};

std::vector<Include> projectIncludes() {
    static const std::regex pattern(R"(^\s*#\s*include\s*"([^"]+)\")");
    std::vector<Include> found;
    for (const char* const top :
         {"hostapi", "host", "text", "pictures", "render", "cli", "adapters", "effect"}) {
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

bool points(const Arrows& mayInclude, const Include& include) {
    const std::string from = roomOf(mayInclude, include.file);
    const std::string to = roomOf(mayInclude, include.included);
    const auto row = mayInclude.find(from);
    return row != mayInclude.end() &&
           (from == to || std::find(row->second.begin(), row->second.end(), to) != row->second.end());
}

TEST(IncludeArrows, PointOneWay) {
    const std::vector<Include> includes = projectIncludes();
    const Arrows mayInclude = documentedArrows();
    ASSERT_GT(includes.size(), 100U);
    ASSERT_GE(mayInclude.size(), 13U);
    for (const Include& include : includes) {
        ASSERT_EQ(mayInclude.count(roomOf(mayInclude, include.file)), 1U)
            << include.file << " lies in a room that nothing is known of";
        EXPECT_TRUE(points(mayInclude, include)) << include.file << " may not include " << include.included;
    }
}

TEST(IncludeArrows, LeadFromTheCommandToOneHeaderOfTheEffect) {
    const Arrows mayInclude = documentedArrows();
    EXPECT_TRUE(points(mayInclude, {"cli/main.cpp", "effect/Kovalune.h"}));
    EXPECT_FALSE(points(mayInclude, {"cli/main.cpp", "effect/Kovalune.cpp"}));
    EXPECT_FALSE(points(mayInclude, {"cli/main.cpp", "effect/smoothing/EdgeFlagMap.h"}));
    EXPECT_FALSE(points(mayInclude, {"effect/Kovalune.h", "effect/smoothing/EdgeFlagMap.h"}));
    EXPECT_FALSE(points(mayInclude, {"effect/smoothing/EdgeFlagMap.cpp", "effect/Kovalune.h"}));
    EXPECT_FALSE(points(mayInclude, {"host/Image.cpp", "effect/Kovalune.h"}));
    EXPECT_FALSE(points(mayInclude, {"effect/NewFile.cpp", "effect/NewFile.h"}));
}

TEST(IncludeArrows, LeadFromWordsToFilesToFrames) {
    const Arrows mayInclude = documentedArrows();
    EXPECT_TRUE(points(mayInclude, {"cli/main.cpp", "render/shots/AtomicFile.h"}));
    EXPECT_TRUE(points(mayInclude, {"render/shots/AtomicFile.h", "pictures/Picture.h"}));
    EXPECT_TRUE(points(mayInclude, {"render/shots/AtomicFile.h", "render/RenderFrame.h"}));
    EXPECT_FALSE(points(mayInclude, {"render/RenderFrame.h", "render/shots/AtomicFile.h"}));
    EXPECT_FALSE(points(mayInclude, {"render/RenderFrame.h", "pictures/Picture.h"}));
    EXPECT_FALSE(points(mayInclude, {"render/RenderFrame.h", "cli/Commands.h"}));
    EXPECT_FALSE(points(mayInclude, {"pictures/Picture.h", "render/RenderFrame.h"}));
    EXPECT_TRUE(points(mayInclude, {"pictures/Picture.h", "render/samples/AlphaKind.h"}));
    EXPECT_FALSE(points(mayInclude, {"render/samples/AlphaKind.h", "pictures/Picture.h"}));
    EXPECT_TRUE(points(mayInclude, {"adapters/openfx/Render.h", "render/Hints.h"}));
    EXPECT_FALSE(points(mayInclude, {"adapters/openfx/Render.h", "render/shots/AtomicFile.h"}));
    EXPECT_FALSE(points(mayInclude, {"adapters/openfx/Render.h", "pictures/Picture.h"}));
    EXPECT_FALSE(points(mayInclude, {"render/RenderFrame.h", "adapters/openfx/Render.h"}));
    EXPECT_TRUE(points(mayInclude, {"host/judge/JudgedHost.h", "host/Host.h"}));
    EXPECT_FALSE(points(mayInclude, {"host/Session.cpp", "host/judge/JudgedHost.h"}));
    EXPECT_FALSE(points(mayInclude, {"render/OpenEffect.cpp", "host/judge/JudgedHost.h"}));
}

TEST(IncludeArrows, AreWrittenFromTheProjectsRoot) {
    for (const Include& include : projectIncludes()) {
        EXPECT_TRUE(fs::exists(fs::path(KOVALUNE_SOURCE_DIR) / include.included))
            << include.file << " includes " << include.included;
    }
}

} // namespace
