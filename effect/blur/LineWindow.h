// The two scans of a blur along one line: which pixels around the current one count, and the sums that run
// along with them. The scans know nothing of what is summed: `Sums` adds and subtracts pixels.
//
//   run scan      a masked-out pixel ends the window: nothing beyond a gap counts
//   window scan   a masked-out pixel is a hole in the window: pixels beyond it count
#pragma once

#include <algorithm>
#include <cstdint>

namespace kovalune {

/// One line (row or column) as a scan sees it. `reach` is how far a window extends to either side, at most
/// `count`.
template <class Pixel>
struct Line {
    const Pixel* pixels;
    const uint8_t* mask;
    int32_t count;
    int32_t reach;
};

/// The window around a pixel, both ends inclusive.
struct Span {
    int32_t first;
    int32_t last;
};

struct RunScan {
    /// Inside a window every pixel is masked in.
    static constexpr bool kWindowHasHoles = false;

    /// Calls `emit(x, span, sums)` for every masked-in pixel, in order. The pixel that leaves is subtracted
    /// before the one that enters is added, and a new run starts its sums anew.
    template <class Pixel, class Sums, class Emit>
    static void scan(const Line<Pixel>& line, Sums& sums, Emit&& emit) {
        int32_t runStart = 0;
        int32_t runEnd = -1;
        for (int32_t x = 0; x < line.count; ++x) {
            if (line.mask[x] == 0) {
                continue;
            }
            const int32_t right = x + std::min(line.reach, line.count - 1 - x);
            if (runEnd < x) {
                sums = Sums();
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
            emit(x, Span{runStart, runEnd}, sums);
        }
    }
};

struct WindowScan {
    static constexpr bool kWindowHasHoles = true;

    /// Calls `emit(x, span, sums)` for every masked-in pixel, in order. The pixel that enters is added before
    /// the one that leaves is subtracted.
    template <class Pixel, class Sums, class Emit>
    static void scan(const Line<Pixel>& line, Sums& sums, Emit&& emit) {
        const int32_t prefilled = std::min(line.reach, line.count - 1);
        sums = Sums();
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
                emit(x, window, sums);
            }
        }
    }
};

} // namespace kovalune
