// The text of a profile file: finding, setting and deleting values in it.
// Pure functions on text that hold for any bytes; Platform.h describes the format.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kovalune::platform {

// The value as it stands in the text, without the blanks around it; nothing if there is no such key. A key
// counts only in the first section of that name.
std::optional<std::string_view> findProfileValue(std::string_view text, std::string_view section,
                                                 std::string_view key);

// The number that a value starts with, modulo 2^32; 0 if it starts with none.
int32_t profileValueAsInt(std::string_view value);

// The value up to its first NUL, without the pair of equal quotes that may enclose it.
std::string_view profileValueAsString(std::string_view value);

// The text with the value set; nothing if a name or the value would not be read back as itself. A key's line
// keeps its place and its line end; a new key follows the last line of its section that is not blank, a new
// section stands at the end of the text.
std::optional<std::string> withProfileValue(std::string_view text, std::string_view section,
                                            std::string_view key, std::string_view value);

// The text without the key: without every line of that name in the first such section, so that a lookup finds
// none.
std::string withoutProfileKey(std::string_view text, std::string_view section, std::string_view key);

// The text without every section of that name, each up to the next section's line.
std::string withoutProfileSection(std::string_view text, std::string_view section);

} // namespace kovalune::platform
