#include "cli/Failure.h"

#include <cstring>
#include <system_error>

namespace kovalune {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

bool isControl(unsigned char byte) {
    return byte < 0x20 || byte == 0x7f;
}

} // namespace

std::string printable(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (const char letter : text) {
        const auto byte = static_cast<unsigned char>(letter);
        if (letter == '\n') {
            line += "\\n";
        } else if (letter == '\r') {
            line += "\\r";
        } else if (letter == '\t') {
            line += "\\t";
        } else if (isControl(byte)) {
            line += "\\x";
            line += kHexDigits[byte >> 4];
            line += kHexDigits[byte & 0xf];
        } else {
            line += letter;
        }
    }
    return line;
}

std::string systemReason(int errorNumber) {
#ifdef __GLIBC__
    if (const char* const text = strerrordesc_np(errorNumber))
        return text;
#endif
    return std::generic_category().message(errorNumber);
}

std::string inQuotes(std::string_view text) {
    std::string result(1, '\'');
    result += text;
    result += '\'';
    return result;
}

} // namespace kovalune
