// Rows of a picture's samples as pixels with all four channels, and back: what works on pixels need not know which
// channels a file has.
#pragma once

#include "pictures/Picture.h"
#include "render/samples/PixelChoice.h"
#include "render/samples/SampleScale.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace kovalune::pictures {

/// Calls use(x, samples) for each pixel of a row that has `count` samples a pixel.
template <class Sample, std::size_t count, class Use>
void forEachStored(const Picture& picture, std::size_t y, Use use) {
    const uint8_t* next = picture.samples.data() + y * picture.rowBytes();
    std::array<Sample, count> stored;
    for (std::size_t x = 0; x < picture.width; ++x, next += sizeof stored) {
        std::memcpy(&stored, next, sizeof stored);
        use(x, stored);
    }
}

/// Grey is spread, and a missing alpha is full. `row` has the picture's width.
template <class Scale>
void loadRow(const Picture& picture, std::size_t y, std::span<FilePixel<typename Scale::Sample>> row) {
    using Sample = typename Scale::Sample;
    const Sample full = rescaled<FileScale8, Scale>(255);
    switch (picture.channels) {
    case Channels::kGrey:
        forEachStored<Sample, 1>(picture, y, [&](std::size_t x, const auto& stored) {
            row[x] = {stored[0], stored[0], stored[0], full};
        });
        break;
    case Channels::kGreyAlpha:
        forEachStored<Sample, 2>(picture, y, [&](std::size_t x, const auto& stored) {
            row[x] = {stored[0], stored[0], stored[0], stored[1]};
        });
        break;
    case Channels::kRgb:
        forEachStored<Sample, 3>(picture, y, [&](std::size_t x, const auto& stored) {
            row[x] = {stored[0], stored[1], stored[2], full};
        });
        break;
    default:
        std::memcpy(row.data(), picture.samples.data() + y * picture.rowBytes(), row.size_bytes());
        break;
    }
}

/// Calls stored(pixel), which gives the samples of a pixel as the file has them, for each pixel of a row.
template <class Sample, class Stored>
void storeEach(Picture& picture, std::size_t y, std::span<const FilePixel<Sample>> row, Stored stored) {
    uint8_t* next = picture.samples.data() + y * picture.rowBytes();
    for (const FilePixel<Sample>& pixel : row) {
        const auto samples = stored(pixel);
        std::memcpy(next, &samples, sizeof samples);
        next += sizeof samples;
    }
}

/// Of grey its red; what the picture has no channel for is left out.
template <class Sample>
void storeRow(Picture& picture, std::size_t y, std::span<const FilePixel<Sample>> row) {
    using Pixel = FilePixel<Sample>;
    switch (picture.channels) {
    case Channels::kGrey:
        storeEach(picture, y, row, [](const Pixel& pixel) { return std::array{pixel.red}; });
        break;
    case Channels::kGreyAlpha:
        storeEach(picture, y, row, [](const Pixel& pixel) { return std::array{pixel.red, pixel.alpha}; });
        break;
    case Channels::kRgb:
        storeEach(picture, y, row, [](const Pixel& pixel) {
            return std::array{pixel.red, pixel.green, pixel.blue};
        });
        break;
    default:
        std::memcpy(picture.samples.data() + y * picture.rowBytes(), row.data(), row.size_bytes());
        break;
    }
}

} // namespace kovalune::pictures
