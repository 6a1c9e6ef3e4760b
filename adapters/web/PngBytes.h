// PNG files in and out where no library can be linked: what unpacks and packs are headers, the rest is here. Samples, channels
// and notes are those of the command's reader.
#pragma once

#include "pictures/DecodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kovalune::web {

/// Whether these bytes begin as a PNG.
bool beginsAsPng(std::span<const uint8_t> bytes);

struct PngForm {
    uint32_t width = 0;
    uint32_t height = 0;
    pictures::SampleType sampleType = pictures::SampleType::kUint8; ///< of the picture that is made of it
};

/// What the header says, unchecked; nothing where there is none.
std::optional<PngForm> pngForm(std::span<const uint8_t> bytes);

/// `name` is for messages. Throws Failure with it if the file is damaged, cut short or of more pixels than the options allow;
/// every chunk's checksum is looked at, and a note that is damaged is left out.
pictures::Picture decodePng(std::span<const uint8_t> bytes, const std::string& name,
                            const pictures::DecodeOptions& options);

/// The bytes of a whole file with the picture's notes, which are those of a PNG. Samples are of Uint8 or Uint16. Throws Failure
/// where they take 2 GiB.
std::vector<uint8_t> encodePng(const pictures::Picture& picture);

} // namespace kovalune::web
