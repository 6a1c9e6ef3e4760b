#include "render/shots/ControlGroups.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace kovalune::shots {

namespace fs = std::filesystem;

namespace {

/// A limit of the first version that says "none": as many whole pages as a signed number holds.
constexpr uint64_t kNoLimit = uint64_t{1} << 62U;

std::vector<std::string> linesOf(const fs::path& file) {
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

/// Of "max", and of what is no number, none.
std::optional<int64_t> numberOf(const std::string& word) {
    int64_t number = 0;
    const char* const end = word.data() + word.size();
    const auto read = std::from_chars(word.data(), end, number);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

std::optional<int64_t> numberIn(const fs::path& file) {
    const std::vector<std::string> lines = linesOf(file);
    return lines.empty() ? std::nullopt : numberOf(lines.front());
}

/// The number after `name` on a line of its own; 0 where there is none.
int64_t namedNumberIn(const fs::path& file, const std::string& name) {
    for (const std::string& line : linesOf(file)) {
        const std::vector<std::string> words = wordsOf(line);
        if (words.size() == 2 && words[0] == name) {
            return numberOf(words[1]).value_or(0);
        }
    }
    return 0;
}

bool holds(std::string_view list, std::string_view wanted) {
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        if (list.substr(start, end - start) == wanted) {
            return true;
        }
        start = end + 1;
    }
    return false;
}

/// Where a hierarchy is mounted, and which of its groups stands there. `controller` is empty for the second version.
struct Mount {
    fs::path place;
    std::string top;
};

std::optional<Mount> mountOf(const fs::path& root, const std::string& controller) {
    for (const std::string& line : linesOf(root / "proc/self/mountinfo")) {
        const std::vector<std::string> words = wordsOf(line);
        const auto dash = std::find(words.begin(), words.end(), "-");
        constexpr std::ptrdiff_t kBeforeDash = 5;
        constexpr std::ptrdiff_t kAfterDash = 4;
        if (dash - words.begin() < kBeforeDash || words.end() - dash < kAfterDash) {
            continue;
        }
        const bool isIt =
            controller.empty() ? dash[1] == "cgroup2" : dash[1] == "cgroup" && holds(dash[3], controller);
        if (isIt) {
            return Mount{root / fs::path(words[4]).relative_path(), words[3]};
        }
    }
    return std::nullopt;
}

/// The process's group in that hierarchy, as "/farm/task".
std::optional<std::string> groupOf(const fs::path& root, const std::string& controller) {
    for (const std::string& line : linesOf(root / "proc/self/cgroup")) {
        const std::size_t first = line.find(':');
        const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
        if (second == std::string::npos) {
            continue;
        }
        const std::string_view list = std::string_view(line).substr(first + 1, second - first - 1);
        if (controller.empty() ? line.starts_with("0::") : holds(list, controller)) {
            return line.substr(second + 1);
        }
    }
    return std::nullopt;
}

/// The folder of the process's group, then those around it. In a container the group's own name may be that of the machine, of
/// which nothing is seen here but what is mounted.
std::vector<fs::path> foldersOf(const fs::path& root, const std::string& controller) {
    const std::optional<Mount> mount = mountOf(root, controller);
    const std::optional<std::string> group = groupOf(root, controller);
    if (!mount || !group) {
        return {};
    }
    fs::path inside = fs::path(*group).relative_path();
    if (mount->top != "/" && (*group == mount->top || group->starts_with(mount->top + '/'))) {
        inside = fs::path(group->substr(mount->top.size())).relative_path();
    }
    std::vector<fs::path> folders;
    std::error_code error;
    for (; !inside.empty(); inside = inside.parent_path()) {
        if (fs::is_directory(mount->place / inside, error)) {
            folders.push_back(mount->place / inside);
        }
    }
    folders.push_back(mount->place);
    return folders;
}

template <class Number>
void lower(std::optional<Number>& limit, Number value) {
    limit = limit ? std::min(*limit, value) : value;
}

void takeQuota(GroupLimits& limits, std::optional<int64_t> quota, std::optional<int64_t> period) {
    if (quota && period && *quota > 0 && *period > 0) {
        const int64_t whole = (*quota - 1) / *period + 1;
        lower(limits.processors, static_cast<int>(std::min<int64_t>(whole, std::numeric_limits<int>::max())));
    }
}

/// Pages of files that nobody has used lately are given back before anything else is refused.
void takeMemory(GroupLimits& limits, std::optional<int64_t> limit, std::optional<int64_t> used,
                int64_t givenBack) {
    const int64_t most = limit.value_or(-1);
    if (most >= 0 && static_cast<uint64_t>(most) < kNoLimit) {
        const int64_t kept = std::max<int64_t>(used.value_or(0) - std::max<int64_t>(givenBack, 0), 0);
        lower(limits.freeMemory, static_cast<uint64_t>(std::max<int64_t>(most - kept, 0)));
    }
}

void takeSecondVersion(GroupLimits& limits, const fs::path& folder) {
    for (const std::string& line : linesOf(folder / "cpu.max")) {
        const std::vector<std::string> words = wordsOf(line);
        if (words.size() == 2) {
            takeQuota(limits, numberOf(words[0]), numberOf(words[1]));
        }
    }
    // Above the one a group is slowed down until it is below, above the other it is refused.
    for (const char* const name : {"memory.high", "memory.max"}) {
        takeMemory(limits, numberIn(folder / name), numberIn(folder / "memory.current"),
                   namedNumberIn(folder / "memory.stat", "inactive_file"));
    }
}

} // namespace

GroupLimits groupLimits(const fs::path& root) {
    GroupLimits limits;
    for (const fs::path& folder : foldersOf(root, "cpu")) {
        takeQuota(limits, numberIn(folder / "cpu.cfs_quota_us"), numberIn(folder / "cpu.cfs_period_us"));
    }
    for (const fs::path& folder : foldersOf(root, "memory")) {
        takeMemory(limits, numberIn(folder / "memory.limit_in_bytes"),
                   numberIn(folder / "memory.usage_in_bytes"),
                   namedNumberIn(folder / "memory.stat", "total_inactive_file"));
    }
    for (const fs::path& folder : foldersOf(root, "")) {
        takeSecondVersion(limits, folder);
    }
    return limits;
}

} // namespace kovalune::shots
