#include "pictures/regions/ColorRuns.h"

#include "pictures/PixelValues.h"

#include <cstring>
#include <type_traits>

namespace kovalune::pictures {

namespace {

template <class Sample>
uint32_t bitsOf(Sample sample) {
    if constexpr (std::is_same_v<Sample, float>) {
        uint32_t bits = 0;
        std::memcpy(&bits, &sample, sizeof bits);
        return bits;
    } else {
        return sample;
    }
}

/// The run that a pixel begins; `index` is that of its first sample.
template <class Scale>
ColorRun runAt(const Picture& picture, std::size_t index) {
    using Sample = typename Scale::Sample;
    const std::size_t step = isGrey(picture.channels) ? 0 : 1;
    const bool alpha = hasAlpha(picture.channels);
    const bool divide = alpha && picture.alphaKind == AlphaKind::kPremultiplied;
    const Sample cover =
        alpha ? picture.sample<Sample>(index + channelCount(picture.channels) - 1) : Sample{};
    ColorRun run;
    run.transparent = alpha && Scale::toDouble(cover) == 0.0;
    for (std::size_t i = 0; !run.transparent && i < run.bits.size(); ++i) {
        auto sample = picture.sample<Sample>(index + i * step);
        if (divide) {
            sample = recoloured<Scale, Scale>(sample, cover, AlphaKind::kPremultiplied, AlphaKind::kStraight);
        }
        run.bits[i] = Scale::toDouble(sample) == 0.0 ? 0 : bitsOf(sample);
    }
    return run;
}

template <class Scale>
void readRunsIn(const Picture& picture, uint32_t row, std::vector<ColorRun>& runs) {
    const std::size_t channels = channelCount(picture.channels);
    const std::size_t pixelBytes = channels * sizeof(typename Scale::Sample);
    const std::size_t first = std::size_t{row} * picture.width;
    const uint8_t* bytes = picture.samples.data() + first * pixelBytes;
    for (uint32_t x = 0; x < picture.width; ++x, bytes += pixelBytes) {
        // Most pixels of a flat drawing are their left neighbour's, byte for byte.
        if (x > 0 && std::memcmp(bytes, bytes - pixelBytes, pixelBytes) == 0) {
            continue;
        }
        ColorRun run = runAt<Scale>(picture, (first + x) * channels);
        if (!runs.empty() && runs.back().transparent == run.transparent && runs.back().bits == run.bits) {
            continue;
        }
        if (!runs.empty()) {
            runs.back().end = x;
        }
        run.start = x;
        runs.push_back(run);
    }
    if (!runs.empty()) {
        runs.back().end = picture.width;
    }
}

} // namespace

void readRuns(const Picture& picture, uint32_t row, std::vector<ColorRun>& runs) {
    runs.clear();
    withFileScale(picture.sampleType, [&](auto scale) { readRunsIn<decltype(scale)>(picture, row, runs); });
}

} // namespace kovalune::pictures
