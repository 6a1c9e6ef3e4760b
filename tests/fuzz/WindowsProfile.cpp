#include "tests/fuzz/WindowsProfile.h"

#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cstring>

// Under names of their own: this system's stand in the effect.
#define profileInt windowsProfileInt
#define profileString windowsProfileString
#define writeProfileString windowsWriteProfileString
#include "effect/platform/windows/Profile.cpp" // NOLINT(bugprone-suspicious-include)

namespace {

using kovalune::test::require;
using kovalune::test::windows::answer;
using kovalune::test::windows::lastSet;

/// The system lists names where a name is null, and reads its own settings where the file is.
void requireNames(const char* section, const char* key, const char* file) {
    require(section != nullptr && key != nullptr && file != nullptr, "the system is asked with names");
    require(*file != '\0' && std::strlen(file) < MAX_PATH, "the system is asked for a file that it can name");
}

} // namespace

DWORD GetFullPathNameA(const char* path, DWORD /*size*/, char* /*buffer*/, char** /*name*/) {
    return static_cast<DWORD>(std::strlen(path)) + 1;
}

UINT GetPrivateProfileIntA(const char* section, const char* key, int32_t fallback, const char* file) {
    requireNames(section, key, file);
    return answer.empty() ? static_cast<UINT>(fallback) : static_cast<UINT>(answer.size());
}

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* fallback, char* buffer,
                               DWORD size, const char* file) {
    requireNames(section, key, file);
    const std::string value = answer.empty() ? fallback : answer;
    const auto length = static_cast<DWORD>(std::min<std::size_t>(value.size(), size - 1));
    std::memcpy(buffer, value.data(), length);
    buffer[length] = '\0';
    return length;
}

BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* file) {
    requireNames(section, key != nullptr ? key : "", file);
    lastSet = std::string(section) + (value != nullptr ? value : "");
    return TRUE;
}
