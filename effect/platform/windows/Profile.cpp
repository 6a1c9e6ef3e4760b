// The system's own profile functions. They take a null name or file for something else (a list of names, the
// system's settings) and too long a path for another one, so such calls are answered here.
#include "effect/platform/Platform.h"
#include "effect/platform/ProfileFile.h"
#include "effect/platform/windows/PathLength.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <windows.h>

namespace kovalune::platform {
namespace {

bool namesAFile(const char* file) {
    return file != nullptr && *file != '\0' && hasRoomForPath(file);
}

std::string withoutTrailingSpaces(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

/// The system would write a line that it reads back as something else.
bool wouldBreakTheFile(const char* section, const char* key, const char* value) {
    return key != nullptr && value != nullptr && !withProfileValue({}, section, key, value);
}

} // namespace

int32_t profileInt(const char* section, const char* key, int32_t fallback, const char* file) {
    if (section == nullptr || key == nullptr || !namesAFile(file)) {
        return fallback;
    }
    return static_cast<int32_t>(GetPrivateProfileIntA(section, key, fallback, file));
}

std::string profileString(const char* section, const char* key, const char* fallback, std::size_t maxChars,
                          const char* file) {
    if (maxChars == 0) {
        return {};
    }
    const std::string otherwise = withoutTrailingSpaces(fallback != nullptr ? fallback : "");
    if (section == nullptr || key == nullptr || !namesAFile(file)) {
        return otherwise.substr(0, maxChars - 1);
    }
    std::string buffer(std::min<std::size_t>(maxChars, std::numeric_limits<DWORD>::max()), '\0');
    const DWORD length = GetPrivateProfileStringA(section, key, otherwise.c_str(), buffer.data(),
                                                  static_cast<DWORD>(buffer.size()), file);
    buffer.resize(length);
    return buffer;
}

bool writeProfileString(const char* section, const char* key, const char* value, const char* file) {
    if (section == nullptr || !namesAFile(file) || wouldBreakTheFile(section, key, value)) {
        return false;
    }
    return WritePrivateProfileStringA(section, key, value, file) != FALSE;
}

} // namespace kovalune::platform
