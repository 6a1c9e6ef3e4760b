#include "pictures/regions/ShotColors.h"

#include <algorithm>
#include <numeric>

namespace kovalune::pictures {

namespace {

constexpr std::size_t kNotFollowed = kMostShotRegions;

/// Where the colour stands, a new one too as long as there is room; else `most`.
std::size_t placeIn(ColorTable& table, const ColorBits& bits, std::size_t most) {
    const std::optional<std::size_t> place = table.find(bits);
    if (place) {
        return *place;
    }
    return table.size() < most ? table.placeOf(bits) : most;
}

RegionBox around(const RegionBox& a, const RegionBox& b) {
    const uint32_t right = std::max(a.left + a.width, b.left + b.width);
    const uint32_t bottom = std::max(a.top + a.height, b.top + b.height);
    const uint32_t left = std::min(a.left, b.left);
    const uint32_t top = std::min(a.top, b.top);
    return {left, top, right - left, bottom - top};
}

void addFrame(std::vector<FrameRange>& frames, int64_t frame) {
    if (!frames.empty() && frames.back().last + 1 == frame) {
        frames.back().last = frame;
    } else {
        frames.push_back({frame, frame});
    }
}

} // namespace

void ShotColors::add(const FlatColors& counted, std::span<const ColorRegion> regions, int64_t frame) {
    addCounts(counted);
    addRegions(regions, frame);
}

void ShotColors::addCounts(const FlatColors& counted) {
    transparent_ += counted.transparent;
    untold_ += counted.untold;
    all_ += counted.pixels;
    for (const FlatColor& color : counted.colors) {
        const std::size_t place = placeIn(colors_, color.bits, kMostShotColors);
        if (place == kMostShotColors) {
            untold_ += color.pixels;
            continue;
        }
        pixels_.resize(colors_.size());
        pixels_[place] += color.pixels;
    }
}

void ShotColors::addRegions(std::span<const ColorRegion> regions, int64_t frame) {
    std::vector<std::size_t> places;
    for (const ColorRegion& region : regions) {
        places.push_back(placeIn(followed_, region.color.bits, kMostShotRegions));
    }
    sums_.resize(followed_.size());
    for (std::size_t i = 0; i < regions.size(); ++i) {
        if (places[i] == kNotFollowed) {
            continue;
        }
        const ColorRegion& region = regions[i];
        ColorRegion& sum = sums_[places[i]].region;
        sum.box = sum.color.pixels == 0 ? region.box : around(sum.box, region.box);
        sum.color.bits = region.color.bits;
        sum.color.pixels += region.color.pixels;
        sum.pieces = std::max(sum.pieces, region.pieces);
        sum.outline += region.outline;
        sum.toEdge += region.toEdge;
        sum.toTransparent += region.toTransparent;
        sum.toOthers += region.toOthers;
        addFrame(sums_[places[i]].frames, frame);
        addBorders(region, places[i], places);
    }
}

void ShotColors::addBorders(const ColorRegion& region, std::size_t own, std::span<const std::size_t> places) {
    for (const ColorBorder& border : region.borders) {
        const std::size_t other = places[border.neighbour];
        if (other == kNotFollowed) {
            sums_[own].region.toOthers += border.length;
        } else if (own < other) { // the other one has the border too
            lengths_[uint64_t{own} << 32 | other] += border.length;
        }
    }
}

FlatColors ShotColors::counted() const {
    FlatColors result;
    result.transparent = transparent_;
    result.untold = untold_;
    result.pixels = all_;
    for (std::size_t place = 0; place < colors_.size(); ++place) {
        result.colors.push_back({colors_[place], pixels_[place]});
    }
    sortByShare(result.colors);
    return result;
}

std::vector<ShotRegion> ShotColors::regions() const {
    std::vector<std::size_t> order(sums_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
        return sums_[a].region.color.pixels > sums_[b].region.color.pixels;
    });
    std::vector<std::size_t> placeOf(order.size());
    std::vector<ShotRegion> result;
    for (std::size_t i = 0; i < order.size(); ++i) {
        placeOf[order[i]] = i;
        result.push_back(sums_[order[i]]);
    }
    for (const auto& [both, length] : lengths_) {
        const std::size_t a = placeOf[both >> 32];
        const std::size_t b = placeOf[both & 0xffffffffU];
        result[a].region.borders.push_back({b, length});
        result[b].region.borders.push_back({a, length});
    }
    for (ShotRegion& each : result) {
        sortByLength(each.region.borders);
    }
    return result;
}

} // namespace kovalune::pictures
