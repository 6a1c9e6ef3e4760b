#include "tests/smoothing/SmoothScenes.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kovalune::test {
namespace {

/// A few colours on the scale of 8 bits, and a picture of their numbers.
struct Drawing {
    int32_t width;
    int32_t height;
    std::vector<int> colours;

    Drawing(int32_t w, int32_t h)
        : width(w), height(h), colours(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}

    void put(int32_t x, int32_t y, int colour) {
        if (x >= 0 && y >= 0 && x < width && y < height) {
            colours[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(x)] = colour;
        }
    }
};

constexpr int kColours = 4;

void fillBlock(Drawing& d, int32_t left, int32_t top, int32_t width, int32_t height, int colour) {
    for (int32_t y = top; y < top + height; ++y) {
        for (int32_t x = left; x < left + width; ++x) {
            d.put(x, y, colour);
        }
    }
}

void drawShapes(Drawing& d, Random& random) {
    for (int n = random.between(1, 6); n > 0; --n) {
        const int32_t cx = random.below(d.width);
        const int32_t cy = random.below(d.height);
        const int32_t reach = random.between(1, 1 + std::max(d.width, d.height) / 2);
        const int colour = random.below(kColours);
        const int32_t slopeX = random.between(-6, 6);
        const int32_t slopeY = random.between(-6, 6);
        const bool round = random.chance(50);
        for (int32_t y = 0; y < d.height; ++y) {
            for (int32_t x = 0; x < d.width; ++x) {
                const int32_t dx = x - cx;
                const int32_t dy = y - cy;
                if (round ? dx * dx + dy * dy <= reach * reach : dx * slopeX + dy * slopeY > 0) {
                    d.put(x, y, colour);
                }
            }
        }
    }
}

void drawLines(Drawing& d, Random& random) {
    for (int n = random.between(1, 7); n > 0; --n) {
        const int32_t fromX = random.below(d.width);
        const int32_t fromY = random.below(d.height);
        const int32_t toX = random.chance(30) ? fromX : random.below(d.width);
        const int32_t toY = random.chance(30) ? fromY : random.below(d.height);
        const int32_t steps = std::max({std::abs(toX - fromX), std::abs(toY - fromY), 1});
        const int colour = random.below(kColours);
        for (int32_t i = 0; i <= steps; ++i) {
            d.put(fromX + ((toX - fromX) * i) / steps, fromY + ((toY - fromY) * i) / steps, colour);
        }
    }
}

/// Straight edges that end in exact diagonals.
void drawStaircases(Drawing& d, Random& random) {
    for (int n = random.between(1, 4); n > 0; --n) {
        const int32_t cx = random.below(d.width);
        const int32_t cy = random.below(d.height);
        const int32_t straight = random.between(-4, 4);
        const bool flipX = random.chance(50);
        const bool flipY = random.chance(50);
        const bool turned = random.chance(50);
        const int32_t line = random.chance(40) ? random.between(1, 2) : 1000;
        const int colour = random.below(kColours);
        for (int32_t y = 0; y < d.height; ++y) {
            for (int32_t x = 0; x < d.width; ++x) {
                const int32_t dx = flipX ? cx - x : x - cx;
                const int32_t dy = flipY ? cy - y : y - cy;
                const int32_t along = turned ? dy : dx;
                const int32_t across = turned ? dx : dy;
                const int32_t depth = across - std::max(along, straight);
                if (depth >= 0 && depth < line) {
                    d.put(x, y, colour);
                }
            }
        }
    }
}

void drawDots(Drawing& d, Random& random) {
    for (int n = 1 + d.width * d.height / random.between(3, 20); n > 0; --n) {
        const int32_t size = random.chance(60) ? 2 : 1;
        fillBlock(d, random.below(d.width), random.below(d.height), size, random.chance(80) ? size : 3 - size,
                  random.below(kColours));
    }
}

void drawNoise(Drawing& d, Random& random) {
    const int rare = random.chance(50) ? 50 : random.between(3, 97);
    const int32_t grain = random.chance(60) ? 1 : random.between(2, 4);
    for (int32_t y = 0; y < d.height; y += grain) {
        for (int32_t x = 0; x < d.width; x += grain) {
            const int colour = random.chance(rare) ? 1 : (random.chance(5) ? random.below(kColours) : 0);
            fillBlock(d, x, y, grain, grain, colour);
        }
    }
}

using Kind = void (*)(Drawing&, Random&);
constexpr std::array<Kind, 6> kKinds = {drawShapes, drawLines, drawStaircases,
                                        drawDots,   drawNoise, drawNoise};
constexpr std::array<const char*, 6> kKindNames = {"shapes", "lines", "staircases", "dots", "noise", "noise"};

PlainPixel randomColour(Random& random) {
    PlainPixel colour;
    const int alpha = random.below(10);
    colour.alpha = alpha < 5 ? 255.0 : (alpha < 7 ? 0.0 : random.between(0, random.chance(20) ? 4 : 255));
    const int reach = random.chance(20) ? 12 : 255;
    colour.red = random.between(0, reach);
    colour.green = random.between(0, reach);
    colour.blue = random.between(0, reach);
    return colour;
}

/// From the scale of 8 bits to the format's.
double scaled(PF_PixelFormat format, double value) {
    if (format == PF_PixelFormat_ARGB32) {
        return value;
    }
    if (format == PF_PixelFormat_ARGB64) {
        return std::floor(value * 32768.0 / 255.0);
    }
    return static_cast<double>(static_cast<float>(value) / 255.0F);
}

PlainPixel scaled(PF_PixelFormat format, const PlainPixel& p) {
    return {scaled(format, p.alpha), scaled(format, p.red), scaled(format, p.green), scaled(format, p.blue)};
}

/// Small steps in every direction, so that the limit is passed here and there.
void addGradient(PlainPicture& picture, Random& random) {
    const double unit = fullScale(picture.format) / 255.0;
    const std::array<double, 2> slopes = {random.unit() * 8.0 - 4.0, random.unit() * 8.0 - 4.0};
    const auto changed = [&](double channel, double by) {
        const double value = std::clamp(channel + by * unit, 0.0, fullScale(picture.format));
        return picture.format == PF_PixelFormat_ARGB128 ? static_cast<double>(static_cast<float>(value))
                                                        : std::floor(value);
    };
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            PlainPixel& p = picture.at(x, y);
            const double by = slopes[0] * x + slopes[1] * y;
            p.red = changed(p.red, by);
            p.green = changed(p.green, random.chance(50) ? by : -by);
            p.blue = changed(p.blue, random.chance(20) ? 3.0 : 0.0);
        }
    }
}

