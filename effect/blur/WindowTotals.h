// The plain sums of all windows along a line, from running totals: of alpha over all counted pixels, of colour over those
// that are not transparent. For integers that is what a scan sums along the line, modulo 2^32; for floats where all sums are
// exact, since a difference of totals knows nothing of a scan's roundings.
#pragma once

#include "effect/blur/LineWindow.h"
#include "effect/blur/PlanarOf.h"
#include "effect/raster/ScratchBlock.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace kovalune {

template <class Format>
class WindowTotals {
public:
    using Planar = PlanarOf<Format>;
    using Sum = typename Planar::Sum;
    using Pixel = typename Format::Pixel;

    WindowTotals(int32_t lineLength, ScratchLayout& layout) {
        const auto room = static_cast<std::size_t>(lineLength) + 1;
        for (Sum*& totals : color_) {
            totals = layout.take<Sum>(room);
        }
        alpha_ = layout.take<Sum>(room);
        opaque_ = layout.take<uint32_t>(room);
        counted_ = layout.take<uint32_t>(room);
    }

    /// Totals up the pixels of `part`, alpha too if asked for. False where the sums would not be exact.
    bool load(const Line<Pixel>& line, Span part, bool withAlpha) {
        part_ = part;
        std::array<Sum, 3> color{};
        Sum alpha = 0;
        uint32_t opaque = 0;
        uint32_t counted = 0;
        typename Planar::Exactness ofColor;
        typename Planar::Exactness ofAlpha;
        bool exact = true;
        for (int32_t x = part.first, i = 0;; ++x, ++i) {
            for (std::size_t c = 0; c < 3; ++c) {
                color_[c][i] = color[c];
            }
            alpha_[i] = alpha;
            opaque_[i] = opaque;
            counted_[i] = counted;
            if (x > part.last) {
                break;
            }
            if (line.mask[x] == 0) {
                continue;
            }
            const Pixel& pixel = line.pixels[x];
            if (withAlpha) {
                std::array<Sum, 1> own;
                Planar::take(pixel, own);
                exact = ofAlpha.holds(own) && exact;
                alpha += own[0];
            }
            ++counted;
            if (pixel.alpha != 0) {
                std::array<Sum, 3> own;
                Planar::take(pixel, own);
                exact = ofColor.holds(own) && exact;
                for (std::size_t c = 0; c < 3; ++c) {
                    color[c] += own[c];
                }
                ++opaque;
            }
        }
        return exact;
    }

    /// Calls `each(i, right, left)` for the `count` windows from `x` on: their totals are those before `right` less those
    /// before `left`. The windows' pixels are in the part, but for those outside the line.
    template <class Each>
    void forWindows(int32_t x, int32_t count, int32_t reach, const Each& each) const {
        for (int32_t i = 0; i < count; ++i) {
            each(i, std::min(x + i + reach, part_.last) + 1 - part_.first,
                 std::max(x + i - reach, part_.first) - part_.first);
        }
    }

    /// Sums of colour and how many pixels have any, of `count` windows from `x` on. Where they streak, a pixel that left is
    /// added once more instead of being taken off.
    template <bool streaks>
    void sumColors(int32_t x, int32_t count, int32_t reach, const std::array<Sum*, 3>& sums,
                   uint32_t* opaque) const {
        const auto add = [](auto right, auto left) { return streaks ? right + left : right - left; };
        for (std::size_t c = 0; c < 3; ++c) {
            forWindows(x, count, reach, [&](int32_t i, int32_t right, int32_t left) {
                sums[c][i] = add(color_[c][right], color_[c][left]);
            });
        }
        forWindows(x, count, reach, [&](int32_t i, int32_t right, int32_t left) {
            opaque[i] = add(opaque_[right], opaque_[left]);
        });
    }

    void sumAlpha(int32_t x, int32_t count, int32_t reach, Sum* sums, uint32_t* counted) const {
        forWindows(x, count, reach, [&](int32_t i, int32_t right, int32_t left) {
            sums[i] = alpha_[right] - alpha_[left];
            counted[i] = counted_[right] - counted_[left];
        });
    }

private:
    // [i]: of the pixels before the part's i-th.
    std::array<Sum*, 3> color_;
    Sum* alpha_;
    uint32_t* opaque_;
    uint32_t* counted_;
    Span part_{};
};

} // namespace kovalune
