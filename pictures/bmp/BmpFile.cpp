#include "pictures/bmp/BmpFile.h"

#include "pictures/ReadFailure.h"
#include "pictures/bmp/BmpLibrary.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace kovalune::pictures {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr std::size_t kFileHeaderBytes = 14;
constexpr uint32_t kOldHeaderBytes = 12; ///< of the first kind, whose sides have 16 bits

uint32_t number(Bytes bytes, std::size_t place, std::size_t count) {
    uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value |= uint32_t{bytes[place + i]} << 8 * i;
    }
    return value;
}

/// What the headers say.
struct Header {
    uint32_t bytes = 0; ///< of the second header
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t depth = 0; ///< bits a pixel
    uint32_t packing = 0;
    uint32_t place = 0; ///< of the pixels

    uint64_t rowBytes() const { return (uint64_t{width} * depth + 31) / 32 * 4; }
    /// As the library counts them.
    uint32_t colours() const {
        return bytes == kOldHeaderBytes ? (place - std::min<uint32_t>(place, 38)) / 3
                                        : (place - std::min(place, bytes + 14)) / 4;
    }
};

Header headerOf(Bytes bytes, const std::string& name) {
    Header header;
    header.bytes = number(bytes, kFileHeaderBytes, 4);
    header.place = number(bytes, 10, 4);
    if (bytes.size() < kFileHeaderBytes + header.bytes) {
        failReading(name, "it is cut short");
    }
    if (header.bytes == kOldHeaderBytes) {
        header.width = number(bytes, 18, 2);
        header.height = number(bytes, 20, 2);
        header.depth = number(bytes, 24, 2);
        return header;
    }
    header.width = number(bytes, 18, 4);
    const auto height = static_cast<int32_t>(number(bytes, 22, 4)); // negative: from the top down
    header.height = static_cast<uint32_t>(std::abs(int64_t{height}));
    header.depth = number(bytes, 28, 2);
    header.packing = number(bytes, 30, 4);
    return header;
}

void checkKind(const Header& header, const std::string& name) {
    constexpr uint32_t kPlain = 0, kRunLengths8 = 1, kRunLengths4 = 2, kMasks = 3;
    if (header.packing == kRunLengths8 || header.packing == kRunLengths4) {
        failReading(name, "it is packed in run lengths, which are not read");
    }
    if (header.packing != kPlain && header.packing != kMasks) {
        failReading(name, "it is packed in way " + std::to_string(header.packing) + ", which is not read");
    }
    constexpr uint32_t kDepths[] = {1, 4, 8, 16, 24, 32};
    if (std::find(std::begin(kDepths), std::end(kDepths), header.depth) == std::end(kDepths)) {
        failReading(name, "it has " + std::to_string(header.depth) + " bits a pixel, which is not read");
    }
}

/// Each index of the row's pixels.
bool isInPalette(const Header& header, Bytes row) {
    for (uint32_t x = 0; x < header.width; ++x) {
        const std::size_t bit = std::size_t{x} * header.depth;
        const uint32_t shift = 8 - header.depth - static_cast<uint32_t>(bit % 8);
        if (((row[bit / 8] >> shift) & ((1U << header.depth) - 1)) >= header.colours()) {
            return false;
        }
    }
    return true;
}

void checkPixels(const Header& header, Bytes bytes, const std::string& name) {
    if (bytes.size() > std::numeric_limits<int>::max()) {
        failReading(name, "it has 2 GiB or more, which is not read");
    }
    const uint64_t needed = header.rowBytes() * header.height;
    if (header.place > bytes.size() || needed > bytes.size() - header.place) {
        failReading(name, "it is cut short: " + sizeText(header.width, header.height) + " need more bytes");
    }
    for (uint32_t y = 0; header.depth <= 8 && y < header.height; ++y) {
        if (!isInPalette(header,
                         bytes.subspan(header.place + static_cast<std::size_t>(y * header.rowBytes())))) {
            failReading(name, "it is damaged: a colour beyond its palette");
        }
    }
}

/// Removes an alpha that is full everywhere.
void dropFullAlpha(Picture& picture) {
    const std::size_t count = picture.samples.size() / 4;
    for (std::size_t i = 0; i < count; ++i) {
        if (picture.samples[4 * i + 3] != 255) {
            return;
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        std::copy_n(picture.samples.begin() + static_cast<std::ptrdiff_t>(4 * i), 3,
                    picture.samples.begin() + static_cast<std::ptrdiff_t>(3 * i));
    }
    picture.samples.resize(3 * count);
    picture.channels = Channels::kRgb;
}

} // namespace

bool beginsAsBmp(Bytes bytes) {
    constexpr uint32_t kHeaders[] = {kOldHeaderBytes, 40, 56, 108, 124};
    return bytes.size() >= kFileHeaderBytes + 4 && bytes[0] == 'B' && bytes[1] == 'M' &&
           std::find(std::begin(kHeaders), std::end(kHeaders), number(bytes, kFileHeaderBytes, 4)) !=
               std::end(kHeaders);
}

Picture decodeBmpWith(Bytes bytes, const std::string& name, const DecodeOptions& options) {
    if (!beginsAsBmp(bytes)) {
        failReading(name, "it is not a BMP file of a kind that is read");
    }
    const Header header = headerOf(bytes, name);
    checkSize(header.width, header.height, name);
    checkKind(header, name);
    checkPixels(header, bytes, name);
    checkPixelCount(header.width, header.height, name, options);
    BmpSamples loaded = loadBmp(bytes);
    Picture picture;
    picture.format = FileFormat::kBmp;
    picture.width = header.width;
    picture.height = header.height;
    picture.channels = loaded.channels == 4 ? Channels::kRgbAlpha : Channels::kRgb;
    picture.samples = std::move(loaded.samples);
    if (picture.samples.empty() || picture.samples.size() != picture.byteCount()) {
        failReading(name, "it is damaged");
    }
    if (hasAlpha(picture.channels)) {
        dropFullAlpha(picture);
    }
    return picture;
}

} // namespace kovalune::pictures
