// A picture that the tool has drawn itself, for a file in the format that its name says.
#pragma once

#include "pictures/EncodeOptions.h"
#include "pictures/Picture.h"
#include "render/shots/FrameForm.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace kovalune::shots {

/// Before anything is read: throws Failure if no picture can be written under this name, as checkedOutputFormat does,
/// or if it is that of one of the `others`, pictures that the tool reads or writes too.
pictures::FileFormat checkDrawnFile(const std::filesystem::path& file, const std::vector<std::string>& others,
                                    bool force, const FrameForm& form = {});

/// The bytes of such a file. `drawn` has no alpha. The file's samples are of the type that its format has nearest to
/// `wanted`. Throws Failure as encodePicture does.
std::vector<uint8_t> encodeDrawn(const std::filesystem::path& file, const pictures::Picture& drawn,
                                 pictures::SampleType wanted, const pictures::EncodeOptions& options = {});

/// The same of a file of this format.
std::vector<uint8_t> encodeDrawn(pictures::FileFormat format, const pictures::Picture& drawn,
                                 pictures::SampleType wanted, const pictures::EncodeOptions& options = {});

/// As near to `drawn` as the format can.
inline std::vector<uint8_t> encodeDrawn(const std::filesystem::path& file, const pictures::Picture& drawn,
                                        const pictures::EncodeOptions& options = {}) {
    return encodeDrawn(file, drawn, drawn.sampleType, options);
}

} // namespace kovalune::shots
