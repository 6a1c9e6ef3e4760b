#include "pictures/FlatColors.h"

#include "pictures/PixelValues.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

namespace kovalune::pictures {

namespace {

using Bits = std::array<uint32_t, 3>;

std::size_t hashOf(const Bits& bits) {
    uint64_t mixed = (uint64_t{bits[0]} << 32 | bits[1]) * 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ (mixed >> 29) ^ bits[2]) * 0xBF58476D1CE4E5B9U;
    return static_cast<std::size_t>(mixed ^ (mixed >> 32));
}

/// A table of places in the list of colours, at most half full, in which a colour stands at its hash or after it.
/// Flat drawings are long runs of one colour, so it is asked where the colour changes only.
class Counter {
public:
    Counter() : slots_(kFirstSlots, kFree) {}

    void add(const Bits& bits) {
        if (colors_.empty() || bits != colors_[last_].bits) {
            last_ = placeOf(bits);
        }
        ++colors_[last_].pixels;
    }

    std::vector<FlatColor> sorted() && {
        std::stable_sort(colors_.begin(), colors_.end(),
                         [](const FlatColor& a, const FlatColor& b) { return a.pixels > b.pixels; });
        return std::move(colors_);
    }

private:
    static constexpr std::size_t kFirstSlots = 1024; ///< a power of 2, as every number of slots
    static constexpr uint32_t kFree = 0xffffffffU;

    /// The slot that has this colour, or the free one that it belongs in.
    uint32_t& slotOf(const Bits& bits) {
        std::size_t slot = hashOf(bits) & (slots_.size() - 1);
        while (slots_[slot] != kFree && colors_[slots_[slot]].bits != bits) {
            slot = (slot + 1) & (slots_.size() - 1);
        }
        return slots_[slot];
    }

    std::size_t placeOf(const Bits& bits) {
        if (uint32_t& slot = slotOf(bits); slot != kFree) {
            return slot;
        }
        if (2 * (colors_.size() + 1) > slots_.size()) {
            grow();
        }
        slotOf(bits) = static_cast<uint32_t>(colors_.size());
        colors_.push_back({bits, 0});
        return colors_.size() - 1;
    }

    void grow() {
        slots_.assign(slots_.size() * 2, kFree);
        for (std::size_t place = 0; place < colors_.size(); ++place) {
            slotOf(colors_[place].bits) = static_cast<uint32_t>(place);
        }
    }

    std::vector<FlatColor> colors_; ///< as they first appear
    std::vector<uint32_t> slots_;
    std::size_t last_ = 0;
};

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

template <class Scale>
FlatColors countedIn(const Picture& picture) {
    using Sample = typename Scale::Sample;
    const std::size_t channels = channelCount(picture.channels);
    const std::size_t step = isGrey(picture.channels) ? 0 : 1;
    const bool alpha = hasAlpha(picture.channels);
    const bool divide = alpha && picture.alphaKind == AlphaKind::kPremultiplied;
    FlatColors result;
    result.pixels = std::size_t{picture.width} * picture.height;
    Counter counter;
    for (std::size_t index = 0; index < result.pixels * channels; index += channels) {
        const Sample cover = alpha ? picture.sample<Sample>(index + channels - 1) : Sample{};
        if (alpha && Scale::toDouble(cover) == 0.0) {
            ++result.transparent;
            continue;
        }
        Bits bits{};
        for (std::size_t i = 0; i < bits.size(); ++i) {
            auto sample = picture.sample<Sample>(index + i * step);
            if (divide) {
                sample =
                    recoloured<Scale, Scale>(sample, cover, AlphaKind::kPremultiplied, AlphaKind::kStraight);
            }
            bits[i] = Scale::toDouble(sample) == 0.0 ? 0 : bitsOf(sample);
        }
        counter.add(bits);
    }
    result.colors = std::move(counter).sorted();
    return result;
}

} // namespace

FlatColors flatColorsOf(const Picture& picture) {
    return withFileScale(picture.sampleType,
                         [&picture](auto scale) { return countedIn<decltype(scale)>(picture); });
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
