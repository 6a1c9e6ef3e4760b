// How long a path may be for Windows' older calls. Some of them go on with a cut path, or with the one of an earlier call,
// where they have no room for a longer one; so it is asked beforehand.
#pragma once

#include <windows.h>

namespace kovalune::platform {

/// Whether the path, made absolute and with its end, has at most MAX_PATH bytes.
inline bool hasRoomForPath(const char* path) {
    const DWORD size = GetFullPathNameA(path, 0, nullptr, nullptr);
    return size != 0 && size <= MAX_PATH;
}

} // namespace kovalune::platform
