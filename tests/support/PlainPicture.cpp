#include "tests/support/PlainPicture.h"

#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace kovalune::test {
namespace {

template <class Pixel>
PlainPixel plain(const Pixel& p) {
    return {static_cast<double>(p.alpha), static_cast<double>(p.red), static_cast<double>(p.green),
            static_cast<double>(p.blue)};
}

template <class Channel, class Pixel>
Pixel stored(const PlainPixel& p) {
    return {static_cast<Channel>(p.alpha), static_cast<Channel>(p.red), static_cast<Channel>(p.green),
            static_cast<Channel>(p.blue)};
}

double wildFloat(Random& random) {
    constexpr std::array specials = {-0.0F,
                                     0.0F,
                                     1.0F,
                                     -1.5F,
                                     65504.0F,
                                     3.0e38F,
                                     -3.0e38F,
                                     1.0e-42F,
                                     std::numeric_limits<float>::infinity(),
                                     -std::numeric_limits<float>::infinity(),
                                     std::numeric_limits<float>::quiet_NaN()};
    if (random.chance(4)) {
        return static_cast<double>(specials[static_cast<std::size_t>(random.below(specials.size()))]);
    }
    return static_cast<double>(static_cast<float>(random.unit() * 6.0 - 2.0));
}

double channel(PF_PixelFormat format, Random& random, Range range) {
    if (format == PF_PixelFormat_ARGB32) {
        return random.between(0, 255);
    }
    if (format == PF_PixelFormat_ARGB64) {
        if (range == Range::kWild) {
            return random.chance(20) ? 65535 : random.between(0, 65535);
        }
        return random.chance(10) ? 32768 : random.between(0, 32768);
    }
    return range == Range::kWild ? wildFloat(random) : static_cast<double>(static_cast<float>(random.unit()));
}

bool sameBits(double a, double b) {
    if (std::isnan(a) && std::isnan(b)) {
        return true;
    }
    return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b);
}

std::string channelDifference(const PlainPixel& expected, const PlainPixel& actual) {
    const auto text = [](const char* name, double wanted, double found) {
        return std::string(name) + " is " + std::to_string(found) + " instead of " + std::to_string(wanted) +
               " (" + std::to_string(found - wanted) + ")";
    };
    if (!sameBits(expected.alpha, actual.alpha)) {
        return text("alpha", expected.alpha, actual.alpha);
    }
    if (!sameBits(expected.red, actual.red)) {
        return text("red", expected.red, actual.red);
    }
    if (!sameBits(expected.green, actual.green)) {
        return text("green", expected.green, actual.green);
    }
    if (!sameBits(expected.blue, actual.blue)) {
        return text("blue", expected.blue, actual.blue);
    }
    return {};
}

} // namespace

std::string formatName(PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB32) {
        return "Argb8";
    }
    return format == PF_PixelFormat_ARGB64 ? "Argb16" : "Argb32";
}

double fullScale(PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB32) {
        return 255.0;
    }
    return format == PF_PixelFormat_ARGB64 ? 32768.0 : 1.0;
}

PlainPicture read(const TestWorld& world) {
    PlainPicture picture(world.format(), world.width(), world.height());
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            if (world.format() == PF_PixelFormat_ARGB32) {
                picture.at(x, y) = plain(world.at<PF_Pixel>(x, y));
            } else if (world.format() == PF_PixelFormat_ARGB64) {
                picture.at(x, y) = plain(world.at<PF_Pixel16>(x, y));
            } else {
                picture.at(x, y) = plain(world.at<PF_PixelFloat>(x, y));
            }
        }
    }
    return picture;
}

void write(const PlainPicture& picture, TestWorld& world) {
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            if (world.format() == PF_PixelFormat_ARGB32) {
                world.at<PF_Pixel>(x, y) = stored<uint8_t, PF_Pixel>(picture.at(x, y));
            } else if (world.format() == PF_PixelFormat_ARGB64) {
                world.at<PF_Pixel16>(x, y) = stored<uint16_t, PF_Pixel16>(picture.at(x, y));
            } else {
                world.at<PF_PixelFloat>(x, y) = stored<float, PF_PixelFloat>(picture.at(x, y));
            }
        }
    }
}

PlainPicture randomPicture(PF_PixelFormat format, int32_t width, int32_t height, Random& random,
                           Range range) {
    PlainPicture picture(format, width, height);
    for (PlainPixel& pixel : picture.pixels) {
        pixel.alpha = random.chance(20) ? 0.0 : channel(format, random, range);
        pixel.red = channel(format, random, range);
        pixel.green = channel(format, random, range);
        pixel.blue = channel(format, random, range);
    }
    return picture;
}

PlainPicture flatPicture(PF_PixelFormat format, int32_t width, int32_t height, Random& random, Range range) {
    const PlainPicture palette = randomPicture(format, 5, 1, random, range);
    PlainPicture picture(format, width, height);
    PlainPixel current = palette.at(0, 0);
    for (PlainPixel& pixel : picture.pixels) {
        if (random.chance(15)) {
            current = palette.at(random.below(5), 0);
            current.alpha = random.chance(75) ? fullScale(format) : 0.0;
        }
        pixel = current;
    }
    return picture;
}

std::string difference(const PlainPicture& expected, const PlainPicture& actual) {
    if (expected.format != actual.format || expected.width != actual.width ||
        expected.height != actual.height) {
        return "format or size";
    }
    for (int32_t y = 0; y < expected.height; ++y) {
        for (int32_t x = 0; x < expected.width; ++x) {
            const std::string found = channelDifference(expected.at(x, y), actual.at(x, y));
            if (!found.empty()) {
                return "at " + std::to_string(x) + ", " + std::to_string(y) + ": " + found;
            }
        }
    }
    return {};
}

std::string difference(const PlainPicture& expected, const TestWorld& actual) {
    return difference(expected, read(actual));
}

} // namespace kovalune::test
