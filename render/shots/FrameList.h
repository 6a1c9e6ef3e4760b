// Lists of frames as a command line has them: "1-24,30,40-50x2".
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::shots {

inline constexpr std::size_t kMostFrames = 1000000;

/// N, A-B or A-BxS (A-B:S too), joined by commas, in the order that they stand in; "10-1" runs back. A frame that comes again counts where
/// it came first. Throws Failure for any other text, and for more than kMostFrames frames.
std::vector<int64_t> parseFrames(std::string_view text);

/// The same frames as parseFrames takes them, numbers as frameText has them: "0005-0008,0012".
std::string framesText(std::span<const int64_t> frames, int width);

} // namespace kovalune::shots
