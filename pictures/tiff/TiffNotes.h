// What is kept of a TIFF besides its samples: resolution, place, orientation, colours, texts and the profile.
#pragma once

#include "pictures/Picture.h"
#include "pictures/tiff/TiffDirectory.h"

#include <cstdint>
#include <tiffio.h>
#include <vector>

namespace kovalune::pictures {

/// In the order of their tags. Tags with values of an unusual type or count are left out, and so is a resolution or
/// position of one direction alone.
std::vector<PictureNote> tiffNotes(const TiffDirectory& directory);

/// Sets those of `notes` that are tags of tiffNotes; `picture` is what is being written.
void setTiffNotes(TIFF* tiff, const Picture& picture);

/// Puts fractions as the notes have them into a finished file: the library has shortened or rounded them.
void restoreFractions(std::vector<uint8_t>& file, const std::vector<PictureNote>& notes);

} // namespace kovalune::pictures
