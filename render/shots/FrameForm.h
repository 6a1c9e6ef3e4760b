// How a picture's file is taken, and what it is written back as.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/EncodeOptions.h"
#include "pictures/Picture.h"

#include <optional>

namespace kovalune::shots {

struct FrameForm {
    std::optional<int> depth;                     ///< 8, 16 or 32 bits a channel; otherwise the file's
    std::optional<pictures::AlphaKind> alphaKind; ///< of all files, whatever they say
    std::optional<pictures::SampleType> outType;  ///< of the written samples; else what holds the depth best
    bool linear = false;                          ///< the files' colours are linear light
    bool embeds = false; ///< the settings go into the output's notes, as EncodeOptions::settings
    std::optional<pictures::FileFormat> outFormat; ///< of what goes to the standard output
    pictures::DecodeOptions decoding;
    pictures::EncodeOptions encoding;
};

} // namespace kovalune::shots
