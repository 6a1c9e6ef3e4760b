#include "adapters/openfx/PixelPasses.h"

#include "adapters/openfx/ActionFailure.h"
#include "adapters/openfx/SampleOrder.h"
#include "effect/share/StandardParts.h"
#include "hostapi/Constants.h"
#include "render/samples/LightCurve.h"
#include "render/samples/PixelChoice.h"
#include "render/samples/SampleScale.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

namespace kovalune::openfx {

namespace {

using samples::AlphaKind;
using samples::FilePixel;

/// Calls `use` with the scale of samples of this depth, and of the effect's that go with them.
template <class Use>
void withScales(Depth depth, const Use& use) {
    switch (depth) {
    case Depth::kByte:
        use(samples::FileScale8{}, samples::HostScale8{});
        break;
    case Depth::kShort:
        use(samples::FileScale16{}, samples::HostScale16{});
        break;
    default:
        use(samples::FloatBitsScale{}, samples::HostScale32{});
        break;
    }
}

/// The alpha of an opaque pixel.
template <class Scale>
typename Scale::Sample fullOf() {
    return samples::rescaled<samples::FileScale8, Scale>(255);
}

/// Pixels are worked on by so many at once.
constexpr std::size_t kRun = 64;

template <class Sample>
using Run = std::array<FilePixel<Sample>, kRun>;

/// A missing alpha is full. Rows of the host need not be aligned.
template <class Scale>
void loadRun(Run<typename Scale::Sample>& run, const std::byte* from, std::size_t count,
             Components components) {
    using Sample = typename Scale::Sample;
    if (components == Components::kRgba) {
        std::memcpy(run.data(), from, count * sizeof run[0]);
        return;
    }
    const Sample full = fullOf<Scale>();
    for (std::size_t x = 0; x < count; ++x) {
        std::array<Sample, 3> stored;
        std::memcpy(&stored, from + x * sizeof stored, sizeof stored);
        run[x] = {stored[0], stored[1], stored[2], full};
    }
}

template <class Sample>
void storeRun(std::byte* to, const Run<Sample>& run, std::size_t count, Components components) {
    if (components == Components::kRgba) {
        std::memcpy(to, run.data(), count * sizeof run[0]);
        return;
    }
    for (std::size_t x = 0; x < count; ++x) {
        const std::array<Sample, 3> stored = {run[x].red, run[x].green, run[x].blue};
        std::memcpy(to + x * sizeof stored, &stored, sizeof stored);
    }
}

/// Whether a sample of the block has the very bits of the effect's, but for what alpha does to colours.
bool hasEffectsBits(const PixelBlock& block, bool isLinear) {
    return !isLinear && block.depth != Depth::kShort && block.components == Components::kRgba;
}

/// The bits of a pixel's samples, at any address. Those of four bytes are one number: compilers take many of these at a time, which
/// they do not of single bytes.
template <class Sample>
class PixelBits {
public:
    explicit PixelBits(const void* pixel) { std::memcpy(&bits_, pixel, sizeof bits_); }

    /// By its place in memory.
    template <int index>
    uint32_t sample() const {
        if constexpr (kIsWord) {
            constexpr int kPlace = std::endian::native == std::endian::little ? index : 3 - index;
            return bits_ >> (8 * kPlace) & 0xFF;
        } else {
            return bits_[index];
        }
    }
    bool areZero() const {
        if constexpr (kIsWord) {
            return bits_ == 0;
        } else {
            return (bits_[0] | bits_[1] | bits_[2] | bits_[3]) == 0;
        }
    }

private:
    static constexpr bool kIsWord = sizeof(Sample) == 1;

