#include "pictures/ColourProfile.h"

namespace kovalune::pictures {

bool isColourProfile(const PictureNote& note, FileFormat format) {
    return (format == FileFormat::kPng && note.name == kPngProfile) ||
           (format == FileFormat::kTiff && note.name == kTiffProfile) ||
           ((format == FileFormat::kJpeg || format == FileFormat::kWebp) && note.name == kBareProfile);
}

} // namespace kovalune::pictures
