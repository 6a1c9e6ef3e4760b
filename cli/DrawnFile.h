// Writes a picture that the command has drawn itself, in the format that the file's name says.
#pragma once

#include "cli/picture/Picture.h"

#include <filesystem>
#include <string>
#include <vector>

namespace kovalune {

// Before anything is read: throws Failure if no picture can be written under this name, or if it is that of one
// of the `others`, pictures that the command reads or writes too.
void checkDrawnFile(const std::filesystem::path& file, const std::vector<std::string>& others);

// `drawn` has no alpha. The file's samples are of the type that its format has nearest to `wanted`. Throws
// Failure as checkedOutputFormat, encodePicture and writeAtomically do.
void writeDrawn(const std::filesystem::path& file, const Picture& drawn, SampleType wanted);

// As near to `drawn` as the format can.
inline void writeDrawn(const std::filesystem::path& file, const Picture& drawn) {
    writeDrawn(file, drawn, drawn.sampleType);
}

} // namespace kovalune
