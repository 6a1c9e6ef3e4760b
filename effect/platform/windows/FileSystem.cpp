#include "effect/platform/Platform.h"
#include "effect/platform/windows/PathLength.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <shlobj.h>

namespace kovalune::platform {

bool createFolders(const char* path) {
    if (path == nullptr || *path == '\0' || !hasRoomForPath(path)) {
        return false;
    }
    const int result = SHCreateDirectoryExA(nullptr, path, nullptr);
    if (result == ERROR_SUCCESS) {
        return true;
    }
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

Deletion deleteFile(const char* path) {
    if (path == nullptr || *path == '\0') {
        return Deletion::kMissing;
    }
    if (DeleteFileA(path) != FALSE) {
        return Deletion::kDone;
    }
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? Deletion::kMissing
                                                                          : Deletion::kFailed;
}

bool removeFolder(const char* path) {
    return path != nullptr && RemoveDirectoryA(path) != FALSE;
}

} // namespace kovalune::platform
