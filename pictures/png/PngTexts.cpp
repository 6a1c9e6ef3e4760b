#include "pictures/png/PngTexts.h"

#include "pictures/EmbeddedSettings.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <vector>

namespace kovalune::pictures {

namespace {

/// Of Latin-1, in which keywords are written, blanks and control characters of 0x80 to 0x9f aside.
bool isLetter(uint8_t byte) {
    return (byte >= 0x20 && byte < 0x7f) || byte > 0xa0;
}

std::string utf8(uint8_t byte) {
    if (byte < 0x80) {
        return {static_cast<char>(byte)};
    }
    return {static_cast<char>(0xc0 | byte >> 6), static_cast<char>(0x80 | (byte & 0x3f))};
}

bool isText(const PictureNote& note) {
    return std::find(kPngTexts.begin(), kPngTexts.end(), note.name) != kPngTexts.end();
}

/// In UTF-8 and printable.
std::string keywordOf(const PictureNote& text) {
    constexpr std::ptrdiff_t kMostLetters = 79;
    const auto end = std::find(text.bytes.begin(), text.bytes.end(), 0);
    const std::ptrdiff_t length = end - text.bytes.begin();
    if (length == 0 || length > kMostLetters || !std::all_of(text.bytes.begin(), end, isLetter)) {
        return "unnamed";
    }
    std::string keyword;
    for (auto letter = text.bytes.begin(); letter != end; ++letter) {
        keyword += utf8(*letter);
    }
    return keyword;
}

} // namespace

std::string pngTextsNamed(const Picture& picture) {
    constexpr std::size_t kMostNamed = 5;
    std::unordered_set<std::string> known; // a file may have very many
    std::vector<std::string> keywords;
    for (const PictureNote& note : picture.notes) {
        const bool isNamed = isText(note) && !isEmbeddedSettings(note, FileFormat::kPng);
        const std::string keyword = isNamed ? keywordOf(note) : "";
        if (!keyword.empty() && known.insert(keyword).second) {
            keywords.push_back(keyword);
        }
    }
    std::string list;
    for (std::size_t i = 0; i < std::min(keywords.size(), kMostNamed); ++i) {
        list += (i == 0 ? "" : ", ") + keywords[i];
    }
    if (keywords.size() > kMostNamed) {
        list += " and " + std::to_string(keywords.size() - kMostNamed) + " more";
    }
    return list.empty() ? list : "texts (" + list + ')';
}

} // namespace kovalune::pictures
