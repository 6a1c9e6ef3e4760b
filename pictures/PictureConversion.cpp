#include "pictures/PictureConversion.h"

#include "effect/share/StandardParts.h"
#include "hostapi/Constants.h"
#include "pictures/ColourProfile.h"
#include "pictures/EmbeddedSettings.h"
#include "pictures/FileRows.h"
#include "render/samples/LightCurve.h"
#include "render/samples/PixelChoice.h"
#include "render/samples/SampleScale.h"

#include <algorithm>
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
