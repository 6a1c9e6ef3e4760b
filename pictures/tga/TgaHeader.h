// What a TGA file says of itself, checked as far as it can be without its pixels: the header of 18 bytes and the
// extension area that newer files have.
#pragma once

#include "pictures/Picture.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kovalune::pictures {

/// Numbers have the low byte first.
struct TgaHeader {
    static constexpr std::size_t kBytes = 18;

    std::size_t nameBytes = 0; ///< of a text after the header
    bool hasPalette = false;
    bool runLengthCoded = false;
    bool grey = false;
    std::size_t paletteStart = 0; ///< the value of the first entry
    std::size_t paletteLength = 0;
    unsigned paletteDepth = 0; ///< bits an entry
    uint32_t width = 0;
    uint32_t height = 0;
    unsigned depth = 0;     ///< bits a pixel
    unsigned alphaBits = 0; ///< as the file says
    bool fromRight = false;

    std::size_t bytesPerPixel() const { return (depth + 7) / 8; }
    std::size_t paletteBytes() const { return paletteLength * ((paletteDepth + 7) / 8); }
    /// Where the pixels start.
    std::size_t pixelPlace() const { return kBytes + nameBytes + paletteBytes(); }
    uint64_t pixelCount() const { return uint64_t{width} * height; }
    /// Of a pixel or of its palette entry.
    unsigned colourDepth() const { return hasPalette ? paletteDepth : depth; }
    Channels channels() const { return channelsOf(grey, grey ? depth == 16 : colourDepth() == 32); }
};

/// Nothing if the bytes are too few or no header of a kind that is read. Sizes may be anything.
std::optional<TgaHeader> tgaHeader(std::span<const uint8_t> bytes);

enum class TgaPixels { kComplete, kCutShort, kRunTooLong, kBeyondPalette };

/// Walks through all that the header promises, without taking memory.
TgaPixels checkTgaPixels(const TgaHeader& header, std::span<const uint8_t> bytes);

inline constexpr std::size_t kTgaExtensionBytes = 495;

/// The extension area; empty if the file has none.
std::span<const uint8_t> tgaExtension(std::span<const uint8_t> bytes);

} // namespace kovalune::pictures
