#include "effect/blur/RegionBlur.h"

#include "effect/blur/BlurSequence.h"
#include "effect/blur/BlurTraits.h"
#include "effect/blur/GatheredColumn.h"
#include "effect/blur/LineWindow.h"
#include "effect/raster/Bands.h"
#include "effect/raster/MaskedCopy.h"
#include "effect/raster/Rows.h"

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

/// The order of the sum is part of a float result: from the centre's left neighbour down, then from the
/// centre up.
template <class Traits, class Scan>
CoreSums<Traits> sumCore(const Line<typename Traits::Pixel>& line, const uint16_t* taps, int32_t x,
                         Span span) {
    const int32_t lo = std::max(x - (kMaxTaps - 1), span.first);
    const int32_t hi = std::min(x + (kMaxTaps - 1), span.last);
    CoreSums<Traits> core;
    for (int32_t j = x - 1; j >= lo; --j) {
        if (!Scan::kWindowHasHoles || line.mask[j] != 0) {
            core.add(line.pixels[j], taps[x - j]);
        }
    }
    for (int32_t j = x; j <= hi; ++j) {
        if (!Scan::kWindowHasHoles || line.mask[j] != 0) {
            core.add(line.pixels[j], taps[j - x]);
        }
    }
    return core;
}

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

/// Blurs one line; `outAt(x)` is the pixel to write for position x.
template <class Traits, class Scan, class OutAt>
void blurLine(const Line<typename Traits::Pixel>& line, const GaussKernel& kernel, OutAt&& outAt) {
    ColorSums<Traits> box;
    Scan::scan(line, box, [&](int32_t x, Span span, const ColorSums<Traits>& sums) {
        const CoreSums<Traits> core = sumCore<Traits, Scan>(line, kernel.taps(), x, span);
        storeMean<Traits>(outAt(x), line.pixels[x], sums, core, kernel.tailWeight);
    });
}

/// A window never reaches further than the line is long.
int32_t reachOf(const GaussKernel& kernel, int32_t lineLength) {
    return std::min(kernel.length - 1, lineLength);
}

template <class Traits, class Scan>
PF_Err horizontalPass(void* refcon, A_long i, A_long n) {
    auto& record = *static_cast<BlurPassRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    for (int32_t y = band.first; y < band.end; ++y) {
        if (record.mask.rowActive[y] == 0) {
            continue;
        }
        const auto* const src = rowOf<Traits>(*record.src, record.rect, y);
        auto* const dst = rowOf<Traits>(*record.dst, record.rect, y);
        const Line<typename Traits::Pixel> line = {src, record.mask.row(y), width,
                                                   reachOf(record.kernel, width)};
        blurLine<Traits, Scan>(
            line, record.kernel, [dst](int32_t x) -> auto& { return dst[x]; });
    }
    return PF_Err_NONE;
}

template <class Traits, class Scan>
PF_Err verticalPass(void* refcon, A_long i, A_long n) {
    auto& record = *static_cast<BlurPassRecord*>(refcon);
    const int32_t height = record.rect.height();
    const Band band = bandOf(record.rect.width(), i, n);
    if (band.first >= band.end) {
        return PF_Err_NONE;
    }
    GatheredColumn<Traits> column(height);
    if (!column.ready()) {
        return PF_Err_OUT_OF_MEMORY;
    }
    for (int32_t x = band.first; x < band.end; ++x) {
        if (record.mask.colActive[x] == 0) {
            continue;
        }
        column.gather(*record.src, record.rect, x, record.mask.data + x, record.mask.rowStride);
        const Line<typename Traits::Pixel> line = {column.pixels(), column.mask(), height,
                                                   reachOf(record.kernel, height)};
        blurLine<Traits, Scan>(
            line, record.kernel,
            [&record, x ](int32_t y) -> auto& { return rowOf<Traits>(*record.dst, record.rect, y)[x]; });
    }
    return PF_Err_NONE;
}

using CopyFunction = decltype(&copyMasked16);

/// The passes that a named driver is made of.
struct BlurPasses {
    PassFunction horizontal;
    PassFunction vertical;
    CopyFunction copyMasked;
};

PF_Err blurRegion(const BlurPasses& passes, PF_InData* inData, A_long iterations, const BlurSequence& blur,
                  const FrameRect& rect, const MaskPlane& mask) {
    if (blurIsCopy(blur.amount, blur.repeat)) {
        return passes.copyMasked(inData, blur.dst, blur.src, rect, mask, false);
    }
    if (blur.dst == nullptr || blur.src == nullptr || blur.tmp == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    BlurPassRecord record{blur.dst, blur.src, rect, mask, {}};
    return runBlurSequence(blur, record, [&](Direction direction) {
        return iterate(inData, iterations, record,
                       direction == Direction::kHorizontal ? passes.horizontal : passes.vertical);
    });
}

} // namespace

PF_Err passRunH16(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<Blur16, RunScan>(record, i, n);
}
PF_Err passRunV16(void* record, A_long, A_long i, A_long n) {
    return verticalPass<Blur16, RunScan>(record, i, n);
}
PF_Err passWindowH16(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<Blur16, WindowScan>(record, i, n);
}
PF_Err passWindowV16(void* record, A_long, A_long i, A_long n) {
    return verticalPass<Blur16, WindowScan>(record, i, n);
}
PF_Err passRunH32(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<Blur32, RunScan>(record, i, n);
}
PF_Err passRunV32(void* record, A_long, A_long i, A_long n) {
    return verticalPass<Blur32, RunScan>(record, i, n);
}
PF_Err passWindowH32(void* record, A_long, A_long i, A_long n) {
    return horizontalPass<Blur32, WindowScan>(record, i, n);
}
PF_Err passWindowV32(void* record, A_long, A_long i, A_long n) {
    return verticalPass<Blur32, WindowScan>(record, i, n);
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
