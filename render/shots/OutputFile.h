// The file that a picture is to be written to.
#pragma once

#include "pictures/Picture.h"
#include "render/shots/FrameForm.h"

#include <filesystem>

namespace kovalune::shots {

/// The format of a file of this name. Throws Failure if no picture can be written under it: its end names no format or
/// one that is not built in, its folder is missing or takes no files, it is a folder or a device, or without `force` it
/// is write-protected; or if files of that format cannot be as the form wants them. Leaves nothing behind.
pictures::FileFormat checkedOutputFormat(const std::filesystem::path& output, bool force = false,
                                         const FrameForm& form = {});

/// The last of these checks alone. Throws Failure with what the format has instead.
void checkForm(const std::filesystem::path& output, pictures::FileFormat format, const FrameForm& form);

} // namespace kovalune::shots
