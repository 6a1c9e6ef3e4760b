// Between pictures of files and of the host, pixel by pixel in the plainest form, beside the way of rows and runs.

#include "pictures/PictureConversion.h"
#include "tests/pictures/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <random>
#include <tuple>

namespace kovalune::test {

using namespace pictures;

namespace {

/// A kind of samples: whole numbers up to white, or floats, which are kept as their bits.
struct Kind {
    uint64_t white;
    bool isFloat;
};

Kind kindOf(SampleType type) {
    return type == SampleType::kUint8    ? Kind{255, false}
           : type == SampleType::kUint16 ? Kind{65535, false}
                                         : Kind{1, true};
}

Kind kindOf(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB32   ? Kind{255, false}
           : format == PF_PixelFormat_ARGB64 ? Kind{32768, false}
                                             : Kind{1, true};
}

double asDouble(uint32_t bits, Kind kind) {
    return kind.isFloat ? static_cast<double>(std::bit_cast<float>(bits)) : bits;
}

uint32_t fromDouble(double value, Kind kind) {
    if (kind.isFloat) {
        return std::bit_cast<uint32_t>(static_cast<float>(value));
    }
    return value > 0.0
               ? static_cast<uint32_t>(std::floor(std::min(value, static_cast<double>(kind.white)) + 0.5))
               : 0;
}

uint32_t scaled(uint32_t bits, Kind from, Kind to) {
    if (from.isFloat && to.isFloat) {
        return bits;
    }
    if (from.isFloat || to.isFloat) {
        return fromDouble(
            asDouble(bits, from) * static_cast<double>(to.white) / static_cast<double>(from.white), to);
    }
    return static_cast<uint32_t>(std::min((bits * to.white + from.white / 2) / from.white, to.white));
}

/// To straight alpha or from it.
uint32_t coloured(uint32_t bits, uint32_t alpha, Kind from, Kind to, AlphaKind kind, bool inward) {
    const double share = asDouble(alpha, from);
    const auto white = [](Kind each) { return static_cast<double>(each.white); };
    if (kind == AlphaKind::kStraight || std::isnan(share) || share < 0.0 || (inward && share == 0.0)) {
        return scaled(bits, from, to);
    }
    return inward ? fromDouble(asDouble(bits, from) * white(to) / share, to)
                  : fromDouble(asDouble(bits, from) * share * white(to) / (white(from) * white(from)), to);
}

using Pixel = std::array<uint32_t, 4>; ///< red, green, blue, alpha as bits

uint32_t sampleOf(const Picture& picture, std::size_t index) {
    switch (bytesPerSample(picture.sampleType)) {
    case 1:
        return picture.sample<uint8_t>(index);
    case 2:
        return picture.sample<uint16_t>(index);
    default:
        return picture.sample<uint32_t>(index);
    }
}

Pixel pixelOf(const Picture& picture, std::size_t pixel) {
    const std::size_t count = channelCount(picture.channels);
    const auto sample = [&](std::size_t index) { return sampleOf(picture, pixel * count + index); };
    const Kind kind = kindOf(picture.sampleType);
    const uint32_t full = fromDouble(static_cast<double>(kind.white), kind);
    const uint32_t alpha = hasAlpha(picture.channels) ? sample(count - 1) : full;
    return isGrey(picture.channels) ? Pixel{sample(0), sample(0), sample(0), alpha}
                                    : Pixel{sample(0), sample(1), sample(2), alpha};
}

Pixel pixelOf(const host::Image& image, A_long x, A_long y) {
    if (image.format() == PF_PixelFormat_ARGB32) {
        const auto& pixel = image.at<PF_Pixel>(x, y);
        return {pixel.red, pixel.green, pixel.blue, pixel.alpha};
    }
    if (image.format() == PF_PixelFormat_ARGB64) {
        const auto& pixel = image.at<PF_Pixel16>(x, y);
        return {pixel.red, pixel.green, pixel.blue, pixel.alpha};
    }
    std::array<uint32_t, 4> bits;
    std::memcpy(&bits, &image.at<PF_PixelFloat>(x, y), sizeof bits);
    return {bits[1], bits[2], bits[3], bits[0]};
}

Pixel plainHostPixel(const Pixel& inFile, const Picture& picture, PF_PixelFormat format) {
    const Kind from = kindOf(picture.sampleType);
    const Kind to = kindOf(format);
    Pixel result{};
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = coloured(inFile[i], inFile[3], from, to, picture.alphaKind, true);
    }
    result[3] = scaled(inFile[3], from, to);
    return result;
}

/// Of a form whose alpha is of the source's kind.
Pixel plainFilePixel(const Pixel& now, const Pixel& before, const Pixel& inFile, const Picture& source,
                     PF_PixelFormat format, SampleType type) {
    const Kind host = kindOf(format);
    const Kind from = kindOf(source.sampleType);
    const Kind to = kindOf(type);
    const bool alphaStays = now[3] == before[3];
    Pixel result{};
    for (std::size_t i = 0; i < 3; ++i) {
        const bool stays = now[i] == before[i] && (alphaStays || source.alphaKind == AlphaKind::kStraight);
        result[i] =
            stays ? scaled(inFile[i], from, to) : coloured(now[i], now[3], host, to, source.alphaKind, false);
    }
    result[3] = alphaStays ? scaled(inFile[3], from, to) : scaled(now[3], host, to);
    return result;
}

bool isNan(uint32_t bits, Kind kind) {
    return kind.isFloat && std::isnan(std::bit_cast<float>(bits));
}

/// What a NaN carries is nobody's.
bool same(uint32_t a, uint32_t b, Kind kind) {
    return a == b || (isNan(a, kind) && isNan(b, kind));
}

/// In runs of several lengths, so that some are longer and some shorter than what is copied at once.
void change(host::Image& image, std::mt19937& random) {
    for (A_long y = 0; y < image.height(); ++y) {
        const auto first = static_cast<A_long>(random() % 150);
        const auto end = std::min(image.width(), first + static_cast<A_long>(random() % 100));
        for (A_long x = first; x < end && y % 4 != 0; ++x) {
            if (random() % 3 != 0) {
                const std::size_t pixelBytes = host::bytesPerPixel(image.format());
                image.row(y)[static_cast<std::size_t>(x) * pixelBytes + random() % pixelBytes] ^=
                    std::byte{1};
            }
        }
    }
}

constexpr SampleType kTypes[] = {SampleType::kUint8, SampleType::kUint16, SampleType::kFloat};
constexpr PF_PixelFormat kFormats[] = {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128};

class PlainConversion : public testing::TestWithParam<std::tuple<SampleType, Channels, AlphaKind>> {
protected:
    PlainConversion() {
        const auto [type, channels, kind] = GetParam();
        picture_ = randomPicture(type, channels, 133, 12, 41);
        picture_.alphaKind = kind;
    }