SmoothParams randomParams(PF_PixelFormat format, SmoothMode mode, const PlainPixel& key, Random& random) {
    SmoothParams params;
    params.pixelFormat = format;
    const int kind = random.below(10);
    params.strength = kind < 3 ? 70 : (kind < 5 ? 100 : random.between(1, 100));
    params.curve = random.chance(40) ? 0 : random.between(-100, 100);
    params.threshold = random.chance(60) ? 10 : random.chance(30) ? random.below(3) : random.between(0, 400);
    if (mode == SmoothMode::kPlain) {
        return params;
    }
    params.keyEnabled = random.chance(50) ? 1 : -3;
    params.keyOnly = mode == SmoothMode::kKeyOnly ? random.between(1, 2) : 0;
    const int32_t beyond = random.chance(20) ? 256 : 0; // only the low byte counts
    params.keyRed = static_cast<int32_t>(key.red) + beyond;
    params.keyGreen = static_cast<int32_t>(key.green) - beyond;
    params.keyBlue = static_cast<int32_t>(key.blue) + beyond;
    if (random.chance(30)) {
        std::swap(params.keyRed, params.keyBlue);
    }
    if (random.chance(60)) {
        params.keyTolerance = random.chance(50) ? random.between(1, 10) : random.between(1, 300);
    }
    return params;
}

} // namespace

SmoothScene randomSmoothScene(PF_PixelFormat format, SmoothMode mode, int32_t width, int32_t height,
                              Random& random) {
    std::array<PlainPixel, kColours> palette;
    for (PlainPixel& colour : palette) {
        colour = randomColour(random);
    }
    if (mode != SmoothMode::kPlain) {
        palette[1].alpha = 255.0;
    }
    Drawing drawing(width, height);
    std::string text = std::to_string(width) + " x " + std::to_string(height);
    for (int layers = random.chance(70) ? 1 : 2; layers > 0; --layers) {
        const auto kind = static_cast<std::size_t>(random.below(kKinds.size()));
        kKinds[kind](drawing, random);
        text += std::string(" ") + kKindNames[kind];
    }
    PlainPicture picture(format, width, height);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        picture.pixels[i] = scaled(format, palette[static_cast<std::size_t>(drawing.colours[i])]);
    }
    if (random.chance(15)) {
        addGradient(picture, random);
        text += " with a gradient";
    }
    const PlainPixel key = random.chance(20) ? PlainPixel{255.0, 255.0, 255.0, 255.0} : palette[1];
    const SmoothParams params = randomParams(format, mode, key, random);
    text += ", threshold " + std::to_string(params.threshold) + ", strength " +
            std::to_string(params.strength) + ", curve " + std::to_string(params.curve) + ", key " +
            std::to_string(params.keyRed) + " " + std::to_string(params.keyGreen) + " " +
            std::to_string(params.keyBlue) + " tolerance " + std::to_string(params.keyTolerance);
    return {picture, params, text};
}

} // namespace kovalune::test
