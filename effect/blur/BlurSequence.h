// The order of a blur's passes. A repeat of R makes R + 1 single passes, horizontal and vertical in turn,
// between two worlds, the last one into the destination; the amounts shrink geometrically after the first
// pair.
#pragma once

#include "effect/blur/GaussKernel.h"
#include "effect/raster/Bands.h"
#include "effect/raster/MaskedCopy.h"
#include "effect/raster/ProgressCounter.h"
#include "effect/share/ExactMath.h"
#include "effect/share/Integers.h"
#include "hostapi/HostApi.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kovalune {

/// Below this amount, and for a repeat of 0, a blur is the masked copy.
inline constexpr double kSmallestBlur = 2.0;

inline bool blurIsCopy(double amount, int32_t repeat) {
    return kSmallestBlur > amount || repeat == 0;
}

/// The kernels of a blur's passes, one after the other.
class KernelSequence {
public:
    KernelSequence(double amount, int32_t repeat)
        : amount_(amount),
          divisor_(repeat > 1 ? exact::pow(amount, 1.0 / static_cast<double>(repeat)) : amount) {}

    /// Of the first pass and of the second.
    GaussKernel first() const { return kernelOf(amount_ * amount_ * 0.125); }

    /// Of the next pass. The later kernels are eight times wider in variance for their length than the first:
    /// flat-topped.
    GaussKernel next() {
        amount_ = std::max(amount_ / divisor_, 1.0);
        return kernelOf(amount_ * amount_);
    }

private:
    GaussKernel kernelOf(double variance) const {
        return makeGaussKernel(truncToInt32(std::ceil(amount_)), variance);
    }

    double amount_;
    double divisor_;
};

/// The passes that a blur of one depth and scan is made of.
struct BlurPasses {
    PassFunction horizontal;
    PassFunction vertical;
    MaskedPass* copyMasked;
};

/// A whole blur of `job` over the record's `rect`, or the copy of the pixels under `mask` that stands for a blur too
/// small. `Job` has what both blurs' jobs have; the record's `dst`, `src` and `kernel` are set anew before each pass.
/// Every pass is followed by a progress report, whose answer counts as the pass's. `afterFirst()` may work over what the
/// first pass wrote, the record's `dst`; its code counts too, but it is not reported. Returns the first error, or
/// PF_Err_OUT_OF_MEMORY where a world that is needed is missing.
template <class Job, class Record, class AfterFirst>
PF_Err runBlur(const BlurPasses& passes, PF_InData* inData, const Job& job, const MaskView& mask,
               Record& record, const AfterFirst& afterFirst) {
    if (blurIsCopy(job.amount, job.repeat)) {
        return passes.copyMasked(inData, {.dst = job.dst, .src = job.src, .rect = job.rect, .mask = mask});
    }
    if (job.dst == nullptr || job.src == nullptr || job.tmp == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const bool startsInTmp = (job.repeat & 1) != 0;
    PF_EffectWorld* const evenDst = startsInTmp ? job.tmp : job.dst;
    PF_EffectWorld* const oddDst = startsInTmp ? job.dst : job.tmp;
    KernelSequence kernels(job.amount, job.repeat);
    record.kernel = kernels.first();
    PF_Err err = PF_Err_NONE;
    for (int32_t pass = 0; pass <= std::max(job.repeat, 1) && err == PF_Err_NONE; ++pass) {
        const bool isEven = pass % 2 == 0;
        record.dst = isEven ? evenDst : oddDst;
        record.src = pass == 0 ? job.src : (isEven ? oddDst : evenDst);
        if (pass > 1) {
            record.kernel = kernels.next();
        }
        err = iterate(inData, job.iterations, record, isEven ? passes.horizontal : passes.vertical);
        if (err == PF_Err_NONE && job.progress != nullptr) {
            err = job.progress->report();
        }
        if (err == PF_Err_NONE && pass == 0) {
            err = afterFirst();
        }
    }
    return err;
}

} // namespace kovalune
