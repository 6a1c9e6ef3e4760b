#include "pictures/regions/ColorPairs.h"

#include "host/ColorConversion.h"

#include <algorithm>
#include <cmath>

namespace kovalune::pictures {

namespace {

/// Tones come in steps of the host's, which lie a little beside round numbers.
double inHundredths(double number) {
    return std::round(100.0 * number) / 100.0;
}

double hueApart(double a, double b) {
    const double apart = std::abs(a - b);
    return inHundredths(std::min(apart, 360.0 - apart));
}

class PairFinder {
public:
    PairFinder(std::span<const ColorRegion> regions, SampleType type, const PairRules& rules)
        : regions_(regions), rules_(rules) {
        for (const ColorRegion& region : regions) {
            tones_.push_back(toneOf(region.color, type));
        }
    }

    std::vector<ColorPair> found() const {
        std::vector<ColorPair> pairs;
        for (std::size_t place = 0; place < regions_.size(); ++place) {
            for (const ColorBorder& border : regions_[place].borders) {
                if (isLarger(place, border.neighbour)) {
                    addIfPair(place, border.neighbour, border.length, pairs);
                }
            }
        }
        std::sort(pairs.begin(), pairs.end(), [](const ColorPair& a, const ColorPair& b) {
            return a.neighbour != b.neighbour ? a.neighbour < b.neighbour : a.second < b.second;
        });
        return pairs;
    }

private:
    bool isLarger(std::size_t a, std::size_t b) const {
        const std::size_t pixelsA = regions_[a].color.pixels;
        const std::size_t pixelsB = regions_[b].color.pixels;
        return pixelsA != pixelsB ? pixelsA > pixelsB : a < b;
    }

    bool isLine(std::size_t place) const { return thicknessOf(regions_[place]) < rules_.leastThickness; }

    bool isGrey(std::size_t place) const { return tones_[place].saturation < rules_.greySaturation; }

    void addIfPair(std::size_t neighbour, std::size_t second, uint64_t length,
                   std::vector<ColorPair>& pairs) const {
        ColorPair pair = {.neighbour = neighbour, .second = second, .border = length};
        pair.borderShare =
            100.0 * static_cast<double>(length) / static_cast<double>(regions_[second].outline);
        pair.hueApart = hueApart(tones_[neighbour].hue, tones_[second].hue);
        pair.lightnessApart = inHundredths(tones_[second].lightness - tones_[neighbour].lightness);
        const double lightness = std::abs(pair.lightnessApart);
        const bool sameHue = pair.hueApart <= rules_.mostHueApart || (isGrey(neighbour) && isGrey(second));
        if (!isLine(neighbour) && !isLine(second) && pair.borderShare >= rules_.leastBorder && sameHue &&
            lightness >= rules_.leastLightnessApart && lightness <= rules_.mostLightnessApart) {
            pairs.push_back(pair);
        }
    }

    std::span<const ColorRegion> regions_;
    const PairRules& rules_;
    std::vector<ColorTone> tones_;
};

} // namespace

ColorTone toneOf(const FlatColor& color, SampleType type) {
    const std::array<uint8_t, 3> rgb = nearestRgb(color, type);
    PF_Fixed hls[3] = {};
    host::rgbToHls(PF_Pixel{255, rgb[0], rgb[1], rgb[2]}, hls);
    constexpr double kOne = 65536.0;
    return {hls[0] / kOne, 100.0 * hls[1] / kOne, 100.0 * hls[2] / kOne};
}

std::vector<ColorPair> pairsIn(std::span<const ColorRegion> regions, SampleType type,
                               const PairRules& rules) {
    return PairFinder(regions, type, rules).found();
}

} // namespace kovalune::pictures