    std::conditional_t<kIsWord, uint32_t, std::array<Sample, 4>> bits_;
};

/// How many of the pixels from `first` on stand before the first run with one for which `isOther(x)`.
template <class IsOther>
std::size_t countBeforeRunWith(std::size_t first, std::size_t end, const IsOther& isOther) {
    std::size_t x = first;
    while (x < end) {
        const std::size_t runEnd = std::min(x + kRun, end);
        uint32_t any = 0; // a number, so that compilers take some pixels at a time
        for (std::size_t i = x; i < runEnd; ++i) {
            any |= isOther(i) ? 1U : 0U;
        }
        if (any != 0) {
            break;
        }
        x = runEnd;
    }
    return x - first;
}

/// Takes a row apart: turn(x, count) for the countTurned(x) pixels from x on that only change their order, run(x, count) for a run
/// of others.
template <class CountTurned, class Turn, class OtherRun>
void forEachStretch(std::size_t width, const CountTurned& countTurned, const Turn& turn,
                    const OtherRun& run) {
    std::size_t x = 0;
    while (x < width) {
        std::size_t count = countTurned(x);
        if (count != 0) {
            turn(x, count);
        } else {
            count = std::min(kRun, width - x);
            run(x, count);
        }
        x += count;
    }
}

std::size_t pictureBytes(const host::Image& image) {
    return image.rowBytes() * static_cast<std::size_t>(image.height());
}

/// Row `y` of a picture counts from its top, that of a block from the bottom of the plane.
int planeRow(const RectI& bounds, A_long y) {
    return bounds.y2 - 1 - static_cast<int>(y);
}

template <class File, class Host>
class RowsIn {
public:
    RowsIn(host::Image& image, const PixelBlock& source, bool isLinear)
        : image_(image), source_(source), hostPixel_(source.alpha) {
        if (hasEffectsBits(source, isLinear)) {
            turn_ = turnTo(SampleOrder::kAlphaFirst, sizeof(Sample), pictureBytes(image));
        }
        if (isLinear) {
            curve_.emplace(srgbOfLinear);
        }
    }

    void fill(A_long y) {
        auto* const pixels = &image_.at<Pixel>(0, y);
        const auto width = static_cast<std::size_t>(source_.width());
        const std::byte* const row = source_.at(source_.bounds.x1, planeRow(source_.bounds, y));
        forEachStretch(
            width, [&](std::size_t x) { return countTurned(row, x, width); },
            [&](std::size_t x, std::size_t count) {
                turn_(image_.row(y) + x * sizeof(Pixel), row + x * source_.pixelBytes(), count);
            },
            [&](std::size_t x, std::size_t count) {
                loadRun<File>(run_, row + x * source_.pixelBytes(), count, source_.components);
                turnRun(pixels + x, count);
            });
    }

private:
    using Sample = typename File::Sample;
    using Pixel = typename Host::Pixel;

    /// Of the pixels from x on: none of those has an alpha to divide by.
    std::size_t countTurned(const std::byte* row, std::size_t x, std::size_t width) const {
        if (turn_ == nullptr) {
            return 0;
        }
        if (source_.alpha == AlphaKind::kStraight) {
            return width - x;
        }
        const uint32_t full = fullOf<File>();
        return countBeforeRunWith(x, width, [row, full](std::size_t i) {
            const uint32_t alpha = PixelBits<Sample>(row + i * 4 * sizeof(Sample)).template sample<3>();
            return (alpha != 0) & (alpha != full);
        });
    }

    void turnRun(Pixel* pixels, std::size_t count) {
        if (curve_) {
            bend(pixels, count);
            return;
        }
        std::array<Sample, 4 * kRun> flat;
        std::array<typename Host::Sample, 4 * kRun> scaled;
        std::memcpy(flat.data(), run_.data(), count * sizeof run_[0]);
        for (std::size_t i = 0; i < 4 * count; ++i) {
            scaled[i] = samples::rescaled<File, Host>(flat[i]);
        }
        for (std::size_t x = 0; x < count; ++x) {
            pixels[x] = samples::alphaFirst<Pixel>(scaled.data() + 4 * x);
        }
        if (source_.alpha == AlphaKind::kPremultiplied) {
            divide(pixels, count);
        }
    }

    void divide(Pixel* pixels, std::size_t count) const {
        const Sample full = fullOf<File>();
        for (std::size_t x = 0; x < count; ++x) {
            if (run_[x].alpha != 0 && run_[x].alpha != full) {
                pixels[x] = hostPixel_(run_[x]);
            }
        }
    }

    void bend(Pixel* pixels, std::size_t count) {
        for (std::size_t x = 0; x < count; ++x) {
            const FilePixel<Sample>& pixel = run_[x];
            const auto bent = [&](Sample colour) {
                return bitCast<typename Host::Channel>(samples::recolouredThrough<File, Host>(
                    *curve_, colour, pixel.alpha, source_.alpha, AlphaKind::kStraight));
            };
            pixels[x] = {bitCast<typename Host::Channel>(samples::rescaled<File, Host>(pixel.alpha)),
                         bent(pixel.red), bent(pixel.green), bent(pixel.blue)};
        }
    }

