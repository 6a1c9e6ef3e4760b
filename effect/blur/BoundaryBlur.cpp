#include "effect/blur/BoundaryBlur.h"

#include "effect/blur/BlurSequence.h"
#include "effect/blur/BlurTraits.h"
#include "effect/blur/LinePass.h"
#include "effect/raster/MaskedCopy.h"
#include "effect/share/Truncate.h"

namespace kovalune {
namespace {

/// Alpha of all pixels in the window, and the colour of those that are not transparent. Where `kStreaks`, the
/// colour never leaves.
template <class Traits, bool kStreaks>
struct BoundarySums {
    using Sum = typename Traits::Sum;
    using Pixel = typename Traits::Pixel;
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
        if constexpr (kStreaks) {
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
template <class Traits>
struct AlphaCore {
    using Sum = typename Traits::Sum;
    Sum alpha = 0;
    uint32_t wsum = 0;

    void add(const typename Traits::Pixel& p, uint16_t tap) {
        alpha += static_cast<Sum>(p.alpha) * Traits::weight(tap);
        wsum += tap;
    }
};

/// A line, and which of its pixels keep their alpha.
template <class Pixel>
struct BoundaryLine : Line<Pixel> {
    const uint8_t* keep;
};

template <class T, class Scan>
struct BoundaryPass {
    using Traits = T;
    using Record = BoundaryPassRecord;
    using Pixel = typename T::Pixel;
    static constexpr bool kIsRunScan = !Scan::kWindowHasHoles;
    static constexpr bool kSkipsIdleRows = kIsRunScan;
    using Sums = BoundarySums<T, !kIsRunScan>;

    static const MaskView& mask(const Record& record) { return record.regionMask; }
    static BoundaryLine<Pixel> row(const Record& record, int32_t y) {
        return {rowLine<T>(record, record.regionMask, y), record.alphaKeepMask.row(y)};
    }

    /// Two blocks of one size; the second holds mask bytes only.
    class Columns {
    public:
        explicit Columns(int32_t height) : column_(height), keep_(height) {}
        bool ready() const { return column_.ready() && keep_.ready(); }
        BoundaryLine<Pixel> gather(const Record& record, int32_t x) {
            column_.gather(*record.src, record.rect, record.regionMask, x);
            keep_.gatherMask(record.alphaKeepMask, x);
            return {column_.line(reachOf(record.kernel, record.rect.height())), keep_.mask()};
        }

    private:
        GatheredColumn<T> column_;
        GatheredColumn<T> keep_;
    };

    template <class OutAt>
    static void blur(const BoundaryLine<Pixel>& line, const GaussKernel& kernel, OutAt&& outAt) {
        Sums running;
        Scan::scan(static_cast<const Line<Pixel>&>(line), running,
                   [&](int32_t x, Span span, const Sums& sums) {
                       const Pixel& source = line.pixels[x];
                       Pixel result = source;
                       if (line.keep[x] == 0) {
                           result.alpha = blurredAlpha(line, kernel, x, span, sums);
                       }
                       if (sums.opaqueCount != 0) {
                           result.red = T::flatMean(sums.red, sums.opaqueCount);
                           result.green = T::flatMean(sums.green, sums.opaqueCount);
                           result.blue = T::flatMean(sums.blue, sums.opaqueCount);
                       }
                       outAt(x) = result;
                   });
    }

private:
    static typename T::Channel blurredAlpha(const Line<Pixel>& line, const GaussKernel& kernel, int32_t x,
                                            Span span, const Sums& sums) {
        const auto core = sumCore<AlphaCore<T>, Scan>(line, kernel.taps(), x, span);
        if (kernel.tailWeight != 0) {
            return T::mixedMean(sums.alpha, sums.count, core.alpha, core.wsum, kernel.tailWeight);
        }
        return core.wsum != 0 ? T::coreMean(core.alpha, core.wsum) : line.pixels[x].alpha;
    }
};

uint16_t gainedAlpha(uint16_t alpha, double amount) {
    const int32_t gained = truncToInt32(static_cast<double>(alpha) * (amount * 2.0 + 1.0) / (amount + 1.0));
    return static_cast<uint16_t>(std::min<int32_t>(gained, Argb16::kFullScale));
}

float gainedAlpha(float alpha, double amount) {
    const double gained = static_cast<double>(alpha) * (amount * 2.0 + 1.0) / (amount + 1.0);
    return gained > 1.0 ? 1.0F : static_cast<float>(gained);
}

template <class Format>
PF_Err alphaGain(void* refcon, A_long i, A_long n) {
    auto& record = *static_cast<AlphaGainRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        auto* const row = rowOf<Format>(*record.world, record.rect, y);
        for (int32_t x = 0; x < width; ++x) {
            row[x].alpha = gainedAlpha(row[x].alpha, record.amount);
        }
    }
    return PF_Err_NONE;
}

PF_Err blurBoundary(const BlurPasses& passes, PassFunction gain, PF_InData* inData, const BlurSequence& blur,
                    const FrameRect& rect, const MaskPlane& regionMask, const MaskPlane& alphaKeepMask) {
    BoundaryPassRecord record{blur.dst, blur.src, rect, regionMask, alphaKeepMask, {}};
    return runBlur(passes, inData, PF_Iterations_ONCE_PER_PROCESSOR, blur, record, regionMask, [&] {
        AlphaGainRecord gained{record.dst, rect, blur.amount};
        return iterate(inData, gained, gain);
    });
}

} // namespace

PF_Err boundaryRunH16(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<BoundaryPass<Blur16, RunScan>>(record, i, n);
}
PF_Err boundaryRunV16(void* record, A_long, A_long i, A_long n) {
    return verticalPass<BoundaryPass<Blur16, RunScan>>(record, i, n);
}
PF_Err boundaryWindowH16(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<BoundaryPass<Blur16, WindowScan>>(record, i, n);
}
PF_Err boundaryWindowV16(void* record, A_long, A_long i, A_long n) {
    return verticalPass<BoundaryPass<Blur16, WindowScan>>(record, i, n);
}
PF_Err boundaryRunH32(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<BoundaryPass<Blur32, RunScan>>(record, i, n);
}
PF_Err boundaryRunV32(void* record, A_long, A_long i, A_long n) {
    return verticalPass<BoundaryPass<Blur32, RunScan>>(record, i, n);
}
PF_Err boundaryWindowH32(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<BoundaryPass<Blur32, WindowScan>>(record, i, n);
}
PF_Err boundaryWindowV32(void* record, A_long, A_long i, A_long n) {
    return verticalPass<BoundaryPass<Blur32, WindowScan>>(record, i, n);
}

PF_Err alphaGain16(void* record, A_long, A_long i, A_long n) {
    return alphaGain<Argb16>(record, i, n);
}
PF_Err alphaGain32(void* record, A_long, A_long i, A_long n) {
    return alphaGain<Argb32>(record, i, n);
}

PF_Err blurBoundaryRun16(PF_EffectWorld* dst, PF_InData* inData, PF_EffectWorld* src, PF_EffectWorld* tmp,
                         const FrameRect& rect, const MaskPlane& regionMask, const MaskPlane& alphaKeepMask,
                         int32_t repeat, const ProgressCounter* progress, double amount) {
    return blurBoundary({boundaryRunH16, boundaryRunV16, copyMasked16}, alphaGain16, inData,
                        {dst, src, tmp, repeat, amount, progress}, rect, regionMask, alphaKeepMask);
}

PF_Err blurBoundaryWindow16(PF_EffectWorld* dst, PF_InData* inData, PF_EffectWorld* src, PF_EffectWorld* tmp,
                            const FrameRect& rect, const MaskPlane& regionMask,
                            const MaskPlane& alphaKeepMask, int32_t repeat, const ProgressCounter* progress,
                            double amount) {
    return blurBoundary({boundaryWindowH16, boundaryWindowV16, copyMasked16}, alphaGain16, inData,
                        {dst, src, tmp, repeat, amount, progress}, rect, regionMask, alphaKeepMask);
}

PF_Err blurBoundaryRun32(PF_EffectWorld* dst, PF_InData* inData, PF_EffectWorld* src, PF_EffectWorld* tmp,
                         const FrameRect& rect, const MaskPlane& regionMask, const MaskPlane& alphaKeepMask,
                         int32_t repeat, const ProgressCounter* progress, double amount) {
    return blurBoundary({boundaryRunH32, boundaryRunV32, copyMasked32}, alphaGain32, inData,
                        {dst, src, tmp, repeat, amount, progress}, rect, regionMask, alphaKeepMask);
}

PF_Err blurBoundaryWindow32(PF_EffectWorld* dst, PF_InData* inData, PF_EffectWorld* src, PF_EffectWorld* tmp,
                            const FrameRect& rect, const MaskPlane& regionMask,
                            const MaskPlane& alphaKeepMask, int32_t repeat, const ProgressCounter* progress,
                            double amount) {
    return blurBoundary({boundaryWindowH32, boundaryWindowV32, copyMasked32}, alphaGain32, inData,
                        {dst, src, tmp, repeat, amount, progress}, rect, regionMask, alphaKeepMask);
}

} // namespace kovalune
