// Where the flat colours of a picture lie: the area of each, its pieces, its outline, and what it borders on.
//
// Lengths are counted in sides of pixels, so a slanted line is as long as its steps. Pixels of one colour are one piece
// where they share a side, not where their corners touch: the effect carries colour along rows and along columns, so it gets
// over no corner either, and a line of pixels that only touch at their corners keeps two sides of it apart.
//
// A picture is looked at row by row, in runs. Memory goes with the width of the picture and with the pairs of colours
// that really meet, of which kMostRegions colours have half a million at the most.
#pragma once

#include "pictures/FlatColors.h"
#include "pictures/Picture.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kovalune::pictures {

/// Colours that are followed, the most frequent of a picture. A drawing has some dozens; thousands are those of a photograph
/// or of soft edges, and of no use as regions.
inline constexpr std::size_t kMostRegions = 1024;

/// In pixels; never empty.
struct RegionBox {
    uint32_t left = 0;
    uint32_t top = 0;
    uint32_t width = 0;
    uint32_t height = 0;
};

/// What two colours share.
struct ColorBorder {
    std::size_t neighbour = 0; ///< its place in the list of regions
    uint64_t length = 0;
};

struct ColorRegion {
    FlatColor color; ///< with its pixels
    RegionBox box;
    uint64_t pieces = 0;
    uint64_t outline = 0; ///< sides that no other pixel of the colour is at: the sum of all that follow
    uint64_t toEdge = 0;  ///< of the picture
    uint64_t toTransparent = 0;
    uint64_t toOthers = 0;            ///< colours that are not followed
    std::vector<ColorBorder> borders; ///< the longest first, equally long ones by their neighbour's place
};

/// As ColorRegion has them.
void sortByLength(std::vector<ColorBorder>& borders);

/// Twice the area by the outline, in pixels: the width of a long line, about four fifths of the radius of a disc.
double thicknessOf(const ColorRegion& region);

/// With the neighbour at this place; 0 where they do not touch.
uint64_t borderWith(const ColorRegion& region, std::size_t neighbour);

/// Of the first `most` colours of `counted`, which are those of `picture`, in their order.
std::vector<ColorRegion> regionsOf(const Picture& picture, const FlatColors& counted,
                                   std::size_t most = kMostRegions);

} // namespace kovalune::pictures
