// Writes a file so that it is there as a whole or not at all: under another name first, then renamed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace kovalune {

// Throws Failure if nothing can be written under this name: its folder is missing, it is a folder or a
// device. Touches nothing; passing it is no promise that writing succeeds.
void checkWritable(const std::filesystem::path& file);

// Whether writing the one would replace the other: links are followed, and neither need exist yet.
bool nameOneFile(const std::filesystem::path& a, const std::filesystem::path& b);

// On failure, and when a signal ends the process meanwhile, an existing file stays as it was and nothing else is
// left behind. The bytes are on the disk before they take the name. A link is followed, a dangling one too, and the
// permissions of a file that is replaced are kept where that is allowed. Throws Failure with the name.
void writeAtomically(const std::filesystem::path& file, std::span<const std::uint8_t> bytes);

} // namespace kovalune
