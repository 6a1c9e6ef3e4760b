// Pairs of flat colours that look like a light and its shadow, or like a colour and the highlight on it: what the effect is
// there to soften. Judged by the figures of regions alone, so that those of one picture and of a whole shot serve alike.
#pragma once

#include "pictures/regions/ColorRegions.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kovalune::pictures {

/// When two colours are a pair, and how far the second may run out over its neighbour. Hue, lightness and saturation are those by which the effect compares colours.
struct PairRules {
    double leastThickness = 4.0;      ///< pixels; what is thinner is line
    double leastBorder = 5.0;         ///< per cent of the smaller one's outline
    double mostHueApart = 25.0;       ///< degrees
    double greySaturation = 15.0;     ///< per cent; below it a colour is near grey, and its hue says nothing
    double leastLightnessApart = 3.0; ///< per cent
    double mostLightnessApart = 30.0; ///< per cent
    double blurOfThickness = 0.5;     ///< the boundary's blur by the second's thickness ...
    double leastBlur = 5.0;           ///< ... pixels
    double mostBlur = 80.0;           ///< ... pixels
};

/// Degrees from 0 up to 360; the others per cent.
struct ColorTone {
    double hue = 0.0;
    double lightness = 0.0;
    double saturation = 0.0;
};

/// Of the nearest colour in 8 bits.
ColorTone toneOf(const FlatColor& color, SampleType type);

struct ColorPair {
    std::size_t neighbour = 0;   ///< the larger one, by its place in the list of regions
    std::size_t second = 0;      ///< the smaller one: the neighbour's shadow or highlight
    uint64_t border = 0;         ///< that they share
    double borderShare = 0.0;    ///< per cent of the second's outline
    double hueApart = 0.0;       ///< degrees, 0 to 180, in hundredths
    double lightnessApart = 0.0; ///< per cent, in hundredths; above 0 where the second is lighter

    bool isHighlight() const { return lightnessApart > 0.0; }
};

/// By the neighbour's place, then by the second's. All regions have samples of one type, and of two with the same area the
/// first is the larger one.
std::vector<ColorPair> pairsIn(std::span<const ColorRegion> regions, SampleType type,
                               const PairRules& rules = {});

} // namespace kovalune::pictures
