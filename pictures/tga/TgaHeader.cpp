#include "pictures/tga/TgaHeader.h"

#include <algorithm>
#include <string_view>

namespace kovalune::pictures {

namespace {

using Bytes = std::span<const uint8_t>;

std::size_t number16(Bytes bytes, std::size_t place) {
    return bytes[place] + std::size_t{bytes[place + 1]} * 256;
}

std::size_t number32(Bytes bytes, std::size_t place) {
    return number16(bytes, place) + number16(bytes, place + 2) * 65536;
}

/// The kinds that are read, by the type without its flag for run lengths.
bool isKnown(unsigned type, const TgaHeader& header) {
    const auto depthIsOneOf = [](unsigned depth, std::initializer_list<unsigned> depths) {
        return std::find(depths.begin(), depths.end(), depth) != depths.end();
    };
    switch (type) {
    case 1:
        return header.hasPalette && depthIsOneOf(header.depth, {8, 16}) &&
               depthIsOneOf(header.paletteDepth, {15, 16, 24, 32});
    case 2:
        return !header.hasPalette && depthIsOneOf(header.depth, {15, 16, 24, 32});
    case 3:
        return !header.hasPalette && depthIsOneOf(header.depth, {8, 16});
    default:
        return false;
    }
}

/// Pixels in a row; false if one of them is beyond the palette.
bool areInPalette(const TgaHeader& header, Bytes pixels) {
    if (!header.hasPalette) {
        return true;
    }
    for (std::size_t place = 0; place < pixels.size(); place += header.bytesPerPixel()) {
        if ((header.depth == 8 ? pixels[place] : number16(pixels, place)) >= header.paletteLength) {
            return false;
        }
    }
    return true;
}

TgaPixels checkRuns(const TgaHeader& header, Bytes rest) {
    for (uint64_t left = header.pixelCount(); left > 0;) {
        if (rest.empty()) {
            return TgaPixels::kCutShort;
        }
        const std::size_t count = rest[0] % 128U + 1;
        const std::size_t stored = (rest[0] >= 128 ? 1 : count) * header.bytesPerPixel();
        if (count > left) {
            return TgaPixels::kRunTooLong;
        }
        if (stored > rest.size() - 1) {
            return TgaPixels::kCutShort;
        }
        if (!areInPalette(header, rest.subspan(1, stored))) {
            return TgaPixels::kBeyondPalette;
        }
        rest = rest.subspan(1 + stored);
        left -= count;
    }
    return TgaPixels::kComplete;
}

} // namespace

std::optional<TgaHeader> tgaHeader(Bytes bytes) {
    if (bytes.size() < TgaHeader::kBytes || bytes[1] > 1) {
        return std::nullopt;
    }
    constexpr unsigned kRunLengths = 8;
    const unsigned type = bytes[2];
    const unsigned descriptor = bytes[17];
    TgaHeader header;
    header.nameBytes = bytes[0];
    header.hasPalette = bytes[1] == 1;
    header.runLengthCoded = (type & kRunLengths) != 0;
    header.grey = (type & ~kRunLengths) == 3;
    if (header.hasPalette) {
        header.paletteStart = number16(bytes, 3);
        header.paletteLength = number16(bytes, 5);
        header.paletteDepth = bytes[7];
    }
    header.width = static_cast<uint32_t>(number16(bytes, 12));
    header.height = static_cast<uint32_t>(number16(bytes, 14));
    header.depth = bytes[16];
    header.alphaBits = descriptor & 15U;
    header.fromRight = (descriptor & 16U) != 0;
    const bool interleaved = descriptor >= 64;
    if (interleaved || !isKnown(type & ~kRunLengths, header)) {
        return std::nullopt;
    }
    return header;
}

TgaPixels checkTgaPixels(const TgaHeader& header, Bytes bytes) {
    if (bytes.size() < header.pixelPlace()) {
        return TgaPixels::kCutShort;
    }
    const Bytes rest = bytes.subspan(header.pixelPlace());
    if (header.runLengthCoded) {
        return checkRuns(header, rest);
    }
    const uint64_t needed = header.pixelCount() * header.bytesPerPixel();
    if (rest.size() < needed) {
        return TgaPixels::kCutShort;
    }
    return areInPalette(header, rest.first(static_cast<std::size_t>(needed))) ? TgaPixels::kComplete
                                                                              : TgaPixels::kBeyondPalette;
}

Bytes tgaExtension(Bytes bytes) {
    constexpr std::string_view kSignature("TRUEVISION-XFILE.\0", 18);
    constexpr std::size_t kFooterBytes = 8 + kSignature.size();
    if (bytes.size() < kFooterBytes) {
        return {};
    }
    const Bytes footer = bytes.last(kFooterBytes);
    if (!std::equal(kSignature.begin(), kSignature.end(), footer.begin() + 8)) {
        return {};
    }
    const std::size_t place = number32(footer, 0);
    const std::size_t end = bytes.size() - kFooterBytes;
    if (place < TgaHeader::kBytes || place > end || end - place < kTgaExtensionBytes ||
        number16(bytes, place) < kTgaExtensionBytes) {
        return {};
    }
    return bytes.subspan(place, kTgaExtensionBytes);
}

} // namespace kovalune::pictures
