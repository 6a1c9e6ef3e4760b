// OpenEXR files in and out, bit for bit: R, G, B or Y, with A or without, as half or float; if both occur, as
// float. Scan lines and tiles in any compression are read, and of several parts the first that has such channels;
// one part of scan lines is written. Colours are taken to be premultiplied, as the format has it.
#pragma once

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
/// kind that is not read (whole numbers, deep data, luminance with chroma; the channels are named), or more than
/// kMostPixelsASide wide or high. A size that so few bytes cannot hold is refused before memory is taken for it.
///
/// The picture is the data window; further channels and parts are named in leftOut.
///
/// A note is an attribute: its name, its type and its bytes as they stand in a file. Those that tell how the
/// samples are stored are no notes, nor is what every header has unless it says otherwise (windows from 0,0,
/// square pixels). "compression" is there where it is one that encodeExr keeps and does not use anyway.
Picture decodeExr(std::span<const uint8_t> bytes, const std::string& name);

/// The names of the compressions to write with, those that lose nothing first.
std::vector<std::string> exrCompressionNames();

/// The bytes of a whole file with these samples, whatever alphaKind says. The picture has samples of Half or
/// Float. Compressed as the options say, which name one of exrCompressionNames, or as the notes say if no sample is lost
/// so, else with ZIP; a data window of another size than the picture's and notes of other formats are left out. Throws
/// Failure if the picture cannot be written.
std::vector<uint8_t> encodeExr(const Picture& picture, const EncodeOptions& options = {});

} // namespace kovalune::pictures
