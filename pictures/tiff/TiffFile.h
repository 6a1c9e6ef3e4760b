// TIFF files in and out, bit for bit: the first page, of 8 or 16 bits, half or float, grey, palette or RGB.
// 1, 2 and 4 bits are widened to 8, white-is-zero is turned round, palettes come out as RGB. Strips and tiles,
// samples together or in planes, both byte orders and BigTIFF are read; strips of this machine's order written.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/EncodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::pictures {

/// Whether a file with these first bytes may be a TIFF.
bool beginsAsTiff(std::span<const uint8_t> bytes);

/// `name` is for messages only. Throws Failure with it if this is not a TIFF, damaged or cut short, of a kind that
/// is not read (compression, colours and sample types are named), or more than kMostPixelsASide wide or high. A
/// size that so few bytes cannot hold is refused before memory is taken for it.
///
/// The alpha is the first extra sample that says it is one, or else the first; unspecified counts as straight.
/// Other extra samples and further pages are named in leftOut. Samples in YCbCr are read if JPEG-compressed.
///
/// A note's name is the tag's number and its type that of the TIFF type, both decimal; the bytes are in this
/// machine's order. Tag 259 is there where the compression is one that encodeTiff keeps and does not use anyway.
Picture decodeTiffWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options);

inline Picture decodeTiff(std::span<const uint8_t> bytes, const std::string& name) {
    return decodeTiffWith(bytes, name, {});
}

/// The names of the compressions to write with that the library was built with.
std::vector<std::string> tiffCompressionNames();

/// The bytes of a whole file. Compressed as the options say, which name one of tiffCompressionNames, or as the notes say,
/// else with deflate; notes of other formats are left out. Throws Failure if the picture cannot be written as a TIFF.
std::vector<uint8_t> encodeTiff(const Picture& picture, const EncodeOptions& options = {});

} // namespace kovalune::pictures
