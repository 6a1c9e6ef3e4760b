// Notes of one picture format for another: the resolution (PNG, TIFF, OpenEXR) and the ICC profile (PNG, TIFF, and from
// JPEG and WebP) are what several have. Everything else is told in one format alone.
#pragma once

#include "pictures/Picture.h"

#include <vector>

namespace kovalune::pictures {

/// What a file of this format cannot tell of the picture and users would miss, in words for a message: the texts of a PNG
/// file. Empty where nothing is missing.
std::vector<std::string> notesLeftOut(FileFormat format, const Picture& picture);

/// The notes of `picture` for a file of this format: as they are in its own, byte for byte, otherwise those that can
/// be told there. What is damaged is left out.
std::vector<PictureNote> notesFor(FileFormat format, const Picture& picture);

} // namespace kovalune::pictures
