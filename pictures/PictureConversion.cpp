#include "pictures/PictureConversion.h"

#include "hostapi/Constants.h"
#include "pictures/NoteConversion.h"
#include "pictures/SampleScale.h"

#include <bit>
#include <cstring>

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

template <class Sample>
struct FilePixel {
    Sample red;
    Sample green;
    Sample blue;
    Sample alpha;
};

/// Grey is spread, and a missing alpha is full.
template <class Scale>
FilePixel<typename Scale::Sample> filePixel(const Picture& picture, std::size_t pixel) {
    using Sample = typename Scale::Sample;
    const std::size_t first = pixel * channelCount(picture.channels);
    const auto sample = [&](std::size_t index) { return picture.sample<Sample>(first + index); };
    const std::size_t last = channelCount(picture.channels) - 1;
    const Sample alpha = hasAlpha(picture.channels) ? sample(last) : rescaled<FileScale8, Scale>(255);
    if (isGrey(picture.channels)) {
        return {sample(0), sample(0), sample(0), alpha};
    }
    return {sample(0), sample(1), sample(2), alpha};
}

template <class Sample>
void setFilePixel(Picture& picture, std::size_t pixel, const FilePixel<Sample>& value) {
    const std::size_t first = pixel * channelCount(picture.channels);
    picture.setSample(first, value.red);
    std::size_t next = first + 1;
    if (!isGrey(picture.channels)) {
        picture.setSample(next++, value.green);
        picture.setSample(next++, value.blue);
    }
    if (hasAlpha(picture.channels)) {
        picture.setSample(next, value.alpha);
    }
}

std::size_t pixelIndex(const host::Image& image, A_long x, A_long y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width()) +
           static_cast<std::size_t>(x);
}

/// Of floats too, where NaN is the same as itself and 0 is not -0.
template <class Sample>
bool sameBits(Sample a, Sample b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class File, class Host>
void fillImage(host::Image& image, const Picture& picture) {
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const auto pixel = filePixel<File>(picture, pixelIndex(image, x, y));
            const auto channel = [](typename Host::Sample sample) {
                return std::bit_cast<typename Host::Channel>(sample);
            };
            const auto colour = [&](typename File::Sample sample) {
                return channel(
                    recoloured<File, Host>(sample, pixel.alpha, picture.alphaKind, AlphaKind::kStraight));
            };
            image.at<typename Host::Pixel>(x, y) = {channel(rescaled<File, Host>(pixel.alpha)),
                                                    colour(pixel.red), colour(pixel.green),
                                                    colour(pixel.blue)};
        }
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

template <class Host>
Channels channelsFor(const host::Image& result, Channels source) {
    bool grey = isGrey(source);
    bool alpha = hasAlpha(source);
    for (A_long y = 0; y < result.height(); ++y) {
        for (A_long x = 0; x < result.width(); ++x) {
            const auto& pixel = result.at<typename Host::Pixel>(x, y);
            grey = grey && sameBits(pixel.red, pixel.green) && sameBits(pixel.green, pixel.blue);
            alpha = alpha || !isFull<Host>(pixel.alpha);
        }
    }
    return channelsOf(grey, alpha);
}

/// One pixel to write: what the effect left comes from the file, the rest from the result.
template <class Host, class From, class To>
class PixelChoice {
public:
    PixelChoice(AlphaKind from, AlphaKind to)
        : from_(from), to_(to),
          eitherMultiplied_(from == AlphaKind::kPremultiplied || to == AlphaKind::kPremultiplied) {}

    FilePixel<typename To::Sample> operator()(const typename Host::Pixel& now,
                                              const typename Host::Pixel& before,
                                              const FilePixel<typename From::Sample>& inFile) const {
        const bool alphaStays = sameBits(now.alpha, before.alpha);
        const bool coloursMayStay = alphaStays || !eitherMultiplied_;
        const auto colour = [&](auto sampleNow, auto sampleBefore, auto sampleInFile) {
            if (coloursMayStay && sameBits(sampleNow, sampleBefore)) {
                return recoloured<From, To>(sampleInFile, inFile.alpha, from_, to_);
            }
            return recoloured<Host, To>(sampleOf(sampleNow), sampleOf(now.alpha), AlphaKind::kStraight, to_);
        };
        return {colour(now.red, before.red, inFile.red), colour(now.green, before.green, inFile.green),
                colour(now.blue, before.blue, inFile.blue),
                alphaStays ? rescaled<From, To>(inFile.alpha) : rescaled<Host, To>(sampleOf(now.alpha))};
    }

private:
    static typename Host::Sample sampleOf(typename Host::Channel channel) {
        return std::bit_cast<typename Host::Sample>(channel);
    }

    AlphaKind from_;
    AlphaKind to_;
    bool eitherMultiplied_;
};

template <class Host, class From, class To>
void fillPicture(Picture& picture, const host::Image& result, const host::Image& image,
                 const Picture& source) {
    const PixelChoice<Host, From, To> choice(source.alphaKind, picture.alphaKind);
    for (A_long y = 0; y < result.height(); ++y) {
        for (A_long x = 0; x < result.width(); ++x) {
            const std::size_t index = pixelIndex(result, x, y);
            setFilePixel(picture, index,
                         choice(result.at<typename Host::Pixel>(x, y), image.at<typename Host::Pixel>(x, y),
                                filePixel<From>(source, index)));
        }
    }
}

/// A colour profile is made for grey or for colour pictures and means nothing in the other kind.
std::vector<PictureNote> fittingNotes(const Picture& source, Channels channels) {
    std::vector<PictureNote> notes;
    for (const PictureNote& note : source.notes) {
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
    return picture;
}

} // namespace kovalune::pictures
