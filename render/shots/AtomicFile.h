// Writes a file so that it is there as a whole or not at all: under another name first, then renamed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace kovalune::shots {

/// Whether a file is there that the user may not write, or whose permissions let nobody write it. That many a system
/// lets it be replaced all the same, root's above all, is not what its owner meant.
bool isWriteProtected(const std::filesystem::path& file);

/// Throws Failure if nothing can be written under this name: it is a folder or a device, its folder is missing, takes no
/// files or, by its sticky bit, lets nobody replace another user's, or without `force` it is write-protected. Leaves
/// nothing behind; passing it is no promise that writing succeeds.
void checkWritable(const std::filesystem::path& file, bool force = false);

/// Where the file is made before it gets its name: the folder that it is in, or that its link leads to. Throws Failure for a link
/// that cannot be followed.
std::filesystem::path folderWrittenTo(const std::filesystem::path& file);

/// Whether writing the one would replace the other: links are followed, and neither need exist yet.
bool nameOneFile(const std::filesystem::path& a, const std::filesystem::path& b);

struct FileContent {
    std::filesystem::path file;
    std::span<const uint8_t> bytes;
};

/// On failure, and when a signal ends the process meanwhile, existing files stay as they were and nothing else is
/// left behind. All bytes are on the disk before any of them takes a name. A link is followed, a dangling one too; of a
/// file that is replaced the owner, the group and the permissions are kept as far as the system allows, whether it is
/// write-protected or not; where the group cannot be kept, another one gets the rights of all others.
/// Throws Failure with the name.
void writeAtomically(std::span<const FileContent> files);

void writeAtomically(const std::filesystem::path& file, std::span<const uint8_t> bytes);

} // namespace kovalune::shots
