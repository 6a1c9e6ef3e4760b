#include "effect/blur/BoundaryBlur.h"

#include "effect/blur/BlurOf.h"
#include "effect/blur/BlurSequence.h"
#include "effect/blur/FlatWindows.h"
#include "effect/blur/LineKeys.h"
#include "effect/blur/LinePass.h"
#include "effect/blur/PlanarStretch.h"
#include "effect/blur/WindowTotals.h"
#include "effect/raster/MaskRuns.h"
#include "effect/raster/WidePixels.h"
#include "effect/share/Integers.h"

#include <algorithm>
#include <array>
#include <cmath>

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

/// The pixel with the mean colour of the opaque ones, if there are any.
template <class Format, class Sums>
typename Format::Pixel withMeanColor(typename Format::Pixel pixel, const Sums& sums) {
    using Blur = BlurOf<Format>;
    if (sums.opaqueCount != 0) {
        pixel.red = Blur::flatMean(sums.red, sums.opaqueCount);
        pixel.green = Blur::flatMean(sums.green, sums.opaqueCount);
        pixel.blue = Blur::flatMean(sums.blue, sums.opaqueCount);
    }
    return pixel;
}

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

/// The blur of one line in plain steps, for what the weighted sums of stretches cannot hold.
template <class Format, class ScanType>
struct PlainBoundaryLine {
    using Scan = ScanType;
    using Sums = BoundarySums<Format, Scan::kWindowHasHoles>;

    const Line<typename Format::Pixel> line;
    const GaussKernel& kernel;
    typename Format::Pixel* const out;

    void operator()(int32_t x, Span span, const Sums& sums) const {
        using Blur = BlurOf<Format>;
        auto result = withMeanColor<Format>(line.pixels[x], sums);
        if (line.keep[x] == 0) {
            const auto core = sumCore<AlphaCore<Format>, Scan>(line, kernel.taps(), x, span);
            if (kernel.tailWeight != 0) {
                result.alpha =
                    Blur::mixedMean(sums.alpha, sums.count, core.alpha, core.wsum, kernel.tailWeight);
            } else if (core.wsum != 0) {
                result.alpha = Blur::coreMean(core.alpha, core.wsum);
            }
        }
        out[x] = result;
    }
};

/// Sums of alpha over whole windows, at the places of their centres; null where the kernel has no tail.
template <class Format>
struct AlphaBoxes {
    typename PlanarOf<Format>::Sum* alpha = nullptr;
    uint32_t* count = nullptr;

    /// Of the part of a line from `x` on.
    AlphaBoxes from(int32_t x) const {
        return count != nullptr ? AlphaBoxes{alpha + x, count + x} : AlphaBoxes{};
    }
};

/// Writes all but the mean of alpha, and keeps what that needs.
template <class Format, class ScanType>
struct ColorLine {
    using Sums = BoundarySums<Format, ScanType::kWindowHasHoles>;

    const Line<typename Format::Pixel> line;
    const AlphaBoxes<Format>& boxes;
    typename Format::Pixel* const out;

    void operator()(int32_t x, Span /*span*/, const Sums& sums) const {
        out[x] = withMeanColor<Format>(line.pixels[x], sums);
        if (boxes.count != nullptr) {
            boxes.alpha[x] = sums.alpha;
            boxes.count[x] = static_cast<uint32_t>(sums.count);
        }
    }
};

} // namespace

/// Writes all four channels.
template <class FormatType, class Scan>
class BoundaryPass {
public:
    using Format = FormatType;
    using Record = BoundaryPassRecord;
    using Pixel = typename Format::Pixel;
    static constexpr bool kSkipsIdleRows = !Scan::kWindowHasHoles;

    static LineMasks masks(const Record& record) { return {record.regionMask, &record.alphaKeepMask}; }
    void lay(const Pixel& result, Pixel& target) const { target = result; }

    BoundaryPass(const Record& record, int32_t length, ScratchLayout& layout)
        : kernel_(record.kernel), length_(length), weights_(kernel_, length, layout),
          stretch_(length, layout), totals_(length, layout),
          means_(layout.take<Mean>(kBlockPixels + kPadding)) {
        for (std::size_t c = 0; c < 3; ++c) {
            colorSums_[c] = layout.take<Sum>(kBlockPixels + kPadding);
            colorMeans_[c] = layout.take<Mean>(kBlockPixels + kPadding);
        }
        alphaSums_ = layout.take<Sum>(kBlockPixels + kPadding);
        counts_ = layout.take<uint32_t>(kBlockPixels + kPadding);
        if (hasTail()) {
            boxes_.alpha = layout.take<Sum>(static_cast<std::size_t>(length));
            boxes_.count = layout.take<uint32_t>(static_cast<std::size_t>(length));
        }
    }

