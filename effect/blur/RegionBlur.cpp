#include "effect/blur/RegionBlur.h"

#include "effect/blur/BlurOf.h"
#include "effect/blur/BlurSequence.h"
#include "effect/blur/LineKeys.h"
#include "effect/blur/LinePass.h"
#include "effect/blur/PlanarStretch.h"

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

/// The blur of one line in plain steps, for what the weighted sums of stretches cannot hold.
template <class Format, class ScanType>
struct PlainRegionLine {
    using Scan = ScanType;
    using Sums = ColorSums<Format>;

    const Line<typename Format::Pixel> line;
    const GaussKernel& kernel;
    typename Format::Pixel* const out;

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

/// The sums of whole windows, at the places of their centres.
template <class Format>
struct BoxSums {
    typename PlanarOf<Format>::Sum* color[3];
    uint32_t* count;
};

/// Keeps what the scan sums along the line.
template <class Format, class ScanType>
struct BoxRecorder {
    using Sums = ColorSums<Format>;

    const Line<typename Format::Pixel> line;
    const BoxSums<Format>& boxes;

    void operator()(int32_t x, Span /*span*/, const Sums& box) const {
        boxes.color[0][x] = box.red;
        boxes.color[1][x] = box.green;
        boxes.color[2][x] = box.blue;
        boxes.count[x] = static_cast<uint32_t>(box.count);
    }
};

} // namespace

/// Writes red, green and blue; the alpha already in the target stays, except where no weight exists at all.
template <class FormatType, class Scan>
class RegionPass {
public:
    using Format = FormatType;
    using Record = BlurPassRecord;
    using Pixel = typename Format::Pixel;
    static constexpr bool kSkipsIdleRows = true;

    static LineMasks masks(const Record& record) { return {record.mask, nullptr}; }
    void lay(const Pixel& result, Pixel& target) const {
        if (copiesWhole_) {
            target = result;
        } else {
            Planar::layColors(result, target);
        }
    }

    RegionPass(const Record& record, int32_t length, ScratchLayout& layout)
        : kernel_(record.kernel), length_(length), weights_(kernel_, length, layout),
          stretch_(length, layout) {
        for (auto*& means : means_) {
            means = layout.take<typename Planar::Mean>(kBlockPixels + kPadding);
        }
        if (hasTail()) {
            for (auto*& sums : boxes_.color) {
                sums = layout.take<typename Planar::Sum>(static_cast<std::size_t>(length));
            }
            boxes_.count = layout.take<uint32_t>(static_cast<std::size_t>(length));
        }
    }

    void begin() {
        weights_.fill(kernel_);
        copiesWhole_ = !hasWeight(kernel_);
        if (hasTail()) {
            // What masked-out pixels get is computed with, though it comes to nothing.
            for (auto* const sums : boxes_.color) {
                std::fill_n(sums, length_, typename Planar::Sum{0});
            }
            std::fill_n(boxes_.count, length_, 0U);
        }
    }

    void blurLine(const Line<Pixel>& line, Pixel* out) {
        if (!canWeigh<Format>(weights_, kernel_)) {
            Scan::scan(PlainRegionLine<Format, Scan>{line, kernel_, out});
            return;
        }
        if (hasTail()) {
            Scan::scan(BoxRecorder<Format, Scan>{line, boxes_});
        }
        bool fits = true;
        Span shortRuns = kNoRun;
        const auto blurShortRuns = [&] {
            if (shortRuns.first <= shortRuns.last) {
                Scan::scan(
                    PlainRegionLine<Format, Scan>{partOf(line, shortRuns), kernel_, out + shortRuns.first});
                shortRuns = kNoRun;
            }
        };
        forEachStretch<Scan>(line.mask, line.count, line.reach, [&](Span stretch) {
            if (isShortRun<Scan>(stretch)) {
                shortRuns = {std::min(shortRuns.first, stretch.first), stretch.last};
                return;
            }
            blurShortRuns();
            fits = fits && blurStretch(line, stretch, out);
        });
        blurShortRuns();
        if (!fits) {
            Scan::scan(PlainRegionLine<Format, Scan>{line, kernel_, out});
        }
    }

private:
    using Planar = PlanarOf<Format>;

    bool hasTail() const { return kernel_.tailWeight != 0; }

    /// False where the pixels have values that the sums cannot hold.
    bool blurStretch(const Line<Pixel>& line, Span stretch, Pixel* out) {
        stretch_.begin(line, stretch, weights_);
        const auto flat = [&](int32_t from, int32_t past, int32_t like) {
            if (!Planar::isFinite(line.pixels[like])) {
                return false;
            }
            forEachRun(line.mask, from, past, [&](int32_t first, int32_t end) {
                Planar::copyColors(line.pixels + first, out + first, end - first);
            });
            return true;
        };
        return stretch_.divide(stretch, LineKeys<Format, Common::kColor>{line.pixels},
                               flatWindowsKeepTheirs<Format>(kernel_), flat,
                               [&](int32_t x, int32_t count) { blurBlock(line, x, count, out); });
    }

    void blurBlock(const Line<Pixel>& line, int32_t x, int32_t count, Pixel* out) {
        if (hasTail()) {
            for (std::size_t c = 0; c < 3; ++c) {
                Planar::mixedMeans(boxes_.color[c] + x, boxes_.count + x, stretch_.sums(c),
                                   stretch_.weights(), kernel_.tailWeight, means_[c], count);
            }
        } else {
            stretch_.coreMeans(means_, count);
        }
        if (nextMaskedOut(line.mask, x, x + count) == x + count) {
            Planar::mergeColors(means_.data(), out + x, count);
        } else {
            Planar::layColors(means_.data(), line.mask + x, out + x, count);
        }
    }

    const GaussKernel& kernel_;
    int32_t length_;
    bool copiesWhole_ = false; ///< there is no weight, and alpha comes along
    LineWeights weights_;
    PlanarStretch<Format, 3> stretch_;
    std::array<typename Planar::Mean*, 3> means_;
    BoxSums<Format> boxes_{};
};

template <class Format, class Scan>
PF_Err blurRegion(PF_InData* inData, const RegionBlurJob& job) {
    using Pass = RegionPass<Format, Scan>;
    BlurPassRecord record{job.dst, job.src, job.rect, job.mask, {}, job.workbench};
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
