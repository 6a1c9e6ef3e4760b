// The flat colours of many pictures, which come one after the other and are not kept: how many pixels have each, where it
// lies, and in which frames it is. The pictures have samples of one type. Memory does not go with the number of pictures:
// it is bounded by the two numbers below and, for the frames of a colour, by how often the colour comes and goes.
#pragma once

#include "pictures/FlatColors.h"
#include "pictures/regions/ColorRegions.h"
#include "pictures/regions/ColorTable.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace kovalune::pictures {

/// Colours that are counted, the first ones that come; those after them are pixels without a colour.
inline constexpr std::size_t kMostShotColors = std::size_t{1} << 20;

/// Colours whose places are followed, the first ones that come; those after them are others.
inline constexpr std::size_t kMostShotRegions = 4 * kMostRegions;

/// Both ends inclusive.
struct FrameRange {
    int64_t first = 0;
    int64_t last = 0;

    friend bool operator==(const FrameRange&, const FrameRange&) = default;
};

/// Of all pictures: areas and lengths are sums, the box is around all boxes, the pieces are the most that one picture has.
struct ShotRegion {
    ColorRegion region;
    std::vector<FrameRange> frames; ///< that have the colour, as they came
};

class ShotColors {
public:
    /// `regions`: those of `counted` in this picture, or none where places are not asked for. Each frame comes once.
    void add(const FlatColors& counted, std::span<const ColorRegion> regions, int64_t frame);

    /// As FlatColors has them.
    FlatColors counted() const;

    /// The most frequent first, equally frequent ones as they came.
    std::vector<ShotRegion> regions() const;

private:
    void addCounts(const FlatColors& counted);
    void addRegions(std::span<const ColorRegion> regions, int64_t frame);
    void addBorders(const ColorRegion& region, std::size_t own, std::span<const std::size_t> places);

    ColorTable colors_;
    std::vector<std::size_t> pixels_; ///< of each
    std::size_t transparent_ = 0;
    std::size_t untold_ = 0;
    std::size_t all_ = 0;
    ColorTable followed_;
    std::vector<ShotRegion> sums_; ///< of each, without borders
    std::unordered_map<uint64_t, uint64_t>
        lengths_; ///< of borders, by the places of both, the smaller one first
};

} // namespace kovalune::pictures
