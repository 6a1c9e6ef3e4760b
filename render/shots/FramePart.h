// One of several contiguous shares of a shot, for machines that take one each.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kovalune::shots {

struct FramePart {
    std::size_t number = 1; ///< from 1 to `count`
    std::size_t count = 1;
};

inline constexpr std::size_t kMostParts = 1000000;

/// "K/N" with 1 <= K <= N <= kMostParts; throws Failure for anything else.
FramePart parsePart(std::string_view text);

/// Places in a list: from `begin` to before `end`.
struct Places {
    std::size_t begin = 0;
    std::size_t end = 0;

    bool hold(std::size_t place) const { return place >= begin && place < end; }
};

/// Those of a list of so many frames. The parts are as even as can be, have every place once, and are empty where there are more of
/// them than frames. `frames` is at most kMostFrames.
constexpr Places placesOf(const FramePart& part, std::size_t frames) {
    return {(part.number - 1) * frames / part.count, part.number * frames / part.count};
}

/// A file's name with the part's number before its ending: "shot.3.log".
std::string nameForPart(const std::string& file, const FramePart& part);

} // namespace kovalune::shots
