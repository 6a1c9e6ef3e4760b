#include "tests/pictures/TgaMaker.h"

#include <string_view>

namespace kovalune::test {

namespace {

void append(std::vector<uint8_t>& bytes, std::size_t number, int count) {
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<uint8_t>(number >> 8 * i));
    }
}

void append(std::vector<uint8_t>& bytes, const std::vector<uint8_t>& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

} // namespace

std::vector<uint8_t> tgaFile(const TgaParts& parts) {
    const bool hasPalette = !parts.palette.empty();
    const auto entryBytes = static_cast<std::size_t>((parts.paletteDepth + 7) / 8);
    std::vector<uint8_t> bytes;
    append(bytes, parts.text.size(), 1);
    append(bytes, hasPalette ? 1 : 0, 1);
    append(bytes, static_cast<std::size_t>(parts.type), 1);
    append(bytes, static_cast<std::size_t>(parts.paletteStart), 2);
    append(bytes, parts.palette.size() / entryBytes, 2);
    append(bytes, hasPalette ? static_cast<std::size_t>(parts.paletteDepth) : 0, 1);
    append(bytes, 0, 4);
    append(bytes, static_cast<std::size_t>(parts.width), 2);
    append(bytes, static_cast<std::size_t>(parts.height), 2);
    append(bytes, static_cast<std::size_t>(parts.depth), 1);
    append(bytes, static_cast<std::size_t>(parts.descriptor), 1);
    append(bytes, parts.text);
    append(bytes, parts.palette);
    append(bytes, parts.pixels);
    if (!parts.extension.empty()) {
        constexpr std::string_view kSignature("TRUEVISION-XFILE.\0", 18);
        const std::size_t place = bytes.size();
        append(bytes, parts.extension);
        append(bytes, place, 4);
        append(bytes, 0, 4);
        append(bytes, std::vector<uint8_t>(kSignature.begin(), kSignature.end()));
    }
    return bytes;
}

std::vector<uint8_t> tgaExtensionArea(uint8_t alphaType) {
    std::vector<uint8_t> area(495);
    area[0] = 0xef;
    area[1] = 0x01;
    area[2] = 'a'; // the author
    area[474] = 2; // the relation of a pixel's sides
    area[476] = 1;
    area[482] = 99; // a table that is not kept
    area[494] = alphaType;
    return area;
}

} // namespace kovalune::test
