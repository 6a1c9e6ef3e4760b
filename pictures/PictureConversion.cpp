#include "pictures/PictureConversion.h"

#include "effect/share/StandardParts.h"
#include "hostapi/Constants.h"
#include "pictures/EmbeddedSettings.h"
#include "pictures/FileRows.h"
#include "pictures/LightCurve.h"
#include "pictures/NoteConversion.h"
#include "pictures/SampleScale.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace kovalune::pictures {

namespace {

/// Calls `use` with the scale of a file's samples.
template <class Use>
auto withScale(SampleType type, Use use) {
    switch (type) {
    case SampleType::kUint8:
        return use(FileScale8{});
    case SampleType::kUint16:
        return use(FileScale16{});
    case SampleType::kHalf:
        return use(HalfScale{});
    default:
        return use(FloatBitsScale{});
    }
}

/// Calls `use` with the scale of the host's samples.
template <class Use>
auto withScale(PF_PixelFormat format, Use use) {
    switch (format) {
    case PF_PixelFormat_ARGB32:
        return use(HostScale8{});
    case PF_PixelFormat_ARGB64:
        return use(HostScale16{});
    default:
        return use(HostScale32{});
    }
}

/// The pixels of a row, where Pixel is the one of the image's format.
template <class Pixel, class SomeImage>
auto* pixelsOf(SomeImage& image, A_long y) {
    return &image.template at<Pixel>(0, y);
}

/// Of floats too, where NaN is the same as itself and 0 is not -0.
template <class Sample>
bool sameBits(Sample a, Sample b) {
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the bits are meant
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// A pixel of a file as one of the host's.
template <class File, class Host>
class HostPixel {
public:
    explicit HostPixel(AlphaKind kind) : kind_(kind) {}

    typename Host::Pixel operator()(const FilePixel<typename File::Sample>& pixel) const {
        const auto colour = [&](typename File::Sample sample) {
            return channel(recoloured<File, Host>(sample, pixel.alpha, kind_, AlphaKind::kStraight));
        };
        return {channel(rescaled<File, Host>(pixel.alpha)), colour(pixel.red), colour(pixel.green),
                colour(pixel.blue)};
    }

private:
    static typename Host::Channel channel(typename Host::Sample sample) {
        return bitCast<typename Host::Channel>(sample);
    }

    AlphaKind kind_;
};

/// Alpha comes from the end to the front, of whole numbers with all channels turned at once. `samples` are those of one
/// pixel.
template <class Pixel, class Sample>
Pixel alphaFirst(const Sample* samples) {
    if constexpr (sizeof(Sample) > 2) {
        return bitCast<Pixel>(std::array{samples[3], samples[0], samples[1], samples[2]});
    } else {
        using Word = std::conditional_t<sizeof(Sample) == 1, uint32_t, uint64_t>;
        constexpr int kChannelBits = 8 * sizeof(Sample);
        constexpr int kTurn = std::endian::native == std::endian::little ? kChannelBits : -kChannelBits;
        Word word;
        std::memcpy(&word, samples, sizeof word);
        return bitCast<Pixel>(std::rotl(word, kTurn));
    }
}

/// Rows of a file as the host's: every sample by itself first, which goes quickly, and then the few pixels whose colours
/// have to be divided by their alpha.
template <class File, class Host>
class HostRows {
public:
    HostRows(host::Image& image, const Picture& picture)
        : image_(image), picture_(picture), hostPixel_(picture.alphaKind), row_(picture.width),
          samples_(4 * row_.size()), scaled_(samples_.size()) {
        if (picture.isLinear) {
            curve_.emplace(srgbOfLinear);
        }
    }

    void fill(A_long y) {
        loadRow<File>(picture_, static_cast<std::size_t>(y), std::span(row_));
        std::memcpy(samples_.data(), row_.data(), samples_.size() * sizeof samples_[0]);
        std::transform(samples_.begin(), samples_.end(), scaled_.begin(), rescaled<File, Host>);
        Pixel* const pixels = pixelsOf<Pixel>(image_, y);
        for (std::size_t x = 0; x < row_.size(); ++x) {
            pixels[x] = alphaFirst<Pixel>(scaled_.data() + 4 * x);
        }
        if (curve_) {
            bend(pixels);
        } else if (picture_.alphaKind == AlphaKind::kPremultiplied) {
            divide(pixels);
        }
    }

private:
    using Sample = typename File::Sample;
    using Pixel = typename Host::Pixel;

    void divide(Pixel* pixels) const {
        const Sample full = rescaled<FileScale8, File>(255);
        for (std::size_t x = 0; x < row_.size(); ++x) {
            if (row_[x].alpha != 0 && row_[x].alpha != full) {
                pixels[x] = hostPixel_(row_[x]);
            }
        }
    }

    void bend(Pixel* pixels) {
        const auto bent = [this](Sample colour, Sample alpha) {
            return bitCast<typename Host::Channel>(recolouredThrough<File, Host>(
                *curve_, colour, alpha, picture_.alphaKind, AlphaKind::kStraight));
        };
        for (std::size_t x = 0; x < row_.size(); ++x) {
            const FilePixel<Sample>& pixel = row_[x];
            pixels[x].red = bent(pixel.red, pixel.alpha);
            pixels[x].green = bent(pixel.green, pixel.alpha);
            pixels[x].blue = bent(pixel.blue, pixel.alpha);
        }
    }

    host::Image& image_;
    const Picture& picture_;
    HostPixel<File, Host> hostPixel_;
    std::optional<LightCurve> curve_; ///< of linear light
    std::vector<FilePixel<Sample>> row_;
    std::vector<Sample> samples_;               ///< the same, four a pixel
    std::vector<typename Host::Sample> scaled_; ///< likewise
};

template <class File, class Host>
void fillImage(host::Image& image, const Picture& picture) {
    HostRows<File, Host> rows(image, picture);
    for (A_long y = 0; y < image.height(); ++y) {
        rows.fill(y);
    }
}

template <class Host>
bool isFull(typename Host::Channel alpha) {
    if constexpr (Host::kIsFloat) {
        return alpha == 1.0F;
    } else {
        return alpha >= Host::kWhite;
    }
}

/// Whether `holds` for all pixels.
template <class Host, class Holds>
bool everywhere(const host::Image& image, Holds holds) {
    for (A_long y = 0; y < image.height(); ++y) {
        const auto* const row = pixelsOf<typename Host::Pixel>(image, y);
        if (!std::all_of(row, row + image.width(), holds)) {
            return false;
        }
    }
    return true;
}

template <class Host>
Channels channelsFor(const host::Image& result, Channels source) {
    using Pixel = typename Host::Pixel;
    const bool grey = isGrey(source) && everywhere<Host>(result, [](const Pixel& pixel) {
                          return sameBits(pixel.red, pixel.green) && sameBits(pixel.green, pixel.blue);
                      });
    const bool alpha = hasAlpha(source) || !everywhere<Host>(result, [](const Pixel& pixel) {
                           return isFull<Host>(pixel.alpha);
                       });
    return channelsOf(grey, alpha);
}

/// What a sample's place in the host's picture is made of, and what is made of it.
struct FileKind {
    AlphaKind alpha = AlphaKind::kStraight;
    bool isLinear = false;
};

/// A colour between kinds; through the curve where one of them alone is linear light.
class Recolouring {
public:
    Recolouring(FileKind from, FileKind to) : from_(from.alpha), to_(to.alpha) {
        if (from.isLinear != to.isLinear) {
            curve_.emplace(from.isLinear ? srgbOfLinear : linearOfSrgb);
        }
    }

    template <class From, class To>
    typename To::Sample of(typename From::Sample colour, typename From::Sample alpha) {
        return curve_ ? recolouredThrough<From, To>(*curve_, colour, alpha, from_, to_)
                      : recoloured<From, To>(colour, alpha, from_, to_);
    }

private:
    AlphaKind from_;
    AlphaKind to_;
    std::optional<LightCurve> curve_;
};

/// One pixel to write: what the effect left comes from the file, the rest from the result.
template <class Host, class From, class To>
class PixelChoice {
public:
    PixelChoice(FileKind from, FileKind to)
        : left_(from, to), changed_({}, to), eitherMultiplied_(from.alpha == AlphaKind::kPremultiplied ||
                                                               to.alpha == AlphaKind::kPremultiplied) {}

    FilePixel<typename To::Sample> operator()(const typename Host::Pixel& now,
                                              const typename Host::Pixel& before,
                                              const FilePixel<typename From::Sample>& inFile) {
        const bool alphaStays = sameBits(now.alpha, before.alpha);
        const bool coloursMayStay = alphaStays || !eitherMultiplied_;
        const auto colour = [&](auto sampleNow, auto sampleBefore, auto sampleInFile) {
            if (coloursMayStay && sameBits(sampleNow, sampleBefore)) {
                return left_.template of<From, To>(sampleInFile, inFile.alpha);
            }
            return changed_.template of<Host, To>(sampleOf(sampleNow), sampleOf(now.alpha));
        };
        return {colour(now.red, before.red, inFile.red), colour(now.green, before.green, inFile.green),
                colour(now.blue, before.blue, inFile.blue),
                alphaStays ? rescaled<From, To>(inFile.alpha) : rescaled<Host, To>(sampleOf(now.alpha))};
    }

private:
    static typename Host::Sample sampleOf(typename Host::Channel channel) {
        return bitCast<typename Host::Sample>(channel);
    }

    Recolouring left_;
    Recolouring changed_; ///< of the host's straight values
    bool eitherMultiplied_;
};

/// The rows to write. Runs of pixels that the effect has left are the file's own where its form stays.
template <class Host, class From, class To>
class RowChoice {
public:
    RowChoice(const host::Image& result, const host::Image& image, const Picture& source, Picture& picture)
        : result_(result), image_(image), source_(source), picture_(picture),
          choice_({source.alphaKind, source.isLinear}, {picture.alphaKind, picture.isLinear}),
          samplesStay_(std::is_same_v<From, To> && source.alphaKind == picture.alphaKind &&
                       source.isLinear == picture.isLinear),
          inFile_(source.width), chosen_(source.width) {}

    void fill(A_long y) {
        const auto row = static_cast<std::size_t>(y);
        const Pixel* const now = pixelsOf<Pixel>(result_, y);
        const Pixel* const before = pixelsOf<Pixel>(image_, y);
        const std::size_t rowBytes = source_.rowBytes();
        if (source_.channels == picture_.channels && stays(now, before, chosen_.size())) {
            std::memcpy(picture_.samples.data() + row * rowBytes, source_.samples.data() + row * rowBytes,
                        rowBytes);
            return;
        }
        loadRow<From>(source_, row, std::span(inFile_));
        for (std::size_t x = 0; x < chosen_.size(); x += kRun) {
            const std::size_t count = std::min(kRun, chosen_.size() - x);
            chooseRun(now, before, x, count);
        }
        storeRow(picture_, row, std::span(std::as_const(chosen_)));
    }

private:
    using Pixel = typename Host::Pixel;
    static constexpr std::size_t kRun = 32;

    bool stays(const Pixel* now, const Pixel* before, std::size_t count) const {
        return samplesStay_ && std::memcmp(now, before, count * sizeof *now) == 0;
    }

    void chooseRun(const Pixel* now, const Pixel* before, std::size_t first, std::size_t count) {
        if constexpr (std::is_same_v<From, To>) {
            if (stays(now + first, before + first, count)) {
                std::copy_n(inFile_.data() + first, count, chosen_.data() + first);
                return;
            }
        }
        for (std::size_t x = first; x < first + count; ++x) {
            chosen_[x] = choice_(now[x], before[x], inFile_[x]);
        }
    }

    const host::Image& result_;
    const host::Image& image_;
    const Picture& source_;
    Picture& picture_;
    PixelChoice<Host, From, To> choice_;
    bool samplesStay_;
    std::vector<FilePixel<typename From::Sample>> inFile_;
    std::vector<FilePixel<typename To::Sample>> chosen_;
};

template <class Host, class From, class To>
void fillPicture(Picture& picture, const host::Image& result, const host::Image& image,
                 const Picture& source) {
    RowChoice<Host, From, To> rows(result, image, source, picture);
    for (A_long y = 0; y < result.height(); ++y) {
        rows.fill(y);
    }
}

/// A colour profile is made for grey or for colour pictures and means nothing in the other kind.
std::vector<PictureNote> fittingNotes(const Picture& source, Channels channels) {
    std::vector<PictureNote> notes;
    for (const PictureNote& note : withoutSettings(source.format, source.notes)) {
        if (isGrey(source.channels) == isGrey(channels) || !isColourProfile(note, source.format)) {
            notes.push_back(note);
        }
    }
    return notes;
}

} // namespace

PF_PixelFormat workingFormat(SampleType type) {
    switch (type) {
    case SampleType::kUint8:
        return PF_PixelFormat_ARGB32;
    case SampleType::kUint16:
        return PF_PixelFormat_ARGB64;
    default:
        return PF_PixelFormat_ARGB128;
    }
}

SampleType sampleTypeFor(PF_PixelFormat format, SampleType source) {
    switch (format) {
    case PF_PixelFormat_ARGB32:
        return SampleType::kUint8;
    case PF_PixelFormat_ARGB64:
        return SampleType::kUint16;
    default:
        return isFloat(source) ? source : SampleType::kFloat;
    }
}

host::Image imageOf(const Picture& picture, PF_PixelFormat format) {
    host::Image image(format, static_cast<A_long>(picture.width), static_cast<A_long>(picture.height));
    withScale(format, [&](auto host) {
        withScale(picture.sampleType,
                  [&](auto file) { fillImage<decltype(file), decltype(host)>(image, picture); });
    });
    return image;
}

Picture pictureOf(const host::Image& result, const host::Image& image, const Picture& source,
                  const PictureForm& form) {
    Picture picture;
    picture.width = source.width;
    picture.height = source.height;
    picture.sampleType = form.sampleType;
    picture.alphaKind = form.alphaKind;
    picture.isLinear = form.isLinear;
    picture.format = source.format;
    withScale(result.format(), [&](auto host) {
        using Host = decltype(host);
        picture.channels = channelsFor<Host>(result, source.channels);
        picture.samples.resize(picture.byteCount());
        withScale(source.sampleType, [&](auto from) {
            withScale(form.sampleType, [&](auto to) {
                fillPicture<Host, decltype(from), decltype(to)>(picture, result, image, source);
            });
        });
    });
    picture.notes = fittingNotes(source, picture.channels);
    picture.exrRest = source.exrRest;
    return picture;
}

Picture displayed(const Picture& picture) {
    const host::Image image = imageOf(picture, PF_PixelFormat_ARGB128);
    return pictureOf(image, image, picture, {SampleType::kFloat, AlphaKind::kStraight, false});
}

} // namespace kovalune::pictures
