// The file that a picture is to be written to.
#pragma once

#include "pictures/Picture.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/FrameForm.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace kovalune::shots {

/// Whether this is the standard output: "-".
bool isStandardOutput(const std::filesystem::path& output);

/// The format of a file of this name, or of the standard output, for which the form says it and no other. Throws Failure if no
/// picture can be written under it: its end names no format or one that is not built in, its folder is missing or takes no
/// files, it is a folder or a device, or without `force` it is write-protected; or if files of that format cannot be as the form
/// wants them. Leaves nothing behind.

pictures::FileFormat checkedOutputFormat(const std::filesystem::path& output, bool force = false,
                                         const FrameForm& form = {});

/// The same without looking at the file and its folder.
pictures::FileFormat outputFormat(const std::filesystem::path& output, const FrameForm& form);

/// The last of these checks alone. Throws Failure with what the format has instead.
void checkForm(const std::filesystem::path& output, pictures::FileFormat format, const FrameForm& form);

/// Throws Failure where writing `file` would replace one of `others`, which are `what` ("the picture") of the command. Standard
/// streams replace nothing.
void checkReplacesNone(const std::filesystem::path& file, const std::vector<std::string>& others,
                       const std::string& what);

/// As writeAtomically does; what goes to the standard output goes there when all files are in place. Throws Failure.
void writeOutputs(std::span<const FileContent> outputs);

void writeOutput(const std::filesystem::path& output, std::span<const uint8_t> bytes);

} // namespace kovalune::shots
