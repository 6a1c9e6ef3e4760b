#include "tests/pictures/PlainRegions.h"

#include "tests/pictures/Pictures.h"

#include <algorithm>
#include <array>
#include <map>

namespace kovalune::test {

using namespace pictures;

namespace {

constexpr int kOther = -1;
constexpr int kTransparent = -2;
constexpr int kEdge = -3;

struct Plain {
    int width = 0;
    int height = 0;
    std::vector<int> regions; ///< of each pixel

    int at(int x, int y) const {
        return x < 0 || y < 0 || x >= width || y >= height ? kEdge
                                                           : regions[static_cast<std::size_t>(y * width + x)];
    }
};

constexpr std::array<std::array<int, 2>, 4> kSides = {{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};

/// Colours by their values, in units of the file; straight pictures alone.
Plain plainOf(const Picture& picture, const FlatColors& counted, std::size_t most) {
    Plain plain{static_cast<int>(picture.width), static_cast<int>(picture.height), {}};
    const std::vector<double> values = valuesOf(picture);
    const std::size_t channels = channelCount(picture.channels);
    const std::size_t step = isGrey(picture.channels) ? 0 : 1;
    for (std::size_t start = 0; start < values.size(); start += channels) {
        if (hasAlpha(picture.channels) && values[start + channels - 1] == 0.0) {
            plain.regions.push_back(kTransparent);
            continue;
        }
        int found = kOther;
        for (std::size_t i = 0; i < std::min(most, counted.colors.size()); ++i) {
            const ColorBits& bits = counted.colors[i].bits;
            if (values[start] == bits[0] && values[start + step] == bits[1] &&
                values[start + 2 * step] == bits[2]) {
                found = static_cast<int>(i);
            }
        }
        plain.regions.push_back(found);
    }
    return plain;
}

void flood(const Plain& plain, std::vector<bool>& seen, int x, int y) {
    std::vector<std::array<int, 2>> open = {{x, y}};
    const int region = plain.at(x, y);
    while (!open.empty()) {
        const auto [left, top] = open.back();
        open.pop_back();
        const auto index = static_cast<std::size_t>(top * plain.width + left);
        if (seen[index]) {
            continue;
        }
        seen[index] = true;
        for (const auto& [right, down] : kSides) {
            if (plain.at(left + right, top + down) == region) {
                open.push_back({left + right, top + down});
            }
        }
    }
}

void countSide(ColorRegion& region, int neighbour, std::map<int, uint64_t>& borders) {
    ++region.outline;
    region.toEdge += neighbour == kEdge ? 1 : 0;
    region.toTransparent += neighbour == kTransparent ? 1 : 0;
    region.toOthers += neighbour == kOther ? 1 : 0;
    if (neighbour >= 0) {
        ++borders[neighbour];
    }
}

ColorRegion regionIn(const Plain& plain, int wanted, const FlatColor& color) {
    ColorRegion region;
    region.color.bits = color.bits;
    std::map<int, uint64_t> borders;
    std::vector<bool> seen(plain.regions.size());
    int left = plain.width;
    int top = plain.height;
    int right = 0;
    int bottom = 0;
    for (int y = 0; y < plain.height; ++y) {
        for (int x = 0; x < plain.width; ++x) {
            if (plain.at(x, y) != wanted) {
                continue;
            }
            ++region.color.pixels;
            left = std::min(left, x);
            top = std::min(top, y);
            right = std::max(right, x + 1);
            bottom = std::max(bottom, y + 1);
            if (!seen[static_cast<std::size_t>(y * plain.width + x)]) {
                ++region.pieces;
                flood(plain, seen, x, y);
            }
            for (const auto& [across, down] : kSides) {
                if (const int neighbour = plain.at(x + across, y + down); neighbour != wanted) {
                    countSide(region, neighbour, borders);
                }
            }
        }
    }
    region.box = {static_cast<uint32_t>(left), static_cast<uint32_t>(top),
                  static_cast<uint32_t>(right - left), static_cast<uint32_t>(bottom - top)};
    for (const auto& [neighbour, length] : borders) {
        region.borders.push_back({static_cast<std::size_t>(neighbour), length});
    }
    std::stable_sort(region.borders.begin(), region.borders.end(),
                     [](const ColorBorder& a, const ColorBorder& b) { return a.length > b.length; });
    return region;
}

} // namespace

std::vector<ColorRegion> plainRegions(const Picture& picture, const FlatColors& counted, std::size_t most) {
    const Plain plain = plainOf(picture, counted, most);
    std::vector<ColorRegion> regions;
    for (std::size_t i = 0; i < std::min(most, counted.colors.size()); ++i) {
        regions.push_back(regionIn(plain, static_cast<int>(i), counted.colors[i]));
    }
    return regions;
}

} // namespace kovalune::test
