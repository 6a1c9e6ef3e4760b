#include "text/MessageText.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cstring>
#include <system_error>
#include <vector>

namespace kovalune::text {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

/// Of the UTF-8 character that `text` starts with: its bytes, 2 to 4; otherwise 1.
std::size_t characterSize(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t size = first >= 0xc2 && first < 0xe0   ? 2
                             : first >= 0xe0 && first < 0xf0 ? 3
                             : first >= 0xf0 && first < 0xf5 ? 4
                                                             : 1;
    if (size > text.size()) {
        return 1;
    }
    const bool whole = std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(size),
                                   [](char letter) { return (letter & 0xc0) == 0x80; });
    return whole ? size : 1;
}

/// ASCII's control characters and those after it, U+0080 to U+009F, which terminals obey as single bytes too.
bool isControl(std::string_view character) {
    const auto last = static_cast<unsigned char>(character.back());
    if (character.size() == 1) {
        return last < 0x20 || (last >= 0x7f && last < 0xa0);
    }
    return character.size() == 2 && character.front() == '\xc2' && last < 0xa0;
}

void appendPrintable(std::string& line, std::string_view character) {
    if (!isControl(character)) {
        line += character;
        return;
    }
    for (const char letter : character) {
        const auto byte = static_cast<unsigned char>(letter);
        line += '\\';
        if (letter == '\n') {
            line += 'n';
        } else if (letter == '\r') {
            line += 'r';
        } else if (letter == '\t') {
            line += 't';
        } else {
            line += 'x';
            line += kHexDigits[byte >> 4];
            line += kHexDigits[byte & 0xf];
        }
    }
}

/// A text as printable() has it, and where its characters start.
struct PrintableText {
    std::string line;
    std::vector<std::size_t> starts;
};

PrintableText printableText(std::string_view text) {
    PrintableText result;
    result.line.reserve(text.size());
    while (!text.empty()) {
        const std::size_t size = characterSize(text);
        result.starts.push_back(result.line.size());
        appendPrintable(result.line, text.substr(0, size));
        text.remove_prefix(size);
    }
    return result;
}

} // namespace

std::string printable(std::string_view text) {
    return printableText(text).line;
}

std::string shown(std::string_view text) {
    constexpr std::size_t kHalf = kMostShownBytes / 2;
    const PrintableText whole = printableText(text);
    const std::string& line = whole.line;
    if (line.size() <= kMostShownBytes) {
        return line;
    }
    const std::vector<std::size_t>& starts = whole.starts;
    const auto headEnd = std::upper_bound(starts.begin(), starts.end(), kHalf) - 1;
    const auto tail = std::lower_bound(starts.begin(), starts.end(), line.size() - kHalf);
    return line.substr(0, *headEnd) + "..." + (tail == starts.end() ? "" : line.substr(*tail));
}

std::string systemReason(int errorNumber) {
#ifdef __GLIBC__
    // This locale is the library's own: it takes no memory and is never given back.
    static const locale_t kPlain = newlocale(LC_ALL_MASK, "C", nullptr);
    if (kPlain != nullptr) {
        return strerror_l(errorNumber, kPlain);
    }
#endif
    return std::generic_category().message(errorNumber);
}

std::string inQuotes(std::string_view text) {
    std::string result(1, '\'');
    result += shown(text);
    result += '\'';
    return result;
}

std::string oneOf(const std::vector<std::string>& texts) {
    std::string result;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i > 0) {
            result += i + 1 < texts.size() ? ", " : " or ";
        }
        result += texts[i];
    }
    return result;
}

} // namespace kovalune::text
