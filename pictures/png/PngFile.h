// PNG files in and out, bit for bit: no gamma, no change of depth but the widening of 1, 2 and 4 bits to 8.
// Palettes come out as RGB, transparent colours as alpha; interlaced files are read and never written.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/EncodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::pictures {

/// Whether a file with these first bytes may be a PNG.
bool beginsAsPng(std::span<const uint8_t> bytes);

/// `name` is for messages only. Throws Failure with it if this is not a PNG, damaged or cut short, more than
/// kMostPixelsASide wide or high, or of more pixels than the options allow. Such a size, and one that so few bytes cannot hold, is
/// refused before memory is taken for it.
/// Notes are chunks as they stand in the file.
Picture decodePngWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options);

inline Picture decodePng(std::span<const uint8_t> bytes, const std::string& name) {
    return decodePngWith(bytes, name, {});
}

/// The bytes of a whole file. The picture has samples of Uint8 or Uint16; notes of other formats are left out.
/// Throws Failure if the picture cannot be written as a PNG.
std::vector<uint8_t> encodePng(const Picture& picture, const EncodeOptions& options);

} // namespace kovalune::pictures
