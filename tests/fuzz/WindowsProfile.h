// The effect's profile functions as they are on Windows, beside those of this system, over a system that answers what a fuzz
// target says and that checks what it is called with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kovalune::platform {

int32_t windowsProfileInt(const char* section, const char* key, int32_t fallback, const char* file);
std::string windowsProfileString(const char* section, const char* key, const char* fallback,
                                 std::size_t maxChars, const char* file);
bool windowsWriteProfileString(const char* section, const char* key, const char* value, const char* file);

} // namespace kovalune::platform

namespace kovalune::test::windows {

inline std::string answer;                 ///< of every value that is asked for
inline std::optional<std::string> lastSet; ///< what the system was told to write

} // namespace kovalune::test::windows
