// Weighted sums where a line has few colours: each change of colour adds the kernel's running sum, scaled by what changes, so
// that a sum costs by the changes in sight and not by the taps. For integers that is the very sum of products, modulo 2^32;
// for floats where all values in sight are so near to each other in size that every sum of products is exact.
#pragma once

#include "effect/blur/LineWeights.h"
#include "effect/blur/LineWindow.h"
#include "effect/blur/PlanarOf.h"
#include "effect/raster/MaskRuns.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace kovalune {

/// What is made for a block of pixels: the sums of each channel, kSumsStep apart, and the weights that fell into their windows.
template <class Format>
struct WeighedBlock {
    static constexpr std::size_t kSumsStep = kBlockPixels + kPadding;
    typename PlanarOf<Format>::Sum* sums;
    uint32_t* weights;
};

template <class Format, std::size_t kChannels>
class ColorSteps {
public:
    using Planar = PlanarOf<Format>;
    using Sum = typename Planar::Sum;
    using Pixel = typename Format::Pixel;

    ColorSteps(const Line<Pixel>& line, Span stretch, const LineWeights& weights)
        : line_(line), stretch_(stretch), weights_(weights) {}

    /// Makes the block of `count` pixels from `x` on. False where that would take longer than all products, or would not be
    /// exact; the block holds anything then.
    template <class Keys>
    bool weigh(const Keys& keys, int32_t x, int32_t count, const WeighedBlock<Format>& block) {
        if (!findChanges(keys, x, count)) {
            return false;
        }
        typename Planar::Exactness exactness;
        Values before = valuesAt(first_);
        bool exact = exactness.holds(before);
        for (std::size_t c = 0; c < kChannels; ++c) {
            std::fill_n(block.sums + c * block.kSumsStep, count, Planar::scaled(before[c], weights_.whole()));
        }
        std::fill_n(block.weights, count, first_ != kNone ? weights_.whole() : 0U);
        bool counted = first_ != kNone;
        for (int32_t n = 0; n < changes_ && exact; ++n) {
            const Change& change = change_[static_cast<std::size_t>(n)];
            const Values after = valuesAt(change.pixel);
            exact = exactness.holds(after);
            // The window of the block's pixel `begin` is the first that the change reaches into.
            const int32_t begin = std::max(0, change.at - weights_.reach() - x);
            const int32_t at = x + begin + weights_.reach() - change.at;
            for (std::size_t c = 0; c < kChannels; ++c) {
                if (after[c] != before[c]) {
                    Planar::addScaled(weights_, at, after[c] - before[c],
                                      block.sums + c * block.kSumsStep + begin, count - begin);
                }
            }
            const bool counts = change.pixel != kNone;
            if (counts != counted) {
                kernels().addScaled(weights_.running() + at, counts ? 1U : ~0U, block.weights + begin,
                                    count - begin);
                counted = counts;
            }
            before = after;
        }
        return exact;
    }

private:
    using Values = std::array<Sum, kChannels>;

    /// No pixel: masked out, or outside the stretch.
    static constexpr int32_t kNone = -1;
    static constexpr int32_t kMostChanges = 96;

    struct Change {
        int32_t at;    ///< the first place that is different
        int32_t pixel; ///< like which all are from there on, or kNone
    };

    Values valuesAt(int32_t pixel) const {
        Values values{};
        if (pixel != kNone) {
            Planar::take(line_.pixels[pixel], values);
        }
        return values;
    }

    /// Finds what changes in sight of the block. False where there is too much of it: a change takes about as long as eight
    /// taps.
    template <class Keys>
    bool findChanges(const Keys& keys, int32_t x, int32_t count) {
        const int32_t reach = weights_.reach();
        const int32_t most = std::min(kMostChanges, (2 * reach + 1) / 8);
        const int32_t from = std::max(stretch_.first, x - reach);
        const int32_t end = std::min(stretch_.last, x + count - 1 + reach) + 1;
        // What lies left of all windows may be taken for anything.
        first_ = x - reach > stretch_.first && line_.mask[from] != 0 ? from : kNone;
        changes_ = 0;
        for (int32_t run = nextMaskedIn(line_.mask, from, end); run < end;) {
            const int32_t runEnd = nextMaskedOut(line_.mask, run, end);
            auto key = keys.of(run);
            if (run != first_ && !note(run, run, most)) {
                return false;
            }
            for (int32_t j = keys.sameFrom(run, runEnd, key); j < runEnd; ++j) {
                if (keys.of(j) != key) {
                    key = keys.of(j);
                    if (!note(j, j, most)) {
                        return false;
                    }
                } else {
                    j = keys.sameFrom(j + 1, runEnd, key) - 1;
                }
            }
            // Where sight ends inside a run, nothing is known to change.
            if ((runEnd < end || end > stretch_.last) && !note(runEnd, kNone, most)) {
                return false;
            }
            run = nextMaskedIn(line_.mask, runEnd, end);
        }
        return true;
    }

    bool note(int32_t at, int32_t pixel, int32_t most) {
        if (changes_ >= most) {
            return false;
        }
        change_[static_cast<std::size_t>(changes_++)] = {at, pixel};
        return true;
    }

    const Line<Pixel>& line_;
    Span stretch_;
    const LineWeights& weights_;
    int32_t first_ = kNone; ///< the pixel that fills the windows' left end
    std::array<Change, kMostChanges> change_;
    int32_t changes_ = 0;
};

} // namespace kovalune
