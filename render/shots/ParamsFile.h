// Files of parameters.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace kovalune::shots {

inline constexpr std::size_t kMostParamsFileBytes = std::size_t{1} << 20;

/// The whole text, for render::applyParamsText. Throws Failure with the file's name if it cannot be read or is larger
/// than kMostParamsFileBytes.
std::string paramsTextOf(const std::filesystem::path& file);

} // namespace kovalune::shots
