// The ICC profile among a picture's notes.
#pragma once

#include "pictures/Picture.h"

namespace kovalune::pictures {

// What the notes are called that hold it: in JPEG and WebP it stands bare.
inline constexpr char kPngProfile[] = "iCCP";
inline constexpr char kTiffProfile[] = "34675";
inline constexpr char kBareProfile[] = "ICC";

/// Whether a note of this format is the picture's ICC profile.
bool isColourProfile(const PictureNote& note, FileFormat format);

} // namespace kovalune::pictures
