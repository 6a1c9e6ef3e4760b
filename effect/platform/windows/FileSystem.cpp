#include "effect/platform/Platform.h"
#include "effect/platform/windows/PathLength.h"

#include <windows.h>
// After windows.h, whose types it needs.
#include <shlobj.h>

namespace kovalune::platform {

int lastError() {
    return static_cast<int>(GetLastError());
}

bool folderExists(const char* path) {
    const DWORD attributes = path != nullptr ? GetFileAttributesA(path) : INVALID_FILE_ATTRIBUTES;
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool nameIsTaken(const char* path) {
    if (path == nullptr) {
        return false;
    }
    if (GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES) {
        return true;
    }
    const DWORD error = GetLastError();
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

bool createFolders(const char* path) {
    if (path == nullptr || *path == '\0' || !hasRoomForPath(path)) {
        SetLastError(ERROR_INVALID_NAME);
        return false;
    }
    const int result = SHCreateDirectoryExA(nullptr, path, nullptr);
    if (result == ERROR_SUCCESS) {
        return true;
    }
    const bool exists = folderExists(path);
    SetLastError(static_cast<DWORD>(result));
    return exists;
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