    host::Image& image_;
    const PixelBlock& source_;
    samples::HostPixel<File, Host> hostPixel_;
    RowTurn turn_ = nullptr; ///< where samples keep their bits unless they are divided
    std::optional<samples::LightCurve> curve_;
    Run<Sample> run_;
};

/// Rows from 0 to `rows` in parts, each with an object of its own that make() gives and use(object, first, end) works with. All
/// are made before the first is used: what lies in the host's memory is not half written where there is no memory for them.
template <class Make, class Use>
void inParts(int rows, std::size_t rowBytes, bool isLinear, const host::RowWork& work, const Make& make,
             const Use& use) {
    constexpr std::size_t kPartBytes = std::size_t{256} << 10;
    constexpr int kLinearParts = 16; // a curve's table takes a megabyte
    const auto together =
        static_cast<int>(std::max<std::size_t>(kPartBytes / std::max<std::size_t>(rowBytes, 1), 1));
    const int parts = isLinear ? std::min(kLinearParts, rows) : (rows + together - 1) / together;
    std::vector<decltype(make())> objects;
    objects.reserve(static_cast<std::size_t>(parts));
    for (int part = 0; part < parts; ++part) {
        objects.push_back(make());
    }
    const auto rowOf = [&](int part) { return static_cast<int>(int64_t{rows} * part / parts); };
    work.run(parts, kPartBytes, [&](A_long first, A_long end) {
        for (A_long part = first; part < end; ++part) {
            use(*objects[static_cast<std::size_t>(part)], rowOf(part), rowOf(part + 1));
        }
    });
}

/// Without alpha what is not opaque lies over black: its colours multiplied, its alpha left out.
AlphaKind kindOf(const PixelBlock& output) {
    return output.components == Components::kRgb ? AlphaKind::kPremultiplied : output.alpha;
}

/// Rows of the part of the window that has a source.
template <class Host, class From, class To>
class RowsOut {
public:
    RowsOut(const PixelBlock& output, const RectI& window, const Rendered& rendered)
        : output_(output), window_(window), rendered_(rendered),
          choice_({rendered.source.alpha, rendered.isLinear}, {kindOf(output), rendered.isLinear}),
          bitsStay_(std::is_same_v<From, To> && rendered.source.components == output.components &&
                    (rendered.source.alpha == output.alpha || output.components == Components::kRgb)) {
        if (std::is_same_v<From, To> && rendered.source.alpha == output.alpha &&
            hasEffectsBits(output, rendered.isLinear)) {
            turn_ = turnTo(SampleOrder::kAlphaLast, bytesOf(output.depth), pictureBytes(rendered.result));
        }
    }

    void write(int y) {
        const PixelBlock& source = rendered_.source;
        const A_long imageY = source.bounds.y2 - 1 - y;
        const A_long imageX = window_.x1 - source.bounds.x1;
        const auto* const now = &rendered_.result.template at<Pixel>(imageX, imageY);
        const auto* const before = &rendered_.image.template at<Pixel>(imageX, imageY);
        const std::byte* const from = source.at(window_.x1, y);
        std::byte* const to = output_.at(window_.x1, y);
        const auto width = static_cast<std::size_t>(window_.x2 - window_.x1);
        forEachStretch(
            width, [&](std::size_t x) { return countTurned(now, x, width); },
            [&](std::size_t x, std::size_t count) {
                turn_(to + x * output_.pixelBytes(), bytes(now + x), count);
            },
            [&](std::size_t x, std::size_t count) {
                writeRun(to + x * output_.pixelBytes(), from + x * source.pixelBytes(), now + x, before + x,
                         count);
            });
    }

private:
    using Pixel = typename Host::Pixel;

    static const std::byte* bytes(const Pixel* pixels) {
        return static_cast<const std::byte*>(static_cast<const void*>(pixels));
    }

    /// Of the pixels from x on: multiplying leaves those alone, whether the effect has changed them or not.
    std::size_t countTurned(const Pixel* now, std::size_t x, std::size_t width) const {
        if (turn_ == nullptr) {
            return 0;
        }
        if (output_.alpha == AlphaKind::kStraight) {
            return width - x;
        }
        const uint32_t full = fullOf<Host>();
        return countBeforeRunWith(x, width, [now, full](std::size_t i) {
            const PixelBits<typename Host::Sample> bits(now + i);
            return (bits.areZero() ? 0U : 1U) & (bits.template sample<0>() != full ? 1U : 0U);
        });
    }

    void writeRun(std::byte* to, const std::byte* from, const Pixel* now, const Pixel* before,
                  std::size_t count) {
        if (bitsStay_ && std::memcmp(now, before, count * sizeof *now) == 0) {
            std::memcpy(to, from, count * output_.pixelBytes());
            return;
        }
        loadRun<From>(inSource_, from, count, rendered_.source.components);
        for (std::size_t x = 0; x < count; ++x) {
            chosen_[x] = choice_(now[x], before[x], inSource_[x]);
        }
        storeRun(to, chosen_, count, output_.components);
    }

