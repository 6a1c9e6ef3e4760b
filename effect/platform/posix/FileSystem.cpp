#include "effect/platform/Platform.h"

#include <cerrno>
#include <climits>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kovalune::platform {
namespace {

constexpr mode_t kOwnerOnly = 0700;

} // namespace

int lastError() {
    return errno;
}

bool folderExists(const char* path) {
    struct stat status {};
    return path != nullptr && ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool nameIsTaken(const char* path) {
    struct stat status {};
    return path != nullptr && (::lstat(path, &status) == 0 || (errno != ENOENT && errno != ENOTDIR));
}

bool createFolders(const char* path) {
    if (path == nullptr || *path == '\0') {
        errno = ENOENT;
        return false;
    }
    const std::string whole = path;
    if (whole.size() >= PATH_MAX) {
        errno = ENAMETOOLONG;
        return false; // before any folder above it is made
    }
    int reason = ENOTDIR; // where each name is there already, and the last is a file's
    std::size_t end = 0;
    do {
        end = whole.find(kPathSeparator, end + 1);
        // What cannot be made may be there; the last folder tells.
        if (::mkdir(whole.substr(0, end).c_str(), kOwnerOnly) != 0 && errno != EEXIST && reason == ENOTDIR) {
            reason = errno;
        }
    } while (end != std::string::npos);
    const bool exists = folderExists(path);
    errno = reason;
    return exists;
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
