// What lies in a folder.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kovalune::shots {

/// All but folders and links to them, sorted by their names, so that what comes of a folder does not hang on its system. Throws
/// Failure where the folder cannot be read.
std::vector<std::string> fileNamesIn(const std::filesystem::path& folder);

} // namespace kovalune::shots
