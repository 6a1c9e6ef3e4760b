// Parameter settings as a text file, one LABEL=VALUE a line: what --params reads and --print-params writes.
// Blank lines and lines that start with ';' or '#' say nothing. The defaults file of the effect is read too, with its
// section's name and its colours as one line a component ("Color 1.r=3").
#pragma once

#include "host/Session.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace kovalune {

inline constexpr std::size_t kMostParamsFileBytes = std::size_t{1} << 20;

/// Sets what the file says. Throws Failure with the file's name if it cannot be read, is larger than
/// kMostParamsFileBytes or is text in UTF-16, with the line's number too for an unknown label, a value that the
/// parameter does not take, a carriage return within the line, and a label that a line before has. Returns the indices of
/// the parameters that it names.
std::set<int> applyParamsFile(host::Session& session, const std::filesystem::path& file);

/// `name` is for messages.
std::set<int> applyParamsText(host::Session& session, std::string_view text, const std::string& name);

/// All parameters that can be set, with their values to the last bit, as applyParamsText takes them. What it
/// could not take, as a label that several parameters have, is a line that says nothing.
std::string paramsFileText(const host::Session& session);

/// The same for the parameters that `chosen` is true of, by their index.
std::string paramsFileText(const host::Session& session, const std::function<bool(int index)>& chosen);

} // namespace kovalune
