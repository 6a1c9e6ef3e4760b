// Remembering and forgetting the defaults: what stands behind the two buttons of the Option dialog, and behind the
// functions for tools. Paths are those of makeDefaultsPath.
#pragma once

#include "effect/platform/Platform.h"
#include "hostapi/HostApi.h"

#include <string>
#include <vector>

namespace kovalune {

/// Makes the folders that the file lies in. False if they are not there afterwards.
[[nodiscard]] bool makeDefaultsFolder(const char* path);

/// The folders above the file that are not there yet, the deepest first.
std::vector<std::string> missingDefaultsFolders(const char* path);

/// Writes the values in a host's parameter array to the file, in the table's order. Its folder must exist. False if a
/// value was lost; the others are written all the same. Without an array nothing is written. `reason`, if there is one, gets
/// platform::lastError() of the first value that was lost.
[[nodiscard]] bool saveDefaults(PF_ParamDef** params, const char* path, int* reason = nullptr);

/// Deletes the file, whatever it holds, and the folders above it that are empty then, up to the user's folder for
/// settings, which stays; where that folder is unknown, no more than the two that have our own names. Tells what became of
/// the file.
platform::Deletion removeDefaultsFile(const char* path);

} // namespace kovalune
