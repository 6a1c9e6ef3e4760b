#include "cli/PictureConversion.h"

#include "hostapi/Constants.h"

#include <algorithm>
#include <cstring>

namespace kovalune {

namespace {

// How the samples of one depth look in the host.
struct Depth8 {
    using Pixel = PF_Pixel;
    static constexpr PF_PixelFormat kFormat = PF_PixelFormat_ARGB32;
    static constexpr std::uint16_t kFileWhite = 255;
    static constexpr std::uint16_t kWhite = 255;
    static std::uint8_t fromFile(std::uint16_t value) { return static_cast<std::uint8_t>(value); }
    static std::uint16_t toFile(std::uint8_t value) { return value; }
};

struct Depth16 {
    using Pixel = PF_Pixel16;
    static constexpr PF_PixelFormat kFormat = PF_PixelFormat_ARGB64;
    static constexpr std::uint16_t kFileWhite = 65535;
    static constexpr std::uint16_t kWhite = 32768;
    static std::uint16_t fromFile(std::uint16_t value) {
        return static_cast<std::uint16_t>((std::uint64_t{value} * 32768 + 32767) / 65535);
    }
    // An effect can leave values above white; a file cannot hold them.
    static std::uint16_t toFile(std::uint16_t value) {
        return static_cast<std::uint16_t>(
            std::min<std::uint64_t>((std::uint64_t{value} * 65535 + 16384) / 32768, 65535));
    }
};

struct FilePixel {
    std::uint16_t red;
    std::uint16_t green;
    std::uint16_t blue;
    std::uint16_t alpha;
};

FilePixel filePixel(const Picture& picture, std::size_t pixel, std::uint16_t white) {
    const std::size_t first = pixel * channelCount(picture.channels);
    if (isGrey(picture.channels)) {
        const std::uint16_t grey = picture.sample(first);
        return {grey, grey, grey, hasAlpha(picture.channels) ? picture.sample(first + 1) : white};
    }
    return {picture.sample(first), picture.sample(first + 1), picture.sample(first + 2),
            hasAlpha(picture.channels) ? picture.sample(first + 3) : white};
}

void setFilePixel(Picture& picture, std::size_t pixel, const FilePixel& value) {
    const std::size_t first = pixel * channelCount(picture.channels);
    picture.setSample(first, value.red);
    std::size_t next = first + 1;
    if (!isGrey(picture.channels)) {
        picture.setSample(next++, value.green);
        picture.setSample(next++, value.blue);
    }
    if (hasAlpha(picture.channels))
        picture.setSample(next, value.alpha);
}

std::size_t pixelIndex(const host::Image& image, A_long x, A_long y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width()) +
           static_cast<std::size_t>(x);
}

template <typename Depth>
host::Image toImage(const Picture& picture) {
    host::Image image(Depth::kFormat, static_cast<A_long>(picture.width),
                      static_cast<A_long>(picture.height));
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const FilePixel pixel = filePixel(picture, pixelIndex(image, x, y), Depth::kFileWhite);
            image.at<typename Depth::Pixel>(x, y) = {Depth::fromFile(pixel.alpha), Depth::fromFile(pixel.red),
                                                     Depth::fromFile(pixel.green),
                                                     Depth::fromFile(pixel.blue)};
        }
    }
    return image;
}

template <typename Depth>
Channels channelsFor(const host::Image& result, Channels source) {
    bool grey = isGrey(source);
    bool alpha = hasAlpha(source);
    for (A_long y = 0; y < result.height(); ++y) {
        for (A_long x = 0; x < result.width(); ++x) {
            const auto& pixel = result.at<typename Depth::Pixel>(x, y);
            grey = grey && pixel.red == pixel.green && pixel.green == pixel.blue;
            alpha = alpha || pixel.alpha < Depth::kWhite;
        }
    }
    if (grey)
        return alpha ? Channels::GreyAlpha : Channels::Grey;
    return alpha ? Channels::RgbAlpha : Channels::Rgb;
}

template <typename Depth, typename Sample>
std::uint16_t fileSample(Sample now, Sample before, std::uint16_t inFile) {
    return now == before ? inFile : Depth::toFile(now);
}

template <typename Depth>
void fillSamples(Picture& picture, const host::Image& result, const host::Image& image,
                 const Picture& source) {
    for (A_long y = 0; y < result.height(); ++y) {
        for (A_long x = 0; x < result.width(); ++x) {
            const auto& now = result.at<typename Depth::Pixel>(x, y);
            const auto& before = image.at<typename Depth::Pixel>(x, y);
            const std::size_t index = pixelIndex(result, x, y);
            const FilePixel inFile = filePixel(source, index, Depth::kFileWhite);
            setFilePixel(picture, index,
                         {fileSample<Depth>(now.red, before.red, inFile.red),
                          fileSample<Depth>(now.green, before.green, inFile.green),
                          fileSample<Depth>(now.blue, before.blue, inFile.blue),
                          fileSample<Depth>(now.alpha, before.alpha, inFile.alpha)});
        }
    }
}

// A colour profile is made for grey or for colour pictures and means nothing in the other kind.
bool fits(const PictureNote& note, Channels from, Channels to) {
    return std::strcmp(note.name.data(), "iCCP") != 0 || isGrey(from) == isGrey(to);
}

template <typename Depth>
Picture toPicture(const host::Image& result, const host::Image& image, const Picture& source) {
    Picture picture;
    picture.width = source.width;
    picture.height = source.height;
    picture.channels = channelsFor<Depth>(result, source.channels);
    picture.depth = source.depth;
    for (const PictureNote& note : source.notes) {
        if (fits(note, source.channels, picture.channels))
            picture.notes.push_back(note);
    }
    picture.samples.resize(picture.byteCount());
    fillSamples<Depth>(picture, result, image, source);
    return picture;
}

} // namespace

host::Image imageOf(const Picture& picture) {
    return picture.depth == 16 ? toImage<Depth16>(picture) : toImage<Depth8>(picture);
}

Picture pictureOf(const host::Image& result, const host::Image& image, const Picture& source) {
    return source.depth == 16 ? toPicture<Depth16>(result, image, source)
                              : toPicture<Depth8>(result, image, source);
}

} // namespace kovalune