    void begin() {
        weights_.fill(kernel_);
        if (hasTail()) {
            // What masked-out pixels get is computed with, though it comes to nothing.
            std::fill_n(boxes_.alpha, length_, Sum{0});
            std::fill_n(boxes_.count, length_, 0U);
        }
    }

    void blurLine(const Line<Pixel>& line, Pixel* out) {
        bool fits = canWeigh<Format>(weights_, kernel_);
        if (fits) {
            if constexpr (kStreaks) {
                colorLine(line, out);
            }
            forEachStretch<Scan>(line.mask, line.count, line.reach,
                                 [&](Span stretch) { fits = fits && blurStretch(line, stretch, out); });
        }
        if (!fits) {
            Scan::scan(PlainBoundaryLine<Format, Scan>{line, kernel_, out});
        }
    }

private:
    using Planar = PlanarOf<Format>;
    using Sum = typename Planar::Sum;
    using Mean = typename Planar::Mean;
    static constexpr bool kStreaks = Scan::kWindowHasHoles;

    bool hasTail() const { return kernel_.tailWeight != 0; }

    /// Writes all but the mean of alpha. A line that streaks remembers all that it has passed.
    void colorLine(const Line<Pixel>& line, Pixel* out) {
        const Span hull = {nextMaskedIn(line.mask, 0, line.count),
                           endOfMaskedIn(line.mask, 0, line.count) - 1};
        if (hull.first > hull.last) {
            return;
        }
        totalsHold_ = totals_.load(line, hull, hasTail());
        if (totalsHold_) {
            meanColors(line, hull.first, hull.last + 1, out);
        } else {
            Scan::scan(ColorLine<Format, Scan>{line, boxes_, out});
        }
    }

    /// The same for a part of a run, of which integers need no more than what the mixed windows see.
    void colorRun(const Line<Pixel>& line, Span run, Span part, Pixel* out) {
        const bool wholeRun = !Planar::kSumsAreExact || hasTail();
        if (wholeRun) {
            totalsHold_ = totals_.load(line, run, hasTail());
            if (!totalsHold_) {
                const AlphaBoxes<Format> boxes = boxes_.from(run.first);
                Scan::scan(ColorLine<Format, Scan>{partOf(line, run), boxes, out + run.first});
                return;
            }
        }
        const auto flat = [&](int32_t from, int32_t past, int32_t like) {
            std::copy(line.pixels + from, line.pixels + past, out + from);
            const Pixel& color = line.pixels[like];
            if (color.alpha != 0 && !Planar::isOwnMean(color)) {
                Planar::copyColors(line.pixels + from, out + from, past - from);
            }
        };
        const auto mixed = [&](int32_t from, int32_t past) {
            if (!wholeRun) {
                const Span seen = {std::max(run.first, from - line.reach),
                                   std::min(run.last, past - 1 + line.reach)};
                static_cast<void>(totals_.load(line, seen, false));
            }
            meanColors(line, from, past, out);
        };
        divideByFlatness(line.mask, run, part, line.reach,
                         LineKeys<Format, Common::kVisibleColor>{line.pixels}, flat, mixed);
    }

    void meanColors(const Line<Pixel>& line, int32_t from, int32_t past, Pixel* out) {
        forEachBlock(line.mask, from, past, [&](int32_t x, int32_t count) {
            totals_.template sumColors<kStreaks>(x, count, line.reach, colorSums_, counts_);
            for (std::size_t c = 0; c < 3; ++c) {
                Planar::flatMeans(colorSums_[c], counts_, colorMeans_[c], count);
            }
            for (int32_t i = 0; i < count; ++i) {
                if (line.mask[x + i] != 0) {
                    out[x + i] = line.pixels[x + i];
                    if (counts_[i] != 0) {
                        Planar::setColors(out[x + i], colorMeans_[0][i], colorMeans_[1][i],
                                          colorMeans_[2][i]);
                    }
                }
            }
        });
    }

