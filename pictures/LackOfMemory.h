// Picture libraries tell a lack of memory from a damaged file by the words of their errors alone.
#pragma once

#include <string_view>

namespace kovalune::pictures {

/// Whether an error's text speaks of memory that was not to be had. "Too much memory" or beyond a limit is not
/// meant: that is damage.
bool tellsOfMemory(std::string_view text) noexcept;

} // namespace kovalune::pictures
