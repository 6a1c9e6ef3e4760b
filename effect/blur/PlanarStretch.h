// A stretch of a line with its channels apart, and the weighted sums along it. Nothing outside the stretch counts in it.
#pragma once

#include "effect/blur/ColorSteps.h"
#include "effect/blur/FlatWindows.h"
#include "effect/blur/LineParts.h"
#include "effect/blur/LineWeights.h"
#include "effect/blur/LineWindow.h"
#include "effect/blur/PlanarOf.h"
#include "effect/raster/MaskRuns.h"
#include "effect/share/SizeProduct.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace kovalune {

template <class Format, std::size_t kChannels>
class PlanarStretch {
public:
    using Planar = PlanarOf<Format>;
    using Sample = typename Planar::Sample;
    using Sum = typename Planar::Sum;
    using Pixel = typename Format::Pixel;

    PlanarStretch(int32_t lineLength, ScratchLayout& layout)
        : planeStep_((lineLength + 2 * kMaxTaps + 2 + 2 * kPadding) / 16 * 16 + 16) {
        const auto room = static_cast<std::size_t>(planeStep_);
        planes_ = layout.take<Sample>(room * kChannels);
        counted_ = layout.take<uint32_t>(room);
        sums_ = layout.take<Sum>(kSumsStep * kChannels);
        weights_ = layout.take<uint32_t>(kBlockPixels + kPadding);
        reciprocals_ = layout.take<double>(kBlockPixels);
    }

    /// Turns to a stretch of a line. Both, and the weights, stay in use.
    void begin(const Line<Pixel>& line, Span stretch, const LineWeights& weights) {
        line_ = &line;
        first_ = stretch.first;
        count_ = stretch.last - stretch.first + 1;
        kernel_ = &weights;
        reach_ = std::min(weights.reach(), count_ - 1);
        isLoaded_ = false;
    }

    /// Hands a part of the stretch out in parts: where windows show one colour alone to `flat(from, past, like)`, as divideByFlatness has
    /// it, unless `flatKeeps` is false or it refuses by false; all else, once its sums and weights are made, to
    /// `block(x, count)`. For the keys see LineKeys. False where the stretch has values that the sums cannot hold; some parts
    /// have been handed out then.
    template <class Keys, class Flat, class Block>
    bool divide(Span part, const Keys& keys, bool flatKeeps, const Flat& flat, const Block& block) {
        bool fits = true;
        const auto mixed = [&](int32_t from, int32_t past) {
            forEachBlock(line_->mask, from, past, [&](int32_t x, int32_t count) {
                fits = fits && weigh(keys, x, count);
                if (fits) {
                    block(x, count);
                }
            });
        };
        const auto flatIfTaken = [&](int32_t from, int32_t past, int32_t like) {
            if (!flat(from, past, like)) {
                mixed(from, past);
            }
        };
        if (flatKeeps) {
            const Span stretch = {first_, first_ + count_ - 1};
            divideByFlatness(line_->mask, stretch, part, line_->reach, keys, flatIfTaken, mixed);
        } else {
            mixed(part.first, part.last + 1);
        }
        return fits;
    }

    const Sum* sums(std::size_t channel) const { return sums_ + channel * kSumsStep; }
    const uint32_t* weights() const { return weights_; }

    /// The means of the core alone.
    void coreMeans(const std::array<typename Planar::Mean*, kChannels>& means, int32_t count) const {
        const auto divide = [&](int32_t first, int32_t past) {
            if (first >= past) {
                return;
            }
            kernels().reciprocals(weights_ + first, reciprocals_, past - first);
            for (std::size_t c = 0; c < kChannels; ++c) {
                Planar::coreMeans(sums(c) + first, weights_ + first, reciprocals_, means[c] + first,
                                  past - first);
            }
        };
        divide(0, wholeFrom_);
        for (std::size_t c = 0; c < kChannels && wholeFrom_ < wholeTo_; ++c) {
            Planar::wholeMeans(sums(c) + wholeFrom_, means[c] + wholeFrom_, wholeTo_ - wholeFrom_);
        }
        divide(wholeTo_, count);
    }

private:
    /// Makes sums and weights of at most kBlockPixels pixels from `x` on, by steps or by taps, whichever costs less.
    template <class Keys>
    bool weigh(const Keys& keys, int32_t x, int32_t count) {
        ColorSteps<Format, kChannels> steps(*line_, {first_, first_ + count_ - 1}, *kernel_);
        if (steps.weigh(keys, x, count, {sums_, weights_})) {
            wholeFrom_ = wholeTo_ = 0;
            return true;
        }
        if (!isLoaded_) {
            isLoaded_ = true;
            summing_ = load();
        }
        if (summing_ == Summing::kNone) {
            return false;
        }
        weighByTaps(x, count);
        return true;
    }

