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

/// 64 bits: a channel beyond full scale would overflow 32.
template <>
class MixOf<Argb16> {
public:
    MixOf(uint16_t over, uint16_t under)
        : over_(over), under_(((Argb16::kFullScale - over_) * under) >> Argb16::kScaleBits) {}
    uint16_t operator()(uint16_t over, uint16_t under) const {
        return static_cast<uint16_t>((under * under_ + over * over_) / (under_ + over_));
    }
    static uint16_t product(uint16_t a, uint16_t b) {
        return static_cast<uint16_t>(uint32_t{a} * b >> Argb16::kScaleBits);
    }

private:
    int64_t over_;
    /// What is left of the lower layer; the sum of both is above 0 for all alphas that `over_` can stand beside.
    int64_t under_;
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
    static float product(float a, float b) {
        return static_cast<float>(static_cast<double>(a) * static_cast<double>(b));
    }

private:
    double over_;
    double under_;
};

} // namespace

template <class Format>
struct Restore : PlainStep<Format, Where::kInsideMask> {
    using PlainStep<Format, Where::kInsideMask>::PlainStep;
    static constexpr bool kSkipsIdleRows = true;
    void operator()(typename Format::Pixel& dst, const typename Format::Pixel& src) const { dst = src; }
};

template <class Format>
struct ClearAlpha : PlainStep<Format, Where::kOutsideMask> {
    using PlainStep<Format, Where::kOutsideMask>::PlainStep;
    void operator()(typename Format::Pixel& dst) const { dst.alpha = 0; }
};

template <class Format>
struct MultiplyAlpha : PlainStep<Format, Where::kOutsideMask> {
    using PlainStep<Format, Where::kOutsideMask>::PlainStep;
    void operator()(typename Format::Pixel& dst, const typename Format::Pixel& src) const {
        dst.alpha = MixOf<Format>::product(src.alpha, dst.alpha);
    }
};

template <class Format>
struct ShapeAlpha : PlainStep<Format, Where::kInsideMask> {
    explicit ShapeAlpha(const FinishPassRecord& record)
        : PlainStep<Format, Where::kInsideMask>(record), curve(record.bias) {}
    void operator()(typename Format::Pixel& dst) {
        if (dst.alpha != 0) {
            dst.alpha = curve(dst.alpha);
        }
    }
    AlphaCurveOf<Format> curve;
};

template <class Format>
struct ComposeOver : PlainStep<Format, Where::kEverywhere> {
    using PlainStep<Format, Where::kEverywhere>::PlainStep;
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
        const MixOf<Format> mix(src.alpha, dst.alpha);
        dst.red = mix(src.red, dst.red);
        dst.green = mix(src.green, dst.green);
        dst.blue = mix(src.blue, dst.blue);
    }
};

template <class Step>
PF_Err finish(PF_InData* inData, FinishPassRecord record) {
    using Pixel = typename Step::Format::Pixel;
    constexpr bool kReadsSource = std::is_invocable_v<Step&, Pixel&, const Pixel&>;
    if (record.dst == nullptr || (kReadsSource && record.src == nullptr)) {
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
