// A picture as its file holds it: straight alpha, samples row by row without padding.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

namespace kovalune {

enum class Channels { Grey, GreyAlpha, Rgb, RgbAlpha };

constexpr std::size_t channelCount(Channels channels) {
    switch (channels) {
    case Channels::Grey:
        return 1;
    case Channels::GreyAlpha:
        return 2;
    case Channels::Rgb:
        return 3;
    default:
        return 4;
    }
}

constexpr bool isGrey(Channels channels) {
    return channels == Channels::Grey || channels == Channels::GreyAlpha;
}

constexpr bool hasAlpha(Channels channels) {
    return channels == Channels::GreyAlpha || channels == Channels::RgbAlpha;
}

// Something that the file says about the picture as a whole, carried from input to output unread.
struct PictureNote {
    std::array<char, 5> name{}; // of the PNG chunk, with its end
    std::vector<std::uint8_t> bytes;
};

struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    Channels channels = Channels::Rgb;
    int depth = 8;                     // bits of a sample: 8, or 16 with the high byte first
    std::vector<std::uint8_t> samples; // grey or red, green, blue, then alpha if there is one
    std::vector<PictureNote> notes;

    std::size_t bytesPerSample() const { return depth == 16 ? 2 : 1; }
    std::size_t rowBytes() const { return width * channelCount(channels) * bytesPerSample(); }

    // Of all samples. Throws std::bad_alloc where so many bytes cannot be counted.
    std::size_t byteCount() const {
        const std::uint64_t count = std::uint64_t{rowBytes()} * height;
        if (count > std::numeric_limits<std::size_t>::max())
            throw std::bad_alloc();
        return static_cast<std::size_t>(count);
    }

    // `index` counts samples from the picture's first.
    std::uint16_t sample(std::size_t index) const {
        if (depth == 8)
            return samples[index];
        return static_cast<std::uint16_t>(samples[2 * index] << 8 | samples[2 * index + 1]);
    }
    void setSample(std::size_t index, std::uint16_t value) {
        if (depth == 8) {
            samples[index] = static_cast<std::uint8_t>(value);
        } else {
            samples[2 * index] = static_cast<std::uint8_t>(value >> 8);
            samples[2 * index + 1] = static_cast<std::uint8_t>(value & 0xff);
        }
    }
};

} // namespace kovalune
