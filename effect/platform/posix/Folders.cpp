#include "effect/platform/Platform.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace kovalune::platform {
namespace {

// Relative folders are refused: they would change with the working directory, which is the host's business.
bool isAbsolute(const char* path) {
    return path != nullptr && *path == '/';
}

std::string withoutTrailingSlashes(std::string_view path) {
    return std::string(path.substr(0, path.find_last_not_of('/') + 1));
}

// The home folder in the user database; empty if there is none.
std::string homeFromUserDatabase() {
    constexpr std::size_t kLargestRecord = std::size_t{1} << 20;
    for (std::vector<char> record(1024); record.size() <= kLargestRecord; record.resize(record.size() * 2)) {
        passwd entry{};
        passwd* found = nullptr;
        const int error = ::getpwuid_r(::geteuid(), &entry, record.data(), record.size(), &found);
        if (error == 0) {
            return found != nullptr && isAbsolute(found->pw_dir) ? found->pw_dir : "";
        }
        if (error != ERANGE) {
            break;
        }
    }
    return {};
}

std::string configurationFolder() {
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    if (isAbsolute(configured)) {
        const std::string folder = withoutTrailingSlashes(configured);
        return folder.empty() ? "/" : folder;
    }
    const char* variable = std::getenv("HOME");
    const std::string home = isAbsolute(variable) ? variable : homeFromUserDatabase();
    return home.empty() ? home : withoutTrailingSlashes(home) + "/.config";
}

} // namespace

bool applicationDataFolder(char* buffer, std::size_t size) {
    if (buffer == nullptr || size == 0) {
        return false;
    }
    buffer[0] = '\0';
    const std::string folder = configurationFolder();
    if (folder.empty() || folder.size() >= size) {
        return false;
    }
    std::memcpy(buffer, folder.c_str(), folder.size() + 1);
    return true;
}

} // namespace kovalune::platform
