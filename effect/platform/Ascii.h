// Upper and lower case of the letters A to Z alone, the same in every locale; all other bytes stay what they are.
#pragma once

#include <algorithm>
#include <string_view>

namespace kovalune::platform {

constexpr char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char upperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr bool equalButForCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerAscii(x) == lowerAscii(y); });
}

} // namespace kovalune::platform
