#include "effect/blur/RegionBlur.h"

#include "effect/blur/BlurSequence.h"
#include "effect/blur/BlurTraits.h"
#include "effect/blur/LinePass.h"
#include "effect/raster/MaskedCopy.h"

namespace kovalune {
namespace {

template <class Traits>
struct ColorSums {
    using Sum = typename Traits::Sum;
    Sum red = 0;
    Sum green = 0;
    Sum blue = 0;
    int32_t count = 0;

    void add(const typename Traits::Pixel& p) {
        red += static_cast<Sum>(p.red);
        green += static_cast<Sum>(p.green);
        blue += static_cast<Sum>(p.blue);
        ++count;
    }
    void subtract(const typename Traits::Pixel& p) {
        red -= static_cast<Sum>(p.red);
        green -= static_cast<Sum>(p.green);
        blue -= static_cast<Sum>(p.blue);
        --count;
    }
};

/// The weighted sums over the core of a window, at most 299 pixels to either side of the centre.
template <class Traits>
struct CoreSums {
    using Sum = typename Traits::Sum;
    Sum red = 0;
    Sum green = 0;
    Sum blue = 0;
    uint32_t wsum = 0;

    void add(const typename Traits::Pixel& p, uint16_t tap) {
        const Sum weight = Traits::weight(tap);
        red += static_cast<Sum>(p.red) * weight;
        green += static_cast<Sum>(p.green) * weight;
        blue += static_cast<Sum>(p.blue) * weight;
        wsum += tap;
    }
};

/// Writes red, green and blue; the alpha already in `out` stays, except where no weight exists at all.
template <class Traits>
void storeMean(typename Traits::Pixel& out, const typename Traits::Pixel& source,
               const ColorSums<Traits>& box, const CoreSums<Traits>& core, uint16_t tailWeight) {
    if (tailWeight != 0) {
        const auto mean = [&](typename Traits::Sum boxSum, typename Traits::Sum acc) {
            return Traits::mixedMean(boxSum, box.count, acc, core.wsum, tailWeight);
        };
        out.red = mean(box.red, core.red);
        out.green = mean(box.green, core.green);
        out.blue = mean(box.blue, core.blue);
    } else if (core.wsum != 0) {
        out.red = Traits::coreMean(core.red, core.wsum);
        out.green = Traits::coreMean(core.green, core.wsum);
        out.blue = Traits::coreMean(core.blue, core.wsum);
    } else {
        out = source;
    }
}

template <class T, class Scan>
struct RegionPass {
    using Traits = T;
    using Record = BlurPassRecord;
    using PixelLine = Line<typename T::Pixel>;
    static constexpr bool kSkipsIdleRows = true;

    static const MaskView& mask(const Record& record) { return record.mask; }
    static PixelLine row(const Record& record, int32_t y) { return rowLine<T>(record, record.mask, y); }

    class Columns {
    public:
        explicit Columns(int32_t height) : column_(height) {}
        bool ready() const { return column_.ready(); }
        PixelLine gather(const Record& record, int32_t x) {
            column_.gather(*record.src, record.rect, record.mask, x);
            return column_.line(reachOf(record.kernel, record.rect.height()));
        }

    private:
        GatheredColumn<T> column_;
    };

    template <class OutAt>
    static void blur(const PixelLine& line, const GaussKernel& kernel, OutAt&& outAt) {
        ColorSums<T> box;
        Scan::scan(line, box, [&](int32_t x, Span span, const ColorSums<T>& sums) {
            const auto core = sumCore<CoreSums<T>, Scan>(line, kernel.taps(), x, span);
            storeMean<T>(outAt(x), line.pixels[x], sums, core, kernel.tailWeight);
        });
    }
};

PF_Err blurRegion(const BlurPasses& passes, PF_InData* inData, A_long iterations, const BlurSequence& blur,
                  const FrameRect& rect, const MaskPlane& mask) {
    BlurPassRecord record{blur.dst, blur.src, rect, mask, {}};
    return runBlur(passes, inData, iterations, blur, record, mask, [] { return PF_Err_NONE; });
}

} // namespace

PF_Err passRunH16(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<RegionPass<Blur16, RunScan>>(record, i, n);
}
PF_Err passRunV16(void* record, A_long, A_long i, A_long n) {
    return verticalPass<RegionPass<Blur16, RunScan>>(record, i, n);
}
PF_Err passWindowH16(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<RegionPass<Blur16, WindowScan>>(record, i, n);
}
PF_Err passWindowV16(void* record, A_long, A_long i, A_long n) {
    return verticalPass<RegionPass<Blur16, WindowScan>>(record, i, n);
}
PF_Err passRunH32(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<RegionPass<Blur32, RunScan>>(record, i, n);
}
PF_Err passRunV32(void* record, A_long, A_long i, A_long n) {
    return verticalPass<RegionPass<Blur32, RunScan>>(record, i, n);
}
PF_Err passWindowH32(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<RegionPass<Blur32, WindowScan>>(record, i, n);
}
PF_Err passWindowV32(void* record, A_long, A_long i, A_long n) {
    return verticalPass<RegionPass<Blur32, WindowScan>>(record, i, n);
}

PF_Err blurRegionRun16(PF_EffectWorld* dst, PF_InData* inData, A_long iterations, PF_EffectWorld* src,
                       PF_EffectWorld* tmp, const FrameRect& rect, const MaskPlane& mask, int32_t repeat,
                       const ProgressCounter* progress, double amount) {
    return blurRegion({passRunH16, passRunV16, copyMasked16}, inData, iterations,
                      {dst, src, tmp, repeat, amount, progress}, rect, mask);
}

PF_Err blurRegionWindow16(PF_EffectWorld* dst, PF_InData* inData, A_long iterations, PF_EffectWorld* src,
                          PF_EffectWorld* tmp, const FrameRect& rect, const MaskPlane& mask, int32_t repeat,
                          const ProgressCounter* progress, double amount) {
    return blurRegion({passWindowH16, passWindowV16, copyMasked16}, inData, iterations,
                      {dst, src, tmp, repeat, amount, progress}, rect, mask);
}

PF_Err blurRegionRun32(PF_EffectWorld* dst, PF_InData* inData, A_long iterations, PF_EffectWorld* src,
                       PF_EffectWorld* tmp, const FrameRect& rect, const MaskPlane& mask, int32_t repeat,
                       const ProgressCounter* progress, double amount) {
    return blurRegion({passRunH32, passRunV32, copyMasked32}, inData, iterations,
                      {dst, src, tmp, repeat, amount, progress}, rect, mask);
}

PF_Err blurRegionWindow32(PF_EffectWorld* dst, PF_InData* inData, A_long iterations, PF_EffectWorld* src,
                          PF_EffectWorld* tmp, const FrameRect& rect, const MaskPlane& mask, int32_t repeat,
                          const ProgressCounter* progress, double amount) {
    return blurRegion({passWindowH32, passWindowV32, copyMasked32}, inData, iterations,
                      {dst, src, tmp, repeat, amount, progress}, rect, mask);
}

} // namespace kovalune
