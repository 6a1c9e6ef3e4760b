#include "render/shots/FrameList.h"

#include "render/shots/FramePattern.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <system_error>
#include <unordered_set>

namespace kovalune::shots {

namespace {

constexpr int64_t kFurthest = 1000000000000000; // what is left until numbers end is room to shift them

[[noreturn]] void refuse(std::string_view text) {
    throw text::Failure(text::FailureKind::kUsage,
                        "--frames takes N, A-B or A-BxS, joined by commas, not " + text::inQuotes(text));
}

[[noreturn]] void refuseSoMany() {
    throw text::Failure(text::FailureKind::kUsage,
                        "--frames takes " + std::to_string(kMostFrames) + " frames at the most");
}

/// Reads the number at the beginning of `rest` and takes it off.
bool takeNumber(std::string_view& rest, int64_t& number) {
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (error != std::errc()) {
        return false;
    }
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    return number >= -kFurthest && number <= kFurthest;
}

struct Range {
    int64_t first = 0;
    int64_t last = 0;
    int64_t step = 1; ///< above 0, also where the range runs back
};

Range rangeOf(std::string_view text) {
    std::string_view rest = text;
    Range range;
    bool right = takeNumber(rest, range.first);
    range.last = range.first;
    if (right && rest.starts_with('-')) {
        rest.remove_prefix(1);
        right = takeNumber(rest, range.last);
        if (right && (rest.starts_with('x') || rest.starts_with(':'))) {
            rest.remove_prefix(1);
            right = takeNumber(rest, range.step);
        }
    }
    if (!right || !rest.empty() || range.step < 1) {
        refuse(text);
    }
    return range;
}

} // namespace

std::vector<int64_t> parseFrames(std::string_view text) {
    std::vector<int64_t> frames;
    std::unordered_set<int64_t> known;
    while (true) {
        const std::size_t comma = std::min(text.find(','), text.size());
        const Range range = rangeOf(text::trimmed(text.substr(0, comma)));
        const int64_t steps = std::abs(range.last - range.first) / range.step;
        if (steps >= static_cast<int64_t>(kMostFrames)) {
            refuseSoMany();
        }
        for (int64_t n = 0; n <= steps; ++n) {
            const int64_t frame = range.first + (range.last < range.first ? -n : n) * range.step;
            if (known.insert(frame).second) {
                frames.push_back(frame);
            }
        }
        if (frames.size() > kMostFrames) {
            refuseSoMany();
        }
        if (comma == text.size()) {
            return frames;
        }
        text.remove_prefix(comma + 1);
    }
}

std::string framesText(std::span<const int64_t> frames, int width) {
    std::string text;
    for (std::size_t at = 0; at < frames.size();) {
        std::size_t end = at + 1;
        while (end < frames.size() && frames[end] == frames[end - 1] + 1) {
            ++end;
        }
        text += (text.empty() ? "" : ",") + frameText(frames[at], width);
        if (end - at > 1) {
            text += (end - at > 2 ? "-" : ",") + frameText(frames[end - 1], width);
        }
        at = end;
    }
    return text;
}

} // namespace kovalune::shots
