// Files under another name until they are whole: how they are called, how their writer holds them, and how those that a killed
// process has left are found and removed.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kovalune::shots {

/// ".kovalune-<16 hexadecimal digits at most>.tmp", drawn at random: numbers of processes say nothing across machines and
/// containers, and the target's name may already be as long as names can be.
std::string temporaryName();

/// Whether it begins and ends as these names do.
bool isTemporaryName(const std::string& name);

/// Holds the open file for as long as this process lives and has none of its descriptors closed, on a network's folders too.
/// Where there are no locks nothing is held.
void holdTemporary(int descriptor);

struct SweptFolder {
    std::vector<std::filesystem::path> removed; ///< by their names
    std::vector<std::string>
        left; ///< those that may have been left, but could not be looked at or removed, with the reason
};

/// Removes the temporary files of the folder that nobody holds and that are older than 10 s, which is how long a writer may take
/// from making its file to holding it; where there are no locks, those older than a day. Times are by the folder's own
/// clock. A folder that is not there has none. No thread of this process may be writing there. Throws Failure where the
/// folder cannot be looked at.
SweptFolder sweepFolder(const std::filesystem::path& folder);

} // namespace kovalune::shots
