#include "effect/platform/Platform.h"

#include <cstring>
#include <windows.h>
// After windows.h, whose types it needs.
#include <shlobj.h>

namespace kovalune::platform {
namespace {

/// A drive's root keeps its own. The second byte of a character may look like a separator.
std::size_t lengthWithoutTrailingSeparators(const char (&path)[MAX_PATH]) {
    constexpr std::size_t kDriveRoot = 3;
    std::size_t length = ::strnlen(path, sizeof path);
    while (length > kDriveRoot && *CharPrevA(path, path + length) == kPathSeparator) {
        --length;
    }
    return length;
}

} // namespace

bool applicationDataFolder(char* buffer, std::size_t size) {
    if (buffer == nullptr || size == 0) {
        return false;
    }
    buffer[0] = '\0';
    char folder[MAX_PATH] = {};
    // Unverified: it may be one that is yet to be made.
    if (SHGetFolderPathA(nullptr, CSIDL_APPDATA | CSIDL_FLAG_DONT_VERIFY, nullptr, SHGFP_TYPE_CURRENT,
                         folder) != S_OK) {
        return false;
    }
    const std::size_t length = lengthWithoutTrailingSeparators(folder);
    if (length == 0 || length >= size) {
        return false;
    }
    std::memcpy(buffer, folder, length);
    buffer[length] = '\0';
    return true;
}

} // namespace kovalune::platform
