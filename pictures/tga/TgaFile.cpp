#include "pictures/tga/TgaFile.h"

#include "pictures/ReadFailure.h"
#include "pictures/tga/TgaHeader.h"
#include "pictures/tga/TgaLibrary.h"
#include "text/Failure.h"

#include <algorithm>
#include <string_view>

namespace kovalune::pictures {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr char kExtensionNote[] = "extension";

// In the extension area.
constexpr std::size_t kTablePlaces = 482; // of three tables elsewhere in the file, which are not kept
constexpr std::size_t kAlphaType = 494;
constexpr uint8_t kNoAlpha = 0;
constexpr uint8_t kStraightAlpha = 3;
constexpr uint8_t kMultipliedAlpha = 4;

void checkHeader(const TgaHeader& header, Bytes bytes, const std::string& name) {
    checkSize(header.width, header.height, name);
    if (header.hasPalette && header.paletteLength == 0) {
        failReading(name, "it is damaged: its palette is empty");
    }
    if (header.hasPalette && header.paletteStart != 0) {
        failReading(name, "its palette starts at entry " + std::to_string(header.paletteStart) +
                              ", and only those that start at 0 are read");
    }
    if (header.pixelCount() * channelCount(header.channels()) > kMostTgaBytes ||
        bytes.size() > kMostTgaBytes) {
        failReading(name, "it is " + sizeText(header.width, header.height) +
                              ", and a TGA file of 2 GiB or more is not read");
    }
}

void checkPixels(const TgaHeader& header, Bytes bytes, const std::string& name) {
    switch (checkTgaPixels(header, bytes)) {
    case TgaPixels::kCutShort:
        failReading(name, "it is cut short: " + sizeText(header.width, header.height) + " need more bytes");
    case TgaPixels::kRunTooLong:
        failReading(name, "it is damaged: it holds more pixels than it says");
    case TgaPixels::kBeyondPalette:
        failReading(name, "it is damaged: a pixel is not in its palette");
    default:
        break;
    }
}

void mirrorRows(Picture& picture) {
    const std::size_t pixelBytes = channelCount(picture.channels);
    const auto width = static_cast<std::ptrdiff_t>(picture.rowBytes());
    for (uint32_t y = 0; y < picture.height; ++y) {
        const auto row = picture.samples.begin() + width * static_cast<std::ptrdiff_t>(y);
        std::reverse(row, row + width);
        for (std::size_t x = 0; x < picture.width; ++x) {
            const auto pixel = row + static_cast<std::ptrdiff_t>(x * pixelBytes);
            std::reverse(pixel, pixel + static_cast<std::ptrdiff_t>(pixelBytes));
        }
    }
}

/// Whether what could be alpha is 0 in every pixel.
bool alphaIsZero(const Picture& picture) {
    const std::size_t channels = channelCount(picture.channels);
    for (std::size_t place = channels - 1; place < picture.samples.size(); place += channels) {
        if (picture.samples[place] != 0) {
            return false;
        }
    }
    return true;
}

void dropAlpha(Picture& picture) {
    const std::size_t channels = channelCount(picture.channels);
    std::size_t kept = 0;
    for (std::size_t place = 0; place < picture.samples.size(); ++place) {
        if (place % channels != channels - 1) {
            picture.samples[kept++] = picture.samples[place];
        }
    }
    picture.samples.resize(kept);
    picture.channels = channelsOf(isGrey(picture.channels), false);
}

/// The extension area to write: the source's, or an empty one where alpha has to be told of; otherwise none.
std::vector<uint8_t> extensionFor(const Picture& picture) {
    std::vector<uint8_t> extension;
    const auto note = std::find_if(picture.notes.begin(), picture.notes.end(),
                                   [](const PictureNote& each) { return each.name == kExtensionNote; });
    const bool multiplied = hasAlpha(picture.channels) && picture.alphaKind == AlphaKind::kPremultiplied;
    if (picture.format == FileFormat::kTga && note != picture.notes.end()) {
        extension = note->bytes;
    } else if (multiplied) {
        extension = {kTgaExtensionBytes & 0xff, kTgaExtensionBytes >> 8};
    } else {
        return {};
    }
    extension.resize(kTgaExtensionBytes);
    std::fill(extension.begin() + kTablePlaces, extension.begin() + kAlphaType, uint8_t{0});
    extension[kAlphaType] = multiplied                   ? kMultipliedAlpha
                            : hasAlpha(picture.channels) ? kStraightAlpha
                                                         : kNoAlpha;
    return extension;
}

void appendExtension(std::vector<uint8_t>& bytes, const std::vector<uint8_t>& extension) {
    constexpr std::string_view kSignature("TRUEVISION-XFILE.\0", 18);
    const std::size_t place = bytes.size();
    bytes.insert(bytes.end(), extension.begin(), extension.end());
    for (std::size_t shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<uint8_t>(place >> shift));
    }
    bytes.insert(bytes.end(), 4, 0); // no developer's area
    bytes.insert(bytes.end(), kSignature.begin(), kSignature.end());
}

} // namespace

bool beginsAsTga(Bytes bytes) {
    return tgaHeader(bytes).has_value();
}

Picture decodeTgaWith(Bytes bytes, const std::string& name, const DecodeOptions& options) {
    const std::optional<TgaHeader> header = tgaHeader(bytes);
    if (!header) {
        failReading(name, bytes.size() < TgaHeader::kBytes ? "it is cut short"
                                                           : "it is not a TGA file of a kind that is read");
    }
    checkHeader(*header, bytes, name);
    checkPixels(*header, bytes, name);
    checkPixelCount(header->width, header->height, name, options);
    Picture picture;
    picture.width = header->width;
    picture.height = header->height;
    picture.channels = header->channels();
    picture.samples = loadTga(bytes);
    picture.format = FileFormat::kTga;
    if (picture.samples.size() != picture.byteCount()) {
        failReading(name, "it is damaged");
    }
    if (header->fromRight) {
        mirrorRows(picture);
    }
    if (hasAlpha(picture.channels) && header->alphaBits == 0 && alphaIsZero(picture)) {
        dropAlpha(picture);
    }
    const Bytes extension = tgaExtension(bytes);
    if (!extension.empty()) {
        picture.notes.push_back({kExtensionNote, {}, {extension.begin(), extension.end()}});
        if (extension[kAlphaType] == kMultipliedAlpha) {
            picture.alphaKind = AlphaKind::kPremultiplied;
        }
    }
    return picture;
}

std::vector<uint8_t> encodeTga(const Picture& picture) {
    if (picture.byteCount() > kMostTgaBytes || picture.width > 0xffff || picture.height > 0xffff) {
        throw text::Failure(text::FailureKind::kFile, "cannot make a TGA file of " +
                                                          sizeText(picture.width, picture.height) +
                                                          ": it would have 2 GiB or more");
    }
    std::vector<uint8_t> bytes = saveTga(picture);
    const std::vector<uint8_t> extension = extensionFor(picture);
    if (!extension.empty()) {
        appendExtension(bytes, extension);
    }
    return bytes;
}

} // namespace kovalune::pictures
