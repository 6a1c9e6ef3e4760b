// The parts in which a line is blurred: stretches that share no window, and in them blocks of pixels whose sums are made at
// once.
#pragma once

#include "effect/blur/LineWeights.h"
#include "effect/blur/LineWindow.h"
#include "effect/raster/MaskRuns.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kovalune {

/// Whether a stretch is a run so short that a plain walk costs less than taking it apart. Neighbouring ones may be walked
/// together.
template <class Scan>
bool isShortRun(Span stretch) {
    return !Scan::kWindowHasHoles && stretch.last - stretch.first < 6;
}

/// Before any run was met.
inline constexpr Span kNoRun = {std::numeric_limits<int32_t>::max(), -1};

/// A run, or some neighbouring ones, as a line of its own.
template <class Pixel>
Line<Pixel> partOf(const Line<Pixel>& line, Span run) {
    return {line.pixels + run.first, line.mask + run.first,
            line.keep != nullptr ? line.keep + run.first : nullptr, run.last - run.first + 1,
            std::min(line.reach, run.last - run.first + 1)};
}

/// Calls `block(x, count)` for the masked-in pixels of [from, past) and what small holes lie between them, at most
/// kBlockPixels at once.
template <class Block>
void forEachBlock(const uint8_t* mask, int32_t from, int32_t past, const Block& block) {
    constexpr int32_t kLook = 16; // pixels at a time; a hole of twice as many is sure to be seen
    for (int32_t x = nextMaskedIn(mask, from, past); x < past;) {
        const int32_t limit = std::min(past, x + kBlockPixels);
        int32_t end = x;
        while (end < limit) {
            const int32_t next = std::min(limit, end + kLook);
            if (nextMaskedIn(mask, end, next) == next) {
                break;
            }
            end = next;
        }
        end = endOfMaskedIn(mask, x, end);
        block(x, end - x);
        x = nextMaskedIn(mask, end, past);
    }
}

/// Calls `stretch(span)` for the parts of a line that share no window: for the run scan its runs; for the window scan what no
/// hole of at least `reach` pixels divides.
template <class Scan, class Stretch>
void forEachStretch(const uint8_t* mask, int32_t count, int32_t reach, const Stretch& stretch) {
    int32_t first = nextMaskedIn(mask, 0, count);
    while (first < count) {
        int32_t last = first;
        if constexpr (Scan::kWindowHasHoles) {
            last = nextMaskedOut(mask, first, count) - 1; // mostly all there is
            // The furthest pixel that is near enough, again and again.
            for (bool grows = true; grows;) {
                const int32_t limit = std::min(count, last + 1 + std::max(reach, 1));
                const int32_t further = endOfMaskedIn(mask, last + 1, limit) - 1;
                grows = further > last;
                last = further;
            }
        } else {
            last = nextMaskedOut(mask, first, count) - 1;
        }
        stretch(Span{first, last});
        first = nextMaskedIn(mask, last + 1, count);
    }
}

} // namespace kovalune
