// What may be chosen of a file that is read.
#pragma once

#include "pictures/Picture.h"

#include <optional>
#include <string>

namespace kovalune::pictures {

/// Width times height of the largest picture that is read unless the user says otherwise: 16384 x 16384, of which a frame in
/// floats takes 4 GiB for each of its worlds.
inline constexpr int kUsualMostPixels = 1 << 28;

struct DecodeOptions {
    /// What the file is, where its name says nothing: TGA files have no beginning of their own.
    std::optional<FileFormat> format = {};
    /// Of an OpenEXR file: the layer whose channels are the picture ("diffuse" for diffuse.R), otherwise those without one.
    std::optional<std::string> exrLayer = {};
    /// Of an OpenEXR file: the part by its name or, where none has that name, its number from 1; otherwise the first that
    /// has such channels.
    std::optional<std::string> exrPart = {};

    /// Pictures of more pixels are refused before memory is taken for them: 1 to kMostPixels.
    int mostPixels = kUsualMostPixels;

    bool isForExr() const { return exrLayer || exrPart; }
};

} // namespace kovalune::pictures
