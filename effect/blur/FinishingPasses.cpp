#include "effect/blur/FinishingPasses.h"

#include "effect/blur/AlphaCurve.h"
#include "effect/raster/Bands.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"

#include <type_traits>

namespace kovalune {
namespace {

enum class Where { kInsideMask, kOutsideMask, kEverywhere };

/// The walk that all finishing passes share. A `Step` is made once per iteration from the record; it says
/// where it applies, and is called with the pixel of `dst` and, where it reads one, that of `src`.
template <class Format, class Step>
PF_Err finishPass(void* refcon, A_long /*thread*/, A_long i, A_long n) {
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
        const uint8_t* const mask = Step::kWhere == Where::kEverywhere ? nullptr : record.mask.row(y);
        const auto applies = [mask](int32_t x) {
            return Step::kWhere == Where::kEverywhere ||
                   (mask[x] != 0) == (Step::kWhere == Where::kInsideMask);
        };
        if constexpr (std::is_invocable_v<Step&, Pixel&, const Pixel&>) {
            const Pixel* const src = rowOf<Format>(*record.src, record.rect, y);
            for (int32_t x = 0; x < width; ++x) {
                if (applies(x)) {
                    step(dst[x], src[x]);
                }
            }
        } else {
            for (int32_t x = 0; x < width; ++x) {
                if (applies(x)) {
                    step(dst[x]);
                }
            }
        }
    }
    return PF_Err_NONE;
}

/// What most steps are.
template <Where where>
struct PlainStep {
    static constexpr Where kWhere = where;
    static constexpr bool kSkipsIdleRows = false;
    explicit PlainStep(const FinishPassRecord& /*record*/) {}
};

template <class Format>
struct Restore : PlainStep<Where::kInsideMask> {
    using PlainStep::PlainStep;
    static constexpr bool kSkipsIdleRows = true;
    void operator()(typename Format::Pixel& dst, const typename Format::Pixel& src) const { dst = src; }
};

template <class Format>
struct ClearAlpha : PlainStep<Where::kOutsideMask> {
    using PlainStep::PlainStep;
    void operator()(typename Format::Pixel& dst) const { dst.alpha = 0; }
};

struct MultiplyAlpha : PlainStep<Where::kOutsideMask> {
    using PlainStep::PlainStep;
    void operator()(PF_Pixel16& dst, const PF_Pixel16& src) const {
        dst.alpha = static_cast<uint16_t>(uint32_t{src.alpha} * dst.alpha >> 15);
    }
    void operator()(PF_PixelFloat& dst, const PF_PixelFloat& src) const {
        dst.alpha = static_cast<float>(static_cast<double>(src.alpha) * static_cast<double>(dst.alpha));
    }
};

template <class Curve>
struct ShapeAlpha : PlainStep<Where::kInsideMask> {
    explicit ShapeAlpha(const FinishPassRecord& record) : PlainStep(record), curve(record.bias) {}
    template <class Pixel>
    void operator()(Pixel& dst) {
        if (dst.alpha != 0) {
            dst.alpha = curve(dst.alpha);
        }
    }
    Curve curve;
};

/// 64 bits: a channel beyond full scale would overflow 32.
struct Mix16 {
    int64_t a;
    int64_t
        u; ///< what is left of the lower layer; `u + a` is above 0 for all alphas that `a` can stand beside
    Mix16(uint16_t over, uint16_t under) : a(over), u(((32768 - a) * under) >> 15) {}
    uint16_t operator()(uint16_t over, uint16_t under) const {
        return static_cast<uint16_t>((under * u + over * a) / (u + a));
    }
};

struct Mix32 {
    double a;
    double u;
    Mix32(float over, float under)
        : a(static_cast<double>(over)), u((1.0 - a) * static_cast<double>(under)) {}
    float operator()(float over, float under) const {
        return static_cast<float>((static_cast<double>(over) * a + static_cast<double>(under) * u) / (u + a));
    }
};

template <class Format, class Mix>
struct ComposeOver : PlainStep<Where::kEverywhere> {
    using PlainStep::PlainStep;
    void operator()(typename Format::Pixel& dst, const typename Format::Pixel& src) const {
        if (src.alpha == 0) {
            return;
        }
        if (src.alpha == Format::kFullScale) {
            dst.red = src.red;
            dst.green = src.green;
            dst.blue = src.blue;
            return;
        }
        const Mix mix(src.alpha, dst.alpha);
        dst.red = mix(src.red, dst.red);
        dst.green = mix(src.green, dst.green);
        dst.blue = mix(src.blue, dst.blue);
    }
};

template <class Format, class Step>
PF_Err finish(PF_InData* inData, FinishPassRecord record) {
    using Pixel = typename Format::Pixel;
    constexpr bool kReadsSource = std::is_invocable_v<Step&, Pixel&, const Pixel&>;
    if (record.dst == nullptr || (kReadsSource && record.src == nullptr)) {
        return PF_Err_OUT_OF_MEMORY;
    }
    return iterate(inData, record, finishPass<Format, Step>);
}

} // namespace

PF_Err restoreMasked16(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect,
                       const MaskPlane& mask) {
    return finish<Argb16, Restore<Argb16>>(inData, {dst, src, rect, mask});
}

PF_Err restoreMasked32(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect,
                       const MaskPlane& mask) {
    return finish<Argb32, Restore<Argb32>>(inData, {dst, src, rect, mask});
}

PF_Err multiplyAlphaOutside16(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src,
                              const FrameRect& rect, const MaskPlane& mask) {
    return finish<Argb16, MultiplyAlpha>(inData, {dst, src, rect, mask});
}

PF_Err multiplyAlphaOutside32(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src,
                              const FrameRect& rect, const MaskPlane& mask) {
    return finish<Argb32, MultiplyAlpha>(inData, {dst, src, rect, mask});
}

PF_Err clearAlphaOutside8(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                          const MaskPlane& mask) {
    return finish<Argb8, ClearAlpha<Argb8>>(inData, {dst, nullptr, rect, mask});
}

PF_Err clearAlphaOutside16(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask) {
    return finish<Argb16, ClearAlpha<Argb16>>(inData, {dst, nullptr, rect, mask});
}

PF_Err clearAlphaOutside32(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask) {
    return finish<Argb32, ClearAlpha<Argb32>>(inData, {dst, nullptr, rect, mask});
}

PF_Err applyBoundaryBias16(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask, double bias) {
    return finish<Argb16, ShapeAlpha<AlphaCurve16>>(inData, {dst, nullptr, rect, mask, bias});
}

PF_Err applyBoundaryBias32(PF_InData* inData, PF_EffectWorld* dst, const FrameRect& rect,
                           const MaskPlane& mask, double bias) {
    return finish<Argb32, ShapeAlpha<AlphaCurve32>>(inData, {dst, nullptr, rect, mask, bias});
}

PF_Err composeOver16(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect) {
    return finish<Argb16, ComposeOver<Argb16, Mix16>>(inData, {dst, src, rect, {}});
}

PF_Err composeOver32(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect) {
    return finish<Argb32, ComposeOver<Argb32, Mix32>>(inData, {dst, src, rect, {}});
}

} // namespace kovalune
