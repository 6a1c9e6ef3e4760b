#include "effect/platform/Platform.h"

#include <cerrno>
#include <climits>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kovalune::platform {
namespace {

constexpr mode_t kOwnerOnly = 0700;

bool isFolder(const char* path) {
    struct stat status {};
    return ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool createFolders(const char* path) {
    if (path == nullptr || *path == '\0') {
        return false;
    }
    const std::string whole = path;
    if (whole.size() >= PATH_MAX) {
        return false; // before any folder above it is made
    }
    std::size_t end = 0;
    do {
        end = whole.find(kPathSeparator, end + 1);
        // What cannot be made may be there; the last folder tells.
        ::mkdir(whole.substr(0, end).c_str(), kOwnerOnly);
    } while (end != std::string::npos);
    return isFolder(path);
}

Deletion deleteFile(const char* path) {
    if (path == nullptr || *path == '\0') {
        return Deletion::kMissing;
    }
    if (::unlink(path) == 0) {
        return Deletion::kDone;
    }
    return errno == ENOENT || errno == ENOTDIR ? Deletion::kMissing : Deletion::kFailed;
}

bool removeFolder(const char* path) {
    return path != nullptr && ::rmdir(path) == 0;
}

void* moduleOfFile(const char* /*path*/) {
    return nullptr;
}

} // namespace kovalune::platform
