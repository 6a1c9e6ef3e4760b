#include "render/selfcheck/GoldenPicture.h"

#include "render/selfcheck/Random.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <vector>

namespace kovalune::selfcheck {
namespace {

// No call has two arguments that draw a number: compilers evaluate them in different orders.

/// In 8 bits, row by row.
struct Drawing {
    int32_t width;
    int32_t height;
    std::vector<PF_Pixel> pixels;

    Drawing(int32_t w, int32_t h, const PF_Pixel& ground)
        : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), ground) {}

    PF_Pixel& at(int32_t x, int32_t y) {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
    void set(int32_t x, int32_t y, const PF_Pixel& colour) {
        if (x >= 0 && y >= 0 && x < width && y < height) {
            at(x, y) = colour;
        }
    }
};

GoldenPalette drawnPalette(Random& random) {
    GoldenPalette palette;
    for (PF_Pixel& colour : palette) {
        const auto channel = [&random] { return static_cast<uint8_t>(random.below(256)); };
        colour = {255, channel(), channel(), channel()};
    }
    // Drawings have their shadows beside their lights: two colours that are near each other.
    palette[5] = {255, static_cast<uint8_t>(palette[4].red * 3 / 4),
                  static_cast<uint8_t>(palette[4].green * 3 / 4),
                  static_cast<uint8_t>(palette[4].blue * 3 / 4)};
    return palette;
}

PF_Pixel oneOf(const GoldenPalette& palette, Random& random) {
    return palette[static_cast<std::size_t>(random.below(static_cast<int>(palette.size())))];
}

void paintDisc(Drawing& drawing, int32_t cx, int32_t cy, int32_t radius, const PF_Pixel& colour) {
    for (int32_t y = -radius; y <= radius; ++y) {
        for (int32_t x = -radius; x <= radius; ++x) {
            if (x * x + y * y <= radius * radius) {
                drawing.set(cx + x, cy + y, colour);
            }
        }
    }
}

/// With steps of whole pixels along its longer side.
void paintLine(Drawing& drawing, int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t thickness,
               const PF_Pixel& colour) {
    const int32_t dx = x1 - x0;
    const int32_t dy = y1 - y0;
    const int32_t steps = std::max({std::abs(dx), std::abs(dy), 1});
    for (int32_t step = 0; step <= steps; ++step) {
        for (int32_t t = 0; t < thickness; ++t) {
            const bool isFlat = std::abs(dx) >= std::abs(dy);
            drawing.set(x0 + dx * step / steps + (isFlat ? 0 : t), y0 + dy * step / steps + (isFlat ? t : 0),
                        colour);
        }
    }
}

void paintRandomLine(Drawing& drawing, const PF_Pixel& colour, int32_t thickness, Random& random) {
    const int32_t x0 = random.below(drawing.width);
    const int32_t y0 = random.below(drawing.height);
    const int32_t x1 = random.below(drawing.width);
    const int32_t y1 = random.below(drawing.height);
    paintLine(drawing, x0, y0, x1, y1, thickness, colour);
}

Drawing drawCel(int32_t width, int32_t height, const GoldenPalette& palette, Random& random) {
    Drawing drawing(width, height, palette[0]);
    for (int32_t n = 3 + width * height / 200; n > 0; --n) {
        PF_Pixel colour = oneOf(palette, random);
        if (random.chance(15)) {
            colour.alpha = static_cast<uint8_t>(random.chance(50) ? 0 : random.below(256));
        }
        const int32_t x = random.below(width);
        const int32_t y = random.below(height);
        if (random.chance(50)) {
            paintDisc(drawing, x, y, random.between(0, 1 + std::min(width, height) / 4), colour);
        } else {
            const int32_t toX = random.below(width);
            const int32_t toY = random.below(height);
            paintLine(drawing, x, y, toX, toY, random.between(1, 9), colour);
        }
    }
    for (int32_t n = random.below(4); n > 0; --n) {
        paintRandomLine(drawing, {255, 0, 0, 0}, 1, random);
    }
    return drawing;
}

Drawing drawLines(int32_t width, int32_t height, const GoldenPalette& palette, Random& random) {
    Drawing drawing(width, height, palette[0]);
    for (int32_t n = 4 + (width + height) / 8; n > 0; --n) {
        const PF_Pixel colour = oneOf(palette, random);
        paintRandomLine(drawing, colour, random.between(1, 3), random);
    }
    return drawing;
}

PF_Pixel randomPixel(Random& random) {
    const auto channel = [&random] { return static_cast<uint8_t>(random.below(256)); };
    const uint8_t alpha = random.chance(70) ? 255 : random.chance(30) ? 0 : channel();
    const uint8_t red = channel();
    const uint8_t green = channel();
    return {alpha, red, green, channel()};
}

Drawing drawNoise(int32_t width, int32_t height, Random& random) {
    Drawing drawing(width, height, {});
    for (PF_Pixel& pixel : drawing.pixels) {
        pixel = randomPixel(random);
    }
    return drawing;
}

Drawing drawTransparent(int32_t width, int32_t height, const GoldenPalette& palette, Random& random) {
    Drawing drawing = drawCel(width, height, palette, random);
    for (PF_Pixel& pixel : drawing.pixels) {
        pixel.alpha = 0;
    }
    return drawing;
}

/// The first listed colour has full red; rows begin with the same without it.
Drawing drawSeed(int32_t width, int32_t height, const GoldenPalette& palette, Random& random) {
    Drawing drawing = drawCel(width, height, palette, random);
    const PF_Pixel hidden = {0, 0, palette[0].green, palette[0].blue};
    for (int32_t y = 0; y < height; ++y) {
        drawing.at(0, y) = hidden;
        const int32_t run = random.between(1, std::max(1, width / 2));
        for (int32_t x = 1; x <= run; ++x) {
            drawing.set(x, y, palette[0]);
        }
    }
    return drawing;
}

Drawing drawn(PictureKind kind, int32_t width, int32_t height, const GoldenPalette& palette, Random& random) {
    switch (kind) {
    case PictureKind::kCel:
        return drawCel(width, height, palette, random);
    case PictureKind::kLines:
        return drawLines(width, height, palette, random);
    case PictureKind::kFlat:
        return {width, height, palette[0]};
    case PictureKind::kTransparent:
        return drawTransparent(width, height, palette, random);
    case PictureKind::kSeed:
        return drawSeed(width, height, palette, random);
    case PictureKind::kNoise:
    case PictureKind::kWild:
        return drawNoise(width, height, random);
    }
    throw std::logic_error("an unknown kind of picture");
}

void put(PF_Pixel& pixel, const PF_Pixel& drawn) {
    pixel = drawn;
}

void put(PF_Pixel16& pixel, const PF_Pixel& drawn) {
    const auto wide = [](uint8_t c) { return static_cast<uint16_t>((c * 32768 + 128) / 255); };
    pixel = {wide(drawn.alpha), wide(drawn.red), wide(drawn.green), wide(drawn.blue)};
}

void put(PF_PixelFloat& pixel, const PF_Pixel& drawn) {
    const auto share = [](uint8_t c) { return static_cast<float>(c) / 255.0F; };
    pixel = {share(drawn.alpha), share(drawn.red), share(drawn.green), share(drawn.blue)};
}

uint8_t wildChannel(uint8_t channel, Random& /*random*/) {
    return channel;
}

uint16_t wildChannel(uint16_t channel, Random& random) {
    return random.chance(10) ? static_cast<uint16_t>(random.below(65536)) : channel;
}

float wildChannel(float channel, Random& random) {
    using Limits = std::numeric_limits<float>;
    constexpr std::array kValues = {-1.0F,
                                    1.5F,
                                    300.25F,
                                    -0.0F,
                                    Limits::max(),
                                    -Limits::max(),
                                    Limits::min(),
                                    Limits::denorm_min(),
                                    Limits::infinity(),
                                    -Limits::infinity(),
                                    Limits::quiet_NaN()};
    return random.chance(5)
               ? kValues[static_cast<std::size_t>(random.below(static_cast<int>(kValues.size())))]
               : channel;
}

template <class Pixel>
host::Image imageOf(Drawing& drawing, PF_PixelFormat format, bool isWild, Random& random) {
    host::Image image(format, drawing.width, drawing.height);
    for (int32_t y = 0; y < drawing.height; ++y) {
        for (int32_t x = 0; x < drawing.width; ++x) {
            Pixel& pixel = image.at<Pixel>(x, y);
            put(pixel, drawing.at(x, y));
            if (isWild) {
                for (auto* const channel : {&pixel.alpha, &pixel.red, &pixel.green, &pixel.blue}) {
                    *channel = wildChannel(*channel, random);
                }
            }
        }
    }
    return image;
}

} // namespace

const char* nameOf(PictureKind kind) {
    constexpr std::array kNames = {"cel", "lines", "noise", "flat", "transparent", "seed", "wild"};
    return kNames[static_cast<std::size_t>(kind)];
}

GoldenPicture drawGoldenPicture(PictureKind kind, PF_PixelFormat format, int32_t width, int32_t height,
                                uint64_t seed) {
    Random random(seed);
    GoldenPalette palette = drawnPalette(random);
    if (kind == PictureKind::kSeed) {
        palette[0].red = 255;
    }
    Drawing drawing = drawn(kind, width, height, palette, random);
    const bool isWild = kind == PictureKind::kWild;
    switch (format) {
    case PF_PixelFormat_ARGB32:
        return {imageOf<PF_Pixel>(drawing, format, isWild, random), palette};
    case PF_PixelFormat_ARGB64:
        return {imageOf<PF_Pixel16>(drawing, format, isWild, random), palette};
    default:
        return {imageOf<PF_PixelFloat>(drawing, format, isWild, random), palette};
    }
}

} // namespace kovalune::selfcheck
