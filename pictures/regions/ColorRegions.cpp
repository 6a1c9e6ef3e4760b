#include "pictures/regions/ColorRegions.h"

#include "pictures/regions/ColorRuns.h"
#include "pictures/regions/ColorTable.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

namespace kovalune::pictures {

namespace {

constexpr uint32_t kNone = std::numeric_limits<uint32_t>::max();

/// A run by the region that it belongs to.
struct RegionRun {
    uint32_t start = 0;
    uint32_t end = 0;
    uint32_t region = 0; ///< or what stands for transparent pixels, or for all colours that are not followed
    uint32_t piece = kNone;
};

/// Pieces of regions that the row above reaches, told apart by small numbers that are given anew in every row.
class Pieces {
public:
    uint32_t make() {
        parents_.push_back(static_cast<uint32_t>(parents_.size()));
        return parents_.back();
    }

    /// Whether they were two until now.
    bool unite(uint32_t a, uint32_t b) {
        const uint32_t rootA = rootOf(a);
        const uint32_t rootB = rootOf(b);
        parents_[std::max(rootA, rootB)] = std::min(rootA, rootB);
        return rootA != rootB;
    }

    /// Keeps those of this row alone and numbers them from 0 on.
    void keepOnly(std::vector<RegionRun>& row) {
        renamed_.assign(parents_.size(), kNone);
        uint32_t count = 0;
        for (RegionRun& run : row) {
            if (run.piece == kNone) {
                continue;
            }
            uint32_t& name = renamed_[rootOf(run.piece)];
            if (name == kNone) {
                name = count++;
            }
            run.piece = name;
        }
        parents_.resize(count);
        for (uint32_t piece = 0; piece < count; ++piece) {
            parents_[piece] = piece;
        }
    }

private:
    uint32_t rootOf(uint32_t piece) {
        while (parents_[piece] != piece) {
            parents_[piece] = parents_[parents_[piece]];
            piece = parents_[piece];
        }
        return piece;
    }

    std::vector<uint32_t> parents_;
    std::vector<uint32_t> renamed_;
};

class RegionFinder {
public:
    RegionFinder(const Picture& picture, const FlatColors& counted, std::size_t most) : picture_(picture) {
        regions_.resize(std::min(most, counted.colors.size()));
        for (std::size_t i = 0; i < regions_.size(); ++i) {
            regions_[i].color = counted.colors[i];
            table_.placeOf(counted.colors[i].bits);
        }
        others_ = static_cast<uint32_t>(regions_.size());
        transparent_ = others_ + 1;
        edge_ = others_ + 2;
    }

    std::vector<ColorRegion> found() && {
        for (uint32_t y = 0; y < picture_.height; ++y) {
            readRow(y);
            meetWithin();
            if (y == 0) {
                meetEdge();
            } else {
                meetAbove();
            }
            countPieces();
            growBoxes(y);
            std::swap(above_, row_);
        }
        std::swap(above_, row_);
        meetEdge();
        handOutLengths();
        return std::move(regions_);
    }

private:
    bool isFollowed(uint32_t region) const { return region < others_; }

    uint32_t regionOf(const ColorRun& run) const {
        if (run.transparent) {
            return transparent_;
        }
        const std::optional<std::size_t> place = table_.find(run.bits);
        return place ? static_cast<uint32_t>(*place) : others_;
    }

    void readRow(uint32_t y) {
        readRuns(picture_, y, runs_);
        row_.clear();
        for (const ColorRun& run : runs_) {
            row_.push_back({run.start, run.end, regionOf(run), kNone});
        }
    }

    void meet(uint32_t a, uint32_t b, uint64_t length) {
        if (a != b && (isFollowed(a) || isFollowed(b))) {
            lengths_[uint64_t{std::min(a, b)} << 32 | std::max(a, b)] += length;
        }
    }

    void meetWithin() {
        for (std::size_t i = 1; i < row_.size(); ++i) {
            meet(row_[i - 1].region, row_[i].region, 1);
        }
        if (!row_.empty()) {
            meet(row_.front().region, edge_, 1);
            meet(row_.back().region, edge_, 1);
        }
    }

