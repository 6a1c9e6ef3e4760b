#include "effect/blur/BoundaryBlur.h"

#include "effect/blur/BlurOf.h"
#include "effect/blur/BlurSequence.h"
#include "effect/blur/LinePass.h"
#include "effect/share/Integers.h"

namespace kovalune {
namespace {

/// Alpha of all pixels in the window, and the colour of those that are not transparent. Where `streaks`, the
/// colour never leaves.
template <class Format, bool streaks>
struct BoundarySums {
    using Sum = typename BlurOf<Format>::Sum;
    using Pixel = typename Format::Pixel;
    Sum alpha = 0;
    int32_t count = 0;
    Sum red = 0;
    Sum green = 0;
    Sum blue = 0;
    int32_t opaqueCount = 0;

    void add(const Pixel& p) {
        alpha += static_cast<Sum>(p.alpha);
        ++count;
        addColor(p);
    }
    void subtract(const Pixel& p) {
        alpha -= static_cast<Sum>(p.alpha);
        --count;
        if constexpr (streaks) {
            addColor(p);
        } else {
            subtractColor(p);
        }
    }

private:
    void addColor(const Pixel& p) {
        if (p.alpha != 0) {
            red += static_cast<Sum>(p.red);
            green += static_cast<Sum>(p.green);
            blue += static_cast<Sum>(p.blue);
            ++opaqueCount;
        }
    }
    void subtractColor(const Pixel& p) {
        if (p.alpha != 0) {
            red -= static_cast<Sum>(p.red);
            green -= static_cast<Sum>(p.green);
            blue -= static_cast<Sum>(p.blue);
            --opaqueCount;
        }
    }
};

/// The weighted sum over the core of a window. Colour takes no part in it.
template <class Format>
struct AlphaCore {
    using Sum = typename BlurOf<Format>::Sum;
    Sum alpha = 0;
    uint32_t wsum = 0;

    void add(const typename Format::Pixel& p, uint16_t tap) {
        alpha += static_cast<Sum>(p.alpha) * BlurOf<Format>::weight(tap);
        wsum += tap;
    }
};

/// How the gain changes an alpha; undefined for formats that it does not work in.
template <class Format>
struct GainOf;

template <>
struct GainOf<Argb16> {
    static uint16_t gained(uint16_t alpha, double amount) {
        const int32_t gained =
            truncToInt32(static_cast<double>(alpha) * (amount * 2.0 + 1.0) / (amount + 1.0));
        return static_cast<uint16_t>(std::min<int32_t>(gained, Argb16::kFullScale));
    }
};

template <>
struct GainOf<Argb32> {
    static float gained(float alpha, double amount) {
        const double gained = static_cast<double>(alpha) * (amount * 2.0 + 1.0) / (amount + 1.0);
        return gained > 1.0 ? Argb32::kFullScale : static_cast<float>(gained);
    }
};

} // namespace

/// Writes all four channels.
template <class FormatType, class ScanType>
struct BoundaryPass {
    using Format = FormatType;
    using Scan = ScanType;
    using Record = BoundaryPassRecord;
    using Sums = BoundarySums<Format, Scan::kWindowHasHoles>;
    static constexpr bool kSkipsIdleRows = !Scan::kWindowHasHoles;

    static LineMasks masks(const Record& record) { return {record.regionMask, &record.alphaKeepMask}; }

    const Line<typename Format::Pixel> line;
    const GaussKernel& kernel;
    const TargetLine<Format> out;

    void operator()(int32_t x, Span span, const Sums& sums) const {
        using Blur = BlurOf<Format>;
        auto result = line.pixels[x];
        if (line.keep[x] == 0) {
            const auto core = sumCore<AlphaCore<Format>, Scan>(line, kernel.taps(), x, span);
            if (kernel.tailWeight != 0) {
                result.alpha =
                    Blur::mixedMean(sums.alpha, sums.count, core.alpha, core.wsum, kernel.tailWeight);
            } else if (core.wsum != 0) {
                result.alpha = Blur::coreMean(core.alpha, core.wsum);
            }
        }
        if (sums.opaqueCount != 0) {
            result.red = Blur::flatMean(sums.red, sums.opaqueCount);
            result.green = Blur::flatMean(sums.green, sums.opaqueCount);
            result.blue = Blur::flatMean(sums.blue, sums.opaqueCount);
        }
        out[x] = result;
    }
};

template <class Format>
PF_Err alphaGain(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    const auto& record = *static_cast<const AlphaGainRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        auto* const row = rowOf<Format>(*record.world, record.rect, y);
        for (int32_t x = 0; x < width; ++x) {
            row[x].alpha = GainOf<Format>::gained(row[x].alpha, record.amount);
        }
    }
    return PF_Err_NONE;
}

template <class Format, class Scan>
PF_Err blurBoundary(PF_InData* inData, const BoundaryBlurJob& job) {
    using Pass = BoundaryPass<Format, Scan>;
    BoundaryPassRecord record{job.dst, job.src, job.rect, job.regionMask, job.alphaKeepMask, {}};
    return runBlur({blurRows<Pass>, blurColumns<Pass>, copyMasked<Format>}, inData, job, job.regionMask,
                   record, [&] {
                       AlphaGainRecord gained{record.dst, job.rect, job.amount};
                       return iterate(inData, gained, alphaGain<Format>);
                   });
}

template PF_Err blurBoundary<Argb16, RunScan>(PF_InData*, const BoundaryBlurJob&);
template PF_Err blurBoundary<Argb16, WindowScan>(PF_InData*, const BoundaryBlurJob&);
template PF_Err blurBoundary<Argb32, RunScan>(PF_InData*, const BoundaryBlurJob&);
template PF_Err blurBoundary<Argb32, WindowScan>(PF_InData*, const BoundaryBlurJob&);

template PF_Err blurRows<BoundaryPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<BoundaryPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurRows<BoundaryPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<BoundaryPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
template PF_Err blurRows<BoundaryPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<BoundaryPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurRows<BoundaryPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<BoundaryPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);

template PF_Err alphaGain<Argb16>(void*, A_long, A_long, A_long);
template PF_Err alphaGain<Argb32>(void*, A_long, A_long, A_long);

} // namespace kovalune
