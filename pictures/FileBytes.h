// A whole file in memory, read with a look at its beginning first: a file that cannot be what is wanted may be
// endless.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace kovalune::pictures {

/// The name of the standard input, and of the standard output.
inline constexpr char kStream[] = "-";

/// As messages name it: "standard input" for kStream.
std::string readName(const std::filesystem::path& file);

/// `checkBeginning` gets the first `count` bytes, or all of a shorter file, and throws to stop there. Memory is
/// taken for bytes that are there alone. Throws Failure with the file's name if it is missing or cannot be read.
std::vector<uint8_t> fileBytes(const std::filesystem::path& file, std::size_t count,
                               const std::function<void(std::span<const uint8_t>)>& checkBeginning);

} // namespace kovalune::pictures