    /// Takes the pixels apart.
    Summing load() {
        const Pixel* const pixels = line_->pixels + first_;
        const uint8_t* const mask = line_->mask + first_;
        hasHoles_ = nextMaskedOut(mask, 0, count_) < count_;
        std::array<Sample*, kChannels> at;
        for (std::size_t c = 0; c < kChannels; ++c) {
            at[c] = start(planes_ + sizeProduct<std::ptrdiff_t>(c, planeStep_));
        }
        Summing summing{};
        if constexpr (kChannels == 3) {
            summing = Planar::splitColors(pixels, mask, count_, at.data());
        } else {
            summing = Planar::splitAlpha(pixels, mask, count_, at[0]);
        }
        if (summing == Summing::kNone) {
            return summing;
        }
        for (Sample* const samples : at) {
            pad(samples);
            Planar::makeReady(samples - reach_, count_ + 2 * reach_ + 1);
        }
        if (hasHoles_) {
            uint32_t* const counted = start(counted_);
            kernels().splitMask(mask, count_, counted);
            pad(counted);
            kernels().pairUp(counted - reach_, 0, count_ + 2 * reach_ + 1);
        }
        return summing;
    }

    void weighByTaps(int32_t x, int32_t count) {
        Planar::weigh({.line = start(planes_) + (x - first_),
                       .lineStep = planeStep_,
                       .sums = sums_,
                       .sumsStep = kSumsStep,
                       .channels = kChannels,
                       .count = count},
                      *kernel_, reach_, summing_);
        wholeFrom_ = wholeTo_ = 0;
        if (hasHoles_ && hasHoleAround(x, count)) {
            kernels().weighPairs({.line = start(counted_) + (x - first_) - reach_,
                                  .lineStep = 0,
                                  .sums = weights_,
                                  .sumsStep = 0,
                                  .channels = 1,
                                  .count = count},
                                 kernel_->from(reach_), reach_ + 1, 0);
            return;
        }
        const int32_t last = first_ + count_ - 1;
        const uint32_t whole = kernel_->sum(-reach_, reach_);
        std::fill_n(weights_, count, whole);
        const int32_t inner = std::clamp(first_ + reach_ - x, 0, count);       // whole windows from here
        const int32_t outer = std::clamp(last - reach_ + 1 - x, inner, count); // to here
        const auto cut = [&](int32_t from, int32_t past) {
            for (int32_t i = from; i < past; ++i) {
                weights_[i] = kernel_->sum(-std::min(reach_, x + i - first_), std::min(reach_, last - x - i));
            }
        };
        cut(0, inner);
        cut(outer, count);
        if (whole == kWeightOne) {
            wholeFrom_ = inner;
            wholeTo_ = outer;
        }
    }

    template <class T>
    static T* start(T* plane) {
        return plane + kMaxTaps;
    }

    /// Zeros on both sides, as far as windows and the widest vector reach.
    template <class T>
    void pad(T* samples) const {
        std::fill_n(samples - reach_, reach_, T{0});
        std::fill_n(samples + count_, reach_ + kPadding, T{0});
    }

    bool hasHoleAround(int32_t x, int32_t count) const {
        const int32_t from = std::max(first_, x - reach_);
        const int32_t past = std::min(first_ + count_, x + count + reach_);
        return nextMaskedOut(line_->mask, from, past) < past;
    }

    static constexpr std::size_t kSumsStep = WeighedBlock<Format>::kSumsStep;

    int32_t planeStep_; ///< samples from one channel's to the next
    Sample* planes_;    ///< of numbers, then of pairs; the stretch starts at kMaxTaps
    uint32_t* counted_; ///< likewise, 1 where a pixel counts
    Sum* sums_;
    uint32_t* weights_;
    double* reciprocals_; ///< of some of the weights

    const LineWeights* kernel_ = nullptr;
    const Line<Pixel>* line_ = nullptr;
    int32_t first_ = 0;
    int32_t count_ = 0;
    int32_t reach_ = 0;
    bool isLoaded_ = false; ///< the planes hold the stretch, if it fits
    Summing summing_ = Summing::kNone;
    bool hasHoles_ = false;
    int32_t wholeFrom_ = 0; ///< of the block: the weights from here to `wholeTo_` are all 32768
    int32_t wholeTo_ = 0;
};

} // namespace kovalune
