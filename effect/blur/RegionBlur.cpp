#include "effect/blur/RegionBlur.h"

#include "effect/blur/BlurOf.h"
#include "effect/blur/BlurSequence.h"
#include "effect/blur/LinePass.h"

namespace kovalune {
namespace {

template <class Format>
struct ColorSums {
    using Sum = typename BlurOf<Format>::Sum;
    using Pixel = typename Format::Pixel;
    Sum red = 0;
    Sum green = 0;
    Sum blue = 0;
    int32_t count = 0;

    void add(const Pixel& p) {
        red += static_cast<Sum>(p.red);
        green += static_cast<Sum>(p.green);
        blue += static_cast<Sum>(p.blue);
        ++count;
    }
    void subtract(const Pixel& p) {
        red -= static_cast<Sum>(p.red);
        green -= static_cast<Sum>(p.green);
        blue -= static_cast<Sum>(p.blue);
        --count;
    }
};

/// The weighted sums over the core of a window, at most 299 pixels to either side of the centre.
template <class Format>
struct CoreSums {
    using Sum = typename BlurOf<Format>::Sum;
    Sum red = 0;
    Sum green = 0;
    Sum blue = 0;
    uint32_t wsum = 0;

    void add(const typename Format::Pixel& p, uint16_t tap) {
        const Sum weight = BlurOf<Format>::weight(tap);
        red += static_cast<Sum>(p.red) * weight;
        green += static_cast<Sum>(p.green) * weight;
        blue += static_cast<Sum>(p.blue) * weight;
        wsum += tap;
    }
};

} // namespace

/// Writes red, green and blue; the alpha already in `out` stays, except where no weight exists at all.
template <class FormatType, class ScanType>
struct RegionPass {
    using Format = FormatType;
    using Scan = ScanType;
    using Record = BlurPassRecord;
    using Sums = ColorSums<Format>;
    static constexpr bool kSkipsIdleRows = true;

    static LineMasks masks(const Record& record) { return {record.mask, nullptr}; }

    const Line<typename Format::Pixel> line;
    const GaussKernel& kernel;
    const TargetLine<Format> out;

    void operator()(int32_t x, Span span, const Sums& box) const {
        using Blur = BlurOf<Format>;
        const auto core = sumCore<CoreSums<Format>, Scan>(line, kernel.taps(), x, span);
        auto& result = out[x];
        if (kernel.tailWeight != 0) {
            const auto mean = [&](auto boxSum, auto acc) {
                return Blur::mixedMean(boxSum, box.count, acc, core.wsum, kernel.tailWeight);
            };
            result.red = mean(box.red, core.red);
            result.green = mean(box.green, core.green);
            result.blue = mean(box.blue, core.blue);
        } else if (core.wsum != 0) {
            result.red = Blur::coreMean(core.red, core.wsum);
            result.green = Blur::coreMean(core.green, core.wsum);
            result.blue = Blur::coreMean(core.blue, core.wsum);
        } else {
            result = line.pixels[x];
        }
    }
};

template <class Format, class Scan>
PF_Err blurRegion(PF_InData* inData, const RegionBlurJob& job) {
    using Pass = RegionPass<Format, Scan>;
    BlurPassRecord record{job.dst, job.src, job.rect, job.mask, {}};
    return runBlur({blurRows<Pass>, blurColumns<Pass>, copyMasked<Format>}, inData, job, job.mask, record,
                   [] { return PF_Err_NONE; });
}

template PF_Err blurRegion<Argb16, RunScan>(PF_InData*, const RegionBlurJob&);
template PF_Err blurRegion<Argb16, WindowScan>(PF_InData*, const RegionBlurJob&);
template PF_Err blurRegion<Argb32, RunScan>(PF_InData*, const RegionBlurJob&);
template PF_Err blurRegion<Argb32, WindowScan>(PF_InData*, const RegionBlurJob&);

template PF_Err blurRows<RegionPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<RegionPass<Argb16, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurRows<RegionPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<RegionPass<Argb16, WindowScan>>(void*, A_long, A_long, A_long);
template PF_Err blurRows<RegionPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<RegionPass<Argb32, RunScan>>(void*, A_long, A_long, A_long);
template PF_Err blurRows<RegionPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);
template PF_Err blurColumns<RegionPass<Argb32, WindowScan>>(void*, A_long, A_long, A_long);

} // namespace kovalune
