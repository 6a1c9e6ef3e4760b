// JPEG files in: grey, and RGB however it is stored, 8 bits a sample, by the library's exact integer arithmetic. An
// orientation is not applied.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>

namespace kovalune::pictures {

/// Whether a file with these first bytes may be a JPEG.
bool beginsAsJpeg(std::span<const uint8_t> bytes);

/// `name` is for messages only. Throws Failure with it if this is not a JPEG, damaged or cut short, of a kind that is not
/// read (CMYK, arithmetic coding, more than 8 bits), or more than kMostPixelsASide wide or high. A size that so few bytes
/// cannot hold is refused before memory is taken for it. The note "ICC", if there is one, is the profile.
Picture decodeJpegWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options);

inline Picture decodeJpeg(std::span<const uint8_t> bytes, const std::string& name) {
    return decodeJpegWith(bytes, name, {});
}

} // namespace kovalune::pictures
