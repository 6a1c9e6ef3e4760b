// The two scans of a blur along one line: which pixels around the current one count, and the sums that run
// along with them. The scans know nothing of what is summed: a blur's `Sums` adds and subtracts pixels. And the weighted sum
// over the core of a window, pixel by pixel.
//
//   run scan      a masked-out pixel ends the window: nothing beyond a gap counts
//   window scan   a masked-out pixel is a hole in the window: pixels beyond it count
#pragma once

#include "effect/blur/GaussKernel.h"

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// One line (row or column) as a blur reads it.
template <class Pixel>
struct Line {
    const Pixel* pixels;
    const uint8_t* mask;
    const uint8_t* keep; ///< where not 0 a pixel keeps its alpha; null in a blur that leaves alpha alone
    int32_t count;
    int32_t reach; ///< how far a window extends to either side, at most `count`
};

/// The window around a pixel, both ends inclusive.
struct Span {
    int32_t first;
    int32_t last;
};

struct RunScan {
    /// Inside a window every pixel is masked in.
    static constexpr bool kWindowHasHoles = false;

    /// Calls `blur(x, span, sums)` for every masked-in pixel of its line, in order. The pixel that leaves is
    /// subtracted before the one that enters is added, and a new run starts its sums anew.
    template <class Blur>
    static void scan(const Blur& blur) {
        const auto& line = blur.line;
        typename Blur::Sums sums;
        int32_t runStart = 0;
        int32_t runEnd = -1;
        for (int32_t x = 0; x < line.count; ++x) {
            if (line.mask[x] == 0) {
                continue;
            }
            const int32_t right = x + std::min(line.reach, line.count - 1 - x);
            if (runEnd < x) {
                sums = {};
                runStart = x;
                for (int32_t j = x; j <= right && line.mask[j] != 0; ++j) {
                    sums.add(line.pixels[j]);
                    runEnd = j;
                }
            } else {
                if (runStart < x - line.reach) {
                    sums.subtract(line.pixels[runStart]);
                    runStart = x - line.reach;
                }
                // Past a masked-out pixel the distance grows beyond 1, and the run has ended for good.
                if (right - runEnd == 1 && line.mask[right] != 0) {
                    runEnd = right;
                    sums.add(line.pixels[right]);
                }
            }
            blur(x, Span{runStart, runEnd}, sums);
        }
    }
};

struct WindowScan {
    static constexpr bool kWindowHasHoles = true;

    /// Calls `blur(x, span, sums)` for every masked-in pixel of its line, in order. The pixel that enters is
    /// added before the one that leaves is subtracted.
    template <class Blur>
    static void scan(const Blur& blur) {
        const auto& line = blur.line;
        const int32_t prefilled = std::min(line.reach, line.count - 1);
        typename Blur::Sums sums;
        for (int32_t j = 0; j < prefilled; ++j) {
            if (line.mask[j] != 0) {
                sums.add(line.pixels[j]);
            }
        }
        Span window = {0, prefilled - 1};
        for (int32_t x = 0; x < line.count; ++x) {
            const int32_t right = x + std::min(line.reach, line.count - 1 - x);
            if (right != window.last) {
                if (line.mask[right] != 0) {
                    sums.add(line.pixels[right]);
                }
                window.last = right;
            }
            if (window.first < x - line.reach) {
                if (line.mask[window.first] != 0) {
                    sums.subtract(line.pixels[window.first]);
                }
                window.first = x - line.reach;
            }
            if (line.mask[x] != 0 && sums.count != 0) {
                blur(x, window, sums);
            }
        }
    }
};

/// `core.add(pixel, tap)` for the masked-in pixels of the core, at most 299 to either side of the centre. The
/// order is part of a float result: from the centre's left neighbour down, then from the centre up.
template <class Core, class Scan, class Pixel>
Core sumCore(const Line<Pixel>& line, const uint16_t* taps, int32_t x, Span span) {
    const int32_t lo = std::max(x - (kMaxTaps - 1), span.first);
    const int32_t hi = std::min(x + (kMaxTaps - 1), span.last);
    Core core;
    for (int32_t j = x - 1; j >= lo; --j) {
        if (!Scan::kWindowHasHoles || line.mask[j] != 0) {
            core.add(line.pixels[j], taps[x - j]);
        }
    }
    for (int32_t j = x; j <= hi; ++j) {
        if (!Scan::kWindowHasHoles || line.mask[j] != 0) {
            core.add(line.pixels[j], taps[j - x]);
        }
    }
    return core;
}

} // namespace kovalune
