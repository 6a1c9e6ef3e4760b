#include "effect/resources/DialogPicture.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kovalune {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kFileHeaderBytes = 14;
constexpr uint32_t kInfoHeaderBytes = 40;
constexpr uint32_t kBitsPerPixel = 24;
constexpr uint32_t kRowBytes = (kDialogPictureWidth * kBitsPerPixel + 31) / 32 * 4;
constexpr uint32_t kPixelBytes = kRowBytes * kDialogPictureHeight;

/// Red, green, blue, in 1/256 of a level: all arithmetic is in whole numbers, so that every machine draws the same bytes.
using Color = std::array<int32_t, 3>;

constexpr Color color(int32_t red, int32_t green, int32_t blue) {
    return {red * 256, green * 256, blue * 256};
}

constexpr Color kPaper = color(250, 246, 238);
constexpr Color kLine = color(92, 70, 60);
constexpr Color kHill = color(3, 180, 245);
constexpr Color kNearHill = color(240, 200, 160);

/// A slope of stair-steps as a drawing has it without smoothing: the height of the land above the lower edge.
int32_t heightAt(int32_t x, int32_t summit, int32_t top, int32_t step) {
    const int32_t distance = x < summit ? summit - x : x - summit;
    return std::max(top - distance / step * 2, 0);
}

Color flatColor(int32_t x, int32_t y) {
    const int32_t up = kDialogPictureHeight - 1 - y;
    const int32_t far = heightAt(x, 225, 58, 6);
    const int32_t near = heightAt(x, 105, 40, 5);
    const int32_t outline = 2;
    if (up < near) {
        return up >= near - outline ? kLine : kNearHill;
    }
    if (up < far) {
        return up >= far - outline ? kLine : kHill;
    }
    return kPaper;
}

/// How far the softness reaches at a column: nothing in the left third, then more and more.
int32_t reachAt(int32_t x) {
    return std::max(0, (x - kDialogPictureWidth / 3) / 24);
}

/// The mean of a square around the pixel; beyond the picture it goes on.
Color softColor(int32_t x, int32_t y) {
    const int32_t reach = reachAt(x);
    Color sum = {};
    for (int32_t dy = -reach; dy <= reach; ++dy) {
        for (int32_t dx = -reach; dx <= reach; ++dx) {
            const Color flat = flatColor(x + dx, y + dy);
            for (std::size_t channel = 0; channel < sum.size(); ++channel) {
                sum[channel] += flat[channel];
            }
        }
    }
    const int32_t count = (2 * reach + 1) * (2 * reach + 1);
    for (int32_t& channel : sum) {
        channel /= count;
    }
    return sum;
}

void appendNumber(Bytes& bytes, uint32_t value, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
}

void appendInfoHeader(Bytes& bytes) {
    appendNumber(bytes, kInfoHeaderBytes, 4);
    appendNumber(bytes, kDialogPictureWidth, 4);
    appendNumber(bytes, kDialogPictureHeight, 4);
    appendNumber(bytes, 1, 2); // planes
    appendNumber(bytes, kBitsPerPixel, 2);
    appendNumber(bytes, 0, 4); // not compressed
    appendNumber(bytes, kPixelBytes, 4);
    appendNumber(bytes, 0, 4); // pixels a metre, across and down: not told
    appendNumber(bytes, 0, 4);
    appendNumber(bytes, 0, 4); // colours of a palette
    appendNumber(bytes, 0, 4);
}

} // namespace

std::vector<uint8_t> dialogPicture() {
    Bytes bytes;
    appendInfoHeader(bytes);
    for (int32_t y = kDialogPictureHeight - 1; y >= 0; --y) {
        const std::size_t row = bytes.size();
        for (int32_t x = 0; x < kDialogPictureWidth; ++x) {
            const Color pixel = softColor(x, y);
            for (std::size_t channel = pixel.size(); channel-- > 0;) { // blue first
                bytes.push_back(static_cast<uint8_t>(pixel[channel] / 256));
            }
        }
        bytes.resize(row + kRowBytes);
    }
    return bytes;
}

std::vector<uint8_t> dialogPictureFile() {
    const Bytes picture = dialogPicture();
    Bytes bytes = {'B', 'M'};
    appendNumber(bytes, kFileHeaderBytes + static_cast<uint32_t>(picture.size()), 4);
    appendNumber(bytes, 0, 4); // reserved
    appendNumber(bytes, kFileHeaderBytes + kInfoHeaderBytes, 4);
    bytes.insert(bytes.end(), picture.begin(), picture.end());
    return bytes;
}

} // namespace kovalune
