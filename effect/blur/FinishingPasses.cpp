#include "effect/blur/FinishingPasses.h"

#include "effect/blur/AlphaCurve.h"
#include "effect/blur/PlanarOf.h"
#include "effect/raster/Bands.h"
#include "effect/raster/MaskRuns.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"
#include "effect/raster/WidePixels.h"

#include <algorithm>
#include <type_traits>

namespace kovalune {
namespace {

enum class Where { kInsideMask, kOutsideMask, kEverywhere };

template <class Step>
constexpr bool kReadsSource =
    std::is_invocable_v<Step&, typename Step::Format::Pixel*, const typename Step::Format::Pixel*, int32_t>;

/// Calls `run(first, end)` for the stretches of a row that a step applies to.
template <Where where, class Run>
void forEachStretch(const MaskView& mask, int32_t y, int32_t width, const Run& run) {
    if constexpr (where == Where::kEverywhere) {
        run(0, width);
    } else if constexpr (where == Where::kInsideMask) {
        forEachRun(mask.row(y), 0, width, run);
    } else {
        forEachGap(mask.row(y), 0, width, run);
    }
}

/// The walk that all finishing passes share. A `Step` is made once per iteration from the record; it says where it applies,
/// and is called with some pixels of `dst` in a row, the same of `src` where it reads them, and their number.
template <class Step>
PF_Err finishPass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    using Format = typename Step::Format;
    using Pixel = typename Format::Pixel;
    const auto& record = *static_cast<const FinishPassRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    Step step(record);
    for (int32_t y = band.first; y < band.end; ++y) {
        if (Step::kSkipsIdleRows && !record.mask.rowActive(y)) {
            continue;
        }
        Pixel* const dst = rowOf<Format>(*record.dst, record.rect, y);
        const Pixel* src = nullptr;
        if constexpr (kReadsSource<Step>) {
            src = rowOf<Format>(*record.src, record.rect, y);
        }
        forEachStretch<Step::kWhere>(record.mask, y, width, [&](int32_t first, int32_t end) {
            if constexpr (kReadsSource<Step>) {
                step(dst + first, src + first, end - first);
            } else {
                step(dst + first, end - first);
            }
        });
    }
    return PF_Err_NONE;
}

/// What most steps are.
template <class FormatType, Where where>
struct PlainStep {
    using Format = FormatType;
    static constexpr Where kWhere = where;
    static constexpr bool kSkipsIdleRows = false;
    explicit PlainStep(const FinishPassRecord& /*record*/) {}
};

/// How two layers are composed in a format, for an alpha of the upper one between none and full scale; undefined for
/// formats that no layer has.
template <class Format>
class MixOf;

/// In doubles, which hold all numbers here exactly, sums beyond 32 bits too. A quotient that is no whole number is further from
/// one than it is rounded, so that cutting off gives what a division of integers does, and sooner.
template <>
class MixOf<Argb16> {
public:
    MixOf(uint16_t over, uint16_t under)
        : over_(over),
          under_(static_cast<double>(((Argb16::kFullScale - int64_t{over}) * under) >> Argb16::kScaleBits)) {}
    uint16_t operator()(uint16_t over, uint16_t under) const {
        return static_cast<uint16_t>(
            static_cast<int64_t>((under * under_ + over * over_) / (under_ + over_)));
    }
    static constexpr bool kNoneStaysNone = true;
    static uint16_t product(uint16_t a, uint16_t b) {
        return static_cast<uint16_t>(uint32_t{a} * b >> Argb16::kScaleBits);
    }

private:
    double over_;
    /// What is left of the lower layer; the sum of both is above 0 for all alphas that `over_` can stand beside.
    double under_;
};

template <>
class MixOf<Argb32> {
public:
    MixOf(float over, float under)
        : over_(static_cast<double>(over)), under_((1.0 - over_) * static_cast<double>(under)) {}
    float operator()(float over, float under) const {
        return static_cast<float>((static_cast<double>(over) * over_ + static_cast<double>(under) * under_) /
                                  (under_ + over_));
    }
    /// But for -0, an infinity and what is no number.
    static constexpr bool kNoneStaysNone = false;
    /// The product in double, rounded: exact before, so that it is the product in float.
    static float product(float a, float b) { return a * b; }

private:
    double over_;
    double under_;
};

} // namespace

template <class Format>
struct Restore : PlainStep<Format, Where::kInsideMask> {
    using PlainStep<Format, Where::kInsideMask>::PlainStep;
    static constexpr bool kSkipsIdleRows = true;
    void operator()(typename Format::Pixel* dst, const typename Format::Pixel* src, int32_t count) const {
        std::copy_n(src, count, dst);
    }
};