    /// False where the pixels have values that the sums cannot hold.
    bool blurStretch(const Line<Pixel>& line, Span stretch, Pixel* out) {
        stretch_.begin(line, stretch, weights_);
        bool fits = true;
        const auto blurPart = [&](Span part) {
            if constexpr (!kStreaks) {
                colorRun(line, stretch, part, out);
            }
            fits = fits && blurAlpha(line, part, out);
        };
        // Windows of one pixel alone, colour and alpha, are found in one look. Floats want the totals of a run for their colours.
        if constexpr (!kStreaks && Planar::kSumsAreExact) {
            if (!hasTail() && flatWindowsKeepTheirs<Format>(kernel_)) {
                divideByFlatness(
                    line.mask, stretch, stretch, line.reach, LineKeys<Format, Common::kPixel>{line.pixels},
                    [&](int32_t from, int32_t past, int32_t /*like*/) {
                        std::copy(line.pixels + from, line.pixels + past, out + from);
                    },
                    [&](int32_t from, int32_t past) {
                        blurPart({from, past - 1});
                    });
                return fits;
            }
        }
        blurPart(stretch);
        return fits;
    }

    bool blurAlpha(const Line<Pixel>& line, Span part, Pixel* out) {
        const auto flat = [&](int32_t from, int32_t past, int32_t like) {
            if (!Planar::isFinite(line.pixels[like].alpha)) {
                return false;
            }
            const auto alpha = line.pixels[like].alpha;
            if (Planar::isOwnMean(alpha)) {
                return true; // it has come with the colour
            }
            for (int32_t x = from; x < past; ++x) {
                if (line.mask[x] != 0 && line.keep[x] == 0) {
                    out[x].alpha = Planar::fromSum(alpha);
                }
            }
            return true;
        };
        return stretch_.divide(part, LineKeys<Format, Common::kAlpha>{line.pixels},
                               flatWindowsKeepTheirs<Format>(kernel_), flat,
                               [&](int32_t x, int32_t count) { blurBlock(line, x, count, out); });
    }

    void blurBlock(const Line<Pixel>& line, int32_t x, int32_t count, Pixel* out) {
        if (hasTail() && totalsHold_) {
            totals_.sumAlpha(x, count, line.reach, alphaSums_, counts_);
            Planar::mixedMeans(alphaSums_, counts_, stretch_.sums(0), stretch_.weights(), kernel_.tailWeight,
                               means_, count);
        } else if (hasTail()) {
            Planar::mixedMeans(boxes_.alpha + x, boxes_.count + x, stretch_.sums(0), stretch_.weights(),
                               kernel_.tailWeight, means_, count);
        } else {
            stretch_.coreMeans({means_}, count);
        }
        for (int32_t i = 0; i < count; ++i) {
            if (line.mask[x + i] != 0 && line.keep[x + i] == 0) {
                out[x + i].alpha = static_cast<typename Format::Channel>(means_[i]);
            }
        }
    }

    const GaussKernel& kernel_;
    int32_t length_;
    LineWeights weights_;
    PlanarStretch<Format, 1> stretch_;
    WindowTotals<Format> totals_;
    bool totalsHold_ = false; ///< the sums of the stretch are in `totals_`, else in `boxes_`
    AlphaBoxes<Format> boxes_;

    // Of a block.
    Mean* means_;
    std::array<Sum*, 3> colorSums_{};
    std::array<Mean*, 3> colorMeans_{};
    Sum* alphaSums_ = nullptr;
    uint32_t* counts_ = nullptr;
};

template <class Format>
PF_Err alphaGain(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    const auto& record = *static_cast<const AlphaGainRecord*>(refcon);
    const int32_t width = record.rect.width();
    const Band band = bandOf(record.rect.height(), i, n);
    // Neighbours are alike, and most of a layer is transparent or full.
    const bool noneStaysNone = std::isfinite(record.amount);
    for (int32_t y = band.first; y < band.end; ++y) {
        auto* const row = rowOf<Format>(*record.world, record.rect, y);
        forEachAlpha<Format>(row, width, [&](int32_t x, int32_t end) {
            const auto alpha = row[x].alpha;
            if (alpha == 0 && noneStaysNone) {
                return;
            }
            const auto gained = GainOf<Format>::gained(alpha, record.amount);
            if (gained != alpha) {
                setAlpha<Format>(row + x, end - x, gained);
            }
        });
    }
    return PF_Err_NONE;
}

template <class Format, class Scan>
PF_Err blurBoundary(PF_InData* inData, const BoundaryBlurJob& job) {
    using Pass = BoundaryPass<Format, Scan>;
    BoundaryPassRecord record{job.dst,           job.src, job.rect,     job.regionMask,
                              job.alphaKeepMask, {},      job.workbench};
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
