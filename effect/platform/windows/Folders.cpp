#include "effect/platform/Platform.h"

#include <cstring>
#include <windows.h>
// After windows.h, whose types it needs.
#include <shlobj.h>

namespace kovalune::platform {

bool applicationDataFolder(char* buffer, std::size_t size) {
    if (buffer == nullptr || size == 0) {
        return false;
    }
    buffer[0] = '\0';
    char folder[MAX_PATH] = {};
    if (SHGetSpecialFolderPathA(nullptr, folder, CSIDL_APPDATA, FALSE) == FALSE) {
        return false;
    }
    const std::size_t length = ::strnlen(folder, sizeof folder);
    if (length == 0 || length >= size) {
        return false;
    }
    std::memcpy(buffer, folder, length);
    buffer[length] = '\0';
    return true;
}

} // namespace kovalune::platform
