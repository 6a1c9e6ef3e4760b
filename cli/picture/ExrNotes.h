// What is kept of an OpenEXR file besides its samples: all attributes but those on how the samples are stored.
#pragma once

#include "cli/picture/ExrHeader.h"
#include "cli/picture/Picture.h"

#include <ImfHeader.h>
#include <vector>

namespace kovalune {

std::vector<PictureNote> exrNotes(const ExrPart& part, SampleType type);

/// For a file of one part of scan lines without channels yet. Throws what the library throws.
Imf::Header exrHeader(const Picture& picture);

} // namespace kovalune