    Picture picture_;
};

INSTANTIATE_TEST_SUITE_P(All, PlainConversion,
                         testing::Combine(testing::ValuesIn(kTypes),
                                          testing::Values(Channels::kGrey, Channels::kGreyAlpha,
                                                          Channels::kRgb, Channels::kRgbAlpha),
                                          testing::Values(AlphaKind::kStraight, AlphaKind::kPremultiplied)));

TEST_P(PlainConversion, TheHostsPictureIsThatOfEachPixel) {
    for (const PF_PixelFormat format : kFormats) {
        const host::Image image = imageOf(picture_, format);
        for (A_long y = 0; y < image.height(); ++y) {
            for (A_long x = 0; x < image.width(); ++x) {
                const Pixel inFile = pixelOf(picture_, static_cast<std::size_t>(y * image.width() + x));
                const Pixel expected = plainHostPixel(inFile, picture_, format);
                const Pixel actual = pixelOf(image, x, y);
                for (std::size_t i = 0; i < 4; ++i) {
                    ASSERT_TRUE(same(actual[i], expected[i], kindOf(format)))
                        << actual[i] << " for " << expected[i] << ", channel " << i << " of " << x << ','
                        << y;
                }
            }
        }
    }
}

TEST_P(PlainConversion, ThePictureToWriteIsThatOfEachPixel) {
    std::mt19937 random(5);
    for (const PF_PixelFormat format : kFormats) {
        const host::Image image = imageOf(picture_, format);
        host::Image result = image;
        change(result, random);
        for (const SampleType type : kTypes) {
            const Picture written = pictureOf(result, image, picture_, {type, picture_.alphaKind});
            for (A_long y = 0; y < image.height(); ++y) {
                for (A_long x = 0; x < image.width(); ++x) {
                    const auto at = static_cast<std::size_t>(y * image.width() + x);
                    Pixel expected = plainFilePixel(pixelOf(result, x, y), pixelOf(image, x, y),
                                                    pixelOf(picture_, at), picture_, format, type);
                    const Pixel actual = pixelOf(written, at);
                    if (!hasAlpha(written.channels)) { // then it is full in all pixels
                        expected[3] = actual[3];
                    }
                    for (std::size_t i = 0; i < 4; ++i) {
                        ASSERT_TRUE(same(actual[i], expected[i], kindOf(type)))
                            << actual[i] << " for " << expected[i] << ", channel " << i << " of " << x << ','
                            << y;
                    }
                }
            }
        }
    }
}

TEST(PlainScale, EveryWholeNumberIsRoundedAsTheExactQuotient) {
    Picture all = pictureWith(SampleType::kUint16, Channels::kGrey, 256, {});
    all.height = 256;
    all.samples.resize(all.byteCount());
    for (std::size_t i = 0; i < 65536; ++i) {
        all.setSample(i, static_cast<uint16_t>(i));
    }
    host::Image beyond(PF_PixelFormat_ARGB64, 256, 256);
    for (A_long i = 0; i < 65536; ++i) {
        const auto value = static_cast<A_u_short>(i);
        beyond.at<PF_Pixel16>(i % 256, i / 256) = {32768, value, value, value};
    }
    const host::Image image = imageOf(all, PF_PixelFormat_ARGB64);
    const Picture written = pictureOf(beyond, host::Image(PF_PixelFormat_ARGB64, 256, 256), all,
                                      {SampleType::kUint16, AlphaKind::kStraight});
    for (A_long i = 0; i < 65536; ++i) {
        const auto value = static_cast<uint64_t>(i);
        EXPECT_EQ(image.at<PF_Pixel16>(i % 256, i / 256).red, (value * 32768 + 32767) / 65535);
        if (value != 0) { // 0 is what was there before
            EXPECT_EQ(written.sample<uint16_t>(static_cast<std::size_t>(i)),
                      std::min<uint64_t>((value * 65535 + 16384) / 32768, 65535));
        }
    }
}

} // namespace
} // namespace kovalune::test