    const PixelBlock& output_;
    const RectI window_;
    const Rendered& rendered_;
    samples::PixelChoice<Host, From, To> choice_;
    bool bitsStay_;
    RowTurn turn_ = nullptr; ///< where samples keep their bits unless they are multiplied
    Run<typename From::Sample> inSource_;
    Run<typename To::Sample> chosen_;
};

void clearRow(const PixelBlock& output, int x1, int x2, int y) {
    if (x1 < x2) {
        std::memset(output.at(x1, y), 0, static_cast<std::size_t>(x2 - x1) * output.pixelBytes());
    }
}

/// The window's part with a source and what lies around it.
template <class WriteRow>
void writeRows(const PixelBlock& output, const RectI& window, const RectI& inner, int first, int end,
               WriteRow writeRow) {
    for (int y = first; y < end; ++y) {
        if (isEmpty(inner) || y < inner.y1 || y >= inner.y2) {
            clearRow(output, window.x1, window.x2, y);
            continue;
        }
        clearRow(output, window.x1, inner.x1, y);
        writeRow(y);
        clearRow(output, inner.x2, window.x2, y);
    }
}

} // namespace

PF_PixelFormat formatOf(Depth depth) {
    return depth == Depth::kByte    ? PF_PixelFormat_ARGB32
           : depth == Depth::kShort ? PF_PixelFormat_ARGB64
                                    : PF_PixelFormat_ARGB128;
}

void takeIn(host::Image& image, const PixelBlock& source, bool isLinear, const host::RowWork& work) {
    withScales(source.depth, [&](auto file, auto host) {
        using Rows = RowsIn<decltype(file), decltype(host)>;
        inParts(
            image.height(), image.rowBytes(), isLinear, work,
            [&] { return std::make_unique<Rows>(image, source, isLinear); },
            [](Rows& rows, int first, int end) {
                for (int y = first; y < end; ++y) {
                    rows.fill(y);
                }
            });
    });
}

void giveOut(const PixelBlock& output, const RectI& window, const Rendered& rendered,
             const host::RowWork& work) {
    const RectI inner = intersection(window, rendered.source.bounds);
    const auto write = [&](auto& rows, int first, int end) {
        writeRows(output, window, inner, window.y1 + first, window.y1 + end, [&](int y) { rows.write(y); });
    };
    const auto writeWith = [&](const auto& make) {
        inParts(window.y2 - window.y1, rendered.image.rowBytes(), rendered.isLinear, work, make, write);
    };
    withScales(rendered.source.depth, [&](auto from, auto host) {
        using From = decltype(from);
        using EffectScale = decltype(host);
        withScales(output.depth, [&](auto to, auto) {
            writeWith([&] {
                return std::make_unique<RowsOut<EffectScale, From, decltype(to)>>(output, inner, rendered);
            });
        });
    });
}

void clear(const PixelBlock& output, const RectI& window) {
    for (int y = window.y1; y < window.y2; ++y) {
        clearRow(output, window.x1, window.x2, y);
    }
}

render::FrameArea areaOf(const PixelBlock& mask, const RectI& bounds) {
    if (mask.components == Components::kRgb) {
        throw ActionFailure(kFailed, "the image of the clip Mask has no alpha");
    }
    render::FrameArea area(bounds.x2 - bounds.x1, bounds.y2 - bounds.y1);
    const std::size_t sampleBytes = bytesOf(mask.depth);
    const std::size_t skipped = mask.pixelBytes() - sampleBytes; // alpha is the last
    for (int32_t y = 0; y < area.height(); ++y) {
        uint8_t* const row = area.row(y);
        const int planeY = planeRow(bounds, y);
        for (int32_t x = 0; x < area.width(); ++x) {
            const int planeX = bounds.x1 + x;
            const bool within = planeX >= mask.bounds.x1 && planeX < mask.bounds.x2 &&
                                planeY >= mask.bounds.y1 && planeY < mask.bounds.y2;
            uint32_t bits = 0;
            if (within) {
                std::memcpy(&bits, mask.at(planeX, planeY) + skipped, sampleBytes);
            }
            // Of a float -0 is 0 too.
            const uint32_t sign = mask.depth == Depth::kFloat ? 0x80000000U : 0;
            row[x] = (bits & ~sign) != 0 ? 1 : 0;
        }
    }
    return area;
}

} // namespace kovalune::openfx
