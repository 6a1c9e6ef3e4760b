// What may be chosen of a file that is read.
#pragma once

#include "pictures/Picture.h"

#include <optional>
#include <string>

namespace kovalune::pictures {

struct DecodeOptions {
    /// What the file is, where its name says nothing: TGA files have no beginning of their own.
    std::optional<FileFormat> format = {};
    /// Of an OpenEXR file: the layer whose channels are the picture ("diffuse" for diffuse.R), otherwise those without one.
    std::optional<std::string> exrLayer = {};
    /// Of an OpenEXR file: the part by its name or, where none has that name, its number from 1; otherwise the first that
    /// has such channels.
    std::optional<std::string> exrPart = {};

    bool isForExr() const { return exrLayer || exrPart; }
};

} // namespace kovalune::pictures
