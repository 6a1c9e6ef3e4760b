#include "pictures/FlatColors.h"

#include "pictures/PixelValues.h"
#include "pictures/regions/ColorRuns.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace kovalune::pictures {

namespace {

template <class Sample>
Sample sampleOf(uint32_t bits) {
    if constexpr (std::is_same_v<Sample, float>) {
        float sample = 0.0F;
        std::memcpy(&sample, &bits, sizeof sample);
        return sample;
    } else {
        return static_cast<Sample>(bits);
    }
}

} // namespace

void sortByShare(std::vector<FlatColor>& colors) {
    std::stable_sort(colors.begin(), colors.end(),
                     [](const FlatColor& a, const FlatColor& b) { return a.pixels > b.pixels; });
}

FlatColors flatColorsOf(const Picture& picture) {
    FlatColors result;
    result.pixels = std::size_t{picture.width} * picture.height;
    ColorTable table;
    std::vector<ColorRun> runs;
    for (uint32_t y = 0; y < picture.height; ++y) {
        readRuns(picture, y, runs);
        for (const ColorRun& run : runs) {
            if (run.transparent) {
                result.transparent += run.end - run.start;
                continue;
            }
            const std::size_t place = table.placeOf(run.bits);
            if (place == result.colors.size()) {
                result.colors.push_back({run.bits, 0});
            }
            result.colors[place].pixels += run.end - run.start;
        }
    }
    sortByShare(result.colors);
    return result;
}

std::array<uint8_t, 3> nearestRgb(const FlatColor& color, SampleType type) {
    return withFileScale(type, [&color](auto scale) {
        using Scale = decltype(scale);
        const auto nearest = [](uint32_t bits) {
            return rescaled<Scale, FileScale8>(sampleOf<typename Scale::Sample>(bits));
        };
        return std::array{nearest(color.bits[0]), nearest(color.bits[1]), nearest(color.bits[2])};
    });
}

std::string exactText(const FlatColor& color, SampleType type) {
    Picture sample;
    sample.channels = Channels::kGrey;
    sample.sampleType = type;
    sample.samples.resize(bytesPerSample(type));
    std::string text;
    for (const uint32_t bits : color.bits) {
        withFileScale(
            type, [&](auto scale) { sample.setSample(0, sampleOf<typename decltype(scale)::Sample>(bits)); });
        text += (text.empty() ? "" : ", ") + sampleText(sample, 0);
    }
    return text;
}

} // namespace kovalune::pictures