template <class Format>
struct ClearAlpha : PlainStep<Format, Where::kOutsideMask> {
    using PlainStep<Format, Where::kOutsideMask>::PlainStep;
    void operator()(typename Format::Pixel* dst, int32_t count) const {
        setAlpha<Format>(dst, count, typename Format::Channel{0});
    }
};

template <class Format>
struct MultiplyAlpha : PlainStep<Format, Where::kOutsideMask> {
    using PlainStep<Format, Where::kOutsideMask>::PlainStep;
    void operator()(typename Format::Pixel* dst, const typename Format::Pixel* src, int32_t count) const {
        constexpr int32_t kMany = WidePixels<Format>::kCount;
        for (int32_t i = 0; i < count;) {
            const int32_t end = std::min(count, i + kMany);
            if (MixOf<Format>::kNoneStaysNone && end - i == kMany &&
                WidePixels<Format>(dst + i).areTransparent()) {
                i = end;
            }
            for (; i < end; ++i) {
                dst[i].alpha = MixOf<Format>::product(src[i].alpha, dst[i].alpha);
            }
        }
    }
};

template <class Format>
struct ShapeAlpha : PlainStep<Format, Where::kInsideMask> {
    explicit ShapeAlpha(const FinishPassRecord& record)
        : PlainStep<Format, Where::kInsideMask>(record), curve(record.bias) {}
    void operator()(typename Format::Pixel* dst, int32_t count) {
        forEachAlpha<Format>(dst, count, [&](int32_t first, int32_t end) {
            const auto alpha = dst[first].alpha;
            const auto shaped = alpha != 0 ? curve(alpha) : alpha;
            if (shaped != alpha) {
                setAlpha<Format>(dst + first, end - first, shaped);
            }
        });
    }
    AlphaCurveOf<Format> curve;
};

template <class Format>
struct ComposeOver : PlainStep<Format, Where::kEverywhere> {
    using Pixel = typename Format::Pixel;
    using PlainStep<Format, Where::kEverywhere>::PlainStep;
    void operator()(Pixel* dst, const Pixel* src, int32_t count) const {
        forEachAlpha<Format>(src, count, [&](int32_t first, int32_t end) {
            const auto alpha = src[first].alpha;
            if (alpha == Format::kFullScale) {
                for (int32_t i = first; i < end; ++i) {
                    PlanarOf<Format>::layColors(src[i], dst[i]);
                }
            } else if (alpha != 0) {
                for (int32_t i = first; i < end; ++i) {
                    mix(src[i], dst[i]);
                }
            }
        });
    }

private:
    static void mix(const Pixel& src, Pixel& dst) {
        const MixOf<Format> mixed(src.alpha, dst.alpha);
        dst.red = mixed(src.red, dst.red);
        dst.green = mixed(src.green, dst.green);
        dst.blue = mixed(src.blue, dst.blue);
    }
};

template <class Step>
PF_Err finish(PF_InData* inData, FinishPassRecord record) {
    if (record.dst == nullptr || (kReadsSource<Step> && record.src == nullptr)) {
        return PF_Err_OUT_OF_MEMORY;
    }
    return iterate(inData, record, finishPass<Step>);
}

template PF_Err finish<Restore<Argb16>>(PF_InData*, FinishPassRecord);
template PF_Err finish<Restore<Argb32>>(PF_InData*, FinishPassRecord);
template PF_Err finish<MultiplyAlpha<Argb16>>(PF_InData*, FinishPassRecord);
template PF_Err finish<MultiplyAlpha<Argb32>>(PF_InData*, FinishPassRecord);
template PF_Err finish<ClearAlpha<Argb8>>(PF_InData*, FinishPassRecord);
template PF_Err finish<ClearAlpha<Argb16>>(PF_InData*, FinishPassRecord);
template PF_Err finish<ClearAlpha<Argb32>>(PF_InData*, FinishPassRecord);
template PF_Err finish<ShapeAlpha<Argb16>>(PF_InData*, FinishPassRecord);
template PF_Err finish<ShapeAlpha<Argb32>>(PF_InData*, FinishPassRecord);
template PF_Err finish<ComposeOver<Argb16>>(PF_InData*, FinishPassRecord);
template PF_Err finish<ComposeOver<Argb32>>(PF_InData*, FinishPassRecord);

} // namespace kovalune
