// The order of a blur's passes. A repeat of R makes R + 1 single passes, horizontal and vertical in turn,
// between two worlds, the last one into the destination; the amounts shrink geometrically after the first
// pair.
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/raster/Bands.h"
#include "effect/raster/MaskedCopy.h"
#include "effect/raster/ProgressCounter.h"
#include "effect/share/ExactMath.h"
#include "effect/share/Truncate.h"
#include "hostapi/HostApi.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace kovalune {

enum class Direction { kHorizontal, kVertical };

/// Below this amount, and for a repeat of 0, a blur is the masked copy.
inline constexpr double kSmallestBlur = 2.0;

inline bool blurIsCopy(double amount, int32_t repeat) {
    return kSmallestBlur > amount || repeat == 0;
}

/// What a sequence needs to know of a blur.
struct BlurSequence {
    PF_EffectWorld* dst;
    PF_EffectWorld* src;
    PF_EffectWorld* tmp;
    int32_t repeat;
    double amount; ///< pixels
    const ProgressCounter* progress;
};

/// Runs the passes of a blur of at least `kSmallestBlur` and a repeat that is not 0. `Record` has `dst`,
/// `src` and `kernel`, which are set anew before each pass; `runPass(direction)` returns the pass's code.
/// Every pass is followed by a progress report, whose answer counts as the pass's. `afterFirst()` may work
/// over what the first pass wrote, the record's `dst`; its code counts too, but it is not reported. Returns the
/// first error.
template <class Record, class RunPass, class AfterFirst>
PF_Err runBlurSequence(const BlurSequence& blur, Record& record, RunPass&& runPass, AfterFirst&& afterFirst) {
    const auto passAndReport = [&](Direction direction) {
        const PF_Err err = runPass(direction);
        return err != PF_Err_NONE || blur.progress == nullptr ? err : blur.progress->report();
    };
    const auto kernelFor = [](double amount, double variance) {
        return makeGaussKernel(truncToInt32(std::ceil(amount)), variance);
    };
    const bool startsInTmp = (blur.repeat & 1) != 0;
    record.src = blur.src;
    record.dst = startsInTmp ? blur.tmp : blur.dst;
    record.kernel = kernelFor(blur.amount, blur.amount * blur.amount * 0.125);

    PF_Err err = passAndReport(Direction::kHorizontal);
    if (err == PF_Err_NONE) {
        err = afterFirst();
    }
    if (err != PF_Err_NONE) {
        return err;
    }
    record.src = record.dst;
    record.dst = startsInTmp ? blur.dst : blur.tmp;
    err = passAndReport(Direction::kVertical);

    double amount = blur.amount;
    const double divisor =
        blur.repeat > 1 ? exact::pow(amount, 1.0 / static_cast<double>(blur.repeat)) : amount;
    for (int32_t k = 1; k < blur.repeat && err == PF_Err_NONE; ++k) {
        amount = std::max(amount / divisor, 1.0);
        // The later kernels are eight times wider in variance for their length than the first: flat-topped.
        record.kernel = kernelFor(amount, amount * amount);
        std::swap(record.src, record.dst);
        err = passAndReport(k % 2 != 0 ? Direction::kHorizontal : Direction::kVertical);
    }
    return err;
}

/// The passes that a blur of one depth and scan is made of.
struct BlurPasses {
    PassFunction horizontal;
    PassFunction vertical;
    decltype(&copyMasked16) copyMasked;
};

/// A whole blur over the record's `rect`, or the copy of the pixels under `mask` that stands for a blur too
/// small. PF_Err_OUT_OF_MEMORY where a world that is needed is missing.
template <class Record, class AfterFirst>
PF_Err runBlur(const BlurPasses& passes, PF_InData* inData, A_long iterations, const BlurSequence& blur,
               Record& record, const MaskPlane& mask, AfterFirst&& afterFirst) {
    if (blurIsCopy(blur.amount, blur.repeat)) {
        return passes.copyMasked(inData, blur.dst, blur.src, record.rect, mask, false);
    }
    if (blur.dst == nullptr || blur.src == nullptr || blur.tmp == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const auto runPass = [&](Direction direction) {
        return iterate(inData, iterations, record,
                       direction == Direction::kHorizontal ? passes.horizontal : passes.vertical);
    };
    return runBlurSequence(blur, record, runPass, afterFirst);
}

} // namespace kovalune