    /// The first row and the last one.
    void meetEdge() {
        for (const RegionRun& run : row_) {
            meet(run.region, edge_, run.end - run.start);
        }
    }

    void meetAbove() {
        auto upper = above_.begin();
        for (RegionRun& run : row_) {
            while (upper->end <= run.start) {
                ++upper;
            }
            for (auto each = upper; each != above_.end() && each->start < run.end; ++each) {
                if (each->region == run.region) {
                    join(run, *each);
                } else {
                    meet(each->region, run.region,
                         std::min(each->end, run.end) - std::max(each->start, run.start));
                }
            }
        }
    }

    void join(RegionRun& run, const RegionRun& upper) {
        if (!isFollowed(run.region)) {
            return;
        }
        if (run.piece == kNone) {
            run.piece = upper.piece;
        } else if (pieces_.unite(run.piece, upper.piece)) {
            --regions_[run.region].pieces;
        }
    }

    void countPieces() {
        for (RegionRun& run : row_) {
            if (isFollowed(run.region) && run.piece == kNone) {
                run.piece = pieces_.make();
                ++regions_[run.region].pieces;
            }
        }
        pieces_.keepOnly(row_);
    }

    void growBoxes(uint32_t y) {
        for (const RegionRun& run : row_) {
            if (!isFollowed(run.region)) {
                continue;
            }
            RegionBox& box = regions_[run.region].box;
            if (box.height == 0) {
                box = {run.start, y, run.end - run.start, 1};
                continue;
            }
            const uint32_t right = std::max(box.left + box.width, run.end);
            box.left = std::min(box.left, run.start);
            box.width = right - box.left;
            box.height = y + 1 - box.top;
        }
    }

    void handOut(uint32_t region, uint32_t neighbour, uint64_t length) {
        if (!isFollowed(region)) {
            return;
        }
        ColorRegion& figures = regions_[region];
        figures.outline += length;
        if (isFollowed(neighbour)) {
            figures.borders.push_back({neighbour, length});
        } else if (neighbour == edge_) {
            figures.toEdge += length;
        } else if (neighbour == transparent_) {
            figures.toTransparent += length;
        } else {
            figures.toOthers += length;
        }
    }

    void handOutLengths() {
        for (const auto& [both, length] : lengths_) {
            const auto a = static_cast<uint32_t>(both >> 32);
            const auto b = static_cast<uint32_t>(both);
            handOut(a, b, length);
            handOut(b, a, length);
        }
        for (ColorRegion& region : regions_) {
            sortByLength(region.borders);
        }
    }

    const Picture& picture_;
    ColorTable table_; ///< of the colours that are followed
    std::vector<ColorRegion> regions_;
    uint32_t others_ = 0;
    uint32_t transparent_ = 0;
    uint32_t edge_ = 0;
    std::unordered_map<uint64_t, uint64_t>
        lengths_; ///< of borders, by the two regions, the smaller one first
    Pieces pieces_;
    std::vector<ColorRun> runs_;
    std::vector<RegionRun> row_;
    std::vector<RegionRun> above_;
};

} // namespace

void sortByLength(std::vector<ColorBorder>& borders) {
    std::sort(borders.begin(), borders.end(), [](const ColorBorder& a, const ColorBorder& b) {
        return a.length != b.length ? a.length > b.length : a.neighbour < b.neighbour;
    });
}

double thicknessOf(const ColorRegion& region) {
    return 2.0 * static_cast<double>(region.color.pixels) / static_cast<double>(region.outline);
}

uint64_t borderWith(const ColorRegion& region, std::size_t neighbour) {
    const auto found =
        std::find_if(region.borders.begin(), region.borders.end(),
                     [neighbour](const ColorBorder& border) { return border.neighbour == neighbour; });
    return found == region.borders.end() ? 0 : found->length;
}

std::vector<ColorRegion> regionsOf(const Picture& picture, const FlatColors& counted, std::size_t most) {
    return RegionFinder(picture, counted, most).found();
}

} // namespace kovalune::pictures
