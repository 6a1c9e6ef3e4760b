// OpenEXR files in and out, bit for bit: R, G, B or Y, with A or without, as half or float; if both occur, as
// float. Scan lines and tiles in any compression are read, and of several parts the first that has such channels;
// scan lines are written, with the file's other channels and parts beside them. Colours are taken to be premultiplied,
// as the format has it.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/EncodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune::pictures {

/// Whether a file with these first bytes may be an OpenEXR file.
bool beginsAsExr(std::span<const uint8_t> bytes);

/// `name` is for messages only. Throws Failure with it if this is not an OpenEXR file, damaged or cut short, of a
/// kind that is not read (whole numbers, deep data, luminance with chroma; the channels are named), more than
/// kMostPixelsASide wide or high, or without the layer or part that the options name. A size that so few bytes cannot hold is
/// refused before memory is taken for it.
///
/// The picture is the data window. Further channels and parts are in exrRest and named in passedOn, which takes a copy of the
/// bytes; deep parts and subsampled channels of the picture's part are named in leftOut.
///
/// A note is an attribute: its name, its type and its bytes as they stand in a file. Those that tell how the
/// samples are stored are no notes, nor is what every header has unless it says otherwise (windows from 0,0,
/// square pixels). "compression" is there where it is one that encodeExr keeps and does not use anyway.
Picture decodeExrWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options);

inline Picture decodeExr(std::span<const uint8_t> bytes, const std::string& name) {
    return decodeExrWith(bytes, name, {});
}

/// The names of the compressions to write with, those that lose nothing first.
std::vector<std::string> exrCompressionNames();

/// The bytes of a whole file with these samples, whatever alphaKind says. The picture has samples of Half or
/// Float. Compressed as the options say, which name one of exrCompressionNames, or as the notes say if no sample is lost
/// so, else with ZIP; a data window of another size than the picture's and notes of other formats are left out. What
/// exrRest has is passed on: the part's channels with the values that they have, other parts as they stand in their file.
/// Throws Failure if the picture cannot be written, or if channels that are passed on would lose something by the options'
/// compression.
std::vector<uint8_t> encodeExr(const Picture& picture, const EncodeOptions& options = {});

} // namespace kovalune::pictures
