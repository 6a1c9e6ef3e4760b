// What is kept of an OpenEXR file besides its samples: all attributes but those on how the samples are stored.
#pragma once

#include "pictures/Picture.h"
#include "pictures/exr/ExrHeader.h"

#include <ImfHeader.h>
#include <vector>

namespace kovalune::pictures {

std::vector<PictureNote> exrNotes(const ExrPart& part, SampleType type);

/// For a file of one part of scan lines without channels yet. Throws what the library throws.
Imf::Header exrHeader(const Picture& picture);

} // namespace kovalune::pictures
