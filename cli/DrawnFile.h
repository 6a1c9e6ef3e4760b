// A picture that the command has drawn itself, for a file in the format that its name says.
#pragma once

#include "cli/picture/Picture.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace kovalune {

/// Before anything is read: throws Failure if no picture can be written under this name, as checkedOutputFormat does,
/// or if it is that of one of the `others`, pictures that the command reads or writes too.
FileFormat checkDrawnFile(const std::filesystem::path& file, const std::vector<std::string>& others,
                          bool force);

/// The bytes of such a file. `drawn` has no alpha. The file's samples are of the type that its format has nearest to
/// `wanted`. Throws Failure as encodePicture does.
std::vector<uint8_t> encodeDrawn(const std::filesystem::path& file, const Picture& drawn, SampleType wanted);

/// As near to `drawn` as the format can.
inline std::vector<uint8_t> encodeDrawn(const std::filesystem::path& file, const Picture& drawn) {
    return encodeDrawn(file, drawn, drawn.sampleType);
}

} // namespace kovalune
